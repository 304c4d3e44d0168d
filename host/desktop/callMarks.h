#pragma once
// What goes over the wire of a call, and how well: the names of the codecs, a lock when all of it is
// encrypted, and bars for the quality; right-aligned, in one line or, where that has no room, one below the
// other. Nothing that is not known is shown. User-interface thread.
#include "host/services/phone/tagCall.h"
#include <QPixmap>
#include <QWidget>

class QPainter;

class callMarks : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    explicit callMarks(QWidget* parent = nullptr);
    void setStreams(const tagCallStreams& streams);
    // The codecs stand elsewhere: the marks alone.
    void setCodecsShown(bool shown);
    // "H.264, Opus, encrypted, 3 of 4", for those who cannot see it; always in English.
    QString text() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintBars(QPainter& painter, const QRect& place) const;
    QSize marksSize() const;

    tagCallStreams m_streams;
    QPixmap m_lock;
    bool m_bCodecs = true;
};

// "H.264, Opus": the picture's and the sound's.
QString callCodecsText(const tagCallStreams& streams);
// Of calls that talk together: the worse quality, and encrypted when both are.
tagCallStreams callStreamsOf(const tagCallStreams& one, const tagCallStreams& other);
