#include "settings/call/dlgDssKeySetting.h"
#include "frame/choices.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "settings/call/cDssKeyInfo.h"
#include "settings/call/dssKeyFile.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/message.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "support/text/nuxError.h"
#include "ui_dlgDssKeySetting.h"
#include <QKeyEvent>
#include <QRegularExpressionValidator>
#include <iterator>

namespace {

const char* const kPhoneIni = "/rundata/config/user/hxPhone.ini";
constexpr int kLongestValue = 32;
constexpr int kLongestText = 99;
const char* const kTextMethods = "2aB,ABC,abc,123";

// By DSS_KEY_TYPE: the index is the code.
const tagChoice kTypes[] = {{HX_TR("None"), "0"},
                            {HX_TR("Line"), "1"},
                            {HX_TR("Speed Dial"), "2"},
                            {HX_TR("BLF"), "3"},
                            {HX_TR("BLF List"), "4"}};
const tagChoice kLines[] = {
    {HX_TR("Line 1"), "0"}, {HX_TR("Line 2"), "1"}, {HX_TR("Line 3"), "2"}, {HX_TR("Line 4"), "3"}};
const tagChoice kAuto = {HX_TR("Auto"), "-1"};

struct tagTypeRule
{
    bool bLine;
    bool bValue;
    bool bLabel;
    bool bExtension;
    bool bAuto; // there is the line "Auto"
};

// By DSS_KEY_TYPE.
const tagTypeRule kRules[] = {{false, false, false, false, true},
                              {true, false, false, false, true},
                              {true, true, true, false, true},
                              {true, true, true, true, false},
                              {true, false, false, false, false}};

// What the process that drives the keys calls a type.
int driverType(int type)
{
    enum { DRIVER_BLF = 16, DRIVER_BLF_LIST = 39 };
    return type == DSS_KEY_BLF ? DRIVER_BLF : type == DSS_KEY_BLF_LIST ? DRIVER_BLF_LIST : 0;
}

bool watches(int type)
{
    return type == DSS_KEY_BLF || type == DSS_KEY_BLF_LIST;
}

chString enteredText(QLineEdit* edit)
{
    return edit->isEnabled() ? fromQString(qReturnLineEdit(edit)) : chString();
}

chString chosenLine(QComboBox* box)
{
    return box->isEnabled() ? qGetExternValue(box, box->currentIndex()) : chString();
}

// What the user has called it shows translated where it is a word of the phone's.
void showText(QLineEdit* edit, const chString& text)
{
    SetQLineTextEx(edit, qTranslate(text.GetText()), 0);
}

} // namespace

dlgDssKeySetting* dlgDssKeySetting::m_pDlgDsskeySetting = nullptr;

dlgDssKeySetting* dlgDssKeySetting::getInstance(QWidget* parent, tagLeftBarInfo* info)
{
    if (!m_pDlgDsskeySetting)
        m_pDlgDsskeySetting = new dlgDssKeySetting(parent, info);
    return m_pDlgDsskeySetting;
}

dlgDssKeySetting* getDssKeySettingDlg()
{
    return dlgDssKeySetting::getInstance(nullptr, nullptr);
}

dlgDssKeySetting* GetDssKeySetting()
{
    return getDssKeySettingDlg();
}

dlgDssKeySetting::dlgDssKeySetting(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgDssKeySetting)
{
    NUX_ASSERT(m_pDlgDsskeySetting == nullptr, "s_DsskeySettingDlg == NULL");
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("DSS Key Setting"), KEYS_EDIT);
    m_frame.SetLeftBar(HX_THEME("menu/menu_speedredial.png"), HX_TR("DSS Key"));
    SetFilter(FILTER_WHILE_SHOWN);
    FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL}, {FOCUS_COMBO, SHOWS_NOTHING, SHOWS_NOTHING}});
    initControls();
    qFollowLanguage(this, [this] { showKeyName(); });
}

dlgDssKeySetting::~dlgDssKeySetting()
{
    m_pDlgDsskeySetting = nullptr;
}

// What a type switches is not switched here: until the type is changed for the first time, everything can be
// entered and there is no line "Auto".
void dlgDssKeySetting::initControls()
{
    setupComboBox(ui->cmbType);
    setupComboBox(ui->cmbLine);
    addChoices(ui->cmbType, kTypes);
    addChoices(ui->cmbLine, kLines);
    connect(ui->cmbType, SIGNAL(currentIndexChanged(int)), this, SLOT(on_cmbType_currentIndexChanged(int)));
    ui->editValue->setMaxLength(kLongestValue);
    ui->editValue->setValidator(
        new QRegularExpressionValidator(QRegularExpression("[0-9]+$"), ui->editValue));
    qInstallIME(ui->editValue, "123");
    for (QLineEdit* edit : {ui->editLabel, ui->editExtension}) {
        edit->setMaxLength(kLongestText);
        qInstallIME(edit, kTextMethods);
    }
    for (QLineEdit* edit : {ui->editValue, ui->editLabel, ui->editExtension})
        setupLineEdit(edit);
}

void dlgDssKeySetting::showEvent(QShowEvent* event)
{
    qSetCurrentIME(ui->editExtension, "2aB");
    qSetCurrentIME(ui->editLabel, "2aB");
    SettingPage::showEvent(event);
    ui->cmbType->setFocus();
}

void dlgDssKeySetting::ShowByDsskeyIndex(int index)
{
    xmlFile document;
    dssKeyLoad(document);
    xmlElement* item = dssKeyItem(dssKeyRoot(document), index + 1);
    if (!item)
        return;
    CDssKeyInfo info(item);
    info.m_strKeyName = dssKeyName(index + 1);
    ShowByDssKeyInfo(info, index + 1);
}

void dlgDssKeySetting::ShowByDssKeyInfo(const CDssKeyInfo& info, int keyNumber)
{
    screenBringUp(this);
    m_iKeyIndex = keyNumber;
    SetValueByDssKeyInfo(info);
}

void dlgDssKeySetting::showKeyName()
{
    ui->labKeyName->setText(qTranslate(HX_TR_NOTE("DSS Key", "one of them"), "one of them") + " " +
                            toQString(m_strKeyName));
}

void dlgDssKeySetting::SetValueByDssKeyInfo(const CDssKeyInfo& info)
{
    m_strKeyName = info.m_strKeyName;
    showKeyName();
    showText(ui->editLabel, info.m_strLabel);
    showText(ui->editValue, info.m_strValue);
    showText(ui->editExtension, info.m_strExtension);
    ui->cmbType->setCurrentIndex(info.m_iType);
    if (watches(info.m_iType))
        m_bBLFKey = 1;
    qSelectComboBoxItem(ui->cmbLine, fmtString("%d", info.m_iLine));
}

void dlgDssKeySetting::on_cmbType_currentIndexChanged(int index)
{
    if (index < 0 || index >= int(std::size(kRules)))
        return;
    const tagTypeRule& rule = kRules[index];
    ui->cmbLine->setEnabled(rule.bLine);
    ui->editValue->setEnabled(rule.bValue);
    ui->editLabel->setEnabled(rule.bLabel);
    ui->editExtension->setEnabled(rule.bExtension);
    if (rule.bAuto)
        AddAUTOItem();
    else
        DeleteAUTOItem();
}

void dlgDssKeySetting::AddAUTOItem()
{
    if (ui->cmbLine->findText(qTranslate(kAuto.szText)) < 0)
        insertChoice(ui->cmbLine, 0, kAuto);
}

void dlgDssKeySetting::DeleteAUTOItem()
{
    if (ui->cmbLine->findText(qTranslate(kAuto.szText)) < 0)
        return;
    if (ui->cmbLine->currentIndex() == 0)
        ui->cmbLine->setCurrentIndex(1);
    ui->cmbLine->removeItem(0);
}

// A key that could be stored in one of its files only is told; the next Save writes the rest.
void dlgDssKeySetting::on_click_Save()
{
    const int type = ui->cmbType->currentIndex();
    const bool needsValue = type == DSS_KEY_SPEED_DIAL || type == DSS_KEY_BLF;
    if (needsValue && ui->editValue->text().isEmpty()) {
        Refuse(ui->editValue, HX_TR("Value can't be empty!"));
        return;
    }
    SaveValue2Xml();
    SaveValue2Ini();
    if (m_bXmlStored)
        tellChange(type);
    if (noteUnlessSaved(m_bXmlStored && m_bIniStored, this))
        accept();
}

void dlgDssKeySetting::tellChange(int type)
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DSS_KEY, 0);
    if (!watches(type) && !m_bBLFKey)
        return;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DSS_KEY_FIRST, 0);
    m_bBLFKey = 0;
}

bool dlgDssKeySetting::SaveValue2Xml()
{
    xmlFile document;
    dssKeyLoad(document);
    xmlElement* item = dssKeyItem(dssKeyRoot(document), m_iKeyIndex);
    if (item)
        storeKey(item);
    m_bXmlStored = item && document.SaveToFile(DSS_KEY_XML);
    return true;
}

void dlgDssKeySetting::storeKey(xmlElement* item)
{
    CDssKeyInfo chosen;
    chosen.m_iType = ui->cmbType->currentIndex();
    item->GetAttributeValue("Type") = chosen.GetKeyTypeString();
    xmlElement* data = item->FindChildElement("ItemData");
    if (!data)
        data = item->AddChildElement("ItemData");
    data->GetAttributeValue("Line") = chosenLine(ui->cmbLine);
    data->GetAttributeValue("Label") = enteredText(ui->editLabel);
    data->GetAttributeValue("Extension") = enteredText(ui->editExtension);
    data->GetAttributeValue("Value") = enteredText(ui->editValue);
}

bool dlgDssKeySetting::SaveValue2Ini()
{
    const chString section = fmtString("memory%d", m_iKeyIndex);
    const chString line = chosenLine(ui->cmbLine);
    const int type = nuxSetRegistryInt(kPhoneIni, section, "DKtype", driverType(ui->cmbType->currentIndex()));
    const int number = nuxSetRegistryInt(kPhoneIni, section, "Line", line.IsEmpty() ? -1 : atoi(line));
    const int value = nuxSetRegistryString(kPhoneIni, section, "Value", enteredText(ui->editValue));
    m_bIniStored = type && number && value;
    return true;
}

void dlgDssKeySetting::on_click_Back()
{
    m_bBLFKey = 0;
    reject();
}

void dlgDssKeySetting::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        on_click_Back();
    else
        SettingPage::keyPressEvent(event);
}

bool dlgDssKeySetting::eventFilter(QObject* watched, QEvent* event)
{
    if (!isVisible())
        return false;
    if (event->type() == QEvent::Close && watched != this && isChildOf(watched, this))
        m_bBLFKey = 0;
    return SettingPage::eventFilter(watched, event);
}
