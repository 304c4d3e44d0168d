#pragma once
// Carries requests on the event loop of its thread, over a few connections to each server that stay open for
// the next ones. Lives on the network thread.
#include "host/services/transfers/curlLibrary.h"
#include <QHash>
#include <QList>
#include <QObject>
#include <QTimer>

class QSocketNotifier;

class httpLoop : public QObject
{
public:
    // One that the loop carries.
    class Request
    {
    public:
        virtual ~Request() = default;
        // It is over. The loop carries it until it is removed.
        virtual void end(CURLcode result) = 0;
    };

    // connections: at most, to one server; requests beyond wait for one. The library is there.
    explicit httpLoop(int connections);
    // Its requests have gone before.
    ~httpLoop() override;

    // A handle as a new one is, to be given back. Making one costs more than a small file.
    CURL* take();
    void giveBack(CURL* request);
    // The private pointer of the handle is its Request.
    void add(CURL* request);
    void remove(CURL* request);

private:
    struct tagSocket
    {
        QSocketNotifier* pRead = nullptr;
        QSocketNotifier* pWrite = nullptr;
    };
    static int onSocket(CURL* request, curl_socket_t socket, int what, void* self, void* known);
    static int onTimer(CURLM* requests, long ms, void* self);
    tagSocket& watched(curl_socket_t socket);
    void act(curl_socket_t socket, int events);
    void tellEnds();

    const curlLibrary& m_curl = curlLibrary::instance();
    CURLM* m_pRequests;
    QList<CURL*> m_spare;
    QHash<curl_socket_t, tagSocket> m_sockets; // as many as were open at a time
    QTimer m_timer;
};
