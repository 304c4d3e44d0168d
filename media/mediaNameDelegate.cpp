#include "media/mediaNameDelegate.h"
#include <QApplication>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

namespace {

bool breaksLine(QChar letter)
{
    return letter.category() == QChar::Other_Control || letter == QChar::LineSeparator ||
           letter == QChar::ParagraphSeparator;
}

// Of what is left out, in the middle, the short name may be a part.
int equalLetters(const QString& shown, const QString& whole)
{
    const auto [end, other] = std::mismatch(shown.begin(), shown.end(), whole.begin(), whole.end());
    return int(end - shown.begin());
}

// One line, laid out as a whole: letters of some scripts join, and some run from right to left.
void paintName(QPainter& painter, const QStyleOptionViewItem& option, const QRect& room, int shortName)
{
    const QString shown = option.fontMetrics.elidedText(option.text, option.textElideMode, room.width());
    QTextLayout layout(shown, option.font);
    QTextLayout::FormatRange range;
    range.start = 0;
    range.length = std::min(shortName, equalLetters(shown, option.text));
    range.format.setForeground(kMediaSecondaryText);
    if (range.length > 0)
        layout.setFormats({range});
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(room.width());
    layout.endLayout();
    const QPointF place(room.left(), room.top() + (room.height() - line.height()) / 2);
    painter.save();
    painter.setClipRect(room, Qt::IntersectClip);
    painter.setPen(option.palette.color(QPalette::Active, QPalette::Text));
    layout.draw(&painter, place);
    painter.restore();
}

} // namespace

void MediaNameDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
    const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, item.widget);
    paintName(*painter, item, room, index.data(MEDIA_SHORT_NAME_ROLE).toInt());
}

QString MediaNameDelegate::displayText(const QVariant& value, const QLocale&) const
{
    QString name = value.toString();
    std::replace_if(name.begin(), name.end(), breaksLine, QChar(u' '));
    return name;
}
