#pragma once
// A phone in this process whose signage client follows a server. User-interface thread.
#include <QTemporaryDir>
#include <functional>
#include <memory>

class QApplication;

class SignPhone
{
public:
    // The client is enabled for that server, but not yet known to it and not shown.
    SignPhone(int& argc, char** argv, const QString& server);
    ~SignPhone();
    QString root() const { return m_root.path(); }
    // Registers at the server; false when that does not succeed.
    bool enter();
    // Takes up the server's schedule, which has that many layouts and media, and turns to its next layout, so
    // that all files are in use. False when that does not succeed.
    bool takeUp(int layouts, int medias);
    // Full screen, as the page opens it.
    void show();

private:
    QTemporaryDir m_root;
    std::unique_ptr<QApplication> m_application;
};

// Runs the event loop until the condition holds; false when ms went by.
bool runUntil(const std::function<bool()>& condition, int ms);
