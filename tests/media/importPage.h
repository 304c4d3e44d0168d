#pragma once
// What the tests of the import pages share: a disk that is plugged in, and the page that browses it.
#include "host/services/storage/storageWorld.h"
#include "media/dlgImageImport.h"
#include "media/dlgSoundImport.h"
#include "media/dlgVideoImport.h"
#include "support/host/bars.h"
#include "support/host/mediaview.h"
#include "support/host/screen.h"
#include "support/host/storage.h"
#include "support/host/text.h"
#include "tests/kit/kitTime.h"
#include "tests/media/mediaTest.h"
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <functional>

class ImportTest : public MediaTest
{
protected:
    ImportTest()
    {
        QDir().mkpath(stick());
        EXPECT_EQ(storageWorldPlug(STORAGE_USB, stick()), "/storage/uDisk1");
        for (const char* folder : {"image", "video", "ring", "contact-image"})
            QDir().mkpath(hostPath("/rundata/media/") + folder);
    }
    ~ImportTest() override
    {
        delete page;
        kit::settle();
    }

    QString stick() const { return m_disks.filePath("STICK"); }
    QString secondStick() const { return m_disks.filePath("SECOND"); }
    void put(const QString& name, const QByteArray& content = "x") const
    {
        QDir().mkpath(QFileInfo(stick() + '/' + name).path());
        QFile file(stick() + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(name);
        ASSERT_EQ(file.write(content), content.size());
    }
    void pull() const { ASSERT_EQ(storageWorldUnplug(stick()), 1); }
    // A file of the phone.
    bool has(const QString& devicePath) const
    {
        return QFileInfo(hostPath(devicePath.toUtf8())).isSymLink() ||
               QFile::exists(hostPath(devicePath.toUtf8()));
    }
    QStringList filesIn(const char* folder) const
    {
        return QDir(hostPath(folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    template <class T, class... Arguments>
    void open(Arguments... arguments)
    {
        page = new T(arguments..., nullptr);
        page->setAttribute(Qt::WA_DeleteOnClose);
        view = page->findChild<qMediaImportView*>();
        ASSERT_NE(view, nullptr);
        screenBringUp(page);
        kit::settle();
    }
    void openImages() { open<dlgImageImport>("image"); }
    void openContacts() { open<dlgImageImport>("contact-image", 126, 126); }
    void enter(const char* folder = "/storage/uDisk1")
    {
        ASSERT_EQ(view->EnterDirectory(folder), 1);
        ASSERT_TRUE(kit::waitUntil([this] { return !view->isReading(); }));
    }
    int rowOf(const QString& name) const
    {
        for (int row = 0; row < view->count(); ++row) {
            if (toQString(view->itemFullPath(row)).endsWith('/' + name))
                return row;
        }
        return -1;
    }
    // Makes the file's row the current one, and waits for what it offers.
    void select(const QString& name)
    {
        const int row = rowOf(name);
        ASSERT_GE(row, 0) << qPrintable(name);
        view->setCurrentRow(row);
        kit::waitUntil([this] { return !keys().value(1).isEmpty(); }, view->itemIsDirectory(row) ? 1 : 2000);
    }
    QStringList rows() const
    {
        QStringList names;
        for (int row = 0; row < view->count(); ++row)
            names.append(view->item(row)->text());
        return names;
    }
    qSoftKeyBar* bar() const { return page->findChild<qSoftKeyBar*>(); }
    QStringList keys() const
    {
        QStringList titles;
        for (int i = 0; i < SOFT_KEY_COUNT; ++i)
            titles.append(bar()->GetButtonTitle(i));
        return titles;
    }
    void softKey(int index) { kit::tap(bar()->GetButton(index)); }
    // Imports the file, answering the boxes; their texts.
    QStringList import(const QString& name, const QStringList& answers = {"ok"})
    {
        select(name);
        const kit::BoxAnswers boxes(answers);
        softKey(1);
        EXPECT_EQ(boxes.unexpected(), 0) << qPrintable(boxes.texts().join("; "));
        return boxes.texts();
    }
    // Acts once when the window of that name has come up.
    void whenUp(const char* window, const std::function<void()>& action)
    {
        QTimer* look = new QTimer(qApp);
        QObject::connect(look, &QTimer::timeout, look, [=] {
            const QWidget* top = kit::windows().value(0);
            if (!top || top->objectName() != window || !top->isActiveWindow())
                return;
            look->stop();
            look->deleteLater();
            action();
        });
        look->start(1);
    }
    // Acts while a note is there, which the test has its answers keep, and answers it: the one of that text.
    void whileTold(const QString& text, const std::function<void()>& action)
    {
        QTimer* look = new QTimer(qApp);
        QObject::connect(look, &QTimer::timeout, look, [=] {
            const QWidget* top = kit::windows().value(0);
            if (!top || top->objectName() != "dlgMessageBox" || !top->findChild<QPushButton*>("btnOK"))
                return;
            look->stop();
            look->deleteLater();
            EXPECT_EQ(top->findChild<QLabel*>("labText")->text(), text);
            action();
            kit::key(Qt::Key_Return);
        });
        look->start(1);
    }
    // A minute later the box on the screen is still there.
    static bool stays()
    {
        const QWidget* box = kit::windows().value(0);
        kit::holdClocks(true);
        kit::stepTime(60000);
        kit::holdClocks(false);
        return kit::windows().value(0) == box;
    }
    QLabel* label() const { return page->findChild<QLabel*>("labImagePreview"); }

    QPointer<dlgMediaImport> page;
    qMediaImportView* view = nullptr;

private:
    QTemporaryDir m_disks;
};
