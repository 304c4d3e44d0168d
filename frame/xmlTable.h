#pragma once
// A table whose rows stand for the elements of an XML document, which is held open. A row's element is good
// until the next load: no row keeps one that is gone. User-interface thread.
#include "support/xml/xmlFile.h"
#include <QMetaType>
#include <Qt>

class QTableWidget;

Q_DECLARE_METATYPE(xmlElement*)

enum FILE_CHANGE {
    FILE_UNCHANGED,
    FILE_RENEWED, // by somebody else, and it can be loaded
    FILE_LOST     // missing, or broken
};

class XmlTable
{
public:
    enum { ELEMENT_ROLE = Qt::UserRole };

    // The table lives as long as this object.
    explicit XmlTable(QTableWidget* table);
    // Loads the file (a device path), and answers the element `list` under its root; null when the file
    // cannot be loaded, is larger than XML_LIST_LIMIT or has none. The table keeps its rows and their texts;
    // the page fills them anew.
    xmlElement* Load(const char* path, const char* list);
    // Null before the first load, and when the last one failed.
    xmlElement* List() const { return m_pList; }

    // What has become of the file since it was loaded or saved here. One that somebody else has written is
    // loaded again before it is changed.
    FILE_CHANGE Change() const;

    // The cell gets an item when it has none.
    void SetElement(int row, int column, xmlElement* element);
    // Of column 0; null for a row that is not there or has no element.
    xmlElement* Element(int row) const;
    // Of the current row.
    xmlElement* CurrentElement() const;
    // Takes the row away, and its element with its children out of the document.
    void RemoveRow(int row);
    // Writes the document to the file of the last load. 0 when that is not possible, and where the file has
    // gone or broken since: document and rows stay. A good file that somebody else has written since is kept
    // aside.
    int Save();

private:
    void forgetElements();

    QTableWidget* m_pTable;
    xmlFile m_xmlFile;
    chString m_strPath;
    xmlElement* m_pList = nullptr;
};
