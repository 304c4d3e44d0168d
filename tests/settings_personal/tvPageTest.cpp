// The page "TV Output".
#include "support/host/combo.h"
#include "tests/settings_personal/personalPageTest.h"
#include <QLabel>

namespace {

class TvPage : public PersonalPageTest
{
protected:
    TvPage() { writeFile(USER_FILE, "[TVOut]\nbTvOutput=1\nbNTSC=1\n"); }
    void openPage() { open("TV Output"); }
    std::string chosen(const char* box) const
    {
        return child<QComboBox>(box)->currentData().toString().toStdString();
    }
};

TEST_F(TvPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "TV Output");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(child<QLabel>("labTvOutput")->text(), "TV Output");
    EXPECT_EQ(child<QLabel>("labTvFormat")->text(), "TV Format");
    EXPECT_EQ(items("cmbBoxTvOutput"), (QStringList{"Manual: 0", "Auto: 1"}));
    EXPECT_EQ(items("cmbBoxTvFormat"), (QStringList{"PAL: 0", "NTSC: 1"}));
    EXPECT_EQ(chosen("cmbBoxTvOutput"), "1");
    EXPECT_EQ(chosen("cmbBoxTvFormat"), "1");
    EXPECT_EQ(focusName(), "cmbBoxTvOutput");
    kit::shot("tv-page");
}

TEST_F(TvPage, WithNothingStoredTheFirstItemsShow)
{
    writeFile(USER_FILE, "");
    openPage();
    EXPECT_EQ(chosen("cmbBoxTvOutput"), "0");
    EXPECT_EQ(chosen("cmbBoxTvFormat"), "0");
}

TEST_F(TvPage, SaveStoresAndTellsNobody)
{
    openPage();
    choose("cmbBoxTvOutput", "0");
    choose("cmbBoxTvFormat", "0");
    mark();
    expectSaved();
    expectStored(USER_FILE, "TVOut", "bTvOutput", "0");
    expectStored(USER_FILE, "TVOut", "bNTSC", "0");
    EXPECT_EQ(logged("broadcast"), QStringList());
}

TEST_F(TvPage, BackStoresNothingAndTheNextShowHasWhatIsStored)
{
    const QByteArray before = readFile(USER_FILE);
    openPage();
    choose("cmbBoxTvFormat", "0");
    back();
    EXPECT_EQ(readFile(USER_FILE), before);
    openPage();
    EXPECT_EQ(chosen("cmbBoxTvFormat"), "1");
}

TEST_F(TvPage, AFullDiskIsToldAndKeepsWhatWasChosen)
{
    openPage();
    choose("cmbBoxTvFormat", "0");
    expectFailedSave(USER_FILE);
    EXPECT_EQ(chosen("cmbBoxTvFormat"), "0");
}

TEST_F(TvPage, ItsFilterIsTracedUnderItsOwnName)
{
    openPage();
    EXPECT_EQ(traces().count("-----dlgTvOutPut installEventFilter----------"), 1);
    back();
    EXPECT_EQ(traces().count("-----dlgTvOutPut removeEventFilter----------"), 1);
}

} // namespace
