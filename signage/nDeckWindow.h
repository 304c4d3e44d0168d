#pragma once
// The full-screen window of the show. User-interface thread.
#include "support/host/api.h"
#include "support/host/signage.h"
#include <QDialog>
#include <QRect>

class nDeckWindow : public QDialog
{
    Q_OBJECT
public:
    explicit nDeckWindow(QWidget* parent = nullptr);
    ~nDeckWindow() override;

    void setNDeckWindowType(E_NDECKWINDOW_TYPE type);
    E_NDECKWINDOW_TYPE getNDeckWindowType() const { return m_eType; }
    // Hides it, and gives the screen saver free.
    void closeWindow();
    // The screen saver begins: an idle show ends.
    void updateScreenSaver();
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void holdScreenSaver(bool hold);
    void onFocusIn();
    bool onKeyRelease(bool fromPad);

    E_NDECKWINDOW_TYPE m_eType = NDECK_WINDOW_NONE;
    bool m_bHoldsSaver = false;
    bool m_bKeyPressed = false; // since it showed
};

nDeckWindow& GetnDeckWindow();

// Shows or hides the show, in a window of the host's or (parent null) full screen. rect: its place in the
// parent. false when the client is disabled.
HX_MODULE_API bool nDeckWindowDisplay(int bShow, E_NDECKWINDOW_TYPE type, QWidget* parent, QRect rect);
