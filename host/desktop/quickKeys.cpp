#include "host/desktop/quickKeys.h"
#include "support/file/path.h"
#include "support/host/api.h"
#include "support/host/desktop.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/text.h"
#include "support/host/trace.h"
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
    tagQuickKey key = freeKey();
    key.strFile = slot->GetAttributeValue("file").GetString();
    key.strNumber = slot->GetAttributeValue("number").GetString();
    if (key.strNumber.IsEmpty())
        return key;
    key.strName = toQString(slot->GetAttributeValue("title").GetString());
    if (key.strName.isEmpty())
        key.strName = toQString(key.strNumber);
    // The name comes from a file that other programs write too.
    key.strPicture =
        pathIsSafeName(key.strFile) ? kPictures + toQString(key.strFile) : HX_THEME("icon/quick_user.png");
    const char* line = slot->GetAttributeValue("line");
    const int number = *line ? atoi(line) : -1;
    key.nLine = number >= 0 && number < PHONE_ACCOUNT_COUNT ? number : -1;
    return key;
}

} // namespace

QList<tagQuickKey> quickKeysRead()
{
    QList<tagQuickKey> keys;
    xmlFile file;
    xmlElement* list =
        file.LoadFromFile(kFile, XML_LIST_LIMIT) ? xmlFindElementFromRoot(&file, "picture-dial", 0) : nullptr;
    xmlElement* slot = list ? list->FindChildElement("icon") : nullptr;
    for (; slot && keys.size() < kKeys; slot = xmlGetNextElement(slot))
        keys.append(keyOf(slot));
    while (keys.size() < kKeys)
        keys.append(freeKey());
    return keys;
}

void quickKeyPress(const tagQuickKey& key, int row, const QPixmap& picture)
{
    if (key.strNumber.IsEmpty())
        quickKeyEdit(key, row, picture);
    else
        phone_CallNumber(key.strNumber, key.nLine, 0);
}

void quickKeyEdit(const tagQuickKey& key, int row, const QPixmap& picture)
{
    const auto edit = hostModule().editPictureDial;
    PicDialIconViewItem item(row, key.strFile, QIcon(picture));
    if (NUX_ASSERT(edit != nullptr, "module.editPictureDial != NULL"))
        edit(&item);
}
