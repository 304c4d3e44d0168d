#pragma once
// The phone's side of the media server's pictures: hears of each new one and lends it where it lies, without
// a copy. The pictures go when the server ends, however it ends. User-interface thread.
#include "host/services/players/videoFrameStore.h"
#include "support/host/message.h"
#include <QObject>
#include <QSize>
#include <optional>

class QSocketNotifier;

class HX_HOST_API videoFrames : public QObject, public chMsgProcesser
{
    Q_OBJECT
public:
    static videoFrames& instance();

    // False when there is no picture.
    bool newest(tagVideoPicture& picture) const;
    // The one to paint: each in its turn, also when two came while the thread was busy, but none that is late
    // by more than two. False as above.
    bool next(tagVideoPicture& picture) const;
    // That one is on the screen; if there is a newer one, changed() comes again.
    void painted(const tagVideoPicture& picture);
    // True when the picture was not written over meanwhile: what was painted from it is whole.
    bool isSame(const tagVideoPicture& picture) const;
    // How large the surface is that shows pictures without a place of their own, so that the server makes
    // them of that size.
    void askForSize(const QSize& size);
    // Where the user's own picture lies on that surface during a call; empty: nowhere.
    void askForOwn(const QRect& place);
    // Pictures up to now are not shown any more; the next one is.
    void forget();

    int TryThreadMessage(msgObject& msg) override;

signals:
    void changed();

private:
    videoFrames() = default;
    void hear(unsigned int process, unsigned int descriptor);
    bool attach(unsigned int process, unsigned int descriptor);
    void watch(unsigned int process);
    void detach();

    const void* m_pStore = nullptr;
    unsigned int m_nProcess = 0;
    unsigned int m_nDescriptor = 0;
    int m_nProcessFd = -1; // readable when the server has ended
    QSocketNotifier* m_pEnd = nullptr;
    bool m_bForgotten = false;
    unsigned int m_nForgotten = 0; // the last picture that is not shown
    bool m_bPainted = false;
    unsigned int m_nPainted = 0; // the last one on the screen
    QSize m_asked;
    std::optional<QRect> m_askedOwn; // none: this server was not told
    bool m_bRefused = false;         // told already that what a server offers is no store
};
