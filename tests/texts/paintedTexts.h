#pragma once
// The texts that were painted fitted into their places, since the last call.
#include <QStringList>

// Those that did not fit in their full size.
QStringList takeCutTexts();
// Those that were painted beyond their places.
QStringList takeOverflows();
// The font of the text that was laid out and painted last, 0 for none since the last call.
int takePaintedPixels();
// A text that may be painted smaller.
void mayShrink(const QString& text);
