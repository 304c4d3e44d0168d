#pragma once
// The page "Account Setting": the four SIP lines with their states. User-interface thread.
#include "frame/pageFrame.h"
#include "support/host/leftbar.h"
#include "support/host/message.h"
#include "support/host/phone.h"
#include <QDialog>
#include <memory>

class qUIPushButton;
namespace Ui {
class dlgAccount_Setting_Btn;
}

class dlgAccount_Setting_Btn : public QDialog, public chMsgProcesser, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgAccount_Setting_Btn(QWidget* parent, tagLeftBarInfo* info);
    ~dlgAccount_Setting_Btn() override;

    // Takes the account refresh messages, which come while the page is the active window.
    int TryThreadMessage(msgObject& msg) override;
    // text: UTF-8, shown on the first button.
    void Display_Dialog_1(char* text);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private slots:
    void to_AccountPage0();
    void to_AccountPage1();
    void to_AccountPage2();
    void to_AccountPage3();
    void on_click_Back();

private:
    // From the stored configuration; the phone's own view of the lines comes with its messages.
    void InitData();
    void showNumbers();
    int OnAccountRefesh(msgObject& msg);
    void setButtonbyAccount(tagAccountInfo& info, LINE_STATE& state, qUIPushButton* button, int index);
    void SetAccountSettingBtn(qUIPushButton* button, bool active);
    void setAccountBtnFont(qUIPushButton* button);
    QString truncateAccountInfo(QString text);
    qUIPushButton* accountButton(unsigned int index) const;

    std::unique_ptr<Ui::dlgAccount_Setting_Btn> ui;
    PageFrame m_frame;
    // A line without a name is shown in the present language.
    bool m_abNamed[PHONE_ACCOUNT_COUNT] = {};
};
