#include "frame/rowHeightDelegate.h"

RowHeightDelegate::RowHeightDelegate(int height, QObject* parent) : QItemDelegate(parent), m_nHeight(height)
{
}

QSize RowHeightDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return QSize(1, m_nHeight);
}
