#include "media/videoAssistant.h"
#include "support/host/player.h"
#include "support/host/trace.h"
#include <QEvent>

namespace {

constexpr int kSpeakerVolume = 50;

bool (*s_isTalkWindow)() = nullptr;

// During a call the speaker is the call's.
bool isTalkWindow()
{
    return s_isTalkWindow && s_isTalkWindow();
}

} // namespace

videoAssistant::videoAssistant(QWidget* parent)
    : QVideoViewer(parent), m_speaker(kSpeakerVolume, 0), m_nSavedVolume(dev_get_output_volume()),
      m_threadMovie(msgGetThreadByName("app_hxMovie")), m_threadMedia(msgGetThreadByName("app_hxMedia")),
      m_threadPhone(msgGetThreadByName("app_hxPhone"))
{
}

videoAssistant::videoAssistant(int mode, QWidget* parent, Qt::WindowFlags flags)
    : QVideoViewer(mode, parent, flags), m_speaker(kSpeakerVolume, 0),
      m_nSavedVolume(dev_get_output_volume()), m_threadMovie(msgGetThreadByName("app_hxMovie")),
      m_threadMedia(msgGetThreadByName("app_hxMedia")), m_threadPhone(msgGetThreadByName("app_hxPhone"))
{
    installEventFilter(this);
}

bool videoAssistant::LoadFileList(FileList& list)
{
    if (list.empty())
        return false;
    if (!m_threadMedia || !m_threadMovie) {
        nuxTrace(TRACE_NOTE, "Please run hxMedai and hxPlayer not run first");
        return false;
    }
    Post(m_threadMovie, MOVIE_MSG_LIST_CLEAR);
    for (; !list.empty(); list.pop_front()) {
        const chString& file = list.front();
        nuxTrace(TRACE_DETAIL, "Push media: %s", file.GetText());
        msgPostMsgToThreadEx(m_threadMovie, MOVIE_MSG_LIST_ADD, 0, 0, file.GetLength() + 1, file.GetText());
    }
    Post(m_threadMovie, MOVIE_MSG_PLAY_LIST, playerThreadNumber(m_threadPhone));
    SetFrameStatus(0);
    ShowBackground(0);
    return true;
}

bool videoAssistant::LoadFile(const char* file)
{
    FileList list;
    list.push_back(file);
    return LoadFileList(list);
}

void videoAssistant::PlayLast()
{
    Post(m_threadMovie, MOVIE_MSG_PREVIOUS);
}

void videoAssistant::PlayNext()
{
    Post(m_threadMovie, MOVIE_MSG_NEXT);
}

void videoAssistant::Stop()
{
    Post(m_threadMovie, MOVIE_MSG_STOP, playerThreadNumber(m_threadPhone));
}

void videoAssistant::SwitchPlayPause()
{
    m_nPaused = m_nPaused ? 0 : 1;
    Post(m_threadMovie, m_nPaused ? MOVIE_MSG_PAUSE : MOVIE_MSG_RESUME);
}

void videoAssistant::DestructRes()
{
    if (m_nDestructed)
        return;
    Post(m_threadMedia, MEDIA_MSG_SESSION_STOP);
    Stop();
    dev_set_output_mute(0);
    ShowVideoViewer(0);
    dev_set_output_volume(m_nSavedVolume);
    m_nDestructed = 1;
}

void videoAssistant::SetOutPutMute(int mute)
{
    dev_set_output_mute(mute);
}

void videoAssistant::OnFocusIn() {}

bool videoAssistant::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != this)
        return QVideoViewer::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::WindowActivate:
        if (!isTalkWindow())
            m_speaker.setNewVoiceInfo();
        OnFocusIn();
        return true;
    case QEvent::WindowDeactivate:
        if (!isTalkWindow())
            m_speaker.setOldVoiceInfo();
        return false;
    case QEvent::Close:
        m_nDestructed = 0; // a close always tears down
        DestructRes();
        return false;
    default:
        return QVideoViewer::eventFilter(watched, event);
    }
}

void videoAssistant::SetTalkWindowTest(bool (*test)())
{
    s_isTalkWindow = test;
}

void videoAssistant::Post(chThreadBase* thread, unsigned int message, unsigned int wParam)
{
    msgPostMsgToThread(thread, message, wParam, 0);
}
