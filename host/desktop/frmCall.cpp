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
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace {

constexpr int kVolumeStep = 10;
constexpr int kDigitsShown = 24;
constexpr int kKeepWeight = -1;
constexpr int kFailedMs = 3000;
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
    m_tick.setInterval(TICK_MS);
    m_end.setInterval(END_MS);
    m_end.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, &frmCall::tick);
    connect(&m_end, &QTimer::timeout, this, &frmCall::close);
    connect(&displayClient::instance(), &displayClient::enabledChanged, this, &frmCall::showDisplay);
    qFollowLanguage(this, [this] {
        showState();
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
    if (failedBeside)
        tellForAMoment(callJoinedText(call.strNumber, callStateText(call)));
    else if (call.eState == CALL_TALKING && !call.strReason.isEmpty())
        tellForAMoment(qTranslate(call.strReason.toUtf8().constData()));
    showCall(calls.isEmpty() ? call : callMostUrgent(calls, m_call.nId));
    if (calls.isEmpty()) {
        m_tick.stop();
        m_end.start();
    } else {
        m_tick.start();
        m_end.stop();
    }
    open(call.nId > m_nLastId);
    m_nLastId = qMax(m_nLastId, call.nId);
    showDisplay();
}

void frmCall::tellForAMoment(const QString& text)
{
    m_strFailed = text;
    m_bFull = false;
    QTimer::singleShot(kFailedMs, this, [this] {
        m_strFailed.clear();
        showOthers();
    });
}

void frmCall::showCall(const tagCall& call)
{
    const bool isSame = call.nId == m_call.nId;
    m_call = call;
    m_strDigits = call.strTones;
    if (!talks())
        showPad(false);
    if (!isSame) {
        m_bVolumeChanged = m_bFull = false;
        m_actions.chooseNone();
        showPicture(call);
        showClock();
    }
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
    if (!m_names.contains(call.nId))
        m_names[call.nId] = callNameOf(call, contactOfNumber(contactsRead(), call.strNumber));
    return m_names[call.nId];
}

QString frmCall::whoOf(const tagCall& call)
{
    const QString name = nameOf(call);
    return name.isEmpty() ? call.strNumber : name;
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
    if (!m_strFailed.isEmpty())
        lines = isRow ? QStringList{m_strFailed} : callLinesOf(label, m_strFailed);
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
    const QString path = contactOfNumber(contactsRead(), call.strNumber).strPicture;
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
    m_strNumber.clear();
    for (const tagCall& call : callsTogether(phoneService::instance().calls(), m_call)) {
        names = callJoinedText(names, whoOf(call));
        if (!nameOf(call).isEmpty())
            m_strNumber = callJoinedText(m_strNumber, call.strNumber);
    }
    m_ui->labName->setText(callFittingText(m_ui->labName, kSmallestName, names));
}

void frmCall::showState()
{
    showNames();
    const bool talked = m_call.eState == CALL_TALKING || m_call.nSeconds > 0;
    const bool isUpon = m_eLayout == CALL_LAYOUT_PICTURE;
    const bool isPlain = talks() && !m_call.bHeld && !m_call.bRemoteHeld && !m_call.nJoined;
    const QString line = lineName(m_call.nAccount);
    const QString upon = isUpon ? callJoinedText(line, callCodecsText(streams())) : QString();
    m_ui->labNumber->setText(
        isAsked() ? callFittingText(m_ui->labNumber, kSmallestNumber, callForwardedText(m_call))
                  : callFittingText(m_ui->labNumber, kSmallestNumber, m_strNumber, upon));
    m_ui->labState->setText(isUpon && isPlain ? QString()
                                              : callFittingText(m_ui->labState, kSmallestText,
                                                                isAsked() ? m_strNumber : QString(),
                                                                callStateText(m_call)));
    if (isUpon)
        callLayout::putOthers(*m_ui);
    m_ui->labLine->setText(isAsked() ? m_ui->labLine->fontMetrics().elidedText(
                                           callJoinedText(line, callOwnNumber(m_call.nAccount)),
                                           Qt::ElideRight, callLayout::kLineWidth)
                                     : line);
    const QString duration = talked ? durationText(m_call.nSeconds) : QString();
    m_ui->labDuration->setText(m_strDigits.isEmpty() ? duration : m_strDigits.right(kDigitsShown));
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

void frmCall::showSoftKeys()
{
    m_ui->labVolume->setText(qTranslate("Volume"));
    showQuestion();
    showActions();
    if (isAsked()) {
        showKeysOfQuestion();
        return;
    }
    if (talks()) {
        m_pSoftKeys->SetButton(0, "Mute", Translate(m_call.bMuted ? HX_TR("Unmute") : HX_TR("Mute")), this,
                               SLOT(on_click_Mute()));
        m_pSoftKeys->SetButton(1, "Hold", Translate(m_call.bHeld ? HX_TR("Resume") : HX_TR("Hold")), this,
                               SLOT(on_click_Hold()));
        m_pSoftKeys->SetButton(2, "Transfer", Translate(HX_TR("Transfer")), this, SLOT(on_click_Transfer()));
    } else {
        m_pSoftKeys->SetButton(0, "", "", nullptr, nullptr);
        m_pSoftKeys->SetButton(1, "VolumeDown", Translate("Volume -"), this, SLOT(on_click_VolumeDown()));
        m_pSoftKeys->SetButton(2, "VolumeUp", Translate("Volume +"), this, SLOT(on_click_VolumeUp()));
    }
    if (talks() && phoneService::instance().rules().hasDoor(m_call))
        m_pSoftKeys->SetButton(2, "OpenDoor", Translate(HX_TR("Open door")), this, SLOT(on_click_OpenDoor()));
    const bool isOver = m_call.eState == CALL_ENDED;
    m_pSoftKeys->SetButton(3, "End", Translate(isOver ? "Back" : "End"), this, SLOT(on_click_End()));
}

void frmCall::showKeysOfQuestion()
{
    m_pSoftKeys->SetButton(0, "Answer", Translate(HX_TR("Answer")), this, SLOT(on_click_Answer()));
    m_pSoftKeys->SetButton(
        1, "Forward",
        qTranslate(HX_TR_NOTE("Forward", "a call that rings"), "a call that rings").toUtf8().constData(),
        this, SLOT(on_click_Forward()));
    if (callSound::instance().isSilenced())
        m_pSoftKeys->SetButton(2, "", "", nullptr, nullptr);
    else
        m_pSoftKeys->SetButton(2, "Mute", Translate(HX_TR("Mute")), this, SLOT(on_click_Mute()));
    m_pSoftKeys->SetButton(3, "Decline", Translate(HX_TR("Decline")), this, SLOT(on_click_End()));
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
    m_strFailed.clear();
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
    const bool isSeen = talks() && m_call.options.bCamera && streams().nOwnPicture != 0;
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

// The rest is done as always.
bool frmCall::leavesFull(int key) const
{
    const int keys[] = {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Left, Qt::Key_Right,
                        Qt::Key_F1,     Qt::Key_F2,   Qt::Key_F3,   Qt::Key_F4};
    return m_eLayout == CALL_LAYOUT_FULL &&
           (qIsOkKey(key) || std::find(std::begin(keys), std::end(keys), key) != std::end(keys));
}

void frmCall::mousePressEvent(QMouseEvent* event)
{
    m_bTouched = event->button() == Qt::LeftButton;
}

void frmCall::mouseReleaseEvent(QMouseEvent* event)
{
    const bool isTouch = std::exchange(m_bTouched, false) && rect().contains(event->pos());
    if (isTouch && (m_eLayout == CALL_LAYOUT_PICTURE || m_eLayout == CALL_LAYOUT_FULL) && talks())
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

void frmCall::keyPressEvent(QKeyEvent* event)
{
    if (leavesFull(event->key())) {
        setFull(false);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Back:
    case Qt::Key_Hangup:
        on_click_End();
        break;
    case Qt::Key_Up:
    case Qt::Key_VolumeUp:
        on_click_VolumeUp();
        break;
    case Qt::Key_Down:
    case Qt::Key_VolumeDown:
        on_click_VolumeDown();
        break;
    case Qt::Key_VolumeMute:
        on_click_Mute();
        break;
    case Qt::Key_Call:
        on_click_Answer();
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        m_actions.choose(event->key() == Qt::Key_Right ? 1 : -1);
        break;
    default:
        if (qIsOkKey(event->key()) && isAsked())
            on_click_Answer();
        else if (qIsOkKey(event->key()))
            pressOk();
        else if (!sendDigit(event->text()))
            QWidget::keyPressEvent(event);
    }
}

void frmCall::pressOk()
{
    if (!m_actions.press() && m_eLayout == CALL_LAYOUT_PICTURE && talks())
        setFull(true);
}

bool frmCall::sendDigit(const QString& text)
{
    static const QString digits("0123456789*#");
    if (text.size() != 1 || !digits.contains(text))
        return false;
    if (talks() && phoneService::instance().rules().sendTones(m_call.nId, text))
        phone_PlayDTMF(text[0].toLatin1());
    return true;
}

void frmCall::changeVolume(int step)
{
    callSound::instance().changeVolume(step);
    m_bVolumeChanged = true;
    showQuestion();
    showSound();
}

void frmCall::on_click_Mute()
{
    if (isAsked())
        callSound::instance().silence();
    else
        phoneService::instance().rules().setMuted(m_call.nId, !m_call.bMuted);
    showSound();
    showSoftKeys();
}

void frmCall::on_click_VolumeDown()
{
    changeVolume(-kVolumeStep);
}

void frmCall::on_click_VolumeUp()
{
    changeVolume(kVolumeStep);
}

// Of a call that has ended already, the screen goes at once. Who ends a conference does not go on with one of
// the two.
void frmCall::on_click_End()
{
    const int other = m_call.nJoined;
    if (!phoneService::instance().hangUp(m_call.nId))
        close();
    else if (other)
        phoneService::instance().hangUp(other);
}

// Which digits do it is not shown.
void frmCall::on_click_OpenDoor()
{
    phoneService::instance().rules().openDoor(m_call.nId);
}

void frmCall::on_click_Answer()
{
    if (isAsked())
        phoneService::instance().answer(m_call.nId);
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
