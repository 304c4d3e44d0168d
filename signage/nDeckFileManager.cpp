#include "signage/nDeckFileManager.h"
#include "signage/nDeckDisplayFrameAction.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckHttpAction.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckShow.h"
#include "signage/pictureNames.h"
#include "signage/scheduleReader.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/createObject.h"
#include "support/host/image.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cstring>

namespace {

constexpr int kUpdateIntervalMs = 60000;

_nDeckFileNode layoutFile(const _nDeckLayoutNode& layout)
{
    _nDeckFileNode file;
    file.path = layout.file;
    file.md5 = layout.md5;
    file.type = "layout";
    file.fromdt = layout.fromdt;
    file.todt = layout.todt;
    file.eventType = layout.eventType;
    return file;
}

} // namespace

nDeckFileManager& GetNDeckFileManager()
{
    static nDeckFileManager instance;
    return instance;
}

nDeckFileManager::nDeckFileManager()
    : m_book([this] { m_sweeper.Begin(); }), m_fetcher(m_book, *this), m_promoter(m_book),
      m_sweeper(m_book, m_fetcher)
{
}

nDeckFileManager::~nDeckFileManager() = default;

_ServerCfg& nDeckFileManager::GetServerConfig()
{
    readServerConfig(m_serverCfg);
    return m_serverCfg;
}

bool nDeckFileManager::IsNdeckConfigComplete()
{
    const _ServerCfg& config = GetServerConfig();
    return !config.strUrl.IsEmpty() && !config.strKey.IsEmpty() && !config.strPassword.IsEmpty() &&
           !config.strName.IsEmpty();
}

// ---- The cycle

void nDeckFileManager::SetAutoUpdateEnable(int bEnable)
{
    if (!bEnable) {
        m_timer.KillTimer();
        return;
    }
    const int interval = nDeckSettingInt("nUpdateInteval", kUpdateIntervalMs);
    m_timer.SetTimer(interval, nullptr, this, &nDeckFileManager::OnTimerUpdate);
}

int nDeckFileManager::OnTimerUpdate(msgObject&)
{
    nuxTrace(TRACE_DETAIL, "nDeckFileManager::OnTimerUpdate");
    DownloadDisplayFrame();
    return 1;
}

bool nDeckFileManager::DownloadDisplayFrame()
{
    if (m_pNewFrame && !m_pNewFrame->bFinished) {
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::DownloadDisplayFrame() return FALSE");
        return false;
    }
    m_pNewFrame = std::make_unique<DisplayFrame>();
    m_bMediasRequested = false;
    m_bStraysLeft = false;
    nDeckMakeFolder();
    const _ServerCfg& config = GetServerConfig();
    nDeckDisplayFrameAction& action = CreateObject<nDeckDisplayFrameAction>();
    action.strRemoteUrl =
        config.strUrl + "/service/getschedule.htm?serverKey=" + config.strKey + serverClientQuery(config);
    action.strLocalFile = nDeckPath(NDECK_SCHEDULE NDECK_WAITING);
    action.nSizeLimit = NDECK_SCHEDULE_LIMIT;
    action.nTimeLimit = NDECK_SCHEDULE_MS;
    action.SetCallback(this);
    PostAction(action);
    action.Release();
    return true;
}

void nDeckFileManager::OnCallback(taskAction* action)
{
    if (const auto* schedule = dynamic_cast<nDeckDisplayFrameAction*>(action))
        OnSchedule(*schedule);
    else if (const auto* file = dynamic_cast<nDeckHttpAction*>(action))
        OnFile(*file);
}

// With the network up a schedule that cannot be had is one with nothing in it.
void nDeckFileManager::OnSchedule(const nDeckDisplayFrameAction& action)
{
    if (action.nResult) {
        TakeSchedule();
    } else if (netGetNetworkSta() == NET_UP) {
        m_bScheduleFresh = 0;
        UpdateDisplayFrame();
    }
    if (m_pNewFrame)
        m_pNewFrame->bFinished = 1;
}

void nDeckFileManager::TakeSchedule()
{
    RefreshLocalFile(NDECK_SCHEDULE, NDECK_SCHEDULE NDECK_WAITING);
    if (!m_pNewFrame)
        m_pNewFrame = std::make_unique<DisplayFrame>();
    m_book.ReadStored();
    const scheduleReader schedule(nDeckPath(NDECK_SCHEDULE));
    UpdateRegisterStatus(schedule);
    schedule.GetLayouts(m_pNewFrame->layouts);
    schedule.GetMedias(m_pNewFrame->medias);
    m_bScheduleFresh = 1;
    m_bStraysLeft = schedule.IsValid();
    DownLoadAllLayouts();
    if (IsLastLayoutsFinished() || !schedule.IsValid())
        UpdateDisplayFrame();
}

// The old file is replaced in one step.
void nDeckFileManager::RefreshLocalFile(const chString& name, const chString& newName)
{
    fileRename(nDeckPath(newName), nDeckPath(name));
}

void nDeckFileManager::UpdateRegisterStatus(const scheduleReader& schedule)
{
    if (schedule.IsEmpty()) {
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::UpdateRegisterStatus false(filelist empty)");
        GetNDeckRegister().SetRegisterStatus(0);
    } else if (schedule.HasResult("error")) {
        GetNDeckRegister().SetRegisterStatus(0);
    } else if (schedule.HasResult("success")) {
        GetNDeckRegister().SetRegisterStatus(1);
    }
}

void nDeckFileManager::OnFile(const nDeckHttpAction& action)
{
    if (!m_fetcher.OnFile(action))
        return;
    // A frame whose schedule is still to come says nothing yet.
    if (m_pNewFrame && !m_pNewFrame->bFinished)
        return;
    if (IsDownloadLayoutsFinished()) {
        nuxTrace(TRACE_DETAIL, "IsDownloadLayoutsFinished then UpdateDisplayFrame");
        UpdateDisplayFrame();
    }
}

bool nDeckFileManager::IsDownloadLayoutsFinished() const
{
    if (!m_pNewFrame)
        return true;
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        if (!m_book.IsKnown(layout.file + NDECK_WAITING, layout.md5) &&
            !m_book.IsKnown(layout.file, layout.md5))
            return false;
    }
    return true;
}

void nDeckFileManager::DownLoadAllLayouts()
{
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        if (!m_book.IsKnown(layout.file, layout.md5) &&
            !m_book.IsKnown(layout.file + NDECK_FETCHING, layout.md5))
            m_fetcher.DownLoadLayout(layoutFile(layout));
    }
}

// ---- Taking up the frame

void nDeckFileManager::UpdateDisplayFrame()
{
    if (!m_pNewFrame)
        return;
    RequestNewMedias();
    const bool isChanged = frameDiffers(*m_pNewFrame, m_frame);
    m_promoter.PutLayoutsIntoUse(*m_pNewFrame);
    if (isChanged)
        TakeUpFrame();
    RemoveStrayFiles();
}

// Once for each schedule, or each file that lands would ask for those that are still to come.
void nDeckFileManager::RequestNewMedias()
{
    if (m_bMediasRequested)
        return;
    m_bMediasRequested = true;
    nDeckNameSet present;
    frameAddContents(m_frame, present);
    for (const _nDeckFileNode& media : m_pNewFrame->medias) {
        if (!present.insert(frameContent(media.path, media.md5)).second && !IsOtherInUse(media))
            continue;
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::UpdateDisplayFrame download media(%s)",
                 media.path.GetText());
        m_requestsLater.Add([this, media] { m_fetcher.DownLoadMediaFile(media); });
    }
}

// A file that changed under unchanged layouts is newer than the frame in force says; it may have to go back.
bool nDeckFileManager::IsOtherInUse(const _nDeckFileNode& media) const
{
    return m_book.IsKnown(media.path, "") && !m_book.IsKnown(media.path, media.md5) &&
           !m_book.IsKnown(media.path + NDECK_WAITING, media.md5);
}

void nDeckFileManager::TakeUpFrame()
{
    RemoveOldLayouts();
    if (m_bScheduleFresh)
        RemoveOldMediaFile();
    GetNDeckShow().UpdateDisplay(m_pNewFrame.get());
    m_frame.medias = m_pNewFrame->medias;
    m_frame.layouts = m_pNewFrame->layouts;
}

void nDeckFileManager::RemoveOldLayouts()
{
    for (const _nDeckLayoutNode& layout : m_frame.layouts) {
        if (!IsFileExistByLayoutList(layout.file, m_pNewFrame->layouts))
            m_book.Forget(layout.file);
    }
}

// The extensions have no dot here, while those of the files have one: the picture of a removed file stays in
// the cache until the host drops it.
void nDeckFileManager::RemoveOldMediaFile()
{
    const nDeckNameSet names = frameMediaNames(*m_pNewFrame);
    for (const _nDeckFileNode& media : m_frame.medias) {
        if (names.count(media.path.GetText()))
            continue;
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::RemoveOldMediaFile(%s)", media.path.GetText());
        m_book.Forget(media.path);
        if (hasExtension(media.path, {"PNG", "JPEG", "JPG", "BMP", "JIF"}))
            GetImageManager()->RemoveImageInCache(media.path);
    }
}

// What is left of earlier schedules, of transfers that never succeeded, and of a phone that lost its power in
// the middle.
void nDeckFileManager::RemoveStrayFiles()
{
    if (!m_bStraysLeft || !m_bScheduleFresh)
        return;
    m_bStraysLeft = false;
    for (const chString& path : frameStrays(m_book.Nodes(), m_frame, *m_pNewFrame))
        RemoveStrayFile(path);
}

void nDeckFileManager::RemoveStrayFile(const chString& path)
{
    const chString plain = nDeckPlainName(path);
    if (nDeckHasSuffix(path, NDECK_FETCHING))
        m_fetcher.Forget(plain);
    m_book.Forget(path);
    // It may have come into use before its record was stored.
    if (!m_book.Find(plain))
        fileRemove(nDeckPath(plain));
}

// ---- What others ask

bool nDeckFileManager::IsFileExist(chString name, int bDownload)
{
    const chString bare = pathGetFileNamePos(name);
    if (bare != name && strstr(name, ".."))
        return false; // a layout names a file outside of the folder
    if (m_book.Find(bare))
        return pathFileExist(nDeckPath(name)) != 0;
    if (bDownload)
        m_fetcher.DownLoadImmediately(bare);
    return false;
}

bool nDeckFileManager::IsFileExistByList(const chString& name, const chString& md5,
                                         const nDeckNodeList& list) const
{
    if (&list == &m_book.Nodes())
        return m_book.IsKnown(name, md5);
    return std::any_of(list.begin(), list.end(), [&](const _nDeckFileNode& node) {
        return node.path == name && (md5.IsEmpty() || node.md5 == md5);
    });
}

bool nDeckFileManager::IsFileExistByLayoutList(const chString& file, const nDeckLayoutList& list) const
{
    return std::any_of(list.begin(), list.end(),
                       [&file](const _nDeckLayoutNode& layout) { return layout.file == file; });
}

void nDeckFileManager::RemoveOldFileByFileList()
{
    m_promoter.PutAllIntoUse();
}

void nDeckFileManager::PutFilesIntoUse(std::function<void()> done)
{
    m_promoter.PutAllIntoUseLater(std::move(done));
}

int nDeckFileManager::GetReDownloadTimes(const chString& md5) const
{
    return m_book.GetRetries(md5);
}

void nDeckFileManager::UpdateReDownloadTimes(const chString& md5, int nTimes)
{
    m_book.SetRetries(md5, nTimes);
}

void nDeckFileManager::UpdateFileList(const chString& path, const chString& md5, const chString& type,
                                      const chString& size, const chString& fromdt, const chString& todt,
                                      const chString& eventType, const chString& newPath, int bRemove)
{
    m_book.Update({path, md5, size, type, fromdt, todt, eventType, 0}, newPath, bRemove);
}

// ---- Start

bool nDeckFileManager::InitFileList()
{
    if (m_book.HasStored()) {
        m_frame.medias.clear();
        m_frame.layouts.clear();
    }
    if (!m_book.Restore(
            [this](const _nDeckFileNode& record, bool bThere) { TakeStoredFile(record, bThere); }))
        return false;
    for (const _nDeckLayoutNode& layout : m_frame.layouts)
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::InitFileList layout(%s)", layout.file.GetText());
    return true;
}

void nDeckFileManager::TakeStoredFile(const _nDeckFileNode& record, bool bThere)
{
    if (!bThere) {
        m_fetcher.DownLoad(record);
    } else if (record.type == "media") {
        m_frame.medias.push_back(record);
        nDeckPromoter::StockPictureToCache(nDeckPath(record.path));
    } else if (record.type == "layout") {
        m_frame.layouts.push_back(recordLayout(record));
    }
}
