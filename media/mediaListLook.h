#pragma once
// The look of the lists of media files. User-interface thread.
class QTableWidget;
class QWidget;

// What the rows of a list keep for MediaNameDelegate: how many of the name's letters are its folder's.
enum : int { MEDIA_SHORT_NAME_ROLE = 0x101 };

// Rows of 40 pixels without headers, grid and scroll bars; the second of two columns is 40 wide, for an icon
// of 32 pixels.
void setupMediaFileList(QTableWidget* table);
// After the table got another width.
void fitMediaFileList(QTableWidget* table);
// The colours of such a list, over whatever lies behind it.
void setMediaListColours(QWidget* list);
