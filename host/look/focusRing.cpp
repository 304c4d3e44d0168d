#include "host/look/focusRing.h"
#include "host/look/buttonLook.h"
#include "host/look/look.h"
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QToolButton>

namespace {

constexpr int kLabelAir = 4; // between the ring and what it goes round

QPointer<QWidget> g_focused;

// The toolkit's frame follows its widget within the window that both are in.
class RingFrame : public QFocusFrame
{
protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (widget() && parentWidget() && !parentWidget()->isAncestorOf(widget()))
            followIntoOtherWindow(widget());
        return QFocusFrame::eventFilter(watched, event);
    }

private:
    // What the widget lies in was moved to another window.
    void followIntoOtherWindow(QWidget* moved)
    {
        setWidget(nullptr);
        if (moved->hasFocus())
            setWidget(moved);
    }
};

FocusShape roundTick(const QAbstractButton* button, const QRect& rect)
{
    QStyleOptionButton option;
    option.initFrom(button);
    option.rect = rect;
    option.text = button->text();
    const bool isRadio = qobject_cast<const QRadioButton*>(button);
    const QStyle* style = button->style();
    const QRect mark = style->subElementRect(
        isRadio ? QStyle::SE_RadioButtonIndicator : QStyle::SE_CheckBoxIndicator, &option, button);
    FocusShape shape;
    shape.rect = mark;
    shape.corner = isRadio ? mark.height() / 2.0 : look::kCorner;
    if (button->text().isEmpty())
        return shape;
    const int labelLeft =
        mark.right() + 1 + style->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, &option, button);
    const int labelWidth = button->fontMetrics().horizontalAdvance(button->text());
    shape.rect.setRight(qMin(labelLeft + labelWidth, rect.right()));
    shape.rect.adjust(-kLabelAir, -kLabelAir, kLabelAir, kLabelAir);
    shape.corner = isRadio ? shape.rect.height() / 2.0 : look::kRowCorner;
    return shape;
}

} // namespace

QWidget* focusedWidget()
{
    return g_focused;
}

FocusShape focusShape(const QWidget* widget, const QRect& rect)
{
    FocusShape shape;
    shape.rect = rect;
    shape.corner = look::kCorner;
    if (qobject_cast<const QRadioButton*>(widget) || qobject_cast<const QCheckBox*>(widget))
        return roundTick(static_cast<const QAbstractButton*>(widget), rect);
    if (const QAbstractItemView* view = qobject_cast<const QAbstractItemView*>(widget)) {
        const bool showsRow =
            view->currentIndex().isValid() && view->selectionMode() != QAbstractItemView::NoSelection;
        shape.isNone = showsRow || !view->isEnabled();
        shape.hasLine = true;
        shape.corner = look::kPanelCorner;
        return shape;
    }
    if (qobject_cast<const QTabBar*>(widget) || !widget || widget->isWindow()) {
        shape.isNone = true;
        return shape;
    }
    if (const ButtonLook* look = ButtonLook::of(widget)) {
        shape.hasLine = !look->ofBox && (look->hasFace() || look->transparent || look->noLine);
        shape.corner = look->isRound                    ? rect.height() / 2.0
                       : look->hasFace() || look->ofBox ? look::kRowCorner
                                                        : look::kCorner;
        return shape;
    }
    const bool isPush = qobject_cast<const QPushButton*>(widget) || qobject_cast<const QToolButton*>(widget);
    if (qobject_cast<const QAbstractButton*>(widget) && !isPush) {
        shape.isNone = true; // a button of its own class draws its focus itself
        return shape;
    }
    const bool hasBlueEdge =
        qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
        qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QPushButton*>(widget);
    shape.hasLine = !hasBlueEdge;
    return shape;
}

focusRing::focusRing(QObject* parent) : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this, &focusRing::follow);
}

// While another window is in front the ring of the page below stays as it is, until something in front gets
// the focus. An open list leaves it at its combo box.
void focusRing::follow(QWidget* old, QWidget* widget)
{
    if (!widget && !(old && old->window() == QApplication::activeWindow()))
        return;
    if (widget && widget->window()->windowType() == Qt::Popup)
        return;
    disconnect(m_rows);
    g_focused = widget && !widget->isWindow() ? widget : nullptr;
    if (!m_frame && g_focused) {
        m_frame = new RingFrame;
        m_frame->setObjectName(QStringLiteral("focusRing"));
    }
    if (m_frame)
        m_frame->setWidget(g_focused);
    const QAbstractItemView* view = qobject_cast<QAbstractItemView*>(widget);
    if (view && view->selectionModel()) {
        m_rows = connect(view->selectionModel(), &QItemSelectionModel::currentChanged, m_frame,
                         qOverload<>(&QWidget::update));
    }
}
