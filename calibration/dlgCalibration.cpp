#include "calibration/dlgCalibration.h"
#include "calibration/cross.h"
#include "calibration/touchDriver.h"
#include "frame/noteBox.h"
#include "support/file/rawDevice.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <cerrno>
#include <cstdlib>
#include <cstring>

int xess[CALIBRATION_POINTS] = {50, 750, 750, 50, 400};
int yess[CALIBRATION_POINTS] = {50, 50, 430, 430, 240};
ts_sample samp[CALIBRATION_SAMPLES];

namespace {

constexpr int kMargin = 50; // of the outer crosses
constexpr int kWatchdogMs = 30000;
constexpr int kSamplingMs = 100;
constexpr int kReleaseMs = 20;
constexpr int kMostInTick = 64;
constexpr int kFailureMs = 3000;
constexpr int kMostAttempts = 3;
constexpr int kFilterX = 6; // what the driver works with
constexpr int kFilterY = 8;
constexpr QSize kPhoneScreen(800, 480);
const QRect kText(QPoint(176, 290), QPoint(623, 389));
const char* const kInstruction =
    HX_TR("Please keep pressing each black cross until it moves to the next position "
          "on the screen or confirmation page appears!");

// A desk's screen may be larger than the phone's, which lies in its corner.
QSize screenSize()
{
    return QGuiApplication::primaryScreen()->size().boundedTo(kPhoneScreen);
}

const char* deviceName()
{
    const char* name = getenv("TSLIB_TSDEVICE");
    return name ? name : "/dev/input/TouchScreen";
}

bool isFunctionKey(const QEvent* event)
{
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key >= Qt::Key_F1 && key <= Qt::Key_F4;
}

} // namespace

dlgCalibration::dlgCalibration(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), m_pCross(new Cross(this)),
      m_pText(new QLabel(this)), m_sampler(this)
{
    const QSize size = screenSize();
    m_nWidth = size.width();
    m_nHeight = size.height();
    setGeometry(QRect(QPoint(0, 0), size));
    setFocusPolicy(Qt::StrongFocus);
    QPalette paper = palette();
    paper.setColor(QPalette::Window, Qt::white);
    setPalette(paper);
    setAutoFillBackground(true);
    m_pDevice = OpenDevice(nullptr);
    m_pText->setObjectName("labText");
    m_pText->setGeometry(kText);
    m_pText->setAlignment(Qt::AlignCenter);
    m_pText->setWordWrap(true);
    m_pCross->setObjectName("frmCross");
    m_failure.setSingleShot(true);
    m_watchdog.setTimerType(Qt::PreciseTimer);
    connect(&m_failure, &QTimer::timeout, this, &dlgCalibration::changeText);
    connect(&m_watchdog, &QTimer::timeout, this, &dlgCalibration::exitAdjust);
    for (QWidget* widget :
         {static_cast<QWidget*>(this), static_cast<QWidget*>(m_pCross), static_cast<QWidget*>(m_pText)})
        widget->installEventFilter(this);
    changeText();
    qFollowLanguage(this, [this] { m_pText->setText(qTranslate(m_szText)); });
}

dlgCalibration::~dlgCalibration()
{
    m_sampler.Cancel();
    touchDeviceClose(m_pDevice);
}

void dlgCalibration::Dosystem()
{
    touchSetJitter(0, 0);
}

void dlgCalibration::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QTimer::singleShot(0, this, &dlgCalibration::Dosystem);
    grabMouse();
    activateWindow();
    releaseMouse();
    restartWatchdog();
    m_failure.stop();
    changeText();
    m_nPressCount = 0;
    m_nAttempts = 0;
    m_nSamples = 0;
    m_pCross->Point(xess[0], yess[0]);
    m_pCross->show();
}

void dlgCalibration::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    touchSetJitter(kFilterX, kFilterY);
    killTimers();
}

// Never waits: neither for the writer of a pipe nor for a record that somebody else was quicker at.
tsdev* dlgCalibration::OpenDevice(tsdev* current)
{
    if (current)
        return current;
    tsdev* device = ts_open(deviceName(), 1);
    if (!device)
        nuxTrace(TRACE_NOTE, "ts_open: %s", strerror(errno));
    return device;
}

void dlgCalibration::restartWatchdog()
{
    m_watchdog.start(kWatchdogMs);
}

void dlgCalibration::killTimers()
{
    m_sampling.KillTimer();
    m_release.KillTimer();
    m_sampler.Cancel();
}

void dlgCalibration::mousePressEvent(QMouseEvent*)
{
    restartWatchdog();
    // The attempt that this press would begin counts.
    if (m_nAttempts + 1 > kMostAttempts) {
        m_nAttempts = 0;
        exitAdjust();
        return;
    }
    if (m_release.IsTimerRuning())
        return;
    m_pDevice = OpenDevice(m_pDevice);
    if (!m_pDevice) {
        tellNoDevice();
        return;
    }
    GetTouchPoint();
}

void dlgCalibration::tellNoDevice()
{
    const QPointer<dlgCalibration> page = this;
    noteBox(HX_TR("Can not open Device"), this);
    if (page && page->isUnderCall())
        exitAdjust();
}

// A call takes away the box that lay over the page, and the page was not the active window then.
bool dlgCalibration::isUnderCall() const
{
    return isVisible() && phone_GetCallTotal() != 0 && QWSServer::clientWindows().value(0) != this;
}

void dlgCalibration::GetTouchPoint()
{
    if (!m_sampling.IsTimerRuning())
        m_sampling.SetTimer(kSamplingMs, nullptr, this, &dlgCalibration::OnSampleTimer);
}

// A sample may take as long as a tick: the one before may be under way.
void dlgCalibration::OnSampleTimer(msgObject&)
{
    if (m_sampler.IsWaiting())
        return;
    m_pDevice = OpenDevice(m_pDevice);
    if (m_pDevice) {
        askSample();
        return;
    }
    nuxTrace(TRACE_NOTE, "ts_read: %s", strerror(errno));
    m_sampling.KillTimer();
}

void dlgCalibration::askSample()
{
    // A wait without a report is no sample.
    m_sampler.Request(m_pDevice, 0, [this](const ts_sample& sample) { onSample(sample); });
}

void dlgCalibration::onSample(const ts_sample& sample)
{
    forgetLostDevice();
    if (sample.pressure == 0)
        return;
    samp[m_nSamples++] = sample;
    if (m_nSamples < CALIBRATION_SAMPLES)
        askSample();
    else
        endPoint();
}

// It is opened again with the next tick, or a press says that it cannot be.
void dlgCalibration::forgetLostDevice()
{
    if (!m_sampler.IsLost())
        return;
    touchDeviceClose(m_pDevice);
    m_pDevice = nullptr;
}

void dlgCalibration::endPoint()
{
    const QPointer<dlgCalibration> page = this;
    m_sampling.KillTimer();
    nuxTrace(TRACE_DETAIL, "Took %d samples...", m_nSamples);
    GetTheTouchPointInfo(m_ObjCalibration, m_nPressCount);
    DrawPoint(m_nPressCount);
    ++m_nPressCount;
    if (m_nPressCount == CALIBRATION_POINTS) {
        nuxTrace(TRACE_DETAIL, "m_nPressCount = %d", m_nPressCount);
        GetTheResult();
    }
    if (page && page->isVisible())
        m_release.SetTimer(kReleaseMs, nullptr, this, &dlgCalibration::OnPointUp);
}

void dlgCalibration::OnPointUp(msgObject&)
{
    if (m_sampler.IsWaiting())
        return;
    m_pDevice = OpenDevice(m_pDevice);
    m_nReleaseSamples = 0;
    if (m_pDevice)
        askReleaseSample();
    else
        onReleaseSample(ts_sample());
}

void dlgCalibration::askReleaseSample()
{
    // A finger that lies still makes no reports, and has not left.
    m_sampler.Request(m_pDevice, samp[CALIBRATION_SAMPLES - 1].pressure,
                      [this](const ts_sample& sample) { onReleaseSample(sample); });
}

// A panel may report faster than the ticks come: what waits already is looked through, or a finger that left
// long ago would still count as there.
void dlgCalibration::onReleaseSample(const ts_sample& sample)
{
    forgetLostDevice();
    if (sample.pressure != 0) {
        if (++m_nReleaseSamples < kMostInTick && rawDeviceWait(m_pDevice->fd, 0) > 0)
            askReleaseSample();
        return;
    }
    m_release.KillTimer();
    m_nSamples = 0;
    GetTouchPoint();
}

void dlgCalibration::GetTheTouchPointInfo(calibration& cal, int point)
{
    const int atX[CALIBRATION_POINTS] = {kMargin, m_nWidth - kMargin, m_nWidth - kMargin, kMargin,
                                         m_nWidth / 2};
    const int atY[CALIBRATION_POINTS] = {kMargin, kMargin, m_nHeight - kMargin, m_nHeight - kMargin,
                                         m_nHeight / 2};
    long long x = 0;
    long long y = 0;
    for (const ts_sample& sample : samp) {
        x += sample.x;
        y += sample.y;
    }
    cal.x[point] = int(x / CALIBRATION_SAMPLES);
    cal.y[point] = int(y / CALIBRATION_SAMPLES);
    cal.xfb[point] = atX[point];
    cal.yfb[point] = atY[point];
}

void dlgCalibration::DrawPoint(int point)
{
    const int next = (point + 1) % CALIBRATION_POINTS;
    m_pCross->Point(xess[next], yess[next]);
}

void dlgCalibration::GetTheResult()
{
    ++m_nAttempts;
    m_nPressCount = 0;
    m_sampling.KillTimer();
    m_release.KillTimer();
    m_nSamples = 0;
    m_pCross->Point(xess[0], yess[0]);
    if (!GetTransferparameter(m_ObjCalibration))
        return;
    if (Checkparameter(m_ObjCalibration))
        askConsent();
    else
        tellFailure();
}

void dlgCalibration::tellFailure()
{
    showText(HX_TR("LCD Adjusting fail, please try again!"), Qt::red);
    m_failure.start(kFailureMs);
}

void dlgCalibration::changeText()
{
    showText(kInstruction, Qt::black);
}

void dlgCalibration::showText(const char* text, Qt::GlobalColor colour)
{
    m_szText = text;
    QPalette ink = m_pText->palette();
    ink.setColor(QPalette::WindowText, colour);
    m_pText->setPalette(ink);
    m_pText->setText(qTranslate(text));
}

void dlgCalibration::askConsent()
{
    m_watchdog.stop();
    m_nAttempts = 0;
    const QPointer<dlgCalibration> page = this;
    const int answer = questionBox(HX_TR("Touch screen calibration finish. Use the new profile?"), this);
    if (!page)
        return;
    nuxTrace(TRACE_DETAIL, "---nRet[%d]---", answer);
    if (answer) {
        takeNewProfile();
        return;
    }
    touchSetJitter(kFilterX, kFilterY);
    reject();
}

// What cannot be stored is told, and the page stays for another round.
void dlgCalibration::takeNewProfile()
{
    const QPointer<dlgCalibration> page = this;
    if (!noteUnlessSaved(touchSaveMapping(m_ObjCalibration), this)) {
        if (page && page->isUnderCall())
            exitAdjust();
        else if (page && page->isVisible())
            restartWatchdog();
        return;
    }
    QWSServer::closeMouse();
    QWSServer::openMouse();
    QWSServer::setCursorVisible(false);
    exitAdjust();
}

void dlgCalibration::exitAdjust()
{
    killTimers();
    m_failure.stop();
    m_watchdog.stop();
    touchSetJitter(kFilterX, kFilterY);
    close();
}

bool dlgCalibration::eventFilter(QObject* watched, QEvent* event)
{
    const bool called =
        event->type() == QEvent::WindowDeactivate && watched == this && phone_GetCallTotal() != 0;
    const bool left = event->type() == QEvent::KeyRelease && isChildOf(watched, this) && isFunctionKey(event);
    if (called || left)
        exitAdjust();
    return QDialog::eventFilter(watched, event);
}
