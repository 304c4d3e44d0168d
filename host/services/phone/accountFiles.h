#pragma once
// The accounts of the lines, "/rundata/config/user/voip/sipAccount%d.cfg", and what whoever makes calls on
// them tells of them. User-interface thread.
#include "support/host/phone.h"
#include <QString>
#include <functional>

enum ACCOUNT_TRANSPORT { ACCOUNT_UDP, ACCOUNT_TCP, ACCOUNT_TLS };

struct tagAccountFile
{
    bool bEnable = false;
    QString strName; // of its owner, for those he calls
    QString strAuthName;
    QString strUser;
    QString strPassword;
    QString strRealm; // only this one is told the password's digest; empty: whoever asks
    QString strServer;
    int nPort = 0;    // 0: as the domain's records say
    QString strProxy; // outbound; empty: none
    int nProxyPort = 0;
    ACCOUNT_TRANSPORT eTransport = ACCOUNT_UDP;
    int nExpires = 0;      // 60 to 86400 seconds that a registration lasts
    QString strStunServer; // empty: none
    int nStunPort = 0;
    QString strPickUp;             // code that takes a call, before the number where it rings; empty: none
    QString strList;               // address of the server's list of extensions; empty: it has none
    bool bEncrypt = false;         // nothing but encrypted sound and pictures
    bool bTransferByOther = false; // whom the other side of a call wants called is called

    // There is something to register.
    bool isComplete() const { return bEnable && !strUser.isEmpty() && !strServer.isEmpty(); }
    bool operator==(const tagAccountFile& other) const;
};

// index: 0 to PHONE_ACCOUNT_COUNT - 1.
tagAccountFile accountFileRead(int index);

// Clipped to the record, never inside a character.
void accountSetText(char (&target)[PHONE_TEXT_SIZE], const QString& text);
// The default account by the lines' states, else the first that is registered; -1 when none is.
int accountDefaultOf(const std::function<LINE_STATE(int)>& stateOf);

// Tells which accounts have changed since they were last told.
class accountTeller
{
public:
    accountTeller(std::function<tagAccountInfo(int)> info, std::function<void(int)> changed);
    void tell();

private:
    std::function<tagAccountInfo(int)> m_info;
    std::function<void(int)> m_changed;
    tagAccountInfo m_told[PHONE_ACCOUNT_COUNT];
};
