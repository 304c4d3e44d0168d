#pragma once
// What the tests of the frame share: the phone's log since the test began, and the module's entries wired
// to the host as the main program does it.
#include "frame/moduleEntries.h"
#include "host/services/system/hostLog.h"
#include "tests/kit/phoneTest.h"
#include <QStringList>

class FrameTest : public PhoneTest
{
protected:
    FrameTest()
    {
        const QList<tagLogEntry> log = hostLogFrom(1);
        m_nFirst = log.isEmpty() ? 1 : log.last().nNumber + 1;
        hostSetModule(settingEntries());
    }

    // Texts of one kind of log entry since the test began.
    QStringList logged(const char* kind) const
    {
        QStringList texts;
        for (const tagLogEntry& entry : hostLogFrom(m_nFirst)) {
            if (entry.strKind == kind)
                texts.append(entry.strText);
        }
        return texts;
    }
    bool traced(const QString& part) const { return logged("trace").filter(part).size() > 0; }
    int tracedTimes(const QString& part) const { return int(logged("trace").filter(part).size()); }

    void writeKey(const char* file, const char* section, const char* key, const char* value);
    // A copy of its own of one firmware file, with other content.
    void replaceFirmwareFile(const char* devicePath, const QByteArray& content) const;

private:
    int m_nFirst;
};

// Of a text of the log: the user sees "%s" as it stands.
inline std::string show(const QStringList& texts)
{
    return texts.join(" | ").toStdString();
}
