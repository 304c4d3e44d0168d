#pragma once
// The page "Security": a new password for the administrator. User-interface thread.
#include "frame/settingPage.h"
#include <memory>

namespace Ui {
class dlgSecurity;
}

class dlgSecurity : public SettingPage
{
    Q_OBJECT
public:
    dlgSecurity(QWidget* parent, tagLeftBarInfo* info);
    ~dlgSecurity() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

protected slots:
    // Checks the old password, stores the new one, tells the phone, and closes.
    void on_click_Save() override;

private:
    void clearEdits();
    void changePassword();

    std::unique_ptr<Ui::dlgSecurity> ui;
    int m_nShow = 0;   // grows with each show and each hide
    int m_nSaving = 0; // the showing that is being saved, 0 is none
};
