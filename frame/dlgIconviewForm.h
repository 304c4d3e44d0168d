#pragma once
// A menu: a grid of icons with title, clock and home button. User-interface thread.
#include "support/text/chString.h"
#include <QDialog>

class QLabel;
class QPushButton;
class QTimer;
class Ui_dlgIconviewForm;
class qIconView;
class qLeftBar;
class qSoftKeyBar;
class qTopBar;

class dlgIconviewForm : public QDialog
{
    Q_OBJECT
public:
    explicit dlgIconviewForm(QWidget* parent = nullptr);
    ~dlgIconviewForm() override;

    // path: device path of a menu file. Always 1; a file that is missing or broken gives an empty menu.
    int LoadFile(const chString& path);
    // A menu that the host knows by name; 0 when it cannot be made, and the form stays as it was.
    int LoadFileEx(const chString& name);
    qIconView* GetIconView() const { return m_pIconView; }

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void on_click_NextPage();
    void on_click_Back();
    void on_click_m_phome();
    void on_update_dateTime();

private:
    void replacePlaceholders();
    void makeClock();
    void makeHomeButton();
    void menuLoaded();
    void showTexts();

    Ui_dlgIconviewForm* ui;
    qIconView* m_pIconView = nullptr;
    qSoftKeyBar* m_pSoftKeyBar = nullptr;
    qLeftBar* m_pLeftBar = nullptr;
    qTopBar* m_pTopBar = nullptr;
    QPushButton* m_pHomeBtn = nullptr;
    QLabel* m_pLabDateTime = nullptr;
    QTimer* m_pTimerDate = nullptr;
};

// The form that was made last; null once any form was destroyed.
extern dlgIconviewForm* g_pDlgIconviewForm;
