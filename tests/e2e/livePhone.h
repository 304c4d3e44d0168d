#pragma once
// A built phone in a process of its own, driven through its control socket alone.
#include "tests/kit/plain/controlLink.h"
#include <QImage>
#include <QJsonObject>
#include <QJsonValue>
#include <QPoint>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/types.h>

class LivePhone : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // The command's value; fails the test when hxctl would not exit with expectedExit.
    QJsonValue ctl(const QStringList& command, int expectedExit = 0);
    // The same through hxctl itself, which is a process for each command.
    QJsonValue hxctl(const QStringList& command, int expectedExit = 0);
    // The exit status that a command has; fails nothing.
    int exitOf(const QStringList& command);
    void start();
    // The same instead of SetUp(), with a file of the device image that this phone has for itself.
    void startWith(const QString& imageFile, const QByteArray& content);
    // A file below "/rundata", as somebody else would write it; what lies in the image other phones share.
    void writeFile(const QString& path, const QByteArray& content);
    // Without waiting for the home screen; as another user when the test may do so.
    void launch(uid_t user = 0);
    void quit();
    void kill();
    // A finger on a widget, or another command, by which the phone starts anew, as the same process: until it
    // is at its home screen again.
    void restartByTap(const QString& widgetName);
    void restartBy(const QStringList& command);
    // The phone ends by itself, cleanly.
    void waitForEnd();

    void waitPage(const QString& className) { ctl({"wait", "page", className, "20000"}); }
    // What is pressed at once after the call screen has changed was not meant for it.
    static void letPressesCount();
    void waitIdle() { ctl({"wait", "idle", "10000"}); }
    // The topmost window, and one of its widgets by object name.
    QJsonObject topWindow();
    QJsonObject widget(const QString& name);
    QJsonObject focusWidget();
    void tap(int x, int y);
    void tap(const QString& widgetName);
    QPoint middleOf(const QString& widgetName);
    void softKey(int index);
    // What the soft keys of the topmost window say.
    QStringList softKeys();
    void key(const QString& name, int times = 1);
    // Digits, "*" and "#" on the phone's own pad.
    void pad(const QString& digits);
    QString config(const QString& file, const QString& section, const QString& name);
    // One key of the signage client; and all that it needs to ask that server, which is told last that it
    // may.
    void setSignageKey(const QString& key, const QString& value);
    void joinSignage(const QString& server, int intervalMs = 1000);
    QStringList logOf(const QString& kind);
    QImage screen();
    // The screen into shots/NAME.png of the build folder.
    void shot(const QString& name);

    QString root() const { return m_root.path(); }
    qint64 pid() const { return m_phone.processId(); }

    QStringList further; // arguments that the phone is started with

private:
    QJsonValue ask(const QStringList& command, int& exit);

    QTemporaryDir m_root;
    QProcess m_phone;
    ControlLink m_link;
};
