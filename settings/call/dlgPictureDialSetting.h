#pragma once
// The page "Picture-dial Setting": what the six pictures of the home screen show and dial. Each change is
// stored at once, and the home screen told. User-interface thread.
#include "frame/laterCells.h"
#include "frame/settingPage.h"
#include "frame/xmlTable.h"
#include "support/host/api.h"
#include <memory>

class PicDialIconViewItem;
class QComboBox;
class QLabel;
class QPixmap;
class QTableWidgetItem;
class qUIPushButton;
namespace Ui {
class dlgPictureDialSetting;
}

class dlgPictureDialSetting : public SettingPage
{
    Q_OBJECT
public:
    dlgPictureDialSetting(QWidget* parent, tagLeftBarInfo* info);
    ~dlgPictureDialSetting() override;

    // Shows the page with the slot of that picture. Null only shows it.
    HX_MODULE_API void ShowByIconViewItem(PicDialIconViewItem* item);
    void setTabRow(int row);
    // What the host last asked for; a negative row is none.
    void SetCurrentRow(int row);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

protected slots:
    void on_click_Delete() override;

private slots:
    void on_btnOK_clicked();
    void on_btnNO_clicked();
    void on_cmbPic_indexchanged(int index);
    void on_tabWgtList_currentItemChanged(QTableWidgetItem* current, QTableWidgetItem* previous);
    void DelayLoadData();

private:
    void makeButtons();
    void makeTable();
    void LoadData();
    void AddListItem(xmlElement* element, int row);
    void showSlot(int row);
    void showChoices(xmlElement* slot);
    void selectPicture(const QString& file);
    void showPicture(const QString& file);
    void setPicture(const QPixmap& picture);
    void setCell(int row, int column, const QString& text);
    QString cell(int row, int column) const;
    xmlElement* slotToWrite(int row);
    int storeSlot();
    bool skipsPress(QObject* watched, QEvent* event);

    std::unique_ptr<Ui::dlgPictureDialSetting> ui;
    std::unique_ptr<XmlTable> m_pSlots;
    LaterCells* m_pLater = nullptr;
    qUIPushButton* m_pBtnOK = nullptr;
    qUIPushButton* m_pBtnNO = nullptr;
    int m_bSkipPress = 0;
    int m_iCurrentRow = 0;
    bool m_bFirstIn = true;
    int m_nPicture = 0; // request of the one that is shown next
};

// The one page; made at the first call.
HX_MODULE_API dlgPictureDialSetting* GetdlgPictureDialSetting();
