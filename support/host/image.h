#pragma once
// A cache of decoded pictures, by device path. User-interface thread.
#include "support/host/api.h"
#include <QPixmap>

class HX_HOST_API ImageManager
{
public:
    // A null pixmap when the file is not there or is not a picture. A changed file is read again.
    QPixmap GetImage(const char* path);
    // The picture scaled to fit into w by h pixels, keeping its shape; cached as well.
    QPixmap GetImageByScale(const char* path, int w, int h);
    // Reads the picture into the cache ahead of its use; keep non-zero holds it there. 1 on success.
    int AddNode(const char* path, int keep);
    void RemoveImageInCache(const char* path);

private:
    friend ImageManager* GetImageManager();
    ImageManager();
    ~ImageManager();
    struct Private;
    Private* m_p;
};

HX_HOST_API ImageManager* GetImageManager();
