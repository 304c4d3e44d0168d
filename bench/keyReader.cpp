#include "bench/keyReader.h"
#include "host/managers/dssKeys.h"
#include "support/file/atomicSave.h"
#include "support/file/deviceRoot.h"
#include <QFile>
#include <QThread>
#include <QXmlStreamReader>
#include <algorithm>
#include <vector>

namespace {

const char* const kFile = "/rundata/data/dsskey.xml";
const char* const kType = "BLF";
constexpr int kFirstExtension = 8001;
constexpr int kFirstValue = 20000;

struct tagReadKey
{
    QString type, line, label, extension, value;
    bool operator==(const tagReadKey& other) const
    {
        return type == other.type && line == other.line && label == other.label &&
               extension == other.extension && value == other.value;
    }
};

// The last change of the key among so many of all; 0 when it has had none.
int lastChange(int key, int change)
{
    return change <= key ? 0 : change - (change - 1 - key) % DSS_KEYS_MAX;
}

tagReadKey changedKey(int key, int change)
{
    return {kType, "0", changedLabel(key, change), watchedExtension(key), changedValue(key, change)};
}

// False when the file is not whole.
bool readKeys(std::vector<tagReadKey>& keys)
{
    QFile file(QString::fromUtf8(devicePath(kFile).GetText()));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(file.readAll());
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto valueOf = [&](const char* name) { return reader.attributes().value(name).toString(); };
        if (reader.name() == u"Item") {
            keys.push_back({valueOf("Type"), {}, {}, {}, {}});
        } else if (reader.name() == u"ItemData" && !keys.empty()) {
            keys.back().line = valueOf("Line");
            keys.back().label = valueOf("Label");
            keys.back().extension = valueOf("Extension");
            keys.back().value = valueOf("Value");
        }
    }
    return !reader.hasError();
}

} // namespace

QString watchedExtension(int key)
{
    return QString::number(kFirstExtension + key);
}

QString changedLabel(int key, int change)
{
    return QString("Change %1").arg(lastChange(key, change));
}

QString changedValue(int key, int change)
{
    return QString::number(kFirstValue + lastChange(key, change));
}

KeyReader::KeyReader() : m_thread([this] { run(); }) {}

KeyReader::~KeyReader()
{
    m_bEnds = true;
    m_thread.join();
}

void KeyReader::run()
{
    for (; !m_bEnds; QThread::msleep(1)) {
        const int change = changeOfFile();
        ++m_nReads;
        if (change < m_nSeen || change > m_nSeen + 1)
            ++m_nBroken;
        else
            m_nSeen = change;
    }
}

void KeyReader::putFirst()
{
    QByteArray items;
    for (int key = 0; key < DSS_KEYS_MAX; ++key) {
        const tagReadKey first = changedKey(key, 0);
        items += QString("  <Item Type=\"%1\">\n    <ItemData Line=\"%2\" Label=\"%3\" Extension=\"%4\" "
                         "Value=\"%5\"/>\n  </Item>\n")
                     .arg(first.type, first.line, first.label, first.extension, first.value)
                     .toUtf8();
    }
    const QByteArray text = "<DssKey>\n" + items + "</DssKey>\n";
    if (!fileSaveAtomic(kFile, text.constData(), size_t(text.size())))
        qFatal("the keys cannot be stored");
}

int KeyReader::changeOfFile()
{
    std::vector<tagReadKey> keys;
    if (!readKeys(keys) || keys.size() != DSS_KEYS_MAX)
        return -1;
    int last = 0;
    for (const tagReadKey& key : keys)
        last = std::max(last, key.value.toInt() - kFirstValue);
    for (int key = 0; key < DSS_KEYS_MAX; ++key) {
        if (!(keys[size_t(key)] == changedKey(key, last)))
            return -1;
    }
    return last;
}
