#include "tests/media/ownWorld.h"
#include "support/file/deviceRoot.h"
#include <QCoreApplication>
#include <QProcess>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kOwnWorld = "HX_TEST_MOUNTS";

} // namespace

bool ownWorld::isInside()
{
    return qEnvironmentVariableIsSet(kOwnWorld);
}

bool ownWorld::hasRun()
{
    if (isInside() || QProcess::execute("unshare", {"--map-root-user", "--mount", "true"}) != 0)
        return false;
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kOwnWorld, "1");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start("unshare", {"--map-root-user", "--mount", QCoreApplication::applicationFilePath(),
                              QString("--gtest_filter=%1.%2").arg(test->test_suite_name(), test->name())});
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    return true;
}

void ownWorld::make(const QByteArray& folder)
{
    if (!isInside())
        return;
    ASSERT_EQ(mkdir(folder + "/proc", 0755), 0);
    ASSERT_EQ(mount("/proc", folder + "/proc", nullptr, MS_BIND | MS_REC, nullptr), 0);
    ASSERT_EQ(chroot(folder), 0);
    ASSERT_EQ(chdir("/"), 0);
    deviceSetRoot("");
}
