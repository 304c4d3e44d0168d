#pragma once
// What the soft keys "IME" and "Delete" show while a widget of the page has the focus. User-interface thread.
#include <QList>
#include <initializer_list>

class PageFrame;
class QWidget;

// Which focus a row is for.
enum PAGE_FOCUS {
    FOCUS_EDIT,     // an edit has it
    FOCUS_COMBO,    // a combo box has it
    FOCUS_TABLE,    // a table has it
    FOCUS_ANY,      // whatever has it
    FOCUS_LEFT_EDIT // an edit has lost it
};
enum KEY_SHOWS {
    SHOWS_AS_BEFORE,
    SHOWS_NOTHING,    // blank: the key does nothing
    SHOWS_METHOD,     // the input method, "2aB" when the widget has none
    SHOWS_OWN_METHOD, // the input method, blank when the widget has none
    SHOWS_LABEL       // the key's own label
};

struct tagFocusKeys
{
    tagFocusKeys(PAGE_FOCUS focus, KEY_SHOWS ime, KEY_SHOWS deleteKey)
        : eFocus(focus), eIme(ime), eDelete(deleteKey)
    {
    }
    // One widget while it has the focus.
    tagFocusKeys(QWidget* widget, KEY_SHOWS ime, KEY_SHOWS deleteKey)
        : eFocus(FOCUS_ANY), pWidget(widget), eIme(ime), eDelete(deleteKey)
    {
    }
    PAGE_FOCUS eFocus;
    QWidget* pWidget = nullptr; // lives as long as the page; null: any of the kind
    KEY_SHOWS eIme;
    KEY_SHOWS eDelete;
};

class FocusKeys
{
public:
    // Rows are tried in order, the first that fits is taken; without one both keys stay as they are.
    void Declare(std::initializer_list<tagFocusKeys> rows) { m_rows = rows; }
    // widget: has got the focus, or has lost it. Null is nothing.
    void FocusIn(QWidget* widget, const PageFrame& frame) const;
    void FocusOut(QWidget* widget, const PageFrame& frame) const;

private:
    QList<tagFocusKeys> m_rows;
};
