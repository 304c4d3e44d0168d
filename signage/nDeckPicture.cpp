#include "signage/nDeckPicture.h"
#include "media/PhotoFile.h"
#include "signage/nDeckScreen.h"
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace {

constexpr unsigned kPictureLimit = 0x1e0000; // bytes
constexpr int kLookMs = 100;                 // a file is looked at no more often
constexpr int kMostScreens = 2;              // in each direction, that a picture has pixels for

PICTURE_RESULT check(const char* path)
{
    return PhotoFile().IsOk(path, kPictureLimit) ? PICTURE_READ : PICTURE_REFUSED;
}

tagPictureWish wishOf(const chString& path, const QSize& size, PICTURE_FIT fit)
{
    tagPictureWish wish;
    wish.strPath = path;
    wish.nWidth = std::min<int>(size.width(), kMostScreens * NDECK_WIDTH);
    wish.nHeight = std::min<int>(size.height(), kMostScreens * NDECK_HEIGHT);
    wish.eFit = fit;
    wish.check = check;
    return wish;
}

} // namespace

void nDeckPicture::ShowFile(const chString& path)
{
    m_strPath = path;
    fileStat(path, m_stat);
    m_looked.start();
    Read();
}

void nDeckPicture::Forget()
{
    pictureCancel(m_nRequest);
    m_nRequest = 0;
    m_strPath = chString();
    clear();
}

void nDeckPicture::Read()
{
    pictureCancel(m_nRequest);
    m_nRequest = 0;
    const tagPictureWish wish = nDeckPictureWish(m_strPath, size());
    m_nRequest = pictureTell(wish, this, [this](PICTURE_RESULT result, const QPixmap& picture) {
        const bool wasAwaited = m_nRequest != 0;
        m_nRequest = 0;
        Take(result, picture);
        if (wasAwaited)
            emit settled();
    });
}

void nDeckPicture::Take(PICTURE_RESULT result, const QPixmap& picture)
{
    m_eResult = result;
    setVisible(result == PICTURE_READ);
    if (result == PICTURE_READ)
        setPixmap(picture);
    else
        clear();
}

bool nDeckPicture::IsShowing(const chString& path) const
{
    if (m_strPath.IsEmpty() || !(m_strPath == path))
        return false;
    if (m_nRequest == 0 && m_eResult == PICTURE_MISSING)
        return false;
    if (m_looked.elapsed() < kLookMs)
        return true;
    m_looked.start();
    tagFileStat stat;
    return fileStat(path, stat) && stat == m_stat;
}

void nDeckPicture::paintEvent(QPaintEvent* event)
{
    if (width() <= NDECK_WIDTH && height() <= NDECK_HEIGHT) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), pixmap());
}

void nDeckPicture::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    if (!m_strPath.IsEmpty())
        Read();
}

bool IsImageValid(const chString& path)
{
    return check(path) == PICTURE_READ;
}

tagPictureWish nDeckPictureWish(const chString& path, const QSize& size)
{
    return wishOf(path, size, PICTURE_FIT_SIDES);
}

tagPictureWish nDeckBackgroundWish(const chString& path, const QSize& size)
{
    return wishOf(path, size, PICTURE_FIT_EXACT);
}

bool nDeckPictureIsReady(const tagPictureWish& wish)
{
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    return pictureAtOnce(wish, result, picture);
}
