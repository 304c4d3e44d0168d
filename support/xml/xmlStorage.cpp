#include "support/xml/xmlStorage.h"

#include <QRandomGenerator>
#include <algorithm>
#include <new>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

namespace {

const size_t FIRST_CHUNK = 2 * 1024; // a menu or a list of the phone fits in a few of these
const size_t LARGEST_CHUNK = 64 * 1024;
const size_t LARGE_TEXT = 512 * 1024; // its nodes take a few huge pages, not a thousand small ones one by one
const size_t HUGE_PAGE = 2 * 1024 * 1024;
const size_t HUGE_CHUNK = 2 * HUGE_PAGE;
const size_t FIRST_NAME_TABLE = 64;
const size_t ALIGNMENT = alignof(xmlElement);

size_t aligned(size_t size)
{
    return (size + ALIGNMENT - 1) & ~(ALIGNMENT - 1);
}

__extension__ using Product = unsigned __int128;

// Salted, so that nobody can make a document whose names all meet in one place.
size_t hashOf(std::string_view text)
{
    static const uint64_t salt = QRandomGenerator::system()->generate64();
    static const uint64_t factor = QRandomGenerator::system()->generate64() | 1;
    uint64_t hash = salt ^ text.size();
    const auto mix = [&hash](uint64_t word) {
        const Product product = Product(hash ^ word) * factor;
        hash = uint64_t(product) ^ uint64_t(product >> 64);
    };
    for (; text.size() >= sizeof(uint64_t); text.remove_prefix(sizeof(uint64_t))) {
        uint64_t word;
        memcpy(&word, text.data(), sizeof(word));
        mix(word);
    }
    uint64_t rest = 0;
    for (const char letter : text)
        rest = (rest << 8) | (unsigned char)letter;
    mix(rest);
    return size_t(hash);
}

// Where the system has none, it gives ordinary ones.
void* hugePages(size_t& size)
{
    size = (size + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
    void* pages = aligned_alloc(HUGE_PAGE, size);
    if (pages)
        madvise(pages, size, MADV_HUGEPAGE);
    return pages;
}

} // namespace

xmlStorage::~xmlStorage()
{
    for (void* chunk : m_chunks)
        free(chunk);
}

void xmlStorage::Reset()
{
    for (void* chunk : m_chunks)
        free(chunk);
    m_chunks.clear();
    m_pFree = m_pEnd = nullptr;
    m_pFreeElements = m_pFreeTextNodes = m_pFreeAttributes = nullptr;
    m_names.clear();
    m_recent.fill(std::string_view());
    m_nNameCount = 0;
    m_bOwnTexts = m_bLarge = false;
}

void xmlStorage::NewChunk(size_t size)
{
    const size_t growing = std::min(FIRST_CHUNK << std::min(m_chunks.size(), size_t(8)), LARGEST_CHUNK);
    size = std::max(aligned(size), m_bLarge ? HUGE_CHUNK : growing);
    m_pFree = static_cast<char*>(m_bLarge ? hugePages(size) : malloc(size));
    if (!m_pFree)
        throw std::bad_alloc();
    m_pEnd = m_pFree + size;
    m_chunks.push_back(m_pFree);
}

void xmlStorage::ExpectText(size_t size)
{
    m_bLarge = size >= LARGE_TEXT;
}

void* xmlStorage::TakeBlock(FreeBlock*& list, size_t size)
{
    if (list) {
        void* block = list;
        list = list->next;
        return block;
    }
    char* start = reinterpret_cast<char*>(aligned(reinterpret_cast<size_t>(m_pFree)));
    if (!m_pFree || start + size > m_pEnd) {
        NewChunk(size);
        start = m_pFree;
    }
    m_pFree = start + size;
    return start;
}

void xmlStorage::GiveBlock(FreeBlock*& list, void* block)
{
    list = new (block) FreeBlock{list};
}

char* xmlStorage::ReserveText(size_t size)
{
    if (!m_pFree || size + 1 > size_t(m_pEnd - m_pFree))
        NewChunk(size + 1);
    return m_pFree;
}

std::string_view xmlStorage::KeepText(size_t size)
{
    const std::string_view text(m_pFree, size);
    m_pFree[size] = '\0';
    m_pFree += size + 1;
    return text;
}

xmlElement* xmlStorage::NewElement(std::string_view name)
{
    xmlElement* element = new (TakeBlock(m_pFreeElements, sizeof(xmlElement))) xmlElement(this);
    SetName(element, name);
    return element;
}

xmlTextNode* xmlStorage::NewTextNode(xmlType type)
{
    return new (TakeBlock(m_pFreeTextNodes, sizeof(xmlTextNode))) xmlTextNode(type, this);
}

xmlAttribute* xmlStorage::NewAttribute(xmlElement* element, std::string_view name)
{
    xmlAttribute* attribute = new (TakeBlock(m_pFreeAttributes, sizeof(xmlAttribute))) xmlAttribute;
    attribute->m_pHolder = element;
    attribute->m_pName = name.data();
    attribute->m_nNameLength = int(name.size());
    return attribute;
}

void xmlStorage::SetName(xmlBaseNode* node, std::string_view name)
{
    const std::string_view kept = Intern(name);
    node->m_pName = kept.data();
    node->m_nNameLength = int(kept.size());
}

void xmlStorage::SetStored(phraseStringA& value, std::string_view text)
{
    value.m_pText = text.data();
    value.m_nLength = int(text.size());
    value.m_bNull = false;
}

void xmlStorage::FreeAttribute(xmlAttribute* attribute)
{
    attribute->~xmlAttribute();
    GiveBlock(m_pFreeAttributes, attribute);
}

void xmlStorage::FreeNode(xmlBaseNode* node)
{
    if (node->GetType() != xmlTypeElement) {
        xmlTextNode* text = static_cast<xmlTextNode*>(node);
        text->~xmlTextNode();
        GiveBlock(m_pFreeTextNodes, text);
        return;
    }
    xmlElement* element = static_cast<xmlElement*>(node);
    for (xmlAttribute* list : {element->m_pFirstAttribute, element->m_pAsked})
        while (list) {
            xmlAttribute* next = list->m_pNext;
            FreeAttribute(list);
            list = next;
        }
    element->~xmlElement();
    GiveBlock(m_pFreeElements, element);
}

// From the leaves up, without recursion: a node that lost its children is a leaf itself.
void xmlStorage::FreeChildren(xmlBaseNode* parent)
{
    xmlBaseNode* node = parent->m_pFirst;
    while (node) {
        if (node->m_pFirst) {
            node = node->m_pFirst;
            continue;
        }
        xmlBaseNode* above = node->m_pParent;
        xmlBaseNode* next = node->m_pNext;
        FreeNode(node);
        above->m_pFirst = next;
        node = next || above == parent ? next : above;
    }
    parent->m_pLast = nullptr;
}

void xmlStorage::FreeTree(xmlBaseNode* node)
{
    FreeChildren(node);
    FreeNode(node);
}

size_t xmlStorage::FindSlot(std::string_view text) const
{
    size_t slot = hashOf(text) & (m_names.size() - 1);
    while (m_names[slot].data() && m_names[slot] != text)
        slot = (slot + 1) & (m_names.size() - 1);
    return slot;
}

void xmlStorage::GrowNames()
{
    std::vector<std::string_view> old(std::max(FIRST_NAME_TABLE, m_names.size() * 2));
    old.swap(m_names);
    for (const std::string_view name : old)
        if (name.data())
            m_names[FindSlot(name)] = name;
}

// A document has few names, which come again and again.
std::string_view xmlStorage::Intern(std::string_view text)
{
    const size_t ends = text.empty() ? 0 : (unsigned char)text.front() + 7u * (unsigned char)text.back();
    std::string_view& recent = m_recent[(ends + 31 * text.size()) % m_recent.size()];
    if (!recent.data() || recent != text)
        recent = InternNew(text);
    return recent;
}

std::string_view xmlStorage::InternNew(std::string_view text)
{
    if (2 * (m_nNameCount + 1) > m_names.size())
        GrowNames();
    const size_t slot = FindSlot(text);
    if (!m_names[slot].data()) {
        char* copy = ReserveText(text.size());
        std::copy(text.begin(), text.end(), copy);
        m_names[slot] = KeepText(text.size());
        ++m_nNameCount;
    }
    return m_names[slot];
}
