#pragma once
// "app_hxMedia": the one session there is, its two streams, and the way of its pictures to the phone. One
// thread, but for the pictures.
#include "players/filmElements.h"
#include "players/mediaStream.h"
#include "players/pictureScreen.h"
#include "support/host/message.h"
#include <QRect>
#include <QTimer>
#include <memory>
#include <mutex>

class mediaService : public chMsgProcesser
{
public:
    // screen outlives the service.
    explicit mediaService(pictureScreen& screen);
    int TryThreadMessage(msgObject& msg) override;

private:
    void startSession(msgObject& msg);
    void changeSession(const msgObject& msg);
    void stopSession(const msgObject& msg);
    void takeStreams(const msgObject& msg);
    void takeSize(const msgObject& msg);
    void takeVolume(const msgObject& msg);
    void setSound(int volume, bool mute);
    void movieIsUp(const msgObject& msg);

    // What the session needs is built outside of the message, whose sender waits.
    void applySoon();
    void apply();
    void renew(std::unique_ptr<mediaStream>& stream, const tagIncoming& wanted, bool isPicture);
    tagIncoming pictureToTake() const;
    tagIncoming soundToTake() const;
    bool isAnnounced() const;
    void setPlace(const MEDIA_RECT& rect);
    void dropStreams();
    void showPicture(const GstVideoFrame& frame);
    void tellMovie(unsigned int message) const;

    VOICE_PARAM m_session = {};
    bool m_bSession = false;
    unsigned int m_nId = 0;
    // What the player announced; in force on the ports that it named.
    PLAYER_STREAMS m_streams = {};
    int m_nSoundPort = 0; // 0: it sends none
    int m_nPicturePort = 0;
    unsigned int m_nPlay = 0;
    bool m_bAnnounced = false;
    bool m_bOwed = false; // the player waits to hear that we are ready

    int m_nVolume = soundVolume::LOUDEST; // until the phone tells
    bool m_bMute = false;

    QTimer m_apply;
    filmElements m_elements;
    std::mutex m_mutex; // of the next one: pictures come on a thread of their stream
    QRect m_place;
    pictureScaler m_scaler; // of that thread
    pictureScreen& m_screen;
    playClock m_clock;
    std::unique_ptr<mediaStream> m_soundStream; // end before what they use
    std::unique_ptr<mediaStream> m_pictureStream;
};
