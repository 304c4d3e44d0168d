#pragma once
// A picture of what the frame showed, on top of it until the texts and pictures that came up since are on the
// screen: they take a moment, and nobody is to see the screen without them. User-interface thread.
#include <QList>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

class QWebView;
class nDeckPicture;

class nDeckCover : public QWidget
{
    Q_OBJECT
public:
    // rect: the part of the frame to be covered. Hidden at first.
    nDeckCover(QWidget* frame, const QRect& rect);

    // Stays up until that text or picture is there as well.
    void AwaitText(QWebView* view);
    void AwaitPicture(nDeckPicture* picture);
    // The same for anything else, until its Arrived. what: known by its address only, until it is destroyed.
    void Await(QObject* what);
    void Arrived(QObject* what);
    // Goes on top when there is something to wait for, else it ends.
    void Settle();
    void End();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_picture;
    QList<QObject*> m_awaited;
    bool m_bText = false; // a text is among what was waited for
    QTimer m_limit;       // of the wait
};
