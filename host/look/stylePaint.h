#pragma once
// What the style draws, one function a widget kind.
#include <QPainter>
#include <QStyleOption>

class QWidget;

namespace stylePaint {

void field(QPainter& painter, const QRect& rect, QStyle::State state);
void buttonFace(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget);
void buttonLabel(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget);
void indicator(QPainter& painter, const QStyleOption& option, bool round);
void combo(QPainter& painter, const QStyleOptionComboBox& option);
void spinBox(QPainter& painter, const QStyleOptionSpinBox& option);
void slider(QPainter& painter, const QStyleOptionSlider& option);
// The part of the bar that the finger drags, over the whole width of the bar.
QRect scrollThumb(const QStyleOptionSlider& option);
void scrollBar(QPainter& painter, const QStyleOptionSlider& option);
void tab(QPainter& painter, const QStyleOptionTab& option);
void progress(QPainter& painter, const QStyleOptionProgressBar& option);
// The panel of a list, a table or a text; widget may be null.
void panel(QPainter& painter, const QStyleOption& option, const QWidget* widget);
void rowFace(QPainter& painter, const QStyleOptionViewItem& option, const QWidget* widget);
void focusFrame(QPainter& painter, const QStyleOption& option);
// True for the list below a combo box.
bool isComboList(const QWidget* widget);
// True for the first column of a table, and for every row of a list.
bool isFirstCell(const QStyleOptionViewItem& option, const QWidget* widget);

inline constexpr int kChevronWidth = 36;
inline constexpr int kFieldPadding = 11; // from a field's edge to its text
inline constexpr int kSliderGroove = 6;
inline constexpr int kSliderHandle = 22;
inline constexpr int kFocusMargin = 8; // the focus frame reaches that far out

} // namespace stylePaint
