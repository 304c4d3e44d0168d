#pragma once
// The transfers that files wait for. Of each name there is one: whatever was asked for before it, or is not
// wanted any more, is given up, since two would write into the same file. User-interface thread.
#include "signage/serverConfig.h"
#include "support/host/task.h"
#include <string>
#include <unordered_map>

class nDeckHttpAction;

class nDeckRequests
{
public:
    // type: "layout" or "media"; limit: bytes of the file. Nothing happens while the same content of the file
    // is on its way. callback hears of the end.
    void Begin(const _ServerCfg& server, const chString& name, const chString& md5, const char* type,
               long long limit, ActionCallback* callback);
    // The transfer has ended. False when its file is not waited for any more.
    bool End(const nDeckHttpAction& action);
    void Forget(const chString& name);
    bool IsAwaited(const std::string& name) const { return m_requests.count(name) != 0; }

private:
    struct tagRequest
    {
        unsigned int nTurn = 0;
        std::string md5;
        nDeckHttpAction* pAction = nullptr; // is there until it has ended, or is given up
    };
    std::unordered_map<std::string, tagRequest> m_requests;
    unsigned int m_nTurn = 0;
};
