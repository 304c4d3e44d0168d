#pragma once
// A settings page in its frame: bars, soft keys, filter while it is the active window, IME key that follows
// the focus. See docs/writing-a-page.md. User-interface thread.
#include "frame/myWidget.h"
#include "frame/pageFrame.h"

class QFrame;

class SettingPage : public MyWidget
{
    Q_OBJECT
public:
    SettingPage(QWidget* parent, tagLeftBarInfo* info);
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    // In the constructor, after setupUi(). title: English key; keys: of PAGE_KEYS.
    void BuildFrame(QFrame* background, const char* title, int keys);
    // Shows message (an English key) and moves the focus to widget; always 0.
    int Refuse(QWidget* widget, const char* message);

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

protected slots:
    virtual void on_click_Save();   // closes the page
    virtual void on_click_IME();    // next input method of the focused edit
    virtual void on_click_Delete(); // one character at the focused edit's cursor
    virtual void on_click_Back();   // closes without saving

protected:
    PageFrame m_frame;
};
