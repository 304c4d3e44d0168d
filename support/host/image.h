#pragma once
// A cache of decoded pictures, by device path, for those of the phone itself: they are read where they are
// asked for, and one of more than IMAGE_PIXEL_LIMIT pixels is none. Pictures of users come by picture.h.
// User-interface thread.
#include "support/host/api.h"
#include <QPixmap>

enum : int { IMAGE_PIXEL_LIMIT = 1966080 }; // 1920 by 1024

class HX_HOST_API ImageManager
{
public:
    // A null pixmap when the file is not there or is not a picture. A changed file is read again.
    QPixmap GetImage(const char* path);
    // The picture scaled to fit into w by h pixels, keeping its shape; cached as well.
    QPixmap GetImageByScale(const char* path, int w, int h);
    // Reads the picture into the cache ahead of its use; keep non-zero holds it there. 1 on success.
    int AddNode(const char* path, int keep);
    // The same, without waiting: the picture is read on another thread and is there a moment later. Of many
    // that are asked for together only those asked for last are read, as the cache holds no more.
    void PrepareNode(const char* path);
    // How many pictures are still to be read that way.
    int GetPreparing() const;
    // In all its sizes.
    void RemoveImageInCache(const char* path);

private:
    friend ImageManager* GetImageManager();
    ImageManager() = default;
    ~ImageManager() = default;
};

HX_HOST_API ImageManager* GetImageManager();
