#include "media/storageTools.h"
#include "media/videoAssistant.h"
#include "support/file/path.h"
#include "support/host/image.h"
#include "support/host/storage.h"
#include <algorithm>
#include <cstring>

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

bool SetLabelImage(QLabel* label, const char* file)
{
    if (!label || !pathFileExist(file))
        return false;
    const QPixmap picture = GetImageManager()->GetImage(file);
    if (picture.isNull())
        return false;
    label->setPixmap(picture);
    return true;
}

videoAssistant* qReplaceVideoAssistant(QWidget* placeholder, int mode)
{
    videoAssistant* surface = new videoAssistant(mode, placeholder->parentWidget());
    surface->setGeometry(placeholder->geometry());
    placeholder->setAttribute(Qt::WA_DeleteOnClose);
    placeholder->close();
    return surface;
}
