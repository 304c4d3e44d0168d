#pragma once
// What the tests of the weather share: a server of their own that forecasts, the file that names it, and a
// key file.
#include "support/host/weather.h"
#include "tests/kit/pageTest.h"
#include "tests/services/httpServer.h"
#include <QMap>

class WeatherStand : public PageTest
{
protected:
    WeatherStand();

    // A forecast as the public feed writes it: "SI", 21 November 2026, and pictures "/t.gif", "/m.gif",
    // "/a.gif".
    static QByteArray publicAnswer();
    // The same as a signage server does.
    static QByteArray signageAnswer();
    static QByteArray gif(char name);
    void config(const char* key, const char* value);
    // All of a search is done: its answer, its pictures, and what they led to.
    void waitDone();
    // Requests for an answer so far.
    int asked() const;
    QString label(const char* name) const;
    // Pixels of the label's picture: 11 is "/t.gif", 12 "/m.gif", 13 "/a.gif", 0 none.
    int pictureSide(const char* name) const;

    QMap<QByteArray, QByteArray> answers; // by path with query; any other is a forecast, or a picture
    bool isSilent = false;                // no answer comes
    httpServer server;
};
