// The library that carries transfers is there with the first of them, and not before.
#include "host/services/transfers/redirectRule.h"
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/httpServer.h"
#include "tests/services/networkLook.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <dlfcn.h>
#include <link.h>

namespace {

const char* const kTarget = "/rundata/data/got.xml";
const char* const kSaysSo = "HX_TEST_LIBRARY"; // set in the process that has another library
const char* const kName = "libcurl.so.4";

class Counter : public ActionCallback
{
public:
    void OnCallback(taskAction*) override { ++calls; }
    int calls = 0;
};

class HttpLibrary : public PhoneTest
{
protected:
    HttpLibrary()
    {
        server.onRequest = [](QTcpSocket& socket, const QByteArray&) {
            socket.write(httpServer::answer("<new/>"));
        };
    }
    // The result; -1 when there was none in time.
    int fetch()
    {
        HttpAction action;
        action.strRemoteUrl = server.url("/file").constData();
        action.strLocalFile = kTarget;
        action.SetCallback(&counter);
        PostAction(action);
        return kit::waitUntil([&] { return counter.calls > 0; }, 10000) ? action.nResult : -1;
    }
    static bool isLoaded() { return dlopen(kName, RTLD_LAZY | RTLD_NOLOAD) != nullptr; }

    // The test again, in a process that finds this file under the library's name.
    void againWithLibrary(const QByteArray& file)
    {
        const QString folder = root() + "/lib";
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile library(folder + '/' + kName);
        ASSERT_TRUE(library.open(QIODevice::WriteOnly));
        library.write(file);
        library.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_LIBRARY_PATH", folder);
        environment.insert(kSaysSo, "1");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        process.start(QCoreApplication::applicationFilePath(),
                      {QString("--gtest_filter=%1.%2").arg(test->test_suite_name(), test->name())});
        ASSERT_TRUE(process.waitForFinished(60000));
        const QByteArray said = process.readAllStandardOutput();
        EXPECT_EQ(process.exitCode(), 0) << said.constData();
        EXPECT_TRUE(said.contains("[  PASSED  ] 1 test")) << said.constData();
    }

    void expectFailure(const char* why)
    {
        writeFile(kTarget, "old");
        EXPECT_EQ(fetch(), 0);
        EXPECT_TRUE(lastTransferFailure().contains(why)) << qPrintable(lastTransferFailure());
        EXPECT_TRUE(lastTransferFailure().contains(kName)) << qPrintable(lastTransferFailure());
        EXPECT_EQ(readFile(kTarget), "old");
        EXPECT_TRUE(server.paths.isEmpty());
        EXPECT_FALSE(redirectRule::isAllowed(QUrl("http://a/"), QUrl("http://b/"))) << "nobody can judge it";
        counter.calls = 0;
        EXPECT_EQ(fetch(), 0) << "the next one fails alike";
    }

    Counter counter;
    httpServer server;
};

QByteArray contentOf(const char* library)
{
    void* const opened = dlopen(library, RTLD_LAZY);
    const link_map* map = nullptr;
    if (!opened || dlinfo(opened, RTLD_DI_LINKMAP, &map) != 0)
        return QByteArray();
    QFile file(map->l_name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST_F(HttpLibrary, TheFirstTransferLoadsIt)
{
    ASSERT_FALSE(isLoaded());
    EXPECT_EQ(fetch(), 1);
    EXPECT_EQ(readFile(kTarget), "<new/>");
    EXPECT_TRUE(isLoaded());
}

TEST_F(HttpLibrary, WithoutItATransferFailsAndTheLogSaysWhy)
{
    if (!getenv(kSaysSo)) {
        againWithLibrary("this is no library");
        return;
    }
    expectFailure("no transfer library");
}

TEST_F(HttpLibrary, OneThatLacksAFunctionIsNone)
{
    if (!getenv(kSaysSo)) {
        const QByteArray another = contentOf("libz.so.1");
        ASSERT_FALSE(another.isEmpty());
        againWithLibrary(another);
        return;
    }
    expectFailure("undefined symbol: curl_global_init");
}
