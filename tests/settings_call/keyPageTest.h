#pragma once
// What the tests of the programmable keys share: a file of twenty keys, and what is in it.
#include "settings/call/callPages.h"
#include "support/host/managers.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/pageTest.h"
#include <QHeaderView>
#include <QTableWidget>

#define KEY_FILE "/rundata/data/dsskey.xml"
#define PHONE_FILE "/rundata/config/user/hxPhone.ini"

class KeyPageTest : public PageTest
{
protected:
    KeyPageTest() { settingsCallPages(); }

    // The first keys of the file; the rest is free.
    void writeKeys(const QByteArray& first, int count = 20)
    {
        QByteArray keys = first;
        for (int made = int(first.count("<Item ")); made < count; ++made)
            keys += "<Item Type=\"N/A\"/>";
        writeFile(KEY_FILE, "<DssKey>" + keys + "</DssKey>");
    }
    static QByteArray item(const char* type, const char* data)
    {
        return QByteArray("<Item Type=\"") + type + "\"><ItemData " + data + "/></Item>";
    }
    // Key number of the file as "Type|Line,Label,Extension,Value"; only the type when it has no data, "-" for
    // an attribute that is not there.
    std::string keyInFile(int number) const
    {
        xmlFile file(KEY_FILE);
        xmlElement* keys = xmlFindElementFromRoot(&file, "DssKey");
        xmlElement* key = keys ? keys->FindChildElement("Item") : nullptr;
        for (int i = 1; key && i < number; ++i)
            key = xmlGetNextElement(key);
        if (!key)
            return "(none)";
        std::string text = key->GetAttributeValue("Type").GetText();
        xmlElement* data = key->FindChildElement("ItemData");
        const char* separator = "|";
        for (const char* name : {"Line", "Label", "Extension", "Value"}) {
            const phraseStringA* value = data ? data->FindAttributeValue(name) : nullptr;
            if (data)
                text += std::string(separator) + (value ? value->GetText() : "-");
            separator = ",";
        }
        return text;
    }
    // Rows without headers and grid, of which one is chosen as a whole and none is edited.
    static void expectPlain(const QTableWidget* table)
    {
        EXPECT_TRUE(table->horizontalHeader()->isHidden());
        EXPECT_TRUE(table->verticalHeader()->isHidden());
        EXPECT_FALSE(table->showGrid());
        EXPECT_EQ(table->selectionMode(), QAbstractItemView::SingleSelection);
        EXPECT_EQ(table->selectionBehavior(), QAbstractItemView::SelectRows);
        EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    }
    QTableWidget* table(const char* name) const { return child<QTableWidget>(name); }
    std::string cells(const char* name, int row) const
    {
        QStringList texts;
        for (int column = 0; column < table(name)->columnCount(); ++column) {
            const QTableWidgetItem* cell = table(name)->item(row, column);
            texts.append(cell ? cell->text() : "(none)");
        }
        return texts.join('|').toStdString();
    }
    // What the phone reported as broken contracts.
    int reports(const QString& text) const
    {
        int count = 0;
        for (const QString& trace : traces())
            count += trace.contains(text);
        return count;
    }
};
