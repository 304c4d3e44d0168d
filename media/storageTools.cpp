#include "media/storageTools.h"
#include "media/videoAssistant.h"
#include "support/file/path.h"
#include "support/host/picture.h"
#include "support/host/storage.h"
#include <algorithm>
#include <cstring>

namespace {

const char* const kRequest = "pictureRequest"; // of a label: of the picture that it waits for

// As the label is going to show it.
tagPictureWish wishOf(const QLabel& label, const char* file)
{
    tagPictureWish wish;
    wish.strPath = file;
    wish.nWidth = label.width();
    wish.nHeight = label.height();
    wish.eFit = label.hasScaledContents() ? PICTURE_FIT_SIDES : PICTURE_FIT_INSIDE;
    return wish;
}

} // namespace

void GetFileArrayInStorage(chStringArray& paths)
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages)
        paths.Append(storage.strPath);
}

bool IsPartOfAll(const char* part, const char* all)
{
    return !part || strncmp(part, all ? all : "", strlen(part)) == 0;
}

bool IsExistCurrentStorage(const char* path)
{
    chStringArray mounts;
    GetFileArrayInStorage(mounts);
    return IsDirInclude(path, mounts);
}

bool IsDirInclude(const char* path, const chStringArray& paths)
{
    return std::any_of(paths.begin(), paths.end(),
                       [path](const chString& entry) { return IsPartOfAll(entry, path); });
}

bool IsFileInArray(const char* name, const chStringArray& names)
{
    return std::any_of(names.begin(), names.end(), [name](const chString& entry) {
        return strcmp(entry.GetText(), name ? name : "") == 0;
    });
}

bool SetLabelImage(QLabel* label, const char* file, const std::function<void(bool isShown)>& told)
{
    const auto tell = [told](bool isShown) {
        if (told)
            told(isShown);
        return isShown;
    };
    if (!label || !pathFileExist(file))
        return tell(false);
    pictureCancel(label->property(kRequest).toInt());
    label->setProperty(kRequest, 0);
    const tagPictureWish wish = wishOf(*label, file);
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    if (pictureAtOnce(wish, result, picture)) {
        if (result == PICTURE_READ)
            label->setPixmap(picture);
        return tell(result == PICTURE_READ);
    }
    label->setProperty(kRequest,
                       pictureRequest(wish, label, [label, tell](PICTURE_RESULT late, const QPixmap& read) {
                           if (late == PICTURE_READ)
                               label->setPixmap(read);
                           tell(late == PICTURE_READ);
                       }));
    return true;
}

void PrepareLabelImage(const QLabel* label, const char* file)
{
    picturePrepare(wishOf(*label, file));
}

videoAssistant* qReplaceVideoAssistant(QWidget* placeholder, int mode)
{
    videoAssistant* surface = new videoAssistant(mode, placeholder->parentWidget());
    surface->setGeometry(placeholder->geometry());
    placeholder->setAttribute(Qt::WA_DeleteOnClose);
    placeholder->close();
    return surface;
}
