#pragma once
// Keeps the signage folder in step with the server: fetches the schedule, its layouts and its media, proves
// each file by its MD5, and tells the display what to show. User-interface thread.
#include "signage/displayFrame.h"
#include "signage/laterWork.h"
#include "signage/nDeckFileList.h"
#include "signage/nDeckListSaver.h"
#include "signage/nDeckRequests.h"
#include "signage/serverConfig.h"
#include "support/host/message.h"
#include "support/host/task.h"
#include <functional>
#include <memory>
#include <string>
#include <vector>

class nDeckDisplayFrameAction;
class nDeckHttpAction;
class scheduleReader;

class nDeckFileManager : public ActionCallback
{
public:
    enum : long long { MEDIA_SIZE_LIMIT = 8 << 20 }; // bytes of one media file

    nDeckFileManager();
    ~nDeckFileManager() override;

    // Read anew at each call.
    _ServerCfg& GetServerConfig();
    bool IsNdeckConfigComplete();

    // 0 stops the periodic update; anything else starts it anew.
    void SetAutoUpdateEnable(int bEnable);
    int OnTimerUpdate(msgObject& msg);
    // Begins a cycle; false while the last schedule is still awaited.
    bool DownloadDisplayFrame();
    void OnCallback(taskAction* action) override;
    // Compares the new frame with the one in force and takes it up when it differs.
    void UpdateDisplayFrame();
    // Reads back what the folder held when the phone went down; false when nothing is known.
    bool InitFileList();
    // The frame in force.
    DisplayFrame& GetDisplayFrame() { return m_frame; }

    // True for a file that is known and there. bDownload: one that is not known is fetched.
    bool IsFileExist(chString name, int bDownload);
    // An empty md5 fits every record.
    bool IsFileExistByList(const chString& name, const chString& md5, const nDeckNodeList& list) const;
    bool IsFileExistByLayoutList(const chString& file, const nDeckLayoutList& list) const;
    // Puts the files that wait into use; nothing shows them at that time.
    void RemoveOldFileByFileList();
    // The same for those that wait now, over as many turns of the thread as many files take; few are in use
    // at the return. done: called once, when they are.
    void PutFilesIntoUse(std::function<void()> done);

    // Of the first record with that md5; 0 when there is none.
    int GetReDownloadTimes(const chString& md5) const;
    void UpdateReDownloadTimes(const chString& md5, int nTimes);
    // The one writer of the list: renames, removes or appends a record.
    void UpdateFileList(const chString& path, const chString& md5, const chString& type, const chString& size,
                        const chString& fromdt, const chString& todt, const chString& eventType,
                        const chString& newPath, int bRemove);
    const nDeckNodeList& GetFileList() const { return m_fileList.nodes(); }
    // Whether "display.xml" says what the list says; it follows a moment later.
    bool IsFileListStored() const { return !m_saver.IsBehind(); }

private:
    void OnSchedule(const nDeckDisplayFrameAction& action);
    void TakeSchedule();
    void RefreshLocalFile(const chString& name, const chString& newName);
    void UpdateRegisterStatus(const scheduleReader& schedule);
    bool IsKnown(const chString& name, const chString& md5) const;
    bool IsDownloadLayoutsFinished() const;
    bool IsLastLayoutsFinished() const { return IsDownloadLayoutsFinished(); }

    void DownLoadAllLayouts();
    void DownLoadLayout(const chString& path, const chString& md5, const chString& fromdt,
                        const chString& todt, const chString& eventType);
    void DownLoadMediaFile(const chString& path, const chString& md5, const chString& size);
    void DownLoadMediaImmediately(const chString& path);
    void DownLoad(const _nDeckFileNode& record);
    bool BeginRecord(_nDeckFileNode wanted);

    void OnFile(const nDeckHttpAction& action);
    void VerifyFile(const nDeckHttpAction& action);
    void RetryFile(const nDeckHttpAction& action);
    bool TakeFile(const chString& name, const chString& md5);
    void DropLateFile(const chString& name);

    void RequestNewMedias();
    void PromoteLayouts();
    void StoreBeforeUse();
    void TakeUpFrame();
    void RemoveOldLayouts();
    void RemoveOldMediaFile();
    bool IsOtherInUse(const _nDeckFileNode& media) const;
    void RemoveStrayFiles();
    void RemoveStrayFile(const chString& path);
    void ForgetFile(const chString& path);
    bool PutIntoUse(const chString& path);
    void PutRecordIntoUse(const _nDeckFileNode& record);
    std::vector<_nDeckFileNode> WaitingFiles() const;
    void StockPictureToCache(const chString& path);

    void KnowStoredFiles();
    bool TakeStoredFiles(const nDeckNodeList& stored, bool bInForce);
    void TakeStoredFile(const _nDeckFileNode& stored, bool bInForce);
    void AddStoredFile(_nDeckFileNode record, bool bInForce);
    void RemoveUnknownFiles();
    void OnUnusedFiles(const std::vector<std::string>& names);
    void SaveDisplayFrame2Xml();

    chThreadTimer m_timer;
    nDeckFileList m_fileList;
    DisplayFrame m_frame;
    std::unique_ptr<DisplayFrame> m_pNewFrame;
    _ServerCfg m_serverCfg;
    unsigned char m_bScheduleFresh = 0;

    bool m_bMediasRequested = false; // those of m_pNewFrame
    bool m_bStraysLeft = false;      // a whole schedule came, and what it does not name is still there
    bool m_bNewFiles = false;        // files were verified since the list was saved
    bool m_bStoredKnown = false;
    nDeckNodeList m_stored; // what "display.xml" held, until the list itself speaks for it
    nDeckRequests m_requests;
    laterWork m_requestsLater;
    laterWork m_useLater;
    nDeckListSaver m_saver;
};

nDeckFileManager& GetNDeckFileManager();
