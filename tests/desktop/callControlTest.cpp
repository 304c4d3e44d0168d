// The commands that make calls and lists of the simulated world, with what they refuse.
#include "host/control/callCommands.h"
#include "host/control/worldCommands.h"
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/desktop/desktopTest.h"
#include <QJsonArray>
#include <QJsonObject>

namespace {

class CallControl : public DesktopTest
{
protected:
    ~CallControl() override { phoneSimulation::instance()->setPstn(0); }
    // What the command answers: "ok", why not, or the form when its words are not of it.
    static QString answer(void (*command)(const QStringList&, const ControlReply&), const QStringList& words)
    {
        QJsonObject answer;
        int answers = 0;
        command(words, [&](const QJsonValue& value) {
            answer = value.toObject();
            ++answers;
        });
        EXPECT_EQ(answers, 1) << words.join(' ').toStdString();
        return answer["ok"].toBool() ? "ok" : answer["error"].toString();
    }
    static QString ring(const QString& words) { return answer(controlRing, words.split(' ')); }
    static QString set(const QString& words) { return answer(controlSet, words.split(' ')); }
    // Of the newest call, as "calls" tells it.
    static QJsonObject call()
    {
        QJsonObject told;
        controlCalls({}, [&](const QJsonValue& value) { told = value.toObject(); });
        const QJsonArray calls = told["calls"].toArray();
        return calls.isEmpty() ? QJsonObject() : calls.last().toObject();
    }
};

const QString kRingForm = "usage: " CONTROL_RING_FORM;

} // namespace

TEST_F(CallControl, ACallTellsWhoHasSentItOn)
{
    EXPECT_EQ(ring("4711 2 Anna video by=600 by=601"), "ok");
    EXPECT_EQ(call()["number"], "4711");
    EXPECT_EQ(call()["line"], 2);
    EXPECT_EQ(call()["name"], "Anna");
    EXPECT_FALSE(call()["anonymous"].toBool());
    EXPECT_EQ(call()["forwardedBy"].toArray(), (QJsonArray{"600", "601"})) << "the last one last";
    EXPECT_TRUE(phoneService::instance().answer(call()["id"].toInt()));
    EXPECT_TRUE(call()["video"].toBool()) << "both sides want it";
    hangUpAll();
    EXPECT_EQ(ring("4712 anonymous by=600"), "ok");
    EXPECT_EQ(call()["line"], 0);
    EXPECT_TRUE(call()["anonymous"].toBool());
    EXPECT_EQ(call()["forwardedBy"].toArray(), QJsonArray{"600"});
}

TEST_F(CallControl, ACallOnTheAnalogueLineNeedsOne)
{
    EXPECT_EQ(ring("4711 pstn"), "no such line or number");
    EXPECT_EQ(set("pstn 1"), "ok");
    EXPECT_EQ(ring("4711 pstn Eve"), "ok");
    EXPECT_EQ(call()["line"], int(PHONE_LINE_PSTN));
    EXPECT_EQ(call()["name"], "Eve");
    EXPECT_EQ(set("pstn on"), "usage: set pstn N");
}

TEST_F(CallControl, ACallerThatCannotBeIsRefused)
{
    for (const char* line : {"9", "-1", "5"})
        EXPECT_EQ(ring(QString("4711 ") + line), "no such line or number") << line;
    for (const char* words : {"4711 first", "4711 0 Anna Berg", "4711 by=600 0", "4711 0 Anna by=600 more"})
        EXPECT_EQ(ring(words), kRingForm) << words;
    EXPECT_TRUE(phoneService::instance().calls().isEmpty());
}

TEST_F(CallControl, TheListOfALineIsSetByHand)
{
    lampBook& book = lampBook::instance();
    book.watchList(1);
    EXPECT_EQ(set("list 1 8101=Cleo,8102"), "ok");
    ASSERT_EQ(book.list(1).size(), 2);
    EXPECT_EQ(book.list(1)[0].strNumber, "8101");
    EXPECT_EQ(book.list(1)[0].strName, "Cleo");
    EXPECT_EQ(book.list(1)[1].strNumber, "8102");
    EXPECT_EQ(set("list 1"), "ok");
    EXPECT_TRUE(book.list(1).isEmpty());
    for (const char* line : {"4", "-1"})
        EXPECT_EQ(set(QString("list ") + line), "no such line") << line;
    for (const char* words : {"list one", "list 1 8101 8102"})
        EXPECT_EQ(set(words), "usage: set list LINE [NUMBER[=NAME],...]") << words;
    book.unwatchList(1);
}

TEST_F(CallControl, StreamsConnectJoinAndSplitSayWhatTheyRefuse)
{
    const auto streams = [](const QString& words) { return answer(controlStreams, words.split(' ')); };
    const QString none = "no such call, or it does not wait for that";
    EXPECT_EQ(ring("4711"), "ok");
    const QString id = QString::number(call()["id"].toInt());
    for (const QString& words : {QString("x sound=Opus"), id + " Opus", id + " quality=5", id + " quality=-2",
                                 id + " quality=", id + " encrypted=2", id + " loudness=1"})
        EXPECT_EQ(streams(words), "usage: " CONTROL_STREAMS_FORM) << words.toStdString();
    EXPECT_EQ(call()["quality"].toInt(), -1) << "nothing of it was done";
    EXPECT_EQ(streams("1048576 sound=Opus"), none);
    EXPECT_EQ(streams(id + " sound=Opus quality=0"), "ok");
    EXPECT_EQ(streams(id + " picture=H.264 encrypted=1"), "ok");
    EXPECT_EQ(call()["sound"], "Opus");
    EXPECT_EQ(call()["picture"], "H.264");
    EXPECT_EQ(call()["quality"].toInt(), 0);
    EXPECT_TRUE(call()["encrypted"].toBool());
    EXPECT_EQ(answer(controlConnect, {id, "x"}), "usage: " CONTROL_CONNECT_FORM);
    EXPECT_EQ(answer(controlJoin, {"x", id}), "usage: " CONTROL_JOIN_FORM);
    EXPECT_EQ(answer(controlSplit, {"x"}), "usage: " CONTROL_SPLIT_FORM);
    EXPECT_EQ(answer(controlConnect, {id, id}), none);
    EXPECT_EQ(answer(controlJoin, {id, "1048576"}), none);
    EXPECT_EQ(answer(controlSplit, {id}), none);
    EXPECT_EQ(answer(controlOtherSide, {id, "shout"}), "usage: " CONTROL_OTHER_SIDE_FORM);
    EXPECT_EQ(answer(controlOtherSide, {id, "refuse"}), none) << "it only rings";
}
