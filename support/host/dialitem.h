#pragma once
// What dials a number that the user may set: an icon of a menu. User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QObject>

class HX_HOST_API qDialNumberItem : public QObject
{
    Q_OBJECT
public:
    // key: of section "DialNumber" in the user's key file.
    qDialNumberItem(const chString& key, QObject* parent);
    chString PhoneNumber() const; // empty: none is set
    // 1 when it is stored.
    int SavePhoneNumber(const chString& number);
    void Call() const;

private:
    chString m_strKey;
};
