#include "signage/nDeckFileManager.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckDisplayFrameAction.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckHttpAction.h"
#include "signage/nDeckListFile.h"
#include "signage/nDeckRegister.h"
#include "signage/scheduleReader.h"
#include "signage/unusedFilesAction.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/checksum.h"
#include "support/host/createObject.h"
#include "support/host/image.h"
#include "support/host/net.h"
#include "support/host/storage.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <vector>

namespace {

constexpr int kUpdateIntervalMs = 60000;
constexpr int kReDownLoadNum = 3;

// "photo.jpg" is one of ".JPG".
bool hasExtension(const char* path, std::initializer_list<const char*> upperCase)
{
    const char* extension = pathGetFileExtensionPos(path);
    return std::any_of(upperCase.begin(), upperCase.end(),
                       [extension](const char* one) { return strcasecmp(extension, one) == 0; });
}

} // namespace

nDeckFileManager& GetNDeckFileManager()
{
    static nDeckFileManager instance;
    return instance;
}

nDeckFileManager::nDeckFileManager() : m_saver([this] { return nDeckListText(m_fileList.nodes()); }) {}

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
    else if (const auto* unused = dynamic_cast<unusedFilesAction*>(action))
        OnUnusedFiles(unused->names);
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
    KnowStoredFiles();
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

bool nDeckFileManager::IsKnown(const chString& name, const chString& md5) const
{
    const _nDeckFileNode* record = m_fileList.find(name);
    return record && (md5.IsEmpty() || record->md5 == md5);
}

bool nDeckFileManager::IsDownloadLayoutsFinished() const
{
    if (!m_pNewFrame)
        return true;
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        if (!IsKnown(layout.file + NDECK_WAITING, layout.md5) && !IsKnown(layout.file, layout.md5))
            return false;
    }
    return true;
}

// ---- Requests for files

void nDeckFileManager::DownLoadAllLayouts()
{
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        if (!IsKnown(layout.file, layout.md5) && !IsKnown(layout.file + NDECK_FETCHING, layout.md5))
            DownLoadLayout(layout.file, layout.md5, layout.fromdt, layout.todt, layout.eventType);
    }
}

void nDeckFileManager::DownLoadLayout(const chString& path, const chString& md5, const chString& fromdt,
                                      const chString& todt, const chString& eventType)
{
    const chString name = nDeckWithoutSuffix(path, NDECK_FETCHING);
    _nDeckFileNode wanted;
    wanted.path = name + NDECK_FETCHING;
    wanted.md5 = md5;
    wanted.type = "layout";
    wanted.fromdt = fromdt;
    wanted.todt = todt;
    wanted.eventType = eventType;
    if (BeginRecord(wanted))
        m_requests.Begin(GetServerConfig(), name, md5, "layout", NDECK_LAYOUT_FILE_LIMIT, this);
}

void nDeckFileManager::DownLoadMediaFile(const chString& path, const chString& md5, const chString& size)
{
    const chString name = nDeckWithoutSuffix(path, NDECK_FETCHING);
    const long long real = getFreeSpace(NDECK_FOLDER) - PathReservedSpace(NDECK_FOLDER, SPACE_NDECK);
    const long long limit = std::min<long long>(real, MEDIA_SIZE_LIMIT);
    if (recordSize(size) > limit) {
        nuxTrace(TRACE_DETAIL, "DownLoadMediaFile no free space return");
        return;
    }
    _nDeckFileNode wanted;
    wanted.path = name + NDECK_FETCHING;
    wanted.md5 = md5;
    wanted.type = "media";
    wanted.size = size;
    if (BeginRecord(wanted))
        m_requests.Begin(GetServerConfig(), name, md5, "media", std::max(limit, 1LL), this);
}

// A record that waits for another content of the file gives way, so that the new one has its own budget and
// is found by its own MD5.
bool nDeckFileManager::BeginRecord(_nDeckFileNode wanted)
{
    KnowStoredFiles();
    const _nDeckFileNode* present = m_fileList.find(wanted.path);
    if (present && present->md5 != wanted.md5)
        m_fileList.removeRecord(wanted.path);
    UpdateFileList(wanted.path, wanted.md5, wanted.type, wanted.size, wanted.fromdt, wanted.todt,
                   wanted.eventType, "", 0);
    return m_fileList.find(wanted.path) != nullptr;
}

void nDeckFileManager::DownLoadMediaImmediately(const chString& path)
{
    KnowStoredFiles();
    if (const _nDeckFileNode* record = m_fileList.find(path)) {
        DownLoad(*record);
        return;
    }
    for (const _nDeckFileNode& record : m_stored) {
        if (record.path == path) {
            DownLoad(record);
            return;
        }
    }
}

void nDeckFileManager::DownLoad(const _nDeckFileNode& record)
{
    const _nDeckFileNode wanted = record; // what follows changes the list
    if (!nDeckIsFileName(nDeckPlainName(wanted.path)))
        return;
    if (wanted.type == "media")
        DownLoadMediaFile(wanted.path, wanted.md5, wanted.size);
    else if (wanted.type == "layout")
        DownLoadLayout(wanted.path, wanted.md5, wanted.fromdt, wanted.todt, wanted.eventType);
}

void nDeckFileManager::OnFile(const nDeckHttpAction& action)
{
    if (!m_requests.End(action)) {
        DropLateFile(action.strFile);
        return;
    }
    if (!action.nResult) {
        RetryFile(action);
        return;
    }
    VerifyFile(action);
    // A frame whose schedule is still to come says nothing yet.
    if (m_pNewFrame && !m_pNewFrame->bFinished)
        return;
    if (IsDownloadLayoutsFinished()) {
        nuxTrace(TRACE_DETAIL, "IsDownloadLayoutsFinished then UpdateDisplayFrame");
        UpdateDisplayFrame();
    }
}

// Nobody wants it any more.
void nDeckFileManager::DropLateFile(const chString& name)
{
    const chString path = name + NDECK_FETCHING;
    if (!m_fileList.find(path))
        fileRemove(nDeckPath(path));
}

void nDeckFileManager::VerifyFile(const nDeckHttpAction& action)
{
    // The transfer has counted along; a second look at the file would hold up the user interface.
    const chString sum =
        action.strCheckSum.IsEmpty() ? md5GetFileCheckSum(action.strLocalFile) : action.strCheckSum;
    if (sum == action.strMd5) {
        if (!TakeFile(action.strFile, action.strMd5))
            RetryFile(action);
        return;
    }
    fileRemove(action.strLocalFile);
    nuxTrace(TRACE_DETAIL, "nDeck DownFile(%s) md5(%s) compare:(%s) md5 is invalid then remove",
             action.strFile.GetText(), action.strMd5.GetText(), sum.GetText());
    nuxTrace(TRACE_DETAIL, "GetReDownloadTimes (file:%s,md5:%s,ntimes:%d)", action.strFile.GetText(),
             action.strMd5.GetText(), GetReDownloadTimes(action.strMd5));
    RetryFile(action);
}

// False when the file has gone meanwhile.
bool nDeckFileManager::TakeFile(const chString& name, const chString& md5)
{
    const chString fetched = name + NDECK_FETCHING;
    const chString waiting = name + NDECK_WAITING;
    if (m_fileList.removeRecord(waiting))
        m_saver.StoreNow(); // or its record would speak of the content that comes now
    if (!fileRename(nDeckPath(fetched), nDeckPath(waiting)))
        return false;
    m_bNewFiles = true;
    UpdateFileList(fetched, md5, "", "", "", "", "", waiting, 0);
    return true;
}

void nDeckFileManager::RetryFile(const nDeckHttpAction& action)
{
    const int times = GetReDownloadTimes(action.strMd5);
    if (action.strFile.IsEmpty() || action.strMd5.IsEmpty() || times <= 0)
        return;
    UpdateReDownloadTimes(action.strMd5, times - 1);
    DownLoadMediaImmediately(action.strFile + NDECK_FETCHING);
}

int nDeckFileManager::GetReDownloadTimes(const chString& md5) const
{
    const _nDeckFileNode* record = m_fileList.findMd5(md5);
    return record ? record->nRetries : 0;
}

void nDeckFileManager::UpdateReDownloadTimes(const chString& md5, int nTimes)
{
    m_fileList.setRetries(md5, nTimes);
}

// ---- Taking up the frame

void nDeckFileManager::UpdateDisplayFrame()
{
    if (!m_pNewFrame)
        return;
    RequestNewMedias();
    const bool isChanged = frameDiffers(*m_pNewFrame, m_frame);
    PromoteLayouts();
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
        m_requestsLater.Add([this, media] { DownLoadMediaFile(media.path, media.md5, media.size); });
    }
}

// A file that changed under unchanged layouts is newer than the frame in force says; it may have to go back.
bool nDeckFileManager::IsOtherInUse(const _nDeckFileNode& media) const
{
    return IsKnown(media.path, "") && !IsKnown(media.path, media.md5) &&
           !IsKnown(media.path + NDECK_WAITING, media.md5);
}

void nDeckFileManager::PromoteLayouts()
{
    std::vector<chString> waiting;
    for (const _nDeckLayoutNode& layout : m_pNewFrame->layouts) {
        const chString path = layout.file + NDECK_WAITING;
        if (IsKnown(path, layout.md5))
            waiting.push_back(path);
    }
    if (!waiting.empty())
        StoreBeforeUse();
    for (const chString& path : waiting)
        PutIntoUse(path);
}

// A file must never hold another content than its stored record says: the list is stored before a file of the
// name is replaced, or comes back.
void nDeckFileManager::StoreBeforeUse()
{
    if (m_saver.IsBehind())
        m_saver.StoreNow();
}

// The new file takes the old one's place in one step. Where it is missing, the old one stays.
bool nDeckFileManager::PutIntoUse(const chString& path)
{
    const chString plain = nDeckWithoutSuffix(path, NDECK_WAITING);
    if (!fileRename(nDeckPath(path), nDeckPath(plain))) {
        UpdateFileList(path, "", "", "", "", "", "", "", 1);
        return false;
    }
    UpdateFileList(plain, "", "", "", "", "", "", "", 1);
    UpdateFileList(path, "", "", "", "", "", "", plain, 0);
    return true;
}

void nDeckFileManager::TakeUpFrame()
{
    RemoveOldLayouts();
    if (m_bScheduleFresh)
        RemoveOldMediaFile();
    GetNDeckDispaly().UpdateDisplay(m_pNewFrame.get());
    m_frame.medias = m_pNewFrame->medias;
    m_frame.layouts = m_pNewFrame->layouts;
}

void nDeckFileManager::RemoveOldLayouts()
{
    for (const _nDeckLayoutNode& layout : m_frame.layouts) {
        if (!IsFileExistByLayoutList(layout.file, m_pNewFrame->layouts))
            ForgetFile(layout.file);
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
        ForgetFile(media.path);
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
    for (const chString& path : frameStrays(m_fileList.nodes(), m_frame, *m_pNewFrame))
        RemoveStrayFile(path);
}

void nDeckFileManager::RemoveStrayFile(const chString& path)
{
    const chString plain = nDeckPlainName(path);
    if (nDeckHasSuffix(path, NDECK_FETCHING))
        m_requests.Forget(plain);
    ForgetFile(path);
    // It may have come into use before its record was stored.
    if (!m_fileList.find(plain))
        fileRemove(nDeckPath(plain));
}

void nDeckFileManager::ForgetFile(const chString& path)
{
    fileRemove(nDeckPath(path));
    UpdateFileList(path, "", "", "", "", "", "", "", 1);
}

bool nDeckFileManager::IsFileExist(chString name, int bDownload)
{
    const chString bare = pathGetFileNamePos(name);
    if (bare != name && strstr(name, ".."))
        return false; // a layout names a file outside of the folder
    if (m_fileList.find(bare))
        return pathFileExist(nDeckPath(name)) != 0;
    if (bDownload)
        DownLoadMediaImmediately(bare);
    return false;
}

bool nDeckFileManager::IsFileExistByList(const chString& name, const chString& md5,
                                         const nDeckNodeList& list) const
{
    if (&list == &m_fileList.nodes())
        return IsKnown(name, md5);
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
    const std::vector<_nDeckFileNode> waiting = WaitingFiles();
    if (!waiting.empty())
        StoreBeforeUse();
    for (const _nDeckFileNode& record : waiting)
        PutRecordIntoUse(record);
}

void nDeckFileManager::PutFilesIntoUse(std::function<void()> done)
{
    const std::vector<_nDeckFileNode> waiting = WaitingFiles();
    if (!waiting.empty())
        StoreBeforeUse();
    for (const _nDeckFileNode& record : waiting) {
        m_useLater.Add([this, record] {
            if (IsKnown(record.path, record.md5)) // still the content that the stored list speaks of
                PutRecordIntoUse(record);
        });
    }
    m_useLater.Add(std::move(done));
}

std::vector<_nDeckFileNode> nDeckFileManager::WaitingFiles() const
{
    std::vector<_nDeckFileNode> waiting;
    for (const _nDeckFileNode& record : m_fileList.nodes()) {
        if (nDeckHasSuffix(record.path, NDECK_WAITING))
            waiting.push_back(record);
    }
    return waiting;
}

void nDeckFileManager::PutRecordIntoUse(const _nDeckFileNode& record)
{
    if (!PutIntoUse(record.path) || record.type != "media")
        return;
    const chString path = nDeckPath(nDeckWithoutSuffix(record.path, NDECK_WAITING));
    nuxTrace(TRACE_DETAIL, "ndeck download picture StockPictureToCache(%s)", path.GetText());
    StockPictureToCache(path);
}

// Not on this thread: reading many takes long.
void nDeckFileManager::StockPictureToCache(const chString& path)
{
    if (hasExtension(path, {".PNG", ".JPEG", ".JPG", ".BMP", ".JIF"}))
        GetImageManager()->PrepareNode(path);
}

void nDeckFileManager::UpdateFileList(const chString& path, const chString& md5, const chString& type,
                                      const chString& size, const chString& fromdt, const chString& todt,
                                      const chString& eventType, const chString& newPath, int bRemove)
{
    KnowStoredFiles();
    if (m_fileList.find(path)) {
        if (newPath.IsEmpty() && !bRemove)
            return;
        if (newPath.IsEmpty())
            m_fileList.removeRecord(path);
        else
            m_fileList.renameRecord(path, newPath);
    } else if (!bRemove) {
        _nDeckFileNode node;
        node.path = path;
        node.md5 = md5;
        node.nRetries = nDeckSettingInt("nReDownLoadNum", kReDownLoadNum);
        if (type == "media") {
            node.type = type;
            node.size = size;
        } else if (type == "layout") {
            node.type = type;
            node.fromdt = fromdt;
            node.todt = todt;
            node.eventType = eventType;
        }
        m_fileList.append(node);
    }
    SaveDisplayFrame2Xml();
}

void nDeckFileManager::SaveDisplayFrame2Xml()
{
    m_stored.clear();
    m_saver.Touch(m_bNewFiles);
    m_bNewFiles = false;
}

// ---- Start

bool nDeckFileManager::InitFileList()
{
    nDeckNodeList stored;
    if (m_saver.IsBehind())
        stored = m_fileList.nodes();
    const bool isThere = m_saver.IsBehind() || nDeckListRead(stored);
    m_bStoredKnown = true;
    m_stored.clear();
    if (!isThere) {
        RemoveUnknownFiles();
        return false;
    }
    m_fileList.clear();
    m_frame.medias.clear();
    m_frame.layouts.clear();
    const bool isWhole = TakeStoredFiles(stored, true);
    RemoveUnknownFiles();
    if (!isWhole)
        return false;
    for (const _nDeckLayoutNode& layout : m_frame.layouts)
        nuxTrace(TRACE_DETAIL, "nDeckFileManager::InitFileList layout(%s)", layout.file.GetText());
    SaveDisplayFrame2Xml();
    return true;
}

// Before anything is written over what the last run has left, also where nothing of it is to be shown.
void nDeckFileManager::KnowStoredFiles()
{
    if (m_bStoredKnown)
        return;
    m_bStoredKnown = true;
    nDeckNodeList stored;
    nDeckListRead(stored);
    TakeStoredFiles(stored, false);
    RemoveUnknownFiles();
    m_stored = stored;
}

// False when a record has no name.
bool nDeckFileManager::TakeStoredFiles(const nDeckNodeList& stored, bool bInForce)
{
    nDeckNameSet waiting;
    for (const _nDeckFileNode& record : stored) {
        if (nDeckHasSuffix(record.path, NDECK_WAITING))
            waiting.insert(nDeckPlainName(record.path).GetText());
    }
    for (const _nDeckFileNode& record : stored) {
        if (record.type.IsEmpty())
            return true;
        if (record.path.IsEmpty())
            return false;
        // A newer file of the name has come into use, or does now: the record that speaks of it counts.
        if (!waiting.count(record.path.GetText()) && nDeckIsFileName(nDeckPlainName(record.path)))
            TakeStoredFile(record, bInForce);
    }
    return true;
}

void nDeckFileManager::TakeStoredFile(const _nDeckFileNode& stored, bool bInForce)
{
    _nDeckFileNode record = stored;
    const bool isFetching = nDeckHasSuffix(record.path, NDECK_FETCHING);
    if (isFetching)
        fileRemove(nDeckPath(record.path));
    if (nDeckHasSuffix(record.path, NDECK_WAITING)) {
        record.path = nDeckWithoutSuffix(record.path, NDECK_WAITING);
        fileRename(nDeckPath(stored.path), nDeckPath(record.path));
    }
    if (!isFetching && pathFileExist(nDeckPath(record.path)))
        AddStoredFile(record, bInForce);
    else if (bInForce)
        DownLoad(record);
}

void nDeckFileManager::AddStoredFile(_nDeckFileNode record, bool bInForce)
{
    record.nRetries = nDeckSettingInt("nReDownLoadNum", kReDownLoadNum);
    if (!m_fileList.append(record) || !bInForce)
        return;
    if (record.type == "media") {
        m_frame.medias.push_back(record);
        StockPictureToCache(nDeckPath(record.path));
    } else if (record.type == "layout") {
        m_frame.layouts.push_back(recordLayout(record));
    }
}

// Transfers that were cut off, and files that were verified when the phone went down before their record was
// stored.
void nDeckFileManager::RemoveUnknownFiles()
{
    unusedFilesAction& action = CreateObject<unusedFilesAction>();
    action.SetCallback(this);
    PostAction(action);
    action.Release();
}

void nDeckFileManager::OnUnusedFiles(const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        const chString path = name.c_str();
        const bool isAwaited =
            !nDeckHasSuffix(path, NDECK_WAITING) && m_requests.IsAwaited(unusedFilesAction::nameOf(name));
        if (!isAwaited && !m_fileList.find(path) && path != NDECK_SCHEDULE NDECK_WAITING)
            fileRemove(nDeckPath(path));
    }
}
