#pragma once
// From the positions of the touch panel to those of the screen, as the stored calibration says.
// User-interface thread.
#include "support/file/fileTools.h"
#include <QPoint>

class TouchMapping
{
public:
    enum : int { PANEL_COUNTS = 4096 }; // of the panel in each direction

    // Takes the stored mapping over when it has changed. Without one, and where it is damaged, the whole
    // panel is the whole screen.
    void look();
    // In pixels, on the screen whatever the panel says.
    QPoint toScreen(int x, int y) const;

private:
    void setWhole();
    bool read();
    bool m_bLooked = false;
    bool m_bStored = false;
    tagFileStat m_seen;
    // screen x = (ax x + bx y + cx) / scale, screen y likewise; in the order of the file
    int m_ax = 0, m_bx = 0, m_cx = 0, m_ay = 0, m_by = 0, m_cy = 0, m_nScale = 1;
};
