#include "host/look/look.h"
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QTextLayout>
#include <cmath>
#include <vector>

namespace look {

namespace {
constexpr qsizetype kLongestFitted = 1000; // characters; more have no room on the screen
constexpr qreal kLineHeight = 4 / 3.0;     // of the font's pixels
} // namespace

QFont font(int pixels, bool semiBold)
{
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(pixels);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setWeight(semiBold ? QFont::DemiBold : QFont::Normal);
    return font;
}

void paintGradient(QPainter& painter, const QRect& rect, QRgb top, QRgb bottom)
{
    QLinearGradient gradient(rect.topLeft(), QPointF(rect.left(), rect.top() + rect.height()));
    gradient.setColorAt(0, colour(top));
    gradient.setColorAt(1, colour(bottom));
    painter.fillRect(rect, gradient);
}

void paintBar(QPainter& painter, const QRect& rect)
{
    paintGradient(painter, rect, kBarTop, kBarBottom);
}

void paintLeftBar(QPainter& painter, const QRect& rect)
{
    paintGradient(painter, rect, kLeftBarTop, kLeftBarBottom);
}

void paintSoftKeys(QPainter& painter, const QRect& rect)
{
    painter.fillRect(rect, colour(kSoftKey));
}

void paintPage(QPainter& painter, const QRect& rect)
{
    QLinearGradient gradient(0, rect.top() + kTopBarHeight, 0, rect.top() + kTopBarHeight + kPageHeight);
    gradient.setColorAt(0, colour(kPageTop));
    gradient.setColorAt(1, colour(kPageBottom));
    painter.fillRect(rect, gradient);
}

void paintBox(QPainter& painter, const QRectF& rect, qreal corner, QRgb fill, QRgb line, qreal width)
{
    const bool wasSmooth = painter.testRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (qAlpha(line) == 0) {
        painter.setBrush(colour(fill));
        painter.drawRoundedRect(rect, corner, corner);
    } else {
        if (qAlpha(fill) != 0) {
            const QRectF inner = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
            painter.setBrush(colour(fill));
            painter.drawRoundedRect(inner, corner - width / 2, corner - width / 2);
        }
        QPainterPath frame;
        frame.addRoundedRect(rect, corner, corner);
        frame.addRoundedRect(rect.adjusted(width, width, -width, -width), corner - width, corner - width);
        painter.setBrush(colour(line));
        painter.drawPath(frame);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, wasSmooth);
}

void paintRing(QPainter& painter, const QRectF& rect, qreal corner)
{
    paintBox(painter, rect.adjusted(-kRingWidth, -kRingWidth, kRingWidth, kRingWidth), corner + kRingWidth, 0,
             kRing, kRingWidth);
}

void paintChevron(QPainter& painter, const QRect& rect, bool down, QRgb argb)
{
    const QPointF middle = QRectF(rect).center();
    const qreal rise = down ? -3 : 3;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour(argb), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF({middle + QPointF(-6, rise), middle + QPointF(0, -rise), middle + QPointF(6, rise)}));
    painter.restore();
}

namespace {

// How much of a blurred edge lies before each pixel of a line of length pixels.
std::vector<qreal> shadowLine(int length, int from, int to, qreal deviation)
{
    std::vector<qreal> line(static_cast<size_t>(length));
    const qreal scale = 1 / (deviation * std::sqrt(2.0));
    for (int i = 0; i < length; ++i) {
        const qreal at = i + 0.5;
        line[size_t(i)] = (std::erf((at - from) * scale) - std::erf((at - to) * scale)) / 2;
    }
    return line;
}

QPixmap makeShadow(const QSize& size, int softness, int reach, qreal opacity)
{
    QImage image(size + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    const auto across = shadowLine(image.width(), reach, image.width() - reach, softness / 2.0);
    const auto down = shadowLine(image.height(), reach, image.height() - reach, softness / 2.0);
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qRgba(0, 0, 0, int(255 * opacity * across[size_t(x)] * down[size_t(y)] + 0.5));
    }
    return QPixmap::fromImage(image);
}

} // namespace

void paintShadow(QPainter& painter, const QRect& rect, int softness, qreal opacity)
{
    const int reach = softness * 3 / 2;
    const QString key =
        QStringLiteral("shadow/%1/%2/%3/%4").arg(rect.width()).arg(rect.height()).arg(softness).arg(opacity);
    QPixmap shadow;
    if (!QPixmapCache::find(key, &shadow)) {
        shadow = makeShadow(rect.size(), softness, reach, opacity);
        QPixmapCache::insert(key, shadow);
    }
    painter.drawPixmap(rect.topLeft() - QPoint(reach, reach), shadow);
}

namespace {

struct Wrapped
{
    QStringList lines;
    bool brokeWord = false;
};

Wrapped wrap(const QString& paragraph, const QFont& font, int width)
{
    Wrapped result;
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const int end = line.textStart() + line.textLength();
        if (end < paragraph.size() && paragraph.at(end - 1).isLetterOrNumber() &&
            paragraph.at(end).isLetterOrNumber() && paragraph.at(end).script() != QChar::Script_Han)
            result.brokeWord = true;
        result.lines.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    if (result.lines.isEmpty())
        result.lines.append(QString());
    return result;
}

} // namespace

namespace {

FittedText layOut(const QStringList& paragraphs, const QFont& font, int pixels, int width, bool& brokeWord)
{
    FittedText fitted;
    fitted.font = font;
    fitted.font.setPixelSize(pixels);
    fitted.nLineHeight = int(std::ceil(pixels * kLineHeight));
    brokeWord = false;
    for (const QString& paragraph : paragraphs) {
        const Wrapped wrapped = wrap(paragraph, fitted.font, width);
        fitted.lines += wrapped.lines;
        brokeWord = brokeWord || wrapped.brokeWord;
    }
    return fitted;
}

} // namespace

void cutToRoom(FittedText& fitted, const QSize& size, int maxLines)
{
    const int lines = qMax(1, qMin(maxLines, size.height() / qMax(1, fitted.nLineHeight)));
    if (fitted.lines.size() <= lines)
        return;
    const QString rest = fitted.lines.mid(lines - 1).join(QLatin1Char(' '));
    fitted.lines = fitted.lines.mid(0, lines - 1);
    fitted.lines.append(QFontMetrics(fitted.font).elidedText(rest, Qt::ElideRight, size.width()));
}

FittedText fitText(const QString& text, const QFont& font, const QSize& size, int maxLines, int smallest)
{
    const QStringList paragraphs = text.left(kLongestFitted).split(QLatin1Char('\n'));
    const int wanted = font.pixelSize();
    FittedText fitted;
    for (const bool mayBreak : {false, true}) {
        const int last = mayBreak ? smallest : qMax(smallest, wanted * 3 / 4);
        for (int pixels = wanted; pixels >= last; --pixels) {
            bool brokeWord = false;
            fitted = layOut(paragraphs, font, pixels, size.width(), brokeWord);
            if (fitted.lines.size() <= maxLines && fitted.height() <= size.height() &&
                (mayBreak || !brokeWord))
                return fitted;
        }
    }
    return fitted;
}

void paintFitted(QPainter& painter, const QRect& rect, int align, const FittedText& text)
{
    painter.setFont(text.font);
    int y = rect.top();
    if (align & Qt::AlignVCenter)
        y += (rect.height() - text.height()) / 2;
    else if (align & Qt::AlignBottom)
        y += rect.height() - text.height();
    for (const QString& line : text.lines) {
        painter.drawText(QRect(rect.left(), y, rect.width(), text.nLineHeight),
                         (align & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter | Qt::TextDontClip |
                             Qt::TextSingleLine,
                         line);
        y += text.nLineHeight;
    }
}

void paintFitted(QPainter& painter, const QRect& rect, int align, const QString& text, const QFont& font,
                 int maxLines)
{
    FittedText fitted = fitText(text, font, rect.size(), maxLines);
    cutToRoom(fitted, rect.size(), maxLines);
    paintFitted(painter, rect, align, fitted);
}

} // namespace look
