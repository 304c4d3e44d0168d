#pragma once
// The blocks of a GIF file. Any thread.
#include <QSize>

class PictureSource;

// Pixels of the screen, or of a frame that is larger; empty when the file is cut short anywhere before its
// last block, or its first frame has fewer pixels than it says.
QSize gifReadSize(PictureSource& source);
