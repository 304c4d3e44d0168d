#pragma once
// The contacts of "/rundata/data/contactData.xml", in the order of the file, over all its groups.
// User-interface thread.
#include <QList>
#include <QString>

struct tagContact
{
    QString strName;
    QString strNumber;
    QString strPicture; // device path; empty for none
    int nLine = -1;     // 0 to 3, -1 the default one
    int nIndex = -1;    // in the file; -1: not there yet
    bool operator==(const tagContact& other) const
    {
        return strName == other.strName && strNumber == other.strNumber && nLine == other.nLine;
    }
};

QList<tagContact> contactsRead();
// The first contact with that number; one without a name when nobody has it.
tagContact contactOfNumber(const QList<tagContact>& contacts, const QString& number);
// Writes contact in the place of old, or as a new one at the end when old is not there any more. What else
// the file says of the contact stays. 0 when the file cannot be saved.
int contactStore(const tagContact& old, const tagContact& contact);
// 1 when the contact is not there afterwards.
int contactRemove(const tagContact& contact);
