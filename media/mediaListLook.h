#pragma once
// The look of the lists of media files. User-interface thread.
#include <QColor>

class QTableWidget;
class QWidget;

// Of what is said beside a name or a picture.
inline const QColor kMediaSecondaryText(138, 152, 164);

// Rows of 40 pixels without headers, grid and scroll bars; the second of two columns is 40 wide, for an icon
// of 32 pixels.
void setupMediaFileList(QTableWidget* table);
// After the table got another width.
void fitMediaFileList(QTableWidget* table);
// The colours of such a list, over whatever lies behind it.
void setMediaListColours(QWidget* list);
