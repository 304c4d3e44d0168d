#pragma once
// The page "DSS Key": all programmable keys, one row a key. User-interface thread.
#include "frame/laterCells.h"
#include "frame/pageFrame.h"
#include "settings/call/cDssKeyInfo.h"
#include "support/host/leftbar.h"
#include <QDialog>
#include <QPointer>
#include <memory>
#include <vector>

class QTableWidget;
class QTableWidgetItem;
class dlgDssKeySetting;
namespace Ui {
class dlgDssKeyList;
}

class dlgDssKeyList : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgDssKeyList(QWidget* parent, tagLeftBarInfo* info);
    ~dlgDssKeyList() override;

    void setupDssKeyList(QTableWidget* table);
    // A file that cannot be loaded leaves rows and records as they were.
    void LoadDataByXml();
    // The record of a row; null for a row without one.
    CDssKeyInfo* findDssKeyInfoByIndex(int index);
    static chString IndexToDssKeyName(int number);
    // Opens the editor on the current row.
    void ShowDlgDssKeySetting();

public slots:
    void RefreshData();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_click_Edit();
    void on_click_Back();
    void on_ClickedItem(QTableWidgetItem* item);

private:
    void fillFirst(xmlElement* first);
    void fillAgain(xmlElement* first);
    void WriteListToUI();
    void AddListItem(const CDssKeyInfo& info);
    void onLaterCellsDone();

    std::unique_ptr<Ui::dlgDssKeyList> ui;
    PageFrame m_frame;
    QPointer<dlgDssKeySetting> m_pDssKeySetting; // ends with this page
    std::vector<CDssKeyInfo> m_vecDssKeyInfo;
    int m_bFirstIn = 1; // until the table has been filled
    QTableWidget* m_pTable;
    LaterCells* m_pEmptyCells; // of the first fill
};
