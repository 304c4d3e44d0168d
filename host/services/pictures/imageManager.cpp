#include "host/services/pictures/pictureService.h"
#include "support/host/image.h"
#include <cstring>

namespace {

QByteArray borrowed(const char* path)
{
    return path ? QByteArray::fromRawData(path, static_cast<qsizetype>(strlen(path))) : QByteArray();
}

// The node, read again when its file changed. Valid until the next call.
tagImageNode& fresh(const tagImageKey& key)
{
    tagPictureLimits limits;
    limits.nPixels = IMAGE_PIXEL_LIMIT;
    tagImageNode* node = ImageCache::instance().find(key, ImageCache::LOOK_NOW_AND_THEN);
    return node ? *node : *PictureService::readNow(key, limits);
}

} // namespace

QPixmap ImageManager::GetImage(const char* path)
{
    return path && *path ? fresh({borrowed(path), {}}).pixmap : QPixmap();
}

QPixmap ImageManager::GetImageByScale(const char* path, int w, int h)
{
    if (!path || !*path || w <= 0 || h <= 0)
        return QPixmap();
    return fresh({borrowed(path), {QSize(w, h), tagPictureShape::FITTED}}).pixmap;
}

int ImageManager::AddNode(const char* path, int keep)
{
    if (!path || !*path)
        return 0;
    tagImageNode& node = fresh({borrowed(path), {}});
    const bool isThere = !node.pixmap.isNull();
    ImageCache::instance().setKept(node, keep != 0 && isThere);
    return isThere ? 1 : 0;
}

void ImageManager::PrepareNode(const char* path)
{
    if (path && *path)
        PictureService::instance().prepare({QByteArray(path), {}});
}

int ImageManager::GetPreparing() const
{
    return PictureService::instance().pending();
}

void ImageManager::RemoveImageInCache(const char* path)
{
    ImageCache::instance().remove(borrowed(path));
}

ImageManager* GetImageManager()
{
    static ImageManager* manager = new ImageManager;
    return manager;
}
