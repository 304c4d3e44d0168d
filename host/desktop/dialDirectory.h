#pragma once
// Whom a person may want to call: the contacts, and the numbers of the last calls. Files are read on a task
// thread. User-interface thread.
#include "support/host/task.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

struct tagDialEntry
{
    QString strName;    // empty for a number that nobody has
    QString strNumber;  // as it is dialled
    QString strDetail;  // the number of a contact, the time of a call
    QString strPicture; // device path of an icon
    int nLine = -1;     // 0 to 3; -1 the default one
    int nCall = 0;      // of somebody who is in a call here already
    QString strLower;   // what is typed is looked for here: the name in small letters,
    QString strKeys;    // and in the digits of its words, each with a blank in front
};

class dialDirectory : public ActionCallback
{
public:
    enum { ROWS_MAX = 20 };

    // read: told when load() has read.
    explicit dialDirectory(std::function<void()> read) : m_read(std::move(read)) {}
    // Returns at once; what was read before serves until then.
    void load();
    // The last numbers, each once, newest first; with something typed who matches it by number, name or the
    // keys of a name, contacts first. At most ROWS_MAX.
    QList<tagDialEntry> find(const QString& typed) const;

    void OnCallback(taskAction* action) override;

private:
    std::function<void()> m_read;
    QList<tagDialEntry> m_contacts;
    QList<tagDialEntry> m_calls;
};
