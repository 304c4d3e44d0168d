#pragma once
// The built phone with the feeds of a demonstration server, at whose pages "Weather" and "Stock" somebody
// sits.
#include "bench/runningPhone.h"
#include "tests/kit/plain/controlLink.h"
#include <QJsonObject>

class SignServer;

// The feeds of a device folder, filled with second names, become that server; its list of stocks gets these
// codes.
void putFeeds(const QString& root, const SignServer& server, const QStringList& codes);

class UsedPhone
{
public:
    // server: with its feeds, and started.
    UsedPhone(const SignServer& server, const QStringList& codes);
    // Up to its home screen. As often as it was ended.
    bool start();
    void end();

    // False where the window does not come to the top.
    bool open(const QString& page, const QString& className);
    bool goHome();
    // A city by keys and the button beside it, until its forecast and its pictures are there. The page is
    // open.
    bool search(const QString& city);
    // The next or the previous stock of the list by keys, or the same again by its button, until the quote is
    // there. The page is open.
    enum REFRESH { REFRESH_NEXT, REFRESH_PREVIOUS, REFRESH_SAME };
    bool refresh(REFRESH which);
    // Of the user's key file.
    bool setKey(const QString& section, const QString& key, const QString& value);

    // The class of the window on top; empty when the phone does not answer.
    QString top();
    // A widget of the window on top; without a name where there is none.
    QJsonObject widget(const QString& name);
    qint64 pid() const { return m_phone.pid(); }
    QString root() const { return m_phone.root(); }

private:
    bool ask(const QStringList& command);
    bool wait(const QString& className) { return ask({"wait", "page", className, "20000"}); }
    bool waitIdle() { return ask({"wait", "idle", "20000"}); }
    bool tap(const QString& name);
    QString text(const QString& name) { return widget(name)["text"].toString(); }

    RunningPhone m_phone;
    ControlLink m_link;
};
