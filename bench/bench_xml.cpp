// Loading and writing documents: a large one of 1 MB, and one of the size of a menu. And what the worst
// documents take that a server may send.
#include "bench/ratioReporter.h"
#include "support/xml/xmlFile.h"
#include "tests/xml/hostileDocuments.h"

#include <QByteArray>
#include <QDomDocument>
#include <QFile>
#include <QTemporaryDir>
#include <expat.h>
#include <pugixml.hpp>
#include <sstream>

namespace {

// A list as the phone keeps them, of about the given size.
QByteArray listOf(int bytes)
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<contacts version=\"2\">\n";
    for (int i = 0; text.size() < bytes; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "    <contact name=\"Person " + number + "\" number=\"0049301234" + number +
                "\" line=\"1\" ring=\"\">\n        <photo path=\"/rundata/data/photo" + number +
                ".jpg\"/>\n        <note>Desk " + number +
                ", d\xc3\xa9j\xc3\xa0 vu &amp; more</note>\n    </contact>\n";
    }
    return text + "</contacts>\n";
}

class Documents
{
public:
    Documents()
    {
        write(largePath(), listOf(1024 * 1024));
        write(smallPath(), listOf(2048));
    }
    QByteArray largePath() const { return m_folder.filePath("large.xml").toUtf8(); }
    QByteArray smallPath() const { return m_folder.filePath("small.xml").toUtf8(); }

private:
    static void write(const QByteArray& path, const QByteArray& text)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no room for the documents");
    }
    QTemporaryDir m_folder;
};

QByteArray readAll(const QByteArray& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void loadXmlFile(benchmark::State& state, const QByteArray& path)
{
    for (auto _ : state) {
        xmlFile file;
        if (!file.LoadFromFile(path))
            state.SkipWithError("not loaded");
    }
}

void loadQDomDocument(benchmark::State& state, const QByteArray& path)
{
    for (auto _ : state) {
        QDomDocument document;
        if (!document.setContent(readAll(path)))
            state.SkipWithError("not loaded");
    }
}

void loadPugixml(benchmark::State& state, const QByteArray& path)
{
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_file(path.constData(), pugi::parse_full))
            state.SkipWithError("not loaded");
    }
}

// The parser under xmlFile, by itself.
void readTokens(benchmark::State& state, const QByteArray& path)
{
    const auto ignoreTag = [](void*, const char*, const char**) {};
    const auto ignoreEnd = [](void*, const char*) {};
    const auto ignoreText = [](void*, const char*, int) {};
    for (auto _ : state) {
        const QByteArray text = readAll(path);
        XML_Parser parser = XML_ParserCreate("UTF-8");
        XML_SetElementHandler(parser, ignoreTag, ignoreEnd);
        XML_SetCharacterDataHandler(parser, ignoreText);
        if (XML_Parse(parser, text.constData(), int(text.size()), true) != XML_STATUS_OK)
            state.SkipWithError("not read");
        XML_ParserFree(parser);
    }
}

// Read or refused, whichever it is.
void loadHostile(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        xmlDocument document;
        benchmark::DoNotOptimize(document.ParseDocument(text.data(), int(text.size())));
    }
}

void writeXmlFile(benchmark::State& state, const QByteArray& path)
{
    xmlFile file;
    file.LoadFromFile(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(file.ExportToText());
}

void writeQDomDocument(benchmark::State& state, const QByteArray& path)
{
    QDomDocument document;
    document.setContent(readAll(path));
    for (auto _ : state)
        benchmark::DoNotOptimize(document.toByteArray(4));
}

void writePugixml(benchmark::State& state, const QByteArray& path)
{
    pugi::xml_document document;
    document.load_file(path.constData(), pugi::parse_full);
    for (auto _ : state) {
        std::ostringstream text;
        document.save(text, "    ");
        benchmark::DoNotOptimize(text.str());
    }
}

// The way a list is filled: every record, each of its attributes by name.
void walkXmlFile(benchmark::State& state, const QByteArray& path)
{
    xmlFile file;
    file.LoadFromFile(path);
    for (auto _ : state) {
        int letters = 0;
        xmlElement* contact = xmlFindElementFromRoot(&file, "contacts", "contact", 0);
        for (; contact; contact = xmlGetNextElement(contact))
            for (const char* name : {"name", "number", "line", "none"})
                letters += contact->GetAttributeValue(name).GetLength();
        benchmark::DoNotOptimize(letters);
    }
}

void walkQDomDocument(benchmark::State& state, const QByteArray& path)
{
    QDomDocument document;
    document.setContent(readAll(path));
    for (auto _ : state) {
        qsizetype letters = 0;
        QDomElement contact = document.documentElement().firstChildElement("contact");
        for (; !contact.isNull(); contact = contact.nextSiblingElement())
            for (const char* name : {"name", "number", "line", "none"})
                letters += contact.attribute(name).size();
        benchmark::DoNotOptimize(letters);
    }
}

void walkPugixml(benchmark::State& state, const QByteArray& path)
{
    pugi::xml_document document;
    document.load_file(path.constData(), pugi::parse_full);
    for (auto _ : state) {
        size_t letters = 0;
        pugi::xml_node contact = document.child("contacts").child("contact");
        for (; contact; contact = contact.next_sibling())
            for (const char* name : {"name", "number", "line", "none"})
                letters += strlen(contact.attribute(name).value());
        benchmark::DoNotOptimize(letters);
    }
}

using Measured = void (*)(benchmark::State&, const QByteArray&);

void registerFor(const char* name, Measured measured, const Documents& documents)
{
    const auto add = [&](const char* size, const QByteArray& path) {
        benchmark::RegisterBenchmark((std::string(name) + size).c_str(),
                                     [measured, path](benchmark::State& state) { measured(state, path); });
    };
    add("/1M", documents.largePath());
    add("/2K", documents.smallPath());
}

} // namespace

int main(int argc, char** argv)
{
    const Documents documents;
    registerFor("load xmlFile", loadXmlFile, documents);
    registerFor("load QDomDocument", loadQDomDocument, documents);
    registerFor("load pugixml", loadPugixml, documents);
    registerFor("tokens", readTokens, documents);
    registerFor("write xmlFile", writeXmlFile, documents);
    registerFor("write QDomDocument", writeQDomDocument, documents);
    registerFor("write pugixml", writePugixml, documents);
    registerFor("walk xmlFile", walkXmlFile, documents);
    registerFor("walk QDomDocument", walkQDomDocument, documents);
    registerFor("walk pugixml", walkPugixml, documents);
    for (const hostileDocument& document : hostileDocuments(1024 * 1024))
        benchmark::RegisterBenchmark((std::string("hostile/") + document.name).c_str(), loadHostile,
                                     document.text)
            ->Unit(benchmark::kMillisecond);
    return runWithRatios(
        argc, argv,
        {
            {"load 1 MB against QDomDocument", "load xmlFile/1M", "load QDomDocument/1M", 0.25},
            {"load 1 MB against the parser alone", "load xmlFile/1M", "tokens/1M", 2.0},
            {"load 1 MB against pugixml", "load xmlFile/1M", "load pugixml/1M", 12.0},
            {"load 2 KB against QDomDocument", "load xmlFile/2K", "load QDomDocument/2K", 1.0},
            {"load 2 KB against the parser alone", "load xmlFile/2K", "tokens/2K", 3.0},
            {"load 2 KB against pugixml", "load xmlFile/2K", "load pugixml/2K", 0},
            {"write 1 MB against QDomDocument", "write xmlFile/1M", "write QDomDocument/1M", 0.5},
            {"write 1 MB against pugixml", "write xmlFile/1M", "write pugixml/1M", 0},
            {"walk 1 MB against QDomDocument", "walk xmlFile/1M", "walk QDomDocument/1M", 0.5},
            {"walk 1 MB against pugixml", "walk xmlFile/1M", "walk pugixml/1M", 0},
        });
}
