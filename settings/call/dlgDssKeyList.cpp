#include "settings/call/dlgDssKeyList.h"
#include "frame/fingerScroll.h"
#include "settings/call/dlgDssKeySetting.h"
#include "settings/call/dssKeyFile.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgDssKeyList.h"
#include <QHeaderView>
#include <QKeyEvent>
#include <QTableWidget>

namespace {

enum COLUMN { COLUMN_KEY, COLUMN_TYPE, COLUMN_LABEL, COLUMN_LINE, COLUMN_VALUE, COLUMN_EXTENSION, COLUMNS };
constexpr int kWidths[COLUMNS] = {125, 125, 125, 125, 125, 92};
constexpr QRect kTable(25, 100, 750, 315);
constexpr int kRowHeight = 50;
constexpr int kLongestLabel = 9; // bytes that are shown whole
constexpr int kKeptLabel = 9;    // characters

// A character outside the basic plane has two units; both stay or both go.
QString shownLabel(const chString& label)
{
    const QString text = toQString(label);
    if (label.GetLength() <= kLongestLabel)
        return text;
    qsizetype end = 0;
    for (int kept = 0; kept < kKeptLabel && end < text.size(); ++kept)
        end += text.at(end).isHighSurrogate() && end + 1 < text.size() ? 2 : 1;
    return text.left(end) + "...";
}

// The record of the Item at that place, which the file does not say.
CDssKeyInfo recordOf(xmlElement* item, int index)
{
    CDssKeyInfo record;
    record.m_iIndex = index;
    record.m_strKeyName = dlgDssKeyList::IndexToDssKeyName(index + 1);
    record.ParseNode(item);
    return record;
}

} // namespace

dlgDssKeyList::dlgDssKeyList(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), ui(new Ui::dlgDssKeyList)
{
    ui->setupUi(this);
    m_frame.Build(this, nullptr, ui->frmBackground, HX_TR("DSS Key List"), KEY_BACK);
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/gen_bg_has_topbar_and_softkey.jpg"));
    m_frame.SetSoftKey(SOFT_KEY_SAVE, "Edit", HX_TR("Edit"), SLOT(on_click_Edit()));
    m_vecDssKeyInfo.reserve(DSS_KEY_COUNT);
    m_pTable = new QTableWidget(this);
    m_pTable->setObjectName("tabKeys");
    m_pEmptyCells = new LaterCells(m_pTable);
    connect(m_pEmptyCells, &LaterCells::done, this, &dlgDssKeyList::onLaterCellsDone);
    setupDssKeyList(m_pTable);
    connect(m_pTable, &QTableWidget::itemClicked, this, &dlgDssKeyList::on_ClickedItem);
    m_pTable->setFocus();
}

dlgDssKeyList::~dlgDssKeyList()
{
    delete m_pDssKeySetting;
}

void dlgDssKeyList::setupDssKeyList(QTableWidget* table)
{
    table->setRowCount(DSS_KEY_COUNT);
    table->setColumnCount(COLUMNS);
    SetTabWgtNormalProperty(table, false);
    for (int column = 0; column < COLUMNS; ++column)
        table->setColumnWidth(column, kWidths[column]);
    table->verticalHeader()->setDefaultSectionSize(kRowHeight);
    table->setGeometry(kTable);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    new FingerScroll(table);
}

void dlgDssKeyList::showEvent(QShowEvent* event)
{
    m_frame.Translate();
    QDialog::showEvent(event);
    m_pTable->setCurrentCell(0, 0);
    m_pTable->scrollToTop();
    RefreshData();
}

void dlgDssKeyList::RefreshData()
{
    LoadDataByXml();
}

void dlgDssKeyList::LoadDataByXml()
{
    nuxTrace(TRACE_NOTE, "void dlgDssKeyList::LoadDataByXml() begin");
    xmlFile document;
    if (!dssKeyLoad(document))
        return;
    if (xmlElement* keys = dssKeyRoot(document)) {
        if (m_bFirstIn)
            fillFirst(dssKeyFirst(keys));
        else
            fillAgain(dssKeyFirst(keys));
    }
    nuxTrace(TRACE_NOTE, "void dlgDssKeyList::LoadDataByXml() end");
}

void dlgDssKeyList::fillFirst(xmlElement* first)
{
    m_pEmptyCells->Clear();
    m_vecDssKeyInfo.clear();
    for (xmlElement* item = first; item && m_vecDssKeyInfo.size() < DSS_KEY_COUNT; item = dssKeyNext(item))
        m_vecDssKeyInfo.push_back(recordOf(item, int(m_vecDssKeyInfo.size())));
    WriteListToUI();
}

// A row that did not change is not touched, and none is added.
void dlgDssKeyList::fillAgain(xmlElement* first)
{
    xmlElement* item = first;
    for (size_t count = 0; item && count < m_vecDssKeyInfo.size(); ++count, item = dssKeyNext(item)) {
        const CDssKeyInfo record = recordOf(item, int(count));
        if (record == m_vecDssKeyInfo[count])
            continue;
        m_vecDssKeyInfo[count] = record;
        AddListItem(m_vecDssKeyInfo[count]);
    }
}

void dlgDssKeyList::WriteListToUI()
{
    for (const CDssKeyInfo& info : m_vecDssKeyInfo)
        AddListItem(info);
}

// The texts are those of the file, in every language.
void dlgDssKeyList::AddListItem(const CDssKeyInfo& info)
{
    const QString texts[COLUMNS] = {toQString(info.m_strKeyName), toQString(info.GetKeyTypeString()),
                                    shownLabel(info.m_strLabel),  toQString(info.GetLineString()),
                                    toQString(info.m_strValue),   toQString(info.m_strExtension)};
    for (int column = 0; column < COLUMNS; ++column)
        m_pEmptyCells->SetText(info.m_iIndex, column, texts[column]);
}

void dlgDssKeyList::onLaterCellsDone()
{
    m_bFirstIn = 0;
}

CDssKeyInfo* dlgDssKeyList::findDssKeyInfoByIndex(int index)
{
    return index < 0 || size_t(index) >= m_vecDssKeyInfo.size() ? nullptr : &m_vecDssKeyInfo[size_t(index)];
}

chString dlgDssKeyList::IndexToDssKeyName(int number)
{
    return dssKeyName(number);
}

// One connection more each time: a refresh that finds nothing new does nothing.
void dlgDssKeyList::ShowDlgDssKeySetting()
{
    if (!m_pDssKeySetting)
        m_pDssKeySetting = getDssKeySettingDlg();
    if (!m_pDssKeySetting)
        return;
    connect(m_pDssKeySetting, SIGNAL(accepted()), this, SLOT(RefreshData()));
    const int row = m_pTable->currentRow();
    const CDssKeyInfo* info = findDssKeyInfoByIndex(row);
    m_pDssKeySetting->ShowByDssKeyInfo(info ? CDssKeyInfo(*info) : CDssKeyInfo(), row + 1);
}

void dlgDssKeyList::on_click_Edit()
{
    ShowDlgDssKeySetting();
}

void dlgDssKeyList::on_ClickedItem(QTableWidgetItem*)
{
    ShowDlgDssKeySetting();
}

void dlgDssKeyList::on_click_Back()
{
    reject();
}

// The table moves by itself, and leaves an arrow to the page at its ends: whichever it is goes round.
void dlgDssKeyList::keyPressEvent(QKeyEvent* event)
{
    if (qIsOkKey(event->key()))
        return on_click_Edit();
    if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down)
        return QDialog::keyPressEvent(event);
    const int last = m_pTable->rowCount() - 1;
    const int row = m_pTable->currentRow();
    m_pTable->setCurrentCell(row == last ? 0 : row == 0 ? last : row, 0);
}
