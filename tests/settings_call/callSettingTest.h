#pragma once
// What the tests of the pages share that set what the phone does with calls.
#include "settings/call/callPages.h"
#include "settings/call/lineFile.h"
#include "support/host/linepages.h"
#include "tests/kit/pageTest.h"
#include <QTabBar>
#include <QTabWidget>

#define USER_FILE "/rundata/config/user/user.ini"

class CallSettingTest : public PageTest
{
protected:
    CallSettingTest() { settingsCallPages(); }
    // Of a combo box; "" when it shows none.
    std::string chosen(const char* box) const
    {
        return child<QComboBox>(box)->currentData().toString().toStdString();
    }
    // The page's filter begins and ends under that name, once each.
    void expectFilterTraced(const char* pageName, const QString& tracedName)
    {
        if (page)
            back();
        mark();
        open(pageName);
        EXPECT_EQ(traces().filter("EventFilter"),
                  QStringList{"-----" + tracedName + " installEventFilter----------"});
        mark();
        back();
        EXPECT_EQ(traces().filter("EventFilter"),
                  QStringList{"-----" + tracedName + " removeEventFilter----------"});
    }
};

// A page with a tab for each line.
class LineSettingTest : public CallSettingTest
{
protected:
    LineSettingTest()
    {
        for (int line = 0; line < 4; ++line)
            writeFile(lineFile(line), "");
    }
    qLinePages* lines() const { return page->findChild<qLinePages*>(); }
    int tab() const { return lines()->m_pTabs->currentIndex(); }
    // What is done with the page then is done with the body of the line.
    template <typename Action>
    void onLine(int line, Action act)
    {
        QTabBar* bar = lines()->m_pTabs->tabBar();
        kit::tap(bar->mapToGlobal(bar->tabRect(line).center()));
        ASSERT_EQ(tab(), line);
        QWidget* whole = std::exchange(page, lines()->GetLinePage(line));
        act();
        page = whole;
    }
    // A widget of the body of a line.
    template <class T>
    T* at(int line, const char* name) const
    {
        T* widget = lines()->GetLinePage(line)->findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    static void set(int line, const char* section, const char* key, const char* value)
    {
        ASSERT_EQ(nuxSetRegistryString(lineFile(line), section, key, value), 1);
    }
    void expectLine(int line, const char* section, const char* key, const char* value)
    {
        expectStored(lineFile(line), section, key, value);
    }
};
