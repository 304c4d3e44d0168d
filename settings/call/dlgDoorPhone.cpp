#include "settings/call/dlgDoorPhone.h"
#include "frame/choices.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "support/host/ime.h"
#include "support/host/managers.h"
#include "support/host/message.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "ui_dlgDoorPhone.h"
#include <QTimer>

namespace {

const char* const kFile = "/rundata/data/doorphonedata.xml";
constexpr int kLongestName = 99;
constexpr int kLongestNumber = 32;

const tagChoice kModels[] = {
    {HX_TR("Mobotix"), "0"}, {HX_TR("2N"), "1"}, {HX_TR("Linkcom"), "2"}, {HX_TR("Custom"), "3"}};
enum { MODEL_MOBOTIX = 0 };

int modelIndex(const chString& name)
{
    for (int index = 0; index < int(std::size(kModels)); ++index) {
        if (name == kModels[index].szText)
            return index;
    }
    nuxTrace(TRACE_NOTE, "Door Phone DevModel Fail!");
    return MODEL_MOBOTIX;
}

} // namespace

dlgDoorPhone::dlgDoorPhone(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgDoorPhone)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackGround, HX_TR("Door Phone"), KEYS_EDIT);
    m_frame.SetLeftBar(HX_THEME("menu/menu_doorphoneitem.png"), HX_TR("Door Phone"));
    m_frame.SetSoftKey(SOFT_KEY_SAVE, "Save", HX_TR("Save"), SLOT(on_Save_clicked()));
    m_frame.SetSoftKey(SOFT_KEY_IME, "IME", HX_TR("IME"), SLOT(on_IME_clicked()));
    m_frame.SetSoftKey(SOFT_KEY_DELETE, "Delete", HX_TR("Delete"), SLOT(on_Del_clicked()));
    m_frame.SetSoftKey(SOFT_KEY_BACK, "Back", HX_TR("Back"), SLOT(on_Back_clicked()));
    QTimer::singleShot(0, this, SLOT(InitData()));
}

dlgDoorPhone::~dlgDoorPhone() = default;

void dlgDoorPhone::InitData()
{
    addChoices(ui->cmbDevModel, kModels);
    setupComboBox(ui->cmbDevModel);
    ui->editName->setMaxLength(kLongestName);
    qInstallIME(ui->editName, "123,2aB,ABC,abc");
    ui->editNumber->setMaxLength(kLongestNumber);
    qInstallIME(ui->editNumber, "123,2aB,ABC,abc");
    ui->editPin->setMaxLength(kLongestNumber);
    setupPasswordEdit(ui->editPin);
    qSetCurrentIME(ui->editName, "2aB");
    qSetCurrentIME(ui->editNumber, "123");
}

void dlgDoorPhone::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    QTimer::singleShot(0, this, SLOT(LoadFile()));
    qSetCurrentIME(ui->editName, "2aB");
    qSetCurrentIME(ui->editNumber, "123");
    ui->cmbDevModel->setFocus();
}

// What was read of a broken file must not take its place.
int dlgDoorPhone::load()
{
    if (m_xmlFile.LoadFromFile(kFile, XML_LIST_LIMIT))
        return 1;
    m_xmlFile.ClearDocument();
    return 0;
}

// What others have stored since stays. 0 where the file has gone or broken: what was loaded stays then.
int dlgDoorPhone::renew()
{
    if (!m_xmlFile.IsStale(kFile))
        return 1;
    xmlFile now;
    return now.LoadFromFile(kFile, XML_LIST_LIMIT) && load();
}

// Whatever is missing leaves the page without data.
void dlgDoorPhone::LoadFile()
{
    load();
    if (!xmlFindElementFromRoot(&m_xmlFile, "DoorPhone", 0))
        return;
    m_strTitle = fmtString("Door Phone %d", m_iIndex);
    xmlElement* item = entry();
    if (!item)
        return;
    m_frame.SetTitle(m_strTitle);
    LoadItemData2Widget(item);
}

// Found by its title; what it is called says nothing. Null when there is none.
xmlElement* dlgDoorPhone::entry() const
{
    const xmlElement* list = xmlFindElementFromRoot(&m_xmlFile, "DoorPhone", 0);
    return list ? list->FindChildElementByAttribute("title", m_strTitle) : nullptr;
}

void dlgDoorPhone::LoadItemData2Widget(xmlElement* item)
{
    chString model, name, number, pin, refuses;
    const struct
    {
        const char* szName;
        chString& strValue;
    } values[] = {{"DeviceModel", model},
                  {"DisplayName", name},
                  {"PhoneNumber", number},
                  {"UnlockPIN", pin},
                  {"RefuseNewIncall", refuses}};
    for (xmlElement* child = item->GetFirstChildElement(); child; child = xmlGetNextElement(child)) {
        for (const auto& value : values) {
            if (qstrcmp(child->GetName(), value.szName) == 0)
                PeekValue(child, value.strValue);
        }
    }
    ui->cmbDevModel->setCurrentIndex(modelIndex(model));
    ui->editName->setText(toQString(name));
    ui->editNumber->setText(toQString(number));
    ui->editPin->setText(toQString(pin));
    // Without either of them the box stays as it was.
    if (refuses == "1" || refuses == "0")
        ui->checkRing->setChecked(refuses == "1");
}

// An empty name is nobody's.
bool dlgDoorPhone::isDisplayNameExist(const QString& name) const
{
    if (name.isEmpty())
        return false;
    for (const DoorPhoneIconViewItem* item : GetDoorPhoneIconViewManager()->GetItems()) {
        if (item && item->m_strTitle != m_strTitle && toQString(item->m_strDisplayName) == name)
            return true;
    }
    return false;
}

void dlgDoorPhone::on_Save_clicked()
{
    if (!xmlFindElementFromRoot(&m_xmlFile, "DoorPhone", 0))
        return;
    if (isDisplayNameExist(qReturnLineEdit(ui->editName).trimmed())) {
        Refuse(ui->editName, HX_TR("Display Name already exists!"));
        ui->editName->clear();
        return;
    }
    if (!noteUnlessSaved(renew(), this))
        return;
    if (xmlElement* item = entry()) {
        if (!noteUnlessSaved(SaveWidgetData2Xml(item), this))
            return;
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DOOR_PHONE, 0);
    }
    accept();
}

// A child that is missing stays so.
int dlgDoorPhone::SaveWidgetData2Xml(xmlElement* item)
{
    const int index = ui->cmbDevModel->currentIndex();
    const struct
    {
        const char* szName;
        chString strValue;
    } values[] = {{"DeviceModel", index < 0 ? "" : kModels[index].szText},
                  {"DisplayName", fromQString(qReturnLineEdit(ui->editName))},
                  {"PhoneNumber", fromQString(qReturnLineEdit(ui->editNumber))},
                  {"UnlockPIN", fromQString(qReturnLineEdit(ui->editPin))},
                  {"RefuseNewIncall", ui->checkRing->isChecked() ? "1" : "0"},
                  {"FullScreen", index == MODEL_MOBOTIX ? "1" : "0"}};
    for (xmlElement* child = item->GetFirstChildElement(); child; child = xmlGetNextElement(child)) {
        for (const auto& value : values) {
            if (qstrcmp(child->GetName(), value.szName) == 0)
                SetValue(child, value.strValue);
        }
    }
    return m_xmlFile.SaveToFile(kFile, XML_FILE_PRIVATE);
}

void dlgDoorPhone::on_Back_clicked()
{
    ui->editName->clear();
    ui->editNumber->clear();
    ui->editPin->clear();
    GetDoorPhoneIconViewManager()->RefreshIconView();
    reject();
}

void dlgDoorPhone::on_IME_clicked()
{
    on_click_IME();
}

void dlgDoorPhone::on_Del_clicked()
{
    if (qobject_cast<QLineEdit*>(focusWidget()))
        on_click_Delete();
}
