#pragma once
// The web browser: shows the text and the links of pages, without scripts. It reads nothing of the phone
// itself, only what http and https servers send. User-interface thread.
#include "host/desktop/addressFetch.h"
#include "host/desktop/hostPage.h"
#include <QDialog>
#include <QUrl>

class Ui_dlgBrowser;

class dlgBrowser : public QDialog
{
    Q_OBJECT
public:
    explicit dlgBrowser(QWidget* parent = nullptr);
    ~dlgBrowser() override;
    // Opens the page, and forgets those that were open before.
    void openPage(const QString& address);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_click_Reload();
    void on_click_Previous();
    void on_click_Back();

private:
    void go(const QUrl& address);
    void load();
    void arrived(bool good, const QByteArray& content);
    void showPage(const QByteArray& content);
    void showNotice(const char* notice);
    bool pressKey(int key);

    std::unique_ptr<Ui_dlgBrowser> m_ui;
    hostPage m_page;
    addressFetch m_fetch;
    QList<QUrl> m_addresses; // of the pages on the way here, the present one last
    const char* m_szNotice = "";
};
