#include "host/desktop/quickKeys.h"
#include "support/file/path.h"
#include "support/host/api.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <cstdlib>

namespace {

constexpr int kKeys = 6;
const char* const kFile = "/rundata/data/picture-dial.xml";
const char* const kPictures = "/rundata/picture-dial/";

tagQuickKey freeKey()
{
    tagQuickKey key;
    key.strPicture = HX_THEME("icon/quick_add.png");
    return key;
}

tagQuickKey keyOf(xmlElement* slot)
{
    tagQuickKey key;
    key.strNumber = slot->GetAttributeValue("number").GetString();
    if (key.strNumber.IsEmpty())
        return freeKey();
    key.strName = toQString(slot->GetAttributeValue("title").GetString());
    if (key.strName.isEmpty())
        key.strName = toQString(key.strNumber);
    const chString picture = slot->GetAttributeValue("file").GetString();
    // The name comes from a file that other programs write too.
    key.strPicture =
        pathIsSafeName(picture) ? kPictures + toQString(picture) : HX_THEME("icon/quick_user.png");
    const char* line = slot->GetAttributeValue("line");
    key.nLine = *line ? atoi(line) : -1;
    return key;
}

} // namespace

QList<tagQuickKey> quickKeysRead()
{
    QList<tagQuickKey> keys;
    xmlFile file(kFile);
    xmlElement* list = xmlFindElementFromRoot(&file, "picture-dial", 0);
    xmlElement* slot = list ? list->FindChildElement("icon") : nullptr;
    for (; slot && keys.size() < kKeys; slot = xmlGetNextElement(slot))
        keys.append(keyOf(slot));
    while (keys.size() < kKeys)
        keys.append(freeKey());
    return keys;
}

void quickKeyPress(const tagQuickKey& key)
{
    if (key.strNumber.IsEmpty())
        hostModule().openPage(chString("Picture-dial Setting"), nullptr);
    else
        phone_CallNumber(key.strNumber, key.nLine, 0);
}
