#pragma once
// A signage server of the test's own: it answers with the schedule and the files it was given, and fails
// where it is told to.
#include "tests/services/httpServer.h"
#include <QMap>
#include <QPointer>
#include <QSet>
#include <functional>

class signageServer
{
public:
    struct tagLayout
    {
        QByteArray file;
        QByteArray content;
        QByteArray from = "2000-01-01 00:00:00";
        QByteArray to = "2037-01-01 00:00:00";
        QByteArray eventType = "";
        QByteArray applet = "";
    };
    struct tagMedia
    {
        QByteArray path;
        QByteArray content;
        QByteArray size = ""; // as the schedule tells it; empty: the true one
    };

    signageServer();

    httpServer http;
    QList<tagLayout> layouts;
    QList<tagMedia> medias;
    QByteArray schedule; // instead of the one made from the lists
    QByteArray scheduleStatus = "200 OK";
    QByteArray registration = "<norvane><ndeck><result><success/></result></ndeck></norvane>";
    QMap<QByteArray, QByteArray> served; // file -> other bytes than the schedule speaks of
    QSet<QByteArray> failing;            // files that are answered with an error
    QSet<QByteArray> silent;             // requests ("schedule" or a file) that wait for release()

    static QByteArray md5(const QByteArray& content);
    QByteArray scheduleText() const;
    // Requests for that file so far; for "schedule" and "register" likewise.
    int requests(const QByteArray& what) const;
    // The whole path of the last request for it.
    QByteArray lastPath(const QByteArray& what) const;
    QList<QByteArray> order; // what was asked for: "schedule", "register" or a file's name
    // Answers what was held back.
    void release();
    // Breaks it off instead.
    void drop();

private:
    void onRequest(QTcpSocket& socket, const QByteArray& path);
    void answer(QTcpSocket& socket, const QByteArray& what);
    QByteArray contentOf(const QByteArray& file) const;

    QList<QByteArray> m_paths;
    QList<std::pair<QPointer<QTcpSocket>, QByteArray>> m_held;
};
