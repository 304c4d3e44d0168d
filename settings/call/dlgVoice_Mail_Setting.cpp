#include "settings/call/dlgVoice_Mail_Setting.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/button.h"
#include "support/host/image.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_dlgVoice_Mail_Setting.h"
#include <QLabel>

namespace {

enum { CALL_FROM_PAGE = -1 };
constexpr int kLongestNumber = 99;
constexpr QRect kFirstButton(512, 100, 54, 54);
constexpr int kButtonStep = 85;
const char* const kSection = "account";
const char* const kKey = "VoiceMail";

chString accountFile(int account)
{
    return fmtString("%s%d.cfg", SIP_ACCOUNT_FILE, account);
}

// States that say nothing about the line leave the picture as it is.
void showState(QLabel* picture, LINE_STATE state)
{
    switch (state) {
    case LINE_REGISTERED:
    case LINE_DEFAULT_ACCOUNT:
        picture->setPixmap(GetImageManager()->GetImage(HX_THEME("icon/icon_registered.png")));
        break;
    case LINE_DISABLED:
    case LINE_REGISTER_FAILED:
    case LINE_UNREGISTERED:
        picture->setPixmap(GetImageManager()->GetImage(HX_THEME("icon/icon_unregedited.png")));
        break;
    default:
        break;
    }
}

} // namespace

dlgVoice_Mail_Setting::dlgVoice_Mail_Setting(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgVoice_Mail_Setting)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Voice Mail Setting"), KEYS_EDIT);
    // The message key opens the page without a record.
    m_frame.SetLeftBar(HX_THEME("menu/menu_voicemail.png"), HX_TR("Voice Mail"));
    makeDialButtons();
    on_init_data(1);
    qFollowLanguage(this, [this] {
        for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account)
            setAccountInfo(account);
    });
}

dlgVoice_Mail_Setting::~dlgVoice_Mail_Setting()
{
    phone_UnRegAccountNotify(this, -1);
}

void dlgVoice_Mail_Setting::makeDialButtons()
{
    struct
    {
        qUIPushButton** ppButton;
        const char* szName;
        const char* szSlot;
    } const buttons[] = {{&m_pBtnDial1, "btnDial1", SLOT(on_Clicked_dial1())},
                         {&m_pBtnDial2, "btnDial2", SLOT(on_Clicked_dial2())},
                         {&m_pBtnDial3, "btnDial3", SLOT(on_Clicked_dial3())},
                         {&m_pBtnDial4, "btnDial4", SLOT(on_Clicked_dial4())}};
    QRect place = kFirstButton;
    QWidget* before = ui->editText1;
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        qUIPushButton* button = CreateUIPushButton(place, buttons[account].szName, this);
        SetButton3StatusImage(button, HX_THEME("button/btn_msg_bg01.png"),
                              HX_THEME("button/btn_msg_bg02.png"), HX_THEME("button/btn_msg_bg03.png"));
        connect(button, SIGNAL(clicked()), this, buttons[account].szSlot);
        *buttons[account].ppButton = button;
        // Each edit is followed by its button.
        if (account > 0)
            setTabOrder(before, edit(account));
        setTabOrder(edit(account), button);
        before = button;
        place.translate(0, kButtonStep);
    }
}

void dlgVoice_Mail_Setting::on_init_data(int bFirst)
{
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        if (bFirst) {
            qInstallIME(edit(account), "2aB,ABC,abc,123");
            edit(account)->setMaxLength(kLongestNumber);
        } else {
            edit(account)->clear();
            qSetCurrentIME(edit(account), "123");
        }
    }
    if (bFirst)
        return;
    ui->editText1->setFocus();
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        setAccountInfo(account);
        edit(account)->setText(
            toQString(NUX_SubClass::nuxGetRegistryString(accountFile(account), kSection, kKey, "")));
    }
    phone_RegAccountNotify(this, -1);
}

void dlgVoice_Mail_Setting::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    on_init_data(0);
}

void dlgVoice_Mail_Setting::hideEvent(QHideEvent* event)
{
    phone_UnRegAccountNotify(this, -1);
    SettingPage::hideEvent(event);
}

AccountMail dlgVoice_Mail_Setting::row(int account) const
{
    QLabel* const accounts[] = {ui->labAccount1, ui->labAccount2, ui->labAccount3, ui->labAccount4};
    QLabel* const pictures[] = {ui->labPic1, ui->labPic2, ui->labPic3, ui->labPic4};
    QLabel* const mails[] = {ui->labVoiceMail1, ui->labVoiceMail2, ui->labVoiceMail3, ui->labVoiceMail4};
    return AccountMail(account, accounts[account], pictures[account], mails[account]);
}

QLineEdit* dlgVoice_Mail_Setting::edit(int account) const
{
    QLineEdit* const edits[] = {ui->editText1, ui->editText2, ui->editText3, ui->editText4};
    return edits[account];
}

void dlgVoice_Mail_Setting::setAccountInfo(int account)
{
    tagAccountInfo info;
    phone_GetAccountInfoById(account, &info);
    AccountMail mail = row(account);
    const QString user = QString::fromUtf8(info.szUser);
    const QString name = user.isEmpty() ? qTranslate(HX_TR("Account")) + QString::number(account + 1)
                                        : user + "@" + QString::fromUtf8(info.szServer);
    QLabel* label = mail.m_pLabAccount;
    label->setText(label->fontMetrics().elidedText(name, Qt::ElideMiddle, label->width()));
    showState(mail.m_pLabPic, info.eState);
    mail.SetMail(unsigned(info.nNewMessages), unsigned(info.nOldMessages));
}

int dlgVoice_Mail_Setting::TryThreadMessage(msgObject& msg)
{
    return msg.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH ? OnAccountRefesh(msg) : 0;
}

int dlgVoice_Mail_Setting::OnAccountRefesh(msgObject& msg)
{
    if (msg.wParam < PHONE_ACCOUNT_COUNT)
        setAccountInfo(int(msg.wParam));
    return 1;
}

void dlgVoice_Mail_Setting::noteEmpty(int account, const char* emptyNote)
{
    if (edit(account)->text().isEmpty())
        noteBox(emptyNote, this);
}

// What the edit holds, stored or not. An empty number is asked for all the same.
void dlgVoice_Mail_Setting::dial(int account, const char* emptyNote)
{
    tagAccountInfo info;
    phone_GetAccountInfoById(account, &info);
    if (!AccountMail::IsRegistered(info)) {
        noteBox(HX_TR("Account is invalid!"), this);
        return;
    }
    phone_CallNumber(fromQString(edit(account)->text()), account, CALL_FROM_PAGE);
    noteEmpty(account, emptyNote);
}

void dlgVoice_Mail_Setting::on_Clicked_dial1()
{
    dial(0, HX_TR("Voice mail number is invalid!"));
}

// The one that does not hold an account that nobody knows for one that is not registered.
void dlgVoice_Mail_Setting::on_Clicked_dial2()
{
    tagAccountInfo info;
    if (phone_GetAccountInfoById(1, &info))
        dial(1, HX_TR("Voice mail number is invalid!"));
    else
        noteEmpty(1, HX_TR("Voice mail number is invalid!"));
}

// Its note has always had two marks.
void dlgVoice_Mail_Setting::on_Clicked_dial3()
{
    dial(2, HX_TR("Voice mail number is invalid!!"));
}

void dlgVoice_Mail_Setting::on_Clicked_dial4()
{
    dial(3, HX_TR("Voice mail number is invalid!"));
}

// Told whether anything differs or not.
void dlgVoice_Mail_Setting::on_click_Save()
{
    int saved = 1;
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        const chString number = fromQString(qReturnLineEdit(edit(account)));
        if (!nuxSetRegistryString(accountFile(account), kSection, kKey, number))
            saved = 0;
    }
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_VOICE_MAIL, 0);
    if (noteUnlessSaved(saved, this))
        accept();
}
