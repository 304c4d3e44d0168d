#pragma once
// What ties widgets to configuration keys by a table, for a page (ConfigPage) and for the body of one line
// (LineBody) alike: values, choices, input methods, limits, and the checks of Save. User-interface thread.
#include "frame/choices.h"
#include "support/host/binder.h"
#include <QList>
#include <initializer_list>

class QComboBox;
class QLineEdit;
class QRadioButton;

// What may be typed into an edit: a regular expression that the whole text must match.
inline constexpr char DIGITS_ONLY[] = "[0-9]*";

struct tagRadioChoice
{
    QRadioButton* pButton;
    const char* szValue; // what is stored
};

// One row of a page's table. Texts live as long as the page. Without a key (null) the widget is not stored,
// and the rest of its row holds.
struct tagPageBinding
{
    // imeList: as for qInstallIME, null for none. imeAtShow: the current method at each show; null leaves it.
    // maxLength: in characters, 0 leaves the toolkit's. typed: DIGITS_ONLY or another expression; null: all.
    tagPageBinding(QWidget* widget, HREGISTRY section, const char* key, const char* def,
                   const char* imeList = nullptr, const char* imeAtShow = nullptr, int maxLength = 0,
                   const char* typed = nullptr)
        : pWidget(widget), hSection(section), szKey(key), szDefault(def), szImeList(imeList),
          szImeAtShow(imeAtShow), nMaxLength(maxLength), szTyped(typed)
    {
    }
    // A combo box with the items of a table.
    tagPageBinding(QWidget* box, HREGISTRY section, const char* key, const char* def, Choices items)
        : pWidget(box), hSection(section), szKey(key), szDefault(def), choices(items)
    {
    }
    // Radio buttons of which one can be checked; their places in the list are their ids in the group.
    tagPageBinding(std::initializer_list<tagRadioChoice> buttons, HREGISTRY section, const char* key,
                   const char* def);

    QWidget* pWidget;
    HREGISTRY hSection;
    const char* szKey;
    const char* szDefault;
    const char* szImeList = nullptr;
    const char* szImeAtShow = nullptr;
    int nMaxLength = 0;
    const char* szTyped = nullptr;
    Choices choices{nullptr, 0};
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

class ConfigBindings : public qConfigBinder
{
protected:
    // Once for each table: ties the widgets to their keys in its order, and gives them what its rows say.
    void Bind(std::initializer_list<tagPageBinding> bindings);
    // Forgets all tables; what the rows gave to the widgets stays.
    void Unbind();
    // At each show, after the stored values were loaded.
    void SetInputMethods();
    // Takes the checks in order; the first that fails is refused: 0.
    int Check(std::initializer_list<tagPageCheck> checks);
    // Stores every value, and tells the rest of the phone when one differed. 0 when one could not be stored:
    // it is still in its widget.
    int StoreBindings();

    // Validates; 0 keeps the page open. It has refused something.
    virtual int save() { return 1; }
    // After a Save that changed a stored value: tells the rest of the phone.
    virtual void BroadcastChange() {}
    // Keeps the page open for message (an English key) and widget; always 0.
    virtual int Refuse(QWidget* widget, const char* message) = 0;

private:
    bool passes(const tagPageCheck& check);

    struct tagImeAtShow
    {
        QWidget* pWidget;
        const char* szName;
    };
    QList<tagImeAtShow> m_lstImeAtShow;
};
