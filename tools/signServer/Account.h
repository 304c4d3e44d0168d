#pragma once
// Who may use the server: the account of server.ini, and the displays that have registered. Any thread.
//
//   [server]            [displays]
//   key=demo            Lobby=001565aabbcc   only the phone with this hardware key
//   password=secret     Hall=*               any phone may register under this name
//                       *=*                  any phone under any name
#include "tools/signServer/SignFolder.h"
#include <QList>
#include <QPair>

class Account
{
public:
    explicit Account(const SignFolder& folder) : m_folder(folder) {}

    // Empty when the display is registered now, otherwise why it is not.
    QByteArray Register(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                        const QByteArray& hardwareKey);
    // Empty when a display that registered earlier, and is still admitted, may be served. name: its own.
    QByteArray Check(const QByteArray& key, const QByteArray& hardwareKey, QByteArray& name) const;

private:
    using Rows = QList<QPair<QByteArray, QByteArray>>; // in the order of the file

    static Rows Section(const QByteArray& text, const QByteArray& section);
    static bool IsAdmitted(const QByteArray& settings, const QByteArray& name, const QByteArray& hardwareKey);
    int Remember(const QByteArray& hardwareKey, const QByteArray& name);

    const SignFolder& m_folder;
    mutable QMutex m_lock; // of registered.ini
};

// Takes as long for a wrong text as for the right one.
bool IsSameSecret(const QByteArray& given, const QByteArray& right);
