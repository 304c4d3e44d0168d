#include "host/widgets/lineLabel.h"
#include "host/look/look.h"
#include "support/host/ui.h"
#include <QPainter>

namespace {

constexpr int kSmallestLine = 12;
constexpr int kSmallest = 6;
constexpr int kLinesAtMost = 6;

look::FittedText fitLine(const QString& text, const QFont& font, const QSize& room)
{
    const look::FittedText line = look::fitText(text, font, room, 1, kSmallestLine);
    if (line.lines.size() == 1)
        return line;
    look::FittedText lines = look::fitText(text, font, room, kLinesAtMost, kSmallest);
    look::cutToRoom(lines, room, kLinesAtMost);
    return lines;
}

} // namespace

lineLabel::lineLabel(QWidget* parent) : QLabel(parent)
{
    SetLabel(this);
}

void lineLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect room = rect().adjusted(indent(), 0, -indent(), 0);
    look::paintFitted(painter, room, int(alignment()), fitLine(text(), font(), room.size()));
}

QLabel* qCreateLineLabel(QWidget* parent)
{
    return new lineLabel(parent);
}
