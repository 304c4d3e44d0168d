#pragma once
// The page "Date & Time": the clock by a time server or by hand, its zone and its format. User-interface
// thread.
#include "frame/configPage.h"
#include "support/xml/xmlFile.h"
#include <QComboBox>
#include <QPointer>
#include <memory>

namespace Ui {
class dlgDateAndTime;
}
class DataEditFrame;
class TimeEditFrame;

class dlgDateAndTime : public ConfigPage
{
    Q_OBJECT
public:
    dlgDateAndTime(QWidget* parent, tagLeftBarInfo* info);
    ~dlgDateAndTime() override;

protected:
    void RefreshData() override;
    QWidget* FirstFocus() override;
    int save() override;
    void BroadcastChange() override;

protected slots:
    // Stores and tells, whether something differs or not.
    void on_click_Save() override;

private slots:
    // Behind the first show: the table of zones is not read before it is needed.
    void InitData();
    void DateandTime_insert_TimeZone();
    // Whoever sets the clock by hand sets that of his zone, whichever it is.
    void DisableTimeZone(bool disable);

private:
    void bindWidgets();
    void showNow();
    void SetTimeZoneIndex();
    bool isManual() const;
    bool storeZone();
    int setClock();
    xmlElement* firstZone() const;

    std::unique_ptr<Ui::dlgDateAndTime> ui;
    QPointer<QComboBox> m_pZone;
    DataEditFrame* m_pDate = nullptr;
    TimeEditFrame* m_pTime = nullptr;
    xmlFile m_xmlZones;
    xmlElement* m_pZones = nullptr; // the rows' root; null until the table is loaded
    int m_nZone = 0;                // of the stored one
    bool m_bShown = false;
};
