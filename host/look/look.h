#pragma once
// The phone's look: its colours, sizes, fonts and the drawing that more than one widget shares.
// User-interface thread.
//
//     hostPrepareFonts();                 before the application object, with the device root set
//     QApplication application(...);
//     hostApplyLook(application);         once, before the first widget
//
// After that every common widget (edits, combo boxes, buttons, check boxes, lists, tabs, ...) is drawn in
// the phone's look, whatever has the focus carries the ring, and windows are kept in stacking order. A widget
// that paints itself takes all it needs from the namespace look:
//
//     look::kText, look::kBlue, ...       colours: look::colour(look::kText)
//     look::font(look::kTextSize)         the phone's font in pixels; semiBold for titles
//     look::paintBar(painter, rect)       top bar; paintLeftBar, paintSoftKeys, paintPage likewise
//     look::paintBox(...)                 a filled, outlined rectangle with round corners
//     look::paintRing(...)                the soft ring of what has the focus; a class derived straight from
//                                         QAbstractButton gets none and shows its focus itself
//     look::paintShadow(...)              the soft shadow below a tile or a box
//     look::paintFitted(...)              text that wraps and shrinks rather than being cut
#include "support/host/api.h"
#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

class QApplication;
class QPainter;

// Makes the fonts of "/phone/resource/fonts" the only ones of the process; a device root without them leaves
// the fonts of the machine.
HX_HOST_API void hostPrepareFonts();
HX_HOST_API void hostApplyLook(QApplication& application);

namespace look {

// Pixels.
inline constexpr int kScreenWidth = 800;
inline constexpr int kScreenHeight = 480;
inline constexpr int kTopBarHeight = 40;
inline constexpr int kLeftBarWidth = 152;
inline constexpr int kSoftKeyWidth = 200;
inline constexpr int kSoftKeyHeight = 40;
inline constexpr int kPageHeight = 400; // between the bars
inline constexpr int kTileSize = 96;
inline constexpr int kEditHeight = 36;
inline constexpr int kRowHeight = 36;
inline constexpr int kTabHeight = 40;
inline constexpr int kIndicatorSize = 22;
inline constexpr int kCorner = 6;
inline constexpr int kRowCorner = 8;
inline constexpr int kPanelCorner = 10;
inline constexpr int kBoxCorner = 14;
inline constexpr int kRingWidth = 3;
inline constexpr int kSmallSize = 16;
inline constexpr int kHeadingSize = 17; // captions above a list
inline constexpr int kTextSize = 18;
inline constexpr int kTitleSize = 19;

inline constexpr QRgb kText = 0xff333b3e;
inline constexpr QRgb kTextDisabled = 0xbe5a5a5a;
inline constexpr QRgb kTextOnBar = 0xffffffff;
inline constexpr QRgb kHeading = 0xff24496f; // captions above a list
inline constexpr QRgb kBarTop = 0xff1d3b5c;
inline constexpr QRgb kBarBottom = 0xff14304d;
inline constexpr QRgb kSoftKey = 0xff14304d;
inline constexpr QRgb kSoftKeyPressed = 0xff24496f;
inline constexpr QRgb kSoftKeyGap = 0xff0e2338;
inline constexpr QRgb kLeftBarTop = 0xff24496f;
inline constexpr QRgb kLeftBarBottom = 0xff1a3655;
inline constexpr QRgb kPageTop = 0xfff6f9fc;
inline constexpr QRgb kPageBottom = 0xffe9eff6;
inline constexpr QRgb kSelection = 0xffc9def1;     // (201, 222, 241): rows and selected text
inline constexpr QRgb kSelectionPale = 0xffe3edf6; // the selected row of a list without the focus
inline constexpr QRgb kRowLine = 0xffdfe7ef;
inline constexpr QRgb kPanel = 0xfffdfefe;
inline constexpr QRgb kPanelLine = 0xffcbd8e4;
inline constexpr QRgb kField = 0xffffffff;
inline constexpr QRgb kFieldDisabled = 0xffeef2f6;
inline constexpr QRgb kFieldLine = 0xffb4c3d1;
inline constexpr QRgb kIndicatorLine = 0xff7f93a6;
inline constexpr QRgb kGlyph = 0xff5b7389; // chevrons
inline constexpr QRgb kBlue = 0xff2f80ed;  // focus, default button, whatever is on
inline constexpr QRgb kBluePressed = 0xff2368c8;
inline constexpr QRgb kButton = 0xffe6edf4;
inline constexpr QRgb kButtonPressed = 0xffcddbe8;
inline constexpr QRgb kRing = 0x382f80ed;
inline constexpr QRgb kDim = 0x730a172a; // over the page behind a box

QFont font(int pixels, bool semiBold = false);
inline QColor colour(QRgb argb)
{
    return QColor::fromRgba(argb);
}

// The gradient of the whole rectangle, from its top to its bottom edge.
void paintGradient(QPainter& painter, const QRect& rect, QRgb top, QRgb bottom);
void paintBar(QPainter& painter, const QRect& rect);
void paintLeftBar(QPainter& painter, const QRect& rect);
void paintSoftKeys(QPainter& painter, const QRect& rect);
// rect: a whole page of 800 by 480; the gradient runs between the bars.
void paintPage(QPainter& painter, const QRect& rect);

// A box with round corners. The line of width pixels lies inside rect; a transparent colour leaves it out.
void paintBox(QPainter& painter, const QRectF& rect, qreal corner, QRgb fill, QRgb line = 0, qreal width = 1);
// The soft ring around rect, outside of it.
void paintRing(QPainter& painter, const QRectF& rect, qreal corner);
// A chevron that points down or up, centred in rect.
void paintChevron(QPainter& painter, const QRect& rect, bool down, QRgb colour);
// The soft shadow of rect, to be painted before what throws it; softness: how far it reaches out, in pixels,
// opacity 0 to 1.
void paintShadow(QPainter& painter, const QRect& rect, int softness, qreal opacity);

// Text laid out within a width: wrapped at words, inside a word that is too long, at line ends.
struct FittedText
{
    QFont font;
    QStringList lines;
    int nLineHeight = 0; // pixels
    int height() const { return nLineHeight * int(lines.size()); }
};
// The largest font, from font's size down to smallest pixels, in which text needs at most maxLines lines and
// fits into size; at the smallest size it may be higher than size. A word is broken rather than made smaller
// than three quarters of font. What a text has beyond its first thousand characters is left out.
FittedText fitText(const QString& text, const QFont& font, const QSize& size, int maxLines,
                   int smallest = 10);
// Where even that has more lines, or is higher than size: the last line that has room ends in dots.
void cutToRoom(FittedText& fitted, const QSize& size, int maxLines);
// Paints it with the painter's pen; align: Qt alignment flags. A text that was not laid out before is cut to
// rect.
void paintFitted(QPainter& painter, const QRect& rect, int align, const FittedText& text);
void paintFitted(QPainter& painter, const QRect& rect, int align, const QString& text, const QFont& font,
                 int maxLines = 1);

} // namespace look
