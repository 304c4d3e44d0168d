// SIPp calls SIPp through the exchange that comes along.
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/wirePhone.h"
#include "tests/sip/sippRun.h"
#include <gtest/gtest.h>

TEST(PbxSipp, ManyCallsOneAfterAnotherAndNoneIsLost)
{
    const bool isLong = qEnvironmentVariableIsSet("HX_LONG");
    const int calls = isLong ? 3000 : 100;
    RegistrarProcess pbx;
    ASSERT_TRUE(pbx.start({"--md5", "--expires", "3600"})) << pbx.output().constData();
    const uint32_t called = kit::freePort();
    WirePhone phone("1002", pbx.port());
    ASSERT_EQ(statusOf(phone.ask("REGISTER", "sip:127.0.0.1:" + QByteArray::number(pbx.port()), "for",
                                 "Contact: <sip:1002@127.0.0.1:" + QByteArray::number(called) + ">", {},
                                 "<" + phone.at("1002") + ">")),
              200);
    SippRun answers, dials;
    answers.start("pbx/sippIsCalled.xml", called, pbx.port(), calls);
    // By itself it answers for the exchange's address, whatever it asks for.
    dials.start("pbx/sippCalls.xml", kit::freePort(), pbx.port(), calls,
                {"-r", isLong ? "50" : "20", "-auth_uri", "1002@127.0.0.1:" + QString::number(pbx.port())});
    dials.expectDone();
    answers.expectDone();
    EXPECT_LT(kit::statusKiB(pbx.pid(), "VmRSS"), RegistrarProcess::MOST_KIB);
    EXPECT_EQ(pbx.end(), 0);
}
