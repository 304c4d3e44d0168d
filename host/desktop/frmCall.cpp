#include "host/desktop/frmCall.h"
#include "host/desktop/callAction.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/callSound.h"
#include "host/desktop/callTexts.h"
#include "host/desktop/clockText.h"
#include "host/desktop/contactBook.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmDial.h"
#include "host/desktop/lineName.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
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

namespace {

constexpr int kVolumeStep = 10;
constexpr int kDigitsShown = 24;
constexpr int kKeepWeight = -1;
constexpr int kNameSize = 36;
constexpr int kDurationSize = 26;
constexpr int kStateSize = 20;
constexpr QSize kPicture(126, 126);
// The call alone, and beside the signage frame.
constexpr QRect kWhole(40, 40, 720, 336);
constexpr QRect kBeside(14, 40, 276, 336);
constexpr QRect kDisplay(304, 66, 480, 288);
// What asks is larger, and has buttons below.
constexpr int kPictureTop = 56;
constexpr int kNameTop = 196;
constexpr int kStateTop = 290;
constexpr int kAskedPictureTop = 64;
constexpr int kAskedNameTop = 212;
constexpr int kAskedStateTop = 264;
constexpr int kLineWidth = 272;
// In a call, when its touch pad is open; the tones' keys beside it.
constexpr QRect kBesidePad(14, 40, 406, 312);
// The other calls: beside the picture, or above the signage frame.
constexpr QRect kOthers(14, 46, 290, 72);
constexpr QRect kOthersBesidePad(14, 46, 130, 72);
constexpr QRect kOthersAbove(304, 42, 480, 22);
constexpr QSize kAction(104, 80);
constexpr int kActionTop = 360;
constexpr int kActionStep = 110;
constexpr int kFailedMs = 3000;
constexpr int kInnerRing = 10; // from the picture's edge
constexpr int kOuterRing = 24;
constexpr QRgb kRings = 0x1effffff;
constexpr QRgb kPale = 0xffd3e0ee;
constexpr QPointF kLight(240, 0); // of the page behind a question
constexpr qreal kLightReach = 860;
constexpr QRgb kSky[] = {0xff3f7fb8, 0xff1d4b79, 0xff112c4a};
constexpr qreal kSkyMiddle = 0.45;
constexpr QRgb kStrip = 0x33000000;
constexpr QRgb kPictureEdge = 0x40ffffff;
const char* const kNobody = "/phone/resource/contact-image/icon_contact.png";

void setColour(QLabel* label, QRgb colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, look::colour(colour));
    label->setPalette(palette);
}

QPixmap pictureOfNobody()
{
    return GetImageManager()->GetImageByScale(kNobody, kPicture.width(), kPicture.height());
}

} // namespace

frmCall::frmCall()
    : QWidget(nullptr, Qt::FramelessWindowHint), m_ui(new Ui_frmCall),
      m_display(NDECK_WINDOW_TALK, this, kDisplay)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setGeometry(0, 0, look::kScreenWidth, look::kScreenHeight);
    setFontStyle(kNameSize, kKeepWeight, m_ui->labName, true);
    setFontStyle(kStateSize, kKeepWeight, m_ui->labNumber, true);
    setFontStyle(kStateSize, kKeepWeight, m_ui->labState, true);
    setFontStyle(kDurationSize, kKeepWeight, m_ui->labDuration, true);
    setFontStyle(look::kSmallSize, kKeepWeight, m_ui->labLine, true);
    setFontStyle(look::kSmallSize, kKeepWeight, m_ui->labMute, true);
    setFontStyle(look::kSmallSize, kKeepWeight, m_ui->labVolume, true);
    setFontStyle(look::kSmallSize, kKeepWeight, m_ui->labClock, true);
    setFontStyle(look::kSmallSize, kKeepWeight, m_ui->labOthers, true);
    setColour(m_ui->labOthers, look::kTextOnBar);
    m_ui->wgtPad->hide();
    connect(m_ui->wgtPad, &dialPad::typed, this, [this](QChar sign) { sendDigit(sign); });
    makeActions();
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
    if (failedBeside) {
        m_strFailed = callJoinedText(call.strNumber, callStateText(call));
        QTimer::singleShot(kFailedMs, this, [this] {
            m_strFailed.clear();
            showOthers();
        });
    }
    showCall(calls.isEmpty() ? call : mostUrgent(calls));
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

void frmCall::showCall(const tagCall& call)
{
    const bool isSame = call.nId == m_call.nId;
    m_call = call;
    m_strDigits = call.strTones;
    if (!talks())
        showPad(false);
    showOthers();
    if (isSame) {
        showState();
        return;
    }
    m_bVolumeChanged = false;
    m_nChosen = -1;
    const tagContact contact = contactOfNumber(contactsRead(), call.strNumber);
    const QString name = callNameOf(call, contact);
    m_ui->labName->setText(name.isEmpty() ? call.strNumber : name);
    m_strNumber = name.isEmpty() ? QString() : call.strNumber;
    showPicture(contact.strPicture);
    showState();
    showClock();
}

// A call that asks, then one that talks or goes out, the newest of these; then one that is held. The one that
// is shown stays before another like it.
tagCall frmCall::mostUrgent(const QList<tagCall>& calls) const
{
    enum { HELD = 1, ACTIVE, ASKS };
    tagCall best;
    int highest = 0;
    for (const tagCall& call : calls) {
        const bool asks = call.bIncoming && call.eState == CALL_RINGING;
        const int rank = asks ? ASKS : call.bHeld ? HELD : ACTIVE;
        if (rank > highest || (rank == highest && (rank == ACTIVE || call.nId == m_call.nId)))
            best = call;
        highest = qMax(highest, rank);
    }
    return best;
}

// The next one that could be talked to instead; none when its id is 0.
tagCall frmCall::otherCall() const
{
    tagCall first;
    bool isBehind = false;
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == m_call.nId)
            isBehind = true;
        else if (call.eState == CALL_TALKING && isBehind)
            return call;
        else if (call.eState == CALL_TALKING && !first.nId)
            first = call;
    }
    return first;
}

// A line for each call beside the one that is shown.
void frmCall::showOthers()
{
    QStringList lines;
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == m_call.nId)
            continue;
        if (!m_names.contains(call.nId))
            m_names[call.nId] = callWhoText(call);
        lines.append(
            m_ui->labOthers->fontMetrics().elidedText(callJoinedText(m_names[call.nId], callStateText(call)),
                                                      Qt::ElideRight, m_ui->labOthers->width()));
    }
    if (!m_strFailed.isEmpty())
        lines.append(
            m_ui->labOthers->fontMetrics().elidedText(m_strFailed, Qt::ElideRight, m_ui->labOthers->width()));
    m_ui->labOthers->setText(lines.join(m_bBeside ? QStringLiteral("   ") : QStringLiteral("\n")));
}

void frmCall::makeActions()
{
    struct tagAction
    {
        const char* name;
        const char* glyph;
        void (frmCall::*slot)();
    };
    const tagAction made[ACTION_COUNT] = {
        {"actMute", HX_THEME("icon/talk_mute.png"), &frmCall::on_click_Mute},
        {"actHold", HX_THEME("icon/talk_hold.png"), &frmCall::on_click_Hold},
        {"actKeys", HX_THEME("icon/talk_keys.png"), &frmCall::on_click_Keys},
        {"actTransfer", HX_THEME("icon/talk_transfer.png"), &frmCall::on_click_Transfer},
        {"actAdd", HX_THEME("icon/talk_add.png"), &frmCall::on_click_AddCall},
        {"actSwap", HX_THEME("icon/talk_swap.png"), &frmCall::on_click_Swap}};
    for (int i = 0; i < ACTION_COUNT; ++i) {
        m_actions[i] = new callAction(this);
        m_actions[i]->setObjectName(made[i].name);
        m_actions[i]->setGlyph(made[i].glyph);
        m_actions[i]->setFixedSize(kAction);
        connect(m_actions[i], &callAction::clicked, this, made[i].slot);
    }
}

bool frmCall::isAvailable(ACTION action) const
{
    return talks() && (action != ACTION_SWAP || otherCall().nId != 0);
}

void frmCall::showActions()
{
    const QString words[ACTION_COUNT] = {
        qTranslate(m_call.bMuted ? HX_TR("Unmute") : HX_TR("Mute")),
        qTranslate(m_call.bHeld ? HX_TR("Resume") : HX_TR("Hold")),
        qTranslate(HX_TR("Keys")),
        qTranslate(HX_TR("Transfer")),
        qTranslate(HX_TR("Add call")),
        qTranslate(HX_TR("Swap")),
    };
    const bool on[ACTION_COUNT] = {m_call.bMuted, m_call.bHeld, m_bPad};
    for (int i = 0; i < ACTION_COUNT; ++i) {
        m_actions[i]->setText(words[i]);
        m_actions[i]->setOn(on[i]);
        m_actions[i]->setVisible(isAvailable(ACTION(i)));
        m_actions[i]->setChosen(i == m_nChosen);
    }
    layOutActions();
}

// About the middle, whichever there are.
void frmCall::layOutActions()
{
    int count = 0;
    for (int i = 0; i < ACTION_COUNT; ++i)
        count += isAvailable(ACTION(i));
    int x = (width() - count * kActionStep) / 2 + (kActionStep - kAction.width()) / 2;
    for (int i = 0; i < ACTION_COUNT; ++i) {
        if (!isAvailable(ACTION(i)))
            continue;
        m_actions[i]->move(x, kActionTop);
        x += kActionStep;
    }
}

// To the next one that there is, and round.
void frmCall::chooseAction(int step)
{
    if (!talks())
        return;
    int at = m_nChosen < 0 && step < 0 ? int(ACTION_COUNT) : m_nChosen;
    do {
        at = (at + step + ACTION_COUNT) % ACTION_COUNT;
    } while (!isAvailable(ACTION(at)));
    m_nChosen = at;
    showActions();
}

bool frmCall::pressChosen()
{
    const bool can = m_nChosen >= 0 && isAvailable(ACTION(m_nChosen));
    if (can)
        m_actions[m_nChosen]->click();
    return can;
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

// One that takes a moment comes into the place of nobody's.
void frmCall::showPicture(const QString& path)
{
    pictureCancel(m_nPicture);
    m_nPicture = 0;
    tagPictureWish wish;
    wish.strPath = fromQString(path);
    wish.nWidth = kPicture.width();
    wish.nHeight = kPicture.height();
    wish.eFit = PICTURE_FIT_COVER;
    const auto take = [this](PICTURE_RESULT, const QPixmap& picture) {
        m_ui->labPicture->setPicture(picture.isNull() ? pictureOfNobody() : picture);
    };
    take(PICTURE_MISSING, QPixmap());
    if (!path.isEmpty())
        m_nPicture = pictureTell(wish, this, take);
}

void frmCall::showState()
{
    const bool talked = m_call.eState == CALL_TALKING || m_call.nSeconds > 0;
    const QString line = lineName(m_call.nAccount);
    m_ui->labNumber->setText(isAsked() ? QString() : m_strNumber);
    m_ui->labState->setText(isAsked() ? callJoinedText(m_strNumber, callStateText(m_call))
                                      : callStateText(m_call));
    m_ui->labLine->setText(
        isAsked() ? m_ui->labLine->fontMetrics().elidedText(
                        callJoinedText(line, callOwnNumber(m_call.nAccount)), Qt::ElideRight, kLineWidth)
                  : line);
    const QString duration = talked ? durationText(m_call.nSeconds) : QString();
    m_ui->labDuration->setText(m_strDigits.isEmpty() ? duration : m_strDigits.right(kDigitsShown));
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
    m_ui->labVolume->setVisible(!isAsked() || m_bVolumeChanged);
    m_ui->barVolume->setVisible(!isAsked() || m_bVolumeChanged);
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
    if (!isVisible() || m_bPad || !displayClient::instance().isEnabled())
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

void frmCall::layOut()
{
    const QRect place = m_bPad ? kBesidePad : m_bBeside ? kBeside : kWhole;
    m_ui->labName->move(0, isAsked() ? kAskedNameTop : kNameTop);
    m_ui->labState->move(0, isAsked() ? kAskedStateTop : kStateTop);
    QWidget* const lines[] = {m_ui->labName, m_ui->labNumber, m_ui->labState, m_ui->labDuration};
    for (QWidget* line : lines)
        line->setGeometry(place.left(), line->y(), place.width(), line->height());
    m_ui->labPicture->move(place.left() + (place.width() - kPicture.width()) / 2,
                           isAsked() ? kAskedPictureTop : kPictureTop);
    setColour(m_ui->labState, isAsked() ? kPale : look::kTextOnBar);
    m_ui->labOthers->setGeometry(m_bPad ? kOthersBesidePad : m_bBeside ? kOthersAbove : kOthers);
    showOthers();
    showQuestion();
    update();
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
    painter.fillRect(0, 0, width(), look::kTopBarHeight, look::colour(kStrip));
    look::paintBox(painter, m_ui->labPicture->geometry().adjusted(-4, -4, 4, 4), kPicture.width() / 2.0 + 4,
                   kPictureEdge);
    if (m_bBeside)
        m_display.paintMount(painter);
}

void frmCall::keyPressEvent(QKeyEvent* event)
{
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
        chooseAction(event->key() == Qt::Key_Right ? 1 : -1);
        break;
    default:
        if (qIsOkKey(event->key()) && isAsked())
            on_click_Answer();
        else if (qIsOkKey(event->key()))
            pressChosen();
        else if (!sendDigit(event->text()))
            QWidget::keyPressEvent(event);
    }
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

void frmCall::on_click_Hold()
{
    phoneService::instance().rules().setHeld(m_call.nId, !m_call.bHeld);
}

void frmCall::on_click_Forward()
{
    if (isAsked())
        dialScreenOpenFor(DIAL_FORWARD, m_call.nId);
}

void frmCall::on_click_Transfer()
{
    if (talks())
        dialScreenOpenFor(DIAL_TRANSFER, m_call.nId);
}

void frmCall::on_click_Keys()
{
    showPad(!m_bPad);
}

void frmCall::on_click_AddCall()
{
    dialScreenOpen();
}

// Whoever is taken back puts the others on hold, and is shown then.
void frmCall::on_click_Swap()
{
    phoneService::instance().rules().setHeld(otherCall().nId, false);
}

void frmCall::on_click_VolumeDown()
{
    changeVolume(-kVolumeStep);
}

void frmCall::on_click_VolumeUp()
{
    changeVolume(kVolumeStep);
}

// Of a call that has ended already, the screen goes at once.
void frmCall::on_click_End()
{
    if (!phoneService::instance().hangUp(m_call.nId))
        close();
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
