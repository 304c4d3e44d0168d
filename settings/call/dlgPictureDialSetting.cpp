#include "settings/call/dlgPictureDialSetting.h"
#include "frame/choices.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "frame/pageClass.h"
#include "frame/popupDialog.h"
#include "frame/wgtHelper.h"
#include "support/file/path.h"
#include "support/host/box.h"
#include "support/host/button.h"
#include "support/host/combo.h"
#include "support/host/desktop.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgPictureDialSetting.h"
#include <QKeyEvent>
#include <QTimer>

HX_PAGE_OF_ANOTHER_FILE(dlgPictureDialSetting);

namespace {

enum { SLOTS = 6, COLUMN_INDEX = 0, COLUMN_NAME = 1, COLUMN_NUMBER = 2, COLUMNS = 3 };

#define PICTURE_DIAL_XML "/rundata/data/picture-dial.xml"
const char* const kPictures = "/rundata/picture-dial/";
const char* const kNoPicture = "Default.png";
constexpr int kRowHeight = 45;
constexpr int kColumnWidths[COLUMNS] = {80, 140, 140};
constexpr int kLongestName = 24;
constexpr int kLongestNumber = 99;
constexpr int kNameShown = 15;
constexpr int kCaptionSize = 16;
constexpr QRect kOK(488, 365, 78, 40);
constexpr QRect kNO(628, 365, 78, 40);

const tagChoice kAccounts[] = {{HX_TR("Auto"), "-1"},
                               {HX_TR("Line 1"), "0"},
                               {HX_TR("Line 2"), "1"},
                               {HX_TR("Line 3"), "2"},
                               {HX_TR("Line 4"), "3"}};

dlgPictureDialSetting* s_pPage = nullptr;

struct tagSlot
{
    const char* szTitle;
    const char* szFile;
    const char* szNumber;
    const char* szLine;
};

// What a slot without a picture has.
const tagSlot kEmptySlot = {"", kNoPicture, "", "-1"};

bool isEmptySlot(xmlElement* slot)
{
    return slot->GetAttributeValue("title") == kEmptySlot.szTitle &&
           slot->GetAttributeValue("file") == kEmptySlot.szFile &&
           slot->GetAttributeValue("number") == kEmptySlot.szNumber &&
           slot->GetAttributeValue("line") == kEmptySlot.szLine;
}

void writeSlot(xmlElement* slot, const tagSlot& values)
{
    slot->SetAttributeValue("title", values.szTitle);
    slot->SetAttributeValue("file", values.szFile);
    slot->SetAttributeValue("number", values.szNumber);
    slot->SetAttributeValue("line", values.szLine);
}

QString attribute(xmlElement* slot, const char* name)
{
    return toQString(slot->GetAttributeValue(name).GetString());
}

// What is no line is the default one.
int accountIndex(xmlElement* slot)
{
    bool isNumber = false;
    const int index = attribute(slot, "line").toInt(&isNumber) + 1;
    return isNumber && index > 0 && index <= PHONE_ACCOUNT_COUNT ? index : 0;
}

// A name that is too long for the edit is shown from its beginning.
void showBeginning(QLineEdit* edit)
{
    if (edit->text().size() > kNameShown)
        edit->setCursorPosition(kNameShown);
}

} // namespace

dlgPictureDialSetting* GetdlgPictureDialSetting()
{
    if (!s_pPage)
        PopupDialog<dlgPictureDialSetting>(nullptr, 1, 0, 0);
    return s_pPage;
}

dlgPictureDialSetting::dlgPictureDialSetting(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgPictureDialSetting)
{
    s_pPage = this;
    ui->setupUi(this);
    SetFilter(FILTER_WHILE_SHOWN);
    BuildFrame(ui->frmBackground, HX_TR("Picture-dial Setting"), KEY_IME | KEY_DELETE | KEY_BACK);
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/gen_bg_has_topbar_and_softkey.jpg"));
    // The home screen opens the page without a record.
    m_frame.SetLeftBar(HX_THEME("menu/menu_picturedial.png"), HX_TR("Picture-dial Setting"));
    FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL},
                 {FOCUS_COMBO, SHOWS_NOTHING, SHOWS_NOTHING},
                 {FOCUS_TABLE, SHOWS_NOTHING, SHOWS_LABEL}});
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, QString());
    makeTable();
    makeButtons();
    addChoices(ui->cmbAccount, kAccounts);
    qInstallIME(ui->editName, "123,2aB,ABC,abc");
    qInstallIME(ui->editNumber, "123,2aB,ABC,abc");
    for (QLabel* caption : {ui->labName, ui->labNumber, ui->labAccount})
        setFontStyle(kCaptionSize, -1, caption, false);
}

dlgPictureDialSetting::~dlgPictureDialSetting()
{
    s_pPage = nullptr;
}

void dlgPictureDialSetting::makeTable()
{
    QTableWidget* table = ui->tabWgtList;
    setupPicDiaSettingList(table);
    table->setColumnCount(COLUMNS);
    for (int column = 0; column < COLUMNS; ++column)
        table->setColumnWidth(column, kColumnWidths[column]);
    table->verticalHeader()->setDefaultSectionSize(kRowHeight);
    m_pSlots = std::make_unique<XmlTable>(table);
    m_pLater = new LaterCells(table);
    connect(table, SIGNAL(currentItemChanged(QTableWidgetItem*, QTableWidgetItem*)), this,
            SLOT(on_tabWgtList_currentItemChanged(QTableWidgetItem*, QTableWidgetItem*)));
}

void dlgPictureDialSetting::makeButtons()
{
    m_pBtnOK = CreateUIPushButton(kOK, "btnOK", this);
    SetButton3StatusImage(m_pBtnOK, HX_THEME("button/btn_ok_bg01.png"), HX_THEME("button/btn_ok_bg02.png"),
                          HX_THEME("button/btn_ok_bg03.png"));
    m_pBtnNO = CreateUIPushButton(kNO, "btnNO", this);
    SetButton3StatusImage(m_pBtnNO, HX_THEME("button/btn_cancel_bg01.png"),
                          HX_THEME("button/btn_cancel_bg02.png"), HX_THEME("button/btn_cancel_bg03.png"));
    connect(m_pBtnOK, SIGNAL(clicked()), this, SLOT(on_btnOK_clicked()));
    connect(m_pBtnNO, SIGNAL(clicked()), this, SLOT(on_btnNO_clicked()));
    setTabOrder(ui->cmbAccount, m_pBtnOK);
    setTabOrder(m_pBtnOK, m_pBtnNO);
}

// The picture of the first slot is on its way before the list of pictures is filled.
void dlgPictureDialSetting::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    m_pLater->Clear();
    ui->tabWgtList->setRowCount(0);
    ui->tabWgtList->setRowCount(SLOTS);
    LoadData();
    if (xmlElement* slot = m_pSlots->CurrentElement()) {
        const QString file = attribute(slot, "file");
        if (!file.isEmpty()) {
            selectPicture(file);
            showPicture(file);
        }
    }
    showBeginning(ui->editName);
    qSetCurrentIME(ui->editName, "2aB");
    qSetCurrentIME(ui->editNumber, "123");
    ui->tabWgtList->setFocus();
    QTimer::singleShot(0, this, SLOT(DelayLoadData()));
}

// A file that cannot be loaded leaves rows without anything.
void dlgPictureDialSetting::LoadData()
{
    xmlElement* list = m_pSlots->Load(PICTURE_DIAL_XML, "picture-dial");
    int row = 0;
    for (xmlElement* slot = list ? list->FindChildElement("icon") : nullptr; slot && row < SLOTS;
         slot = xmlGetNextElement(slot)) {
        if (qstrcmp(slot->GetName(), "icon") == 0)
            AddListItem(slot, row++);
    }
    if (row > 0)
        ui->tabWgtList->setCurrentCell(0, 0);
}

void dlgPictureDialSetting::AddListItem(xmlElement* element, int row)
{
    if (!element)
        return;
    m_pSlots->SetElement(row, COLUMN_INDEX, element);
    ui->tabWgtList->item(row, COLUMN_INDEX)->setText(QString::number(row + 1));
    m_pLater->SetText(row, COLUMN_NAME, attribute(element, "title"));
    m_pLater->SetText(row, COLUMN_NUMBER, attribute(element, "number"));
}

void dlgPictureDialSetting::DelayLoadData()
{
    if (m_bFirstIn) {
        m_bFirstIn = false;
        ui->editName->setMaxLength(kLongestName);
        showBeginning(ui->editName); // a limit moves the cursor
        ui->editNumber->setMaxLength(kLongestNumber);
        setupComboBox(ui->cmbPic);
        connect(ui->cmbPic, SIGNAL(currentIndexChanged(int)), this, SLOT(on_cmbPic_indexchanged(int)));
    }
    ui->cmbPic->clear();
    qFillMediaCommboView(ui->cmbPic, MEDIA_FILE_XML, "picture-dial");
    if (xmlElement* slot = m_pSlots->CurrentElement())
        selectPicture(attribute(slot, "file"));
}

// A picture that is not, or not yet, in the list joins it: a slot keeps what it has.
void dlgPictureDialSetting::selectPicture(const QString& file)
{
    int index = ui->cmbPic->findText(file, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0 && !file.isEmpty()) {
        ui->cmbPic->insertItem(0, file);
        index = 0;
    }
    ui->cmbPic->setCurrentIndex(index);
}

// The name comes from a file that others write too: it never leads out of the folder.
void dlgPictureDialSetting::showPicture(const QString& file)
{
    pictureCancel(m_nPicture);
    m_nPicture = 0;
    const chString name = fromQString(file);
    if (!pathIsSafeName(name)) {
        setPicture(QPixmap());
        return;
    }
    tagPictureWish wish;
    wish.strPath = kPictures + name;
    wish.nWidth = ui->labPic->width();
    wish.nHeight = ui->labPic->height();
    wish.eFit = PICTURE_FIT_EXACT;
    m_nPicture = pictureTell(wish, this, [this](PICTURE_RESULT, const QPixmap& picture) {
        m_nPicture = 0;
        setPicture(picture);
    });
}

void dlgPictureDialSetting::setPicture(const QPixmap& picture)
{
    ui->labPic->setPixmap(picture);
}

void dlgPictureDialSetting::on_cmbPic_indexchanged(int)
{
    showPicture(ui->cmbPic->currentText());
}

QString dlgPictureDialSetting::cell(int row, int column) const
{
    const QTableWidgetItem* item = ui->tabWgtList->item(row, column);
    return item ? item->text() : QString();
}

void dlgPictureDialSetting::setCell(int row, int column, const QString& text)
{
    if (!ui->tabWgtList->item(row, column))
        ui->tabWgtList->setItem(row, column, new QTableWidgetItem);
    ui->tabWgtList->item(row, column)->setText(text);
}

void dlgPictureDialSetting::on_tabWgtList_currentItemChanged(QTableWidgetItem* current, QTableWidgetItem*)
{
    qSetCurrentIME(ui->editName, "2aB");
    qSetCurrentIME(ui->editNumber, "123");
    ui->editName->clear();
    ui->editNumber->clear();
    showSlot(current ? current->row() : ui->tabWgtList->currentRow());
}

void dlgPictureDialSetting::showSlot(int row)
{
    ui->editName->setText(cell(row, COLUMN_NAME));
    showBeginning(ui->editName);
    ui->editNumber->setText(cell(row, COLUMN_NUMBER));
    showChoices(m_pSlots->Element(row));
}

void dlgPictureDialSetting::showChoices(xmlElement* slot)
{
    if (!slot)
        return;
    ui->cmbAccount->setCurrentIndex(accountIndex(slot));
    selectPicture(attribute(slot, "file"));
}

void dlgPictureDialSetting::on_btnOK_clicked()
{
    const int row = ui->tabWgtList->currentRow();
    if (!m_pSlots->Element(row))
        return;
    const QString name = qReturnLineEdit(ui->editName);
    const QString number = qReturnLineEdit(ui->editNumber);
    const chString file = fromQString(ui->cmbPic->currentText());
    const chString line = fmtString("%d", ui->cmbAccount->currentIndex() - 1);
    xmlElement* slot = slotToWrite(row);
    if (!slot)
        return;
    setCell(row, COLUMN_NAME, name);
    setCell(row, COLUMN_NUMBER, number);
    writeSlot(slot, {fromQString(name), file, fromQString(number), line});
    ui->tabWgtList->setFocus();
    storeSlot();
}

// What others have stored since stays: the list is loaded again first. What was typed stays where it cannot
// be.
xmlElement* dlgPictureDialSetting::slotToWrite(int row)
{
    const FILE_CHANGE change = m_pSlots->Change();
    if (!noteUnlessSaved(change != FILE_LOST, this))
        return nullptr;
    if (change == FILE_RENEWED) {
        const QSignalBlocker still(ui->tabWgtList);
        LoadData();
        ui->tabWgtList->setCurrentCell(row, COLUMN_INDEX);
    }
    return m_pSlots->Element(row);
}

int dlgPictureDialSetting::storeSlot()
{
    if (!noteUnlessSaved(m_pSlots->Save(), this))
        return 0;
    desktop_ReLoadPicXmlFile();
    return 1;
}

void dlgPictureDialSetting::on_btnNO_clicked()
{
    showSlot(ui->tabWgtList->currentRow());
}

void dlgPictureDialSetting::on_click_Delete()
{
    if (ui->editNumber->hasFocus() || ui->editName->hasFocus()) {
        qOnBackspaceClicked(this);
        return;
    }
    const int row = ui->tabWgtList->currentRow();
    if (!m_pSlots->Element(row) || isEmptySlot(m_pSlots->Element(row)))
        return;
    const chString question =
        chString(Translate(HX_TR("Delete "))) + fromQString(cell(row, COLUMN_NAME)) + "?";
    if (!xMessageBox(Translate(HX_TR("Note")), question, BOX_QUESTION, this, -1))
        return;
    // What came up over the box may have had the page loaded again.
    xmlElement* slot = slotToWrite(row);
    if (!slot)
        return;
    setCell(row, COLUMN_NAME, QString());
    setCell(row, COLUMN_NUMBER, QString());
    ui->editName->clear();
    ui->editNumber->clear();
    ui->cmbAccount->setCurrentIndex(0);
    selectPicture(kNoPicture);
    writeSlot(slot, kEmptySlot);
    slot->ClearChildren();
    storeSlot();
}

void dlgPictureDialSetting::setTabRow(int row)
{
    ui->tabWgtList->setCurrentCell(row, 0);
}

void dlgPictureDialSetting::SetCurrentRow(int row)
{
    if (row < 0)
        return;
    nuxTrace(TRACE_NOTE, "SetCurrentRow(%d)", row);
    m_iCurrentRow = row;
}

void dlgPictureDialSetting::ShowByIconViewItem(PicDialIconViewItem* item)
{
    screenBringUp(this);
    if (!item)
        return;
    setTabRow(item->GetRow());
    SetCurrentRow(item->GetRow());
    setPicture(item->GetDecoration()
                   .pixmap(ui->labPic->size())
                   .scaled(ui->labPic->size(), Qt::IgnoreAspectRatio, Qt::FastTransformation));
    selectPicture(toQString(item->GetFile()));
}

// The rest of a touch that began elsewhere presses nothing here.
bool dlgPictureDialSetting::skipsPress(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType())
        return false;
    if (event->type() == QEvent::MouseButtonRelease)
        m_bSkipPress = !isChildOf(watched, this);
    return event->type() == QEvent::MouseButtonPress && m_bSkipPress && isChildOf(watched, this);
}

bool dlgPictureDialSetting::eventFilter(QObject* watched, QEvent* event)
{
    if (skipsPress(watched, event))
        return true;
    if (event->type() == QEvent::KeyPress && isChildOf(watched, this) && ui->tabWgtList->hasFocus() &&
        ui->cmbPic->isVisible() && qIsOkKey(static_cast<QKeyEvent*>(event)->key()))
        ui->cmbPic->setFocus();
    if (event->type() == QEvent::Hide && watched == this)
        ui->tabWgtList->setCurrentCell(0, 0);
    return SettingPage::eventFilter(watched, event);
}
