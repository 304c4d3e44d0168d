#include "host/look/hxStyle.h"
#include "host/look/comboList.h"
#include "host/look/look.h"
#include "host/look/stylePaint.h"
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTextEdit>

namespace {

constexpr int kLabelSpacing = 10; // from an indicator to its label
constexpr int kScrollBarExtent = 10;
constexpr int kCaret = 2;
constexpr int kListTextMargin = 14;
constexpr int kRowIconGap = 10; // from the icon of a row to its text
constexpr int kFirstColumnMargin = 20;
constexpr int kCutGap = 10; // from a text that is cut to the next column
constexpr int kColumnMargin = 1;
constexpr int kNoTextMargin = -2; // the toolkit adds one, and one for the frame
constexpr int kPopupLine = 1;
constexpr int kTabWidth = 110;

void drawPopupFrame(QPainter& painter, const QRect& rect)
{
    look::paintBox(painter, rect, look::kCorner, look::kField, look::kFieldLine);
}

void drawShapedFrame(QPainter& painter, const QStyleOptionFrame& option, const QWidget* widget)
{
    if (widget && comboListIsWindow(widget)) {
        drawPopupFrame(painter, option.rect);
        return;
    }
    switch (option.frameShape) {
    case QFrame::HLine:
        painter.fillRect(option.rect.left(), option.rect.center().y(), option.rect.width(), 1,
                         look::colour(look::kRowLine));
        break;
    case QFrame::VLine:
        painter.fillRect(option.rect.center().x(), option.rect.top(), 1, option.rect.height(),
                         look::colour(look::kRowLine));
        break;
    case QFrame::Box:
        look::paintBox(painter, option.rect, look::kPanelCorner, 0, look::kPanelLine);
        break;
    case QFrame::StyledPanel: // of a list, or of a plain frame behind one
        if (qobject_cast<const QAbstractScrollArea*>(widget) ||
            (widget && widget->metaObject() == &QFrame::staticMetaObject))
            stylePaint::panel(painter, option, widget);
        break;
    default:
        break;
    }
}

// A heading stands right above the text of its column.
QRect headingRect(const QStyleOptionHeader& header)
{
    const bool isFirst = header.position == QStyleOptionHeader::Beginning ||
                         header.position == QStyleOptionHeader::OnlyOneSection;
    return header.rect.adjusted((isFirst ? kFirstColumnMargin : kColumnMargin) - 1, 0, 0, 0);
}

template <class Option>
const Option* as(const QStyleOption* option)
{
    return qstyleoption_cast<const Option*>(option);
}

} // namespace

hxStyle::hxStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void hxStyle::polish(QPalette& palette)
{
    palette = QPalette(look::colour(look::kButton), look::colour(look::kPageBottom));
    const QPalette::ColorRole texts[] = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::HighlightedText, QPalette::ToolTipText};
    for (QPalette::ColorRole role : texts) {
        palette.setColor(role, look::colour(look::kText));
        palette.setColor(QPalette::Disabled, role, look::colour(look::kTextDisabled));
    }
    palette.setColor(QPalette::Base, look::colour(look::kField));
    palette.setColor(QPalette::AlternateBase, look::colour(look::kField));
    palette.setColor(QPalette::Highlight, look::colour(look::kSelection));
    palette.setColor(QPalette::PlaceholderText, look::colour(look::kTextDisabled));
    palette.setColor(QPalette::Link, look::colour(look::kBlue));
}

void hxStyle::polish(QWidget* widget)
{
    if (comboListIsWindow(widget))
        widget->installEventFilter(this);
    // Round corners: the frame paints what lies behind the rows.
    const bool isList = qobject_cast<QAbstractItemView*>(widget) && !qobject_cast<QHeaderView*>(widget);
    if (isList || qobject_cast<QTextEdit*>(widget) || qobject_cast<QPlainTextEdit*>(widget)) {
        QAbstractScrollArea* area = static_cast<QAbstractScrollArea*>(widget);
        if (area->viewport())
            area->viewport()->setAutoFillBackground(false);
    }
    if (qobject_cast<QHeaderView*>(widget)) {
        widget->setFont(look::font(look::kHeadingSize, true));
        static_cast<QHeaderView*>(widget)->viewport()->setAutoFillBackground(false);
    }
    QProxyStyle::polish(widget);
}

bool hxStyle::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && comboListIsWindow(watched))
        comboListRound(static_cast<QWidget*>(watched));
    else if (event->type() == QEvent::Show && comboListIsWindow(watched))
        comboListPlace(static_cast<QWidget*>(watched));
    return false;
}

void hxStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (const auto* frame = as<QStyleOptionFrame>(option); frame && frame->lineWidth > 0)
            stylePaint::field(*painter, option->rect, option->state);
        return;
    case PE_FrameLineEdit:
    case PE_FrameFocusRect:
    case PE_FrameDefaultButton:
    case PE_FrameTabBarBase:
    case PE_FrameTabWidget:
    case PE_IndicatorTabTear:
    case PE_PanelItemViewRow:
    case PE_FrameStatusBarItem:
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        stylePaint::indicator(*painter, *option, false);
        return;
    case PE_IndicatorRadioButton:
        stylePaint::indicator(*painter, *option, true);
        return;
    case PE_PanelItemViewItem:
        if (const auto* item = as<QStyleOptionViewItem>(option))
            stylePaint::rowFace(*painter, *item, widget);
        return;
    case PE_Frame:
        stylePaint::panel(*painter, *option, widget);
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void hxStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const
{
    switch (element) {
    case CE_PushButton:
        proxy()->drawControl(CE_PushButtonBevel, option, painter, widget);
        proxy()->drawControl(CE_PushButtonLabel, option, painter, widget);
        return;
    case CE_PushButtonBevel:
        if (const auto* button = as<QStyleOptionButton>(option))
            stylePaint::buttonFace(*painter, *button, widget);
        return;
    case CE_PushButtonLabel:
        if (const auto* button = as<QStyleOptionButton>(option))
            stylePaint::buttonLabel(*painter, *button, widget);
        return;
    case CE_TabBarTab:
        if (const auto* tab = as<QStyleOptionTab>(option))
            stylePaint::tab(*painter, *tab);
        return;
    case CE_ProgressBar:
        if (const auto* bar = as<QStyleOptionProgressBar>(option))
            stylePaint::progress(*painter, *bar);
        return;
    case CE_ShapedFrame:
        if (const auto* frame = as<QStyleOptionFrame>(option))
            drawShapedFrame(*painter, *frame, widget);
        return;
    case CE_FocusFrame:
        stylePaint::focusFrame(*painter, *option);
        return;
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
        return;
    case CE_HeaderLabel:
        if (const auto* header = as<QStyleOptionHeader>(option)) {
            painter->setPen(look::colour(look::kHeading));
            look::paintFitted(*painter, headingRect(*header), Qt::AlignLeft | Qt::AlignVCenter, header->text,
                              look::font(look::kHeadingSize, true));
        }
        return;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void hxStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                 const QWidget* widget) const
{
    if (const auto* box = as<QStyleOptionComboBox>(option); box && control == CC_ComboBox) {
        stylePaint::combo(*painter, *box);
    } else if (const auto* spin = as<QStyleOptionSpinBox>(option); spin && control == CC_SpinBox) {
        stylePaint::spinBox(*painter, *spin);
    } else if (const auto* slider = as<QStyleOptionSlider>(option); slider && control == CC_Slider) {
        stylePaint::slider(*painter, *slider);
    } else if (slider && control == CC_ScrollBar) {
        stylePaint::scrollBar(*painter, *slider);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

int hxStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return look::kIndicatorSize;
    case PM_HeaderMargin:
        return 0;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return kLabelSpacing;
    case PM_ScrollBarExtent:
        return kScrollBarExtent;
    case PM_ScrollBarSliderMin:
        return 24;
    case PM_TextCursorWidth:
        return kCaret;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
    case PM_SliderLength:
        return stylePaint::kSliderHandle;
    case PM_DefaultFrameWidth:
        return 1;
    case PM_ComboBoxFrameWidth:
    case PM_SpinBoxFrameWidth:
        return 2;
    case PM_FocusFrameHMargin:
        // A list takes its text margin from here.
        return qobject_cast<const QAbstractItemView*>(widget)
                   ? (stylePaint::isComboList(widget) ? stylePaint::kFieldPadding - 2 : kNoTextMargin)
                   : stylePaint::kFocusMargin;
    case PM_FocusFrameVMargin:
        return qobject_cast<const QAbstractItemView*>(widget) ? 2 : stylePaint::kFocusMargin;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarBaseHeight:
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabOverlap:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int hxStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                       QStyleHintReturn* data) const
{
    switch (hint) {
    case SH_FocusFrame_AboveWidget:
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_FocusFrame_Mask:
    case SH_ComboBox_Popup:
    case SH_ComboBox_ListMouseTracking:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_UnderlineShortcut:
    case SH_Slider_StopMouseOverSlider:
    case SH_ScrollBar_ContextMenu:
    case SH_Widget_Animation_Duration:
    case SH_TabBar_ElideMode:
        return hint == SH_TabBar_ElideMode ? int(Qt::ElideNone) : 0;
    case SH_ComboBox_PopupFrameStyle:
        return int(QFrame::StyledPanel) | int(QFrame::Plain);
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    case SH_LineEdit_PasswordCharacter:
        return 0x25CF;
    case SH_ItemView_ActivateItemOnSingleClick:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

// Text and icon of a row; rect: where the toolkit has it.
static QRect rowPart(QStyle::SubElement part, QRect rect, const QStyleOptionViewItem& item,
                     const QWidget* widget)
{
    const bool isTable = widget && widget->inherits("QTableView");
    const bool isFirst = stylePaint::isFirstCell(item, widget);
    if (!isFirst && !isTable)
        return rect;
    const int margin = !isTable ? kListTextMargin : isFirst ? kFirstColumnMargin : kColumnMargin;
    if (part == QStyle::SE_ItemViewItemDecoration)
        return rect.translated(margin, 0);
    const bool isBesideIcon = item.features & QStyleOptionViewItem::HasDecoration &&
                              item.decorationPosition == QStyleOptionViewItem::Left;
    const bool isLine = item.decorationPosition == QStyleOptionViewItem::Left && !isTable;
    const QRect text =
        rect.adjusted(margin + (isBesideIcon ? kRowIconGap : 0), 0, isLine ? -kListTextMargin : 0, 0);
    // What is cut would run into the next column.
    const bool isCut = isTable && item.fontMetrics.horizontalAdvance(item.text) > text.width();
    return isCut ? text.adjusted(0, 0, -kCutGap, 0) : text;
}

QRect hxStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    switch (element) {
    case SE_LineEditContents: {
        const auto* frame = as<QStyleOptionFrame>(option);
        const int padding = frame && frame->lineWidth > 0 ? stylePaint::kFieldPadding - 2 : 0;
        return option->rect.adjusted(padding, 0, -padding, 0);
    }
    case SE_ItemViewItemText:
    case SE_ItemViewItemDecoration: {
        const QRect rect = QProxyStyle::subElementRect(element, option, widget);
        const auto* item = as<QStyleOptionViewItem>(option);
        return item && !stylePaint::isComboList(widget) ? rowPart(element, rect, *item, widget) : rect;
    }
    case SE_TabWidgetTabBar:
        return QRect(option->rect.left(), option->rect.top(), option->rect.width(), look::kTabHeight);
    case SE_CheckBoxClickRect: // a finger may tap anywhere on it
    case SE_RadioButtonClickRect:
    case SE_PushButtonContents:
    case SE_PushButtonFocusRect:
        return option->rect;
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}

// The bar has no buttons: the thumb goes from one end to the other.
static QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part)
{
    const bool across = option.orientation == Qt::Horizontal;
    const QRect thumb = stylePaint::scrollThumb(option);
    QRect rect = option.rect;
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return rect;
    case QStyle::SC_ScrollBarSlider:
        return thumb;
    case QStyle::SC_ScrollBarSubPage:
        across ? rect.setRight(thumb.left() - 1) : rect.setBottom(thumb.top() - 1);
        return rect;
    case QStyle::SC_ScrollBarAddPage:
        across ? rect.setLeft(thumb.right() + 1) : rect.setTop(thumb.bottom() + 1);
        return rect;
    default:
        return QRect();
    }
}

QRect hxStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                              const QWidget* widget) const
{
    const QRect rect = option->rect;
    const int buttons = stylePaint::kChevronWidth;
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return rect.adjusted(stylePaint::kFieldPadding - 3, 2, -buttons, -2);
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return QRect(rect.right() - buttons + 1, rect.top(), buttons, rect.height());
    if (control == CC_ComboBox && part == SC_ComboBoxListBoxPopup)
        return rect.adjusted(0, 0, 0, 2 * kPopupLine);
    if (control == CC_SpinBox) {
        const auto* spin = as<QStyleOptionSpinBox>(option);
        const bool hasButtons = spin && spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        const int half = rect.height() / 2;
        if (part == SC_SpinBoxUp)
            return hasButtons ? QRect(rect.right() - buttons + 1, rect.top(), buttons, half) : QRect();
        if (part == SC_SpinBoxDown)
            return hasButtons ? QRect(rect.right() - buttons + 1, rect.top() + half, buttons, half) : QRect();
        if (part == SC_SpinBoxEditField)
            return rect.adjusted(stylePaint::kFieldPadding - 2, 2, hasButtons ? -buttons : -4, -2);
    }
    if (const auto* slider = control == CC_ScrollBar ? as<QStyleOptionSlider>(option) : nullptr)
        return scrollBarPart(*slider, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize hxStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                const QWidget* widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_LineEdit:
    case CT_ComboBox:
    case CT_SpinBox:
    case CT_PushButton:
        return QSize(result.width(), qMax(result.height(), look::kEditHeight));
    case CT_ItemViewItem: {
        const auto* item = as<QStyleOptionViewItem>(option);
        const bool isIcon = item && item->decorationPosition == QStyleOptionViewItem::Top;
        return isIcon ? result
                      : QSize(result.width() + 2 * kListTextMargin, qMax(result.height(), look::kRowHeight));
    }
    case CT_TabBarTab:
        return QSize(qMax(result.width(), kTabWidth), look::kTabHeight);
    default:
        return result;
    }
}
