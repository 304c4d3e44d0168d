#pragma once
// A transfer that a test waits for.
#include "support/host/http.h"
#include "tests/kit/phoneTest.h"
#include <QByteArray>
#include <gtest/gtest.h>

// Counts the transfers that have ended.
class HttpEnds : public ActionCallback
{
public:
    void OnCallback(taskAction*) override { ++count; }
    int count = 0;
};

// Its result.
inline int httpFetch(const QByteArray& url)
{
    HttpEnds ends;
    HttpAction action;
    action.strRemoteUrl = url.constData();
    action.strLocalFile = "/rundata/data/got";
    action.SetCallback(&ends);
    PostAction(action);
    EXPECT_TRUE(kit::waitUntil([&] { return ends.count > 0; }, 10000)) << url.constData();
    return action.nResult;
}
