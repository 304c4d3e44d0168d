// A server and a network that do everything wrong, for two thousand transfers.
#include "tests/kit/plain/processes.h"
#include "tests/reliability/deckFolder.h"
#include "tests/reliability/signContent.h"
#include "tests/reliability/syncPeer.h"
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace kit;

namespace {

constexpr unsigned kSeed = 4711;
constexpr int kTransfers = 2000;
constexpr int kChangeMs = 500; // after which the content changes again
constexpr int kFaultMs = 100000;
constexpr int kInStepMs = 200000; // a file that was given up is asked for after one minute, or two more

// A seed of its own for each rule, or all of them would strike together.
const char* const kFaults = R"(seed 1
refuse /service/getfile* status=503 probability=0.05
seed 2
refuse /service/getfile* status=404 probability=0.03
seed 3
stall /service/getfile* seconds=1 probability=0.005
seed 4
stall /service/getfile* seconds=1 after=300 probability=0.005
seed 5
drip /service/getfile* bytes=3000 pause=3 probability=0.02
seed 6
cut /service/getfile* probability=0.05
seed 7
cut /service/getfile* after=0 probability=0.03
seed 8
cut /service/getfile* chunked=1 probability=0.05
seed 9
corrupt /service/getfile* probability=0.08
seed 10
redirect /service/getfile* probability=0.02
seed 11
longer /service/getfile* by=100 probability=0.01
seed 12
shorter /service/getfile* by=1 probability=0.05
seed 13
garbage /service/getfile* bytes=2000 probability=0.04
seed 14
broken-xml /service/getfile*fileType=layout* probability=0.1
seed 15
refuse /service/getschedule* probability=0.05
seed 16
cut /service/getschedule* probability=0.05
seed 17
cut /service/getschedule* chunked=1 probability=0.05
seed 18
corrupt /service/getschedule* bytes=2 probability=0.1
seed 19
shorter /service/getschedule* by=400 probability=0.05
seed 20
garbage /service/getschedule* probability=0.03
seed 21
broken-xml /service/getschedule* probability=0.1
seed 22
redirect /service/getschedule* probability=0.02
)";

} // namespace

TEST(MisbehavingServer, TwoThousandTransfersLeaveNothingWrongAndTheSyncCompletes)
{
    SignServer server;
    ASSERT_TRUE(server.start());
    SignContent content(server, kSeed);
    ASSERT_TRUE(server.setFaults(kFaults));
    SyncPeer peer(server.url());
    peer.setKey("bKeepShow", "1"); // a run of bad luck uses up the budget of a file, not the file
    peer.setKey("nUpdateInteval", "150");
    ASSERT_TRUE(peer.start());
    const DeckFolder folder(peer.root());

    QElapsedTimer sinceChange;
    sinceChange.start();
    int checks = 0;
    const bool enough = waits(
        [&] {
            const QString wrong = folder.wrongFile(content.known());
            EXPECT_TRUE(wrong.isEmpty()) << "check " << checks << ": " << qPrintable(wrong);
            ++checks;
            if (sinceChange.elapsed() > kChangeMs) {
                content.change();
                sinceChange.restart();
            }
            return ::testing::Test::HasFailure() || server.requestsFor("/service/getfile.htm") >= kTransfers;
        },
        kFaultMs);
    ASSERT_FALSE(::testing::Test::HasFailure());
    EXPECT_TRUE(enough) << server.requestsFor("/service/getfile.htm") << " transfers";
    for (const char* kind : {"refuse", "stall", "drip", "cut", "corrupt", "redirect", "longer", "shorter",
                             "garbage", "broken-xml"})
        EXPECT_GT(server.requestsFor(QString("fault=") + kind), 0) << kind;

    ASSERT_TRUE(server.setFaults(""));
    content.settle();
    EXPECT_TRUE(waits([&] { return folder.outOfStep(content.wanted()).isEmpty(); }, kInStepMs))
        << qPrintable(folder.outOfStep(content.wanted()));
    EXPECT_TRUE(folder.wrongFile(content.known()).isEmpty());
    EXPECT_TRUE(waits([&] { return peer.shows() == content.colour(); }, kInStepMs))
        << qPrintable(peer.shows());
    EXPECT_TRUE(peer.runs());
}
