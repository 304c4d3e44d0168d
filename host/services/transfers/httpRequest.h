#pragma once
// One question to a server and its answer, as they go over the wire: nobody is sent on, and nothing is
// stored. Lives on the network thread.
#include "host/services/transfers/httpLoop.h"
#include <QByteArray>
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

    // Begins in a moment. loop and listener outlive it.
    httpRequest(httpLoop& loop, const QUrl& url, Listener& listener);
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
    // What the handshake or the certificate failed at; empty when it was something else.
    QByteArray tlsFailure() const;

private:
    void end(CURLcode result) override;
    static size_t onLine(char* line, size_t, size_t length, void* self);
    static size_t onBody(char* bytes, size_t, size_t size, void* self);
    bool takeLine(const char* line, size_t length);
    void setOptions();

    httpLoop& m_loop;
    QUrl m_url;
    Listener& m_listener;
    CURL* m_pEasy;
    CURLcode m_eResult = CURLE_AGAIN; // not over yet
    char m_szError[CURL_ERROR_SIZE] = "";
    size_t m_nHead = 0;   // bytes
    bool m_bHead = false; // it was told
};
