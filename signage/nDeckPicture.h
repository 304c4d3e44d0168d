#pragma once
#include "support/file/fileTools.h"
#include "support/host/picture.h"
#include "support/text/chString.h"
#include <QElapsedTimer>
#include <QLabel>

// A picture that fills its place, also one that reaches far beyond the frame: only what can be seen is
// painted, and no copy of the whole is kept then. It is read in the size in which it shows, away from this
// thread. User-interface thread.
class nDeckPicture : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

    // path: device path. What showed before stays until the picture is there; when it is not fit to be shown,
    // nothing shows.
    void ShowFile(const chString& path);
    void Forget();
    // The picture is there, or is known not to come; settled tells when it was not so at once.
    bool IsSettled() const { return m_nRequest == 0; }
    // It shows what the file at path holds, or will in a moment.
    bool IsShowing(const chString& path) const;

signals:
    void settled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Read();
    void Take(PICTURE_RESULT result, const QPixmap& picture);

    chString m_strPath;
    tagFileStat m_stat;             // of the file when it was read
    mutable QElapsedTimer m_looked; // at the file
    int m_nRequest = 0;
    PICTURE_RESULT m_eResult = PICTURE_MISSING;
};

// path: device path of a picture that is fit to be shown. Any thread.
bool IsImageValid(const chString& path);

// A picture of the show: in a place of that size, which it fills, or as the background, which is stretched.
tagPictureWish nDeckPictureWish(const chString& path, const QSize& size);
tagPictureWish nDeckBackgroundWish(const chString& path, const QSize& size);
// It can be shown without waiting.
bool nDeckPictureIsReady(const tagPictureWish& wish);
