#pragma once
// The surface that decoded video is painted on. User-interface thread.
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
    void ShowBackground(int show); // non-zero paints the panel black instead of the last frame
    // Rectangles are in the viewer's coordinates; flags are 0.
    void SetVideoRect(const QRect& rect, int flags);
    void GetVideoRect(QRect& rect) const;
    // The part that is left out of the picture, so that what lies above shows.
    void SetHideRect(const QRect& rect, int show, int flags);
    void GetHideRect(QRect& rect) const;
    // A decoded picture; painted with the next frame of the screen.
    void SetFrame(const QImage& frame);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QImage m_frame;
    QRect m_videoRect;
    QRect m_hideRect;
    int m_nMode = 0;
    bool m_bShow = true;
    bool m_bBackground = true;
    int m_nFrameStatus = 0;
};
