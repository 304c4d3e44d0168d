#pragma once
// A picture of what the frame showed, on top of it until the texts that came up since are on the screen:
// they take a moment, and nobody is to see the screen without them. User-interface thread.
#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class QWebView;

class nDeckCover : public QWidget
{
    Q_OBJECT
public:
    // rect: the part of the frame to be covered. Hidden at first.
    nDeckCover(QWidget* frame, const QRect& rect);

    // Stays up until that text is there as well.
    void Await(QWebView* view);
    // Goes on top when there is something to wait for, else it ends.
    void Settle();
    void End();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void OnLoaded(QWebView* view);

    QPixmap m_picture;
    QList<QPointer<QWebView>> m_awaited;
    QTimer m_limit; // of the wait
};
