#include "tests/texts/textRoom.h"
#include "tests/texts/paintedTexts.h"
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QStyleOptionViewItem>
#include <QTabBar>
#include <QTableWidget>

namespace {

class Measure
{
public:
    explicit Measure(const QStringList& known) : m_known(known) {}
    void look(QWidget* widget);
    QStringList cut;

private:
    void compare(const QWidget* widget, const QString& text, QSize need, QSize room);
    void line(const QWidget* widget, const QString& text, QSize room);
    void label(const QLabel* label);
    void checkable(const QAbstractButton* button, QStyle::SubElement contents);
    void choices(const QComboBox* box);
    void tabs(const QTabBar* bar);
    void heading(const QGroupBox* box);
    void placeholder(const QLineEdit* edit);
    void cells(QAbstractItemView* view);
    const QStringList& m_known;
};

// Painted by the look, which is asked elsewhere.
bool isFitted(const QWidget* widget)
{
    return widget->inherits("fittedLabel") || widget->inherits("lineLabel");
}

void Measure::compare(const QWidget* widget, const QString& text, QSize need, QSize room)
{
    if (need.width() <= room.width() && need.height() <= room.height())
        return;
    cut.append(QString("%1 %2: \"%3\" needs %4 x %5 of %6 x %7")
                   .arg(widget->metaObject()->className(), widget->objectName(), text)
                   .arg(need.width())
                   .arg(need.height())
                   .arg(room.width())
                   .arg(room.height()));
}

void Measure::line(const QWidget* widget, const QString& text, QSize room)
{
    compare(widget, text, widget->fontMetrics().size(Qt::TextShowMnemonic, text), room);
}

void Measure::label(const QLabel* label)
{
    const int margin = 2 * label->margin() + qMax(0, label->indent());
    const QSize room = label->contentsRect().size() - QSize(margin, 2 * label->margin());
    if (label->wordWrap())
        compare(label, label->text(),
                label->fontMetrics()
                    .boundingRect(QRect(0, 0, room.width(), 0), Qt::TextWordWrap, label->text())
                    .size(),
                room);
    else
        line(label, label->text(), room);
}

void Measure::checkable(const QAbstractButton* button, QStyle::SubElement contents)
{
    QStyleOptionButton option;
    option.initFrom(button);
    option.text = button->text();
    line(button, button->text(), button->style()->subElementRect(contents, &option, button).size());
}

void Measure::choices(const QComboBox* box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.subControls = QStyle::SC_All;
    const QRect field =
        box->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box);
    for (int i = 0; i < box->count(); ++i)
        line(box, box->itemText(i), field.size() - QSize(2, 0));
}

// A tab is as wide as its text; the bar may be too narrow for all of them.
void Measure::tabs(const QTabBar* bar)
{
    const QSize room = bar->parentWidget()->contentsRect().size();
    for (int i = 0; i < bar->count(); ++i) {
        const QRect tab = bar->tabRect(i);
        compare(bar, bar->tabText(i), QSize(bar->x() + tab.right() + 1, bar->y() + tab.bottom() + 1), room);
    }
}

void Measure::heading(const QGroupBox* box)
{
    line(box, box->title(), QSize(box->width() - 2 * box->fontMetrics().averageCharWidth(), box->height()));
}

void Measure::placeholder(const QLineEdit* edit)
{
    QStyleOptionFrame option;
    option.initFrom(edit);
    option.lineWidth = 1;
    line(edit, edit->placeholderText(),
         edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit).size());
}

void Measure::cells(QAbstractItemView* view)
{
    const QAbstractItemModel* model = view->model();
    for (int row = 0; model && row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex cell = model->index(row, column);
            const QString text = cell.data().toString();
            const QRect place = view->visualRect(cell);
            if (!m_known.contains(text) || place.isEmpty())
                continue;
            QStyleOptionViewItem option;
            option.initFrom(view);
            option.rect = place;
            option.index = cell;
            option.features = QStyleOptionViewItem::HasDisplay;
            option.text = text;
            const QFont font =
                cell.data(Qt::FontRole).isValid() ? cell.data(Qt::FontRole).value<QFont>() : view->font();
            const QRect room = view->style()->subElementRect(QStyle::SE_ItemViewItemText, &option, view);
            compare(view, text, QSize(QFontMetrics(font).horizontalAdvance(text), 0), room.size());
        }
    }
}

void Measure::look(QWidget* widget)
{
    if (QLabel* text = qobject_cast<QLabel*>(widget)) {
        if (!text->text().isEmpty() && !isFitted(text))
            label(text);
    } else if (QCheckBox* box = qobject_cast<QCheckBox*>(widget)) {
        checkable(box, QStyle::SE_CheckBoxContents);
    } else if (QRadioButton* radio = qobject_cast<QRadioButton*>(widget)) {
        checkable(radio, QStyle::SE_RadioButtonContents);
    } else if (QComboBox* choice = qobject_cast<QComboBox*>(widget)) {
        choices(choice);
    } else if (QTabBar* bar = qobject_cast<QTabBar*>(widget)) {
        tabs(bar);
    } else if (QGroupBox* group = qobject_cast<QGroupBox*>(widget)) {
        heading(group);
    } else if (QLineEdit* edit = qobject_cast<QLineEdit*>(widget)) {
        placeholder(edit);
    } else if (QAbstractItemView* view = qobject_cast<QAbstractItemView*>(widget)) {
        if (!widget->inherits("qIconView") && !widget->inherits("QHeaderView"))
            cells(view);
    }
}

} // namespace

QStringList cutTexts(QWidget* window, const QStringList& known)
{
    takeCutTexts();
    takeOverflows();
    window->grab(); // everything is painted
    Measure measure(known);
    measure.look(window);
    for (QWidget* child : window->findChildren<QWidget*>()) {
        if (child->isVisibleTo(window) && !child->isWindow())
            measure.look(child);
    }
    QStringList cut = takeCutTexts() + takeOverflows() + measure.cut;
    for (QString& each : cut)
        each.prepend(QString::fromLatin1(window->metaObject()->className()) + ": ");
    return cut;
}
