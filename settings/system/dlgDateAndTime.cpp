#include "settings/system/dlgDateAndTime.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "frame/shippedTable.h"
#include "frame/wgtHelper.h"
#include "frame/xmlUnderRoot.h"
#include "settings/system/dataEditFrame.h"
#include "settings/system/timeEditFrame.h"
#include "support/file/path.h"
#include "support/host/message.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/zone.h"
#include "ui_dlgDateAndTime.h"
#include <QTimer>
#include <cstring>

namespace {

const char* const kZoneTable = "/phone/resource/AutoDST.xml";
const char* const kZoneRoot = "DSTData";
const char* const kZoneRow = "DST";
const char* const kLocalTime = "LocalTime";
const char* const kTextIme = "2aB,ABC,abc,123";
const char* const kFirstIme = "2aB";
constexpr int kLongestServer = 99;

const tagChoice kFormats[] = {{HX_TR("24-hour"), "0"}, {HX_TR("12-hour"), "1"}};

chString timeOf(xmlElement* zone)
{
    return zone->GetAttributeValue("szTime").GetString();
}

chString nameOf(xmlElement* zone)
{
    return zone->GetAttributeValue("szZone").GetString();
}

xmlElement* nextZone(xmlElement* zone)
{
    do
        zone = xmlGetNextElement(zone);
    while (zone && strcmp(zone->GetName(), kZoneRow) != 0);
    return zone;
}

} // namespace

dlgDateAndTime::dlgDateAndTime(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgDateAndTime)
{
    ui->setupUi(this);
    m_pZone = ui->cmbBoxTimeZone;
    m_pDate = qReplaceDataEditFrame(ui->frmDate);
    m_pTime = qReplaceTimeEditFrame(ui->frmTime);
    BuildFrame(ui->frmBackground, HX_TR("Date and Time"), KEYS_EDIT);
    setupComboBox(m_pZone);
    bindWidgets();
    connect(ui->radBtnManualMode, SIGNAL(toggled(bool)), this, SLOT(DisableTimeZone(bool)));
    DisableTimeZone(ui->radBtnManualMode->isChecked());
}

dlgDateAndTime::~dlgDateAndTime() = default;

void dlgDateAndTime::bindWidgets()
{
    const HREGISTRY local = registryOpen(SYSTEM_INI, kLocalTime);
    Bind({
        {ui->editTimeServer, local, "strPrimaryNTPServer", "", kTextIme, kFirstIme, kLongestServer},
        {{{ui->radBtnNTP, "1"}, {ui->radBtnManualMode, "0"}}, local, "bNTPEnable", "0"},
        {ui->cmbBoxTimeFormat, registryOpen(USER_INI, "DateTime"), "eTimeFormat", "0", kFormats},
    });
}

void dlgDateAndTime::RefreshData()
{
    showNow();
    if (m_bShown) {
        SetTimeZoneIndex();
        return;
    }
    m_bShown = true;
    QTimer::singleShot(0, this, &dlgDateAndTime::InitData);
}

QWidget* dlgDateAndTime::FirstFocus()
{
    return m_pZone && m_pZone->isEnabled() ? static_cast<QWidget*>(m_pZone) : ui->cmbBoxTimeFormat;
}

void dlgDateAndTime::InitData()
{
    DateandTime_insert_TimeZone();
    if (m_pZone)
        m_pZone->setFocusPolicy(Qt::StrongFocus);
    ui->editTimeServer->setMaxLength(kLongestServer);
    showNow();
}

void dlgDateAndTime::showNow()
{
    m_pDate->setupNow();
    m_pTime->setupNow();
}

xmlElement* dlgDateAndTime::firstZone() const
{
    return m_pZones ? m_pZones->FindChildElement(kZoneRow) : nullptr;
}

void dlgDateAndTime::DateandTime_insert_TimeZone()
{
    if (!m_pZone) {
        nuxTrace(TRACE_NOTE, "dlgDateAndTime point ui->cmbBoxTimeZone is Null!");
        return;
    }
    if (!pathFileExist(kZoneTable) || !shippedTableLoad(m_xmlZones, kZoneTable))
        return;
    m_pZones = xmlFindUnderRoot(m_xmlZones, kZoneRoot);
    if (!m_pZones)
        m_pZones = m_xmlZones.AddChildElement(kZoneRoot);
    QStringList texts;
    for (xmlElement* zone = firstZone(); zone; zone = nextZone(zone))
        texts.append(toQString(timeOf(zone)) + toQString(nameOf(zone)));
    m_pZone->clear();
    m_pZone->addItems(texts);
    SetTimeZoneIndex();
}

// The stored zone itself, or else the one that fits best: tables change, what is stored does not.
void dlgDateAndTime::SetTimeZoneIndex()
{
    if (!m_pZone)
        return;
    const chString time = NUX_SubClass::nuxGetRegistryString(SYSTEM_INI, kLocalTime, "strTimeName", "");
    const chString name = NUX_SubClass::nuxGetRegistryString(SYSTEM_INI, kLocalTime, "strZoneName", "");
    ZONE_MATCH best = ZONE_OTHER;
    int index = 0;
    m_nZone = 0;
    for (xmlElement* zone = firstZone(); zone && best != ZONE_SAME; zone = nextZone(zone), ++index) {
        const ZONE_MATCH match = zoneMatch(time, name, timeOf(zone), nameOf(zone));
        if (match <= best)
            continue;
        best = match;
        m_nZone = index;
    }
    m_pZone->setCurrentIndex(m_pZone->count() > 0 ? m_nZone : -1);
}

void dlgDateAndTime::DisableTimeZone(bool disable)
{
    if (m_pZone)
        m_pZone->setEnabled(!disable);
}

bool dlgDateAndTime::isManual() const
{
    return !ui->radBtnNTP->isChecked() && ui->radBtnManualMode->isChecked();
}

int dlgDateAndTime::save()
{
    if (isManual()) {
        m_pDate->checkDate();
        m_pTime->checkTime();
        return 1;
    }
    return Check({{ui->editTimeServer, CHECK_CHANGED, IsValidServerName, HX_TR("Time server is invalid!")}});
}

// The row of the table that the box shows; without one nothing is written.
bool dlgDateAndTime::storeZone()
{
    xmlElement* zone = m_pZone && m_pZone->currentIndex() >= 0 ? firstZone() : nullptr;
    for (int steps = zone ? m_pZone->currentIndex() : 0; zone && steps > 0; --steps)
        zone = nextZone(zone);
    if (!zone)
        return true;
    const tagRegistryValue values[] = {{"strTimeName", timeOf(zone)}, {"strZoneName", nameOf(zone)}};
    return registrySetStrings(registryOpen(SYSTEM_INI, kLocalTime), values, 2) != 0;
}

void dlgDateAndTime::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_DATE_TIME, 0);
}

int dlgDateAndTime::setClock()
{
    return netSetLocalTime(m_pDate->year(), m_pDate->month(), m_pDate->day(), m_pTime->hour(),
                           m_pTime->minute(), m_pTime->second());
}

void dlgDateAndTime::on_click_Save()
{
    if (!save())
        return;
    SaveConfigsToRegistry();
    const bool isStored = AreConfigsSaved() && storeZone();
    if (!noteUnlessSaved(isStored, this))
        return;
    // The time that was typed is that of the zone that now is stored.
    if (isManual() && !noteUnlessSaved(setClock(), this))
        return;
    BroadcastChange();
    accept();
}
