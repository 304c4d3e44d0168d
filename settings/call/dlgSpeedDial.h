#pragma once
// The speed dials: all programmable keys in a list, with an editor beside it that knows three of their types.
// One for the whole phone, made during the boot. User-interface thread.
#include "frame/settingPage.h"
#include "frame/xmlTable.h"
#include <memory>

class QTableWidgetItem;
namespace Ui {
class dlgSpeedDial;
}

class dlgSpeedDial : public SettingPage
{
    Q_OBJECT
public:
    explicit dlgSpeedDial(QWidget* parent);
    ~dlgSpeedDial() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    // Makes row (from 0) the current one; nothing for a row that is not there. The page is shown before: each
    // show begins at the first row.
    HX_MODULE_API void SetTabWgtRow(int row);
    // A file that cannot be loaded, or has no keys, leaves the rows as they were.
    void LoadData();
    void setVisible(bool visible) override;

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

protected slots:
    void on_click_Delete() override;
    void on_click_Back() override;

private slots:
    int on_btnOK_clicked();
    void on_btnCancel_clicked();
    void on_cmbBoxType_indexchanged(int index);
    void on_tabWgtList_currentItemChanged(QTableWidgetItem* current, QTableWidgetItem* previous);

private:
    void build();
    void showTexts();
    int renewRows();
    bool isEdited() const;
    void addRow(int row, xmlElement* item);
    bool filterTableKey(int key);
    // What the type of the panel switches: the user changed it, or a row was selected.
    void setLeftController();
    void setRightController();
    void switchPanel();
    void showRow(int row);
    QString cellText(int row, int column) const;
    void setCells(int row, const QString& type, const QString& line, const QString& extension);
    int storeNone(int row, xmlElement* item);
    int storeLine(int row, xmlElement* item);
    int storeSpeedDial(int row, xmlElement* item);
    void storeAccount(xmlElement* item);

    std::unique_ptr<Ui::dlgSpeedDial> ui; // null until somebody needs it
    std::unique_ptr<XmlTable> m_pKeys;
    bool m_bSkipPress = false; // a finger was lifted elsewhere: its next press is not for this page
};

// The page; made at the first call, with its content at the first use of that.
HX_MODULE_API dlgSpeedDial* getSpeedDialDialog();
