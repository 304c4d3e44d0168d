#pragma once
// A value of several numbers, each in an edit of its own, in one row. User-interface thread.
#include <QWidget>
#include <initializer_list>

class QFrame;
class QLineEdit;

struct tagRowEdit
{
    QLineEdit* pEdit;
    const char* szName; // of the widget
    int nWidth;         // pixels
};

// Lays the edits out from the frame's left side, with the separator between them. They take digits alone, and
// an edit that gets the focus has all of its text selected, so that what is typed takes its place.
void editRowSetUp(QFrame* frame, const char* separator, std::initializer_list<tagRowEdit> edits);
// "%.2d".
void editRowShow(QLineEdit* edit, int number);

// A frame in the place of a form's placeholder, which is deleted later. Null for null.
template <class T>
T* editRowReplace(QWidget* placeholder)
{
    if (!placeholder)
        return nullptr;
    T* frame = new T(placeholder->parentWidget());
    frame->setObjectName(placeholder->objectName());
    frame->setGeometry(placeholder->geometry());
    placeholder->hide();
    placeholder->deleteLater();
    return frame;
}
