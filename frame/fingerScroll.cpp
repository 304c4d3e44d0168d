#include "frame/fingerScroll.h"
#include <QAbstractItemView>
#include <QMouseEvent>
#include <QScrollBar>

FingerScroll::FingerScroll(QAbstractItemView* view) : QObject(view), m_pView(view)
{
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->viewport()->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_nPressed = static_cast<QMouseEvent*>(event)->pos().y();
        m_nOffset = m_pView->verticalScrollBar()->value();
        m_bDragging = false;
        break;
    case QEvent::MouseMove:
        return m_nPressed >= 0 && drag(static_cast<QMouseEvent*>(event)->pos().y());
    case QEvent::MouseButtonRelease:
        m_nPressed = -1;
        return m_bDragging;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// The list itself would select whatever row the finger comes over.
bool FingerScroll::drag(int y)
{
    m_bDragging = m_bDragging || qAbs(y - m_nPressed) > SLACK;
    if (m_bDragging)
        m_pView->verticalScrollBar()->setValue(m_nOffset + m_nPressed - y);
    return true;
}
