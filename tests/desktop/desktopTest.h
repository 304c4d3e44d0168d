#pragma once
// What the tests of the host's pages share: the phone's log since the test began, soft keys and lists as a
// person uses them, and all windows away at the end.
#include "tests/kit/phoneTest.h"
#include <QStringList>

class QDialog;
class QTableWidget;

class DesktopTest : public PhoneTest
{
protected:
    DesktopTest();
    ~DesktopTest() override;

    // Texts of one kind of log entry since the test began, joined by "|".
    std::string logged(const char* kind) const;
    static void setLanguage(const char* name);
    // Four registered lines "1001" to "1004", so that calls can be made.
    static void registerLines();
    static void hangUpAll();
    // On a call screen that has just changed.
    static void letPressesCount();
    // Until the test ends.
    static void makeSavesFail();
};

// The page's soft keys, from left to right, joined by "|".
std::string softKeys(QWidget* page);
void tapSoftKey(QWidget* page, int index);
std::string pageTitle(QWidget* page);
std::string labelText(QWidget* page, const char* name);

QTableWidget* listOf(QWidget* page);
// The rows with their cells, "a,b,c|d,e,f".
std::string rowsOf(QWidget* page);
std::string headingsOf(QWidget* page);
void tapRow(QWidget* page, int row);
// What the list says instead of rows; empty while there are rows.
std::string noticeOf(QWidget* page);

// Text that a label or a heading of the page does not have room for, joined by "|".
std::string cutTexts(QWidget* page);
