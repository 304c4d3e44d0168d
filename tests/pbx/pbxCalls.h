#pragma once
// An exchange with a caller and phones that are called.
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/wirePhone.h"
#include <gtest/gtest.h>
#include <memory>

class PbxCalls : public ::testing::Test
{
protected:
    // Anna calls, Ben has two phones. ring: seconds until nobody answers.
    void begin(int ring = 30)
    {
        // They register once for the whole test.
        ASSERT_TRUE(pbx.start({"--ring", QString::number(ring), "--expires", "3600"}))
            << pbx.output().constData();
        caller = std::make_unique<WirePhone>("1001", pbx.port());
        first = std::make_unique<WirePhone>("1002", pbx.port());
        second = std::make_unique<WirePhone>("1002", pbx.port());
        for (WirePhone* phone : {caller.get(), first.get(), second.get()})
            ASSERT_EQ(statusOf(phone->registers()), 200);
    }
    // Of a call that was let through to both phones.
    void take(QByteArray& atFirst, QByteArray& atSecond)
    {
        atFirst = first->next("INVITE");
        atSecond = second->next("INVITE");
        ASSERT_NE(atFirst.toStdString(), "");
        ASSERT_NE(atSecond.toStdString(), "");
    }
    // A call that talks with the first phone; what the caller has heard.
    QByteArray talk(const QByteArray& callId)
    {
        QByteArray atFirst, atSecond;
        EXPECT_TRUE(caller->calls("1002", callId));
        take(atFirst, atSecond);
        // Nobody is told that a call is over before he has said a word.
        second->reply(atSecond, "180 Ringing");
        EXPECT_NE(caller->hears(180).toStdString(), "");
        first->reply(atFirst, "200 OK", "Content-Type: application/sdp", "v=0\r\ns=answer\r\n");
        const QByteArray answer = caller->hears(200);
        caller->acknowledge(answer);
        EXPECT_NE(first->next("ACK").toStdString(), "");
        const QByteArray cancel = second->next("CANCEL");
        EXPECT_NE(cancel.toStdString(), "");
        second->reply(cancel, "200 OK");
        second->reply(atSecond, "487 Request Terminated");
        EXPECT_NE(second->next("ACK").toStdString(), "");
        lastInvite = atFirst;
        return answer;
    }

    RegistrarProcess pbx;
    std::unique_ptr<WirePhone> caller, first, second;
    QByteArray lastInvite; // as the first phone has it
};
