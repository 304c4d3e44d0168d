#include "signage/nDeckRegister.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckShow.h"
#include "signage/scheduleReader.h"
#include "signage/serverConfig.h"
#include "support/file/chAtomicFile.h"
#include "support/file/fileTools.h"
#include "support/host/createObject.h"
#include "support/host/http.h"
#include "support/host/trace.h"
#include <string>

namespace {

constexpr const char* kResultFile = "/tmp/ndeck_reg_result.txt";

chString registerAddress(const _ServerCfg& config)
{
    return config.strUrl + "/service/register.htm?serverKey=" + config.strKey +
           "&password=" + config.strPassword + "&clientName=" + config.strName + serverClientQuery(config);
}

chString readReply()
{
    std::string text;
    fileReadWhole(NDECK_REGISTER_REPLY, text, NDECK_REPLY_LIMIT);
    return chString(text.data(), static_cast<int>(text.size()));
}

} // namespace

nDeckRegister& GetNDeckRegister()
{
    static nDeckRegister instance;
    return instance;
}

void nDeckRegister::OnRegisterDisplay()
{
    _ServerCfg config;
    readServerConfig(config);
    if (!serverTakesConfig(config))
        return;
    nDeckMakeFolder();
    HttpAction& action = CreateObject<HttpAction>();
    const chString address = registerAddress(config);
    nuxTrace(TRACE_DETAIL, "OnRegisterDisplay(%s)", address.GetText());
    action.strRemoteUrl = address;
    action.strLocalFile = NDECK_REGISTER_REPLY;
    action.nSizeLimit = NDECK_REPLY_LIMIT;
    action.nTimeLimit = NDECK_REPLY_MS;
    action.SetCallback(this);
    PostAction(action);
    action.Release();
}

void nDeckRegister::OnCallback(taskAction* action)
{
    if (!action)
        return;
    chString text = "Unknown";
    const HttpAction* http = dynamic_cast<HttpAction*>(action);
    if (http && http->nResult && http->strLocalFile == NDECK_REGISTER_REPLY) {
        text = readReply();
        TakeReply(text);
    }
    WriteRegisterInfo(text);
}

void nDeckRegister::SetRegisterStatus(int bSuccess)
{
    m_bRegisterSuccess = bSuccess;
    m_bAnswered = true;
}

bool nDeckRegister::MayShow() const
{
    return m_bRegisterSuccess || (!m_bAnswered && nDeckKeepsShow());
}

// Only an empty reply takes a registration away, and not where a show is kept: it comes from anybody.
void nDeckRegister::TakeReply(const chString& text)
{
    if (text.IsEmpty() && nDeckKeepsShow())
        return;
    if (text.IsEmpty()) {
        SetRegisterStatus(0);
        return;
    }
    xmlDocument reply;
    reply.ParseDocument(text, text.GetLength());
    if (!serverResult(reply, "success"))
        return;
    if (!m_bRegisterSuccess && !GetNDeckShow().IsStoredShown())
        GetNDeckShow().InitDisplay();
    SetRegisterStatus(1);
}

void nDeckRegisterDisplay()
{
    GetNDeckRegister().OnRegisterDisplay();
}

bool WriteRegisterInfo(const chString& text)
{
    // In a folder where any user may put things: the file takes the place of whatever is there.
    chAtomicFile file;
    if (!file.Open(kResultFile) || !file.Write(text.GetText(), static_cast<size_t>(text.GetLength())) ||
        !file.Commit(0))
        nuxTrace(TRACE_NOTE, "%s cannot be written", kResultFile);
    return true;
}
