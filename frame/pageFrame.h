#pragma once
// Background, bars and soft keys: what surrounds every page. A page holds one PageFrame and builds it in
// its constructor, after setupUi(). User-interface thread. The page owns the widgets.
#include "support/host/leftbar.h"
#include "support/text/chString.h"

class QDialog;
class QFrame;

// Soft keys that most pages share, to be combined. Index, name, label and slot of each are fixed:
// 0 "Save" on_click_Save(), 1 "IME" on_click_IME(), 2 "Delete" on_click_Delete(), 3 "Back" on_click_Back().
enum PAGE_KEYS {
    KEY_SAVE = 1,
    KEY_IME = 2,
    KEY_DELETE = 4,
    KEY_BACK = 8,
    KEYS_CHOICE = KEY_SAVE | KEY_BACK,                     // a page without editable text
    KEYS_EDIT = KEY_SAVE | KEY_IME | KEY_DELETE | KEY_BACK // a page with edits
};
enum { SOFT_KEY_SAVE = 0, SOFT_KEY_IME = 1, SOFT_KEY_DELETE = 2, SOFT_KEY_BACK = 3 };

class PageFrame
{
public:
    // leftBar: null for a page without that bar. background: the form's frame that all else lies on. title:
    // English key. keys: of PAGE_KEYS. Shows the texts of the form translated.
    void Build(QDialog* page, LeftBarOperation* leftBar, QFrame* background, const char* title, int keys);
    // A key of the page's own; label: English key. slot is SLOT(...) of the page.
    void SetSoftKey(int index, const char* name, const char* label, const char* slot);
    // What the left bar shows until somebody hands the page a record: icon is a device path or null, title
    // an English key.
    void SetLeftBar(const char* icon, const char* title);
    // The page's title from now on; English key.
    void SetTitle(const char* title);
    // At each show: the left bar shows the record that the page was given. Texts follow the language.
    void Translate();
    bool HasKey(int key) const { return (m_nKeys & key) != 0; }
    // What the key was given to show, in the present language.
    QString SoftKeyLabel(int index) const;

    qTopBar* m_pTopBar = nullptr;
    qSoftKeyBar* m_pSoftKeyBar = nullptr;

private:
    void followLanguage();
    void showTexts();
    void showLeftBar();
    QDialog* m_pPage = nullptr;
    LeftBarOperation* m_pLeftBar = nullptr;
    chString m_strLeftIcon; // of the page's own, or a copy of the record that took its place
    chString m_strLeftTitle;
    chString m_strTitle;
    chString m_astrLabels[SOFT_KEY_COUNT];
    int m_nKeys = 0;
};
