#include "frame/directoryView.h"
#include "support/host/ui.h"

qDirectoryView::qDirectoryView(QWidget* parent) : QTableWidget(parent)
{
    setColumnCount(3);
    setColumnWidth(0, 250);
    setColumnWidth(1, 250);
    setColumnWidth(2, 66);
    setFontStyle(18, 75, this, false);
    SetTabWgtScrollStyle(this);
}
