#pragma once
// A server whose status a test reads, as a monitoring program does.
#include "tests/server/signServer.h"
#include <QJsonArray>
#include <QJsonObject>
#include <functional>

class StatusTest : public SignServerTest
{
protected:
    // Answers to a browser of the server's own machine.
    Answer askStatus(const QByteArray& target = "/status.json", const QByteArray& fields = {}) const;
    Answer page(const QByteArray& query = {}) const { return askStatus("/status" + query); }
    QJsonObject status() const;
    // Of that key; empty when the status does not speak of it.
    QJsonObject display(const QByteArray& key = "aabbcc") const;
    QStringList names(const QByteArray& group, const QByteArray& key = "aabbcc") const;
    QStringList order() const; // of the displays' names
    QStringList warnings() const;
    // False when it does not come true within a time that is long for every machine.
    static bool soon(const std::function<bool()>& isTrue);
    // As soon as all of the content was looked at.
    bool contentIsChecked() const;
    // As the phone fetches, and ends the connection.
    Answer fetch(const QByteArray& name, const QByteArray& type = "media",
                 const QByteArray& key = "aabbcc") const;
    // The last look and registration of all displays are made older, by the book that a stopped server left.
    void age(int seconds) const;
    // A show of two pictures and a layout for the display "Lobby".
    void writeShow() const;
};
