#pragma once
// The page "Screen Saver": when a phone that nobody uses begins its saver, and of which kind, when it darkens
// its screen, and the wallpaper, which shows as it is chosen. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgScreenSaver;
}
class imagePreview;

class dlgScreenSaver : public ConfigPage
{
    Q_OBJECT
public:
    dlgScreenSaver(QWidget* parent, tagLeftBarInfo* info);
    ~dlgScreenSaver() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Files have come or gone: fills the list again. What was chosen stays, or else the first is.
    void reloadWallPaper();

protected:
    // Where the signage is the screen saver, the page offers none.
    void RefreshData() override;
    QWidget* FirstFocus() override;
    void BroadcastChange() override;

protected slots:
    void on_click_Save() override;
    void on_click_Back() override;
    void on_click_Wallpaper();

private slots:
    void InitData();
    void on_cmbBoxPic_Preview(int index);

private:
    void showStoredPicture();
    void refillPictures();
    void keepWallpaper();
    void layOut(bool saver);

    std::unique_ptr<Ui::dlgScreenSaver> ui;
    std::unique_ptr<imagePreview> m_pPreview; // null until the first preview
    chString m_strPath;      // the wallpaper when the manager's page was opened; empty: it was not from here
    chString m_strWallpaper; // the current one
    int m_nPreview = -1;     // index under preview
    int m_nSaved = -1;       // index at the last load
};

// The page; null until it is opened for the first time.
HX_MODULE_API dlgScreenSaver* getScreenSaverDlg();
