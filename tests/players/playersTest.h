#pragma once
// The real players as processes of their own, and this test program in the part of the phone.
#include "support/host/message.h"
#include "support/host/player.h"
#include "tests/kit/phoneTest.h"
#include <QElapsedTimer>
#include <QList>
#include <QProcess>
#include <QSize>

class playersTest : public PhoneTest
{
protected:
    playersTest();
    ~playersTest() override;

    void startMovie() { start(m_movie, "hxMovie", "app_hxMovie"); }
    void startMedia() { start(m_media, "hxMedia", "app_hxMedia"); }
    void startBoth();
    static chThreadBase* movie() { return msgGetThreadByName("app_hxMovie"); }
    static chThreadBase* media() { return msgGetThreadByName("app_hxMedia"); }

    // The streams of a device path; answered is false when the reply has no record.
    MOV_SDP ask(const QByteArray& path, bool* answered = nullptr);
    // As the phone plays one film into its own session.
    void play(const QByteArray& path);
    void startSession(const MOV_SDP& sdp, const MEDIA_RECT& place = {});
    // Nothing is left that another film has shown.
    static void expectNoPicture();
    // Both players, and the film in a place of that size.
    void playIn(const QByteArray& path, QSize size);
    void playList(const QList<QByteArray>& paths);
    static ADDR_PARAM playParam(const QByteArray& path);
    static VOICE_PARAM sessionParam(const MOV_SDP& sdp, const MEDIA_RECT& place);
    template <class Record>
    static int post(chThreadBase* thread, unsigned int message, const Record& record, unsigned int wParam = 0)
    {
        return msgPostMsgToThreadEx(thread, message, wParam, 0, int(sizeof record), &record);
    }
    // What both programs have printed.
    bool hasSaid(const QByteArray& text, int ms = 5000);
    QByteArray said();

    // How often MOVIE_MSG_FINISHED came, and MEDIA_MSG_FRAME.
    int finished() const { return m_ears.nFinished; }
    int up() const { return m_ears.nUp; }

    QProcess m_movie;
    QProcess m_media;

private:
    struct Ears : public chMsgProcesser
    {
        int TryThreadMessage(msgObject& msg) override;
        int nFinished = 0;
        int nUp = 0;
    };
    void start(QProcess& process, const char* program, const char* thread);

    Ears m_ears;
    QByteArray m_said;
};
