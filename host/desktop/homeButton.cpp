#include "host/desktop/homeButton.h"
#include "host/look/look.h"
#include "support/host/api.h"
#include "support/host/image.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int kTileSize = 78;
constexpr int kTileTop = 12;
constexpr int kGlyphSize = 40;
constexpr int kCaptionLines = 2;
constexpr int kBadgeSize = 28;
constexpr int kBadgeText = 15;
constexpr int kBadgeOut = 8; // over the corner
constexpr QRgb kBadgeColour = 0xffe2402b;
constexpr int kHoldMs = 800;
constexpr int kPortraitCorner = 10;
constexpr int kKeyCorner = 14;
constexpr QRgb kKeyFill = 0x26ffffff;
constexpr QRgb kKeyPressed = 0x4dffffff;
constexpr QRgb kFocusFill = 0x33ffffff;
constexpr QRgb kFocusLine = 0xd9ffffff;

QPixmap scaled(const QString& path, int size)
{
    return GetImageManager()->GetImageByScale(path.toUtf8().constData(), size, size);
}

} // namespace

homeButton::homeButton(Kind kind, QWidget* parent) : QAbstractButton(parent), m_kind(kind)
{
    setFocusPolicy(Qt::StrongFocus);
    m_hold.setSingleShot(true);
    m_hold.setInterval(kHoldMs);
    connect(&m_hold, &QTimer::timeout, this, &homeButton::hold);
    connect(this, &QAbstractButton::released, &m_hold, &QTimer::stop);
}

// What comes up while it is held has not been asked for by a finger.
bool homeButton::event(QEvent* event)
{
    if (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide)
        m_hold.stop();
    return QAbstractButton::event(event);
}

// The rest of the touch, or of the key, is nobody's: it would go on to press what has come up.
void homeButton::hold()
{
    if (!isDown())
        return;
    setDown(false);
    emit held();
    qApp->installEventFilter(this);
}

bool homeButton::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        return watched == this;
    case QEvent::MouseButtonRelease:
        if (watched == this)
            qApp->removeEventFilter(this);
        return watched == this;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (!watched->isWindowType())
            return false;
        if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
            qApp->removeEventFilter(this);
        return static_cast<QKeyEvent*>(event)->isAutoRepeat();
    default:
        return false;
    }
}

void homeButton::mousePressEvent(QMouseEvent* event)
{
    qApp->removeEventFilter(this);
    QAbstractButton::mousePressEvent(event);
    if (m_kind == QuickKey && isDown())
        m_hold.start();
}

void homeButton::setContent(const QString& picture, const QString& caption)
{
    m_strPicture = picture;
    setText(caption);
    if (m_kind == QuickKey)
        readPortrait();
    update();
}

void homeButton::setBadge(int number)
{
    if (number == m_nBadge)
        return;
    m_nBadge = number;
    update();
}

void homeButton::paintBadge(QPainter& painter, const QRect& tile) const
{
    const QString text = QString::number(m_nBadge);
    painter.setFont(look::font(kBadgeText, true));
    const int width = qMax(kBadgeSize, painter.fontMetrics().horizontalAdvance(text) + kBadgeSize / 2);
    const QRect mark(tile.right() + kBadgeOut - width, tile.top() - kBadgeOut, width, kBadgeSize);
    look::paintBox(painter, mark, kBadgeSize / 2.0, kBadgeColour, look::kTextOnBar, 2);
    painter.setPen(QColor(look::kTextOnBar));
    painter.drawText(mark, Qt::AlignCenter, text);
}

// The file may have changed while something else was on the screen.
void homeButton::showEvent(QShowEvent* event)
{
    QAbstractButton::showEvent(event);
    if (m_kind == QuickKey)
        readPortrait();
}

// Anybody's picture, of any size. The old one stays until the new one is there.
void homeButton::readPortrait()
{
    pictureCancel(m_nPortrait);
    tagPictureWish wish;
    wish.strPath = fromQString(m_strPicture);
    wish.nWidth = wish.nHeight = kGlyphSize;
    wish.eFit = PICTURE_FIT_COVER;
    m_nPortrait = pictureTell(wish, this, [this](PICTURE_RESULT, const QPixmap& picture) {
        m_nPortrait = 0;
        m_portrait = picture;
        update();
    });
}

void homeButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (m_kind == Tile)
        paintTile(painter);
    else
        paintQuickKey(painter);
}

void homeButton::paintTile(QPainter& painter)
{
    if (hasFocus() || isDown())
        look::paintBox(painter, rect(), kKeyCorner, isDown() ? kKeyPressed : kFocusFill,
                       hasFocus() ? kFocusLine : 0, 2);
    const QRect tile((width() - kTileSize) / 2, kTileTop, kTileSize, kTileSize);
    look::paintShadow(painter, tile, 6, 0.25);
    painter.drawPixmap(tile.topLeft(), scaled(m_strPicture, kTileSize));
    if (m_nBadge > 0)
        paintBadge(painter, tile);
    painter.setPen(QColor(look::kTextOnBar));
    const QRect caption(0, tile.bottom() + 4, width(), height() - tile.bottom() - 4);
    look::paintFitted(painter, caption, Qt::AlignCenter, text(), look::font(look::kSmallSize), kCaptionLines);
}

void homeButton::paintQuickKey(QPainter& painter)
{
    look::paintBox(painter, rect(), kKeyCorner, isDown() ? kKeyPressed : kKeyFill,
                   hasFocus() ? kFocusLine : 0, 2);
    const bool isNamed = !text().isEmpty();
    const QPixmap& picture = m_portrait;
    const int top = isNamed ? 14 : (height() - picture.height()) / 2;
    const QRect place(QPoint((width() - picture.width()) / 2, top), picture.size());
    // A portrait has corners; a glyph has none to lose.
    QPainterPath round;
    round.addRoundedRect(place, kPortraitCorner, kPortraitCorner);
    painter.save();
    painter.setClipPath(round);
    painter.drawPixmap(place.topLeft(), picture);
    painter.restore();
    painter.setPen(QColor(look::kTextOnBar));
    if (isNamed)
        look::paintFitted(painter, QRect(6, 56, width() - 12, 28), Qt::AlignCenter, text(),
                          look::font(look::kSmallSize - 1));
}

void homeButton::keyPressEvent(QKeyEvent* event)
{
    if (!qIsOkKey(event->key())) {
        // The arrows move over the whole screen, which the home screen knows.
        event->ignore();
        return;
    }
    if (event->isAutoRepeat())
        return;
    if (m_kind == Tile) {
        click();
        return;
    }
    setDown(true);
    m_hold.start();
}

void homeButton::keyReleaseEvent(QKeyEvent* event)
{
    if (m_kind == Tile || !qIsOkKey(event->key())) {
        QAbstractButton::keyReleaseEvent(event);
        return;
    }
    if (event->isAutoRepeat() || !m_hold.isActive())
        return;
    m_hold.stop();
    setDown(false);
    click();
}
