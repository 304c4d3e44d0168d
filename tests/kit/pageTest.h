#pragma once
// What the tests of pages share: a page is opened as a person opens it, filled in, saved, and looked at. A
// program that uses this links the frame and its room.
#include "support/host/bars.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QComboBox>
#include <QLineEdit>

class PageTest : public PhoneTest
{
protected:
    PageTest();

    // Asks for the page of that name; the window that is on top then is the page from now on.
    QWidget* open(const char* name);
    // The same by its class, for a page that has no name.
    QWidget* openClass(const char* className);
    // A page that the test made itself.
    void show(QWidget& made);

    // A widget of the page.
    template <class T>
    T* child(const char* name) const
    {
        T* widget = page->findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    // Types over what an edit holds, as a PC keyboard does.
    void enter(const char* edit, const QString& text);
    // Gives a combo box the focus and steps it with the arrow keys to the item of that stored value.
    void choose(const char* box, const char* value);
    // Taps a check box until it is as wanted.
    void tick(const char* box, bool on);
    // Presses a soft key of the page.
    void softKey(int index);
    void save() { softKey(0); }
    void back() { softKey(3); }
    QString softKeyTitle(int index) const;
    QStringList softKeys() const;
    // Of the top bar.
    QString title() const;
    // "text: stored value" of each item of a combo box.
    QStringList items(const char* box) const;

    // Save shows this note and nothing else, moves the focus there, leaves the file as it was and the page
    // open.
    void expectRefused(const char* file, const char* message, const char* focus);
    // Save shows no box and closes the page.
    void expectSaved();
    // On a full disk Save says so, leaves the file as it was and the page open; there is room again
    // afterwards.
    void expectFailedSave(const char* file);
    void expectStored(const char* file, const char* section, const char* key, const char* value);
    // Behind the page is this picture of the theme, "general/gen_bg.jpg", and no other.
    void expectBackground(const char* picture) const;
    // Changes that were told since the last call: "3 1" is wParam 3 with lParam 1.
    void expectChangesTold(const QStringList& changes);

    static QString stored(const char* file, const char* section,
                          const char* key); // "(absent)" when it is not
    // Object name of the widget that has the focus.
    static QString focusName();

    QWidget* page = nullptr;

private:
    int m_nChangesSeen = 0;
};
