#include "host/desktop/frmCall.h"
#include "host/desktop/callChoice.h"
#include "host/desktop/callMarks.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/callSound.h"
#include "host/desktop/callTexts.h"
#include "host/desktop/clockText.h"
#include "host/desktop/contactBook.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/lineName.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "host/services/players/videoFrames.h"
#include "support/host/api.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/picture.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_frmCall.h"
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace {

constexpr int kDigitsShown = 24;
constexpr int kKeepWeight = -1;
constexpr int kFailedMs = 3000;
constexpr int kVolumeMs = 3000;
constexpr int kSmallestName = 20; // pixels
constexpr int kSmallestText = 15;
constexpr int kSmallestNumber = 13;
constexpr int kInnerRing = 10; // from the picture's edge
constexpr int kOuterRing = 24;
constexpr QRgb kRings = 0x1effffff;
constexpr QPointF kLight(240, 0); // of the page behind a question
constexpr qreal kLightReach = 860;
constexpr QRgb kSky[] = {0xff3f7fb8, 0xff1d4b79, 0xff112c4a};
constexpr qreal kSkyMiddle = 0.45;
constexpr QRgb kStrip = 0x33000000;
constexpr QRgb kPictureEdge = 0x40ffffff;
const char* const kNobody = "/phone/resource/contact-image/icon_contact.png";

QPixmap pictureOfNobody()
{
    return GetImageManager()->GetImageByScale(kNobody, callLayout::kPortrait.width(),
                                              callLayout::kPortrait.height());
}

} // namespace

frmCall::frmCall()
    : QWidget(nullptr, Qt::FramelessWindowHint), m_ui(new Ui_frmCall), m_actions(this),
      m_display(NDECK_WINDOW_TALK, this, callLayout::kDisplay)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setGeometry(0, 0, look::kScreenWidth, look::kScreenHeight);
    QLabel* const small[] = {m_ui->labLine, m_ui->labMute, m_ui->labVolume, m_ui->labClock, m_ui->labOthers};
    for (QLabel* label : small)
        setFontStyle(look::kSmallSize, kKeepWeight, label, true);
    QPalette white = m_ui->labOthers->palette();
    white.setColor(QPalette::WindowText, look::colour(look::kTextOnBar));
    m_ui->labOthers->setPalette(white);
    m_ui->wgtPicture->lower(); // the actions were there before
    callLayout::apply(*m_ui, m_eLayout);
    m_ui->wgtCorner->hide();
    m_ui->wgtPad->hide();
    connect(m_ui->wgtPad, &dialPad::typed, this, [this](QChar sign) { sendDigit(sign); });
    connectActions();
    m_ui->btnAnswer->setDisc(HX_THEME("button/btn_answer_bg01.png"), HX_THEME("button/btn_answer_bg02.png"));
    m_ui->btnDecline->setDisc(HX_THEME("button/btn_decline_bg01.png"),
                              HX_THEME("button/btn_decline_bg02.png"));
    m_ui->btnForward->setDisc(HX_THEME("button/btn_forward_bg01.png"),
                              HX_THEME("button/btn_forward_bg02.png"));
    connect(m_ui->btnForward, &callButton::clicked, this, &frmCall::on_click_Forward);
    connect(m_ui->btnAnswer, &callButton::clicked, this, &frmCall::on_click_Answer);
    connect(m_ui->btnDecline, &callButton::clicked, this, &frmCall::on_click_End);
    m_pSoftKeys = new qSoftKeyBar(this);
    m_pSoftKeys->move(0, look::kScreenHeight - look::kSoftKeyHeight);
    m_digitsShown.setInterval(TONES_MS);
    m_digitsShown.setSingleShot(true);
    m_failedShown.setInterval(kFailedMs);
    m_failedShown.setSingleShot(true);
    connect(&m_failedShown, &QTimer::timeout, this, [this] {
        m_told = nullptr;
        showOthers();
    });
    m_volumeShown.setInterval(kVolumeMs);
    m_volumeShown.setSingleShot(true);
    connect(&m_volumeShown, &QTimer::timeout, this, [this] {
        m_bVolumeChanged = false;
        showQuestion();
    });
    m_tick.setInterval(TICK_MS);
    m_end.setInterval(END_MS);
    m_end.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, &frmCall::tick);
    connect(&m_end, &QTimer::timeout, this, &frmCall::close);
    connect(&displayClient::instance(), &displayClient::enabledChanged, this, &frmCall::showDisplay);
    qApp->installEventFilter(this);
    qFollowLanguage(this, [this] {
        showState();
        showOthers();
        showClock();
        showSound();
        showSoftKeys();
    });
}

frmCall::~frmCall() = default;

void frmCall::onCall(const tagCall& call)
{
    // A call that was refused for the user has not rung.
    if (call.bIncoming && call.eState == CALL_ENDED && call.nId > m_nLastId)
        return;
    const QList<tagCall> calls = phoneService::instance().calls();
    const bool failedBeside = call.eState == CALL_ENDED && !call.strReason.isEmpty() && !calls.isEmpty();
    forgetTold(call);
    if (failedBeside)
        tellForAMoment([call] { return callJoinedText(call.strNumber, callStateText(call)); }, 0);
    else if (call.eState == CALL_TALKING && !call.strReason.isEmpty())
        tellForAMoment([call] { return callJoinedText(call.strTarget, callStateText(call)); }, call.nId);
    if (call.nId > m_nLastId && !calls.isEmpty())
        rememberUnder(call.nId);
    showCall(calls.isEmpty() ? call : callMostUrgent(calls, m_call.nId));
    if (calls.isEmpty()) {
        m_tick.stop();
        m_end.start();
    } else {
        m_tick.start();
        m_end.stop();
    }
    open(call.nId > m_nLastId);
    bringBackUnder(call);
    m_nLastId = qMax(m_nLastId, call.nId);
    showDisplay();
}

void frmCall::tellForAMoment(std::function<QString()> told, int call)
{
    m_told = std::move(told);
    m_nFailed = call;
    m_bFull = false;
    m_failedShown.start();
}

// What was told of a call goes with it, and all of it with the last one.
void frmCall::forgetTold(const tagCall& call)
{
    const QList<tagCall> calls = phoneService::instance().calls();
    const bool isOver = call.eState == CALL_ENDED && (calls.isEmpty() || call.nId == m_nFailed);
    const bool isFirst = call.nId > m_nLastId && calls.size() == 1;
    if (isOver || isFirst)
        m_told = nullptr;
}

// A call that begins while nothing is here was not there to be pressed for anything else; who has just
// dialled one knows what he ends.
void frmCall::guardPresses(const tagCall& next)
{
    const bool isOther = next.nId != m_call.nId && m_call.nId != 0;
    if (!isVisible() || !isOther || (next.nJoined && next.nJoined == m_call.nId))
        return;
    const bool isDialled = next.options.bByHand && next.nId > m_nLastId;
    m_presses.changed(isDialled  ? pressGuard::DIALLED
                      : isOver() ? pressGuard::AFTER_A_CALL
                                 : pressGuard::OTHER_CALL);
}

void frmCall::showCall(const tagCall& call)
{
    const bool isSame = call.nId == m_call.nId;
    const bool isElsewhere = callReached(call) != callReached(m_call);
    const bool isTogether = isSame || (call.nJoined && call.nJoined == m_call.nId);
    guardPresses(call);
    m_call = call;
    if (!isSame)
        m_digitsShown.stop();
    else if (m_strDigits != call.strTones)
        m_digitsShown.start();
    m_strDigits = call.strTones;
    if (!talks() || !isTogether) // whoever comes up has not asked for keys
        showPad(false);
    if (!isSame) {
        m_bVolumeChanged = m_bFull = false;
        m_actions.chooseNone();
        showClock();
    }
    if (!isSame || isElsewhere)
        showPicture(call);
    // A camera whose page says so begins over the whole screen.
    if (talks() && hasPicture() && m_nPictured != m_call.nId) {
        m_nPictured = m_call.nId;
        m_bFull = phoneService::instance().rules().deviceOf(m_call).bFullScreen;
    }
    showOthers();
    showState();
}

QString frmCall::nameOf(const tagCall& call)
{
    const QString key = callReached(call) + '\n' + call.strName;
    if (!m_names.contains(key))
        m_names[key] = callNameOf(call, contactOfNumber(contactsRead(), callReached(call)));
    return m_names[key];
}

QString frmCall::whoOf(const tagCall& call)
{
    return callWhoText(nameOf(call), callReached(call));
}

// A conference lasts as long as the longer of its calls, whichever is in front.
int frmCall::secondsShown() const
{
    int seconds = m_call.nSeconds;
    for (const tagCall& call : callsTogether(phoneService::instance().calls(), m_call))
        seconds = qMax(seconds, call.nSeconds);
    return seconds;
}

tagCallStreams frmCall::streams() const
{
    const QList<tagCall> shown = callsTogether(phoneService::instance().calls(), m_call);
    return shown.size() < 2 ? shown[0].streams : callStreamsOf(shown[0].streams, shown[1].streams);
}

// A line for each call beside the one that is shown; of those that talk together, for one that is not there.
void frmCall::showOthers()
{
    const QLabel* label = m_ui->labOthers;
    const bool isRow = m_eLayout == CALL_LAYOUT_BESIDE;
    QStringList lines;
    if (m_told)
        lines = isRow ? QStringList{m_told()} : callLinesOf(label, m_told());
    for (tagCall call : phoneService::instance().calls()) {
        const bool isShown = call.nId == m_call.nId || (m_call.nJoined && call.nId == m_call.nJoined);
        if (isShown && (!m_call.nJoined || !call.bRemoteHeld || m_call.bHeld))
            continue;
        call.nJoined = isShown ? 0 : call.nJoined;
        lines.append(callFittingText(label, label->font().pixelSize(), whoOf(call), callStateText(call)));
    }
    lines = lines.mid(0, OTHERS_MAX);
    for (QString& line : lines)
        line = label->fontMetrics().elidedText(line, Qt::ElideRight, label->width());
    m_ui->labOthers->setText(lines.join(isRow ? QStringLiteral("   ") : QStringLiteral("\n")));
    if (m_eLayout == CALL_LAYOUT_PICTURE)
        callLayout::putOthers(*m_ui);
}

void frmCall::showPad(bool show)
{
    if (m_bPad == show)
        return;
    m_bPad = show;
    m_ui->wgtPad->setVisible(show);
    showDisplay();
    showActions();
}

// One that takes a moment comes into the place of nobody's; that of the caller's server into the contact's.
void frmCall::showPicture(const tagCall& call)
{
    const QString path = contactOfNumber(contactsRead(), callReached(call)).strPicture;
    pictureCancel(m_nPicture);
    m_nPicture = 0;
    tagPictureWish wish;
    wish.strPath = fromQString(path);
    wish.nWidth = callLayout::kPortrait.width();
    wish.nHeight = callLayout::kPortrait.height();
    wish.eFit = PICTURE_FIT_COVER;
    const auto take = [this](PICTURE_RESULT, const QPixmap& picture) {
        m_ui->labPicture->setPicture(picture.isNull() ? pictureOfNobody() : picture);
    };
    take(PICTURE_MISSING, QPixmap());
    if (!path.isEmpty())
        m_nPicture = pictureTell(wish, this, take);
    m_caller.fetch(call.strPicture, callLayout::kPortrait, [this](const QPixmap& picture) {
        pictureCancel(std::exchange(m_nPicture, 0));
        m_ui->labPicture->setPicture(picture);
    });
}

void frmCall::showNames()
{
    QString names;
    QString numbers;
    bool areNamed = true; // else a number stands there already, and one below would be anybody's
    for (const tagCall& call : callsTogether(phoneService::instance().calls(), m_call)) {
        names = callJoinedText(names, whoOf(call));
        numbers = callJoinedText(numbers, callReached(call));
        areNamed = areNamed && !nameOf(call).isEmpty();
    }
    m_strNumber = areNamed ? numbers : QString();
    m_ui->labName->setText(callFittingText(m_ui->labName, kSmallestName, names));
}

void frmCall::showState()
{
    showNames();
    const bool talked = m_call.eState == CALL_TALKING || m_call.nSeconds > 0;
    const bool isUpon = m_eLayout == CALL_LAYOUT_PICTURE;
    const bool isPlain = talks() && !m_call.bHeld && !m_call.bRemoteHeld && !m_call.nJoined &&
                         !m_call.bUnheard && m_call.strTarget.isEmpty();
    const QString line = lineName(m_call.nAccount);
    const QString upon = isUpon ? callJoinedText(line, callCodecsText(streams())) : QString();
    const QString forwarded = isAsked() || !m_call.bIncoming ? callForwardedText(m_call) : QString();
    m_ui->labNumber->setText(isAsked() ? callFittingText(m_ui->labNumber, kSmallestNumber, forwarded)
                                       : callFittingText(m_ui->labNumber, kSmallestNumber,
                                                         callJoinedText(m_strNumber, forwarded), upon));
    const QString state = isUpon && isPlain ? QString() : callStateText(m_call);
    m_ui->labState->setText(isAsked() ? callFittingText(m_ui->labState, kSmallestText, m_strNumber, state)
                                      : callFittingText(m_ui->labState, kSmallestText, state));
    if (isUpon)
        callLayout::putOthers(*m_ui);
    m_ui->labLine->setText(isAsked() ? m_ui->labLine->fontMetrics().elidedText(
                                           callJoinedText(line, callOwnNumber(m_call.nAccount)),
                                           Qt::ElideRight, callLayout::kLineWidth)
                                     : line);
    const bool hasDigits = !m_strDigits.isEmpty() && m_digitsShown.isActive();
    m_ui->labDuration->setText(hasDigits ? m_strDigits.right(kDigitsShown)
                               : talked  ? durationText(secondsShown())
                                         : QString());
    m_ui->wgtMarks->setStreams(m_call.eState == CALL_ENDED ? tagCallStreams() : streams());
}

void frmCall::showClock()
{
    m_ui->labClock->setText(clockText(netGetLocalTime()));
}

void frmCall::showQuestion()
{
    m_ui->btnAnswer->setText(qTranslate(HX_TR("Answer")));
    m_ui->btnDecline->setText(qTranslate(HX_TR("Decline")));
    m_ui->btnForward->setText(qTranslate(HX_TR_NOTE("Forward", "a call that rings"), "a call that rings"));
    m_ui->btnAnswer->setVisible(isAsked());
    m_ui->btnForward->setVisible(isAsked());
    m_ui->btnDecline->setVisible(isAsked());
    const bool hasStrip = !isAsked() && !callLayout::hasPicture(m_eLayout);
    const bool showsVolume = m_eLayout != CALL_LAYOUT_FULL && (hasStrip || m_bVolumeChanged);
    m_ui->labVolume->setVisible(showsVolume);
    m_ui->barVolume->setVisible(showsVolume);
}

void frmCall::showSound()
{
    m_ui->barVolume->setValue(dev_get_output_volume());
    const bool isQuiet = (talks() && m_call.bMuted) || (isAsked() && callSound::instance().isSilenced());
    m_ui->labMute->setText(isQuiet ? qTranslate("Muted") : QString());
}

void frmCall::rememberUnder(int call)
{
    QWidget* active = QApplication::activeWindow();
    if (!isVisible() || active == this || !active)
        return;
    m_under = active;
    m_nOver = call;
}

// Whoever was about to type a number goes on when a waiting call has come to nothing.
void frmCall::bringBackUnder(const tagCall& call)
{
    if (call.nId != m_nOver || call.eState == CALL_RINGING)
        return;
    m_nOver = 0;
    const QPointer<QWidget> under = std::exchange(m_under, nullptr);
    if (under && under->isVisible() && call.eState == CALL_ENDED && talks())
        screenBringUp(under);
}

// A call that begins comes up over all else; what becomes of it leaves the windows as a person has put them.
void frmCall::open(bool begins)
{
    showSoftKeys();
    showSound();
    if (isVisible() && !begins)
        return;
    screenBringUp(this);
    setFocus(Qt::OtherFocusReason);
}

void frmCall::close()
{
    m_tick.stop();
    m_end.stop();
    m_told = nullptr;
    m_names.clear();
    showPad(false);
    showDisplay();
    // Whoever hung up is still there.
    screenState::instance().restartIdle();
    hide();
}

bool frmCall::mayShowDisplay() const
{
    if (!isVisible() || m_bPad || hasPicture() || !displayClient::instance().isEnabled())
        return false;
    if (phoneService::instance().rules().deviceOf(m_call).bFullScreen)
        return false;
    const auto talk = hostModule().isDisplayTalkEnabled;
    const auto ringBack = hostModule().isDisplayRingBackEnabled;
    if (m_call.eState == CALL_TALKING)
        return !talk || talk();
    return m_call.eState == CALL_RINGING && !m_call.bIncoming && ringBack && ringBack();
}

void frmCall::showDisplay()
{
    m_bBeside = mayShowDisplay();
    if (!m_bBeside)
        m_display.hide();
    else if (isActiveWindow())
        m_bBeside = m_display.show();
    layOut();
}

// The frame leaves a window under another one. It may come, as what it was there, with a window that becomes
// active, which is told so before the frame moves.
bool frmCall::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        m_display.windowLeft();
    else if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(this, &frmCall::showDisplay, Qt::QueuedConnection);
    return QWidget::event(event);
}

// One that was agreed on and does not come leaves the place to who it is.
bool frmCall::hasPicture() const
{
    const tagCallStreams shown = streams();
    return m_call.eState != CALL_ENDED && !m_call.bHeld && !shown.strPicture.isEmpty() &&
           shown.nOtherPicture != 0;
}

// For one of those that talk together, at least.
bool frmCall::isCameraOpen() const
{
    const QList<tagCall> shown = callsTogether(phoneService::instance().calls(), m_call);
    return std::any_of(shown.begin(), shown.end(), [](const tagCall& call) { return call.options.bCamera; });
}

CALL_LAYOUT frmCall::layoutNow() const
{
    if (m_bPad)
        return CALL_LAYOUT_PAD;
    if (isAsked())
        return hasPicture() ? CALL_LAYOUT_ASKED_PICTURE : CALL_LAYOUT_ASKED;
    if (hasPicture())
        return m_bFull && talks() ? CALL_LAYOUT_FULL : CALL_LAYOUT_PICTURE;
    return m_bBeside ? CALL_LAYOUT_BESIDE : CALL_LAYOUT_WHOLE;
}

void frmCall::layOut()
{
    m_eLayout = layoutNow();
    // The last picture of another call, or of a film, is not this one's.
    const int pictured = callLayout::hasPicture(m_eLayout) ? m_call.nId : 0;
    if (pictured && pictured != m_nBehind)
        videoFrames::instance().forget();
    m_nBehind = pictured;
    callLayout::apply(*m_ui, m_eLayout);
    const bool isSeen = talks() && isCameraOpen() && streams().nOwnPicture != 0;
    m_ui->wgtCorner->setVisible(isSeen && callLayout::hasPicture(m_eLayout));
    m_ui->wgtCorner->setPictured(streams().nOwnPicture > 0);
    const QPoint surface = m_ui->wgtPicture->pos();
    if (callLayout::hasPicture(m_eLayout))
        videoFrames::instance().askForOwn(isSeen ? m_ui->wgtCorner->geometry().translated(-surface)
                                                 : QRect());
    m_pSoftKeys->setVisible(m_eLayout != CALL_LAYOUT_FULL);
    showState();
    showOthers();
    showQuestion();
    showActions();
    update();
}

void frmCall::setFull(bool full)
{
    m_bFull = full;
    layOut();
}

void frmCall::mousePressEvent(QMouseEvent* event)
{
    m_bTouched = event->button() == Qt::LeftButton;
}

void frmCall::mouseReleaseEvent(QMouseEvent* event)
{
    const bool isTouch = std::exchange(m_bTouched, false) && rect().contains(event->pos());
    if (isTouch && m_presses.takes() && (m_eLayout == CALL_LAYOUT_PICTURE || m_eLayout == CALL_LAYOUT_FULL) &&
        talks())
        setFull(!m_bFull);
}

void frmCall::tick()
{
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == m_call.nId)
            m_call = call;
    }
    showState();
    showOthers();
    showClock();
}

void frmCall::paintQuestion(QPainter& painter) const
{
    QRadialGradient sky(kLight, kLightReach);
    sky.setColorAt(0, look::colour(kSky[0]));
    sky.setColorAt(kSkyMiddle, look::colour(kSky[1]));
    sky.setColorAt(1, look::colour(kSky[2]));
    painter.fillRect(rect(), sky);
    for (const int out : {kOuterRing, kInnerRing}) {
        const QRect ring = m_ui->labPicture->geometry().adjusted(-out, -out, out, out);
        look::paintBox(painter, ring, ring.height() / 2.0, kRings);
    }
}

void frmCall::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (isAsked()) {
        paintQuestion(painter);
        return;
    }
    look::paintLeftBar(painter, rect());
    if (callLayout::hasPicture(m_eLayout))
        return;
    painter.fillRect(0, 0, width(), look::kTopBarHeight, look::colour(kStrip));
    look::paintBox(painter, m_ui->labPicture->geometry().adjusted(-4, -4, 4, 4),
                   callLayout::kPortrait.width() / 2.0 + 4, kPictureEdge);
    if (m_bBeside)
        m_display.paintMount(painter);
}

void callScreenInstall()
{
    static frmCall* screen = nullptr;
    if (screen)
        return;
    callSound::instance(); // hears of a call before the screen shows how loud it is
    screen = new frmCall;
    phoneService::instance().addCallListener([](const tagCall& call) { screen->onCall(call); });
}
