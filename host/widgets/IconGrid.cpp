#include "host/widgets/IconGrid.h"
#include "support/host/image.h"
#include <QFontMetrics>
#include <QPainter>
#include <QStringList>

namespace {

constexpr int kMargin = 8; // above the first row and below the last one
constexpr int kTile = 84;
constexpr int kTileTop = 30;     // in its cell
constexpr int kCaptionTop = 128; // in its cell
constexpr int kCaptionMargin = 5;
constexpr int kCaptionPixels = 17;
constexpr int kSmallestCaption = 13;
constexpr int kCaptionHeight = 54;
constexpr int kCaptionLines = 2;
constexpr double kTileCorner = 0.23;
constexpr int kShadowBorder = 12; // of the shadow's picture around the tile
constexpr int kDot = 8;
constexpr int kDotPitch = 18;

const QColor kSelected(47, 128, 237, 37);
const QColor kPressed(47, 128, 237, 80);
const QColor kNoPicture(143, 165, 186);
const QColor kDotOff(180, 195, 209);

} // namespace

look::FittedText fitCaption(const QString& caption, int width)
{
    look::FittedText fitted = look::fitText(caption.simplified(), look::font(kCaptionPixels),
                                            QSize(width, kCaptionHeight), kCaptionLines, kSmallestCaption);
    look::cutToRoom(fitted, QSize(width, kCaptionHeight), kCaptionHeight / fitted.nLineHeight);
    return fitted;
}

void IconGrid::SetMatrix(int columns, int rows)
{
    m_nColumns = qMax(columns, 1);
    m_nRows = qMax(rows, 1);
}

QRect IconGrid::Cell(int place) const
{
    const int width = m_area.width() / m_nColumns;
    const int height = (m_area.height() - 2 * kMargin) / m_nRows;
    return QRect(m_area.left() + place % m_nColumns * width,
                 m_area.top() + kMargin + place / m_nColumns * height, width, height);
}

int IconGrid::PlaceAt(const QPoint& point) const
{
    for (int place = 0; place < IconsOnPage(); ++place) {
        if (Cell(place).contains(point))
            return place;
    }
    return -1;
}

QRect IconGrid::TileRect(int place) const
{
    const QRect cell = Cell(place);
    return QRect(cell.left() + (cell.width() - kTile) / 2, cell.top() + kTileTop, kTile, kTile);
}

void IconGrid::PaintIcon(QPainter& painter, int place, const QString& picture, const QString& caption,
                         State state) const
{
    if (state != Normal) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(state == Pressed ? kPressed : kSelected);
        painter.drawRoundedRect(Cell(place).adjusted(8, 6, -8, -6), 12, 12);
    }
    PaintTile(painter, TileRect(place), picture, state);
    PaintCaption(painter, place, caption);
}

void IconGrid::PaintTile(QPainter& painter, const QRect& tile, const QString& picture, State state) const
{
    const double corner = kTile * kTileCorner;
    painter.drawPixmap(tile.topLeft() - QPoint(kShadowBorder, kShadowBorder),
                       GetImageManager()->GetImage(HX_THEME("misc/tile_shadow.png")));
    painter.setPen(Qt::NoPen);
    const QPixmap icon = GetImageManager()->GetImageByScale(picture.toUtf8().constData(), kTile, kTile);
    if (icon.isNull()) {
        painter.setBrush(kNoPicture);
        painter.drawRoundedRect(tile, corner, corner);
    } else {
        const QSize size = icon.size();
        painter.drawPixmap(tile.left() + (kTile - size.width()) / 2, tile.top() + (kTile - size.height()) / 2,
                           icon);
    }
    if (state == Pressed) {
        painter.setBrush(QColor(0, 0, 0, 50));
        painter.drawRoundedRect(tile, corner, corner);
    }
}

void IconGrid::PaintCaption(QPainter& painter, int place, const QString& caption) const
{
    const QRect cell = Cell(place);
    const QRect rect(cell.left() + kCaptionMargin, cell.top() + kCaptionTop,
                     cell.width() - 2 * kCaptionMargin, kCaptionHeight);
    painter.setPen(look::colour(look::kText));
    look::paintFitted(painter, rect, Qt::AlignHCenter | Qt::AlignTop, fitCaption(caption, rect.width()));
}

void IconGrid::PaintPageDots(QPainter& painter, int pages, int page) const
{
    if (pages < 2)
        return;
    const int left = m_area.center().x() - ((pages - 1) * kDotPitch + kDot) / 2;
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < pages; ++i) {
        painter.setBrush(i == page ? look::colour(look::kBlue) : kDotOff);
        painter.drawEllipse(left + i * kDotPitch, m_area.bottom() - kDot - 1, kDot, kDot);
    }
}
