#pragma once
// A window of the host's that lends a part of itself to the signage frame. User-interface thread.
#include "support/host/signage.h"
#include <QRect>

class QPainter;
class QWidget;

class displayPlace
{
public:
    // parent: the window, or null for the whole screen; the frame takes the first rectangle it is told for a
    // window ever.
    displayPlace(E_NDECKWINDOW_TYPE type, QWidget* parent, const QRect& rect);
    // False when the client shows nothing. A frame that came by itself is drawn anew, as this place's.
    bool show();
    // Also one that came by itself, and when the client has just been switched off, and does not listen any
    // more. A frame that is in another window stays there.
    void hide();
    // The window is not the active one any more: the frame leaves it, and may come back by itself.
    void windowLeft() { m_bShown = false; }
    bool isShown() const { return m_bShown && (!m_pParent || hasFrame()); }
    const QRect& rect() const { return m_rect; }
    // The mount around the frame, on the dark pages.
    void paintMount(QPainter& painter) const;

private:
    bool call(int show) const;
    // It is here, and not hidden.
    bool hasFrame() const;
    QWidget* frame() const;
    E_NDECKWINDOW_TYPE m_eType;
    QWidget* m_pParent;
    QRect m_rect;
    bool m_bShown = false;
};
