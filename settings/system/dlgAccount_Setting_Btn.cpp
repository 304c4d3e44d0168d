#include "settings/system/dlgAccount_Setting_Btn.h"
#include "frame/configFiles.h"
#include "frame/pageLists.h"
#include "settings/system/accountLook.h"
#include "support/host/button.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgAccount_Setting_Btn.h"

namespace {

constexpr int kFontSize = 15;
constexpr int kLongestText = 9;
constexpr int kKeptText = 10;

QString textWithoutAccount(int index)
{
    return " " + qTranslate("Account") + " " + QString::number(index + 1) + "  ";
}

} // namespace

dlgAccount_Setting_Btn::dlgAccount_Setting_Btn(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), ui(new Ui::dlgAccount_Setting_Btn)
{
    ui->setupUi(this);
    m_frame.Build(this, this, ui->frmBackground, HX_TR("Account Setting"), KEY_BACK);
    m_frame.SetLeftBar(HX_THEME("menu/menu_account.png"), HX_TR("Account Setting"));
    connect(ui->btnAccount1, SIGNAL(clicked()), this, SLOT(to_AccountPage0()));
    connect(ui->btnAccount2, SIGNAL(clicked()), this, SLOT(to_AccountPage1()));
    connect(ui->btnAccount3, SIGNAL(clicked()), this, SLOT(to_AccountPage2()));
    connect(ui->btnAccount4, SIGNAL(clicked()), this, SLOT(to_AccountPage3()));
    InitData();
    qFollowLanguage(this, [this] { showNumbers(); });
}

dlgAccount_Setting_Btn::~dlgAccount_Setting_Btn()
{
    phone_UnRegAccountNotify(this, -1);
}

void dlgAccount_Setting_Btn::InitData()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        qUIPushButton* button = accountButton(unsigned(index));
        const chString file = fmtString("%s%d.cfg", SIP_ACCOUNT_FILE, index);
        const chString name = NUX_SubClass::nuxGetRegistryString(file, "account", "DisplayName", "");
        const chString host = NUX_SubClass::nuxGetRegistryString(file, "account", "SIPServerHost", "");
        const bool isActive = !name.IsEmpty();
        m_abNamed[index] = isActive;
        button->setText(isActive ? truncateAccountInfo(" " + toQString(name) + "@" + toQString(host))
                                 : textWithoutAccount(index));
        SetButtonIcon(button,
                      isActive ? HX_THEME("icon/btn_dss_fg02.png") : HX_THEME("icon/btn_dss_fg03.png"));
        SetAccountSettingBtn(button, isActive);
        setAccountBtnFont(button);
    }
}

qUIPushButton* dlgAccount_Setting_Btn::accountButton(unsigned int index) const
{
    qUIPushButton* const buttons[] = {ui->btnAccount1, ui->btnAccount2, ui->btnAccount3, ui->btnAccount4};
    return index < PHONE_ACCOUNT_COUNT ? buttons[index] : nullptr;
}

void dlgAccount_Setting_Btn::setAccountBtnFont(qUIPushButton* button)
{
    setFontStyle(kFontSize, -1, button, false);
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, Qt::white);
    button->setPalette(palette);
    button->setTextAlign(Qt::AlignLeft | Qt::AlignVCenter);
}

QString dlgAccount_Setting_Btn::truncateAccountInfo(QString text)
{
    return accountCutText(text, kLongestText, kKeptText);
}

// The picture for a disabled button is shared by both sets.
void dlgAccount_Setting_Btn::SetAccountSettingBtn(qUIPushButton* button, bool active)
{
    const char* disabled = HX_THEME("button/btn_dss_bg_m003.png");
    if (active)
        SetButton3StatusImage(button, HX_THEME("button/btn_dss_bg_m001.png"),
                              HX_THEME("button/btn_dss_bg_m002.png"), disabled);
    else
        SetButton3StatusImage(button, HX_THEME("button/btn_dss_bg_m101.png"),
                              HX_THEME("button/btn_dss_bg_m102.png"), disabled);
}

bool dlgAccount_Setting_Btn::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        phone_RegAccountNotify(this, -1);
    else if (event->type() == QEvent::WindowDeactivate)
        phone_UnRegAccountNotify(this, -1);
    return QDialog::event(event);
}

void dlgAccount_Setting_Btn::showEvent(QShowEvent* event)
{
    m_frame.Translate();
    QDialog::showEvent(event);
}

void dlgAccount_Setting_Btn::showNumbers()
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        if (!m_abNamed[index])
            accountButton(unsigned(index))->setText(textWithoutAccount(index));
    }
}

int dlgAccount_Setting_Btn::TryThreadMessage(msgObject& msg)
{
    if (msg.message != PHONE_PUBLIC_MSG_ACCOUNT_REFRESH)
        return 0;
    nuxTrace(TRACE_NOTE, "PHONE_PUBLIC_MSG_ACCOUNT_REFRESH(%d, %d)", int(msg.wParam), int(msg.lParam));
    return OnAccountRefesh(msg);
}

int dlgAccount_Setting_Btn::OnAccountRefesh(msgObject& msg)
{
    qUIPushButton* button = accountButton(msg.wParam);
    if (!button) {
        nuxTrace(TRACE_NOTE, "there is no account %u", msg.wParam);
        return 1;
    }
    LINE_STATE state = static_cast<LINE_STATE>(msg.lParam);
    tagAccountInfo info;
    phone_GetAccountInfoById(int(msg.wParam), &info);
    setButtonbyAccount(info, state, button, int(msg.wParam));
    return 1;
}

void dlgAccount_Setting_Btn::setButtonbyAccount(tagAccountInfo& info, LINE_STATE& state,
                                                qUIPushButton* button, int index)
{
    const QString user = QString::fromUtf8(info.szUser);
    m_abNamed[index] = !user.isEmpty();
    if (user.isEmpty()) {
        button->setText(textWithoutAccount(index));
        setAccountBtnFont(button);
        SetAccountSettingBtn(button, false);
    } else {
        const QString name = truncateAccountInfo(" " + user + "@" + QString::fromUtf8(info.szServer));
        button->setText(name);
        nuxTrace(TRACE_NOTE, "strAccountName = %s", fromQString(name).GetText());
    }
    accountSetStateIcon(button, state);
}

void dlgAccount_Setting_Btn::Display_Dialog_1(char* text)
{
    ui->btnAccount1->setText(QString::fromUtf8(text));
}

void dlgAccount_Setting_Btn::to_AccountPage0()
{
    PopupAccountDialog(0, 1);
}

void dlgAccount_Setting_Btn::to_AccountPage1()
{
    PopupAccountDialog(1, 1);
}

void dlgAccount_Setting_Btn::to_AccountPage2()
{
    PopupAccountDialog(2, 1);
}

void dlgAccount_Setting_Btn::to_AccountPage3()
{
    PopupAccountDialog(3, 1);
}

void dlgAccount_Setting_Btn::on_click_Back()
{
    reject();
}
