#include "host/services/keyfiles/keyFile.h"
#include <algorithm>
#include <cstring>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";
constexpr uint32_t kHashStart = 1;
constexpr uint64_t kHashFactor = 0x9E3779B97F4A7C15; // Fibonacci hashing
constexpr uint64_t kSmallLetters = 0x2020202020202020;
constexpr size_t kFirstSlots = 32;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Eight letters at a time, in either case: names that differ are told apart when they are compared.
uint32_t hashOn(uint32_t hash, std::string_view text)
{
    uint64_t sum = hash;
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), sizeof sum))) {
        uint64_t letters = 0;
        memcpy(&letters, text.data(), std::min(text.size(), sizeof letters));
        sum = (sum ^ (letters | kSmallLetters)) * kHashFactor;
        sum ^= sum >> 32;
    }
    return static_cast<uint32_t>(sum);
}

bool sameName(std::string_view left, std::string_view right)
{
    // Most are asked for as they are written.
    return left == right ||
           (left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                      [](char a, char b) { return lower(a) == lower(b); }));
}

std::string inLowerCase(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isQuoted(std::string_view value)
{
    return value.size() >= 2 && value.front() == '"' && value.back() == '"';
}

std::string_view unquoted(std::string_view written)
{
    return isQuoted(written) ? written.substr(1, written.size() - 2) : written;
}

std::string asWritten(std::string_view value)
{
    const bool needsQuotes = isQuoted(value) || trimmed(value).size() != value.size();
    return needsQuotes ? '"' + std::string(value) + '"' : std::string(value);
}

// Bytes of the UTF-8 letter at the start of text; 0 when there is none.
size_t letterLength(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const size_t length = lead < 0x80   ? 1
                          : lead < 0xC2 ? 0
                          : lead < 0xE0 ? 2
                          : lead < 0xF0 ? 3
                          : lead < 0xF5 ? 4
                                        : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

bool isPlainText(std::string_view text)
{
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text[0]);
        const size_t length = letterLength(text);
        if (length == 0 || (first < 0x20 && first != '\t') || first == 0x7F)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

bool endsLine(std::string_view end)
{
    return !end.empty() && end.back() == '\n';
}

// The file may end in the middle of a line's end, and some editors write a return twice.
size_t lineEndSize(std::string_view line)
{
    const size_t newLine = line.back() == '\n' ? 1 : 0;
    const size_t last = line.substr(0, line.size() - newLine).find_last_not_of('\r');
    return last == std::string_view::npos ? line.size() : line.size() - last - 1;
}

} // namespace

int keyFile::Parse(std::string_view text)
{
    *this = keyFile();
    if (text.size() > SIZE_LIMIT || text.find('\0') != std::string_view::npos)
        return 0;
    m_bMark = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
    if (m_bMark)
        text.remove_prefix(kByteOrderMark.size());
    while (!text.empty()) {
        const size_t newLine = text.find('\n');
        const std::string_view whole =
            text.substr(0, newLine == std::string_view::npos ? newLine : newLine + 1);
        const size_t size = whole.size() - lineEndSize(whole);
        ReadLine(whole.substr(0, size), whole.substr(size));
        text.remove_prefix(whole.size());
    }
    if (IsUnderstood())
        return 1;
    *this = keyFile();
    return 0;
}

// A file that holds lines, but not one that means anything, is something else than a key file; so is one
// with lines that are not even text.
bool keyFile::IsUnderstood() const
{
    bool anyOther = false;
    bool anyKnown = false;
    for (const Line& line : m_lines) {
        if (line.kind == Kind::Other && !isPlainText(line.text))
            return false;
        anyOther = anyOther || line.kind == Kind::Other;
        anyKnown = anyKnown || (line.kind != Kind::Other && line.kind != Kind::Blank);
    }
    return anyKnown || !anyOther;
}

void keyFile::ReadLine(std::string_view text, std::string_view end)
{
    Line line;
    line.text = text;
    line.end = end;
    const std::string_view content = trimmed(line.text);
    if (content.empty()) {
        line.kind = Kind::Blank;
    } else if (content[0] == ';' || content[0] == '#') {
        line.kind = Kind::Comment;
    } else if (content[0] == '[' && content.find(']') != std::string_view::npos) {
        line.kind = Kind::Section;
        m_nCurrent = SectionIndex(trimmed(content.substr(1, content.find(']') - 1)));
    } else if (content.find('=') != std::string_view::npos && content[0] != '=') {
        line.kind = Kind::Key;
    }
    line.section = m_nCurrent;
    m_lines.push_back(std::move(line));
    if (m_lines.back().kind == Kind::Key)
        IndexKey(m_lines.size() - 1);
}

void keyFile::IndexKey(size_t line)
{
    const std::string_view text = m_lines[line].text;
    const size_t sign = text.find('=');
    AddEntry(line, m_lines[line].section, trimmed(text.substr(0, sign)),
             unquoted(trimmed(text.substr(sign + 1))));
}

size_t keyFile::SectionIndex(std::string_view name)
{
    const auto [place, isNew] = m_sectionIndex.try_emplace(inLowerCase(name), m_sections.size());
    if (isNew)
        m_sections.emplace_back(name);
    return place->second;
}

uint32_t keyFile::HashSection(std::string_view section)
{
    return hashOn(kHashStart, section);
}

const std::string* keyFile::Find(std::string_view section, std::string_view key) const
{
    return Find(HashSection(section), section, key);
}

const std::string* keyFile::Find(uint32_t sectionHash, std::string_view section, std::string_view key) const
{
    const Entry* entry = FindEntry(hashOn(sectionHash, key), section, key);
    return entry ? &entry->value : nullptr;
}

keyFile::Entry* keyFile::FindEntry(uint32_t hash, std::string_view section, std::string_view key) const
{
    if (m_slots.empty())
        return nullptr;
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = hash & mask; m_slots[slot] != 0; slot = (slot + 1) & mask) {
        Entry& entry = m_entries[m_slots[slot] - 1];
        if (entry.hash == hash && sameName(entry.key, key) && sameName(m_sections[entry.section], section))
            return &entry;
    }
    return nullptr;
}

void keyFile::AddEntry(size_t line, size_t section, std::string_view key, std::string_view value)
{
    const uint32_t hash = hashOn(HashSection(m_sections[section]), key);
    if (FindEntry(hash, m_sections[section], key))
        return;
    m_entries.push_back({hash, line, section, std::string(key), std::string(value)});
    if (m_entries.size() * 2 > m_slots.size())
        GrowSlots();
    else
        PutSlot(m_entries.size() - 1);
}

void keyFile::GrowSlots()
{
    m_slots.assign(std::max(kFirstSlots, m_slots.size() * 2), 0);
    for (size_t i = 0; i < m_entries.size(); ++i)
        PutSlot(i);
}

void keyFile::PutSlot(size_t entry)
{
    const size_t mask = m_slots.size() - 1;
    size_t slot = m_entries[entry].hash & mask;
    while (m_slots[slot] != 0)
        slot = (slot + 1) & mask;
    m_slots[slot] = static_cast<uint32_t>(entry + 1);
}

bool keyFile::IsValidName(std::string_view name)
{
    return name.find_first_of(std::string_view("\r\n]\0", 4)) == std::string_view::npos &&
           trimmed(name).size() == name.size();
}

bool keyFile::IsValidKey(std::string_view key)
{
    return !key.empty() && key.find_first_of(std::string_view("\r\n=\0", 4)) == std::string_view::npos &&
           trimmed(key).size() == key.size() &&
           std::string_view("[;#").find(key[0]) == std::string_view::npos &&
           key.substr(0, kByteOrderMark.size()) != kByteOrderMark;
}

bool keyFile::IsValidValue(std::string_view value)
{
    return value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

int keyFile::Set(std::string_view section, std::string_view key, std::string_view value)
{
    if (!IsValidName(section) || !IsValidKey(key) || !IsValidValue(value))
        return 0;
    if (Entry* entry = FindEntry(hashOn(HashSection(section), key), section, key))
        ReplaceValue(*entry, value);
    else
        AppendKey(section, key, value);
    return 1;
}

keyFile::Change keyFile::SetAll(std::string_view section, const Values& values)
{
    Change change = Change::None;
    for (const auto& [key, value] : values) {
        const std::string* old = Find(section, key);
        if (old && *old == value)
            continue;
        if (!Set(section, key, value))
            return Change::Refused;
        change = Change::Done;
    }
    return change;
}

// The key, and the blanks around its sign, stay as they were written.
void keyFile::ReplaceValue(Entry& entry, std::string_view value)
{
    std::string& text = m_lines[entry.line].text;
    size_t start = text.find_first_not_of(kBlanks, text.find('=') + 1);
    if (start == std::string::npos)
        start = text.size();
    text.replace(start, std::string::npos, asWritten(value));
    entry.value = value;
}

void keyFile::AppendKey(std::string_view section, std::string_view key, std::string_view value)
{
    const bool known = m_sectionIndex.count(inLowerCase(section)) != 0;
    const std::string end = LineEnd();
    size_t place = known ? LineBehindSection(section) : m_lines.size();
    if (place == m_lines.size())
        EndLastLine();
    if (!known) {
        if (!m_lines.empty() && m_lines.back().kind != Kind::Blank)
            ReadLine("", end);
        ReadLine('[' + std::string(section) + ']', end);
        place = m_lines.size();
    }
    Line line;
    line.text = std::string(key) + '=' + asWritten(value);
    line.end = end;
    line.kind = Kind::Key;
    line.section = SectionIndex(section);
    m_lines.insert(m_lines.begin() + static_cast<long>(place), std::move(line));
    Reindex();
}

// Behind the last line of the section's first part that is not blank.
size_t keyFile::LineBehindSection(std::string_view section) const
{
    size_t place = 0;
    size_t i = 0;
    while (i < m_lines.size() && !sameName(m_sections[m_lines[i].section], section))
        ++i;
    for (; i < m_lines.size() && sameName(m_sections[m_lines[i].section], section); ++i) {
        if (m_lines[i].kind != Kind::Blank)
            place = i + 1;
    }
    return place;
}

std::string keyFile::LineEnd() const
{
    const bool withReturn = !m_lines.empty() && m_lines.front().end.size() > 1;
    return withReturn ? "\r\n" : "\n";
}

void keyFile::EndLastLine()
{
    if (!m_lines.empty() && !endsLine(m_lines.back().end))
        m_lines.back().end = LineEnd();
}

void keyFile::Reindex()
{
    m_entries.clear();
    m_slots.clear();
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].kind == Kind::Key)
            IndexKey(i);
    }
}

std::vector<std::string> keyFile::SectionKeys(std::string_view section) const
{
    std::vector<std::string> keys;
    for (const Entry& entry : m_entries) {
        if (sameName(m_sections[entry.section], section))
            keys.push_back(entry.key);
    }
    return keys;
}

std::map<std::string, std::string> keyFile::SectionValues(std::string_view section) const
{
    std::map<std::string, std::string> values;
    for (const Entry& entry : m_entries) {
        if (!sameName(m_sections[entry.section], section))
            continue;
        values[inLowerCase(entry.key)] = entry.value;
    }
    return values;
}

std::string keyFile::Text() const
{
    std::string text(m_bMark ? kByteOrderMark : std::string_view());
    for (const Line& line : m_lines)
        text.append(line.text).append(line.end);
    return text;
}
