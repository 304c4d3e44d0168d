#pragma once
// Paints the name of a media file in one line; what its folder puts in front is paler. User-interface thread.
#include <QColor>
#include <QStyledItemDelegate>

// Of what is said beside a name or a picture.
inline const QColor kMediaSecondaryText(138, 152, 164);

// What a row keeps for it: how many of the name's letters are its folder's.
enum : int { MEDIA_SHORT_NAME_ROLE = 0x101 };

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
