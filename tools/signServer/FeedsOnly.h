#pragma once
// The public feeds of a server and nothing else of it, for an address that anybody on this machine may use.
#include "tools/signServer/WebExchange.h"

class FeedsOnly : public WebService
{
public:
    // whole outlives it.
    explicit FeedsOnly(WebService& whole) : m_whole(whole) {}

    void Answer(const WebRequest& request, const Reply& reply) override;
    void Finish(const Served& served) override { m_whole.Finish(served); }
    void Lose(const Served& served) override { m_whole.Lose(served); }

private:
    WebService& m_whole;
};
