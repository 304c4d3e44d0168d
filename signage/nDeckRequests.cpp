#include "signage/nDeckRequests.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckHttpAction.h"
#include "support/host/createObject.h"

namespace {

chString fileAddress(const _ServerCfg& server, const chString& name, const char* type)
{
    return server.strUrl + "/service/getfile.htm?serverKey=" + server.strKey + serverClientQuery(server) +
           "&fileType=" + type + "&filePath=" + name;
}

} // namespace

void nDeckRequests::Begin(const _ServerCfg& server, const chString& name, const chString& md5,
                          const char* type, long long limit, ActionCallback* callback)
{
    const auto present = m_requests.find(name.GetText());
    if (present != m_requests.end() && present->second.md5 == md5.GetText())
        return;
    Forget(name);
    nDeckHttpAction& action = CreateObject<nDeckHttpAction>();
    action.strFile = name;
    action.strMd5 = md5;
    action.nTurn = ++m_nTurn;
    action.strRemoteUrl = fileAddress(server, name, type);
    action.strLocalFile = nDeckPath(name + NDECK_FETCHING);
    action.nSizeLimit = limit;
    action.bFlush = 0; // the list's save flushes many at a time
    action.bCheckSum = 1;
    action.bUnfinished = 1;
    action.bGivesWay = 1;
    action.SetCallback(callback);
    m_requests[name.GetText()] = {action.nTurn, md5.GetText(), &action};
    PostAction(action);
    action.Release();
}

bool nDeckRequests::End(const nDeckHttpAction& action)
{
    if (!action.nTurn)
        return true; // not from here
    const auto request = m_requests.find(action.strFile.GetText());
    if (request == m_requests.end() || request->second.nTurn != action.nTurn)
        return false;
    m_requests.erase(request);
    return true;
}

void nDeckRequests::Forget(const chString& name)
{
    const auto request = m_requests.find(name.GetText());
    if (request == m_requests.end())
        return;
    request->second.pAction->Abandon();
    m_requests.erase(request);
}
