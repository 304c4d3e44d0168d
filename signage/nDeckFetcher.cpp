#include "signage/nDeckFetcher.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckHttpAction.h"
#include "signage/serverConfig.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "support/host/checksum.h"
#include "support/host/net.h"
#include "support/host/storage.h"
#include "support/host/trace.h"
#include <algorithm>

nDeckFetcher::nDeckFetcher(nDeckFileBook& book, ActionCallback& callback)
    : m_book(book), m_callback(callback),
      m_laterTries([this](const _nDeckFileNode& wanted) { DownLoad(wanted); })
{
}

void nDeckFetcher::DownLoadLayout(const _nDeckFileNode& wanted)
{
    Begin(wanted, NDECK_LAYOUT_FILE_LIMIT);
}

// A schedule asks for many files at once: the folder and its disk are not looked at for each of them.
void nDeckFetcher::LookAtFolder()
{
    if (m_looked.isValid() && m_nLookedRoot == deviceGetRootNumber() && !m_looked.hasExpired(LOOK_MS))
        return;
    m_looked.start();
    m_nLookedRoot = deviceGetRootNumber();
    nDeckMakeFolder();
    m_nRoom = getFreeSpace(NDECK_FOLDER) - PathReservedSpace(NDECK_FOLDER, SPACE_NDECK);
}

void nDeckFetcher::DownLoadMediaFile(const _nDeckFileNode& wanted)
{
    LookAtFolder();
    const long long limit = std::min<long long>(m_nRoom, MEDIA_SIZE_LIMIT);
    if (recordSize(wanted.size) > limit) {
        nuxTrace(TRACE_DETAIL, "DownLoadMediaFile no free space return");
        if (recordSize(wanted.size) <= MEDIA_SIZE_LIMIT)
            GiveUp(wanted); // there may be room when the next frame is in force
        return;
    }
    Begin(wanted, std::max(limit, 1LL));
}

// limit: bytes of the file.
void nDeckFetcher::Begin(_nDeckFileNode wanted, long long limit)
{
    LookAtFolder();
    const chString name = nDeckWithoutSuffix(wanted.path, NDECK_FETCHING);
    wanted.path = name + NDECK_FETCHING;
    if (!m_book.BeginFetch(wanted))
        return;
    _ServerCfg server;
    readServerConfig(server);
    m_requests.Begin(server, name, wanted.md5, wanted.type, limit, &m_callback);
}

void nDeckFetcher::DownLoadImmediately(const chString& path)
{
    if (const _nDeckFileNode* record = m_book.FindStored(path))
        DownLoad(*record);
}

void nDeckFetcher::DownLoad(const _nDeckFileNode& record)
{
    const _nDeckFileNode wanted = record; // what follows changes the list
    if (!nDeckIsFileName(nDeckPlainName(wanted.path)))
        return;
    if (wanted.type == "media")
        DownLoadMediaFile(wanted);
    else if (wanted.type == "layout")
        DownLoadLayout(wanted);
}

bool nDeckFetcher::OnFile(const nDeckHttpAction& action)
{
    if (!m_requests.End(action)) {
        DropLateFile(action.strFile);
        return false;
    }
    if (!action.nResult) {
        RetryFile(action);
        return false;
    }
    VerifyFile(action);
    return true;
}

void nDeckFetcher::Forget(const chString& name)
{
    m_requests.Forget(name);
    m_putOff.erase(name.GetText());
    m_laterTries.Forget(name);
}

bool nDeckFetcher::IsComing(const chString& name) const
{
    return IsAwaited(name.GetText()) || m_putOff.count(name.GetText());
}

void nDeckFetcher::AskAgain(const DisplayFrame& wanted)
{
    if (m_putOff.empty() && m_laterTries.IsEmpty())
        return;
    nDeckNameSet contents;
    frameAddContents(wanted, contents);
    m_laterTries.KeepOnly(contents);
    const nDeckNameSet putOff = std::move(m_putOff);
    m_putOff.clear();
    for (const std::string& name : putOff) {
        const chString path = chString(name.c_str()) + NDECK_FETCHING;
        const _nDeckFileNode* record = m_book.Find(path);
        if (record && contents.count(frameContent(name.c_str(), record->md5)))
            DownLoadImmediately(path);
    }
}

void nDeckFetcher::DropLateFile(const chString& name)
{
    const chString path = name + NDECK_FETCHING;
    if (!m_book.Find(path))
        fileRemove(nDeckPath(path));
}

void nDeckFetcher::VerifyFile(const nDeckHttpAction& action)
{
    // The transfer has counted along; a second look at the file would hold up the user interface.
    const chString sum =
        action.strCheckSum.IsEmpty() ? md5GetFileCheckSum(action.strLocalFile) : action.strCheckSum;
    if (sum == action.strMd5) {
        if (m_book.TakeFetched(action.strFile, action.strMd5))
            m_laterTries.Forget(action.strFile);
        else
            RetryFile(action);
        return;
    }
    fileRemove(action.strLocalFile);
    nuxTrace(TRACE_DETAIL, "nDeck DownFile(%s) md5(%s) compare:(%s) md5 is invalid then remove",
             action.strFile.GetText(), action.strMd5.GetText(), sum.GetText());
    nuxTrace(TRACE_DETAIL, "GetReDownloadTimes (file:%s,md5:%s,ntimes:%d)", action.strFile.GetText(),
             action.strMd5.GetText(), m_book.GetRetries(action.strMd5));
    RetryFile(action);
}

void nDeckFetcher::RetryFile(const nDeckHttpAction& action)
{
    const int times = m_book.GetRetries(action.strMd5);
    if (action.strFile.IsEmpty() || action.strMd5.IsEmpty())
        return;
    const _nDeckFileNode* record = m_book.Find(action.strFile + NDECK_FETCHING);
    if (record && netGetNetworkSta() != NET_UP) {
        m_putOff.insert(action.strFile.GetText());
        return;
    }
    if (times <= 0) {
        if (record)
            GiveUp(*record);
        return;
    }
    m_book.SetRetries(action.strMd5, times - 1);
    DownLoadImmediately(action.strFile + NDECK_FETCHING);
}

void nDeckFetcher::GiveUp(const _nDeckFileNode& wanted)
{
    if (nDeckKeepsShow())
        m_laterTries.Add(wanted);
}
