#pragma once
// The way of all pictures to the phone: a film's, and those of the call that shows some, which come before
// films. The user's own picture lies upon the other side's, in a corner that the phone names. Any thread.
#include "host/services/players/videoFrameWriter.h"
#include "players/pictureScaler.h"
#include <QByteArray>
#include <QList>

class pictureScreen
{
public:
    // False when there is no memory for pictures.
    bool open() { return m_writer.open(); }

    // How large the surface is that shows pictures without a place of their own.
    void setSurface(const QSize& size);
    QSize surface() const;
    // Of the surface; empty: the own picture is not shown.
    void setOwnPlace(const QRect& place);

    // A film's picture; nothing while a call shows its own.
    void showFilm(const GstVideoFrame& frame, const QRect& place, pictureScaler& scaler);
    void moveFilm(const QRect& place);
    void endFilm();

    // Of several calls the one that came last is seen.
    void showCall(int call, const GstVideoFrame& frame);
    void showOwn(int call, const GstVideoFrame& frame);
    void endCall(int call);
    void endOwn(int call);

private:
    struct tagOwn
    {
        QByteArray pixels;
        QSize size;
    };
    void paintOwn(unsigned char* pixels, const QSize& size) const;
    void tellPhone() const;

    videoFrameWriter m_writer;
    mutable std::mutex m_mutex; // of what follows
    QSize m_surface{800, 480};  // until a surface says how large it is
    QRect m_ownPlace;
    QList<int> m_calls; // that show pictures; the last one is seen
    pictureScaler m_scaler;
    std::mutex m_ownMutex; // of the next one, taken before the other
    pictureScaler m_ownScaler;
    int m_nOwnCall = 0; // whose own picture there is; 0: nobody's
    tagOwn m_own;
};
