#include "host/control/screenTree.h"
#include "support/host/bars.h"
#include "support/host/screen.h"
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>

namespace {

QString textOf(const QWidget* widget)
{
    if (auto* bar = qobject_cast<const qTopBar*>(widget))
        return bar->title();
    if (auto* bar = qobject_cast<const qLeftBar*>(widget))
        return bar->title();
    if (auto* key = qobject_cast<const qSoftButton*>(widget))
        return key->title();
    if (auto* box = qobject_cast<const QComboBox*>(widget))
        return box->currentText();
    // As a person sees it: a password is nobody's to read.
    if (auto* edit = qobject_cast<const QLineEdit*>(widget))
        return edit->echoMode() == QLineEdit::Normal ? edit->text() : edit->displayText();
    return widget->property("text").toString();
}

QString titleOf(const QWidget* window)
{
    const qTopBar* bar = window->findChild<qTopBar*>();
    return bar && !bar->title().isEmpty() ? bar->title() : window->windowTitle();
}

QJsonArray listItems(const QListWidget* list)
{
    QJsonArray items;
    for (int row = 0; row < list->count(); ++row)
        items.append(list->item(row)->text());
    return items;
}

QJsonArray comboItems(const QComboBox* box)
{
    QJsonArray items;
    for (int row = 0; row < box->count(); ++row)
        items.append(box->itemText(row));
    return items;
}

QJsonArray tableRows(const QTableWidget* table)
{
    QJsonArray rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem* item = table->item(row, column);
            cells.append(item ? item->text() : QString());
        }
        rows.append(cells);
    }
    return rows;
}

void addChoice(const QWidget* widget, QJsonObject& entry)
{
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        if (button->isCheckable())
            entry["checked"] = button->isChecked();
    } else if (auto* box = qobject_cast<const QComboBox*>(widget)) {
        entry["index"] = box->currentIndex();
        entry["items"] = comboItems(box);
    } else if (auto* list = qobject_cast<const QListWidget*>(widget)) {
        entry["index"] = list->currentRow();
        entry["items"] = listItems(list);
    } else if (auto* table = qobject_cast<const QTableWidget*>(widget)) {
        entry["index"] = table->currentRow();
        entry["rows"] = tableRows(table);
    } else if (auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
        entry["index"] = tabs->currentIndex();
    } else if (auto* pages = qobject_cast<const QStackedWidget*>(widget)) {
        entry["index"] = pages->currentIndex();
    }
}

QJsonObject widgetEntry(const QWidget* widget)
{
    const QPoint at = widget->mapToGlobal(QPoint(0, 0));
    QJsonObject entry{{"name", widget->objectName()},
                      {"class", widget->metaObject()->className()},
                      {"x", at.x()},
                      {"y", at.y()},
                      {"w", widget->width()},
                      {"h", widget->height()},
                      {"text", textOf(widget)},
                      {"enabled", widget->isEnabled()},
                      {"visible", widget->isVisible()},
                      {"focus", QApplication::focusWidget() == widget}};
    addChoice(widget, entry);
    return entry;
}

QJsonObject windowEntry(const QWidget* window)
{
    const QRect geometry = window->geometry();
    QJsonArray widgets;
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isWindow())
            widgets.append(widgetEntry(widget));
    }
    return {{"class", window->metaObject()->className()},
            {"name", window->objectName()},
            {"title", titleOf(window)},
            {"geometry", QJsonArray{geometry.x(), geometry.y(), geometry.width(), geometry.height()}},
            {"active", window->isActiveWindow()},
            {"widgets", widgets}};
}

} // namespace

QJsonObject screenTree()
{
    QJsonArray windows;
    for (const QWidget* window : QWSServer::clientWindows())
        windows.append(windowEntry(window));
    return {{"windows", windows}};
}
