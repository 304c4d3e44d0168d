#include "support/host/combo.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
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

int addFolder(QComboBox* box, const char* folder, const char* filter, const char* shortname)
{
    chObjList_dynamic<chString, 16> files;
    nuxFindFile(folder, filter, files, 0);
    for (const chString& file : files)
        qAddComboBoxItem(box, chString(shortname) + pathGetFileNamePos(file), file);
    return files.size();
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
    xmlFile document;
    if (!document.LoadFromFile(table) || !document.GetRootElement())
        return 0;
    xmlElement* media = document.GetRootElement()->FindChildElement(type);
    if (!media)
        return 0;
    const chString filter = media->GetAttributeValue("filter").GetString();
    int added = 0;
    xmlElement* folder = xmlFindElementFromRoot(media, "filelist", "item", 0);
    for (; folder; folder = xmlGetNextElement(folder)) {
        if (strcmp(folder->GetName(), "item") == 0)
            added += addFolder(box, folder->GetAttributeValue("path"), filter,
                               folder->GetAttributeValue("shortname"));
    }
    return added;
}
