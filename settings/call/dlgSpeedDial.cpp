#include "settings/call/dlgSpeedDial.h"
#include "frame/choices.h"
#include "frame/fingerScroll.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "settings/call/dssKeyFile.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/managers.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgSpeedDial.h"
#include <QHeaderView>
#include <QKeyEvent>
#include <QTableWidget>
#include <cstdlib>
#include <iterator>

namespace {

enum COLUMN { COLUMN_KEY, COLUMN_TYPE, COLUMN_ACCOUNT, COLUMN_EXTENSION };
enum TYPE { TYPE_NONE, TYPE_LINE, TYPE_SPEED_DIAL };
constexpr int kRowHeight = 42;
constexpr int kListFont = 16;
constexpr int kLongestExtension = 99;
constexpr int kLastRow = DSS_KEY_COUNT - 1;
const char* const kButtonFolder = "/phone/resource/theme/default/bmp/button/";

const tagChoice kTypes[] = {
    {HX_TR("N/A"), "N/A"}, {HX_TR("Line"), "Line"}, {HX_TR("Speed Dial"), "Speed Dial"}};
const tagChoice kAccounts[] = {{HX_TR("Auto"), "-1"},
                               {HX_TR("Line 1"), "0"},
                               {HX_TR("Line 2"), "1"},
                               {HX_TR("Line 3"), "2"},
                               {HX_TR("Line 4"), "3"}};

dlgSpeedDial* s_dlgSpeedDial = nullptr;

QString typeText(TYPE type)
{
    return qTranslate(kTypes[type].szText);
}

// Of the line as the file has it; what is none is "Auto".
QString accountText(xmlElement* data)
{
    const long line = data ? strtol(data->GetAttributeValue("Line"), nullptr, 10) : 0;
    const bool isLine = line >= -1 && line + 1 < long(std::size(kAccounts));
    return qTranslate(kAccounts[isLine ? line + 1 : 0].szText);
}

void selectText(QComboBox* box, const QString& text)
{
    box->setCurrentIndex(box->findText(text, Qt::MatchFixedString));
}

void setImages(QPushButton* button, const char* name)
{
    const chString path = chString(kButtonFolder) + name;
    SetButton3StatusImage(button, path + "01.png", path + "02.png", path + "03.png");
}

} // namespace

dlgSpeedDial* getSpeedDialDialog()
{
    if (!s_dlgSpeedDial)
        new dlgSpeedDial(nullptr);
    return s_dlgSpeedDial;
}

dlgSpeedDial::dlgSpeedDial(QWidget* parent) : SettingPage(parent, nullptr)
{
    s_dlgSpeedDial = this;
    SetFilter(FILTER_WHILE_SHOWN);
}

dlgSpeedDial::~dlgSpeedDial()
{
    s_dlgSpeedDial = nullptr;
}

// The boot makes the page, which many a user never opens.
void dlgSpeedDial::build()
{
    if (ui)
        return;
    ui.reset(new Ui::dlgSpeedDial);
    ui->setupUi(this);
    // Before the frame's own, so that it comes after it: the choices have their new texts then.
    qFollowLanguage(this, [this] { showTexts(); });
    m_frame.Build(this, nullptr, ui->frmBackground, HX_TR("Speed Dial Setting"),
                  KEY_IME | KEY_DELETE | KEY_BACK);
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/gen_bg.jpg"));
    FollowFocus({{ui->editExtension, SHOWS_METHOD, SHOWS_AS_BEFORE},
                 {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_AS_BEFORE}});
    setImages(ui->btnOK, "btn_ok_bg");
    setImages(ui->btnCancel, "btn_cancel_bg");
    addChoices(ui->cmbBoxType, kTypes);
    addChoices(ui->cmbBoxAccount, kAccounts);
    setupComboBox(ui->cmbBoxType);
    setupComboBox(ui->cmbBoxAccount);
    setupLineEdit(ui->editExtension);
    ui->editExtension->setMaxLength(kLongestExtension);
    qInstallIME(ui->editExtension, "123,2aB,ABC,abc");
    setupSpeedDialList(ui->tabWgtList);
    setFontStyle(kListFont, -1, ui->tabWgtList, false);
    ui->tabWgtList->verticalHeader()->setMinimumSectionSize(kRowHeight);
    new FingerScroll(ui->tabWgtList);
    m_pKeys = std::make_unique<XmlTable>(ui->tabWgtList);
    connect(ui->btnOK, SIGNAL(clicked()), this, SLOT(on_btnOK_clicked()));
    connect(ui->btnCancel, SIGNAL(clicked()), this, SLOT(on_btnCancel_clicked()));
    connect(ui->cmbBoxType, SIGNAL(currentIndexChanged(int)), this, SLOT(on_cmbBoxType_indexchanged(int)));
    connect(ui->tabWgtList, &QTableWidget::currentItemChanged, this,
            &dlgSpeedDial::on_tabWgtList_currentItemChanged);
}

void dlgSpeedDial::setVisible(bool visible)
{
    if (visible)
        build();
    SettingPage::setVisible(visible);
}

// The rows carry translated texts, and the panel finds its items by them.
void dlgSpeedDial::showTexts()
{
    const int row = ui->tabWgtList->currentRow();
    LoadData();
    ui->tabWgtList->setCurrentCell(qBound(0, row, ui->tabWgtList->rowCount() - 1), COLUMN_KEY);
}

void dlgSpeedDial::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    ui->tabWgtList->setFocus();
    LoadData();
    qSetCurrentIME(ui->editExtension, "123");
}

// The key's editor may have stood over the page.
bool dlgSpeedDial::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && isVisible() && m_pKeys && m_pKeys->List())
        renewRows();
    return SettingPage::event(event);
}

// What others have stored since is shown, and stays; so does what was typed. 0 when the file has gone or
// broken.
int dlgSpeedDial::renewRows()
{
    const FILE_CHANGE change = m_pKeys->Change();
    if (change != FILE_RENEWED)
        return change == FILE_UNCHANGED;
    const int row = ui->tabWgtList->currentRow();
    const bool wasEdited = isEdited();
    const int type = ui->cmbBoxType->currentIndex();
    const int account = ui->cmbBoxAccount->currentIndex();
    const QString extension = ui->editExtension->text();
    LoadData();
    ui->tabWgtList->setCurrentCell(row, COLUMN_KEY);
    if (wasEdited) {
        ui->cmbBoxType->setCurrentIndex(type);
        ui->cmbBoxAccount->setCurrentIndex(account);
        ui->editExtension->setText(extension);
    }
    return m_pKeys->List() != nullptr;
}

// Whether the panel shows something else than the row.
bool dlgSpeedDial::isEdited() const
{
    const int row = ui->tabWgtList->currentRow();
    const QString account = cellText(row, COLUMN_ACCOUNT);
    return ui->cmbBoxType->currentText() != cellText(row, COLUMN_TYPE) ||
           (!account.isEmpty() && ui->cmbBoxAccount->currentText() != account) ||
           ui->editExtension->text() != cellText(row, COLUMN_EXTENSION);
}

void dlgSpeedDial::SetTabWgtRow(int row)
{
    nuxTrace(TRACE_DETAIL, "dlgSpeedDial::SetTabWgtRow=======%d", row);
    build();
    if (row >= 0 && row < ui->tabWgtList->rowCount())
        ui->tabWgtList->setCurrentCell(row, COLUMN_KEY);
}

void dlgSpeedDial::LoadData()
{
    build();
    xmlElement* keys = m_pKeys->Load(DSS_KEY_XML, "DssKey");
    if (!keys)
        return;
    qResetTableWidgetContent(ui->tabWgtList);
    xmlElement* item = dssKeyFirst(keys);
    for (int row = 0; item && row < DSS_KEY_COUNT; ++row, item = dssKeyNext(item))
        addRow(row, item);
    ui->tabWgtList->setCurrentCell(0, COLUMN_KEY);
}

void dlgSpeedDial::addRow(int row, xmlElement* item)
{
    ui->tabWgtList->insertRow(row);
    ui->tabWgtList->setRowHeight(row, kRowHeight);
    m_pKeys->SetElement(row, COLUMN_KEY, item);
    ui->tabWgtList->item(row, COLUMN_KEY)
        ->setText(qTranslate(HX_TR_NOTE("DSS Key", "one of them"), "one of them") + QString::number(row + 1));
    const chString type = item->GetAttributeValue("Type").GetString();
    xmlElement* data = item->FindChildElement("ItemData");
    if (type == "N/A")
        setCells(row, typeText(TYPE_NONE), QString(), QString());
    else if (type == "Line")
        setCells(row, typeText(TYPE_LINE), accountText(data), QString());
    else if (type == "Speed Dial")
        setCells(row, typeText(TYPE_SPEED_DIAL), accountText(data),
                 data ? toQString(data->GetAttributeValue("Extension").GetString()) : QString());
    else
        setCells(row, QString(), QString(), QString());
}

void dlgSpeedDial::setCells(int row, const QString& type, const QString& line, const QString& extension)
{
    const QString texts[] = {type, line, extension};
    for (int column = COLUMN_TYPE; column <= COLUMN_EXTENSION; ++column) {
        const QString& text = texts[column - COLUMN_TYPE];
        if (QTableWidgetItem* cell = ui->tabWgtList->item(row, column))
            cell->setText(text);
        else
            ui->tabWgtList->setItem(row, column, new QTableWidgetItem(text));
    }
}

QString dlgSpeedDial::cellText(int row, int column) const
{
    const QTableWidgetItem* cell = ui->tabWgtList->item(row, column);
    return cell ? cell->text() : QString();
}

void dlgSpeedDial::on_tabWgtList_currentItemChanged(QTableWidgetItem* current, QTableWidgetItem*)
{
    const int row = current ? current->row() : ui->tabWgtList->currentRow();
    if (row < 0)
        return;
    ui->labelKey->setText(cellText(row, COLUMN_KEY));
    showRow(row);
    setRightController();
}

void dlgSpeedDial::showRow(int row)
{
    const QString account = cellText(row, COLUMN_ACCOUNT);
    selectText(ui->cmbBoxType, cellText(row, COLUMN_TYPE));
    selectText(ui->cmbBoxAccount, account.isEmpty() ? qTranslate(kAccounts[0].szText) : account);
    ui->editExtension->setText(cellText(row, COLUMN_EXTENSION));
}

void dlgSpeedDial::switchPanel()
{
    const int type = ui->cmbBoxType->currentIndex();
    if (type < 0)
        return;
    ui->cmbBoxAccount->setEnabled(type != TYPE_NONE);
    ui->editExtension->setEnabled(type == TYPE_SPEED_DIAL);
    setWgtFontColor(ui->editExtension, type == TYPE_SPEED_DIAL);
}

void dlgSpeedDial::setLeftController()
{
    switchPanel();
    ui->editExtension->clear();
}

void dlgSpeedDial::setRightController()
{
    switchPanel();
    if (ui->cmbBoxType->currentIndex() != TYPE_SPEED_DIAL && ui->cmbBoxType->hasFocus())
        ui->editExtension->clear();
}

void dlgSpeedDial::on_cmbBoxType_indexchanged(int)
{
    setLeftController();
}

// The host hears of it with "Back".
int dlgSpeedDial::on_btnOK_clicked()
{
    const int row = ui->tabWgtList->currentRow();
    if (!ui->tabWgtList->item(row, COLUMN_KEY) || !noteUnlessSaved(renewRows(), this))
        return 0;
    QTableWidgetItem* cell = ui->tabWgtList->item(row, COLUMN_KEY);
    if (!cell)
        return 0;
    xmlElement* item = m_pKeys->Element(row);
    cell->setText(ui->labelKey->text());
    int (dlgSpeedDial::*const stores[])(int, xmlElement*) = {
        &dlgSpeedDial::storeNone, &dlgSpeedDial::storeLine, &dlgSpeedDial::storeSpeedDial};
    const int type = ui->cmbBoxType->currentIndex();
    if (item && type >= 0 && !(this->*stores[type])(row, item))
        return 0;
    const int saved = noteUnlessSaved(m_pKeys->Save(), this);
    ui->tabWgtList->setFocus();
    return saved;
}

int dlgSpeedDial::storeNone(int row, xmlElement* item)
{
    setCells(row, typeText(TYPE_NONE), QString(), QString());
    item->GetAttributeValue("Type") = kTypes[TYPE_NONE].szValue;
    item->ClearChildren();
    return 1;
}

int dlgSpeedDial::storeLine(int row, xmlElement* item)
{
    setCells(row, typeText(TYPE_LINE), ui->cmbBoxAccount->currentText(), QString());
    item->GetAttributeValue("Type") = kTypes[TYPE_LINE].szValue;
    storeAccount(item);
    return 1;
}

// The number stands in another attribute than that of the key's editor, which stays as it was.
int dlgSpeedDial::storeSpeedDial(int row, xmlElement* item)
{
    const QString extension = qReturnLineEdit(ui->editExtension);
    if (extension.isEmpty()) {
        noteBox(HX_TR("Extension is invalid!"), this);
        return 0;
    }
    setCells(row, typeText(TYPE_SPEED_DIAL), ui->cmbBoxAccount->currentText(), extension);
    item->GetAttributeValue("Type") = kTypes[TYPE_SPEED_DIAL].szValue;
    storeAccount(item);
    item->FindChildElement("ItemData")->GetAttributeValue("Extension") = fromQString(extension);
    return 1;
}

void dlgSpeedDial::storeAccount(xmlElement* item)
{
    xmlElement* data = item->FindChildElement("ItemData");
    if (!data)
        data = item->AddChildElement("ItemData");
    data->GetAttributeValue("Line") = fmtString("%d", ui->cmbBoxAccount->currentIndex() - 1);
}

void dlgSpeedDial::on_btnCancel_clicked()
{
    const int row = ui->tabWgtList->currentRow();
    if (row < 0)
        return;
    showRow(row);
    ui->tabWgtList->setFocus();
}

void dlgSpeedDial::on_click_Delete()
{
    const int row = ui->tabWgtList->currentRow();
    if (ui->editExtension->hasFocus())
        return qOnBackspaceClicked(this);
    if (row < 0 || cellText(row, COLUMN_TYPE) == typeText(TYPE_NONE) ||
        !questionBox(HX_TR("Delete the record?"), this) || !noteUnlessSaved(renewRows(), this))
        return;
    xmlElement* item = m_pKeys->Element(row);
    if (item) {
        storeNone(row, item);
        ui->cmbBoxType->setCurrentIndex(TYPE_NONE);
        switchPanel();
    }
    noteUnlessSaved(m_pKeys->Save(), this);
}

void dlgSpeedDial::on_click_Back()
{
    GetDssKeyManager()->LoadFile(DSS_KEY_XML, 0);
    reject();
}

// The table moves by itself, and leaves an arrow to the page at its ends; a short list has no last row.
void dlgSpeedDial::keyPressEvent(QKeyEvent* event)
{
    const int row = ui->tabWgtList->currentRow();
    if (event->key() == Qt::Key_Escape)
        on_click_Back();
    else if (event->key() == Qt::Key_Up && row == 0 && ui->tabWgtList->rowCount() > kLastRow)
        ui->tabWgtList->setCurrentCell(kLastRow, COLUMN_KEY);
    else if (event->key() == Qt::Key_Down && row == kLastRow)
        ui->tabWgtList->setCurrentCell(0, COLUMN_KEY);
    else
        SettingPage::keyPressEvent(event);
}

bool dlgSpeedDial::eventFilter(QObject* watched, QEvent* event)
{
    if (!isVisible() || !isActiveWindow())
        return false;
    const bool isWidget = watched->isWidgetType();
    if (isWidget && event->type() == QEvent::MouseButtonPress && m_bSkipPress)
        return true;
    if (isWidget && event->type() == QEvent::MouseButtonRelease)
        m_bSkipPress = !isChildOf(watched, this);
    if (event->type() == QEvent::KeyPress && ui->tabWgtList->hasFocus())
        return watched == ui->tabWgtList && filterTableKey(static_cast<QKeyEvent*>(event)->key());
    return SettingPage::eventFilter(watched, event);
}

// The rows step by themselves. From a row the keys go on to the editor beside it.
bool dlgSpeedDial::filterTableKey(int key)
{
    const bool goesOn = qIsOkKey(key) || key == Qt::Key_Right;
    if (goesOn)
        ui->cmbBoxType->setFocus();
    return goesOn;
}
