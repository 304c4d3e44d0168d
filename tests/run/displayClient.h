#pragma once
// A client of an X display that speaks the protocol itself, so that a test decides what it presents as its
// key.
#include <QByteArray>
#include <QList>
#include <QLocalSocket>

class DisplayClient
{
public:
    // display: its number; cookie: a file with a key, which is shown; empty shows none. withoutFile: by the
    // socket that has a name but no file.
    DisplayClient(const QByteArray& display, const QString& cookie, bool withoutFile = false);
    bool isAdmitted() const { return m_bAdmitted; }

    // The windows on the screen.
    QList<quint32> windows();
    QByteArray title(quint32 window);
    // As a window manager does with a window whose program does not know how to close it.
    void closeWindow(quint32 window);

private:
    QByteArray read(qsizetype size);
    QByteArray ask(const QByteArray& request);

    QLocalSocket m_socket;
    bool m_bAdmitted = false;
    quint32 m_nRoot = 0;
};
