// The page "Version Detail".
#include "frame/modSetting.h"
#include "frame/xmlTable.h"
#include "settings/system/dlgVersion_Detail.h"
#include "support/host/language.h"
#include "tests/settings_system/systemPageTest.h"
#include <QHeaderView>
#include <QTableWidget>

namespace {

const char* const kFile = "/phone/resource/module-version.xml";

class VersionPage : public SystemPageTest
{
protected:
    void openPage(const QByteArray& list)
    {
        replaceFirmwareFile(kFile, list);
        open("Version Detail");
        table = child<QTableWidget>("tabVersions");
    }
    void openRows(int rows)
    {
        QByteArray list = "<Version>";
        for (int row = 0; row < rows; ++row)
            list += "<Module name=\"m" + QByteArray::number(row) + "\" version=\"1." +
                    QByteArray::number(row) + "\"/>";
        openPage(list + "</Version>");
    }
    QString cell(int row, int column) const { return table->item(row, column)->text(); }
    int rowAfter(Qt::Key key) const
    {
        kit::key(key);
        return table->currentRow();
    }

    QTableWidget* table = nullptr;
};

} // namespace

TEST_F(VersionPage, AListThatIsFarTooLargeIsNotReadAndTraced)
{
    mark();
    openPage("<Version><Module name=\"a\" version=\"1\"/>" + QByteArray(XML_TABLE_LIMIT, ' ') + "</Version>");
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(traces().filter("is larger than").size(), 1);
}

TEST_F(VersionPage, ListsTheModulesOfTheFileInItsOrder)
{
    openPage(
        "<Version><Module name='b' version='2'/><Other name='x' version='y'/><Module name='a' version='1'/>"
        "<Module/></Version>");
    EXPECT_STREQ(page->metaObject()->className(), "dlgVersion_Detail");
    ASSERT_EQ(table->rowCount(), 3);
    EXPECT_EQ(cell(0, 0) + cell(0, 1) + cell(1, 0) + cell(1, 1), "b2a1");
    EXPECT_EQ(cell(2, 0) + cell(2, 1), "");
    EXPECT_EQ(table->currentRow(), 0);
    auto* element = table->item(1, 0)->data(XmlTable::ELEMENT_ROLE).value<xmlElement*>();
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->GetAttributeValue("name").GetString(), "a");
    EXPECT_STREQ(table->item(1, 0)->data(Qt::UserRole).typeName(), "xmlElement*");
}

TEST_F(VersionPage, OfTheImageListsThePhonesOwnModulesAndItsLibraries)
{
    open("Version Detail");
    table = child<QTableWidget>("tabVersions");
    QStringList names;
    for (int row = 0; row < table->rowCount(); ++row) {
        names.append(cell(row, 0));
        EXPECT_NE(cell(row, 1), "") << qPrintable(cell(row, 0));
    }
    for (const char* name : {"hxPhone", "hxSetting", "hxHost", "hxMovie", "hxMedia", "Qt", "GStreamer"})
        EXPECT_TRUE(names.contains(name)) << name;
    kit::shot("versions");
}

TEST_F(VersionPage, AMissingOrBrokenFileGivesAnEmptyTable)
{
    openPage("<Version><Module");
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(rowAfter(Qt::Key_Down), -1);
    EXPECT_EQ(rowAfter(Qt::Key_Up), -1);
}

TEST_F(VersionPage, HasTwoColumnsWithTheirHeadersAndOnlyBack)
{
    openRows(2);
    EXPECT_EQ(table->columnCount(), 2);
    EXPECT_EQ(table->columnWidth(0), 325);
    EXPECT_EQ(table->horizontalHeaderItem(0)->text(), "Item");
    EXPECT_EQ(table->horizontalHeaderItem(1)->text(), "Version");
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Version Detail");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(), "/phone/resource/theme/default/bmp/menu/menu_status.png");
    for (int key = 0; key < 3; ++key)
        EXPECT_EQ(softKeyTitle(key), "");
    EXPECT_EQ(softKeyTitle(3), "Back");
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(table->horizontalHeaderItem(0)->text(), "Eintrag");
    back();
    EXPECT_FALSE(page->isVisible());
}

TEST_F(VersionPage, ArrowsGoThroughTheRowsAndRound)
{
    openRows(3);
    EXPECT_EQ(rowAfter(Qt::Key_Up), 2);
    EXPECT_EQ(rowAfter(Qt::Key_Up), 1);
    EXPECT_EQ(rowAfter(Qt::Key_Down), 2);
    EXPECT_EQ(rowAfter(Qt::Key_Down), 0);
}

TEST_F(VersionPage, ASingleRowStays)
{
    openRows(1);
    table->setCurrentCell(0, 1);
    EXPECT_EQ(rowAfter(Qt::Key_Down), 0);
    EXPECT_EQ(table->currentColumn(), 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(table->currentColumn(), 1);
}

TEST_F(VersionPage, ANewItemGoesToTheTopAndTheFallbackHasTenRows)
{
    openRows(0);
    auto* versions = static_cast<dlgVersion_Detail*>(page);
    versions->insertVersionItem("a", "1");
    versions->insertVersionItem("b", "2");
    EXPECT_EQ(cell(0, 0) + cell(0, 1), "b2");
    EXPECT_EQ(cell(1, 0), "a");
    versions->setData();
    ASSERT_EQ(table->rowCount(), 12);
    EXPECT_EQ(cell(0, 0), "hxPhone");
    EXPECT_EQ(cell(9, 0), "Languages");
    EXPECT_EQ(cell(3, 1), "1.0.0.1");
}

TEST_F(VersionPage, ThroughAMenusEntryThereIsNoSuchPage)
{
    kit::BoxAnswers boxes({"ok"});
    settingOpenPage(chString("Version Detail"), tagLeftBarInfo{"i", "t"}, nullptr);
    EXPECT_EQ(boxes.texts(), QStringList{"Unknow dialog type"});
}
