#include "media/mediaListLook.h"
#include <QPalette>
#include <QWidget>

namespace {

const QColor kText(51, 59, 62);
const QColor kHighlight(201, 222, 241);

} // namespace

void setMediaListColours(QWidget* list)
{
    QPalette colours = list->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, QPalette::Text, kText);
        colours.setColor(group, QPalette::HighlightedText, kText);
        colours.setColor(group, QPalette::Highlight, kHighlight);
        colours.setColor(group, QPalette::Base, Qt::transparent);
    }
    list->setPalette(colours);
}
