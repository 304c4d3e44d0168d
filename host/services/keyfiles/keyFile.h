#pragma once
// The text of one key file, line by line, so that a change touches its one line and nothing else.
//
//   ; a comment, also with "#"
//   [Section]
//   key = value
//
// Blanks around names and values do not count. A value in double quotes is what stands between the outer
// two, blanks and quotes included; nothing else is special in a value, so ";" and "#" are part of it.
// Names are found without regard to the case of A to Z. Of two equal keys the first one counts, and the
// parts of a section that is there twice count as one. Keys before the first section belong to the
// section "". Lines that are none of these are kept. A byte order mark and either kind of line end too.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class keyFile
{
public:
    static constexpr size_t SIZE_LIMIT = 4u << 20; // bytes; no key file of the phone comes near

    // 0 when the text is not that of a key file: too large, a zero byte, or lines that are no text. The
    // document is empty then.
    int Parse(std::string_view text);
    std::string Text() const;

    // Null when there is no such key; valid until the next change.
    const std::string* Find(std::string_view section, std::string_view key) const;
    // 1 when done; 0 for a name or a value that a key file cannot hold, and nothing is changed.
    int Set(std::string_view section, std::string_view key, std::string_view value);
    // Of several keys all or, when one is refused, it does not matter which: the document is of no use then.
    enum class Change { Refused, None, Done };
    using Values = std::vector<std::pair<std::string_view, std::string_view>>;
    Change SetAll(std::string_view section, const Values& values);
    // The keys of a section as they are written, in the order of the file.
    std::vector<std::string> SectionKeys(std::string_view section) const;
    // All values of a section by the key's name in lower case.
    std::map<std::string, std::string> SectionValues(std::string_view section) const;

    // Names without line ends and without what marks a line as something else.
    static bool IsValidName(std::string_view name);
    static bool IsValidKey(std::string_view key);
    static bool IsValidValue(std::string_view value);

    // For many look-ups in one section: what Find() makes of its name.
    static uint32_t HashSection(std::string_view section);
    const std::string* Find(uint32_t sectionHash, std::string_view section, std::string_view key) const;

private:
    enum class Kind : uint8_t { Blank, Comment, Section, Key, Other };
    struct Line
    {
        std::string text; // without its end
        std::string end;  // "\n" or "\r\n"; that of the file's last line may be cut
        Kind kind = Kind::Other;
        size_t section = 0; // index in m_sections
    };
    struct Entry
    {
        uint32_t hash;
        size_t line;
        size_t section;
        std::string key; // as written
        std::string value;
    };

    void ReadLine(std::string_view text, std::string_view end);
    void IndexKey(size_t line);
    size_t SectionIndex(std::string_view name);
    Entry* FindEntry(uint32_t hash, std::string_view section, std::string_view key) const;
    void AddEntry(size_t line, size_t section, std::string_view key, std::string_view value);
    void GrowSlots();
    void PutSlot(size_t entry);
    void ReplaceValue(Entry& entry, std::string_view value);
    void AppendKey(std::string_view section, std::string_view key, std::string_view value);
    size_t LineBehindSection(std::string_view section) const;
    std::string LineEnd() const;
    void EndLastLine();
    void Reindex();
    bool IsUnderstood() const;

    bool m_bMark = false; // the text begins with a byte order mark
    std::vector<Line> m_lines;
    std::vector<std::string> m_sections{std::string()}; // as written; index 0 is before the first one
    std::unordered_map<std::string, size_t> m_sectionIndex{{std::string(), 0}}; // by name in lower case
    size_t m_nCurrent = 0; // section of the line that is read
    mutable std::vector<Entry> m_entries;
    std::vector<uint32_t> m_slots; // open addressing: index in m_entries + 1, 0 free
};
