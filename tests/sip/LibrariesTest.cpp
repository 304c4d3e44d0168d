// What the agent is made of, while it works.
#include "tests/sip/callTest.h"
#include <QFile>
#include <QSet>

namespace {

// Files of code that a process has in its memory, those that it has opened since its start too.
QSet<QByteArray> librariesOf(qint64 pid)
{
    QSet<QByteArray> names;
    QFile maps("/proc/" + QString::number(pid) + "/maps");
    EXPECT_TRUE(maps.open(QIODevice::ReadOnly));
    for (const QByteArray& line : maps.readAll().split('\n')) {
        if (line.contains(".so"))
            names.insert(line.mid(line.lastIndexOf('/') + 1));
    }
    return names;
}

using SipLibraries = SipCalls;

} // namespace

// An empty process of the toolkit is as large as the whole agent may be.
TEST_F(SipLibraries, OfTheToolkitAndOfThePhoneThereIsNothingInAnAgentThatTalks)
{
    begin(AgentProcess::calmSetup());
    ASSERT_NE(talkIn("libraries"), 0u);
    const QSet<QByteArray> names = librariesOf(agent.pid());
    bool hasStack = false;
    for (const QByteArray& name : names) {
        hasStack = hasStack || name.startsWith("libsofia-sip-ua");
        for (const char* strange : {"libQt", "libgst", "libglib-", "libNUX", "libhx", "libcurl"})
            EXPECT_FALSE(name.startsWith(strange)) << name.constData();
    }
    EXPECT_TRUE(hasStack) << "it is the agent that was looked at";
}
