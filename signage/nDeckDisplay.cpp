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
#include <unordered_map>

namespace {

enum { RELOAD_SHORTEST_MS = 10, CHANGE_SHORTEST_MS = 1, DRAW_MS = 40 };

bool mayShow()
{
    return GetNDeckRegister().MayShow();
}

void showDefaultPicture()
{
    GetNDeckScreen().SetBackgroundImage(NDECK_DEFAULT_PICTURE);
}

std::string contentOf(const chString& name)
{
    std::string content;
    fileReadWhole(nDeckPath(name), content, NDECK_LAYOUT_FILE_LIMIT);
    return content;
}

// What is on the disk is what the schedule asks for.
bool isInUse(const nDeckLayout& layout)
{
    return GetNDeckFileManager().IsFileKnown(layout.GetName(), layout.GetMd5());
}

// Of a layout whose file may not be in use yet.
std::string waitingContent(const _nDeckLayoutNode& node)
{
    const chString waiting = node.file + NDECK_WAITING;
    const bool isWaiting = GetNDeckFileManager().IsFileKnown(waiting, node.md5);
    return contentOf(isWaiting ? waiting : node.file);
}

bool areFilesHere(const std::vector<chString>& files, const std::unordered_map<std::string, chString>& md5s)
{
    return std::all_of(files.begin(), files.end(), [&md5s](const chString& file) {
        const auto md5 = md5s.find(file.GetText());
        return md5 == md5s.end() || GetNDeckFileManager().IsFileHere(file, md5->second);
    });
}

} // namespace

nDeckDisplay::nDeckDisplay() : m_current(end()), m_drawn(end()) {}

nDeckDisplay::~nDeckDisplay() = default;

bool nDeckDisplay::CreateDisplay()
{
    nuxTrace(TRACE_DETAIL, "nDeckDisplay::CreateDisplay");
    if (!IsNdeckEnable() || m_bCreated)
        return false;
    m_bCreated = 1;
    nDeckFileManager& files = GetNDeckFileManager();
    files.SetAutoUpdateEnable(1);
    if (files.IsNdeckConfigComplete() && mayShow())
        InitDisplay();
    else
        UpdateDisplay(&files.GetDisplayFrame());
    return true;
}

void nDeckDisplay::InitDisplay()
{
    m_bStoredShown = true;
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
    m_bStoredShown = false;
}

void nDeckDisplay::UpdateDisplay(DisplayFrame* frame)
{
    if (frame != &m_frame) {
        m_frame.medias = frame->medias;
        m_frame.layouts = frame->layouts;
    }
    m_mediaNames = frameMediaNames(m_frame);
    m_awaited.clear();
    m_lastPassed = chTime();
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
    chTime from;
    chTime to;
    scheduleWindow(node.fromdt, node.todt, node.eventType, from, to);
    layout.SetSchedule(from, to);
    layout.SetMeeting(node.bMeeting);
    layout.SetLayoutContent(node.file, contentOf(node.file).c_str(), node.md5);
    layout.SetLate(!isInUse(layout));
}

void nDeckDisplay::LoadNextReadyLayout()
{
    GetNDeckFileManager().RemoveOldFileByFileList();
    // By a clock that was wrong, a layout was removed that is not over.
    if (m_lastPassed > chTime(netGetLocalTime())) {
        UpdateDisplay(&m_frame);
        return;
    }
    if (!nDeckKeepsShow()) {
        SetCurrentLayout(FindNextReady());
        return;
    }
    ReadLateLayouts();
    SetCurrentLayout(FindNextComplete());
}

// Where a show is kept, a frame may be taken up before all its layouts have come.
void nDeckDisplay::ReadLateLayouts()
{
    for (nDeckLayout& layout : *this) {
        if (!layout.IsLate() || !isInUse(layout))
            continue;
        layout.SetLayoutContent(layout.GetName(), contentOf(layout.GetName()).c_str(), layout.GetMd5());
        layout.SetLate(false);
    }
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
            it = RemovePassed(it);
        else
            ++it;
    }
    return m_current;
}

// The same, but one whose files have not all come waits while there is another.
nDeckDisplay::iterator nDeckDisplay::FindNextComplete()
{
    const chTime now(netGetLocalTime());
    m_awaited.clear();
    iterator it = m_current;
    ++it;
    while (it != m_current) {
        if (it == end())
            ++it;
        else if (it->IsScheduleOnReady(now) && TakeIfComplete(it))
            return it;
        else if (it->IsSchedulePassed(now))
            it = RemovePassed(it);
        else
            ++it;
    }
    const bool isCurrentComplete = m_current != end() && TakeIfComplete(m_current);
    return isCurrentComplete || m_awaited.empty() ? m_current : m_awaited.front().layout;
}

nDeckDisplay::iterator nDeckDisplay::RemovePassed(iterator layout)
{
    m_lastPassed = std::max(m_lastPassed, layout->GetEnd());
    if (layout == m_drawn)
        m_drawn = end();
    return erase(layout);
}

// One that is not complete is awaited from now on. One that nobody could read yet asks again at its next
// turn.
bool nDeckDisplay::TakeIfComplete(iterator layout)
{
    if (layout->IsLate() && !layout->HasContent())
        return false;
    tagAwaited awaited;
    awaited.layout = layout;
    awaited.files = layout->GetFiles();
    if (IsComplete(awaited))
        return true;
    m_awaited.push_back(std::move(awaited));
    return false;
}

// A name that the frame in force does not list keeps nobody waiting, unless it is the background.
bool nDeckDisplay::IsComplete(tagAwaited& awaited) const
{
    const nDeckFileManager& files = GetNDeckFileManager();
    const chString& background = awaited.layout->GetBackground();
    for (; awaited.nNext < awaited.files.size(); ++awaited.nNext) {
        const chString& file = awaited.files[awaited.nNext];
        const bool isNeeded = file == background || m_mediaNames.count(file.GetText());
        if (isNeeded && !files.IsFileAtHand(file))
            return false;
    }
    return true;
}

void nDeckDisplay::OnFileCame(const chString& name)
{
    for (tagAwaited& awaited : m_awaited) {
        if (awaited.files[awaited.nNext] == name && IsComplete(awaited)) {
            BeginAwaited(awaited.layout);
            return;
        }
    }
}

// Its turn has come long ago.
void nDeckDisplay::BeginAwaited(iterator layout)
{
    m_awaited.clear();
    m_timer.KillTimer();
    GetNDeckFileManager().PutFilesIntoUse([this, layout, change = ++m_nChange] {
        if (change == m_nChange)
            SetCurrentLayout(layout);
    });
}

void nDeckDisplay::OnFrameStays()
{
    if (m_current == end() && !m_frame.layouts.empty())
        LoadNextReadyLayout();
}

bool nDeckDisplay::CanShowAny(const DisplayFrame& frame)
{
    std::unordered_map<std::string, chString> md5s;
    for (const _nDeckFileNode& media : frame.medias)
        md5s[media.path.GetText()] = media.md5;
    return std::any_of(frame.layouts.begin(), frame.layouts.end(), [&](const _nDeckLayoutNode& node) {
        nDeckLayout layout;
        layout.SetLayoutContent(node.file, waitingContent(node).c_str(), node.md5);
        return !layout.GetRegions().empty() && areFilesHere(layout.GetFiles(), md5s);
    });
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
    if (mayShow()) {
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

// A layout without a duration follows another sooner than the screen shows anything: it has its turn all the
// same, and is drawn when the last picture stood for a moment.
bool nDeckDisplay::IsTooQuick(iterator layout)
{
    if (layout == end() || m_current == end() || !m_drawnSince.isValid() || !mayShow())
        return false;
    for (nDeckLayout* one : {&*m_current, &*layout}) {
        if (one->GetLayoutDuration() >= CHANGE_SHORTEST_MS || one->IsMettingLayout())
            return false;
    }
    return !m_drawnSince.hasExpired(DRAW_MS);
}

// What shows, which is not the current one after quick turns.
void nDeckDisplay::UnloadShown()
{
    if (m_drawn != end() && m_drawn != m_current)
        m_drawn->OnLayoutUnload();
    m_drawn = end();
    if (m_current == end())
        return;
    m_current->OnLayoutUnload();
    m_timer.KillTimer();
}

void nDeckDisplay::ChangeCurrent(iterator layout)
{
    if (IsTooQuick(layout)) {
        StartTimer(layout->GetLayoutDuration(), CHANGE_SHORTEST_MS);
        m_current = layout;
        return;
    }
    const bool keeps = layout != end() && layout->TakesTime();
    if (keeps)
        GetNDeckScreen().KeepPicture(QRect());
    UnloadShown();
    if (layout != end()) {
        m_drawn = layout;
        m_drawnSince.start();
        StartTimer(layout->GetLayoutDuration(), CHANGE_SHORTEST_MS);
        if (mayShow()) {
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

// Pictures take their time, and the next layout's turn comes.
void nDeckDisplay::PrepareAfter(const nDeckLayout& layout)
{
    iterator next = begin();
    while (next != end() && &*next != &layout)
        ++next;
    if (next == end())
        return;
    if (++next == end())
        next = begin();
    if (&*next != &layout)
        next->Prepare();
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
