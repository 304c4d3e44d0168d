#pragma once
// The cycle that keeps the signage folder in step with the server: asks for the schedule, then for what it
// names, and tells the show when a frame is to be taken up. User-interface thread.
#include "frame/laterWork.h"
#include "signage/displayFrame.h"
#include "signage/nDeckFetcher.h"
#include "signage/nDeckFileBook.h"
#include "signage/nDeckPromoter.h"
#include "signage/nDeckSweeper.h"
#include "signage/serverConfig.h"
#include "support/host/message.h"
#include "support/host/task.h"
#include <functional>
#include <memory>

class nDeckDisplayFrameAction;
class nDeckHttpAction;
class scheduleReader;

class nDeckFileManager : public ActionCallback
{
public:
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
    // Whether the list proves that the file is in the folder with that content, in use or waiting.
    bool IsFileHere(const chString& name, const chString& md5) const;
    // Whether the list has a record of that path and content; a waiting file's path ends with NDECK_WAITING.
    bool IsFileKnown(const chString& path, const chString& md5) const { return m_book.IsKnown(path, md5); }
    // Whether a file of that name is in use, or waits and will be with the next layout.
    bool IsFileAtHand(const chString& name) const;

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
    const nDeckNodeList& GetFileList() const { return m_book.Nodes(); }
    // Whether "display.xml" says what the list says; it follows a moment later.
    bool IsFileListStored() const { return m_book.IsStored(); }

private:
    // What a schedule asked for.
    struct tagWanted : DisplayFrame
    {
        bool bMediasRequested = false;
        bool bStraysLeft = false; // what it does not name is still there
        bool bHeld = false;       // its files wait until they can come into use together
        bool bTakingUp = false;   // they come into use
        nDeckNameSet coming;      // media that were asked for
        int nToAsk = 0;           // media that are asked for in one of the next turns
    };
    void OnSchedule(const nDeckDisplayFrameAction& action);
    void TakeSchedule();
    bool IsNoSchedule() const;
    void KeepWanted();
    void RefreshLocalFile(const chString& name, const chString& newName);
    void UpdateRegisterStatus(const scheduleReader& schedule);
    void OnFile(const nDeckHttpAction& action);
    bool IsDownloadLayoutsFinished() const;
    bool IsLastLayoutsFinished() const { return IsDownloadLayoutsFinished(); }

    void DownLoadAllLayouts();
    void RequestNewMedias();
    void RequestMedia(const _nDeckFileNode& media);
    bool IsOtherInUse(const _nDeckFileNode& media) const;

    bool IsHeldBack();
    bool IsHolding() const;
    bool MayUse(const _nDeckFileNode& record) const;
    void BeginTakeUp();
    void TakeUpWanted(bool bChanged);
    void TakeUpFrame();
    void SetFrame(const DisplayFrame& frame);
    void RemoveOldLayouts();
    void RemoveOldMediaFile();
    void RemoveStrayFiles();
    void RemoveStrayFile(const chString& path);
    void TakeStoredFile(const _nDeckFileNode& record, bool bThere);

    chThreadTimer m_timer;
    nDeckFileBook m_book;
    nDeckFetcher m_fetcher;
    nDeckPromoter m_promoter;
    nDeckSweeper m_sweeper;
    DisplayFrame m_frame;
    nDeckNameSet m_contents; // of m_frame
    std::shared_ptr<tagWanted> m_pNewFrame;
    std::shared_ptr<tagWanted> m_pLastFrame; // before the schedule that is awaited
    _ServerCfg m_serverCfg;
    unsigned char m_bScheduleFresh = 0;
    LaterWork m_requestsLater;
};

nDeckFileManager& GetNDeckFileManager();
