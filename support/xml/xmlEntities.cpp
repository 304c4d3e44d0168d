#include "support/xml/xmlEntities.h"

#include <QChar>
#include <QString>
#include <stdlib.h>

namespace {

const int NESTING_LIMIT = 1024;

struct PredefinedEntity
{
    std::string_view name;
    char letter;
};
const PredefinedEntity PREDEFINED[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

char predefined(std::string_view name)
{
    for (const PredefinedEntity& entity : PREDEFINED)
        if (entity.name == name)
            return entity.letter;
    return 0;
}

// Calls plain(text) and reference(name) for the parts of the text in their order. Stops when one of them
// answers false, and answers that.
template <class Plain, class Reference>
bool forEachPart(std::string_view text, Plain plain, Reference reference)
{
    while (!text.empty()) {
        const size_t start = text.find('&');
        if (start != 0 && !plain(text.substr(0, start)))
            return false;
        if (start == text.npos)
            return true;
        const size_t end = text.find(';', start);
        if (end == text.npos)
            return true;
        if (!reference(text.substr(start + 1, end - start - 1)))
            return false;
        text.remove_prefix(end + 1);
    }
    return true;
}

bool standsForOthers(std::string_view text, bool parameter)
{
    if (parameter && text.find('%') != text.npos)
        return true;
    return !forEachPart(
        text, [](std::string_view) { return true; },
        [](std::string_view name) { return name.empty() || name[0] == '#'; });
}

void appendLetter(std::string& value, std::string_view number)
{
    const bool hex = number[0] == 'x';
    const char32_t code = char32_t(strtoul(std::string(number.substr(hex)).c_str(), nullptr, hex ? 16 : 10));
    value += QString::fromUcs4(&code, 1).toStdString();
}

// Each line end and tab of a value reads as a blank.
void appendPlain(std::string& value, std::string_view text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        i += pair;
        value += text[i] == '\n' || text[i] == '\r' || text[i] == '\t' ? ' ' : text[i];
    }
}

// Calls found(value) for the quoted parts of the tags in the text until one answers false.
template <class Found>
bool forEachValue(std::string_view text, Found found)
{
    size_t at = text.find('<');
    while ((at = text.find_first_of("<>\"'", at)) != text.npos) {
        if (text[at] == '<' || text[at] == '>') {
            at = text[at] == '<' ? at + 1 : text.find('<', at);
            continue;
        }
        const size_t end = text.find(text[at], at + 1);
        if (!found(text.substr(at + 1, end == text.npos ? end : end - at - 1)))
            return false;
        at = end == text.npos ? end : end + 1;
    }
    return true;
}

} // namespace

int xmlEntities::Declare(std::string_view name, std::string_view text, bool parameter)
{
    if (standsForOthers(text, parameter) && ++m_nNesting > NESTING_LIMIT)
        return 0;
    if (!parameter)
        m_entities.emplace(name, Entity{std::string(text)});
    return 1;
}

const xmlEntities::Entity* xmlEntities::Find(std::string_view name) const
{
    const auto found = m_entities.find(name);
    return found == m_entities.end() ? nullptr : &found->second;
}

bool xmlEntities::Knows(std::string_view name) const
{
    if (!name.empty() && (name[0] == '#' || predefined(name)))
        return true;
    const Entity* entity = Find(name);
    if (!entity)
        return false;
    if (entity->known < 0) {
        entity->known = 1; // also for those that come back to it, which the parser refuses
        entity->known = KnowsReferencesOf(entity->text);
    }
    return entity->known == 1;
}

bool xmlEntities::KnowsReferencesOf(std::string_view text) const
{
    return forEachPart(
        text, [](std::string_view) { return true; }, [this](std::string_view name) { return Knows(name); });
}

bool xmlEntities::KnowsReferencesInTags() const
{
    for (const auto& [name, entity] : m_entities)
        if (!forEachValue(entity.text, [this](std::string_view value) { return KnowsReferencesOf(value); }))
            return false;
    return true;
}

void xmlEntities::AppendValue(std::string& value, std::string_view spelled) const
{
    const auto plain = [&value](std::string_view text) {
        appendPlain(value, text);
        return true;
    };
    const auto reference = [this, &value](std::string_view name) {
        const Entity* entity = Find(name);
        if (!name.empty() && name[0] == '#')
            appendLetter(value, name.substr(1));
        else if (predefined(name))
            value += predefined(name);
        else if (entity)
            AppendValue(value, entity->text);
        else
            value.append("&").append(name).append(";");
        return true;
    };
    forEachPart(spelled, plain, reference);
}
