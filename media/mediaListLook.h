#pragma once
// The look of the lists of media files. User-interface thread.
class QWidget;

// The colours of such a list, over whatever lies behind it.
void setMediaListColours(QWidget* list);
