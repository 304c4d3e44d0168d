#pragma once
// One row of the voice mail page: the labels of an account. User-interface thread.
#include "support/host/phone.h"

class QLabel;

// A short-lived name for widgets of the page.
class AccountMail
{
public:
    AccountMail(int index, QLabel* account, QLabel* picture, QLabel* voiceMail)
        : m_iIndex(index), m_pLabAccount(account), m_pLabPic(picture), m_pLabVoiceMail(voiceMail)
    {
    }
    static bool IsRegistered(const tagAccountInfo& info)
    {
        return info.eState == LINE_REGISTERED || info.eState == LINE_DEFAULT_ACCOUNT;
    }
    // How many messages wait, and how many were heard.
    void SetMail(unsigned int newCount, unsigned int oldCount);

    int m_iIndex; // of the account, 0 to 3
    QLabel* m_pLabAccount;
    QLabel* m_pLabPic;
    QLabel* m_pLabVoiceMail;
};
