#include "host/look/look.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/bars.h"
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QShortcut>

namespace {
constexpr int kLabelMargin = 6;
}

qSoftButton::qSoftButton(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::NoFocus);
}

void qSoftButton::setTitle(const QString& title)
{
    if (m_strTitle == title)
        return;
    m_strTitle = title;
    update();
}

QString qSoftButton::title() const
{
    return m_strTitle;
}

QString qSoftButton::name() const
{
    return m_strName;
}

bool qSoftButton::isPressed() const
{
    return m_bPressed;
}

// A key without a label is not there for the user.
void qSoftButton::press()
{
    if (!m_strTitle.isEmpty() && isEnabled() && isVisible())
        emit clicked();
}

void qSoftButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    look::paintSoftKeys(painter, rect());
    if (m_bPressed)
        painter.fillRect(rect(), look::colour(look::kSoftKeyPressed));
    // The line between two keys; the first one is the left key's.
    const int line = x() == 0 ? width() - 1 : 0;
    if (x() == 0 || x() > width())
        painter.fillRect(line, 0, 1, height(), look::colour(look::kSoftKeyGap));
    painter.setPen(look::colour(look::kTextOnBar));
    look::paintFitted(painter, rect().adjusted(kLabelMargin, 0, -kLabelMargin, 0), Qt::AlignCenter,
                      m_strTitle, look::font(look::kTextSize, true));
}

void qSoftButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || m_strTitle.isEmpty())
        return;
    m_bPressed = true;
    update();
}

void qSoftButton::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_bPressed || rect().contains(event->position().toPoint()))
        return;
    m_bPressed = false;
    update();
}

void qSoftButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_bPressed)
        return;
    m_bPressed = false;
    update();
    press();
}

qSoftKeyBar::qSoftKeyBar(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        qSoftButton* button = new qSoftButton(this);
        m_aButtons[i] = button;
        QShortcut* key = new QShortcut(QKeySequence(Qt::Key_F1 + i), this);
        key->setAutoRepeat(false);
        connect(key, &QShortcut::activated, button, &qSoftButton::press);
    }
    resize(look::kScreenWidth, look::kSoftKeyHeight);
}

void qSoftKeyBar::SetButton(int index, const char* name, const char* label, QObject* receiver,
                            const char* slot)
{
    qSoftButton* button = GetButton(index);
    if (!button)
        return;
    button->disconnect(SIGNAL(clicked()));
    button->m_strName = QString::fromUtf8(name);
    button->setObjectName(button->m_strName);
    button->setTitle(QString::fromUtf8(label));
    if (receiver && slot)
        connect(button, SIGNAL(clicked()), receiver, slot);
}

void qSoftKeyBar::SetButtonTitle(int index, const QString& title)
{
    if (qSoftButton* button = GetButton(index))
        button->setTitle(title);
}

QString qSoftKeyBar::GetButtonTitle(int index) const
{
    const qSoftButton* button = GetButton(index);
    return button ? button->title() : QString();
}

qSoftButton* qSoftKeyBar::GetButton(int index) const
{
    return index >= 0 && index < SOFT_KEY_COUNT ? m_aButtons[index] : nullptr;
}

int qSoftKeyBar::FindButton(const char* name) const
{
    const QString wanted = QString::fromUtf8(name);
    for (int i = 0; i < SOFT_KEY_COUNT && !wanted.isEmpty(); ++i) {
        if (m_aButtons[i]->name() == wanted)
            return i;
    }
    return -1;
}

void qSoftKeyBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    look::paintSoftKeys(painter, rect());
}

void qSoftKeyBar::resizeEvent(QResizeEvent*)
{
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        const int left = width() * i / SOFT_KEY_COUNT;
        m_aButtons[i]->setGeometry(left, 0, width() * (i + 1) / SOFT_KEY_COUNT - left, height());
    }
}

qSoftKeyBar* qReplaceSoftKeyBar(QWidget* placeholder)
{
    return replacePlaceholder<qSoftKeyBar>(placeholder);
}
