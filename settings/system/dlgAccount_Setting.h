#pragma once
// Registration, STUN and outbound proxy of one SIP account. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgAccount_Setting;
}

class dlgAccount_Setting : public ConfigPage
{
    Q_OBJECT
public:
    // index: of the account, fixed for the page's life; names its file.
    dlgAccount_Setting(QWidget* parent, int index);
    ~dlgAccount_Setting() override;

protected:
    QWidget* FirstFocus() override;
    int save() override;
    void BroadcastChange() override;

protected slots:
    // Closes as "Back" does, on success too.
    void on_click_Save() override;

private slots:
    void InitData();

private:
    int checkLine();
    int checkStun();
    int checkOutbound();

    std::unique_ptr<Ui::dlgAccount_Setting> ui;
    int m_nIndex;
    chString m_strFile;
};
