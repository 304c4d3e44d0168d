#include "host/desktop/callMarks.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include <QPainter>
#include <algorithm>

namespace {

constexpr int kBars = 4;
constexpr int kBarWidth = 5;
constexpr int kBarGap = 2;
constexpr int kMark = 20; // height of each
constexpr int kGap = 8;
constexpr int kRow = 22;
constexpr QRgb kDark = 0x59ffffff;
constexpr QRgb kColours[] = {0xffff8a73, 0xffff8a73, 0xffffd479, 0xff7fe08f, 0xff7fe08f};

QString bothOf(const QString& one, const QString& other)
{
    return one.isEmpty() || one == other ? other : other.isEmpty() ? one : one + ", " + other;
}

} // namespace

QString callCodecsText(const tagCallStreams& streams)
{
    return bothOf(streams.strPicture, streams.strSound);
}

tagCallStreams callStreamsOf(const tagCallStreams& one, const tagCallStreams& other)
{
    tagCallStreams both;
    both.strSound = bothOf(one.strSound, other.strSound);
    both.strPicture = one.strPicture.isEmpty() ? other.strPicture : one.strPicture;
    both.nQuality = one.nQuality < 0 || other.nQuality < 0 ? std::max(one.nQuality, other.nQuality)
                                                           : std::min(one.nQuality, other.nQuality);
    both.bEncrypted = one.bEncrypted && other.bEncrypted;
    both.nOwnPicture = std::max(one.nOwnPicture, other.nOwnPicture);
    both.nOtherPicture = std::max(one.nOtherPicture, other.nOtherPicture);
    return both;
}

callMarks::callMarks(QWidget* parent)
    : QWidget(parent), m_lock(GetImageManager()->GetImage(HX_THEME("icon/talk_lock.png")))
{
    setFont(look::font(look::kSmallSize));
}

void callMarks::setStreams(const tagCallStreams& streams)
{
    const QString before = text();
    m_streams = streams;
    if (text() != before)
        update();
}

void callMarks::setCodecsShown(bool shown)
{
    m_bCodecs = shown;
    update();
}

QString callMarks::text() const
{
    QString all = callCodecsText(m_streams);
    if (m_streams.bEncrypted)
        all = bothOf(all, "encrypted");
    if (m_streams.nQuality >= 0)
        all = bothOf(all, QString("%1 of %2").arg(m_streams.nQuality).arg(kBars));
    return all;
}

QSize callMarks::marksSize() const
{
    const int bars = m_streams.nQuality < 0 ? 0 : kBars * (kBarWidth + kBarGap) - kBarGap;
    const int lock = m_streams.bEncrypted ? m_lock.width() : 0;
    return QSize(bars + lock + (bars && lock ? kGap : 0), bars || lock ? kMark : 0);
}

// From low to high; those beyond the quality are dark.
void callMarks::paintBars(QPainter& painter, const QRect& place) const
{
    const int quality = std::min(m_streams.nQuality, kBars);
    for (int bar = 0; bar < kBars; ++bar) {
        const int height = place.height() * (bar + 1) / kBars - 2;
        const QRect shape(place.left() + bar * (kBarWidth + kBarGap), place.bottom() - height, kBarWidth,
                          height);
        look::paintBox(painter, shape, 1, bar < quality ? kColours[quality] : kDark);
    }
}

void callMarks::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QSize marks = marksSize();
    int right = width();
    if (m_streams.nQuality >= 0) {
        right -= kBars * (kBarWidth + kBarGap) - kBarGap;
        paintBars(painter, QRect(right, 0, width() - right, kMark));
        right -= kGap;
    }
    if (m_streams.bEncrypted)
        painter.drawPixmap(right - m_lock.width(), (kMark - m_lock.height()) / 2, m_lock);
    if (!m_bCodecs)
        return;
    const QString line = callCodecsText(m_streams);
    const QFontMetrics metrics = fontMetrics();
    const int room = width() - marks.width() - (marks.width() ? kGap : 0);
    const bool isOneLine = metrics.horizontalAdvance(line) <= room;
    painter.setPen(look::colour(look::kTextOnBar));
    int y = isOneLine || marks.isEmpty() ? 0 : kRow;
    for (const QString& row : isOneLine ? QStringList{line} : line.split(", ")) {
        painter.drawText(QRect(0, y, isOneLine ? room : width(), kRow), Qt::AlignRight | Qt::AlignVCenter,
                         metrics.elidedText(row, Qt::ElideRight, width()));
        y += kRow;
    }
}
