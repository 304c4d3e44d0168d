#pragma once
// The house look of common widgets. User-interface thread.
#include "support/host/api.h"
#include <QRect>
#include <QString>

class QFrame;
class QLabel;
class QLineEdit;
class QListWidget;
class QObject;
class QTableWidget;
class QWidget;

HX_HOST_API void qResetTableWidgetContent(QTableWidget* table); // removes all rows and what they own
// Single row selection without grid, headers and editing; header: show the horizontal header.
HX_HOST_API void SetTabWgtNormalProperty(QTableWidget* table, bool header);
HX_HOST_API void SetTabWgtScrollStyle(QTableWidget* table);
HX_HOST_API void SetQListWidgetTransparent(QListWidget* list);
// path: device path of the picture behind the frame's children.
HX_HOST_API void SetBackgroundToFrame(QFrame* frame, const char* path);
HX_HOST_API void SetLabel(QLabel* label); // transparent, no line, the bars' text size
// size in pixels; weight 0 to 99 as 50 normal and 75 bold, -1 keeps it.
HX_HOST_API void setFontStyle(int size, int weight, QWidget* widget, bool antialias);
// Shows text from its position from on.
HX_HOST_API void SetQLineTextEx(QLineEdit* edit, const QString& text, int from);
HX_HOST_API QRect qMapRectToGlobal(QWidget* widget, const QRect& rect);
// A label in the look of SetLabel() that makes its text smaller, and then breaks it, rather than cutting it.
HX_HOST_API QLabel* qCreateLineLabel(QWidget* parent);
// The phone's OK: Return, Enter of a numeric block, or Select. key: Qt::Key.
HX_HOST_API bool qIsOkKey(int key);
// True when child is parent or lies below it.
HX_HOST_API bool isChildOf(QObject* child, QObject* parent);
