#include "support/host/combo.h"
#include "host/binding/mediaFiles.h"
#include "support/host/text.h"
#include <QComboBox>
#include <QRadioButton>

namespace {

// An item that was added with plain user data has that as its extern value.
constexpr int kExternValue = Qt::UserRole;
const char kRadioValue[] = "externValue";

int indexOfValue(const QComboBox* box, const char* value)
{
    return box ? box->findData(QString::fromUtf8(value), kExternValue, Qt::MatchExactly) : -1;
}

} // namespace

void qAddComboBoxItem(QComboBox* box, const char* label, const char* value)
{
    if (box)
        box->addItem(QString::fromUtf8(label), QString::fromUtf8(value));
}

void qAddComboBoxItem(QComboBox* box, const QString& label, const chString& value)
{
    if (box)
        box->addItem(label, toQString(value));
}

chString qGetExternValue(QComboBox* box, int index)
{
    return box ? fromQString(box->itemData(index, kExternValue).toString()) : chString();
}

chString qGetExternValue(QRadioButton* button)
{
    return button ? fromQString(button->property(kRadioValue).toString()) : chString();
}

void qSetExternValue(QComboBox* box, int index, const char* value)
{
    if (box)
        box->setItemData(index, QString::fromUtf8(value), kExternValue);
}

void qSetExternValue(QRadioButton* button, const char* value)
{
    if (button)
        button->setProperty(kRadioValue, QString::fromUtf8(value));
}

int qSelectComboBoxItem(QComboBox* box, const char* value)
{
    return qSelectComboBoxItemIsExist(box, value) >= 0 ? 1 : 0;
}

int qSelectComboBoxItemIsExist(QComboBox* box, const char* value)
{
    const int index = indexOfValue(box, value);
    if (index >= 0)
        box->setCurrentIndex(index);
    return index;
}

int qFillMediaCommboView(QComboBox* box, const char* table, const char* type)
{
    if (!box)
        return 0;
    const QList<tagFileOfType> files = mediaFilesOf(table, type);
    for (const tagFileOfType& file : files)
        qAddComboBoxItem(box, file.strShown, file.strPath);
    return int(files.size());
}
