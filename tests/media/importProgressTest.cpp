// An import that takes long: the page waits without freezing, and whatever may happen meanwhile does.
#include "host/look/look.h"
#include "tests/kit/kitTime.h"
#include "tests/media/heldWrites.h"
#include "tests/media/importPage.h"
#include <QDeadlineTimer>
#include <QFile>
#include <QPushButton>
#include <QThread>

namespace {

using Texts = QStringList;

const char* const kBox = "dlgProgressBox";

class ImportProgress : public ImportTest
{
protected:
    ImportProgress()
    {
        put("film.mp4", QByteArray(1 << 20, 'f'));
        put("other.mp4", "other");
    }
    void openFilms()
    {
        open<dlgVideoImport>("video");
        enter();
        select("film.mp4");
    }
    void plugSecondStick() const
    {
        QDir().mkpath(secondStick());
        EXPECT_EQ(storageWorldPlug(STORAGE_USB, secondStick()), "/storage/uDisk2");
    }
    // Imports the row that is chosen; the stick is pulled in the middle. What the boxes then say.
    Texts importAndPull(const std::function<void()>& whilePulled = [] {})
    {
        HeldWrites writes;
        whenUp(kBox, [&] {
            EXPECT_TRUE(kit::waitUntil([&] { return writes.isHeld(); }));
            pull();
            kit::settle();
            whilePulled();
            writes.release();
        });
        const kit::BoxAnswers boxes({"ok"});
        softKey(1);
        kit::settle();
        return boxes.texts();
    }
    static QWidget* top() { return kit::windows().value(0); }
    static bool isUp(const char* name) { return top() && top()->objectName() == name; }
    bool isThere() const { return has("/rundata/media/video/film.mp4"); }
    Texts filesThere() const { return filesIn("/rundata/media/video"); }
    static int threadsNow() { return int(QDir("/proc/self/task").entryList(QDir::AllDirs).size()); }
    // The copy is over, and the page has not yet heard of it.
    void waitForTheEnd(int threads) const
    {
        const QDeadlineTimer deadline(20000);
        while ((!isThere() || threadsNow() > threads) && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        EXPECT_TRUE(isThere());
    }
};

TEST_F(ImportProgress, ABoxShowsHowFarItIsAndGoesWithTheEnd)
{
    openFilms();
    HeldWrites writes;
    bool isSeen = false;
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([&] { return writes.isHeld(); }));
        EXPECT_EQ(top()->findChild<QLabel*>("labText")->text(), "Importing...");
        EXPECT_EQ(top()->findChild<QLabel*>("labTitle")->text(), "Note");
        EXPECT_FALSE(isThere());
        isSeen = kit::waitUntil([] {
            const QImage screen = kit::screen();
            int blue = 0;
            for (int x = 257; x < 592; ++x) {
                int rows = 0;
                for (int y = 200; y < 300; ++y)
                    rows += screen.pixel(x, y) == look::kBlue;
                blue += rows > 4;
            }
            return blue > 70 && blue < 100; // a quarter of the bar
        });
        writes.release();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_TRUE(isSeen);
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), QByteArray(1 << 20, 'f'));
    EXPECT_EQ(top(), page);
}

TEST_F(ImportProgress, AShortOneShowsNoBox)
{
    openFilms();
    select("other.mp4");
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_TRUE(logged("progress").isEmpty());
}

TEST_F(ImportProgress, CancelRemovesTheTargetAndSaysNothing)
{
    for (const Qt::Key key : {Qt::Key_unknown, Qt::Key_Return, Qt::Key_F4, Qt::Key_Escape}) {
        openFilms();
        HeldWrites writes;
        whenUp(kBox, [&] {
            if (key == Qt::Key_unknown)
                kit::tap(top()->findChild<QPushButton*>("btnCancel"));
            else
                kit::key(key);
        });
        const kit::BoxAnswers boxes;
        softKey(1);
        EXPECT_EQ(boxes.texts(), Texts()) << key;
        EXPECT_EQ(top(), page);
        EXPECT_TRUE(isTraced(
            "Import file (/storage/uDisk1/film.mp4) to (/rundata/media/video/film.mp4) is cancelled"));
        writes.release();
        EXPECT_TRUE(kit::waitUntil([this] { return filesThere().isEmpty(); })) << key;
        select("other.mp4");
        EXPECT_EQ(keys(), Texts({"Preview", "Import", "Delete", "Exit"}));
        delete page;
        mark();
    }
}

TEST_F(ImportProgress, ACancelOfAReplacementLeavesNoFileOfTheName)
{
    writeFile("/rundata/media/video/film.mp4", "old");
    openFilms();
    HeldWrites writes;
    whenUp(kBox, [&] { kit::key(Qt::Key_F4); });
    const kit::BoxAnswers boxes({"yes"});
    softKey(1);
    writes.release();
    EXPECT_TRUE(kit::waitUntil([this] { return filesThere().isEmpty(); }));
}

TEST_F(ImportProgress, OneThatIsDoneInTheMomentOfTheCancelGoesToo)
{
    for (const bool isPageLeft : {false, true}) {
        openFilms();
        const int threads = threadsNow();
        HeldWrites writes;
        whenUp(kBox, [&] {
            writes.release();
            waitForTheEnd(threads);
            if (isPageLeft)
                delete page;
            else
                kit::key(Qt::Key_F4);
        });
        const kit::BoxAnswers boxes;
        softKey(1);
        EXPECT_EQ(boxes.texts(), Texts());
        EXPECT_EQ(filesThere(), Texts());
        delete page;
    }
}

TEST_F(ImportProgress, AStickPulledInTheMomentOfTheSuccessTakesThePageAlongAfterItsWords)
{
    openFilms();
    const int threads = threadsNow();
    HeldWrites writes;
    whenUp(kBox, [&] {
        writes.release();
        waitForTheEnd(threads);
        pull();
        kit::settle();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    kit::settle();
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    EXPECT_TRUE(isThere());
    EXPECT_EQ(page, nullptr);
}

TEST_F(ImportProgress, AFailureAfterACancelIsToldAgain)
{
    openFilms();
    {
        HeldWrites writes;
        whenUp(kBox, [&] { kit::key(Qt::Key_F4); });
        const kit::BoxAnswers boxes;
        softKey(1);
        EXPECT_EQ(boxes.texts(), Texts());
    }
    QFile::remove(stick() + "/other.mp4");
    EXPECT_EQ(import("other.mp4"), Texts{"Loading fail!"});
}

TEST_F(ImportProgress, TheStickOfTheSecondImportIsTheOneThatEndsIt)
{
    plugSecondStick();
    ASSERT_TRUE(QFile::copy(stick() + "/other.mp4", secondStick() + "/other.mp4"));
    open<dlgVideoImport>("video");
    enter("/storage/uDisk2");
    EXPECT_EQ(import("other.mp4"), Texts{"Successful loading!"});
    enter();
    select("film.mp4");
    EXPECT_EQ(importAndPull(), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts{"other.mp4"});
}

TEST_F(ImportProgress, AStickThatIsPulledEndsItWithItsWordsAndThenThePage)
{
    openFilms();
    const Texts said = importAndPull([] { EXPECT_TRUE(isUp(kBox)) << "until the copy has ended"; });
    EXPECT_EQ(said, Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts());
    EXPECT_EQ(page, nullptr);
    EXPECT_TRUE(kit::windows().isEmpty());
}

TEST_F(ImportProgress, AnotherStickThatIsPulledEndsNothing)
{
    plugSecondStick();
    openFilms();
    HeldWrites writes;
    whenUp(kBox, [&] {
        EXPECT_EQ(storageWorldUnplug(secondStick()), 1);
        kit::settle();
        writes.release();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1");
}

TEST_F(ImportProgress, AStickPulledWithAnotherLeftLeadsBackToTheList)
{
    plugSecondStick();
    openFilms();
    EXPECT_EQ(importAndPull(), Texts{"Loading fail!"});
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage");
    EXPECT_EQ(rows(), Texts{"SECOND"});
}

TEST_F(ImportProgress, TouchesReachThePageNeitherBeforeTheBoxNorWhileItIsThere)
{
    openFilms();
    HeldWrites writes;
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([&] { return writes.isHeld(); }));
        for (int i = 0; i < SOFT_KEY_COUNT; ++i)
            kit::tap(QPoint(100 + 200 * i, 460));
        kit::tap(QPoint(300, 100));
        QMetaObject::invokeMethod(page, "on_click_Import");
        QMetaObject::invokeMethod(page, "on_click_Delete");
        QMetaObject::invokeMethod(page, "on_click_Preview");
        const bool isFirst = isUp(kBox);
        EXPECT_TRUE(isFirst);
        if (!isFirst)
            kit::key(Qt::Key_F4);
        writes.release();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    EXPECT_EQ(view->currentRow(), rowOf("film.mp4"));
}

TEST_F(ImportProgress, WhatComesUpOverItTakesTheBoxAwayAndNotTheImport)
{
    openFilms();
    HeldWrites writes;
    QWidget call;
    call.setObjectName("call");
    call.setGeometry(0, 0, 800, 480);
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([&] { return writes.isHeld(); }));
        screenBringUp(&call);
        kit::settle();
        EXPECT_TRUE(isUp("call"));
        writes.release();
        EXPECT_TRUE(kit::waitUntil([this] { return isThere(); })) << "it goes on";
        kit::settle();
        EXPECT_TRUE(isUp("call")) << "nothing is told into a call";
        call.hide();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    EXPECT_EQ(top(), page);
}

TEST_F(ImportProgress, TheBoxComesBackWithItsPage)
{
    openFilms();
    HeldWrites writes;
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    bool isBack = false;
    whenUp(kBox, [&] {
        screenBringUp(&call);
        kit::settle();
        call.hide();
        isBack = kit::waitUntil([] { return isUp(kBox); });
        kit::key(Qt::Key_F4);
    });
    const kit::BoxAnswers boxes;
    softKey(1);
    EXPECT_TRUE(isBack);
    EXPECT_EQ(boxes.texts(), Texts());
    writes.release();
}

TEST_F(ImportProgress, APageThatIsDeletedMeanwhileTakesItsBoxAlong)
{
    openFilms();
    HeldWrites writes;
    whenUp(kBox, [&] { delete page; });
    const kit::BoxAnswers boxes;
    softKey(1);
    EXPECT_EQ(page, nullptr);
    EXPECT_TRUE(kit::windows().isEmpty());
    writes.release();
    EXPECT_TRUE(kit::waitUntil([this] { return filesThere().isEmpty(); }));
}

class ScaleProgress : public ImportProgress
{
protected:
    // A program that says when it has begun, and then hangs.
    void hang() const
    {
        const char* program = "/mini-boot/bin/imageScale.exx";
        writeFile(program, "#!/bin/sh\necho x > \"$HX_SYSROOT/begun\"\nwhile :; do printf x >> "
                           "\"$HX_SYSROOT/beats\"; sleep 0.02; done\n");
        QFile::setPermissions(hostPath(program), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    Texts contacts() const { return filesIn("/rundata/media/contact-image"); }
};

TEST_F(ScaleProgress, ACancelEndsTheProgramAndRemovesTheCopyWhateverItIsCalled)
{
    hang();
    put("a-b.jpg", picture("JPG", 40, 40));
    openContacts();
    enter();
    select("a-b.jpg");
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([this] { return has("/begun"); }));
        EXPECT_EQ(contacts().size(), 1);
        kit::key(Qt::Key_F4);
    });
    const kit::BoxAnswers boxes;
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts());
    EXPECT_TRUE(kit::waitUntil([this] { return contacts().isEmpty(); }));
}

TEST_F(ScaleProgress, AProgramThatHangsIsEndedAfterHalfAMinute)
{
    hang();
    put("face.jpg", picture("JPG", 40, 40));
    openContacts();
    enter();
    select("face.jpg");
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([this] { return has("/begun"); }));
        kit::moveClocks(28000);
        QFile::remove(hostPath("/beats"));
        EXPECT_TRUE(kit::waitUntil([this] { return readFile("/beats").size() > 10; }))
            << "so long it may take";
        kit::moveClocks(3000);
        if (!kit::waitUntil([this] { return isTraced("/mini-boot/bin/imageScale.exx is given up"); }))
            kit::key(Qt::Key_F4);
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts{"Loading fail!"});
    EXPECT_EQ(contacts(), Texts());
}

TEST_F(ScaleProgress, AStickThatIsPulledEndsTheProgram)
{
    hang();
    put("face.jpg", picture("JPG", 40, 40));
    openContacts();
    enter();
    select("face.jpg");
    whenUp(kBox, [&] {
        EXPECT_TRUE(kit::waitUntil([this] { return has("/begun"); }));
        pull();
    });
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    kit::settle();
    EXPECT_EQ(boxes.texts(), Texts{"Loading fail!"});
    EXPECT_EQ(contacts(), Texts());
    EXPECT_EQ(page, nullptr);
}

} // namespace
