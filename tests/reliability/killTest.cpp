// The power goes at any moment of a synchronisation: the phone is killed and started again, many times, while
// the server's content changes.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/reliability/deckFolder.h"
#include "tests/reliability/signContent.h"
#include "tests/reliability/syncPeer.h"
#include <QDir>
#include <QFile>
#include <QImage>
#include <QThread>

using namespace kit;

namespace {

constexpr unsigned kSeed = 20261121;
constexpr int kPeerRounds = 50;
constexpr int kLongPeerRounds = 100;
constexpr int kPhoneRounds = 12;
constexpr int kBackRounds = 10; // more of them add chance alone
constexpr int kLongBackRounds = 25;
constexpr int kInStepMs = 30000;

class Killed : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }

    // What no moment of death may leave behind.
    static QString damage(const QString& root, const SignContent& content)
    {
        const DeckFolder folder(root);
        const QString wrong = folder.wrongFile(content.known());
        return wrong.isEmpty() ? folder.wrongRecord() : wrong;
    }
    // Some deaths come while the phone starts, most while it fetches, a few when it is nearly done.
    void liveAWhile(SyncPeer& peer)
    {
        const unsigned kind = random() % 10;
        if (kind < 2) {
            QThread::msleep(random() % 150);
            return;
        }
        ASSERT_TRUE(peer.waitUp());
        QThread::msleep(random() % (kind < 8 ? 250 : 600));
    }

    SignServer server;
    std::mt19937 random{kSeed};
};

// Twice, beside each other: a hundred deaths, and two hundred in the long run.
class KilledOften : public Killed, public ::testing::WithParamInterface<unsigned>
{
};

class KilledPhone : public LivePhone
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        LivePhone::SetUp();
        joinSignage(server.url(), 300);
    }
    void show()
    {
        ctl({"set", "net", "state=2"});
        ctl({"open-info", "Ndeck", "", "Ndeck"});
    }
    QString middleOfScreen() { return screen().pixelColor(400, 240).name(); }

    SignServer server;
};

} // namespace

TEST_P(KilledOften, ASyncSurvivesAHundredDeathsAtAnyMoment)
{
    SignContent content(server, kSeed + GetParam());
    SyncPeer peer(server.url());
    int lived = 0;
    const int rounds = qEnvironmentVariableIsSet("HX_LONG") ? kLongPeerRounds : kPeerRounds;
    for (int round = 0; round < rounds; ++round) {
        ASSERT_TRUE(peer.start());
        liveAWhile(peer);
        lived += peer.runs();
        peer.kill();
        const QString wrong = damage(peer.root(), content);
        ASSERT_TRUE(wrong.isEmpty()) << "round " << round << ": " << qPrintable(wrong);
        content.change();
    }
    EXPECT_EQ(lived, rounds) << "it never ended by itself";
    content.settle();
    ASSERT_TRUE(peer.start());
    const DeckFolder folder(peer.root());
    EXPECT_TRUE(waits([&] { return folder.outOfStep(content.wanted()).isEmpty(); }, kInStepMs))
        << qPrintable(folder.outOfStep(content.wanted()));
    EXPECT_TRUE(waits([&] { return peer.shows() == content.colour(); }, kInStepMs))
        << qPrintable(peer.shows());
}

INSTANTIATE_TEST_SUITE_P(Stories, KilledOften, ::testing::Values(0U, 1U));

// Of transfers and of verified files, also where no schedule names them any more.
TEST_F(Killed, WhatADeathLeftBehindIsGoneWithTheNextStart)
{
    SignContent content(server, kSeed);
    SyncPeer peer(server.url());
    const QString folder = peer.root() + "/rundata/nDeck/";
    QDir().mkpath(folder);
    for (const char* name :
         {"old.png.ing", ".old.png.ing.save0", "old.png.new", "file07.bin.new", "listed.png.ing"}) {
        QFile file(folder + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("half of it");
    }
    QFile list(folder + "display.xml");
    ASSERT_TRUE(list.open(QIODevice::WriteOnly));
    list.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><files><file type=\"media\" path=\"listed.png.ing\" "
        "md5=\"0123\" size=\"20\"/></files>");
    list.close();
    ASSERT_TRUE(peer.start());
    const DeckFolder deck(peer.root());
    EXPECT_TRUE(waits([&] { return deck.outOfStep(content.wanted()).isEmpty(); }, kInStepMs))
        << qPrintable(deck.outOfStep(content.wanted()));
}

// A file that came into use just before a death may go back to its former content before the next start.
TEST_F(Killed, AContentThatGoesBackAfterADeathIsNotTakenForTheOneThatIsThere)
{
    SignContent content(server, kSeed + 1);
    SyncPeer peer(server.url());
    const int rounds = qEnvironmentVariableIsSet("HX_LONG") ? kLongBackRounds : kBackRounds;
    for (int round = 0; round < rounds; ++round) {
        content.change();
        ASSERT_TRUE(peer.start());
        liveAWhile(peer);
        peer.kill();
        content.change();
        ASSERT_TRUE(peer.start());
        const DeckFolder folder(peer.root());
        ASSERT_TRUE(waits([&] { return folder.outOfStep(content.wanted()).isEmpty(); }, kInStepMs))
            << "round " << round << ": " << qPrintable(folder.outOfStep(content.wanted()));
        peer.kill();
    }
}

TEST_F(KilledPhone, TheWholePhoneComesBackIntoStep)
{
    SignContent content(server, kSeed);
    std::mt19937 random(kSeed);
    for (int round = 0; round < kPhoneRounds; ++round) {
        show();
        QThread::msleep(random() % 900);
        kill();
        const DeckFolder folder(root());
        const QString wrong = folder.wrongFile(content.known()) + folder.wrongRecord();
        ASSERT_TRUE(wrong.isEmpty()) << "round " << round << ": " << qPrintable(wrong);
        content.change();
        start();
    }
    content.settle();
    show();
    const DeckFolder folder(root());
    EXPECT_TRUE(waits([&] { return folder.outOfStep(content.wanted()).isEmpty(); }, kInStepMs))
        << qPrintable(folder.outOfStep(content.wanted()));
    EXPECT_TRUE(waits([&] { return middleOfScreen() == content.colour(); }, kInStepMs));
}
