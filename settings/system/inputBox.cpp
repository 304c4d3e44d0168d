#include "settings/system/inputBox.h"
#include "frame/pageTexts.h"
#include "support/host/box.h"
#include "support/host/button.h"
#include "support/host/image.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

namespace {

const QRect kBox(190, 140, 420, 200);
constexpr int kTextSize = 18;
constexpr int kSemiBold = 63;

#define BUTTON_PICTURES(name)                                                                                \
    HX_THEME("button/" name "_bg01.png"), HX_THEME("button/" name "_bg02.png"),                              \
        HX_THEME("button/" name "_bg03.png")

} // namespace

InputBox::InputBox(QWidget* parent) : QDialog(parent, Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setModal(true);
}

void InputBox::BuildBox(const tagInputBox& parts)
{
    m_parts = parts;
    setFixedSize(size());
    translateTexts(this);
    QPalette onBar = parts.pTitle->palette();
    onBar.setColor(QPalette::WindowText, Qt::white);
    parts.pTitle->setPalette(onBar);
    setFontStyle(kTextSize, kSemiBold, parts.pTitle, false);
    dressButtons();
    showMethod();
    renewBackground();
    qFollowLanguage(this, [this] { translateTexts(this); });
}

void InputBox::dressButtons()
{
    SetButton3StatusImage(m_parts.pIme, BUTTON_PICTURES("btn_ime"));
    SetButton3StatusImage(m_parts.pDelete, BUTTON_PICTURES("btn_delete"));
    SetButton3StatusImage(m_parts.pOk, BUTTON_PICTURES("btn_yes"));
    SetButton3StatusImage(m_parts.pCancel, BUTTON_PICTURES("btn_cancel"));
    QPalette white = m_parts.pIme->palette();
    white.setColor(QPalette::ButtonText, Qt::white);
    m_parts.pIme->setPalette(white);
    // They act upon the edit, which keeps the focus.
    m_parts.pIme->setFocusPolicy(Qt::NoFocus);
    m_parts.pDelete->setFocusPolicy(Qt::NoFocus);
}

void InputBox::StepMethod()
{
    qShift2NextIME(m_parts.pEdit);
    showMethod();
}

void InputBox::showMethod()
{
    m_parts.pIme->setText(qGetCurrentIME(m_parts.pEdit));
}

void InputBox::renewBackground()
{
    m_background = qBoxBackdrop(this, kBox);
    QPainter painter(&m_background);
    painter.drawPixmap(kBox.topLeft(), GetImageManager()->GetImage(HX_THEME("msgbox/mb_bg_input.png")));
    update();
}

void InputBox::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    activateWindow();
    m_parts.pEdit->setFocus(Qt::OtherFocusReason);
}

void InputBox::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.drawPixmap(event->rect(), m_background, event->rect());
}

// What it was asked stays in its language; what lies below has its new texts once the event loop is reached.
void InputBox::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        QMetaObject::invokeMethod(this, &InputBox::renewBackground, Qt::QueuedConnection);
}

// OK anywhere but on a button confirms; the soft keys do what they do on a page.
void InputBox::keyPressEvent(QKeyEvent* event)
{
    if (qIsOkKey(event->key())) {
        if (!event->isAutoRepeat())
            m_parts.pOk->click();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        focusNextPrevChild(false);
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        focusNextPrevChild(true);
        break;
    case Qt::Key_F2:
        m_parts.pIme->click();
        break;
    case Qt::Key_F3:
        m_parts.pDelete->click();
        break;
    case Qt::Key_Escape:
    case Qt::Key_Back:
    case Qt::Key_F4:
        reject();
        break;
    default:
        break;
    }
}
