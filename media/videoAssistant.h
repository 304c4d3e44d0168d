#pragma once
// The surface that the movie player plays files on, with the speaker claimed while its window is active.
// Messages to the players are posted, in the order of the calls. User-interface thread.
#include "media/autoSpeaker.h"
#include "support/container/chList.h"
#include "support/host/message.h"
#include "support/host/video.h"
#include "support/text/chString.h"
#include <cstdint>

class videoAssistant : public QVideoViewer
{
    Q_OBJECT
public:
    using FileList = chObjList_dynamic<chString, 16>;

    // Of the signage panel: neither claims the speaker nor notices its own close.
    explicit videoAssistant(QWidget* parent);
    // Of the players: is its own event filter.
    videoAssistant(int mode, QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags());

    // Plays the files in order and empties the list; false, and the list stays, when it is empty or a player
    // is not there.
    bool LoadFileList(FileList& list);
    bool LoadFile(const char* file);
    void PlayLast();
    void PlayNext();
    void Stop();
    void SwitchPlayPause();
    bool IsPaused() const { return m_nPaused != 0; }
    // Gives the surface up and brings the volume from before back. Once, until the widget is closed.
    void DestructRes();
    void SetOutPutMute(int mute);

    bool eventFilter(QObject* watched, QEvent* event) override;
    virtual void OnFocusIn();

    // Who can tell that the signage window shows during a call, whose speaker is not claimed then; null:
    // none.
    static void SetTalkWindowTest(bool (*isTalkWindow)());

private:
    void Post(chThreadBase* thread, unsigned int message, unsigned int wParam = 0);

    autoSpeaker m_speaker;
    int32_t m_nPaused = 0;
    int32_t m_nSavedVolume;
    chThreadBase* m_threadMovie;
    chThreadBase* m_threadMedia;
    chThreadBase* m_threadPhone;
    int32_t m_nDestructed = 0;
};
