#pragma once
// The way of all pictures to the phone: a film's, and those of the call that shows some, which come before
// films. The user's own picture lies upon the other side's, in a corner that the phone names. Any thread.
#include "host/services/players/videoFrameWriter.h"
#include "players/pictureScaler.h"
#include <QByteArray>
#include <QList>
#include <QMap>

class pictureScreen
{
public:
    enum : int { LEAD_MS = 50 }; // so long the picture of one half waits for the next of the other

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

    // Of several calls the one that came last is seen. Of two that are joined, and were not with others, both
    // are, side by side, the older one on the left; one that shows nothing leaves the whole surface to the
    // other.
    void join(int call, int other);
    // The call is seen; the other one, when the call shows nothing.
    void split(int call);
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
    QList<int> seen() const;
    QRect halfOf(int side) const;
    void dropHalves();
    void showWhole(const GstVideoFrame& frame);
    void showHalf(int side, const GstVideoFrame& frame);
    void paintOther(const QRect& half, unsigned char* pixels, const unsigned char* newest) const;
    void paintOwn(unsigned char* pixels, const QSize& size) const;
    void tellPhone() const;

    videoFrameWriter m_writer;
    mutable std::mutex m_mutex; // of what follows
    QSize m_surface{800, 480};  // until a surface says how large it is
    QRect m_ownPlace;
    QList<int> m_calls; // that show pictures; the last one is seen
    QMap<int, int> m_joined;
    pictureScaler m_scalers[2]; // of the sides; the first one's is that of the whole surface, too
    bool m_bHalves = false;     // what is shown is two of them
    int m_nLeads = 0;           // the side whose pictures come to the screen at once
    qint64 m_nLedUs = 0;
    QByteArray m_waiting;    // the other side's picture that goes along with the next one
    bool m_bWaiting = false; // there is one
    std::mutex m_ownMutex;   // of the next one, taken before the other
    pictureScaler m_ownScaler;
    int m_nOwnCall = 0; // whose own picture there is; 0: nobody's
    tagOwn m_own;
};
