#include "host/desktop/frmCall.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/callSound.h"
#include "host/desktop/clockText.h"
#include "host/desktop/contactBook.h"
#include "host/desktop/displayClient.h"
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
constexpr QRect kLine(14, 0, 380, 40);
constexpr QRect kMute(406, 0, 270, 40);
constexpr QRect kVolume(100, 386, 190, 30);
constexpr QRect kVolumeBar(306, 386, 240, 30);
constexpr QRect kAskedLine(12, 0, 272, 40);
constexpr QRect kAskedMute(510, 0, 166, 40);
constexpr QRect kAskedVolume(290, 0, 98, 40);
constexpr QRect kAskedVolumeBar(398, 5, 100, 30);
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

const char* stateText(const tagCall& call)
{
    switch (call.eState) {
    case CALL_RINGING:
        return call.bIncoming ? HX_TR("Incoming call") : HX_TR("Calling...");
    case CALL_TALKING:
        return HX_TR("In call");
    default:
        return HX_TR("Call ended");
    }
}

QString stateOf(const tagCall& call)
{
    const bool failed = call.eState == CALL_ENDED && !call.strReason.isEmpty();
    return qTranslate(failed ? call.strReason.toUtf8().constData() : stateText(call));
}

QString joined(const QString& one, const QString& other)
{
    return one.isEmpty() || other.isEmpty() ? one + other : one + QStringLiteral(" \u00b7 ") + other;
}

// The user's own number of a line; empty when it has none.
QString numberOfLine(int line)
{
    tagAccountInfo info;
    if (line < 0 || line >= PHONE_ACCOUNT_COUNT || !phone_GetAccountInfoById(line, &info))
        return QString();
    return QString::fromUtf8(info.szUser);
}

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
    m_ui->btnAnswer->setDisc(HX_THEME("button/btn_answer_bg01.png"), HX_THEME("button/btn_answer_bg02.png"));
    m_ui->btnDecline->setDisc(HX_THEME("button/btn_decline_bg01.png"),
                              HX_THEME("button/btn_decline_bg02.png"));
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
    if (call.eState != CALL_ENDED)
        showCall(call);
    else if (!calls.isEmpty())
        showCall(calls.last());
    else
        showCall(call);
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
    if (call.nId != m_call.nId) {
        m_strDigits.clear();
        m_bVolumeChanged = false;
    }
    m_call = call;
    const tagContact contact = contactOfNumber(contactsRead(), call.strNumber);
    const QString name = call.strName.isEmpty() ? contact.strName : call.strName;
    m_ui->labName->setText(name.isEmpty() ? call.strNumber : name);
    m_strNumber = name.isEmpty() ? QString() : call.strNumber;
    showPicture(contact.strPicture);
    showState();
    showClock();
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
    m_ui->labState->setText(isAsked() ? joined(m_strNumber, stateOf(m_call)) : stateOf(m_call));
    m_ui->labLine->setText(
        isAsked() ? m_ui->labLine->fontMetrics().elidedText(joined(line, numberOfLine(m_call.nAccount)),
                                                            Qt::ElideRight, kAskedLine.width())
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
    m_ui->btnAnswer->setVisible(isAsked());
    m_ui->btnDecline->setVisible(isAsked());
    m_ui->labVolume->setVisible(!isAsked() || m_bVolumeChanged);
    m_ui->barVolume->setVisible(!isAsked() || m_bVolumeChanged);
}

void frmCall::showSound()
{
    m_ui->barVolume->setValue(dev_get_output_volume());
    const bool isQuiet = m_bMuted || (isAsked() && callSound::instance().isSilenced());
    m_ui->labMute->setText(isQuiet ? qTranslate("Muted") : QString());
}

void frmCall::showSoftKeys()
{
    m_ui->labVolume->setText(qTranslate("Volume"));
    showQuestion();
    if (isAsked()) {
        showKeysOfQuestion();
        return;
    }
    m_pSoftKeys->SetButton(0, "Mute", Translate(m_bMuted ? HX_TR("Unmute") : HX_TR("Mute")), this,
                           SLOT(on_click_Mute()));
    m_pSoftKeys->SetButton(1, "VolumeDown", Translate("Volume -"), this, SLOT(on_click_VolumeDown()));
    m_pSoftKeys->SetButton(2, "VolumeUp", Translate("Volume +"), this, SLOT(on_click_VolumeUp()));
    m_pSoftKeys->SetButton(3, "End", Translate("End"), this, SLOT(on_click_End()));
}

void frmCall::showKeysOfQuestion()
{
    m_pSoftKeys->SetButton(0, "Answer", Translate(HX_TR("Answer")), this, SLOT(on_click_Answer()));
    m_pSoftKeys->SetButton(1, "", "", nullptr, nullptr);
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
    if (m_bMuted)
        dev_set_output_mute(0);
    m_bMuted = false;
    showDisplay();
    // Whoever hung up is still there.
    screenState::instance().restartIdle();
    hide();
}

bool frmCall::mayShowDisplay() const
{
    if (!isVisible() || !displayClient::instance().isEnabled())
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
    const QRect place = m_bBeside ? kBeside : kWhole;
    m_ui->labName->move(0, isAsked() ? kAskedNameTop : kNameTop);
    m_ui->labState->move(0, isAsked() ? kAskedStateTop : kStateTop);
    QWidget* const lines[] = {m_ui->labName, m_ui->labNumber, m_ui->labState, m_ui->labDuration};
    for (QWidget* line : lines)
        line->setGeometry(place.left(), line->y(), place.width(), line->height());
    m_ui->labPicture->move(place.left() + (place.width() - kPicture.width()) / 2,
                           isAsked() ? kAskedPictureTop : kPictureTop);
    setColour(m_ui->labState, isAsked() ? kPale : look::kTextOnBar);
    layOutStrip();
    showQuestion();
    update();
}

void frmCall::layOutStrip()
{
    m_ui->labLine->setGeometry(isAsked() ? kAskedLine : kLine);
    m_ui->labMute->setGeometry(isAsked() ? kAskedMute : kMute);
    m_ui->labVolume->setGeometry(isAsked() ? kAskedVolume : kVolume);
    m_ui->barVolume->setGeometry(isAsked() ? kAskedVolumeBar : kVolumeBar);
}

void frmCall::tick()
{
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == m_call.nId)
            m_call = call;
    }
    showState();
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
    default:
        if (qIsOkKey(event->key()))
            on_click_Answer();
        else if (!sendDigit(event->text()))
            QWidget::keyPressEvent(event);
    }
}

bool frmCall::sendDigit(const QString& text)
{
    static const QString digits("0123456789*#");
    if (text.size() != 1 || !digits.contains(text))
        return false;
    if (m_call.eState == CALL_TALKING) {
        phone_PlayDTMF(text[0].toLatin1());
        m_strDigits += text;
        showState();
    }
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
    if (isAsked()) {
        callSound::instance().silence();
    } else {
        m_bMuted = !m_bMuted;
        dev_set_output_mute(m_bMuted);
    }
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

// Of a call that has ended already, the screen goes at once.
void frmCall::on_click_End()
{
    if (!phoneService::instance().hangUp(m_call.nId))
        close();
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
