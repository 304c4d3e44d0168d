#pragma once
// The page "Voice Mail": the number of each account's voice mail, what waits there, and a button that dials
// it. User-interface thread.
#include "frame/settingPage.h"
#include "settings/call/accountMail.h"
#include "support/host/message.h"
#include "support/host/phone.h"
#include <memory>

class QLineEdit;
class qUIPushButton;
namespace Ui {
class dlgVoice_Mail_Setting;
}

class dlgVoice_Mail_Setting : public SettingPage, public chMsgProcesser
{
    Q_OBJECT
public:
    dlgVoice_Mail_Setting(QWidget* parent, tagLeftBarInfo* info);
    ~dlgVoice_Mail_Setting() override;

    // Takes the account refresh messages, which come while the page is shown.
    int TryThreadMessage(msgObject& msg) override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

protected slots:
    void on_click_Save() override;

private slots:
    void on_Clicked_dial1();
    void on_Clicked_dial2();
    void on_Clicked_dial3();
    void on_Clicked_dial4();

private:
    void makeDialButtons();
    // Non-zero: once, at the construction; 0: at each show.
    void on_init_data(int bFirst);
    void setAccountInfo(int account);
    int OnAccountRefesh(msgObject& msg);
    AccountMail row(int account) const;
    QLineEdit* edit(int account) const;
    void dial(int account, const char* emptyNote);
    void noteEmpty(int account, const char* emptyNote);

    std::unique_ptr<Ui::dlgVoice_Mail_Setting> ui;
    qUIPushButton* m_pBtnDial1 = nullptr;
    qUIPushButton* m_pBtnDial2 = nullptr;
    qUIPushButton* m_pBtnDial3 = nullptr;
    qUIPushButton* m_pBtnDial4 = nullptr;
};
