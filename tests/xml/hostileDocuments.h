#pragma once
// Documents that are made to cost a reader time.
#include <functional>
#include <string>
#include <vector>

struct hostileDocument
{
    const char* name;
    std::string text;
};

namespace hostile {

using Piece = std::function<std::string(int)>;

// head, then pieces up to the size, then tail.
inline std::string filled(size_t size, const std::string& head, const Piece& piece, const std::string& tail)
{
    std::string text = head;
    for (int i = 0; text.size() + tail.size() < size; ++i)
        text += piece(i);
    return text + tail;
}

inline std::string repeated(const std::string& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

inline std::string widened(const std::string& text)
{
    std::string wide = "\xff\xfe";
    for (const char letter : text)
        wide += std::string{letter, '\0'};
    return wide;
}

inline Piece same(const std::string& text)
{
    return [text](int) { return text; };
}

// before and behind a running number
inline Piece counted(const std::string& before, const std::string& behind)
{
    return [before, behind](int i) { return before + std::to_string(i) + behind; };
}

// Entities that stand for ten of the one before each.
inline std::string laughs(const std::string& innermost)
{
    std::string text = "<!DOCTYPE l [<!ENTITY l0 '" + innermost + "'>";
    for (int i = 1; i < 10; ++i)
        text +=
            "<!ENTITY l" + std::to_string(i) + " '" + repeated("&l" + std::to_string(i - 1) + ";", 10) + "'>";
    return text + "]>";
}

inline std::string declared(int attributes, const std::string& value)
{
    std::string text = "<!DOCTYPE l [<!ATTLIST a";
    for (int i = 0; i < attributes; ++i)
        text += " x" + std::to_string(i) + " CDATA '" + value + "'";
    return text + ">]>";
}

// Each entity names many of the ones before it, and the attribute all of them.
inline std::string webOfReferences(size_t size)
{
    std::string text = "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e0 '&who;'>", all;
    for (int i = 1; i < 1000; ++i) {
        std::string references;
        for (int k = i; k > 0 && references.size() < size / 2000; --k)
            references += "&e" + std::to_string(k - 1) + ";";
        text += "<!ENTITY e" + std::to_string(i) + " '" + references + "'>";
    }
    return filled(size, text + "]><l>", same("<a k='&e999;&who;'/>"), "</l>");
}

inline std::vector<hostileDocument> listsOfAttributes(size_t size)
{
    return {
        {"one list of attributes",
         filled(size, "<!DOCTYPE a [<!ATTLIST a", counted(" x", " CDATA ''"), ">]><a/>")},
        {"a list for each attribute",
         filled(size, "<!DOCTYPE a [", counted("<!ATTLIST a x", " CDATA 'v'>"), "]><a/>")},
        {"a list for each element",
         filled(size, "<!DOCTYPE a [", counted("<!ATTLIST a", " x CDATA 'v'>"), "]><a/>")},
        {"one attribute of many values",
         filled(size, "<!DOCTYPE a [<!ATTLIST a x (v", counted("|v", ""), ") 'v'>]><a/>")},
        {"lists that stop short of a limit", filled(size, declared(8000, ""), same(" "), "<a/>")},
        {"defaults for every element", filled(size, declared(4000, "") + "<l>", same("<a/>"), "</l>")},
        {"few defaults for every element", filled(size, declared(10, "") + "<l>", same("<a/>"), "</l>")},
        {"large defaults", filled(size, declared(10, std::string(5000, 'v')) + "<l>", same("<a/>"), "</l>")},
        {"attributes of one element", filled(size, "<a", counted(" x", "=''"), "/>")},
    };
}

inline std::vector<hostileDocument> entities(size_t size)
{
    return {
        {"laughs", laughs("lol") + "<l>&l9;</l>"},
        {"laughs in an attribute", laughs("lol") + "<l k='&l9;'/>"},
        {"laughs about nothing", laughs("") + "<l>&l9;</l>"},
        {"laughs of elements", laughs("<a/>") + "<l>&l9;</l>"},
        {"an entity of elements",
         filled(size, "<!DOCTYPE l [<!ENTITY e '" + repeated("<a/>", 1000) + "'>]><l>", same("&e;"), "</l>")},
        {"an entity of attributes",
         filled(size, "<!DOCTYPE l [<!ENTITY e \"" + repeated("<a b='' c='' d=''/>", 1000) + "\">]><l>",
                same("&e;"), "</l>")},
        {"an entity of nothing", filled(size, "<!DOCTYPE l [<!ENTITY e ''>]><l>", same("&e;"), "</l>")},
        {"entities", filled(size, "<!DOCTYPE l [", counted("<!ENTITY e", " 'v'>"), "]><l/>")},
        {"a chain of entities",
         filled(
             size, "<!DOCTYPE l [<!ENTITY e0 ''>",
             [](int i) { return "<!ENTITY e" + std::to_string(i + 1) + " '&e" + std::to_string(i) + ";'>"; },
             "]><l>&e20000;</l>")},
        {"a chain of parameters", filled(
                                      size, "<!DOCTYPE l [<!ENTITY % e0 ''>",
                                      [](int i) {
                                          return "<!ENTITY % e" + std::to_string(i + 1) + " '&#37;e" +
                                                 std::to_string(i) + ";'>";
                                      },
                                      "%e20000;]><l/>")},
        {"references to a parameter", filled(size, "<!DOCTYPE l [<!ENTITY % e ''>", same("%e;"), "]><l/>")},
        {"parameters that declare",
         filled(size, "<!DOCTYPE l [<!ENTITY % e '" + repeated("<!ELEMENT a ANY>", 100) + "'>", same("%e;"),
                "]><l/>")},
        {"references to what is outside",
         filled(size, "<!DOCTYPE l SYSTEM 'l.dtd'><l>", same("&e;"), "</l>")},
        {"references that are outside of an entity",
         filled(size, "<!DOCTYPE l SYSTEM 'l.dtd' [<!ENTITY e '" + repeated("&o;", 500) + "'>]><l>",
                same("&e;"), "</l>")},
        {"references in attributes",
         filled(size, "<!DOCTYPE l SYSTEM 'l.dtd'><l>", same("<a k='&e;'/>"), "</l>")},
        {"a web of references", webOfReferences(size)},
        {"many entities declared outside",
         filled(size, "<!DOCTYPE l [", counted("<!ENTITY e", " SYSTEM 'e'>"),
                "]><l>" + repeated("&e1;", int(size / 8)) + "</l>")},
    };
}

inline std::vector<hostileDocument> nodes(size_t size)
{
    return {
        {"depth", filled(size, "", same("<a>"), "")},
        {"elements", filled(size, "<l>", same("<a/>"), "</l>")},
        {"elements and letters", filled(size, "<l>", same("t<a/>"), "</l>")},
        {"elements and blanks", filled(size, "<l>", same(" <a/>"), "</l>")},
        {"elements of different names", filled(size, "<l>", counted("<a", "/>"), "</l>")},
        {"elements of long names", filled(size, "<l>", same("<" + std::string(100000, 'a') + "/>"), "</l>")},
        {"elements at document level", filled(size, "", same("<a/>"), "")},
        {"elements at document level, cut", filled(size, "", same("<a/>"), "<")},
        {"attributes", filled(size, "<l>", same("<a b='' c='' d='' e=''/>"), "</l>")},
        {"different attributes", filled(size, "<l>", counted("<a x", "=''/>"), "</l>")},
        {"comments", filled(size, "<l>", same("<!---->"), "</l>")},
        {"instructions", filled(size, "<l>", same("<?i?>"), "</l>")},
        {"empty data", filled(size, "<l>", same("<![CDATA[]]>"), "</l>")},
        {"data and blanks", filled(size, "<l>", same("<![CDATA[]]> "), "</l>")},
        {"line ends", filled(size, "<l>", same("\n"), "</l>")},
        {"line ends, refused", filled(size, "<l>", same("\r\n"), "</m>")},
        {"references to letters", filled(size, "<l>", same("&lt;"), "</l>")},
        {"elements in wide letters", widened(filled(size / 2, "<l>", same("<a/>"), "</l>"))},
        {"letters of the east",
         filled(size, "<?xml version='1.0' encoding='Shift_JIS'?><l>", same("\x83\x65"), "</l>")},
        {"letters of the east, damaged",
         filled(size, "<?xml version='1.0' encoding='Shift_JIS'?><l>", same("\x83\x65"), "\x83")},
        {"wide letters, damaged",
         widened(filled(size / 2, "<l>", same("x"), "")) + std::string("\0\xd8<\0", 4)},
    };
}

} // namespace hostile

// Each of about size bytes, or less where that is all it takes.
inline std::vector<hostileDocument> hostileDocuments(size_t size)
{
    std::vector<hostileDocument> all = hostile::listsOfAttributes(size);
    for (const auto& more : {hostile::entities(size), hostile::nodes(size)})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}
