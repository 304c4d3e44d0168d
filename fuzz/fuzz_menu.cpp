// Menu files: those of the firmware, and the lists of door phones and cameras that other programs write too.
// Whatever is in them, a menu is small, its texts are short, and no item leads out of the folder of menus.
#include "fuzz/fuzzRoot.h"
#include "host/menu/iconMenu.h"
#include "support/file/atomicSave.h"
#include "support/file/path.h"

namespace {

const char* const kMenu = "/menu.xml";

void checkItem(const IconMenuItem& item)
{
    expect(!item.strTitle.isEmpty());
    for (const QString& text : {item.strTitle, item.strCaption, item.strIcon, item.strTarget})
        expect(text.size() <= ICON_MENU_TEXT_LIMIT);
    if (item.eAction == IconMenuItem::OpenMenu)
        expect(pathIsSafeName(item.strTarget.toUtf8().constData()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    expect(fileSaveAtomic(kMenu, reinterpret_cast<const char*>(data), size));
    IconMenu menu;
    const int loaded = loadIconMenu(kMenu, menu);
    expect(loaded || menu.items.isEmpty());
    expect(menu.items.size() <= ICON_MENU_ITEM_LIMIT);
    for (const IconMenuItem& item : menu.items)
        checkItem(item);
    return 0;
}
