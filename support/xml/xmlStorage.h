#pragma once
// Where the nodes, names and texts of one document live. Memory is taken in chunks and given back with
// the document; removed nodes and attributes are used again. Inside this folder only.
#include "support/xml/xmlElement.h"
#include "support/xml/xmlTextNode.h"

#include <array>
#include <stddef.h>
#include <string_view>
#include <vector>

class xmlStorage
{
public:
    explicit xmlStorage(xmlDocument* document) : m_pDocument(document) {}
    ~xmlStorage();
    xmlStorage(const xmlStorage&) = delete;
    xmlStorage& operator=(const xmlStorage&) = delete;

    xmlDocument* GetDocument() const { return m_pDocument; }

    xmlElement* NewElement(std::string_view name);
    // Text, data, comment, instruction, document type, entity reference.
    xmlTextNode* NewTextNode(xmlType type);
    // The name is one that Intern gave.
    xmlAttribute* NewAttribute(xmlElement* element, std::string_view name);
    // The nodes below parent end. The parent's own links are cleared.
    void FreeChildren(xmlBaseNode* parent);
    // An unlinked node and all below it end.
    void FreeTree(xmlBaseNode* node);
    void FreeAttribute(xmlAttribute* attribute);

    // Memory is wanted for the nodes of so many bytes of text.
    void ExpectText(size_t size);
    // One copy of each different text, with a terminator.
    std::string_view Intern(std::string_view text);
    void SetName(xmlBaseNode* node, std::string_view name);
    // text has to live as long as the storage.
    static void SetStored(phraseStringA& value, std::string_view text);

    // Room for a text of up to size bytes and its terminator. What is used of it is kept by KeepText.
    char* ReserveText(size_t size);
    std::string_view KeepText(size_t size);

    // Some value has a text of its own, which the end of the document has to give back.
    void NoteOwnText() { m_bOwnTexts = true; }
    bool HasOwnTexts() const { return m_bOwnTexts; }
    // Everything goes; no node of the document may be used any more.
    void Reset();

private:
    struct FreeBlock
    {
        FreeBlock* next;
    };

    void* TakeBlock(FreeBlock*& list, size_t size);
    static void GiveBlock(FreeBlock*& list, void* block);
    void FreeNode(xmlBaseNode* node);
    void NewChunk(size_t size);
    size_t FindSlot(std::string_view text) const;
    void GrowNames();
    std::string_view InternNew(std::string_view text);

    xmlDocument* m_pDocument;
    bool m_bOwnTexts = false;
    bool m_bLarge = false;
    std::vector<void*> m_chunks;
    char* m_pFree = nullptr; // the rest of the newest chunk
    char* m_pEnd = nullptr;
    FreeBlock* m_pFreeElements = nullptr;
    FreeBlock* m_pFreeTextNodes = nullptr;
    FreeBlock* m_pFreeAttributes = nullptr;
    std::vector<std::string_view> m_names; // a hash table, its size a power of two
    size_t m_nNameCount = 0;
    std::array<std::string_view, 64> m_recent; // some of the names, by their ends and lengths
};
