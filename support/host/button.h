#pragma once
// Buttons with pictures. User-interface thread. Pictures are device paths.
#include "support/host/api.h"
#include <QPushButton>

class HX_HOST_API qUIPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit qUIPushButton(QWidget* parent = nullptr);
    // Qt alignment flags of the text; 0x81 is left and vertically centred.
    void setTextAlign(int flags);
    int textAlign() const;
};

// A push button named name at rect; parent owns it.
HX_HOST_API qUIPushButton* CreateUIPushButton(const QRect& rect, const char* name, QWidget* parent);
// All of these work on any push button, and tolerate null.
HX_HOST_API void SetButtonIcon(QPushButton* button, const char* picture);
HX_HOST_API void SetButtonNoLine(QPushButton* button);
HX_HOST_API void SetButtonTextAlign(QPushButton* button, int flags);
HX_HOST_API void SetButtonTransparent(QPushButton* button);
HX_HOST_API void SetButton3StatusImage(QPushButton* button, const char* normal, const char* pressed,
                                       const char* disabled);
// The pictures as set, for a page that asks: state 0 normal, 1 pressed, 2 disabled, 3 the icon.
HX_HOST_API QString GetButtonImage(const QPushButton* button, int state);
