#pragma once
// The ring around whatever has the focus, in every window, drawn outside of it.
#include <QFocusFrame>
#include <QObject>
#include <QPointer>
#include <QRect>

// What the ring goes round within a widget.
struct FocusShape
{
    QRect rect;
    qreal corner = 0;
    bool hasLine = false; // the widget has no blue edge of its own, so the ring brings one
    bool isNone = false;  // the widget shows its focus inside: a list with a current row, a tab
};

// rect: the widget's own rectangle, in any coordinates.
FocusShape focusShape(const QWidget* widget, const QRect& rect);
// The widget that the ring goes round; null when nothing has the focus.
QWidget* focusedWidget();

class focusRing : public QObject
{
    Q_OBJECT
public:
    explicit focusRing(QObject* parent);

private:
    void follow(QWidget* old, QWidget* widget);
    QPointer<QFocusFrame> m_frame;
    QMetaObject::Connection m_rows; // of the list that has the focus
};
