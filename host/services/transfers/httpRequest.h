#pragma once
// One question to a server and its answer, as they go over the wire: nobody is sent on, and nothing is
// stored. Lives on the network thread.
#include "host/services/transfers/httpLoop.h"
#include <QByteArray>
#include <QHostAddress>
#include <QUrl>

class httpRequest : private httpLoop::Request
{
public:
    // Who hears of the answer. The request must not be destroyed by the first two.
    class Listener
    {
    public:
        virtual ~Listener() = default;
        // The head of the answer is there. False: nothing more of it is wanted.
        virtual bool onHead() = 0;
        // Some of its body. False: nothing more of it is wanted.
        virtual bool onBytes(const char* bytes, size_t size) = 0;
        // It is over, for whatever reason.
        virtual void onEnd() = 0;
    };

    enum REACH : int {
        EVERYWHERE,
        ELSEWHERE // not this machine, whose services trust those who are on it
    };
    // Begins in a moment. loop and listener outlive it.
    httpRequest(httpLoop& loop, const QUrl& url, REACH reach, Listener& listener);
    // Breaks off what is still going on; nobody is told.
    ~httpRequest() override;
    httpRequest(const httpRequest&) = delete;
    httpRequest& operator=(const httpRequest&) = delete;

    const QUrl& url() const { return m_url; }
    // 0 while there is no answer.
    int status() const;
    // Of the answer's head, without the blanks around it; empty when there is none.
    QByteArray field(const char* name) const;
    // -1 when the server does not say.
    qint64 announcedSize() const;
    // The answer has come to its end.
    bool isWhole() const { return m_eResult == CURLE_OK; }
    // The answer comes from one of this machine's own addresses.
    bool isFromHere() const;
    // It led to this machine, which it must not reach.
    bool isBarred() const { return m_bBarred; }
    // It was broken off: much came, and hardly any of it was body.
    bool isPadded() const { return m_bPadded; }
    // What the handshake or the certificate failed at; empty when it was something else.
    QByteArray tlsFailure() const;

private:
    void end(CURLcode result) override;
    static size_t onLine(char* line, size_t, size_t length, void* self);
    static size_t onBody(char* bytes, size_t, size_t size, void* self);
    static curl_socket_t onSocket(void* self, curlsocktype purpose, curl_sockaddr* to);
    static int onConnected(void* self, char* to, char* from, int portTo, int portFrom);
    static int onWire(CURL* easy, curl_infotype what, char* bytes, size_t size, void* self);
    static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
    void countWire();
    bool takeLine(const char* line, size_t length);
    bool mayReach(const QHostAddress& address);
    void setOptions();
    void setJudges();

    const curlLibrary& m_curl = curlLibrary::instance();
    httpLoop& m_loop;
    QUrl m_url;
    REACH m_eReach;
    Listener& m_listener;
    CURL* m_pEasy;
    CURLcode m_eResult = CURLE_AGAIN; // not over yet
    char m_szError[CURL_ERROR_SIZE] = "";
    size_t m_nHead = 0;   // bytes
    bool m_bHead = false; // it was told
    qint64 m_nWire = 0;   // bytes after the head, with what they are wrapped in
    qint64 m_nBody = 0;   // bytes that were told
    bool m_bBarred = false;
    bool m_bPadded = false;
};
