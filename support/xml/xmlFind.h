#pragma once
// Finding elements and their content. Every function takes a null node and then finds nothing.
#include "support/xml/xmlElement.h"
#include <cstddef>

namespace NUX_XmlHelper {
// One name of a list of names that ends with 0, NULL, nullptr or an empty text.
inline phraseConstTextA ListName(const char* name)
{
    return phraseConstTextA(name);
}
inline phraseConstTextA ListName(const chString& name)
{
    return phraseConstTextA(name);
}
inline phraseConstTextA ListName(const phraseConstTextA& name)
{
    return name;
}
inline phraseConstTextA ListName(const phraseStringA& name)
{
    return phraseConstTextA(name);
}
inline phraseConstTextA ListName(std::nullptr_t)
{
    return phraseConstTextA();
}
inline phraseConstTextA ListName(int)
{
    return phraseConstTextA();
}
inline phraseConstTextA ListName(long)
{
    return phraseConstTextA();
}

NUX_API const xmlBaseNode* Walk(const xmlBaseNode* node, const phraseConstTextA* names, size_t count);
NUX_API xmlElement* FindFromRoot(const xmlBaseNode* node, const phraseConstTextA* names, size_t count);
NUX_API chString FirstChildText(const xmlBaseNode* node, xmlType type);
} // namespace NUX_XmlHelper

// Walks down from node along the names, each the first child of that name; null when one is missing or
// no name is given. On a document the first name is that of an element at document level.
template <class... Names>
xmlElement* xmlFindElementFromRoot(const xmlBaseNode* node, const Names&... names)
{
    const phraseConstTextA list[] = {NUX_XmlHelper::ListName(names)..., phraseConstTextA()};
    return NUX_XmlHelper::FindFromRoot(node, list, sizeof...(names));
}

// Walks down as above (no name: node itself) and gives the text of the first child there when that
// child is data, otherwise the empty text.
template <class... Names>
chString xmlGetDataContent(const xmlBaseNode* node, const Names&... names)
{
    const phraseConstTextA list[] = {NUX_XmlHelper::ListName(names)..., phraseConstTextA()};
    return NUX_XmlHelper::FirstChildText(NUX_XmlHelper::Walk(node, list, sizeof...(names)), xmlTypeData);
}

// The same for a first child that is text.
template <class... Names>
chString xmlGetTextContent(const xmlBaseNode* node, const Names&... names)
{
    const phraseConstTextA list[] = {NUX_XmlHelper::ListName(names)..., phraseConstTextA()};
    return NUX_XmlHelper::FirstChildText(NUX_XmlHelper::Walk(node, list, sizeof...(names)), xmlTypeText);
}

// The first element of that name below node, in document order.
NUX_API xmlElement* xmlFindElementByName(const xmlBaseNode* node, const phraseConstTextA& name);
// The next element beside node.
NUX_API xmlElement* xmlGetNextElement(const xmlBaseNode* node);

// The content value: of an element its first text or data child, of a text or data node its own.
// PeekValue: 0 and an empty value when there is none. SetValue: an element without one gets a text child.
NUX_API int PeekValue(const xmlBaseNode* node, chString& value);
NUX_API int SetValue(xmlBaseNode* node, const chString& value);

// The element that text holds, in a document of its own; null when it is not well-formed. The caller
// ends it with xmlFreeElement, which removes an element of any other document from it.
NUX_API xmlElement* xmlParseElementFromText(const char* text);
NUX_API void xmlFreeElement(xmlElement* element);
