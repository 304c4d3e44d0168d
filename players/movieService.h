#pragma once
// "app_hxMovie": answers what streams a film has, and plays one film or a list of them. One thread.
//
// A film that ends is reported. One that cannot be played is reported too, but no sooner than FAILED_MS after
// it was asked for, so that whoever asks again at once does not spin; of a list the next film follows after
// SKIP_MS, and a list without any that plays is given up after one round.
#include "players/failedFilms.h"
#include "players/filmPlay.h"
#include "players/playList.h"
#include "players/streamCache.h"
#include "support/host/message.h"

class movieService : public chMsgProcesser
{
public:
    enum : int { FAILED_MS = 2000, SKIP_MS = 300 };

    movieService();
    int TryThreadMessage(msgObject& msg) override;

private:
    void answerStreams(msgObject& msg);
    void playOne(const msgObject& msg);
    void addToList(const msgObject& msg);
    void playFromList(const msgObject& msg);
    void stepInList(bool forward);
    void playPresent();
    void setPaused(bool paused);
    void receiver(const msgObject& msg);
    void mediaIsUp(const msgObject& msg);

    void play(const QByteArray& device, const tagTarget& target);
    void stop();
    bool announce(const PLAYER_STREAMS& streams);
    void startListSession() const;
    void ended(filmPlay::END how);
    void forgetFilm(filmPlay::END how);
    void giveUp();
    void listEnded(filmPlay::END how);
    void later(int ms, void (movieService::*step)());
    void report();

    // What is sent comes from these alone, as long as this program runs: nobody else can take their ports.
    LoopbackSocket m_soundSocket = loopbackSocket(0);
    LoopbackSocket m_pictureSocket = loopbackSocket(0);
    streamCache m_cache;
    playList m_list;
    std::unique_ptr<filmPlay> m_film;
    QByteArray m_device; // of the film
    tagFileStat m_stat;
    failedFilms m_failed;
    QTimer m_later;
    bool m_bPaused = false;
    bool m_bList = false;         // what plays is the list
    unsigned int m_nListener = 0; // who is told of the end
    quint32 m_nPlay = 0;          // counts the plays
    int m_nFailed = 0;            // films of the list, one after the other
};
