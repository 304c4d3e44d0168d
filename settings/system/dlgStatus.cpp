#include "settings/system/dlgStatus.h"
#include "frame/configFiles.h"
#include "frame/modSetting.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgStatus.h"
#include <QKeyEvent>

namespace {

constexpr int kRefreshMs = 1000;
constexpr int kHeadingSize = 19;
constexpr int kHeadingWeight = 63; // semi-bold

// By LINE_STATE.
const char* const kStates[] = {HX_TR("Disabled"),        HX_TR("Registering"),  HX_TR("Registered"),
                               HX_TR("Register failed"), HX_TR("Unregistered"), HX_TR("Default account"),
                               HX_TR("Inexistence"),     HX_TR("Unregistering")};

// By NET_TYPE.
const char* const kPortTypes[] = {HX_TR("DHCP"), HX_TR("PPPoE"), HX_TR("Static IP")};

QString stateText(unsigned int state)
{
    if (state == LINE_EXIT)
        return qTranslate(HX_TR_NOTE("Exit", "state of a line"), "state of a line");
    return qTranslate(state < std::size(kStates) ? kStates[state] : HX_TR("Unknown"));
}

bool isPortType(int type)
{
    return type >= 0 && type < int(std::size(kPortTypes));
}

QString portTypeText()
{
    int type = netGetNetworkType();
    if (!isPortType(type))
        type = nuxGetRegistryInt(SYSTEM_INI, "Network", "eWANType", NET_TYPE_DHCP);
    return qTranslate(isPortType(type) ? kPortTypes[type] : HX_TR("NULL"));
}

QString linkText()
{
    if (!netIsCableConnected())
        return qTranslate(HX_TR("Disconnected"));
    return qTranslate(netIsIPConflictting() ? HX_TR("Conflict") : HX_TR("Connected"));
}

QString versionText(const char* key)
{
    return toQString(NUX_SubClass::nuxGetRegistryString(VERSION_INI, "Version", key, ""));
}

// A name that comes from a server may be longer than the page is wide.
void setValue(QLabel* label, const QString& text)
{
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()));
}

} // namespace

dlgStatus::dlgStatus(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), ui(new Ui::dlgStatus)
{
    ui->setupUi(this);
    m_frame.Build(this, this, ui->frmBackground, HX_TR("Status"), KEY_BACK);
    m_frame.SetSoftKey(1, "Version Detail", HX_TR("Version Detail"), SLOT(on_click_Versiondetail()));
    m_frame.SetSoftKey(2, "Next", HX_TR("Next"), SLOT(on_click_Next()));
    m_frame.SetLeftBar(HX_THEME("menu/menu_status.png"), HX_TR("Status"));
    for (QLabel* heading : {ui->labVersion, ui->labNetwork, ui->labAccount})
        setFontStyle(kHeadingSize, kHeadingWeight, heading, false);
    showFirstValues();
    qFollowLanguage(this, [this] { showTexts(); });
    // What is seen has to be true a second later, not a second and its slack.
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kRefreshMs);
    connect(&m_timer, &QTimer::timeout, this, &dlgStatus::OnInfoUpdateTimer);
    QTimer::singleShot(0, this, &dlgStatus::LoadData);
}

dlgStatus::~dlgStatus()
{
    phone_UnRegAccountNotify(this, -1);
}

// Until something is known.
void dlgStatus::showFirstValues()
{
    ui->valueSoftVersion->setText(QStringLiteral("0.0.0.0"));
    ui->valueHardVersion->setText(QStringLiteral("VideoPhone"));
    ui->valueIPAddress->setText(QStringLiteral("0.0.0.0"));
    ui->valueMACAddress->setText(QStringLiteral("00:00:00:00:00:00"));
    ui->valueWANType->setText(qTranslate(kPortTypes[NET_TYPE_DHCP]));
    ui->valueLinkStatus->setText(qTranslate(HX_TR("Connected")));
    ui->valueStatus->setText(stateText(LINE_UNREGISTERED));
}

void dlgStatus::LoadData()
{
    UpdateVersionInfo();
    UpdateNetworkInfo();
}

void dlgStatus::UpdateVersionInfo()
{
    setValue(ui->valueHardVersion, versionText("strHardware"));
    setValue(ui->valueSoftVersion, versionText("strRomVersion"));
}

void dlgStatus::UpdateNetworkInfo()
{
    setValue(ui->valueIPAddress, toQString(addr2String(netGetLocalIPv4())));
    setValue(ui->valueMACAddress, toQString(netGetMACText(':')));
    setValue(ui->valueWANType, portTypeText());
    setValue(ui->valueLinkStatus, linkText());
}

void dlgStatus::UpdateAccountInfo()
{
    tagAccountInfo info;
    const bool isKnown = phone_GetAccountInfoById(m_nAccount, &info) != 0;
    ui->labAccount->setText(qTranslate(HX_TR("Account")) + ' ' + QString::number(m_nAccount + 1));
    setValue(ui->valueDisplayName, QString::fromUtf8(info.szDisplayName));
    setValue(ui->valuePhoneNumber, QString::fromUtf8(info.szUser));
    setValue(ui->valueServer, QString::fromUtf8(info.szServer));
    setValue(ui->valueStatus, isKnown ? stateText(info.eState) : qTranslate(HX_TR("Unknown")));
    setValue(ui->valueWhyNot, info.szWhyNot[0] ? qTranslate(info.szWhyNot) : QString());
}

int dlgStatus::SwitchAccountInfo(bool forward)
{
    m_nAccount = (m_nAccount + (forward ? 1 : PHONE_ACCOUNT_COUNT - 1)) % PHONE_ACCOUNT_COUNT;
    UpdateAccountInfo();
    return 1;
}

void dlgStatus::OnInfoUpdateTimer()
{
    UpdateNetworkInfo();
}

int dlgStatus::TryThreadMessage(msgObject& msg)
{
    return msg.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH ? OnAccountRefesh(msg) : 0;
}

int dlgStatus::OnAccountRefesh(msgObject& msg)
{
    if (int(msg.wParam) == m_nAccount)
        UpdateAccountInfo();
    return 1;
}

// The page is kept: what it showed when it was left is old.
void dlgStatus::showEvent(QShowEvent* event)
{
    m_frame.Translate();
    QDialog::showEvent(event);
    phone_RegAccountNotify(this, -1);
    m_nAccount = 0;
    UpdateAccountInfo();
    UpdateNetworkInfo();
    m_timer.start();
}

void dlgStatus::hideEvent(QHideEvent* event)
{
    m_timer.stop();
    phone_UnRegAccountNotify(this, -1);
    QDialog::hideEvent(event);
}

// The arrows go through the accounts as well.
void dlgStatus::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
        SwitchAccountInfo(true);
        break;
    case Qt::Key_Left:
    case Qt::Key_Up:
        SwitchAccountInfo(false);
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

void dlgStatus::showTexts()
{
    UpdateNetworkInfo();
    UpdateAccountInfo();
}

void dlgStatus::ShowVersionDetail()
{
    settingOpenPage("Version Detail", this);
}

void dlgStatus::on_click_Versiondetail()
{
    ShowVersionDetail();
}

void dlgStatus::on_click_Next()
{
    SwitchAccountInfo(true);
}

void dlgStatus::on_click_Back()
{
    OnExit();
}

void dlgStatus::OnExit()
{
    reject();
}
