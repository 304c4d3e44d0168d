#pragma once
// The page of one door phone: what it is, whom it calls, and the digits that open its door. One page for each
// number, kept by PopupDoorPhoneDialog(). User-interface thread.
#include "frame/settingPage.h"
#include "support/xml/xmlFile.h"
#include <memory>

namespace Ui {
class dlgDoorPhone;
}

class dlgDoorPhone : public SettingPage
{
    Q_OBJECT
public:
    dlgDoorPhone(QWidget* parent, tagLeftBarInfo* info);
    ~dlgDoorPhone() override;

    int m_iIndex = 1; // the number of the door phone; a change counts from the next show on

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void on_Save_clicked();
    void on_Back_clicked();
    void on_IME_clicked();
    void on_Del_clicked();
    void InitData();
    void LoadFile();

private:
    int load();
    int renew();
    xmlElement* entry() const;
    void LoadItemData2Widget(xmlElement* item);
    int SaveWidgetData2Xml(xmlElement* item);
    bool isDisplayNameExist(const QString& name) const;

    std::unique_ptr<Ui::dlgDoorPhone> ui;
    chString m_strTitle; // of the entry in the file
    xmlFile m_xmlFile;
};
