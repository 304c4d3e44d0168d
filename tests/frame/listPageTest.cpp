// What lists share: rows under the keys, rows that keep their XML element, cells that are made later.
#include "frame/laterCells.h"
#include "frame/noteBox.h"
#include "frame/settingPage.h"
#include "frame/tableRows.h"
#include "frame/wgtHelper.h"
#include "frame/xmlTable.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/pageTest.h"
#include <QCoreApplication>
#include <QFile>
#include <QFrame>
#include <QKeyEvent>
#include <QTableWidget>

namespace {

#define RULES_XML "/rundata/data/rules.xml"

// A page with a list of an XML file: one row an element, "a" always there, "b" made later where it is empty.
class dlgRules : public SettingPage
{
public:
    dlgRules() : SettingPage(nullptr, nullptr)
    {
        QFrame* background = new QFrame(this);
        background->setGeometry(0, 0, 800, 480);
        background->lower();
        m_pTable->setGeometry(160, 50, 400, 380);
        setupDialPlanList(m_pTable);
        BuildFrame(background, HX_TR("WAN"), KEYS_CHOICE);
    }
    int LoadData()
    {
        m_later.Clear();
        xmlElement* list = m_rules.Load(RULES_XML, "Rules");
        if (!list)
            return 0;
        qResetTableWidgetContent(m_pTable);
        for (xmlElement* rule = list->GetFirstChildElement(); rule; rule = xmlGetNextElement(rule))
            addRow(rule);
        m_pTable->setCurrentCell(0, 0);
        return 1;
    }
    void addRow(xmlElement* rule)
    {
        const int row = m_pTable->rowCount();
        m_pTable->insertRow(row);
        m_later.SetText(row, 0, toQString(rule->GetAttributeValue("a").GetString()));
        m_later.SetText(row, 1, toQString(rule->GetAttributeValue("b").GetString()));
        m_rules.SetElement(row, 0, rule);
    }
    QTableWidget* m_pTable = new QTableWidget(this);
    XmlTable m_rules{m_pTable};
    LaterCells m_later{m_pTable};

protected:
    void showEvent(QShowEvent* event) override
    {
        SettingPage::showEvent(event);
        LoadData();
        m_pTable->setFocus();
    }
    void on_click_Save() override
    {
        if (noteUnlessSaved(m_rules.Save(), this))
            accept();
    }
};

class ListPage : public PageTest
{
protected:
    ListPage() { writeRules(3); }

    void writeRules(int count)
    {
        QByteArray rules;
        for (int i = 0; i < count; ++i)
            rules += "<Rule a=\"a" + QByteArray::number(i) + "\" b=\"\"><Part/></Rule>";
        writeFile(RULES_XML, "<Rules>" + rules + "</Rules>");
    }
    int row() const { return dialog.m_pTable->currentRow(); }
    int madeCells() const
    {
        int made = 0;
        for (int i = 0; i < dialog.m_pTable->rowCount(); ++i)
            made += dialog.m_pTable->item(i, 1) != nullptr;
        return made;
    }
    dlgRules dialog;
};

// A page without the key rules of the frame: its table steps by itself.
class PlainList : public QDialog
{
public:
    PlainList()
    {
        setGeometry(0, 0, 800, 480);
        m_pTable->setGeometry(0, 0, 400, 300);
    }
    QTableWidget* m_pTable = new QTableWidget(3, 1, this);
    int m_nWraps = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { m_nWraps += tableWrapRow(m_pTable, event->key()); }
};

} // namespace

TEST_F(ListPage, ArrowsGoThroughTheRowsAndRound)
{
    show(dialog);
    EXPECT_EQ(row(), 0);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), 2);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(row(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(row(), 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), 0);
    kit::shot("list-page");
}

TEST_F(ListPage, OneRowStaysWhereItIs)
{
    writeRules(1);
    show(dialog);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), 0);
    EXPECT_TRUE(dialog.m_pTable->hasFocus());
}

TEST_F(ListPage, ATableThatStepsByItselfGoesRoundAtItsEndsOnly)
{
    PlainList list;
    show(list);
    list.m_pTable->setFocus();
    list.m_pTable->setCurrentCell(0, 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(list.m_pTable->currentRow(), 1);
    EXPECT_EQ(list.m_nWraps, 0);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(list.m_pTable->currentRow(), 0);
    EXPECT_EQ(list.m_nWraps, 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(list.m_pTable->currentRow(), 2);
    EXPECT_FALSE(tableWrapRow(list.m_pTable, Qt::Key_Up));
    EXPECT_FALSE(tableWrapRow(list.m_pTable, Qt::Key_Left));
    list.m_pTable->setCurrentCell(-1, -1);
    EXPECT_FALSE(tableWrapRow(list.m_pTable, Qt::Key_Up));
    EXPECT_EQ(list.m_pTable->currentRow(), -1);
    list.m_pTable->setRowCount(1);
    EXPECT_FALSE(tableWrapRow(list.m_pTable, Qt::Key_Up));
}

TEST_F(ListPage, EachRowKeepsItsElement)
{
    show(dialog);
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(dialog.m_rules.Element(i), nullptr);
        EXPECT_EQ(toQString(dialog.m_rules.Element(i)->GetAttributeValue("a").GetString()),
                  QString("a%1").arg(i));
    }
    EXPECT_STREQ(dialog.m_pTable->item(0, 0)->data(Qt::UserRole).typeName(), "xmlElement*");
    EXPECT_EQ(dialog.m_rules.Element(3), nullptr);
    EXPECT_EQ(dialog.m_rules.Element(-1), nullptr);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(dialog.m_rules.CurrentElement(), dialog.m_rules.Element(1));
}

TEST_F(ListPage, ARowIsTakenAwayWithItsElement)
{
    show(dialog);
    dialog.m_rules.RemoveRow(1);
    EXPECT_EQ(dialog.m_pTable->rowCount(), 2);
    save();
    const QByteArray file = readFile(RULES_XML);
    EXPECT_TRUE(file.contains("a0") && file.contains("a2"));
    EXPECT_FALSE(file.contains("a1"));
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(ListPage, AFileThatIsGoneLeavesTheTextsAndNoElement)
{
    show(dialog);
    dialog.m_rules.SetElement(1, 1, dialog.m_rules.Element(1));
    back();
    QFile::remove(hostPath(RULES_XML));
    show(dialog);
    EXPECT_EQ(dialog.m_pTable->rowCount(), 3);
    EXPECT_EQ(dialog.m_pTable->item(1, 0)->text(), "a1");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(dialog.m_rules.Element(i), nullptr);
    EXPECT_FALSE(dialog.m_pTable->item(1, 1)->data(XmlTable::ELEMENT_ROLE).isValid());
    EXPECT_EQ(dialog.m_rules.List(), nullptr);
    EXPECT_EQ(dialog.m_rules.Save(), 0);
    EXPECT_FALSE(QFile::exists(hostPath(RULES_XML)));
}

TEST_F(ListPage, AFileWithoutTheListIsNoListAndIsNotWritten)
{
    const QByteArray others = "<Others><Rule/></Others>";
    writeFile(RULES_XML, others);
    EXPECT_EQ(dialog.LoadData(), 0);
    EXPECT_EQ(dialog.m_rules.Save(), 0);
    EXPECT_EQ(readFile(RULES_XML), others);
}

TEST_F(ListPage, AFullDiskIsToldAndKeepsDocumentAndRows)
{
    show(dialog);
    dialog.m_rules.RemoveRow(0);
    expectFailedSave(RULES_XML);
    EXPECT_EQ(dialog.m_pTable->rowCount(), 2);
    expectSaved();
    EXPECT_FALSE(readFile(RULES_XML).contains("a0"));
}

TEST_F(ListPage, EmptyCellsAreMadeAfterThePageWhileATurnHasTime)
{
    const int rows = 49;
    writeRules(rows);
    int done = 0;
    QObject::connect(&dialog.m_later, &LaterCells::done, &dialog, [&] { ++done; });
    dialog.show();
    EXPECT_EQ(dialog.m_pTable->rowCount(), rows);
    EXPECT_EQ(dialog.m_pTable->item(rows - 1, 0)->text(), QString("a%1").arg(rows - 1));
    EXPECT_EQ(madeCells(), 0);
    // A cell takes as long as a turn may.
    QObject::connect(dialog.m_pTable, &QTableWidget::itemChanged, &dialog,
                     [] { kit::moveClocks(LaterWork::TURN_MS + 1); });
    int before = 0;
    for (int turn = 0; turn < 1000 && !dialog.m_later.IsDone(); ++turn) {
        QCoreApplication::processEvents();
        EXPECT_LE(madeCells() - before, 2);
        before = madeCells();
    }
    EXPECT_EQ(madeCells(), rows);
    EXPECT_EQ(done, 1);
    kit::settle();
    EXPECT_EQ(done, 1);
}

TEST_F(ListPage, ACellThatGotATextMeanwhileKeepsIt)
{
    dialog.LoadData();
    dialog.m_later.SetText(1, 1, "text");
    kit::settle();
    EXPECT_EQ(dialog.m_pTable->item(1, 1)->text(), "text");
    dialog.m_later.SetText(1, 1, "");
    EXPECT_EQ(dialog.m_pTable->item(1, 1)->text(), "");
    EXPECT_TRUE(dialog.m_later.IsDone());
}

TEST_F(ListPage, RowsThatAreGoneGetNoCells)
{
    dialog.LoadData();
    dialog.m_pTable->setRowCount(1);
    kit::settle();
    EXPECT_EQ(madeCells(), 1);
    EXPECT_TRUE(dialog.m_later.IsDone());
    dialog.LoadData();
    dialog.m_later.Clear();
    EXPECT_TRUE(dialog.m_later.IsDone());
    dialog.m_later.SetText(2, 1, "");
    kit::settle();
    EXPECT_EQ(madeCells(), 1);
}
