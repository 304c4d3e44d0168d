#include "settings/call/dlgIpCamera.h"
#include "frame/choices.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/managers.h"
#include "support/host/message.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "support/xml/xmlFile.h"
#include "ui_dlgIpCamera.h"
#include <QTimer>
#include <cstdlib>
#include <cstring>

namespace {

const char* const kFile = "/rundata/data/ipcameradata.xml";
constexpr int kLongestName = 99;
constexpr int kLongestNumber = 32;
constexpr int kGroupSize = 19;
constexpr int kGroupWeight = 63;

const tagChoice kModels[] = {{HX_TR("Mobotix"), "0"}, {HX_TR("Custom"), "1"}};
const tagChoice kAccounts[] = {{HX_TR("Auto"), "-1"},
                               {HX_TR("Line1"), "0"},
                               {HX_TR("Line2"), "1"},
                               {HX_TR("Line3"), "2"},
                               {HX_TR("Line4"), "3"}};

// The phone's image always has the file: a phone without it is not sound.
void loadOrEnd(xmlFile& document)
{
    if (document.LoadFromFile(kFile, XML_LIST_LIMIT))
        return;
    nuxTrace(TRACE_NOTE, "%s cannot be loaded: %s", kFile, document.GetErrorText());
    abort();
}

// Calls visit(item, index) for each entry until it answers true.
template <class Visit>
void forEachItem(const xmlFile& document, Visit visit)
{
    const xmlElement* list = xmlFindElementFromRoot(&document, "IPCamera", 0);
    int index = 0;
    for (xmlElement* item = list ? list->FindChildElement("item") : nullptr; item;
         item = xmlGetNextElement(item)) {
        if (strcmp(item->GetName(), "item") == 0 && visit(item, index++))
            return;
    }
}

chString content(const xmlElement* item, const char* child)
{
    chString value;
    PeekValue(item->FindChildElement(child), value);
    return value;
}

bool isSet(const xmlElement* item, const char* child)
{
    return atoi(content(item, child)) != 0;
}

void setContent(xmlElement* item, const char* child, const chString& value)
{
    xmlElement* element = item->FindChildElement(child);
    SetValue(element ? element : item->AddChildElement(child), value);
}

void setFlag(xmlElement* item, const char* child, bool flag)
{
    setContent(item, child, fmtString("%d", int(flag)));
}

// The language helper has its word with names and numbers as well.
QString shown(const chString& text)
{
    return qTranslate(text);
}

} // namespace

dlgIpCamera::dlgIpCamera(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgIpCamera)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("IP Camera Setting"), KEYS_EDIT);
    m_frame.SetLeftBar(HX_THEME("menu/menu_ipcamera_setting.png"), HX_TR("IP Camera"));
    m_frame.SetSoftKey(SOFT_KEY_SAVE, "Save", HX_TR("Save"), SLOT(on_click_save()));
    FollowFocus({{ui->editPin, SHOWS_AS_BEFORE, SHOWS_LABEL},
                 {FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL},
                 {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_NOTHING},
                 {FOCUS_ANY, SHOWS_NOTHING, SHOWS_NOTHING}});
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, QString());
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_DELETE, QString());
    for (QLabel* group : {ui->labBasic, ui->labAdvance})
        setFontStyle(kGroupSize, kGroupWeight, group, true);
    QTimer::singleShot(0, this, SLOT(InitData()));
}

dlgIpCamera::~dlgIpCamera() = default;

void dlgIpCamera::InitData()
{
    addChoices(ui->cmbDeviceModel, kModels);
    addChoices(ui->cmbAccount, kAccounts);
    setupComboBox(ui->cmbDeviceModel);
    setupComboBox(ui->cmbAccount);
    ui->editPhoneName->setMaxLength(kLongestName);
    qInstallIME(ui->editPhoneName, "2aB,ABC,abc,123");
    ui->editPhoneNum->setMaxLength(kLongestNumber);
    qInstallIME(ui->editPhoneNum, "2aB,ABC,abc,123");
    ui->editPin->setMaxLength(kLongestNumber);
    setupPasswordEdit(ui->editPin);
    if (isVisible())
        showFields();
}

void dlgIpCamera::initDataByIconViewItem(QWidget*, IPCameraIconViewItem* item)
{
    if (!item)
        return;
    m_strTitle = toQString(item->m_strTitle);
    m_strDisplayName = item->m_strDisplayName;
    m_strPhoneNumber = item->m_strPhoneNumber;
    m_strAccessPIN = item->m_strAccessPIN;
    m_iDeviceModel = item->m_iDeviceModel;
    m_iAccount = item->m_iAccount;
    m_bFullscreen = item->m_bFullscreen;
    m_bNotSendVideo = item->m_bNotSendVideo;
    m_bNotSendAudio = item->m_bNotSendAudio;
    m_iItemIndex = item->m_iIndex;
}

void dlgIpCamera::initDataByTitle(QString title)
{
    m_strTitle = title;
    xmlFile document;
    loadOrEnd(document);
    forEachItem(document, [this](xmlElement* item, int index) {
        if (toQString(item->GetAttributeValue("title").GetString()) != m_strTitle)
            return false;
        m_iDeviceModel = atoi(content(item, "DeviceModel"));
        const chString account = content(item, "Account");
        m_iAccount = account.IsEmpty() ? -1 : atoi(account);
        m_strDisplayName = content(item, "DisplayName");
        m_strPhoneNumber = content(item, "PhoneNumber");
        m_strAccessPIN = content(item, "AccessPIN");
        m_bFullscreen = isSet(item, "Fullscreen");
        m_bNotSendVideo = isSet(item, "Notsendvideo");
        m_bNotSendAudio = isSet(item, "Notsendaudio");
        m_iItemIndex = index;
        return true;
    });
}

void dlgIpCamera::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    showFields();
    ui->cmbDeviceModel->setFocus();
}

void dlgIpCamera::showFields()
{
    qSetCurrentIME(ui->editPhoneName, "2aB");
    qSetCurrentIME(ui->editPhoneNum, "123");
    ui->editPhoneName->setText(shown(m_strDisplayName));
    ui->editPhoneNum->setText(shown(m_strPhoneNumber));
    ui->editPin->setText(shown(m_strAccessPIN));
    qSelectComboBoxItem(ui->cmbAccount, fmtString("%d", m_iAccount));
    ui->cmbDeviceModel->setCurrentIndex(m_iDeviceModel);
    ui->chkFullScreen->setChecked(m_bFullscreen);
    ui->chkSendVideo->setChecked(m_bNotSendVideo);
    ui->chkSendAudio->setChecked(m_bNotSendAudio);
}

bool dlgIpCamera::isDisplayNameExist(const QString& name) const
{
    for (const IPCameraIconViewItem* item : GetIPCameraIconViewManager()->GetItems()) {
        if (item && item->m_iIndex != m_iItemIndex && toQString(item->m_strDisplayName) == name)
            return true;
    }
    return false;
}

int dlgIpCamera::refuseName(const char* message)
{
    Refuse(ui->editPhoneName, message);
    ui->editPhoneName->clear();
    return 0;
}

// Without name and number there is no camera any more. A good save ends as Back does, with reject().
void dlgIpCamera::on_click_save()
{
    const QString name = qReturnLineEdit(ui->editPhoneName).trimmed();
    if (name.isEmpty() && !ui->editPhoneNum->text().isEmpty()) {
        refuseName(HX_TR("Display Name is invalid!"));
        return;
    }
    if (!name.isEmpty() && isDisplayNameExist(name)) {
        refuseName(HX_TR("Display Name already exists!"));
        return;
    }
    if (!noteUnlessSaved(saveData2Xml(m_strTitle), this))
        return;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_IP_CAMERA, 0);
    reject();
}

int dlgIpCamera::saveData2Xml(QString& title)
{
    xmlFile document;
    loadOrEnd(document);
    forEachItem(document, [&](xmlElement* item, int) {
        if (toQString(item->GetAttributeValue("title").GetString()) != title)
            return false;
        // A model that the page does not know is not chosen, and stays.
        if (ui->cmbDeviceModel->currentIndex() >= 0)
            m_iDeviceModel = ui->cmbDeviceModel->currentData().toInt();
        m_iAccount = ui->cmbAccount->currentData().toInt();
        m_strDisplayName = fromQString(qReturnLineEdit(ui->editPhoneName));
        m_strPhoneNumber = fromQString(qReturnLineEdit(ui->editPhoneNum));
        m_strAccessPIN = fromQString(qReturnLineEdit(ui->editPin));
        m_bFullscreen = ui->chkFullScreen->isChecked();
        m_bNotSendVideo = ui->chkSendVideo->isChecked();
        m_bNotSendAudio = ui->chkSendAudio->isChecked();
        setContent(item, "DeviceModel", fmtString("%d", m_iDeviceModel));
        setContent(item, "Account", fmtString("%d", m_iAccount));
        setContent(item, "DisplayName", m_strDisplayName);
        setContent(item, "PhoneNumber", m_strPhoneNumber);
        setContent(item, "AccessPIN", m_strAccessPIN);
        setFlag(item, "Fullscreen", m_bFullscreen);
        setFlag(item, "Notsendvideo", m_bNotSendVideo);
        setFlag(item, "Notsendaudio", m_bNotSendAudio);
        return true;
    });
    return document.SaveToFile(kFile, XML_FILE_PRIVATE);
}

void dlgIpCamera::on_click_Back()
{
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    reject();
}
