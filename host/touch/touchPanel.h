#pragma once
// A simulated touch panel, for a phone without one: what a finger does on it goes to whoever reads the raw
// device
// "/dev/input/TouchScreen", and as a touch to the screen, by way of the stored calibration. User-interface
// thread.
#include "host/touch/touchMapping.h"
#include <QByteArray>

class TouchPanel
{
public:
    static TouchPanel& instance();

    // Makes the raw device, a pipe in the device root; once. False where there is no root: a phone's own
    // panel is left to its drivers.
    bool start();
    // What the panel reports, in its own counts: a finger there, or moved. pressure: 0 lifts it.
    void report(int x, int y, int pressure);
    // The finger was lifted.
    void lift();

private:
    TouchPanel() = default;
    void send(const QByteArray& records);
    void drive(int pressure);

    QByteArray m_path; // of the pipe, on this machine; empty until the start
    int m_nPipe = -1;  // while somebody reads
    TouchMapping m_mapping;
    int m_nX = 0;
    int m_nY = 0;
    bool m_bDown = false;
    QPoint m_screen;
};
