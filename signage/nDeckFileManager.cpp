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
    : m_book([this] { m_sweeper.Begin(); }), m_fetcher(m_book, *this),
      m_promoter(m_book, [this](const _nDeckFileNode& record) { return MayUse(record); }),
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
    if (bEnable)
        m_timer.SetTimer(nDeckUpdateInterval(), nullptr, this, &nDeckFileManager::OnTimerUpdate);
    else
        m_timer.KillTimer();
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
    const _ServerCfg& config = GetServerConfig();
    if (!serverTakesConfig(config))
        return false;
    m_pLastFrame = std::move(m_pNewFrame);
    m_pNewFrame = std::make_shared<tagWanted>();
    m_pNewFrame->bHeld = nDeckKeepsShow();
    nDeckMakeFolder();
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

// With the network up a schedule that cannot be had is one with nothing in it, unless the show is kept.
void nDeckFileManager::OnSchedule(const nDeckDisplayFrameAction& action)
{
    if (action.nResult && !(nDeckKeepsShow() && IsNoSchedule())) {
        TakeSchedule();
    } else if (netGetNetworkSta() != NET_UP || nDeckKeepsShow()) {
        KeepWanted();
    } else {
        m_bScheduleFresh = 0;
        UpdateDisplayFrame();
    }
    if (m_pNewFrame)
        m_pNewFrame->bFinished = 1;
    m_pLastFrame.reset();
}

// What anybody between phone and server may have answered.
bool nDeckFileManager::IsNoSchedule() const
{
    const chString reply = nDeckPath(NDECK_SCHEDULE NDECK_WAITING);
    if (scheduleReader(reply).IsSchedule())
        return false;
    fileRemove(reply);
    return true;
}

// What was wanted before is wanted on: nothing is known that would say anything else.
void nDeckFileManager::KeepWanted()
{
    nuxTrace(TRACE_NOTE, "no schedule came: the show goes on with what is there");
    m_pNewFrame = std::move(m_pLastFrame);
    if (m_pNewFrame && m_pNewFrame->bTakingUp)
        UpdateDisplayFrame();
}

void nDeckFileManager::TakeSchedule()
{
    RefreshLocalFile(NDECK_SCHEDULE, NDECK_SCHEDULE NDECK_WAITING);
    if (!m_pNewFrame)
        m_pNewFrame = std::make_shared<tagWanted>();
    m_book.ReadStored();
    const scheduleReader schedule(nDeckPath(NDECK_SCHEDULE));
    UpdateRegisterStatus(schedule);
    schedule.GetLayouts(m_pNewFrame->layouts);
    schedule.GetMedias(m_pNewFrame->medias);
    m_bScheduleFresh = 1;
    m_pNewFrame->bStraysLeft = schedule.IsValid();
    m_fetcher.AskAgain(*m_pNewFrame);
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
    const bool isTaken = m_fetcher.OnFile(action);
    const bool isComing = m_fetcher.IsComing(action.strFile);
    for (const auto& wanted : {m_pNewFrame, m_pLastFrame}) {
        if (wanted && !isComing)
            wanted->coming.erase(action.strFile.GetText());
    }
    // A frame whose schedule is still to come says nothing yet.
    const bool isAwaited = m_pNewFrame && !m_pNewFrame->bFinished;
    const bool isEnd = isTaken || (m_pNewFrame && m_pNewFrame->bHeld && !isComing);
    if (!isAwaited && isEnd && IsDownloadLayoutsFinished()) {
        nuxTrace(TRACE_DETAIL, "IsDownloadLayoutsFinished then UpdateDisplayFrame");
        UpdateDisplayFrame();
    }
    if (isTaken)
        GetNDeckShow().OnFileCame(action.strFile);
}

// Where a show is kept, a layout that was given up keeps nobody but itself away.
bool nDeckFileManager::IsDownloadLayoutsFinished() const
{
    if (!m_pNewFrame)
        return true;
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        const bool isKnown = m_book.IsKnown(layout.file + NDECK_WAITING, layout.md5) ||
                             m_book.IsKnown(layout.file, layout.md5);
        if (!isKnown && (!nDeckKeepsShow() || m_fetcher.IsComing(layout.file)))
            return false;
    }
    return true;
}

// One that waits for its use is fetched again, but not where it may wait for long.
void nDeckFileManager::DownLoadAllLayouts()
{
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        const bool isHeld = m_pNewFrame->bHeld && m_book.IsKnown(layout.file + NDECK_WAITING, layout.md5);
        if (!isHeld && !m_book.IsKnown(layout.file, layout.md5) &&
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
    if (!IsHeldBack())
        BeginTakeUp();
}

// Once for each schedule, or each file that lands would ask for those that are still to come.
void nDeckFileManager::RequestNewMedias()
{
    if (m_pNewFrame->bMediasRequested)
        return;
    m_pNewFrame->bMediasRequested = true;
    nDeckNameSet present = m_contents;
    for (const _nDeckFileNode& media : m_pNewFrame->medias) {
        if (!present.insert(frameContent(media.path, media.md5)).second && !IsOtherInUse(media))
            continue;
        if (!IsFileHere(media.path, media.md5))
            RequestMedia(media);
    }
}

// The frame that it is for may have to wait for it.
void nDeckFileManager::RequestMedia(const _nDeckFileNode& media)
{
    nuxTrace(TRACE_DETAIL, "nDeckFileManager::UpdateDisplayFrame download media(%s)", media.path.GetText());
    ++m_pNewFrame->nToAsk;
    m_requestsLater.Add([this, media, wanted = m_pNewFrame] {
        m_fetcher.DownLoadMediaFile(media);
        if (m_fetcher.IsComing(media.path))
            wanted->coming.insert(media.path.GetText());
        if (--wanted->nToAsk == 0 && wanted->coming.empty() && wanted == m_pNewFrame && wanted->bHeld)
            UpdateDisplayFrame();
    });
}

// A file that changed under unchanged layouts is newer than the frame in force says; it may have to go back.
bool nDeckFileManager::IsOtherInUse(const _nDeckFileNode& media) const
{
    return m_book.IsKnown(media.path, "") && !m_book.IsKnown(media.path, media.md5) &&
           !m_book.IsKnown(media.path + NDECK_WAITING, media.md5);
}

// The list proves it: the file was verified, and nobody took it away.
bool nDeckFileManager::IsFileHere(const chString& name, const chString& md5) const
{
    const chString waiting = name + NDECK_WAITING;
    if (md5.IsEmpty())
        return false;
    return (m_book.IsKnown(name, md5) && pathFileExist(nDeckPath(name))) ||
           (m_book.IsKnown(waiting, md5) && pathFileExist(nDeckPath(waiting)));
}

// Where a show is kept, and there is one, layouts and media of a schedule change together: when everything
// has come that comes, and something of it can be shown.
bool nDeckFileManager::IsHeldBack()
{
    tagWanted& wanted = *m_pNewFrame;
    if (!wanted.bHeld || m_frame.layouts.empty() || wanted.layouts.empty() || !nDeckKeepsShow())
        return false;
    return wanted.nToAsk > 0 || !wanted.coming.empty() || !GetNDeckShow().CanShowAny(wanted);
}

bool nDeckFileManager::IsHolding() const
{
    return (m_pNewFrame && m_pNewFrame->bHeld) || (m_pLastFrame && m_pLastFrame->bHeld);
}

// What waits for a frame that is held back does so until it is taken up.
bool nDeckFileManager::MayUse(const _nDeckFileNode& record) const
{
    return !IsHolding() || m_contents.count(frameContent(nDeckPlainName(record.path), record.md5));
}

void nDeckFileManager::BeginTakeUp()
{
    tagWanted& wanted = *m_pNewFrame;
    const bool wasHeld = wanted.bHeld;
    wanted.bHeld = false;
    const bool isChanged = frameDiffers(wanted, m_frame);
    m_promoter.PutLayoutsIntoUse(wanted);
    if (!wasHeld || !isChanged) {
        TakeUpWanted(isChanged);
        if (wasHeld)
            SetFrame(wanted); // its media may be others under unchanged layouts
        return;
    }
    wanted.bTakingUp = true;
    m_promoter.PutAllIntoUseLater([this, frame = m_pNewFrame] {
        if (frame == m_pNewFrame)
            TakeUpWanted(true);
    });
}

void nDeckFileManager::TakeUpWanted(bool bChanged)
{
    m_pNewFrame->bTakingUp = false;
    if (bChanged)
        TakeUpFrame();
    else
        GetNDeckShow().OnFrameStays();
    RemoveStrayFiles();
}

void nDeckFileManager::TakeUpFrame()
{
    RemoveOldLayouts();
    if (m_bScheduleFresh)
        RemoveOldMediaFile();
    GetNDeckShow().UpdateDisplay(m_pNewFrame.get());
    SetFrame(*m_pNewFrame);
}

void nDeckFileManager::SetFrame(const DisplayFrame& frame)
{
    m_frame.medias = frame.medias;
    m_frame.layouts = frame.layouts;
    m_contents.clear();
    frameAddContents(m_frame, m_contents);
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
    if (!m_pNewFrame->bStraysLeft)
        return;
    m_pNewFrame->bStraysLeft = false;
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

bool nDeckFileManager::IsFileAtHand(const chString& name) const
{
    const _nDeckFileNode* waiting = m_book.Find(name + NDECK_WAITING);
    if (waiting && MayUse(*waiting))
        return true;
    return m_book.Find(name) && pathFileExist(nDeckPath(name));
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
    if (m_book.HasStored())
        SetFrame(DisplayFrame());
    const bool isWhole =
        m_book.Restore([this](const _nDeckFileNode& record, bool bThere) { TakeStoredFile(record, bThere); });
    frameAddContents(m_frame, m_contents);
    if (!isWhole)
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
