#pragma once
// The page "Weather": three days for a city, and the card of the home screen. One for each process.
// User-interface thread.
#include "frame/configBindings.h"
#include "frame/settingPage.h"
#include "support/host/mvcView.h"
#include "support/host/weather.h"
#include <QTimer>
#include <memory>

class QLabel;
class qUIPushButton;
namespace Ui {
class dlgWeather;
}

class dlgWeather : public SettingPage, public MVCView, public ConfigBindings
{
    Q_OBJECT
public:
    enum : int { OVERTIME_MS = 3000, NOTE_MS = 3000 };

    dlgWeather(QWidget* parent, tagLeftBarInfo* info, const char* view);
    ~dlgWeather() override;

    // A forecast, or why there is none; nothing while the page is closed.
    void Refresh(tagMoreDaysInfo info);
    void clearInfo();
    // Searches for the configured city.
    void doSreach();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    int Refuse(QWidget* widget, const char* message) override { return SettingPage::Refuse(widget, message); }

protected slots:
    void on_click_Delete() override;
    void on_click_Back() override;

private slots:
    void click_btnSearched();
    void on_click_Set2Desktop();
    void OnUnitChanged(HREGISTRY changed);
    void OnUpdateOverTime();

private:
    struct tagColumn
    {
        QLabel* pDate;
        QLabel* pPicture;
        QLabel* pStatus;
        QLabel* pRange;
        int nPicture = 0; // the picture that is being read
    };
    enum { DAYS = 3 };
    QLabel* makeLabel(QLabel*& place, int size, QRgb colour);
    void makeLabels();
    void makeSearch();
    void takeConfiguredCity();
    void search(const QString& city, bool isTimed);
    void showForecast(const tagMoreDaysInfo& info);
    void showPicture(tagColumn& column, const char* file);
    void showTitle(const QString& city);
    void noteLater(const char* text);
    int storeForDesktop();

    std::unique_ptr<Ui::dlgWeather> ui;
    qUIPushButton* btnSearch = nullptr;
    qRegistryNotify m_notify;
    QTimer m_overTimer;
    int nClosed = 1; // 0 while the page is on show
    tagColumn m_columns[DAYS] = {};
    QString m_strCity; // the title; empty while it is another one
    const char* m_szNote = nullptr;
};

// The one page, built with the first call, hidden.
HX_MODULE_API dlgWeather* GetdlgWeahterSetting();
