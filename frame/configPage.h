#pragma once
// A settings page whose widgets are tied to configuration keys by a table. See docs/writing-a-page.md.
// User-interface thread.
#include "frame/settingPage.h"
#include "support/host/binder.h"
#include <QList>
#include <initializer_list>

class QLineEdit;

// One row of a page's table. Texts live as long as the page.
struct tagPageBinding
{
    QWidget* pWidget;
    HREGISTRY hSection;
    const char* szKey; // null: not tied to a key, only to its input methods
    const char* szDefault;
    const char* szImeList = nullptr;   // as for qInstallIME; null for none
    const char* szImeAtShow = nullptr; // current method at each show; null leaves it
    int nMaxLength = 0;                // characters; 0 leaves the toolkit's
};

enum PAGE_CHECK {
    CHECK_ENTRY,   // must not be empty; when changed, it must be valid
    CHECK_FILLED,  // must not be empty
    CHECK_CHANGED, // when changed and not empty, it must be valid
    CHECK_VALUE    // must be valid, changed or not
};

// 1 when the text is good.
using PageValidator = int (*)(chString text);

struct tagPageCheck
{
    QLineEdit* pEdit;
    PAGE_CHECK eRule;
    PageValidator pValid;  // null with CHECK_FILLED
    const char* szMessage; // English key
};

class ConfigPage : public SettingPage, public qConfigBinder
{
    Q_OBJECT
public:
    ConfigPage(QWidget* parent, tagLeftBarInfo* info);

protected:
    // Once: ties the widgets to their keys in the order of the table, and gives them their input methods.
    void Bind(std::initializer_list<tagPageBinding> bindings);
    // Takes the checks in order; the first that fails shows its message and moves the focus there: 0.
    int Check(std::initializer_list<tagPageCheck> checks);

    // At each show, after the stored values were loaded: what the table does not do.
    virtual void RefreshData() {}
    // Where the focus goes at each show; null leaves it.
    virtual QWidget* FirstFocus() { return nullptr; }
    // Validates; 0 keeps the page open. It has told the user why.
    virtual int save() { return 1; }
    // After a Save that changed a stored value: tells the rest of the phone.
    virtual void BroadcastChange() {}

    void showEvent(QShowEvent* event) override;

protected slots:
    // save(), store, BroadcastChange() when something differed, close.
    void on_click_Save() override;

private:
    bool passes(const tagPageCheck& check);

    struct tagImeAtShow
    {
        QWidget* pWidget;
        const char* szName;
    };
    QList<tagImeAtShow> m_lstImeAtShow;
};
