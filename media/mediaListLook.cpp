#include "media/mediaListLook.h"
#include "media/mediaNameDelegate.h"
#include <QColor>
#include <QHeaderView>
#include <QListView>
#include <QStyledItemDelegate>
#include <QTableWidget>

namespace {

constexpr int kRowHeight = 40;
constexpr int kIconColumn = 40;
constexpr int kIconSize = 32;
constexpr int kCardAir = 6;    // around a list
constexpr int kPageEdge = 780; // of a list without a preview
const QColor kText(51, 59, 62);
const QColor kHighlight(201, 222, 241);

class MediaRowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QSize(QStyledItemDelegate::sizeHint(option, index).width(), kRowHeight);
    }
};

// Over whatever lies behind it.
void setColours(QWidget* list)
{
    QPalette colours = list->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, QPalette::Text, kText);
        colours.setColor(group, QPalette::HighlightedText, kText);
        colours.setColor(group, QPalette::Highlight, kHighlight);
        colours.setColor(group, QPalette::Base, Qt::transparent);
    }
    list->setPalette(colours);
}

} // namespace

void setupMediaFileList(QTableWidget* table)
{
    table->horizontalHeader()->setVisible(false);
    table->verticalHeader()->setVisible(false);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(kRowHeight);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setAutoScroll(true);
    table->setFrameShape(QFrame::NoFrame);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->setTextElideMode(Qt::ElideMiddle); // a camera's names differ at their ends
    table->setItemDelegateForColumn(0, new MediaNameDelegate(table));
    table->setColumnCount(2);
    table->horizontalHeader()->setMinimumSectionSize(kIconColumn);
    fitMediaFileList(table);
    table->setIconSize(QSize(kIconSize, kIconSize));
    setColours(table);
}

void fitMediaFileList(QTableWidget* table)
{
    table->setColumnWidth(1, kIconColumn);
    table->setColumnWidth(0, table->width() - kIconColumn);
}

void setupMediaRows(QListView* list)
{
    list->setItemDelegate(new MediaRowDelegate(list));
    list->setIconSize(QSize(kIconSize, kIconSize));
    list->setFrameShape(QFrame::NoFrame);
    setColours(list);
}

void placeMediaList(QWidget* list, QWidget* card, const QRect& besidePreview, bool hasPreview)
{
    QRect place = besidePreview;
    if (!hasPreview)
        place.setRight(kPageEdge);
    list->setGeometry(place);
    card->setGeometry(place.adjusted(-kCardAir, -kCardAir, kCardAir, kCardAir));
}
