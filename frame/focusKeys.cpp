#include "frame/focusKeys.h"
#include "frame/pageFrame.h"
#include "support/host/ime.h"
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>

namespace {

bool isOfKind(QWidget* widget, PAGE_FOCUS kind)
{
    switch (kind) {
    case FOCUS_EDIT:
        return qobject_cast<QLineEdit*>(widget) != nullptr;
    case FOCUS_COMBO:
        return qobject_cast<QComboBox*>(widget) != nullptr;
    case FOCUS_TABLE:
        return qobject_cast<QTableWidget*>(widget) != nullptr;
    default:
        return kind == FOCUS_ANY;
    }
}

bool fits(const tagFocusKeys& row, QWidget* widget)
{
    return row.pWidget ? row.pWidget == widget : isOfKind(widget, row.eFocus);
}

QString methodOf(QWidget* widget)
{
    const QString method = qGetCurrentIME(widget);
    return method.isEmpty() ? QString("2aB") : method;
}

void showKey(const PageFrame& frame, const char* name, KEY_SHOWS shows, QWidget* widget)
{
    const int index = frame.m_pSoftKeyBar->FindButton(name);
    if (index < 0 || shows == SHOWS_AS_BEFORE)
        return;
    const QString title = shows == SHOWS_METHOD       ? methodOf(widget)
                          : shows == SHOWS_OWN_METHOD ? qGetCurrentIME(widget)
                          : shows == SHOWS_LABEL      ? frame.SoftKeyLabel(index)
                                                      : QString();
    frame.m_pSoftKeyBar->SetButtonTitle(index, title);
}

void showKeys(const PageFrame& frame, const tagFocusKeys& row, QWidget* widget)
{
    showKey(frame, "IME", row.eIme, widget);
    showKey(frame, "Delete", row.eDelete, widget);
}

} // namespace

void FocusKeys::FocusIn(QWidget* widget, const PageFrame& frame) const
{
    for (const tagFocusKeys& row : m_rows) {
        if (widget && fits(row, widget))
            return showKeys(frame, row, widget);
    }
}

void FocusKeys::FocusOut(QWidget* widget, const PageFrame& frame) const
{
    for (const tagFocusKeys& row : m_rows) {
        if (row.eFocus == FOCUS_LEFT_EDIT && isOfKind(widget, FOCUS_EDIT))
            return showKeys(frame, row, widget);
    }
}
