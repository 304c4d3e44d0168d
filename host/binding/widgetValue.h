#pragma once
// The stored form of what a widget shows: of a QLineEdit its text, of a QCheckBox "1" or "0", of a
// QComboBox the extern value of its current item, of a QRadioButton the extern value of the checked one
// of its group. User-interface thread.
#include <QString>
#include <optional>

class QWidget;

// None for a widget of another kind, and for a choice of which nothing is chosen.
std::optional<QString> widgetValue(QWidget* widget);
// Shows a stored value. A value that no item or radio button has leaves the choice without a selection;
// where nothing is stored, the first is shown.
void setWidgetValue(QWidget* widget, const QString& stored);
// The value that the widget would have after setWidgetValue: what it cannot hold of the stored text does
// not count as a change by the user.
std::optional<QString> widgetFormOf(QWidget* widget, const QString& stored);
