// The page "Sound Set": what it shows and stores, and what is heard meanwhile.
#include "frame/roomHooks.h"
#include "settings/personal/dlgSound.h"
#include "support/host/combo.h"
#include "support/host/phone.h"
#include "support/host/volumebar.h"
#include "tests/kit/kitTime.h"
#include "tests/settings_personal/personalPageTest.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QLabel>

namespace {

class SoundPage : public PersonalPageTest
{
protected:
    SoundPage()
    {
        kit::holdClocks(true);
        writeFile("/phone/resource/mediafile.xml",
                  "<MediaFile><sound filter=\"*.wav\"><filelist>"
                  "<item path=\"/rundata/media/own\" shortname=\"\"/>"
                  "<item path=\"/rundata/media/ring\" shortname=\"My \"/></filelist></sound></MediaFile>");
        for (const char* tone : {"own/Alto", "own/Bell", "own/Cello", "ring/7up"})
            writeFile(QString("/rundata/media/%1.wav").arg(tone).toUtf8(), "RIFF");
        writeFile(USER_FILE, "[Ring]\nstrRingFile=/rundata/media/own/Bell.wav\n"
                             "[Volume]\nnRing=30\nnTalkOutput=60\n");
    }
    ~SoundPage() override { kit::holdClocks(false); }
    void openPage() { open("Sound Set"); }

    QComboBox* list() const { return child<QComboBox>("cmbBoxRingFile"); }
    QVolumeBar* ring() const { return child<QVolumeBar>("barRing"); }
    QVolumeBar* talk() const { return child<QVolumeBar>("barTalk"); }
    static void touch(QVolumeBar* bar, double part)
    {
        kit::tap(bar->mapToGlobal(QPoint(int(bar->width() * part), bar->height() / 2)));
    }
    // The rows of the page, above a bar, in which the pictures differ.
    static QList<int> rowsThatDiffer(const QImage& one, const QImage& other, const QWidget* bar)
    {
        QList<int> rows;
        for (int y = bar->y() - 40; y < bar->y(); ++y) {
            const QRect line(bar->x() - 10, y, bar->width(), 1);
            if (one.copy(line) != other.copy(line))
                rows.append(y);
        }
        return rows;
    }
    void putBoxOver()
    {
        m_over.setGeometry(0, 0, 800, 480);
        m_over.show();
        m_over.activateWindow();
        kit::settle();
    }

    QWidget m_over;
};

TEST_F(SoundPage, AFreshPhoneRingsAtTwentyAndTalksAtFifty)
{
    writeFile(USER_FILE, "");
    openPage();
    EXPECT_EQ(ring()->value(), 20);
    EXPECT_EQ(talk()->value(), 50);
    EXPECT_EQ(list()->currentText(), "Alto.wav") << "the first of the list";
}

TEST_F(SoundPage, TheFactorySettingsAreThoseOfAFreshPhone)
{
    QFile file(hostPath("/phone/factory/rundata/config/user/user.ini"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray factory = file.readAll();
    EXPECT_TRUE(factory.contains("nRing=20\n"));
    EXPECT_TRUE(factory.contains("nTalkOutput=50\n"));
    EXPECT_TRUE(factory.contains("strRingFile=/phone/resource/sysdata/ring/Classic.wav\n"));
    EXPECT_TRUE(QFile::exists(hostPath("/phone/resource/sysdata/ring/Classic.wav")));
}

TEST_F(SoundPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Tones and Volume");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "Ringtone Manager", "", "Back"}));
    EXPECT_EQ(child<QLabel>("labRingFile")->text(), "Ringing Tone");
    EXPECT_EQ(child<QLabel>("labRing")->text(), "Ringing Volume");
    EXPECT_EQ(child<QLabel>("labTalk")->text(), "Talking Volume");
    EXPECT_EQ(
        items("cmbBoxRingFile"),
        (QStringList{"Alto.wav: /rundata/media/own/Alto.wav", "Bell.wav: /rundata/media/own/Bell.wav",
                     "Cello.wav: /rundata/media/own/Cello.wav", "My 7up.wav: /rundata/media/ring/7up.wav"}));
    EXPECT_EQ(list()->currentText(), "Bell.wav");
    EXPECT_EQ(ring()->value(), 30);
    EXPECT_EQ(talk()->value(), 60);
    EXPECT_EQ(focusName(), "cmbBoxRingFile");
    kit::shot("sound-page");
}

// Some languages have letters that reach below their line in both names of the bars.
TEST_F(SoundPage, TheRingOfABarLeavesAirBelowItsLabel)
{
    openPage();
    for (const auto& [bar, name] : {std::pair(ring(), "labRing"), std::pair(talk(), "labTalk")}) {
        QLabel* label = child<QLabel>(name);
        label->setText("gjpqy");
        list()->setFocus();
        kit::settle();
        const QImage plain = kit::screen();
        bar->setFocus();
        kit::settle();
        const QImage ringed = kit::screen();
        label->setText("");
        kit::settle();
        const QList<int> text = rowsThatDiffer(kit::screen(), ringed, bar);
        const QList<int> edge = rowsThatDiffer(plain, ringed, bar);
        ASSERT_FALSE(text.isEmpty() || edge.isEmpty());
        EXPECT_GE(edge.first() - text.last(), 5) << name;
    }
}

TEST_F(SoundPage, OpeningItIsSilentAndLeavesTheVolumeAlone)
{
    for (int round = 0; round < 2; ++round) {
        const int before = dev_get_output_volume();
        openPage();
        kit::stepTime(3000);
        EXPECT_EQ(heard(), QStringList());
        EXPECT_EQ(dev_get_output_volume(), before);
        back();
        // The second show finds other values.
        writeFile(USER_FILE, "[Ring]\nstrRingFile=/rundata/media/own/Cello.wav\n"
                             "[Volume]\nnRing=35\nnTalkOutput=65\n");
    }
    openPage();
    EXPECT_EQ(list()->currentText(), "Cello.wav");
    EXPECT_EQ(ring()->value(), 35);
    EXPECT_EQ(talk()->value(), 65);
}

TEST_F(SoundPage, AnotherToneIsHeardAfterASecondAndRoundAndRound)
{
    openPage();
    kit::key(Qt::Key_Right);
    EXPECT_EQ(list()->currentText(), "Cello.wav");
    kit::stepTime(990);
    EXPECT_EQ(heard(), QStringList());
    mark();
    kit::stepTime(10);
    EXPECT_EQ(heard(), QStringList{"Cello.wav 30"});
    EXPECT_EQ(logged("ring"), QStringList{"/rundata/media/own/Cello.wav 1"});
}

TEST_F(SoundPage, WhoRunsThroughTheListHearsTheLastAlone)
{
    openPage();
    for (int step = 0; step < 6; ++step) {
        kit::key(Qt::Key_Left);
        kit::stepTime(500);
    }
    kit::stepTime(500);
    EXPECT_EQ(heard(), QStringList{"7up.wav 30"});
}

TEST_F(SoundPage, ARowThatIsHighlightedInTheOpenListIsHeard)
{
    openPage();
    kit::key(Qt::Key_Return);
    ASSERT_TRUE(list()->view()->isVisible());
    kit::key(Qt::Key_Down);
    kit::stepTime(1000);
    EXPECT_EQ(heard(), QStringList{"Cello.wav 30"});
    // Without a choice the list gives the one that is set back.
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(list()->view()->isVisible());
    kit::stepTime(1000);
    EXPECT_EQ(heard(), (QStringList{"stop", "Bell.wav 30"}));
}

TEST_F(SoundPage, AFingerOnTheRingBarIsHeardAtOnce)
{
    openPage();
    touch(ring(), 0.5);
    const int set = ring()->value();
    EXPECT_GT(set, 45);
    EXPECT_EQ(heard(), QStringList{QString("Bell.wav %1").arg(set)});
    // What sounds gets louder, and does not begin again.
    touch(ring(), 0.8);
    EXPECT_GT(ring()->value(), set);
    EXPECT_EQ(level(), ring()->value());
    EXPECT_EQ(heard(), QStringList());
    kit::stepTime(3000);
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(SoundPage, TheRingBarByKeysIsHeardAtOnce)
{
    openPage();
    ring()->setFocus();
    kit::key(Qt::Key_Left);
    EXPECT_EQ(ring()->value(), 25);
    EXPECT_EQ(heard(), QStringList{"Bell.wav 25"});
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(ring()->value(), 35);
    EXPECT_EQ(level(), 35);
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(SoundPage, TheVolumeThatIsChangedWhileAToneWaitsIsHeardOnce)
{
    openPage();
    kit::key(Qt::Key_Right);
    kit::stepTime(500);
    touch(ring(), 0.5);
    EXPECT_EQ(heard().size(), 1);
    kit::stepTime(2000);
    EXPECT_EQ(heard(), QStringList()) << "the tone that waited has begun already";
}

TEST_F(SoundPage, AFingerOnTheTalkBarSoundsASample)
{
    openPage();
    touch(ring(), 0.5);
    heard();
    touch(talk(), 0.4);
    EXPECT_EQ(heard(), (QStringList{"stop", QString("tone 65 %1").arg(talk()->value())}));
    EXPECT_EQ(dev_get_output_volume(), talk()->value());
}

TEST_F(SoundPage, TheTalkBarByKeysIsSilentAndSetsTheVolume)
{
    openPage();
    touch(ring(), 0.5);
    heard();
    talk()->setFocus();
    kit::key(Qt::Key_Left);
    EXPECT_EQ(talk()->value(), 55);
    EXPECT_EQ(heard(), QStringList{"stop"});
    EXPECT_EQ(dev_get_output_volume(), 55);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(talk()->value(), 60);
    EXPECT_EQ(heard(), QStringList());
    touch(talk(), 0.2);
    EXPECT_EQ(heard().size(), 1) << "the key before does not silence a finger";
}

TEST_F(SoundPage, AKeyAtTheEndOfTheTalkBarSilencesNoFinger)
{
    writeFile(USER_FILE, "[Volume]\nnTalkOutput=0\n");
    openPage();
    talk()->setFocus();
    kit::key(Qt::Key_Left);
    EXPECT_EQ(talk()->value(), 0);
    touch(talk(), 0.5);
    EXPECT_EQ(heard().size(), 1);
}

TEST_F(SoundPage, TheTalkBarSoundsOnlyWhileThePageIsActive)
{
    openPage();
    putBoxOver();
    talk()->setValue(10);
    EXPECT_EQ(heard(), QStringList());
    m_over.hide();
    kit::settle();
    ASSERT_TRUE(page->isActiveWindow());
    talk()->setValue(40);
    EXPECT_EQ(heard(), QStringList{"tone 65 40"}) << "once";
}

TEST_F(SoundPage, DigitsStarAndHashDoNotMoveTheList)
{
    openPage();
    for (const QChar key : QString("0123456789#*")) {
        kit::type(key);
        kit::padKey(key.toLatin1());
    }
    EXPECT_EQ(list()->currentText(), "Bell.wav");
    kit::key(Qt::Key_Return);
    for (const QChar key : QString("7#*"))
        kit::type(key);
    EXPECT_EQ(list()->view()->currentIndex().row(), 1);
    kit::key(Qt::Key_Escape);
    kit::type("C");
    EXPECT_EQ(list()->currentText(), "Cello.wav") << "a letter is no digit";
}

TEST_F(SoundPage, OkPlaysTheToneThatIsSetAndOpensTheList)
{
    openPage();
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(list()->view()->isVisible());
    kit::stepTime(1000);
    EXPECT_EQ(heard(), QStringList{"Bell.wav 30"});
}

TEST_F(SoundPage, IsSilentUnderAnotherWindow)
{
    openPage();
    touch(ring(), 0.5);
    heard();
    putBoxOver();
    EXPECT_EQ(heard(), QStringList{"stop"});
    m_over.hide();
    kit::settle();
    list()->setFocus();
    kit::key(Qt::Key_Right);
    putBoxOver();
    kit::stepTime(2000);
    EXPECT_EQ(heard(), QStringList()) << "a tone that waited";
}

TEST_F(SoundPage, BackIsSilentAndStoresNothing)
{
    const QByteArray before = readFile(USER_FILE);
    openPage();
    kit::key(Qt::Key_Right);
    touch(ring(), 0.7);
    heard();
    back();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(heard(), QStringList{"stop"});
    EXPECT_EQ(readFile(USER_FILE), before);
    expectChangesTold({});
    openPage();
    EXPECT_EQ(list()->currentText(), "Bell.wav");
    EXPECT_EQ(ring()->value(), 30);
}

TEST_F(SoundPage, SaveIsSilentStoresAndTells)
{
    openPage();
    kit::key(Qt::Key_Right);
    touch(talk(), 0.3);
    touch(ring(), 0.5);
    const QString ringing = QString::number(ring()->value());
    const QString talking = QString::number(talk()->value());
    heard();
    expectSaved();
    EXPECT_EQ(heard(), QStringList{"stop"});
    expectStored(USER_FILE, "Ring", "strRingFile", "/rundata/media/own/Cello.wav");
    EXPECT_EQ(stored(USER_FILE, "Volume", "nRing"), ringing);
    EXPECT_EQ(stored(USER_FILE, "Volume", "nTalkOutput"), talking);
    expectChangesTold({"18 0"});
}

TEST_F(SoundPage, TheFirstToneOfTheListCanBeSavedToo)
{
    openPage();
    kit::key(Qt::Key_Left);
    ASSERT_EQ(list()->currentIndex(), 0);
    expectSaved();
    expectStored(USER_FILE, "Ring", "strRingFile", "/rundata/media/own/Alto.wav");
}

TEST_F(SoundPage, AnUnchangedSaveTellsAllTheSame)
{
    openPage();
    const QByteArray before = readFile(USER_FILE);
    expectSaved();
    expectChangesTold({"18 0"});
    EXPECT_EQ(readFile(USER_FILE), before);
}

TEST_F(SoundPage, AFullDiskIsToldAndKeepsWhatWasSet)
{
    openPage();
    kit::key(Qt::Key_Right);
    touch(ring(), 0.5);
    const int set = ring()->value();
    expectFullDiskTold();
    expectChangesTold({});
    EXPECT_EQ(list()->currentText(), "Cello.wav");
    EXPECT_EQ(ring()->value(), set);
    expectSaved();
    expectChangesTold({"18 0"});
}

TEST_F(SoundPage, WithoutAnyToneNothingIsPlayedAndTheStoredOneStays)
{
    for (const char* tone : {"own/Alto", "own/Bell", "own/Cello", "ring/7up"})
        QFile::remove(hostPath(QString("/rundata/media/%1.wav").arg(tone).toUtf8()));
    openPage();
    EXPECT_EQ(list()->count(), 0);
    touch(ring(), 0.5);
    kit::key(Qt::Key_Return);
    kit::stepTime(2000);
    EXPECT_EQ(heard(), QStringList());
    EXPECT_FALSE(logged("ring").contains(" 1"));
    expectSaved();
    expectStored(USER_FILE, "Ring", "strRingFile", "/rundata/media/own/Bell.wav");
}

TEST_F(SoundPage, TheManagerIsOpenedInSilence)
{
    openPage();
    touch(ring(), 0.5);
    heard();
    askForManager();
    EXPECT_EQ(heard().value(0), "stop");
    EXPECT_FALSE(traces().filter("settingOpenPage(Sound Manager)").isEmpty());
}

TEST_F(SoundPage, AfterTheManagerTheChosenToneIsChosenStill)
{
    openPage();
    EXPECT_EQ(getSoundDlg(), page);
    kit::key(Qt::Key_Right);
    askForManager();
    kit::stepTime(2000);
    heard();
    writeFile("/rundata/media/own/Aria.wav", "RIFF");
    roomHooks().reloadSound();
    EXPECT_EQ(list()->count(), 5);
    EXPECT_EQ(list()->currentText(), "Cello.wav");
    kit::stepTime(2000);
    EXPECT_EQ(heard(), QStringList()) << "nobody has chosen anything";
}

TEST_F(SoundPage, AfterTheManagerTheFirstIsChosenWhenTheToneIsGone)
{
    openPage();
    kit::key(Qt::Key_Right);
    askForManager();
    QFile::remove(hostPath("/rundata/media/own/Cello.wav"));
    roomHooks().reloadSound();
    EXPECT_EQ(list()->count(), 3);
    EXPECT_EQ(list()->currentText(), "Alto.wav");
}

TEST_F(SoundPage, AManagerThatWasNotOpenedFromHereReloadsSilently)
{
    EXPECT_EQ(getSoundDlg(), nullptr);
    roomHooks().reloadSound();
    openPage();
    back();
    heard();
    writeFile("/rundata/media/own/Aria.wav", "RIFF");
    roomHooks().reloadSound();
    kit::stepTime(2000);
    EXPECT_EQ(heard(), QStringList());
    openPage();
    EXPECT_EQ(list()->count(), 5);
    EXPECT_EQ(list()->currentText(), "Bell.wav");
}

TEST_F(SoundPage, FiltersWhileItIsActive)
{
    openPage();
    EXPECT_EQ(traces().count("-----dlgSound installEventFilter----------"), 1);
    putBoxOver();
    EXPECT_EQ(traces().count("-----dlgSound removeEventFilter----------"), 1);
}

TEST_F(SoundPage, TheArrowsLeadThroughItsWidgets)
{
    openPage();
    QStringList names;
    for (int step = 0; step < 3; ++step) {
        names.append(focusName());
        kit::key(Qt::Key_Down);
    }
    EXPECT_EQ(names, (QStringList{"cmbBoxRingFile", "barRing", "barTalk"}));
    kit::key(Qt::Key_Up);
    EXPECT_EQ(focusName(), "barTalk");
}

} // namespace
