#include "host/widgets/boxDialog.h"
#include "host/look/buttonLook.h"
#include "host/look/look.h"
#include "host/screen/windowStack.h"
#include "host/widgets/fittedLabel.h"
#include "support/host/box.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

namespace {

constexpr int kWidth = 420;
constexpr int kStrip = 44;
constexpr int kMargin = 18;
constexpr int kTextLeft = 67;
constexpr int kTextTop = 20; // below the strip
constexpr int kTextGap = 32; // above the buttons
constexpr int kTextLowest = 48;
constexpr int kTextHighest = 312;
constexpr int kLinesAtMost = 40;
constexpr int kSmallestText = 8;
constexpr int kIconLeft = 19;
constexpr int kIconSize = 32;
constexpr int kButtonWidth = 110;
constexpr int kButtonHeight = 40;
constexpr int kButtonGap = 12;
constexpr int kBottom = 16;
constexpr int kShadow = 40;
constexpr int kShadowDown = 12;
constexpr qreal kShadowOpacity = 0.4;

const QRect kScreen(0, 0, look::kScreenWidth, look::kScreenHeight);

// Room for the text: as high as it needs, and no higher than the screen allows.
int textHeight(const QString& text)
{
    const QSize room(kWidth - kTextLeft - kMargin, kTextHighest);
    const int needed =
        look::fitText(text, look::font(look::kTextSize), room, kLinesAtMost, kSmallestText).height();
    return qBound(kTextLowest, needed, kTextHighest);
}

} // namespace

BoxDialog::BoxDialog(const QString& title, const QString& text, const char* picture, int below,
                     QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint), m_szPicture(picture), m_nTextHeight(textHeight(text)),
      m_nBelow(below)
{
    setGeometry(kScreen);
    setFixedSize(kScreen.size());
    setAttribute(Qt::WA_OpaquePaintEvent);
    const int height = kStrip + kTextTop + m_nTextHeight + below + kTextGap + kButtonHeight + kBottom;
    m_box = QRect((look::kScreenWidth - kWidth) / 2, (look::kScreenHeight - height) / 2, kWidth, height);
    addTexts(title, text);
    m_background = drawBackground();
    connect(&windowStack::instance(), &windowStack::changed, this, &BoxDialog::followWindows,
            Qt::QueuedConnection);
}

void BoxDialog::addTexts(const QString& title, const QString& text)
{
    QLabel* caption = new fittedLabel(title, look::font(look::kTextSize, true), 1, this);
    caption->setObjectName(QStringLiteral("labTitle"));
    caption->setGeometry(m_box.left() + kMargin, m_box.top(), kWidth - 2 * kMargin, kStrip);
    QPalette onBar = caption->palette();
    onBar.setColor(QPalette::WindowText, look::colour(look::kTextOnBar));
    caption->setPalette(onBar);
    QLabel* words = new fittedLabel(text, look::font(look::kTextSize), kLinesAtMost, this);
    words->setObjectName(QStringLiteral("labText"));
    words->setGeometry(m_box.left() + kTextLeft, m_box.top() + kStrip + kTextTop,
                       kWidth - kTextLeft - kMargin, m_nTextHeight);
}

QRect BoxDialog::belowText() const
{
    return QRect(m_box.left() + kTextLeft, m_box.top() + kStrip + kTextTop + m_nTextHeight,
                 kWidth - kTextLeft - kMargin, m_nBelow);
}

QPushButton* BoxDialog::addButton(const char* name, const char* key, int place)
{
    QRect rect(m_box.right() + 1 - kMargin - kButtonWidth, m_box.bottom() + 1 - kBottom - kButtonHeight,
               kButtonWidth, kButtonHeight);
    rect.translate(-place * (kButtonWidth + kButtonGap), 0);
    QPushButton* button = new QPushButton(qTranslate(key), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(rect);
    button->setFont(look::font(look::kTextSize, true));
    button->setAutoDefault(true);
    ButtonLook::change(button).ofBox = true;
    button->installEventFilter(this);
    if (m_buttons.isEmpty())
        button->setDefault(true);
    m_buttons.append(button);
    return button;
}

// A box below is left out: dimmed once more with each that comes, the screen would go black.
QPixmap qBoxBackdrop(QWidget* window, const QRect& rect)
{
    screenMarkBox(window);
    QImage screen = screenGrabWithoutBoxes();
    QPainter painter(&screen);
    painter.fillRect(kScreen, look::colour(look::kDim));
    look::paintShadow(painter, rect.translated(0, kShadowDown), kShadow, kShadowOpacity);
    painter.end();
    return QPixmap::fromImage(screen);
}

QPixmap BoxDialog::drawBackground()
{
    QPixmap screen = qBoxBackdrop(this, m_box);
    m_pBehind = screenTopWithoutBoxes();
    QPainter painter(&screen);
    look::paintBox(painter, m_box, look::kBoxCorner, look::kField);
    QPainterPath round;
    round.addRoundedRect(m_box, look::kBoxCorner, look::kBoxCorner);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(QRect(m_box.topLeft(), QSize(kWidth, kStrip)));
    QLinearGradient strip(0, m_box.top(), 0, m_box.top() + kStrip);
    strip.setColorAt(0, look::colour(look::kBarTop));
    strip.setColorAt(1, look::colour(look::kBarBottom));
    painter.fillPath(round, strip);
    painter.setClipping(false);
    const int textBottom = m_box.bottom() + 1 - kBottom - kButtonHeight - kTextGap - m_nBelow;
    const int middle = (m_box.top() + kStrip + kTextTop + textBottom) / 2;
    painter.drawPixmap(m_box.left() + kIconLeft, middle - kIconSize / 2,
                       GetImageManager()->GetImage(m_szPicture));
    painter.end();
    return screen;
}

void BoxDialog::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.drawPixmap(event->rect(), m_background, event->rect());
}

void BoxDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    activateWindow();
    m_buttons.first()->setFocus(Qt::OtherFocusReason);
}

// What it was asked stays in its language; what lies below does not. That has its new texts once the event
// loop is reached.
void BoxDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        QMetaObject::invokeMethod(this, &BoxDialog::renewBackground, Qt::QueuedConnection);
}

// A window that goes by itself, as a call's does, is not seen behind it any more.
void BoxDialog::followWindows()
{
    if (isVisible() && m_pBehind != screenTopWithoutBoxes())
        renewBackground();
}

void BoxDialog::renewBackground()
{
    m_background = drawBackground();
    update();
}

// The key under which every page has "Back" cancels too.
void BoxDialog::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Back:
    case Qt::Key_F4:
        reject();
        break;
    default:
        break;
    }
}

bool BoxDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        stepFocus(-1);
        return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
        stepFocus(1);
        return true;
    default:
        return QDialog::eventFilter(watched, event);
    }
}

void BoxDialog::stepFocus(int step)
{
    const int count = int(m_buttons.size());
    for (int i = 0; i < count; ++i) {
        if (m_buttons[i]->hasFocus()) {
            m_buttons[(i + step + count) % count]->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}
