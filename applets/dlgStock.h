#pragma once
// The page "Stock": the user's codes, the quote of the selected one, and an edit for a new code.
// User-interface thread.
#include "applets/stockView.h"
#include "frame/settingPage.h"
#include "support/host/binder.h"
#include <QStringList>
#include <QTimer>
#include <memory>
#include <vector>

class qUIPushButton;
namespace Ui {
class dlgStock;
}

class dlgStock : public SettingPage, public qConfigBinder, public StockView
{
    Q_OBJECT
public:
    dlgStock(QWidget* parent, tagLeftBarInfo* info, const char* view);
    ~dlgStock() override;

    // Asks for that stock's quote.
    void DownloadStockInfo(const chString& code);
    void RefreshView(const tagCStockInfo& info) override;
    bool IsClosed() const override { return nClosed != 0; }
    // Nothing while another window covers the page.
    void ShowNote(const char* text) override;

    // Shows the codes of the file; asks for no quote. One that cannot be read leaves the codes as they are.
    void ReloadStockList();
    // Writes the codes into the file. 0 when one of them is not stored; the user was told.
    int SaveStockList();
    int GetStockCount() const;
    bool IsStockInCombo(const chString& code) const;
    // Whether the codes on show are others.
    bool IsStockInfoChange(const QStringList& codes) const;
    void UpdateDenominator();

    void StartTimerFromCfg();
    void ResetTimerFromCfg();
    void OnTimer(int id, int flags);

public slots:
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void relayLoad();
    void on_click_AddStock();
    void on_click_DeleteStock();
    void on_click_IME() override;
    void on_click_Exit();
    void click_btnRefresh();
    void click_btnDelete();
    void Changed_cmbStockList(int index);
    void OnLoadOverTime();

private:
    struct tagPart;
    std::vector<tagPart> parts() const;
    void buildLabels();
    void buildButtons();
    void showOwnTexts();
    void showInfo(const tagCStockInfo& info);
    void colourRates(int index);
    void leave();

    void followList(bool bFollow);
    QStringList codes() const;
    int indexOf(const QString& code) const;
    void showCodes(const QStringList& codes, const QString& current);
    void reloadKeeping(const QString& code);
    void removeCode(const QString& code);
    void saveOrRestore(const QStringList& before, const QString& current);

    std::unique_ptr<Ui::dlgStock> ui;
    int nRiseColor = 1;
    QTimer* pRefreshTimer;
    int nRefreshSeconds = 60;
    qUIPushButton* btnDelete = nullptr;
    qUIPushButton* btnRefresh = nullptr;
    std::unique_ptr<QTimer> pLoadTimer;
    int nClosed = 0;
};

// The page once it is built; null before.
extern dlgStock* g_pDlgStock;
