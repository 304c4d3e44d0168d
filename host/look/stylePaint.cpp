#include "host/look/stylePaint.h"
#include "host/look/buttonLook.h"
#include "host/look/focusRing.h"
#include "host/look/look.h"
#include <QAbstractItemView>
#include <QHeaderView>
#include <QListView>
#include <QTableView>

namespace stylePaint {

namespace {

constexpr int kButtonPadding = 8;
constexpr int kIconGap = 8;
constexpr int kRowLineInset = 14;
constexpr int kRowInset = 3;
constexpr int kBoxButtonCorner = 8;

bool isOn(QStyle::State state, QStyle::State flag)
{
    return state & flag;
}

bool isEnabled(const QStyleOption& option)
{
    return isOn(option.state, QStyle::State_Enabled);
}

// A list whose keys are taken elsewhere, or that has the focus of its window, shows its row at full strength.
bool hasStrongSelection(const QWidget* view)
{
    if (!view || view->focusPolicy() == Qt::NoFocus)
        return true;
    const QWidget* focus = view->window()->focusWidget();
    return !focus || focus == view || isComboList(view);
}

struct Ends
{
    bool first = true;
    bool last = true;
};

Ends endsOf(const QStyleOptionViewItem& option, const QWidget* widget)
{
    const QTableView* table = qobject_cast<const QTableView*>(widget);
    if (!table)
        return {};
    const QHeaderView* header = table->horizontalHeader();
    const int visual = header->visualIndex(option.index.column());
    Ends ends;
    for (int i = 0; i < header->count(); ++i) {
        if (header->isSectionHidden(header->logicalIndex(i)))
            continue;
        ends.first = ends.first && i >= visual;
        ends.last = ends.last && i <= visual;
    }
    return ends;
}

void selection(QPainter& painter, const QRect& cell, const Ends& ends, int below, QRgb fill)
{
    QRectF shape = QRectF(cell).adjusted(0, 1, 0, -below);
    const qreal beyond = 2 * look::kRowCorner; // a cell in the middle has no corners of its own
    shape.adjust(ends.first ? kRowInset : -beyond, 0, ends.last ? -kRowInset : beyond, 0);
    painter.save();
    painter.setClipRect(cell, Qt::IntersectClip);
    look::paintBox(painter, shape, look::kRowCorner, fill);
    painter.restore();
}

QRgb buttonFill(const QStyleOptionButton& option, const ButtonLook* look)
{
    const bool isDown = isOn(option.state, QStyle::State_Sunken | QStyle::State_On);
    if (look && look->ofBox && (option.features & QStyleOptionButton::DefaultButton))
        return isDown ? look::kBluePressed : look::kBlue;
    if (!isEnabled(option))
        return look::kFieldDisabled;
    return isDown ? look::kButtonPressed : look::kButton;
}

void plainFace(QPainter& painter, const QStyleOptionButton& option, const ButtonLook* look)
{
    const QRgb fill = buttonFill(option, look);
    if (look && (look->ofBox || look->noLine)) {
        look::paintBox(painter, option.rect, kBoxButtonCorner, fill);
        return;
    }
    const bool hasFocus = isOn(option.state, QStyle::State_HasFocus);
    look::paintBox(painter, option.rect, look::kCorner, fill, hasFocus ? look::kBlue : look::kFieldLine,
                   hasFocus ? 2 : 1);
}

QColor buttonTextColour(const QStyleOptionButton& option, const ButtonLook* look)
{
    if (look && look->ofBox && (option.features & QStyleOptionButton::DefaultButton))
        return look::colour(look::kTextOnBar);
    return option.palette.color(isEnabled(option) ? QPalette::Active : QPalette::Disabled,
                                QPalette::ButtonText);
}

QPixmap buttonIcon(const QStyleOptionButton& option, const ButtonLook* look)
{
    if (look && !look->pictures[ButtonLook::Icon].isNull())
        return look->pictures[ButtonLook::Icon];
    if (option.icon.isNull())
        return QPixmap();
    return option.icon.pixmap(option.iconSize, isEnabled(option) ? QIcon::Normal : QIcon::Disabled);
}

} // namespace

bool isComboList(const QWidget* widget)
{
    return widget &&
           (widget->inherits("QComboBoxListView") ||
            (widget->parentWidget() && widget->parentWidget()->inherits("QComboBoxPrivateContainer")));
}

bool isFirstCell(const QStyleOptionViewItem& option, const QWidget* widget)
{
    return endsOf(option, widget).first;
}

void field(QPainter& painter, const QRect& rect, QStyle::State state)
{
    const bool hasFocus = isOn(state, QStyle::State_HasFocus);
    const QRgb fill = isOn(state, QStyle::State_Enabled) ? look::kField : look::kFieldDisabled;
    look::paintBox(painter, rect, look::kCorner, fill, hasFocus ? look::kBlue : look::kFieldLine,
                   hasFocus ? 2 : 1);
}

void buttonFace(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget)
{
    const ButtonLook* look = ButtonLook::of(widget);
    if (look && look->hasFace()) {
        const int state = !isEnabled(option)                                            ? ButtonLook::Disabled
                          : isOn(option.state, QStyle::State_Sunken | QStyle::State_On) ? ButtonLook::Pressed
                                                                                        : ButtonLook::Normal;
        painter.drawPixmap(option.rect.topLeft(), look->face(state, option.rect.size()));
        return;
    }
    const bool isFlat = option.features & QStyleOptionButton::Flat;
    const bool isDown = isOn(option.state, QStyle::State_Sunken | QStyle::State_On);
    if (((look && look->transparent) || isFlat)) {
        if (isDown)
            look::paintBox(painter, option.rect, look::kCorner, look::kRing);
        return;
    }
    plainFace(painter, option, look);
}

void buttonLabel(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget)
{
    const ButtonLook* look = ButtonLook::of(widget);
    const QPixmap icon = buttonIcon(option, look);
    QRect area = option.rect;
    if (option.text.isEmpty()) {
        painter.drawPixmap(area.center() - QPoint((icon.width() - 1) / 2, (icon.height() - 1) / 2), icon);
        return;
    }
    area.adjust(kButtonPadding, 0, -kButtonPadding, 0);
    if (!icon.isNull()) {
        const QSize shown = icon.size() / icon.devicePixelRatio();
        painter.drawPixmap(area.left(), area.top() + (area.height() - shown.height()) / 2, icon);
        area.setLeft(area.left() + shown.width() + kIconGap);
    }
    painter.setPen(buttonTextColour(option, look));
    const int align = look && look->align >= 0 ? look->align : int(Qt::AlignCenter);
    const QFont font = widget ? widget->font() : painter.font();
    const QString text = QString(option.text).remove(QLatin1Char('&'));
    look::paintFitted(painter, area, align, text, font, text.contains(QLatin1Char('\n')) ? 2 : 1);
}

void indicator(QPainter& painter, const QStyleOption& option, bool round)
{
    const QRectF rect = option.rect;
    const bool isTicked = isOn(option.state, QStyle::State_On);
    const bool isBlue = isEnabled(option) && (isTicked || isOn(option.state, QStyle::State_HasFocus));
    const qreal corner = round ? rect.height() / 2 : look::kCorner;
    const QRgb mark = isEnabled(option) ? look::kBlue : look::kFieldLine;
    const QRgb line = isBlue ? look::kBlue : isEnabled(option) ? look::kIndicatorLine : look::kFieldLine;
    const QRgb fill = isEnabled(option) ? look::kField : look::kFieldDisabled;
    look::paintBox(painter, rect, corner, isTicked && !round ? mark : fill, isTicked && !round ? mark : line,
                   2);
    if (!isTicked)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (round) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(look::colour(mark));
        painter.drawEllipse(rect.center(), 5, 5);
    } else {
        painter.setPen(QPen(look::colour(look::kField), 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.translate(rect.topLeft());
        painter.drawPolyline(QPolygonF({QPointF(6, 11.5), QPointF(9.5, 15), QPointF(16, 7.5)}));
    }
    painter.restore();
}

void combo(QPainter& painter, const QStyleOptionComboBox& option)
{
    const bool isOpen = isOn(option.state, QStyle::State_On);
    field(painter, option.rect, isOpen ? option.state | QStyle::State_HasFocus : option.state);
    const QRect chevron(option.rect.right() - kChevronWidth, option.rect.top(), kChevronWidth,
                        option.rect.height());
    look::paintChevron(painter, chevron, true, isEnabled(option) ? look::kGlyph : look::kFieldLine);
}

void spinBox(QPainter& painter, const QStyleOptionSpinBox& option)
{
    field(painter, option.rect, option.state);
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const int half = option.rect.height() / 2;
    const QRect up(option.rect.right() - kChevronWidth, option.rect.top(), kChevronWidth, half);
    const QRgb active = look::kGlyph;
    look::paintChevron(painter, up.translated(0, 1), false,
                       option.stepEnabled & QAbstractSpinBox::StepUpEnabled ? active : look::kFieldLine);
    look::paintChevron(painter, up.translated(0, half - 1), true,
                       option.stepEnabled & QAbstractSpinBox::StepDownEnabled ? active : look::kFieldLine);
}

void slider(QPainter& painter, const QStyleOptionSlider& option)
{
    const bool across = option.orientation == Qt::Horizontal;
    const QRect rect = option.rect;
    const int room = (across ? rect.width() : rect.height()) - kSliderHandle;
    const int at = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                   room, option.upsideDown);
    const int middle = across ? rect.center().y() + 1 : rect.center().x() + 1;
    const int half = kSliderHandle / 2;
    const QRectF groove = across ? QRectF(rect.left() + half, middle - kSliderGroove / 2, room, kSliderGroove)
                                 : QRectF(middle - kSliderGroove / 2, rect.top() + half, kSliderGroove, room);
    QRectF filled = groove;
    if (across)
        filled.setWidth(at);
    else
        filled.setTop(groove.top() + at);
    const QRgb on = isEnabled(option) ? look::kBlue : look::kFieldLine;
    look::paintBox(painter, groove, kSliderGroove / 2.0, look::kFieldLine);
    look::paintBox(painter, filled, kSliderGroove / 2.0, on);
    const QRectF handle = across ? QRectF(rect.left() + at, middle - half, kSliderHandle, kSliderHandle)
                                 : QRectF(middle - half, rect.top() + at, kSliderHandle, kSliderHandle);
    look::paintBox(painter, handle, half, look::kField, on, 2);
}

QRect scrollThumb(const QStyleOptionSlider& option)
{
    const bool across = option.orientation == Qt::Horizontal;
    const int length = across ? option.rect.width() : option.rect.height();
    const int range = option.maximum - option.minimum;
    if (range <= 0)
        return option.rect;
    const int thumb =
        qMin(length, qMax(24, int(qint64(length) * option.pageStep / (range + option.pageStep))));
    const int at = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                   length - thumb, option.upsideDown);
    return across ? QRect(option.rect.left() + at, option.rect.top(), thumb, option.rect.height())
                  : QRect(option.rect.left(), option.rect.top() + at, option.rect.width(), thumb);
}

void scrollBar(QPainter& painter, const QStyleOptionSlider& option)
{
    if (option.maximum <= option.minimum)
        return;
    const bool across = option.orientation == Qt::Horizontal;
    const QRect thumb = scrollThumb(option);
    const QRectF shape = across ? QRectF(thumb.left(), thumb.top() + 2, thumb.width(), 6)
                                : QRectF(thumb.left() + 2, thumb.top(), 6, thumb.height());
    look::paintBox(painter, shape, 3,
                   isOn(option.state, QStyle::State_Sunken) ? look::kGlyph : look::kFieldLine);
}

void tab(QPainter& painter, const QStyleOptionTab& option)
{
    const bool isCurrent = isOn(option.state, QStyle::State_Selected);
    const QRectF face = QRectF(option.rect).adjusted(2, 2, -2, -2);
    if (isOn(option.state, QStyle::State_HasFocus) && isCurrent)
        look::paintBox(painter, face, look::kRowCorner, look::kSelection, look::kBlue, 2);
    else if (isCurrent)
        look::paintBox(painter, face, look::kRowCorner, look::kSelection);
    painter.setPen(look::colour(isCurrent ? look::kHeading : look::kText));
    look::paintFitted(painter, face.toRect().adjusted(6, 0, -6, 0), Qt::AlignCenter,
                      QString(option.text).remove(QLatin1Char('&')), look::font(look::kTextSize, isCurrent));
}

void progress(QPainter& painter, const QStyleOptionProgressBar& option)
{
    const QRectF groove(option.rect.left(), option.rect.center().y() - 3, option.rect.width(), 8);
    look::paintBox(painter, groove, 4, look::kFieldLine);
    const int range = option.maximum - option.minimum;
    if (range <= 0 || option.progress <= option.minimum)
        return;
    QRectF done = groove;
    done.setWidth(groove.width() * (option.progress - option.minimum) / range);
    look::paintBox(painter, done, 4, look::kBlue);
}

void panel(QPainter& painter, const QStyleOption& option, const QWidget* widget)
{
    if (isComboList(widget) || (widget && widget->inherits("QComboBoxPrivateContainer")))
        return;
    QRect rect = option.rect;
    if (const QTableView* table = qobject_cast<const QTableView*>(widget)) {
        if (!table->horizontalHeader()->isHidden())
            rect.setTop(rect.top() + table->horizontalHeader()->height());
    }
    const QColor base = option.palette.color(QPalette::Base);
    if (base.alpha() == 0)
        return;
    const QRgb fill = base == QColor(look::kField) ? look::kPanel : base.rgba();
    look::paintBox(painter, rect, look::kPanelCorner, fill, look::kPanelLine);
}

void rowFace(QPainter& painter, const QStyleOptionViewItem& option, const QWidget* widget)
{
    const bool isCombo = isComboList(widget);
    const QListView* list = qobject_cast<const QListView*>(widget);
    const bool hasLine = !isCombo && !(list && list->viewMode() == QListView::IconMode);
    const Ends ends = endsOf(option, widget);
    if (option.backgroundBrush.style() != Qt::NoBrush)
        painter.fillRect(option.rect, option.backgroundBrush);
    if (isOn(option.state, QStyle::State_Selected)) {
        const QColor highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
        const QRgb fill = hasStrongSelection(widget) ? highlight.rgba() : look::kSelectionPale;
        selection(painter, option.rect, ends, hasLine ? 2 : 1, fill);
    } else if (hasLine) {
        const QRect line(
            option.rect.left() + (ends.first ? kRowLineInset : 0), option.rect.bottom(),
            option.rect.width() - (ends.first ? kRowLineInset : 0) - (ends.last ? kRowLineInset : 0), 1);
        painter.fillRect(line, look::colour(look::kRowLine));
    }
}

// The frame reaches kFocusMargin out of the widget that it goes round.
void focusFrame(QPainter& painter, const QStyleOption& option)
{
    const QRectF widget =
        QRectF(option.rect).adjusted(kFocusMargin, kFocusMargin, -kFocusMargin, -kFocusMargin);
    const FocusShape shape = focusShape(focusedWidget(), widget.toRect());
    if (shape.isNone)
        return;
    if (!shape.hasLine) {
        look::paintRing(painter, shape.rect, shape.corner);
        return;
    }
    // A white line tells the blue one from a face of any colour.
    const QRectF inner = QRectF(shape.rect).adjusted(-2, -2, 2, 2);
    const QRectF outer = QRectF(shape.rect).adjusted(-4, -4, 4, 4);
    look::paintBox(painter, inner, shape.corner + 2, 0, look::kField, 2);
    look::paintBox(painter, outer, shape.corner + 4, 0, look::kBlue, 2);
    look::paintRing(painter, outer, shape.corner + 4);
}

} // namespace stylePaint
