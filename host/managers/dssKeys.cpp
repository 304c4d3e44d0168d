#include "host/managers/dssKeys.h"
#include "support/host/text.h"
#include "support/xml/xmlElement.h"
#include <cstdlib>

namespace {

constexpr int kLastLine = 3;

struct Board
{
    QList<tagDssKey> keys;
    std::function<void()> changed;
};

Board& board()
{
    static Board* board = new Board; // keys are read until the end
    return *board;
}

tagDssKey::TYPE typeOf(const chString& name)
{
    const struct
    {
        const char* name;
        tagDssKey::TYPE type;
    } kNames[] = {{"Line", tagDssKey::LINE},
                  {"Speed Dial", tagDssKey::SPEED_DIAL},
                  {"BLF", tagDssKey::BLF},
                  {"BLF List", tagDssKey::BLF_LIST}};
    for (const auto& known : kNames) {
        if (name == known.name)
            return known.type;
    }
    return tagDssKey::FREE;
}

// One that no line can be is the default one, one that is not there the first.
int lineOf(const char* text)
{
    const long line = strtol(text, nullptr, 10);
    return line < 0 || line > kLastLine ? -1 : int(line);
}

} // namespace

tagDssKey dssKeyOf(xmlElement* item)
{
    tagDssKey key;
    key.eType = typeOf(item->GetAttributeValue("Type").GetString());
    xmlElement* data = item->FindChildElement("ItemData");
    if (key.eType == tagDssKey::FREE)
        return key;
    const auto textOf = [data](const char* name) {
        return data ? toQString(data->GetAttributeValue(name).GetString()) : QString();
    };
    key.nLine = lineOf(textOf("Line").toUtf8().constData());
    if (key.eType != tagDssKey::SPEED_DIAL && key.eType != tagDssKey::BLF)
        return key;
    const QString extension = textOf("Extension");
    const QString value = textOf("Value");
    key.strLabel = textOf("Label");
    if (key.eType == tagDssKey::BLF) {
        key.strNumber = value.isEmpty() ? extension : value;
        key.strWatched = extension.isEmpty() ? value : extension;
    } else {
        // Where there are two, that of the list of speed dials is the later one: the key's editor takes it
        // away.
        key.strNumber = extension.isEmpty() ? value : extension;
    }
    return key;
}

const QList<tagDssKey>& dssKeys()
{
    return board().keys;
}

void dssKeysTake(const QList<tagDssKey>& keys)
{
    if (board().keys == keys)
        return;
    board().keys = keys;
    if (board().changed)
        board().changed();
}

void dssKeysListen(std::function<void()> changed)
{
    board().changed = std::move(changed);
}
