#pragma once
// The surface that decoded video is painted on: the picture of the media server's session, or one that is
// set. A session's picture stands at the place that the session names, cut off at the video rectangle;
// without a place it fills the video rectangle. User-interface thread.
#include "support/host/api.h"
#include <QLabel>

class HX_HOST_API QVideoViewer : public QLabel
{
    Q_OBJECT
public:
    explicit QVideoViewer(QWidget* parent = nullptr);
    QVideoViewer(int mode, QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags());
    ~QVideoViewer() override;
    void ShowVideoViewer(int show);
    void SetFrameStatus(int status);
    void ShowBackground(int show); // non-zero: the label's picture, else black, instead of the last frame
    // A rectangle is set in screen coordinates with flags 1, in the viewer's with flags 0, and always told in
    // screen coordinates. It holds until the viewer gets another size; otherwise it is the whole viewer.
    void SetVideoRect(const QRect& rect, int flags);
    void GetVideoRect(QRect& rect) const;
    // The part that is left out of the picture, so that what lies there shows. Non-zero show: none is.
    void SetHideRect(const QRect& rect, int show, int flags);
    void GetHideRect(QRect& rect) const;
    // A decoded picture; painted with the next frame of the screen.
    void SetFrame(const QImage& frame);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QRect videoRect() const;
    QRect pictureRect(const QRect& place) const;
    void updatePicture();
    void updateCover();
    // isWhole: the whole video rectangle is painted.
    void paintPicture(QPainter& painter, bool isWhole);

    QImage m_frame;
    QRect m_videoRect; // in the viewer's coordinates, like the next
    QRect m_hideRect;
    QSize m_videoRectSize; // of the viewer when the rectangle was set
    int m_nMode = 0;
    bool m_bShow = true;
    bool m_bBackground = true;
    int m_nFrameStatus = 0;
};
