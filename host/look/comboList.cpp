#include "host/look/comboList.h"
#include "host/look/look.h"
#include <QAbstractItemView>
#include <QComboBox>
#include <QPainterPath>
#include <QScreen>
#include <algorithm>

namespace {

// Where a page has room, on the screen: a display may be larger than the phone's.
QRect pageOn(const QWidget* widget)
{
    return QRect(0, look::kTopBarHeight, look::kScreenWidth, look::kPageHeight)
        .translated(widget->screen()->geometry().topLeft());
}

int wantedRows(const QComboBox* box)
{
    return std::max(1, std::min(box->count(), box->maxVisibleItems()));
}

} // namespace

bool comboListIsWindow(const QObject* object)
{
    return object->inherits("QComboBoxPrivateContainer");
}

void comboListRound(QWidget* window)
{
    QPainterPath shape;
    shape.addRoundedRect(window->rect(), look::kCorner, look::kCorner);
    window->setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void comboListPlace(QWidget* window)
{
    const QComboBox* box = qobject_cast<QComboBox*>(window->parentWidget());
    const int rowHeight = box ? box->view()->sizeHintForRow(0) : 0;
    if (rowHeight <= 0)
        return;
    const QRect page = pageOn(box);
    const QRect field(box->mapToGlobal(QPoint()), box->size());
    const int edges = window->height() - box->view()->viewport()->height();
    const auto rowsIn = [=](int room) { return std::clamp((room - edges) / rowHeight, 1, wantedRows(box)); };
    const int below = rowsIn(page.bottom() - field.bottom());
    const int above = rowsIn(field.top() - page.top());
    const int rows = std::max(below, above);
    const int height = rows * rowHeight + edges;
    const int top = below >= above ? field.bottom() + 1 : field.top() - height;
    window->setGeometry(window->x(), top, window->width(), height);
}
