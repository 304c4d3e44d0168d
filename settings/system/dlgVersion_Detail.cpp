#include "settings/system/dlgVersion_Detail.h"
#include "frame/shippedTable.h"
#include "frame/tableRows.h"
#include "frame/wgtHelper.h"
#include "frame/xmlTable.h"
#include "settings/system/ownModules.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include "ui_dlgVersion_Detail.h"
#include <QKeyEvent>

namespace {

const char* const kFile = "/phone/resource/module-version.xml";

} // namespace

dlgVersion_Detail::dlgVersion_Detail(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), ui(new Ui::dlgVersion_Detail)
{
    ui->setupUi(this);
    m_frame.Build(this, this, ui->frmBackground, HX_TR("Version Detail"), KEY_BACK);
    m_frame.SetLeftBar(HX_THEME("menu/menu_status.png"), HX_TR("Version Detail"));
    qRegisterMetaType<xmlElement*>("xmlElement*");
    setupVersionDetail(ui->tabVersions);
    SetTabWgtScrollStyle(ui->tabVersions);
    showHeaders();
    qFollowLanguage(this, [this] { showHeaders(); });
    InitData();
}

dlgVersion_Detail::~dlgVersion_Detail() = default;

void dlgVersion_Detail::InitData()
{
    LoadData();
    if (ui->tabVersions->rowCount() > 0)
        ui->tabVersions->setCurrentCell(0, 0);
}

void dlgVersion_Detail::LoadData()
{
    if (!shippedTableLoad(m_xmlFile, kFile) || !m_xmlFile.GetRootElement())
        return;
    for (xmlElement* module = m_xmlFile.GetRootElement()->FindChildElement("Module"); module;
         module = xmlGetNextElement(module)) {
        if (strcmp(module->GetName(), "Module") != 0)
            continue;
        const int row = ui->tabVersions->rowCount();
        ui->tabVersions->insertRow(row);
        setRow(row, module->GetAttributeValue("name"), module->GetAttributeValue("version"));
        ui->tabVersions->item(row, 0)->setData(XmlTable::ELEMENT_ROLE, QVariant::fromValue(module));
    }
}

void dlgVersion_Detail::setRow(int row, const char* name, const char* version)
{
    ui->tabVersions->setItem(row, 0, new QTableWidgetItem(QString::fromUtf8(name)));
    ui->tabVersions->setItem(row, 1, new QTableWidgetItem(QString::fromUtf8(version)));
}

void dlgVersion_Detail::insertVersionItem(const char* name, const char* version)
{
    ui->tabVersions->insertRow(0);
    setRow(0, name, version);
}

void dlgVersion_Detail::setData()
{
    for (size_t i = std::size(kOwnModules); i > 0; --i)
        insertVersionItem(kOwnModules[i - 1], HX_VERSION);
}

void dlgVersion_Detail::showHeaders()
{
    ui->tabVersions->setHorizontalHeaderLabels({qTranslate(HX_TR("Item")), qTranslate(HX_TR("Version"))});
}

void dlgVersion_Detail::CallListMoveUp()
{
    tableStepRow(ui->tabVersions, -1);
}

void dlgVersion_Detail::CallListMoveDown()
{
    tableStepRow(ui->tabVersions, 1);
}

void dlgVersion_Detail::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Up)
        CallListMoveUp();
    else if (event->key() == Qt::Key_Down)
        CallListMoveDown();
    else
        QDialog::keyPressEvent(event);
}

void dlgVersion_Detail::showEvent(QShowEvent* event)
{
    m_frame.Translate();
    QDialog::showEvent(event);
}

void dlgVersion_Detail::on_click_Back()
{
    reject();
}
