#pragma once
// The accounts of a phone that is not started yet.
#include <QByteArray>
#include <QString>
#include <cstdint>

struct tagSipUser
{
    QByteArray user; // the password is "pw-" and this
    uint32_t nPort;  // of a server of the loopback interface
    const char* szTransport = "UDP";
};

// Of the phone in that folder.
void putSipAccount(const QString& root, int line, const tagSipUser& user);
// Which nobody answers here, and which has nothing to do with calls.
void askNoWeather(const QString& root);
