// What the keys of the call screen do, and its soft keys.
#include "host/desktop/callAction.h"
#include "host/desktop/callChoice.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/callSound.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/ui.h"
#include "ui_frmCall.h"
#include <QApplication>
#include <QKeyEvent>
#include <algorithm>

namespace {

constexpr int kVolumeStep = 10;

} // namespace

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

// The rest is done as always.
bool frmCall::leavesFull(int key) const
{
    const int keys[] = {Qt::Key_Escape, Qt::Key_Back, Qt::Key_Left, Qt::Key_Right,
                        Qt::Key_F1,     Qt::Key_F2,   Qt::Key_F3,   Qt::Key_F4};
    return m_eLayout == CALL_LAYOUT_FULL &&
           (qIsOkKey(key) || std::find(std::begin(keys), std::end(keys), key) != std::end(keys));
}

void frmCall::keyPressEvent(QKeyEvent* event)
{
    if (leavesFull(event->key())) {
        setFull(false);
        return;
    }
    if (pressCallKey(event->key()))
        return;
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Back:
        goBack();
        break;
    case Qt::Key_Up:
        on_click_VolumeUp();
        break;
    case Qt::Key_Down:
        on_click_VolumeDown();
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

// The pad came last, and goes first.
void frmCall::goBack()
{
    if (m_bPad)
        showPad(false);
    else
        on_click_End();
}

bool frmCall::pressCallKey(int key)
{
    switch (key) {
    case Qt::Key_Hangup:
        on_click_End();
        return true;
    case Qt::Key_VolumeUp:
        on_click_VolumeUp();
        return true;
    case Qt::Key_VolumeDown:
        on_click_VolumeDown();
        return true;
    case Qt::Key_VolumeMute:
        on_click_Mute();
        return true;
    default:
        return false;
    }
}

// Whoever looks at a page while he talks hangs up, and makes it louder, from there. The dial screen has its
// own meaning of the key that hangs up: no call of that number.
bool frmCall::eventFilter(QObject* window, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !window->isWindowType() || !isVisible() || isActiveWindow() ||
        isOver())
        return QWidget::eventFilter(window, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool isDialling = key == Qt::Key_Hangup && qobject_cast<frmDial*>(QApplication::activeWindow());
    return (!isDialling && pressCallKey(key)) || QWidget::eventFilter(window, event);
}

void frmCall::pressOk()
{
    if (!m_actions.press() && m_eLayout == CALL_LAYOUT_PICTURE && talks() && m_presses.takes())
        setFull(true);
}

bool frmCall::sendDigit(const QString& text)
{
    static const QString digits("0123456789*#");
    if (text.size() != 1 || !digits.contains(text))
        return false;
    if (isOver()) {
        close();
        dialScreenOpen(text); // the next call begins
        return true;
    }
    if (talks() && phoneService::instance().rules().sendTones(m_call.nId, text))
        phone_PlayDTMF(text[0].toLatin1());
    return true;
}

void frmCall::changeVolume(int step)
{
    callSound::instance().changeVolume(step);
    m_bVolumeChanged = true;
    m_volumeShown.start();
    showQuestion();
    showSound();
}

void frmCall::on_click_Mute()
{
    if (!m_presses.takes())
        return;
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
    if (!m_presses.takes(true))
        return;
    const int other = m_call.nJoined;
    if (!phoneService::instance().hangUp(m_call.nId))
        close();
    else if (other)
        phoneService::instance().hangUp(other);
}

// Which digits do it is not shown.
void frmCall::on_click_OpenDoor()
{
    if (!m_presses.takes())
        return;
    phoneService::instance().rules().openDoor(m_call.nId);
}

void frmCall::on_click_Answer()
{
    if (!m_presses.takes())
        return;
    if (isAsked() && phoneService::instance().answer(m_call.nId))
        m_presses.changed(pressGuard::ANSWERED);
}
