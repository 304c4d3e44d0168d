#pragma once
// A settings page in its frame: bars, soft keys, filter while it is the active window, IME key that follows
// the focus. See docs/writing-a-page.md. User-interface thread.
#include "frame/focusKeys.h"
#include "frame/myWidget.h"
#include "frame/pageFrame.h"

class QFrame;

// How long a page filters the application's events.
enum PAGE_FILTER {
    FILTER_WHILE_ACTIVE, // while it is the active window: a box over it takes the filter away
    FILTER_WHILE_SHOWN
};

class SettingPage : public MyWidget
{
    Q_OBJECT
public:
    SettingPage(QWidget* parent, tagLeftBarInfo* info);
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    // In the constructor, after setupUi(). title: English key; keys: of PAGE_KEYS.
    void BuildFrame(QFrame* background, const char* title, int keys);
    // In the constructor: name is the class in the filter's traces, when it is not the page's own; null
    // leaves it.
    void SetFilter(PAGE_FILTER filter, const char* name = nullptr);
    // In the constructor, after BuildFrame(): what "IME" and "Delete" show for which focus. A page that
    // declares nothing shows the input method of whatever has the focus.
    void FollowFocus(std::initializer_list<tagFocusKeys> rows) { m_focusKeys.Declare(rows); }
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

private:
    const char* filterName() const;
    void startFilter();
    void endFilter();
    bool isCovered() const;

    FocusKeys m_focusKeys;
    const char* m_szFilterName = nullptr;
    PAGE_FILTER m_eFilter = FILTER_WHILE_ACTIVE;
};
