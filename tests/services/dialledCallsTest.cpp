// What becomes of a number on its way out: dial plan, line, what goes along, and the codes that the exchange
// is told.
#include "host/services/phone/callNumber.h"
#include "support/host/net.h"
#include "tests/services/ruledCalls.h"
#include <QFile>

namespace {

const char* const kPlan = "/rundata/data/dialplan.xml";

class DialledCalls : public RuledCalls
{
protected:
    void plan(const QByteArray& rules)
    {
        writeFile(kPlan, "<DialRule>" + rules + "</DialRule>");
        tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    }
    // What is dialled for it.
    QString dialled(const QString& number, int account = 0)
    {
        news.calls.clear();
        const int id = rules->dial(number, account);
        const QStringList told = orders();
        if (id)
            rules->hangUp(id);
        orders();
        return told.join(", ");
    }
};

TEST_F(DialledCalls, TheLongestPrefixIsReplaced)
{
    plan("<Data Prefix='0' Replace='9'/><Data Prefix='00' Replace='+'/><Data Prefix='0049' Replace='0'/>"
         "<Data Prefix='00' Replace='7'/><Data Prefix='' Replace='x'/>");
    EXPECT_EQ(dialled("0123"), "dial 9123 on 0");
    EXPECT_EQ(dialled("0012"), "dial +12 on 0") << "the first of two alike";
    EXPECT_EQ(dialled("004930"), "dial 030 on 0");
    EXPECT_EQ(dialled("00 49-30"), "dial 030 on 0") << "as digits, not as it is written";
    EXPECT_EQ(dialled("110"), "dial 110 on 0");
    EXPECT_EQ(dialled("0"), "dial 9 on 0");
    EXPECT_EQ(dialled("00@pbx.test"), "dial 00@pbx.test on 0") << "an address is no number";
}

TEST_F(DialledCalls, AnAddressWithoutAUserIsNoNumberEither)
{
    plan("<Data Prefix='s' Replace='9'/><Data Prefix='10' Replace='9'/>");
    EXPECT_EQ(dialled("sip:600"), "dial sip:600 on 0");
    EXPECT_EQ(dialled("10.0.0.5:5062"), "dial 10.0.0.5:5062 on 0");
    EXPECT_EQ(dialled("sales"), "dial 9ales on 0");
}

TEST_F(DialledCalls, ThePlanIsReadAgainWhenItChanged)
{
    EXPECT_EQ(dialled("01"), "dial 01 on 0");
    writeFile(kPlan, "<DialRule><Data Prefix='0' Replace='9'/></DialRule>");
    EXPECT_EQ(dialled("01"), "dial 01 on 0") << "before it is told of";
    tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    EXPECT_EQ(dialled("01"), "dial 91 on 0");
    writeFile(kPlan, "<DialRule><Data Pre");
    tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    EXPECT_EQ(dialled("01"), "dial 91 on 0") << "one that is broken takes no rules away";
    EXPECT_EQ(readFile(kPlan), "<DialRule><Data Pre");
    EXPECT_EQ(traces().filter("The dial plan cannot be read").size(), 1);
    QFile::remove(hostPath(kPlan));
    tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    EXPECT_EQ(dialled("01"), "dial 01 on 0");
}

TEST_F(DialledCalls, ARuleNeverMakesAnythingElseOfANumber)
{
    plan("<Data Prefix='1' Replace='\"5'/><Data Prefix='2' Replace=''/>");
    EXPECT_EQ(dialled("12"), "");
    EXPECT_EQ(news.calls.last().strReason, "This cannot be dialled");
    EXPECT_EQ(dialled("2"), "") << "nothing is left";
    EXPECT_EQ(dialled("23"), "dial 3 on 0");
}

TEST_F(DialledCalls, PeoplePutThroughAndForwardedByHandFollowThePlan)
{
    plan("<Data Prefix='0' Replace='9'/>");
    const int first = arrive();
    EXPECT_TRUE(rules->forward(first, "01"));
    const int second = arrive();
    rules->answer(second);
    EXPECT_TRUE(rules->transfer(second, "02"));
    setForward("AlwaysForward", "03");
    const int third = arrive();
    EXPECT_EQ(orders(),
              (QStringList{of("ring", first), of("deflect 91", first), of("ring", second),
                           of("answer", second), of("transfer 92", second), of("deflect 03", third)}))
        << "what is set stays as it is set";
}

TEST_F(DialledCalls, WhatCannotBeDialledIsToldAndGoesNowhere)
{
    for (const char* bad :
         {"6\"00", "6'00", "../600", "6\\00", "60\n0", "6`0", "<600>", "6\x7f", "busy & more"}) {
        EXPECT_EQ(dialled(bad), "") << bad;
        ASSERT_EQ(news.calls.size(), 1) << bad;
        EXPECT_EQ(news.calls[0].strReason, "This cannot be dialled") << bad;
        EXPECT_GT(news.calls[0].nId, 0);
        EXPECT_FALSE(news.calls[0].strNumber.contains('\n'));
    }
    EXPECT_EQ(dialled(QString(129, QLatin1Char('1'))), "");
    EXPECT_EQ(dialled(QString(128, QLatin1Char('1'))), "dial " + QString(128, QLatin1Char('1')) + " on 0");
    EXPECT_EQ(dialled(" +49 (30) 12-34 "), "dial +49301234 on 0");
    EXPECT_EQ(dialled("sip:jos\xc3\xa9@pbx-1.test;transport=tcp"),
              QString::fromUtf8("dial sip:jos\xc3\xa9@pbx-1.test;transport=tcp on 0"));
    EXPECT_EQ(dialled("192.168.1.5"), "dial 192.168.1.5 on 0");
    for (const char* nothing : {"", "  "}) {
        EXPECT_EQ(dialled(nothing), "");
        EXPECT_TRUE(news.calls.isEmpty()) << "nobody has asked for a call";
    }
}

TEST_F(DialledCalls, ACallThatWentNowhereHasItsNumberItsLineAndItsTime)
{
    const long before = netGetLocalTime();
    EXPECT_EQ(rules->dial("6'00", 2), 0);
    ASSERT_EQ(news.calls.size(), 1);
    EXPECT_EQ(news.calls[0].strNumber, "6'00");
    EXPECT_EQ(news.calls[0].nAccount, 2);
    EXPECT_EQ(news.calls[0].eState, CALL_ENDED);
    EXPECT_EQ(news.calls[0].eEnd, CALL_FAILED);
    EXPECT_GE(news.calls[0].nStartTime, before);
    EXPECT_LE(news.calls[0].nStartTime, netGetLocalTime());
}

TEST_F(DialledCalls, TheLineTellsHowItsCallsAreMade)
{
    backend.nDefault = 2;
    setLine(2, "account", "AnonymousCall", "1");
    setLine(2, "CallOption", "eCallMode", "1");
    setLine(2, "CallOption", "bActiveCamera", "0");
    setLine(2, "ADVANCED", "VideoBandwidth", "1024");
    setLine(2, "hxMedia", "nFrameRate", "15");
    setLine(1, "CallOption", "eCallMode", "0");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    tellChanged(CONFIG_CHANGED_ACCOUNT, 2);
    rules->dial("600", -1);
    tagCallOptions options = backend.live[0].options;
    EXPECT_EQ(backend.live[0].nAccount, 2);
    EXPECT_TRUE(options.bAnonymous);
    EXPECT_TRUE(options.bVideo);
    EXPECT_FALSE(options.bCamera);
    EXPECT_EQ(options.nBandwidth, 1024);
    EXPECT_EQ(options.nFrameRate, 15);
    rules->dial("600", 1);
    options = backend.live[1].options;
    EXPECT_FALSE(options.bAnonymous);
    EXPECT_FALSE(options.bVideo);
    EXPECT_FALSE(options.bCamera) << "no picture without a picture call";
    rules->answer(arrive("4711", 2));
    EXPECT_EQ(backend.live[2].options.nFrameRate, 15) << "a call that comes in likewise";
    writeFile("/rundata/config/user/voip/sipAccount0.cfg", "");
    start();
    rules->dial("600", 0);
    options = backend.live[0].options;
    EXPECT_TRUE(options.bVideo && options.bCamera) << "where nothing is set";
    EXPECT_EQ(options.nBandwidth, 0);
    EXPECT_EQ(options.nFrameRate, 30);
}

TEST_F(DialledCalls, ALineThatPrefersTheAnalogueOneUsesItWhereItIs)
{
    setLine(1, "CallOption", "eCallMode", "2");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(dialled("600", 1), "dial 600 on 1");
    backend.bPstn = true;
    EXPECT_EQ(dialled("600", 1), "dial 600 on 4");
    EXPECT_EQ(dialled("600", 0), "dial 600 on 0");
    backend.nDefault = -1;
    EXPECT_EQ(dialled("600", -1), "dial 600 on 4") << "the only line that is there";
    EXPECT_GT(rules->dial("600", PHONE_LINE_PSTN), 0);
    EXPECT_EQ(rules->dial("601", PHONE_LINE_PSTN), 0) << "it carries one call";
    EXPECT_EQ(news.calls.last().strReason, "No line is free");
}

TEST_F(DialledCalls, TheExchangeIsToldByCodeWhenASettingChanged)
{
    for (const char* key : {"AnonymousCall_OnCode", "AnonymousReject_OnCode"})
        setLine(1, "account", key, QString("*1%1").arg(key[9]));
    setLine(1, "account", "AnonymousCall_OffCode", "*2");
    setLine(1, "account", "AnonymousReject_OffCode", "*3");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(orders(), QStringList()) << "the codes alone are no change";
    setLine(1, "account", "AnonymousCall", "1");
    setLine(1, "account", "RejectAnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    const QStringList first = orders();
    ASSERT_EQ(first.size(), 1) << "one after the other";
    EXPECT_EQ(first[0], "dial *1C on 1");
    EXPECT_FALSE(backend.live[0].options.bAnonymous) << "the exchange has to know who it is";
    const int code = backend.live[0].nId;
    backend.answerFromOutside(code);
    kit::stepTime(callRules::CODE_TALK_MS - 100);
    EXPECT_EQ(orders(), QStringList());
    kit::stepTime(200);
    EXPECT_EQ(orders(), (QStringList{of("hang up", code), "dial *1R on 1"}));
    backend.endFromOutside(backend.live[0].nId, CALL_HUNG_UP);
    kit::stepTime(1);
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(orders(), QStringList()) << "nothing has changed since";
    setLine(1, "account", "AnonymousCall", "0");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(orders(), QStringList{"dial *2 on 1"});
    backend.endFromOutside(backend.live[0].nId, CALL_HUNG_UP);
    kit::stepTime(1);
    setLine(1, "account", "RejectAnonymousCall", "0");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(orders(), QStringList{"dial *3 on 1"});
}

TEST_F(DialledCalls, CodesWaitForTheCallThatIsThereAndTheLastOneHolds)
{
    setLine(0, "account", "AnonymousCall_OnCode", "*1");
    setLine(0, "account", "AnonymousCall_OffCode", "*2");
    setLine(3, "account", "AnonymousReject_OnCode", "*9");
    const int call = talk();
    const auto set = [](int line, const char* key, const char* value) {
        setLine(line, "account", key, value);
        tellChanged(CONFIG_CHANGED_ACCOUNT, unsigned(line));
    };
    set(0, "AnonymousCall", "1");
    set(3, "RejectAnonymousCall", "1");
    set(0, "AnonymousCall", "0");
    EXPECT_EQ(orders(), QStringList());
    rules->hangUp(call);
    kit::stepTime(1);
    EXPECT_EQ(orders(), (QStringList{of("hang up", call), "dial *9 on 3"}));
    backend.endFromOutside(backend.live[0].nId, CALL_FAILED);
    kit::stepTime(1);
    EXPECT_EQ(orders(), QStringList{"dial *2 on 0"}) << "that it was on meanwhile is nobody's business";
}

TEST_F(DialledCalls, CodesAreDialledAsTheyAreSet)
{
    plan("<Data Prefix='*' Replace='9'/>");
    setLine(0, "account", "AnonymousCall_OnCode", "*1");
    setLine(0, "account", "AnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    EXPECT_EQ(orders(), QStringList{"dial *1 on 0"});
    rules->hangUp(backend.live[0].nId);
    setLine(0, "account", "AnonymousCall", "0");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    EXPECT_EQ(orders().size(), 1) << "no code for off";
    setLine(0, "account", "AnonymousCall_OnCode", "*1\"");
    setLine(0, "account", "AnonymousCall", "1");
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    EXPECT_EQ(orders(), QStringList());
    EXPECT_EQ(news.calls.last().strReason, "This cannot be dialled");
}

TEST_F(DialledCalls, ACodeThatGoesNowhereDoesNotHoldUpTheOthers)
{
    for (const int line : {0, 1}) {
        setLine(line, "account", "AnonymousCall_OnCode", "*1");
        setLine(line, "account", "AnonymousCall", "1");
    }
    backend.bDials = false;
    tellChanged(CONFIG_CHANGED_ACCOUNT, 0);
    tellChanged(CONFIG_CHANGED_ACCOUNT, 1);
    EXPECT_EQ(orders(), (QStringList{"dial *1 on 0", "dial *1 on 1"}));
}

TEST_F(DialledCalls, TheHotlineIsReadWhenItIsNeeded)
{
    EXPECT_EQ(callSettings::hotline().strNumber, "");
    EXPECT_EQ(callSettings::hotline().nDelay, 2);
    setUser("Hotline", "strNumber", "112");
    const QList<QPair<QString, int>> delays = {{"", 2}, {"0", 0}, {"10", 10}, {"99", 10}, {"-1", 0}};
    for (const auto& [stored, seconds] : delays) {
        setUser("Hotline", "nTimeDelay", stored);
        EXPECT_EQ(callSettings::hotline().nDelay, seconds) << qPrintable(stored);
    }
    EXPECT_EQ(callSettings::hotline().strNumber, "112");
}

TEST_F(DialledCalls, TheKeyThatSendsIsReadWhenItChanged)
{
    EXPECT_EQ(rules->settings().sendKey(), QChar('#')) << "as the factory has it";
    setUser("KeyAsSend", "eType", "2");
    EXPECT_EQ(rules->settings().sendKey(), QChar('#'));
    tellChanged(CONFIG_CHANGED_KEY_AS_SEND);
    EXPECT_EQ(rules->settings().sendKey(), QChar('*'));
    for (const char* none : {"0", "", "3"}) {
        setUser("KeyAsSend", "eType", none);
        tellChanged(CONFIG_CHANGED_KEY_AS_SEND);
        EXPECT_TRUE(rules->settings().sendKey().isNull()) << none;
    }
}

TEST(CallNumber, TellsWhetherTwoNameTheSame)
{
    EXPECT_TRUE(callIsSameNumber("1001", "sip:1001@pbx"));
    EXPECT_TRUE(callIsSameNumber("1001@PBX:5060", "sips:1001@pbx;transport=tcp"));
    EXPECT_FALSE(callIsSameNumber("1001@one", "1001@two"));
    EXPECT_FALSE(callIsSameNumber("1001", "1002"));
    EXPECT_FALSE(callIsSameNumber("", ""));
    EXPECT_FALSE(callIsSameNumber("@pbx", "@pbx"));
}

} // namespace
