#pragma once
// What the tests of the frame share: the module's entries wired
// to the host as the main program does it.
#include "frame/moduleEntries.h"
#include "tests/kit/phoneTest.h"
#include <QStringList>

class FrameTest : public PhoneTest
{
protected:
    FrameTest() { hostSetModule(settingEntries()); }

    bool traced(const QString& part) const { return traces().filter(part).size() > 0; }
    int tracedTimes(const QString& part) const { return int(traces().filter(part).size()); }

    void writeKey(const char* file, const char* section, const char* key, const char* value);
};

// Of a text of the log: the user sees "%s" as it stands.
inline std::string show(const QStringList& texts)
{
    return texts.join(" | ").toStdString();
}
