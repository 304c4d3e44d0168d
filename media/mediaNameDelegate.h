#pragma once
// Paints the name of a media file in one line; what its folder puts in front is paler. User-interface thread.
#include <QStyledItemDelegate>

class MediaNameDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    // A name may hold what breaks a line; it stays one line.
    QString displayText(const QVariant& value, const QLocale& locale) const override;
};
