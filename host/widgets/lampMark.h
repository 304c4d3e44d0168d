#pragma once
// The message lamp as a person sees it: a small red light on a dark bar. User-interface thread.
#include <QPoint>

class QPainter;

inline constexpr int kLampMarkSize = 22; // pixels, with its glow
// Nothing while the lamp is dark.
void paintLampMark(QPainter& painter, QPoint centre);
