#pragma once
// A table whose rows stand for the elements of an XML document, which is held open. A row's element is good
// until the next load: no row keeps one that is gone. User-interface thread.
#include "support/xml/xmlFile.h"
#include <QMetaType>
#include <Qt>

class QTableWidget;

Q_DECLARE_METATYPE(xmlElement*)

class XmlTable
{
public:
    enum { ELEMENT_ROLE = Qt::UserRole };

    // The table lives as long as this object.
    explicit XmlTable(QTableWidget* table);
    // Loads the file (a device path), and answers the element `list` under its root; null when the file
    // cannot be loaded or has none. The table keeps its rows and their texts; the page fills them anew.
    xmlElement* Load(const char* path, const char* list);
    // Null before the first load, and when the last one failed.
    xmlElement* List() const { return m_pList; }

    // The cell gets an item when it has none.
    void SetElement(int row, int column, xmlElement* element);
    // Of column 0; null for a row that is not there or has no element.
    xmlElement* Element(int row) const;
    // Of the current row.
    xmlElement* CurrentElement() const;
    // Takes the row away, and its element with its children out of the document.
    void RemoveRow(int row);
    // Writes the document to the file of the last load. 0 when that is not possible: document and rows stay.
    int Save();

private:
    void forgetElements();

    QTableWidget* m_pTable;
    xmlFile m_xmlFile;
    chString m_strPath;
    xmlElement* m_pList = nullptr;
};
