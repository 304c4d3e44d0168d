#include "tests/kit/pageTest.h"
#include "frame/moduleEntries.h"
#include "frame/pageClass.h"
#include "support/host/combo.h"
#include "support/host/image.h"
#include "support/host/text.h"
#include "tests/file/failingCalls.h"
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFrame>
#include <QPixmap>

PageTest::PageTest()
{
    hostSetModule(settingEntries());
}

QWidget* PageTest::open(const char* name)
{
    settingOpenPage(chString(name), nullptr);
    kit::settle();
    return page = kit::windows().value(0);
}

QWidget* PageTest::openClass(const char* className)
{
    const PageClass* known = PageClass::Find(className);
    EXPECT_NE(known, nullptr) << className;
    page = known ? known->Open(1, 1) : nullptr;
    kit::settle();
    return page;
}

void PageTest::show(QWidget& made)
{
    page = &made;
    made.show();
    kit::settle();
}

void PageTest::enter(const char* edit, const QString& text)
{
    QLineEdit* field = child<QLineEdit>(edit);
    kit::tap(field);
    field->selectAll();
    if (text.isEmpty())
        kit::key(Qt::Key_Backspace);
    kit::type(text);
    ASSERT_EQ(field->text(), text);
}

void PageTest::choose(const char* name, const char* value)
{
    QComboBox* box = child<QComboBox>(name);
    box->setFocus();
    for (int step = 0; step < box->count() && qGetExternValue(box, box->currentIndex()) != value; ++step)
        kit::key(Qt::Key_Right);
    ASSERT_STREQ(qGetExternValue(box, box->currentIndex()), value) << name;
}

void PageTest::tick(const char* name, bool on)
{
    QCheckBox* box = child<QCheckBox>(name);
    if (box->isChecked() != on)
        kit::tap(box);
    ASSERT_EQ(box->isChecked(), on) << name;
}

void PageTest::softKey(int index)
{
    kit::tap(page->findChild<qSoftKeyBar*>()->GetButton(index));
}

QString PageTest::softKeyTitle(int index) const
{
    return page->findChild<qSoftKeyBar*>()->GetButtonTitle(index);
}

QStringList PageTest::softKeys() const
{
    return {softKeyTitle(0), softKeyTitle(1), softKeyTitle(2), softKeyTitle(3)};
}

QString PageTest::title() const
{
    return page->findChild<qTopBar*>()->title();
}

QStringList PageTest::items(const char* name) const
{
    const QComboBox* box = child<QComboBox>(name);
    QStringList all;
    for (int i = 0; i < box->count(); ++i)
        all.append(box->itemText(i) + ": " + box->itemData(i).toString());
    return all;
}

void PageTest::expectRefused(const char* file, const char* message, const char* focus)
{
    const QByteArray before = readFile(file);
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{message});
    EXPECT_EQ(focusName(), focus);
    EXPECT_EQ(readFile(file), before);
    EXPECT_TRUE(page->isVisible());
}

void PageTest::expectSaved()
{
    kit::BoxAnswers boxes;
    save();
    EXPECT_TRUE(boxes.texts().isEmpty()) << qPrintable(boxes.texts().join(" | "));
    EXPECT_FALSE(page->isVisible());
}

void PageTest::expectFailedSave(const char* file)
{
    const QByteArray before = readFile(file);
    FailingCalls disk;
    disk.setSpace(0);
    kit::BoxAnswers boxes({"ok"});
    save();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(readFile(file), before);
}

void PageTest::expectBackground(const char* picture) const
{
    const QFrame* frame = child<QFrame>("frmBackground");
    const QPixmap wanted = GetImageManager()->GetImage(chString(HX_THEME("")) + picture);
    EXPECT_FALSE(wanted.isNull()) << picture;
    EXPECT_TRUE(frame->autoFillBackground());
    EXPECT_EQ(frame->palette().brush(QPalette::Window).texture().cacheKey(), wanted.cacheKey()) << picture;
}

void PageTest::expectStored(const char* file, const char* section, const char* key, const char* value)
{
    EXPECT_EQ(stored(file, section, key), value) << file << " [" << section << "] " << key;
}

void PageTest::expectChangesTold(const QStringList& changes)
{
    const QString prefix = QString::asprintf("0x%x ", CONFIG_MSG_BCAST_CHANGED);
    QStringList told;
    for (const QString& text : logged("broadcast")) {
        if (text.startsWith(prefix))
            told.append(text.mid(prefix.size()));
    }
    EXPECT_EQ(told.mid(m_nChangesSeen), changes);
    m_nChangesSeen = int(told.size());
}

QString PageTest::stored(const char* file, const char* section, const char* key)
{
    return toQString(NUX_SubClass::nuxGetRegistryString(file, section, key, "(absent)"));
}

QString PageTest::focusName()
{
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
}
