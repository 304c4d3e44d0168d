#pragma once
// Gives the rows of a list one fixed height.
#include <QItemDelegate>

class RowHeightDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    explicit RowHeightDelegate(int height, QObject* parent = nullptr);
    // Width 1, which list views ignore.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    int m_nHeight; // pixels
};
