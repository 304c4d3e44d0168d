#include "frame/xmlTable.h"
#include "frame/xmlUnderRoot.h"
#include "support/file/keepAside.h"
#include <QTableWidget>

XmlTable::XmlTable(QTableWidget* table) : m_pTable(table)
{
    qRegisterMetaType<xmlElement*>("xmlElement*");
}

xmlElement* XmlTable::Load(const char* path, const char* list)
{
    forgetElements();
    m_strPath = path;
    m_pList = m_xmlFile.LoadFromFile(path, XML_LIST_LIMIT) ? xmlFindUnderRoot(m_xmlFile, list) : nullptr;
    return m_pList;
}

// Loading takes the old document away, whether it succeeds or not.
void XmlTable::forgetElements()
{
    m_pList = nullptr;
    for (int row = 0; row < m_pTable->rowCount(); ++row) {
        for (int column = 0; column < m_pTable->columnCount(); ++column) {
            if (QTableWidgetItem* item = m_pTable->item(row, column))
                item->setData(ELEMENT_ROLE, QVariant());
        }
    }
}

void XmlTable::SetElement(int row, int column, xmlElement* element)
{
    QTableWidgetItem* item = m_pTable->item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        m_pTable->setItem(row, column, item);
    }
    item->setData(ELEMENT_ROLE, QVariant::fromValue(element));
}

xmlElement* XmlTable::Element(int row) const
{
    const QTableWidgetItem* item = m_pTable->item(row, 0);
    return item ? item->data(ELEMENT_ROLE).value<xmlElement*>() : nullptr;
}

xmlElement* XmlTable::CurrentElement() const
{
    return Element(m_pTable->currentRow());
}

void XmlTable::RemoveRow(int row)
{
    xmlElement* element = Element(row);
    m_pTable->removeRow(row);
    if (element)
        element->GetParent()->RemoveChild(element);
}

FILE_CHANGE XmlTable::Change() const
{
    if (!m_xmlFile.IsStale(m_strPath))
        return FILE_UNCHANGED;
    xmlFile now;
    return now.LoadFromFile(m_strPath, XML_LIST_LIMIT) ? FILE_RENEWED : FILE_LOST;
}

int XmlTable::Save()
{
    chString kept;
    const FILE_CHANGE change = Change();
    const bool mayReplace =
        change == FILE_UNCHANGED || (change == FILE_RENEWED && fileCopyAside(m_strPath, kept));
    return m_pList && mayReplace && m_xmlFile.SaveToFile(m_strPath);
}
