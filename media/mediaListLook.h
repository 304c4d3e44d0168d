#pragma once
// The look of the lists of media files. User-interface thread.
class QListView;
class QRect;
class QTableWidget;
class QWidget;

// Rows of 40 pixels without headers, grid and scroll bars; the second of two columns is 40 wide, for an icon
// of 32 pixels.
void setupMediaFileList(QTableWidget* table);
// After the table got another width.
void fitMediaFileList(QTableWidget* table);
// The rows of a list of another kind: as high, in the same colours, with icons of the same size.
void setupMediaRows(QListView* list);
// Puts the list there, or, without a preview beside it, over the width of the page, and the card that it lies
// on around it.
void placeMediaList(QWidget* list, QWidget* card, const QRect& besidePreview, bool hasPreview);
