#pragma once
// What the tests of the system settings share: the room's pages, opened as a person opens them.
#include "frame/modSetting.h"
#include "host/services/system/hostLog.h"
#include "host/services/system/netWorld.h"
#include "settings/system/systemPages.h"
#include "support/host/bars.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"
#include <QApplication>
#include <QLineEdit>

#define SYSTEM_FILE "/rundata/config/system.ini"

class PageTest : public PhoneTest
{
protected:
    void SetUp() override
    {
        settingsSystemPages();
        tagModuleEntries entries;
        entries.openPage = settingOpenPage;
        entries.openPageWithInfo = settingOpenPage;
        entries.openMenu = settingOpenXml;
        hostSetModule(entries);
    }

    // The window that is on top after the page of that name was asked for.
    QWidget* open(const char* name)
    {
        settingOpenPage(chString(name), nullptr);
        kit::settle();
        return kit::windows().value(0);
    }

    template <class T>
    static T* child(QWidget* page, const char* name)
    {
        T* widget = page->findChild<T*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    // Types over what an edit holds, as a PC keyboard does.
    static void enter(QWidget* page, const char* edit, const QString& text)
    {
        QLineEdit* field = child<QLineEdit>(page, edit);
        kit::tap(field);
        field->selectAll();
        if (text.isEmpty())
            kit::key(Qt::Key_Backspace);
        kit::type(text);
        ASSERT_EQ(field->text(), text);
    }

    static void softKey(QWidget* page, int index)
    {
        kit::tap(page->findChild<qSoftKeyBar*>()->GetButton(index));
    }

    // Save with one bad entry: the message, the focus on the entry, nothing stored in the file, the page
    // open.
    void expectSaveRefused(QWidget* page, const char* file, const char* message, const char* focus)
    {
        const QByteArray before = readFile(file);
        kit::BoxAnswers boxes({"ok"});
        softKey(page, 0);
        EXPECT_EQ(boxes.titles(), QStringList{"Note"});
        EXPECT_EQ(boxes.texts(), QStringList{message});
        EXPECT_EQ(focusName(), focus);
        EXPECT_EQ(readFile(file), before);
        EXPECT_TRUE(page->isVisible());
    }

    static QString stored(const char* file, const char* section, const char* key)
    {
        return toQString(NUX_SubClass::nuxGetRegistryString(file, section, key, "(absent)"));
    }

    static QStringList logged(const char* kind)
    {
        QStringList texts;
        for (const tagLogEntry& entry : hostLogFrom(1)) {
            if (entry.strKind == kind)
                texts.append(entry.strText);
        }
        return texts;
    }

    static QString focusName()
    {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
    }
};
