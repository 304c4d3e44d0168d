#pragma once
// Who may use the server: the account of server.ini, and the displays that have registered. Any thread.
//
//   [server]            [displays]
//   key=demo            Lobby=001565aabbcc   only the phone with this hardware key
//   password=secret     Hall=*               any phone may register under this name
//                       *=*                  any phone under any name
#include "tools/signServer/Registrations.h"
#include "tools/signServer/SettingsFile.h"
#include <QStringList>

struct AdmittedDisplay
{
    QByteArray key, name;
};

class Account
{
public:
    // Why a phone is refused; empty when it is not.
    using Answered = std::function<void(const QByteArray&)>;

    explicit Account(const SignFolder& folder) : m_settings(folder), m_registrations(folder) {}

    // A good registration is answered when it is saved. Answered once, at once or later, on any thread.
    void Register(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                  const QByteArray& hardwareKey, const Answered& answered);
    // Empty when a display that registered earlier, and is still admitted, may be served. name: its own.
    QByteArray Check(const QByteArray& key, const QByteArray& hardwareKey, QByteArray& name);
    // Waits until every registration is answered.
    void Settle() { m_registrations.Settle(); }
    // What in server.ini no phone could send; a line each.
    QStringList Complaints() const;
    // The value of a key of server.ini; null without one.
    QByteArray Setting(const char* section, const char* name) const;
    // The displays that are admitted: those that have registered, and those that are still to come, as far as
    // server.ini names them with their keys.
    QList<AdmittedDisplay> Displays();

private:
    QByteArray Refuses(const QByteArray& key, const QByteArray& password, const QByteArray& name,
                       const QByteArray& hardwareKey);

    SettingsFile m_settings;
    Registrations m_registrations;
};

// Takes as long for a wrong text as for the right one.
bool IsSameSecret(const QByteArray& given, const QByteArray& right);
