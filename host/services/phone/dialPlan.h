#pragma once
// The rules of "/rundata/data/dialplan.xml": a dialled number that begins with a prefix has it replaced; the
// longest prefix holds, and of two alike the first. User-interface thread.
#include "support/host/api.h"
#include <QHash>
#include <QString>

class HX_HOST_API dialPlan
{
public:
    // The file may have changed: it is read before the next number. One that cannot be read leaves the rules
    // as they were.
    void forget() { m_bRead = false; }
    // An address is no number, and stays as it is.
    QString rewrite(const QString& number);

private:
    void read();

    QHash<QString, QString> m_rules;
    qsizetype m_nLongest = 0;
    bool m_bRead = false;
};
