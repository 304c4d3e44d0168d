// Documents that others wrote, from Debian's packages docbook-xsl and shared-mime-info.
#include "support/xml/xmlFile.h"

#include <QXmlStreamReader>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using Path = std::filesystem::path;

std::vector<Path> documents()
{
    std::vector<Path> found;
    for (const char* folder : {"/usr/share/xml/docbook/stylesheet/docbook-xsl", "/usr/share/mime"})
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            if (entry.is_regular_file() &&
                (entry.path().extension() == ".xsl" || entry.path().extension() == ".xml"))
                found.push_back(entry.path());
    return found;
}

std::string read(const Path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

bool sameAttributes(const xmlBaseNode* one, const xmlBaseNode* other)
{
    const auto firstOf = [](const xmlBaseNode* node) {
        return const_cast<xmlBaseNode*>(node)->ToElement()->GetFirstAttribute();
    };
    const xmlAttribute* a = firstOf(one);
    const xmlAttribute* b = firstOf(other);
    for (; a && b; a = a->GetNext(), b = b->GetNext())
        if (strcmp(a->GetName(), b->GetName()) != 0 || *a != *b)
            return false;
    return !a && !b;
}

bool sameTree(const xmlBaseNode* one, const xmlBaseNode* other)
{
    if (one->GetType() != other->GetType() || strcmp(one->GetName(), other->GetName()) != 0 ||
        strcmp(one->GetText(), other->GetText()) != 0)
        return false;
    if (one->GetType() == xmlTypeElement && !sameAttributes(one, other))
        return false;
    const xmlBaseNode* a = one->GetFirstChild();
    const xmlBaseNode* b = other->GetFirstChild();
    for (; a && b; a = a->GetNext(), b = b->GetNext())
        if (!sameTree(a, b))
            return false;
    return !a && !b;
}

struct Count
{
    int elements = 0;
    int attributes = 0;
    int comments = 0;
    int references = 0;
    long letters = 0; // of text that is not blank
};

void count(const xmlBaseNode* node, Count& all)
{
    all.comments += node->GetType() == xmlTypeComment;
    all.references += node->GetType() == xmlTypeEntity;
    if (node->GetType() == xmlTypeText || node->GetType() == xmlTypeData)
        for (const char* letter = node->GetText(); *letter; ++letter)
            all.letters += !strchr(" \t\r\n", *letter);
    if (node->GetType() == xmlTypeElement) {
        ++all.elements;
        const xmlElement* element = const_cast<xmlBaseNode*>(node)->ToElement();
        for (const xmlAttribute* a = element->GetFirstAttribute(); a; a = a->GetNext())
            ++all.attributes;
    }
    for (const xmlBaseNode* child = node->GetFirstChild(); child; child = child->GetNext())
        count(child, all);
}

// As another reader sees it. False when it does not take the document.
bool countTokens(const std::string& text, Count& all)
{
    QXmlStreamReader tokens(QByteArray::fromRawData(text.data(), qsizetype(text.size())));
    tokens.setNamespaceProcessing(false);
    while (!tokens.atEnd()) {
        const QXmlStreamReader::TokenType token = tokens.readNext();
        all.elements += token == QXmlStreamReader::StartElement;
        all.comments += token == QXmlStreamReader::Comment;
        all.references += token == QXmlStreamReader::EntityReference;
        if (token == QXmlStreamReader::StartElement)
            all.attributes += int(tokens.attributes().size());
        if (token == QXmlStreamReader::Characters)
            for (const char letter : tokens.text().toUtf8())
                all.letters += !strchr(" \t\r\n", letter);
    }
    return !tokens.hasError();
}

// The declaration stands so in the text, from its beginning to its end.
bool isDocTypeOf(const std::string& text, const std::string& docType)
{
    const size_t last = docType.find_last_not_of(" \n", docType.size() - 2);
    const bool hasSubset = docType.find('[') != docType.npos;
    return text.compare(text.find("<!DOCTYPE"), docType.size(), docType) == 0 && docType.back() == '>' &&
           hasSubset == (docType[last] == ']');
}

TEST(Corpus, DocumentsOfOthersAreTheSameAfterLoadSaveAndLoad)
{
    int all = 0, withSubset = 0;
    for (const Path& path : documents()) {
        const std::string text = read(path);
        xmlDocument first, second;
        ASSERT_EQ(first.ParseDocument(text.data(), int(text.size())), 1)
            << path << ": " << first.GetErrorText() << ", line " << first.GetErrorLine();
        const chString saved = first.ExportToText();
        ASSERT_EQ(second.ParseDocument(saved), 1) << path << ": " << second.GetErrorText();
        EXPECT_TRUE(sameTree(&first, &second)) << path;
        EXPECT_TRUE(second.ExportToText() == saved) << path;
        ++all;
        const xmlBaseNode* node = first.GetFirstChild();
        while (node && node->GetType() != xmlTypeDocType)
            node = node->GetNext();
        if (!node)
            continue;
        EXPECT_TRUE(isDocTypeOf(text, node->GetText())) << path;
        withSubset += strchr(node->GetText(), '[') != nullptr;
    }
    EXPECT_GT(all, 1000);
    EXPECT_GT(withSubset, 20);
}

TEST(Corpus, NothingOfTheDocumentsOfOthersIsLost)
{
    int compared = 0;
    for (const Path& path : documents()) {
        const std::string text = read(path);
        Count theirs, ours;
        // Not those whose attributes refer to what is declared in another file.
        if (!countTokens(text, theirs))
            continue;
        xmlDocument document;
        document.ParseDocument(text.data(), int(text.size()));
        count(&document, ours);
        EXPECT_EQ(ours.elements, theirs.elements) << path;
        EXPECT_EQ(ours.attributes, theirs.attributes) << path;
        EXPECT_EQ(ours.references, theirs.references) << path;
        EXPECT_EQ(ours.letters, theirs.letters) << path;
        ++compared;
    }
    EXPECT_GT(compared, 1000);
}

} // namespace
