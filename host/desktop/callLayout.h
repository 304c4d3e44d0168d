#pragma once
// Where things are on the call screen. User-interface thread.
#include <QRect>

class Ui_frmCall;

enum CALL_LAYOUT {
    CALL_LAYOUT_WHOLE,
    CALL_LAYOUT_BESIDE,        // the signage frame
    CALL_LAYOUT_PAD,           // for tones, at the right
    CALL_LAYOUT_ASKED,         // a call that comes in: its buttons below
    CALL_LAYOUT_ASKED_PICTURE, // the same, upon its picture
    CALL_LAYOUT_PICTURE,       // all upon the picture
    CALL_LAYOUT_FULL           // the picture over the whole screen, and nothing else
};

namespace callLayout {

inline constexpr QRect kDisplay(304, 66, 480, 288); // of the signage frame
inline constexpr QSize kPortrait(126, 126);
inline constexpr int kLineWidth = 272;

inline bool hasPicture(CALL_LAYOUT layout)
{
    return layout >= CALL_LAYOUT_ASKED_PICTURE;
}
// Moves the form's widgets, and sets what depends on the place: sizes of texts, where they are aligned,
// shades. Shows those that are about the picture and hides what has no place; the rest is shown by whoever
// fills it.
void apply(Ui_frmCall& ui, CALL_LAYOUT layout);

// Upon a picture: the other calls follow the state, where it says anything.
void putOthers(Ui_frmCall& ui);

} // namespace callLayout
