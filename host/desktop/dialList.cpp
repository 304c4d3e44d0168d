#include "host/desktop/dialList.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include "support/host/text.h"
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int kEdge = 6;
constexpr int kSlack = 10; // pixels that a finger may tremble
constexpr int kIconSize = 24;
constexpr int kIconLeft = 12;
constexpr int kNameLeft = 46;
constexpr int kDetailShare = 3; // of the width
constexpr QRgb kDetail = 0xff7f93a6;

} // namespace

dialList::dialList(QWidget* parent) : QWidget(parent) {}

void dialList::setRows(const QList<tagDialEntry>& rows)
{
    m_rows = rows;
    m_nCurrent = -1;
    m_nOffset = 0;
    update();
}

void dialList::setCurrentRow(int row)
{
    m_nCurrent = qBound(-1, row, int(m_rows.size()) - 1);
    const int seen = height() - 2 * kEdge;
    const int top = m_nCurrent * ROW_HEIGHT;
    if (m_nCurrent >= 0 && top < m_nOffset)
        scrollTo(top);
    else if (m_nCurrent >= 0 && top + ROW_HEIGHT > m_nOffset + seen)
        scrollTo(top + ROW_HEIGHT - seen);
    update();
    emit currentChanged();
}

QString dialList::text() const
{
    QStringList all;
    for (const tagDialEntry& row : m_rows)
        all.append((row.strName.isEmpty() ? row.strNumber : row.strName) + ' ' + row.strDetail);
    return all.join('|');
}

void dialList::scrollTo(int offset)
{
    const int most = qMax(0, int(m_rows.size()) * ROW_HEIGHT - (height() - 2 * kEdge));
    m_nOffset = qBound(0, offset, most);
    update();
}

void dialList::mousePressEvent(QMouseEvent* event)
{
    m_nPressed = event->pos().y();
    m_nOffsetThen = m_nOffset;
    m_bDragged = false;
}

void dialList::mouseMoveEvent(QMouseEvent* event)
{
    m_bDragged = m_bDragged || qAbs(event->pos().y() - m_nPressed) > kSlack;
    if (m_bDragged)
        scrollTo(m_nOffsetThen + m_nPressed - event->pos().y());
}

void dialList::mouseReleaseEvent(QMouseEvent* event)
{
    const int at = event->pos().y() - kEdge + m_nOffset;
    const int row = at < 0 ? -1 : at / ROW_HEIGHT;
    if (m_bDragged || !rect().contains(event->pos()) || row < 0 || row >= m_rows.size())
        return;
    if (row == m_nCurrent)
        emit opened();
    else
        setCurrentRow(row);
}

void dialList::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    look::paintBox(painter, rect(), look::kPanelCorner, look::kPanel, look::kPanelLine);
    const QRect inner = rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
    painter.setClipRect(inner);
    for (int row = 0; row < m_rows.size(); ++row) {
        const QRect place(inner.left(), inner.top() + row * ROW_HEIGHT - m_nOffset, inner.width(),
                          ROW_HEIGHT);
        if (place.intersects(inner))
            paintRow(painter, place, row);
    }
}

void dialList::paintRow(QPainter& painter, const QRect& place, int row) const
{
    const tagDialEntry& entry = m_rows[row];
    if (row == m_nCurrent)
        look::paintBox(painter, place, look::kRowCorner, look::kSelection);
    else
        painter.fillRect(place.left(), place.bottom(), place.width(), 1, look::colour(look::kRowLine));
    painter.drawPixmap(place.left() + kIconLeft, place.top() + (place.height() - kIconSize) / 2,
                       GetImageManager()->GetImage(fromQString(entry.strPicture)));
    painter.setFont(look::font(look::kSmallSize));
    const QFontMetrics metrics = painter.fontMetrics();
    const int room = place.width() - kNameLeft - kIconLeft;
    const int width = qMin(metrics.horizontalAdvance(entry.strDetail), room / kDetailShare * 2);
    painter.setPen(look::colour(kDetail));
    painter.drawText(place.adjusted(kNameLeft, 0, -kIconLeft, 0), Qt::AlignRight | Qt::AlignVCenter,
                     metrics.elidedText(entry.strDetail, Qt::ElideRight, width + 1));
    painter.setFont(look::font(look::kTextSize, true));
    painter.setPen(look::colour(look::kText));
    const QString who = entry.strName.isEmpty() ? entry.strNumber : entry.strName;
    const QRect name = place.adjusted(kNameLeft, 0, -kIconLeft - width - kIconLeft, 0);
    painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(who, Qt::ElideRight, name.width()));
}
