#include "host/widgets/fittedLabel.h"
#include "host/look/look.h"
#include <QPainter>

fittedLabel::fittedLabel(const QString& text, const QFont& font, int maxLines, QWidget* parent)
    : QLabel(text, parent), m_nMaxLines(maxLines)
{
    setFont(font);
}

void fittedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    look::paintFitted(painter, rect(), int(alignment()), text(), font(), m_nMaxLines);
}
