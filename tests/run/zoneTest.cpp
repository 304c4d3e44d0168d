// ./run begins a new phone in the zone of the machine, and leaves the zone of one that is there.
#include "tests/run/runScript.h"
#include <QFile>
#include <csignal>
#include <gtest/gtest.h>

namespace {

class RunZone : public testing::Test
{
protected:
    RunZone() { qputenv("TZ", "Asia/Kolkata"); }
    ~RunZone() override { qunsetenv("TZ"); }
    QByteArray settings() const
    {
        QFile file(m_phone.root() + "/rundata/config/system.ini");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    RunScript m_phone;
};

} // namespace

TEST_F(RunZone, ANewPhoneHasTheZoneOfTheMachineAndKeepsItsOwnLater)
{
    m_phone.startPage();
    EXPECT_TRUE(settings().contains("strTimeName=\"+05:30 \"\nstrZoneName=India, New Delhi\n"));
    m_phone.ctl({"config", "/rundata/config/system.ini", "LocalTime", "strZoneName", "Sri Lanka, Colombo"});
    m_phone.signal(SIGINT);
    ASSERT_TRUE(m_phone.waitEnd());
    RunScript later;
    later.startPage({"--root", m_phone.root()});
    EXPECT_TRUE(settings().contains("strTimeName=\"+05:30 \"\nstrZoneName=Sri Lanka, Colombo\n"));
}
