#include "frame/myWidget.h"
#include "frame/tableRows.h"
#include "support/host/ui.h"
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTimer>

MyWidget::MyWidget(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info)
{
    armLeftBarTimer();
}

// No class has this slot: whoever opens a page sets its bar. The timer is armed by the slot's name, and a
// connection to a name that is not there would only write a warning for each page that is built.
void MyWidget::armLeftBarTimer()
{
    if (metaObject()->indexOfSlot("setLeftBar()") >= 0)
        QTimer::singleShot(1000, this, SLOT(setLeftBar()));
}

bool MyWidget::eventFilter(QObject* watched, QEvent* event)
{
    // The window below the widgets gets each event first; only what reaches a widget counts.
    if (!watched->isWidgetType())
        return false;
    QWidget* receiver = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: // the second of two quick taps
    case QEvent::MouseMove:
        return openCombo() && !qobject_cast<QScrollBar*>(receiver);
    case QEvent::MouseButtonRelease:
        return filterRelease(receiver, static_cast<QMouseEvent*>(event));
    case QEvent::FocusIn:
        return filterFocusIn(receiver, event);
    case QEvent::Show:
        if (receiver == this)
            focusFirstChild();
        return false;
    case QEvent::KeyPress:
        return filterKeyPress(receiver, static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

// OK in a field presses no button of the page: a dialog would take the nearest one for its default.
void MyWidget::keyPressEvent(QKeyEvent* event)
{
    if (!qIsOkKey(event->key()))
        QDialog::keyPressEvent(event);
}

QComboBox* MyWidget::focusCombo() const
{
    return qobject_cast<QComboBox*>(focusWidget());
}

// The combo box that has the focus, when its list is open.
QComboBox* MyWidget::openCombo() const
{
    QComboBox* box = focusCombo();
    return box && box->view()->isVisible() ? box : nullptr;
}

// The first tap on a row only makes it the current one; the list stays open for a second tap.
bool MyWidget::filterRelease(QWidget* receiver, QMouseEvent* event)
{
    QComboBox* box = openCombo();
    if (!box || qobject_cast<QScrollBar*>(receiver))
        return false;
    QAbstractItemView* list = box->view();
    const QPoint inList = list->viewport()->mapFromGlobal(event->globalPosition().toPoint());
    const QModelIndex current = list->currentIndex();
    const QModelIndex touched = list->indexAt(inList);
    if (!current.isValid() || !touched.isValid() || current == touched)
        return false;
    if (inList.y() < 0 || inList.y() > list->frameGeometry().height())
        return false;
    list->setCurrentIndex(touched);
    return true;
}

// The toolkit lets the tab focus only on to the checked radio button of a group, and so the arrow keys.
bool MyWidget::filterFocusIn(QWidget* receiver, QEvent* event)
{
    if (QLineEdit* edit = qobject_cast<QLineEdit*>(focusWidget()))
        edit->setCursor(Qt::ArrowCursor);
    QRadioButton* radio = qobject_cast<QRadioButton*>(receiver);
    if (!radio)
        return false;
    static_cast<QObject*>(radio)->event(event);
    if (radio->group()) {
        for (QAbstractButton* button : radio->group()->buttons()) {
            if (button->isCheckable())
                button->setFocusPolicy(Qt::FocusPolicy(button->focusPolicy() | Qt::TabFocus));
        }
    }
    return true;
}

void MyWidget::focusFirstChild()
{
    for (QObject* object : children()) {
        QWidget* child = object->isWidgetType() ? static_cast<QWidget*>(object) : nullptr;
        if (child && child->focusPolicy() != Qt::NoFocus && child->isVisible() && child->isEnabled()) {
            child->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

bool MyWidget::filterKeyPress(QWidget* receiver, QKeyEvent* event)
{
    if (!isChildOf(receiver, this))
        return false;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressOk(receiver);
        return false;
    case Qt::Key_Left:
        return stepSideways(-1);
    case Qt::Key_Right:
        return stepSideways(1);
    case Qt::Key_Up:
        return stepUpOrDown(false);
    case Qt::Key_Down:
        return stepUpOrDown(true);
    default:
        return false;
    }
}

void MyWidget::pressOk(QWidget* receiver)
{
    if (QComboBox* box = qobject_cast<QComboBox*>(receiver)) {
        if (!box->view()->isVisible())
            box->showPopup();
    } else if (QCheckBox* check = qobject_cast<QCheckBox*>(receiver)) {
        check->setChecked(!check->isChecked());
    } else if (QRadioButton* radio = qobject_cast<QRadioButton*>(receiver)) {
        radio->toggle();
    }
}

bool MyWidget::stepSideways(int step)
{
    if (qobject_cast<QCheckBox*>(focusWidget()))
        return true;
    QComboBox* box = focusCombo();
    if (!box || openCombo())
        return false;
    const int count = box->count();
    const int index = box->currentIndex() + step;
    box->setCurrentIndex(index < 0 ? count - 1 : index >= count ? 0 : index);
    return true;
}

bool MyWidget::stepUpOrDown(bool next)
{
    if (QComboBox* box = openCombo())
        return stepInOpenList(box, next);
    if (QTableWidget* table = qobject_cast<QTableWidget*>(focusWidget())) {
        tableStepRow(table, next ? 1 : -1);
        return true;
    }
    focusNextPrevChild(next);
    if (qobject_cast<QTableWidget*>(focusWidget()))
        focusNextPrevChild(next);
    return true;
}

// Within the list the toolkit steps; at its end the step goes round.
bool MyWidget::stepInOpenList(QComboBox* box, bool next)
{
    QAbstractItemView* list = box->view();
    const int last = box->count() - 1;
    if (list->currentIndex().row() != (next ? last : 0))
        return false;
    list->setCurrentIndex(list->currentIndex().siblingAtRow(next ? 0 : last));
    return true;
}
