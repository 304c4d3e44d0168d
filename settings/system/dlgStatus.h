#pragma once
// The page "Status": versions, network and one account at a time, live. User-interface thread.
#include "frame/pageFrame.h"
#include "support/host/leftbar.h"
#include "support/host/message.h"
#include <QDialog>
#include <QTimer>
#include <memory>

class QLabel;
namespace Ui {
class dlgStatus;
}

class dlgStatus : public QDialog, public chMsgProcesser, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgStatus(QWidget* parent, tagLeftBarInfo* info);
    ~dlgStatus() override;

    void UpdateVersionInfo();
    void UpdateNetworkInfo();
    void UpdateAccountInfo();
    // The next account, or the one before, and round; always 1.
    int SwitchAccountInfo(bool forward);
    void ShowVersionDetail();

    // Takes the account refresh messages, which come while the page is shown.
    int TryThreadMessage(msgObject& msg) override;

public slots:
    void LoadData();
    void OnInfoUpdateTimer();
    void on_click_Versiondetail();
    void on_click_Next();
    void on_click_Back();
    void OnExit();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int OnAccountRefesh(msgObject& msg);
    void showFirstValues();
    void showTexts();

    std::unique_ptr<Ui::dlgStatus> ui;
    PageFrame m_frame;
    QTimer m_timer;
    int m_nAccount = 0; // on view
};
