#include "settings/call/dlgDialPlan.h"
#include "frame/fingerScroll.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "support/file/path.h"
#include "support/host/image.h"
#include "support/host/ime.h"
#include "support/host/message.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_dlgDialPlan.h"
#include <QHeaderView>
#include <QKeyEvent>

namespace {

const char* const kFile = "/rundata/data/dialplan.xml";
const char* const kList = "DialRule";
const char* const kRule = "Data";
constexpr int kRowHeight = 42;
constexpr int kLongestText = 32;
constexpr int kMostRules = 20;
constexpr int kMostRulesOnce = 5; // of the older Add
constexpr QRgb kNoteColour = 0xffc0321f;
enum COLUMN { COLUMN_PREFIX, COLUMN_REPLACE };

} // namespace

dlgDialPlan::dlgDialPlan(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgDialPlan)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Dial Plan"), KEY_IME | KEY_DELETE | KEY_BACK);
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/gen_bg.jpg"));
    m_frame.SetSoftKey(0, "Add", HX_TR("Add"), SLOT(on_click_Add()));
    m_frame.SetLeftBar(HX_THEME("menu/menu_dialplan.png"), HX_TR("Dial Plan"));
    SetFilter(FILTER_WHILE_SHOWN);
    FollowFocus(
        {{FOCUS_EDIT, SHOWS_METHOD, SHOWS_AS_BEFORE}, {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_AS_BEFORE}});
    for (QLineEdit* edit : {ui->editPrefix, ui->editReplace}) {
        setupLineEdit(edit);
        edit->setMaxLength(kLongestText);
        qInstallIME(edit, "123,2aB,ABC,abc");
    }
    setupDialPlanList(ui->tabWgtList);
    ui->tabWgtList->verticalHeader()->setMinimumSectionSize(kRowHeight);
    new FingerScroll(ui->tabWgtList);
    m_pRules = std::make_unique<XmlTable>(ui->tabWgtList);
    QPalette colours = ui->labNote->palette();
    colours.setColor(QPalette::WindowText, QColor::fromRgba(kNoteColour));
    ui->labNote->setPalette(colours);
    connect(ui->btnOK, SIGNAL(clicked()), this, SLOT(on_btnOK_clicked()));
    connect(ui->btnCancel, SIGNAL(clicked()), this, SLOT(on_btnCancel_clicked()));
    connect(ui->tabWgtList, SIGNAL(clicked(QModelIndex)), this, SLOT(on_tabWgtList_clicked(QModelIndex)));
    qFollowLanguage(this, [this] { note(m_szNote); });
}

dlgDialPlan::~dlgDialPlan() = default;

void dlgDialPlan::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    m_bChanged = false;
    m_bFailureTold = false;
    LoadData();
    qSetCurrentIME(ui->editPrefix, "123");
    qSetCurrentIME(ui->editReplace, "123");
    QLineEdit* edit = qobject_cast<QLineEdit*>(focusWidget());
    // The edit that comes back with the focus begins one method on.
    qShift2NextIME(edit);
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, qGetCurrentIME(edit));
}

int dlgDialPlan::LoadData()
{
    ui->editPrefix->clear();
    ui->editReplace->clear();
    note("");
    const xmlElement* rules = m_pRules->Load(kFile, kList);
    if (!rules) {
        note(HX_TR("The dial plan cannot be read!"));
        return 0;
    }
    qResetTableWidgetContent(ui->tabWgtList);
    for (xmlElement* rule = rules->FindChildElement(kRule); rule; rule = xmlGetNextElement(rule)) {
        if (strcmp(rule->GetName(), kRule) != 0)
            continue;
        const int row = ui->tabWgtList->rowCount();
        ui->tabWgtList->insertRow(row);
        setRow(row, rule, toQString(rule->GetAttributeValue("Prefix").GetString()),
               toQString(rule->GetAttributeValue("Replace").GetString()));
    }
    if (ui->tabWgtList->rowCount() > 0) {
        ui->tabWgtList->setCurrentCell(0, COLUMN_PREFIX);
        SetData();
        ui->tabWgtList->setFocus();
        return 1;
    }
    // The first rule is typed at once, also after the last one was deleted.
    m_bAdding = true;
    enableEdits(true);
    greyEdits(false);
    return 1;
}

void dlgDialPlan::setRow(int row, xmlElement* rule, const QString& prefix, const QString& replace)
{
    ui->tabWgtList->setRowHeight(row, kRowHeight);
    for (const COLUMN column : {COLUMN_PREFIX, COLUMN_REPLACE}) {
        m_pRules->SetElement(row, column, rule);
        ui->tabWgtList->item(row, column)->setText(column == COLUMN_PREFIX ? prefix : replace);
    }
}

void dlgDialPlan::SetData()
{
    const int row = ui->tabWgtList->currentRow();
    const QTableWidgetItem* prefix = ui->tabWgtList->item(row, COLUMN_PREFIX);
    const QTableWidgetItem* replace = ui->tabWgtList->item(row, COLUMN_REPLACE);
    ui->editPrefix->setText(prefix ? prefix->text() : QString());
    ui->editReplace->setText(replace ? replace->text() : QString());
}

void dlgDialPlan::enableEdits(bool enable)
{
    ui->editPrefix->setEnabled(enable);
    ui->editReplace->setEnabled(enable);
}

void dlgDialPlan::greyEdits(bool grey)
{
    setWgtFontColor(ui->editPrefix, !grey);
    setWgtFontColor(ui->editReplace, !grey);
}

void dlgDialPlan::note(const char* text)
{
    m_szNote = text;
    ui->labNote->setText(qTranslate(text));
}

void dlgDialPlan::noteAt(const char* text, QLineEdit* edit)
{
    note(text);
    edit->setFocus();
}

void dlgDialPlan::on_tabWgtList_clicked(const QModelIndex&)
{
    ListMove();
    m_bAdding = false;
}

// A rule that is being added stays one: what the row holds is in use already then.
void dlgDialPlan::ListMove()
{
    enableEdits(true);
    greyEdits(false);
    SetData();
}

void dlgDialPlan::on_click_Add()
{
    beginRule(kMostRules);
}

void dlgDialPlan::AddRow()
{
    beginRule(kMostRulesOnce);
}

void dlgDialPlan::beginRule(int limit)
{
    enableEdits(true);
    greyEdits(false);
    ui->editPrefix->clear();
    ui->editReplace->clear();
    ui->editPrefix->setFocus();
    if (ui->tabWgtList->rowCount() < limit) {
        m_bAdding = true;
        return;
    }
    noteBox(HX_TR("The max number should <= 20!"), this);
    enableEdits(false);
    // The edit lost the focus under the box.
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, "");
}

// Without what breaks lines: neither a number nor what is put before one has it.
QString dlgDialPlan::textOf(QLineEdit* edit) const
{
    QString text = qReturnLineEdit(edit);
    text.removeIf([](QChar letter) { return letter.category() == QChar::Other_Control; });
    return text.trimmed();
}

void dlgDialPlan::on_btnOK_clicked()
{
    note("");
    if (!pathFileExist(kFile) || !m_pRules->List())
        return;
    const QString prefix = textOf(ui->editPrefix);
    if (prefix.isEmpty())
        return noteAt(HX_TR("Prefix is empty."), ui->editPrefix);
    const QString replace = textOf(ui->editReplace);
    if (replace.isEmpty())
        return noteAt(HX_TR("Replace is empty."), ui->editReplace);
    if (isTaken(prefix)) {
        ui->editPrefix->clear();
        ui->editReplace->clear();
        return noteAt(HX_TR("Dial number exist."), ui->editPrefix);
    }
    if (m_bAdding)
        addRule(prefix, replace);
    else
        changeRule(prefix, replace);
    enableEdits(false);
    greyEdits(true);
    ui->tabWgtList->setFocus();
}

// By another rule: one that is being changed keeps its own.
bool dlgDialPlan::isTaken(const QString& prefix) const
{
    const xmlElement* current = m_pRules->CurrentElement();
    for (int row = 0; row < ui->tabWgtList->rowCount(); ++row) {
        xmlElement* rule = m_pRules->Element(row);
        if (rule && (m_bAdding || rule != current) &&
            toQString(rule->GetAttributeValue("Prefix").GetString()) == prefix)
            return true;
    }
    return false;
}

void dlgDialPlan::changeRule(const QString& prefix, const QString& replace)
{
    xmlElement* rule = m_pRules->CurrentElement();
    if (!rule)
        return;
    rule->SetAttributeValue("Prefix", fromQString(prefix));
    rule->SetAttributeValue("Replace", fromQString(replace));
    setRow(ui->tabWgtList->currentRow(), rule, prefix, replace);
    m_bChanged = true;
    m_bFailureTold = false;
}

// On top of the list, where it is seen, and last in the file.
void dlgDialPlan::addRule(const QString& prefix, const QString& replace)
{
    xmlElement* rule = m_pRules->List()->AddChildElement(kRule);
    rule->SetAttributeValue("Prefix", fromQString(prefix));
    rule->SetAttributeValue("Replace", fromQString(replace));
    ui->tabWgtList->insertRow(0);
    setRow(0, rule, prefix, replace);
    ui->tabWgtList->setCurrentCell(0, COLUMN_PREFIX);
    m_bAdding = false;
    m_bChanged = true;
    m_bFailureTold = false;
}

void dlgDialPlan::on_btnCancel_clicked()
{
    m_bAdding = false;
    note("");
    SetData();
}

void dlgDialPlan::on_click_IME()
{
    qOnIMEButtonClicked(this, m_frame.m_pSoftKeyBar);
}

void dlgDialPlan::on_click_Delete()
{
    m_bAdding = false;
    if (!ui->tabWgtList->hasFocus() || ui->tabWgtList->rowCount() == 0 || !m_pRules->List()) {
        qOnBackspaceClicked(this);
        return;
    }
    if (!questionBox(HX_TR("Delete the record?"), this))
        return;
    const xmlElement* rule = m_pRules->CurrentElement();
    if (!NUX_ASSERT(rule && rule->GetParent() == m_pRules->List(),
                    "pChildNode != NULL && pChildNode->get_pParent() == this"))
        return;
    m_pRules->RemoveRow(ui->tabWgtList->currentRow());
    noteUnlessSaved(saveRules(), this);
    SetData();
    m_bChanged = true;
}

// A file that has gone is not made here.
int dlgDialPlan::saveRules()
{
    const int isSaved = pathFileExist(kFile) && m_pRules->Save();
    m_bFailureTold = !isSaved;
    return isSaved;
}

// A deletion is on the disk already, but told only here. A user who was told that nothing can be saved may
// leave.
void dlgDialPlan::on_click_Back()
{
    const bool mayLeave = m_bFailureTold;
    if (m_bChanged && saveRules()) {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DIAL_PLAN, 0);
    } else if (m_bChanged && !mayLeave) {
        noteUnlessSaved(0, this);
        return;
    }
    m_bChanged = false;
    reject();
}

void dlgDialPlan::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        on_click_Back();
    else
        SettingPage::keyPressEvent(event);
}

bool dlgDialPlan::eventFilter(QObject* watched, QEvent* event)
{
    if (!isHidden() && watched == ui->tabWgtList && event->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down)
            ListMove();
    }
    if (!isHidden() && watched == ui->tabWgtList && event->type() == QEvent::KeyPress &&
        goesToEdits(static_cast<QKeyEvent*>(event)->key()))
        return true;
    return SettingPage::eventFilter(watched, event);
}

// The keys alone come to the edits by OK, or Right, on their rule.
bool dlgDialPlan::goesToEdits(int key)
{
    if ((!qIsOkKey(key) && key != Qt::Key_Right) || ui->tabWgtList->currentRow() < 0)
        return false;
    on_tabWgtList_clicked(ui->tabWgtList->currentIndex());
    ui->editPrefix->setFocus();
    return true;
}
