#include "support/host/ui.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>

namespace {

constexpr int kBarIndent = 12; // from the end of a bar to its text

// The weights of older forms, 0 to 99, as the toolkit's own. The phone's one bold face is semi-bold.
QFont::Weight fontWeight(int weight)
{
    if (weight < 57)
        return QFont::Normal;
    return QFont::DemiBold;
}

void setBaseTransparent(QWidget* widget)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    widget->setPalette(palette);
}

} // namespace

void qResetTableWidgetContent(QTableWidget* table)
{
    if (table)
        table->setRowCount(0);
}

void SetTabWgtNormalProperty(QTableWidget* table, bool header)
{
    if (!table)
        return;
    table->horizontalHeader()->setVisible(header);
    table->verticalHeader()->setVisible(false);
    table->setShowGrid(false);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setAutoScroll(true);
    table->setWordWrap(false);
}

void SetTabWgtScrollStyle(QTableWidget* table)
{
    if (!table)
        return;
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
}

void SetQListWidgetTransparent(QListWidget* list)
{
    if (!list)
        return;
    setBaseTransparent(list);
    list->viewport()->setAutoFillBackground(false);
    list->setFrameShape(QFrame::NoFrame);
}

void SetBackgroundToFrame(QFrame* frame, const char* path)
{
    if (!frame)
        return;
    QPalette palette = frame->palette();
    palette.setBrush(QPalette::Window, QBrush(GetImageManager()->GetImage(path)));
    frame->setPalette(palette);
    frame->setAutoFillBackground(true);
    frame->setFrameShape(QFrame::NoFrame);
}

void SetLabel(QLabel* label)
{
    if (!label)
        return;
    label->setFrameShape(QFrame::NoFrame);
    label->setAutoFillBackground(false);
    label->setFont(look::font(look::kSmallSize));
    label->setIndent(kBarIndent);
}

void setFontStyle(int size, int weight, QWidget* widget, bool antialias)
{
    if (!widget)
        return;
    QFont font = widget->font();
    if (size > 0)
        font.setPixelSize(size);
    if (weight >= 0)
        font.setWeight(fontWeight(weight));
    if (antialias)
        font.setStyleStrategy(QFont::PreferAntialias);
    widget->setFont(font);
}

void SetQLineTextEx(QLineEdit* edit, const QString& text, int from)
{
    if (!edit)
        return;
    edit->setText(text);
    edit->setCursorPosition(qBound(0, from, int(text.size())));
}

QRect qMapRectToGlobal(QWidget* widget, const QRect& rect)
{
    return widget ? QRect(widget->mapToGlobal(rect.topLeft()), rect.size()) : rect;
}

bool isChildOf(QObject* child, QObject* parent)
{
    for (QObject* object = child; object && parent; object = object->parent()) {
        if (object == parent)
            return true;
    }
    return false;
}

bool qIsOkKey(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Select;
}
