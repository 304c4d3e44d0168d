// What a phone that has just started has not loaded yet, and when it does.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include <QFile>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace kit;

namespace {

const QByteArray kTransfers = "libcurl.so";
const QByteArray kDecoders = "libavcodec.so";

class Start : public LivePhone
{
protected:
    static bool hasLoaded(qint64 process, const QByteArray& library)
    {
        QFile maps(QString("/proc/%1/maps").arg(process));
        EXPECT_TRUE(maps.open(QIODevice::ReadOnly));
        return maps.readAll().contains(library);
    }
    qint64 player(const QByteArray& program) const { return childOf(pid(), program); }
    bool isUp(const QByteArray& program) const
    {
        return QFile::exists(root() + "/rundata/run/app_" + program + ".sock");
    }
    void showSignage(SignServer& server)
    {
        joinSignage(server.url());
        ctl({"set", "net", "state=2"});
        ctl({"open-info", "Ndeck", "", "Ndeck"});
    }
};

} // namespace

TEST_F(Start, TransfersAndDecodersAreLoadedWithTheFirstOfEach)
{
    ASSERT_TRUE(waits([&] { return isUp("hxMovie") && isUp("hxMedia"); }, 10000));
    EXPECT_TRUE(hasLoaded(pid(), "libhxHost.so"));
    EXPECT_TRUE(hasLoaded(player("hxMedia"), "libgstreamer"));
    EXPECT_FALSE(hasLoaded(pid(), kTransfers));
    EXPECT_FALSE(hasLoaded(player("hxMedia"), kDecoders));
    EXPECT_FALSE(hasLoaded(player("hxMovie"), kDecoders));

    SignServer server;
    server.copyMedia("film.mp4", HX_BUILD_DIR "/signageDemo/media/day.mp4");
    server.putLayout("film.xml", signLayout(signRegion(QRect(0, 0, 800, 480), signVideo("film.mp4", 4))));
    ASSERT_TRUE(server.start());
    showSignage(server);
    EXPECT_TRUE(waits([&] { return hasLoaded(pid(), kTransfers); }, 30000));
    EXPECT_TRUE(waits([&] { return hasLoaded(player("hxMedia"), kDecoders); }, 30000));
}

// The service manager is this test.
TEST_F(Start, TheServiceManagerIsToldOnceWhenTheHomeScreenIsThere)
{
    const QByteArray path = (root() + "/notices").toUtf8();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), qsizetype(sizeof address.sun_path));
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int notices = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    ASSERT_EQ(bind(notices, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    quit();
    qputenv("NOTIFY_SOCKET", path);
    launch();
    qunsetenv("NOTIFY_SOCKET");
    QByteArray notice(100, 0);
    ASSERT_TRUE(waits(
        [&] {
            const ssize_t size = recv(notices, notice.data(), size_t(notice.size()), 0);
            notice.truncate(size > 0 ? qsizetype(size) : notice.size());
            return size > 0;
        },
        20000));
    EXPECT_EQ(notice, "READY=1");
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    key("F4");
    waitPage("frmDesktop");
    EXPECT_EQ(recv(notices, notice.data(), size_t(notice.size()), 0), -1) << "once";
    close(notices);
}
