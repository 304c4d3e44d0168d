#include "host/desktop/lightLabel.h"
#include "host/look/look.h"

lightLabel::lightLabel(QWidget* parent) : fittedLabel(QString(), look::font(look::kTextSize), 1, parent)
{
    QPalette white = palette();
    white.setColor(QPalette::WindowText, look::colour(look::kTextOnBar));
    setPalette(white);
}
