#pragma once
// The entities that a document declares itself, for its references in attribute values: those to entities
// declared elsewhere have to stay what they are. Inside this folder only.
#include <map>
#include <string>
#include <string_view>

class xmlEntities
{
public:
    // An entity of the document's own text; the first of a name counts. 0 when there are more entities that
    // stand for others than the limit, which bounds how deep they can lie in each other.
    int Declare(std::string_view name, std::string_view text, bool parameter);
    // True when every reference in the text leads to text of the document's own.
    bool KnowsReferencesOf(std::string_view text) const;
    // False when a tag in some entity's text has a reference in it that is not known.
    bool KnowsReferencesInTags() const;
    // Appends an attribute's value as it is spelled in the document, with known references resolved and
    // the others as they are spelled. The parser has found no circle in it.
    void AppendValue(std::string& value, std::string_view spelled) const;

private:
    struct Entity
    {
        std::string text;
        mutable int known = -1; // 1, 0, or not found out yet
    };
    const Entity* Find(std::string_view name) const;
    bool Knows(std::string_view name) const;

    // Ordered, since names can be made to meet in a table of hashes.
    std::map<std::string, Entity, std::less<>> m_entities;
    int m_nNesting = 0;
};
