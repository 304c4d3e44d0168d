#pragma once
#include "support/host/api.h"
#include <functional>

class QPixmap;
class QRect;
class QWidget;

enum { BOX_NOTE = 0, BOX_QUESTION = 1 };

// A modal box; returns when it is closed. title and text are UTF-8, already translated. type: BOX_NOTE
// has one button, BOX_QUESTION two; returns non-zero on yes. timeoutMs: closes by itself after so many
// milliseconds (as "no"); -1 never. User-interface thread.
HX_HOST_API int xMessageBox(const char* title, const char* text, int type, QWidget* parent, int timeoutMs);

// What a box of a page's own lies on, as large as the screen: what is there, dimmed and without other boxes,
// and the shadow of a box at rect. window is that box, and covers the screen. User-interface thread.
HX_HOST_API QPixmap qBoxBackdrop(QWidget* window, const QRect& rect);

// A modal box with a bar that fills and the button "Cancel", while another thread works. User-interface
// thread.
class HX_HOST_API xProgressBox
{
public:
    // title and text are UTF-8, already translated. percent: asked while the box is seen, 0 to 100.
    xProgressBox(const char* title, const char* text, QWidget* parent, std::function<int()> percent);
    ~xProgressBox();
    xProgressBox(const xProgressBox&) = delete;
    xProgressBox& operator=(const xProgressBox&) = delete;

    // Shows it until Finish() is called, 1, or until a person cancels it, 0; also 0 when parent has gone.
    // What comes up over the page, as a call does, takes the box off the screen but cancels nothing: it comes
    // back with the page, and Exec() does not return before.
    int Exec();
    void Finish();

private:
    struct Private;
    Private* m_p;
};
