#pragma once
#include <QWidget>

// A widget of the host in the place of a form's placeholder: its parent, geometry, name and visibility. The
// placeholder is deleted later. Null for null.
template <class T>
T* replacePlaceholder(QWidget* placeholder)
{
    if (!placeholder)
        return nullptr;
    T* widget = new T(placeholder->parentWidget());
    widget->setObjectName(placeholder->objectName());
    widget->setGeometry(placeholder->geometry());
    widget->stackUnder(placeholder);
    if (placeholder->parentWidget() && placeholder->parentWidget()->isVisible())
        widget->show();
    placeholder->hide();
    placeholder->deleteLater();
    return widget;
}
