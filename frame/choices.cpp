#include "frame/choices.h"
#include "support/host/combo.h"
#include "support/host/language.h"
#include <QComboBox>

namespace {
// The English key of an item, beside its extern value.
constexpr int kTextKey = Qt::UserRole + 1;
} // namespace

void addChoices(QComboBox* box, Choices choices)
{
    for (const tagChoice& choice : choices)
        insertChoice(box, box->count(), choice);
}

void insertChoice(QComboBox* box, int index, const tagChoice& choice)
{
    box->insertItem(index, qTranslate(choice.szText));
    qSetExternValue(box, index, choice.szValue);
    box->setItemData(index, QByteArray(choice.szText), kTextKey);
}

void translateChoices(QComboBox* box)
{
    for (int index = 0; index < box->count(); ++index) {
        const QByteArray key = box->itemData(index, kTextKey).toByteArray();
        if (!key.isEmpty())
            box->setItemText(index, qTranslate(key.constData()));
    }
}
