#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckScreen.h"
#include "signage/nDeckVideoManager.h"
#include "signage/scheduleTime.h"
#include "signage/serverConfig.h"
#include "support/file/fileTools.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <QRect>
#include <algorithm>
#include <string>

namespace {

enum { RELOAD_SHORTEST_MS = 10, CHANGE_SHORTEST_MS = 1 };

bool isRegistered()
{
    return GetNDeckRegister().GetRegisterStatus() != 0;
}

void showDefaultPicture()
{
    GetNDeckScreen().SetBackgroundImage(NDECK_DEFAULT_PICTURE);
}

} // namespace

nDeckDisplay::nDeckDisplay() : m_current(end()) {}

nDeckDisplay::~nDeckDisplay() = default;

bool nDeckDisplay::CreateDisplay()
{
    nuxTrace(TRACE_DETAIL, "nDeckDisplay::CreateDisplay");
    if (!IsNdeckEnable() || m_bCreated)
        return false;
    m_bCreated = 1;
    nDeckFileManager& files = GetNDeckFileManager();
    files.SetAutoUpdateEnable(1);
    if (files.IsNdeckConfigComplete() && isRegistered())
        InitDisplay();
    else
        UpdateDisplay(&files.GetDisplayFrame());
    return true;
}

void nDeckDisplay::InitDisplay()
{
    GetNDeckFileManager().InitFileList();
    UpdateDisplay(&GetNDeckFileManager().GetDisplayFrame());
}

void nDeckDisplay::DestroyDisplay()
{
    nuxTrace(TRACE_DETAIL, "nDeckPanel::DistroyDisplay");
    GetNDeckScreen().HideWindow();
    SetCurrentLayout(end());
    GetNDeckFileManager().SetAutoUpdateEnable(0);
    GetNDeckVideoManager().StopPlayVideo(1);
    m_bCreated = 0;
}

void nDeckDisplay::UpdateDisplay(DisplayFrame* frame)
{
    if (frame != &m_frame) {
        m_frame.medias = frame->medias;
        m_frame.layouts = frame->layouts;
    }
    GetNDeckScreen().KeepPicture(QRect());
    GetNDeckScreen().ClearPannels();
    SetCurrentLayout(end());
    clear();
    nuxTrace(TRACE_DETAIL, "nDeckDisplay::UpdateDisplay(layout count:%d)", m_frame.layouts.size());
    if (m_frame.layouts.empty()) {
        nuxTrace(TRACE_DETAIL, "nDeckDisplay::UpdateDisplay layouts count=0 then show default layout");
        showDefaultPicture();
    }
    for (const _nDeckLayoutNode& node : m_frame.layouts)
        AppendLayout(node);
    LoadNextReadyLayout();
    GetNDeckScreen().ReleasePicture();
}

void nDeckDisplay::AppendLayout(const _nDeckLayoutNode& node)
{
    nDeckLayout& layout = *append(this);
    std::string content;
    fileReadWhole(nDeckPath(node.file), content, NDECK_LAYOUT_FILE_LIMIT);
    chTime from;
    chTime to;
    scheduleWindow(node.fromdt, node.todt, node.eventType, from, to);
    layout.SetSchedule(from, to);
    layout.SetMeeting(node.bMeeting);
    layout.SetLayoutContent(node.file, content.c_str(), node.md5);
}

void nDeckDisplay::LoadNextReadyLayout()
{
    GetNDeckFileManager().RemoveOldFileByFileList();
    SetCurrentLayout(FindNextReady());
}

// Once round the ring from behind the current one. What is over goes, wherever it is met.
nDeckDisplay::iterator nDeckDisplay::FindNextReady()
{
    const chTime now(netGetLocalTime());
    iterator it = m_current;
    ++it;
    while (it != m_current) {
        if (it == end())
            ++it;
        else if (it->IsScheduleOnReady(now))
            return it;
        else if (it->IsSchedulePassed(now))
            it = erase(it);
        else
            ++it;
    }
    return m_current;
}

void nDeckDisplay::SetCurrentLayout(iterator layout)
{
    ++m_nChange;
    if (layout != m_current)
        ChangeCurrent(layout);
    else if (layout != end())
        ReloadCurrent();
}

void nDeckDisplay::ReloadCurrent()
{
    m_timer.KillTimer();
    if (isRegistered()) {
        m_current->OnLayoutReload();
    } else {
        m_current->OnLayoutUnload();
        GetNDeckScreen().ClearPannels();
        nuxTrace(TRACE_DETAIL, "nDeckDisplay::SetCurrentLayout only layout register failed then show default "
                               "layout");
        showDefaultPicture();
    }
    StartTimer(m_current->GetLayoutDuration(), RELOAD_SHORTEST_MS);
}

void nDeckDisplay::ChangeCurrent(iterator layout)
{
    const bool keeps = layout != end() && layout->HasText();
    if (keeps)
        GetNDeckScreen().KeepPicture(QRect());
    if (m_current != end()) {
        m_current->OnLayoutUnload();
        m_timer.KillTimer();
    }
    if (layout != end()) {
        StartTimer(layout->GetLayoutDuration(), CHANGE_SHORTEST_MS);
        if (isRegistered()) {
            layout->OnLayoutLoad();
        } else {
            nuxTrace(TRACE_DETAIL, "nDeckDisplay::SetCurrentLayout load layout register failed then show "
                                   "default layout");
            GetNDeckScreen().ClearPannels();
            showDefaultPicture();
        }
    }
    m_current = layout;
    if (keeps)
        GetNDeckScreen().ReleasePicture();
}

void nDeckDisplay::StartTimer(int duration, int shortest)
{
    m_timer.SetTimer(duration < 1 ? shortest : duration, nullptr, this, &nDeckDisplay::OnTimerLoadNextLayout);
}

int nDeckDisplay::OnTimerLoadNextLayout(msgObject&)
{
    nuxTrace(TRACE_DETAIL, "nDeckDisplay::OnTimerLoadNextLayout");
    if (m_current != end())
        m_current->CloseMeetingLamp();
    m_timer.KillTimer(); // many files take longer than a turn, and the layout stays meanwhile
    GetNDeckFileManager().PutFilesIntoUse([this, change = ++m_nChange] {
        if (change == m_nChange)
            LoadNextReadyLayout();
    });
    return 1;
}

bool nDeckDisplay::IsMettingCurrentLayout()
{
    return m_current != end() && m_current->IsMettingLayout();
}

bool nDeckDisplay::IsNdeckEnable()
{
    return nDeckIsEnabled();
}

bool nDeckDisplay::IsVoiceTalkEnable()
{
    return nDeckIsOn("bVoiceTalkEnable", 1);
}

bool nDeckDisplay::IsHoldEnable()
{
    return nDeckIsOn("bVoiceTalkHold", 1);
}

bool nDeckDisplay::IsRingBackEnable()
{
    return nDeckIsOn("bVoiceRingBack", 0);
}

bool nDeckDisplay::IsScreenSaverEnable()
{
    return nDeckIsOn("bScreenSaver", 1);
}

bool nDeckDisplay::IsPlayVideoInTalk()
{
    return nDeckPlaysVideoInTalk();
}

nDeckDisplay& GetNDeckDispaly()
{
    static nDeckDisplay* display = new nDeckDisplay;
    return *display;
}

nDeckShow& GetNDeckShow()
{
    return GetNDeckDispaly();
}

void OnLaunchNDeck()
{
    GetNDeckDispaly().CreateDisplay();
}

void OnUnLaunchNDeck()
{
    GetNDeckDispaly().DestroyDisplay();
}
