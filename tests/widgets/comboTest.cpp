#include "support/host/combo.h"
#include "tests/kit/phoneTest.h"
#include <QComboBox>
#include <QRadioButton>

namespace {

const char kTable[] = "/rundata/mediafile.xml";

class Combo : public PhoneTest
{
protected:
    QString textOf(const chString& text) { return QString::fromUtf8(text.GetText()); }
    QString value(int index) { return textOf(qGetExternValue(&box, index)); }

    QComboBox box;
};

TEST_F(Combo, ItemShowsItsLabelAndKeepsItsExternValue)
{
    qAddComboBoxItem(&box, "24-hour", "0");
    qAddComboBoxItem(&box, QString("12-hour"), chString("1"));
    EXPECT_EQ(box.itemText(0), "24-hour");
    EXPECT_EQ(value(0), "0");
    EXPECT_EQ(box.itemText(1), "12-hour");
    EXPECT_EQ(value(1), "1");
}

TEST_F(Combo, TextsAreUtf8)
{
    qAddComboBoxItem(&box, "\xC3\xA4", "\xE4\xB8\xAD");
    EXPECT_EQ(box.itemText(0), QString::fromUtf8("\xC3\xA4"));
    EXPECT_EQ(value(0), QString::fromUtf8("\xE4\xB8\xAD"));
}

TEST_F(Combo, NullTextsAreEmpty)
{
    qAddComboBoxItem(&box, static_cast<const char*>(nullptr), nullptr);
    EXPECT_EQ(box.count(), 1);
    EXPECT_EQ(box.itemText(0), "");
    EXPECT_EQ(value(0), "");
}

TEST_F(Combo, ExternValueIsEmptyOutOfRange)
{
    qAddComboBoxItem(&box, "a", "1");
    EXPECT_EQ(value(-1), "");
    EXPECT_EQ(value(1), "");
    EXPECT_EQ(textOf(qGetExternValue(static_cast<QComboBox*>(nullptr), 0)), "");
}

TEST_F(Combo, ExternValueCanBeSetLater)
{
    box.addItem("plain");
    EXPECT_EQ(value(0), "");
    qSetExternValue(&box, 0, "7");
    EXPECT_EQ(value(0), "7");
}

TEST_F(Combo, ExternValueIsTheUserDataOfAPlainItem)
{
    box.addItem("Mobotix", "0");
    EXPECT_EQ(value(0), "0");
}

TEST_F(Combo, SelectsByExternValue)
{
    qAddComboBoxItem(&box, "1", "a");
    qAddComboBoxItem(&box, "a", "1");
    EXPECT_EQ(qSelectComboBoxItem(&box, "1"), 1);
    EXPECT_EQ(box.currentIndex(), 1);
    EXPECT_EQ(qSelectComboBoxItem(&box, "a"), 1);
    EXPECT_EQ(box.currentIndex(), 0);
}

TEST_F(Combo, SelectionStaysWhenNoItemHasTheValue)
{
    qAddComboBoxItem(&box, "one", "a");
    qAddComboBoxItem(&box, "two", "b");
    box.setCurrentIndex(1);
    EXPECT_EQ(qSelectComboBoxItem(&box, "A"), 0);
    EXPECT_EQ(qSelectComboBoxItem(nullptr, "a"), 0);
    EXPECT_EQ(box.currentIndex(), 1);
}

TEST_F(Combo, TellsTheIndexOfTheValueThatItSelects)
{
    qAddComboBoxItem(&box, "one", "/rundata/media/wallpaper/a.png");
    qAddComboBoxItem(&box, "two", "/rundata/media/wallpaper/b.png");
    EXPECT_EQ(qSelectComboBoxItemIsExist(&box, "/rundata/media/wallpaper/b.png"), 1);
    EXPECT_EQ(box.currentIndex(), 1);
    EXPECT_EQ(qSelectComboBoxItemIsExist(&box, "/rundata/media/wallpaper/a.png"), 0);
    EXPECT_EQ(box.currentIndex(), 0);
}

TEST_F(Combo, AValueThatIsGoneHasNoIndexAndTheSelectionStays)
{
    EXPECT_EQ(qSelectComboBoxItemIsExist(&box, "a"), -1);
    qAddComboBoxItem(&box, "one", "a");
    qAddComboBoxItem(&box, "two", "b");
    box.setCurrentIndex(1);
    EXPECT_EQ(qSelectComboBoxItemIsExist(&box, "c"), -1);
    EXPECT_EQ(qSelectComboBoxItemIsExist(nullptr, "a"), -1);
    EXPECT_EQ(box.currentIndex(), 1);
}

TEST_F(Combo, RadioButtonKeepsItsExternValue)
{
    QRadioButton radio;
    EXPECT_EQ(textOf(qGetExternValue(&radio)), "");
    qSetExternValue(&radio, "2");
    EXPECT_EQ(textOf(qGetExternValue(&radio)), "2");
    qSetExternValue(static_cast<QRadioButton*>(nullptr), "2");
    EXPECT_EQ(textOf(qGetExternValue(static_cast<QRadioButton*>(nullptr))), "");
}

TEST_F(Combo, MediaBoxListsTheFilesOfItsTypeInTheOrderOfTheTable)
{
    writeFile(kTable, "<MediaFile>"
                      "<image filter=\"*.jpg\"><filelist><item path=\"/storage/i\"/></filelist></image>"
                      "<sound filter=\"*.wav\"><filelist><item path=\"/storage/b\" shortname=\"My \"/>"
                      "<item path=\"/storage/a\" shortname=\"\"/></filelist></sound></MediaFile>");
    writeFile("/storage/a/z.wav", "");
    writeFile("/storage/a/y.mp3", "");
    writeFile("/storage/b/ring.wav", "");
    writeFile("/storage/i/p.jpg", "");
    qAddComboBoxItem(&box, "None", "");
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "sound"), 2);
    ASSERT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(1), "My ring.wav");
    EXPECT_EQ(value(1), "/storage/b/ring.wav");
    EXPECT_EQ(box.itemText(2), "z.wav");
    EXPECT_EQ(value(2), "/storage/a/z.wav");
}

TEST_F(Combo, MediaBoxLooksIntoItsFoldersOnlyNotBelow)
{
    writeFile(kTable, "<M><s filter=\"*.wav\"><filelist><item path=\"/storage/a\"/></filelist></s></M>");
    writeFile("/storage/a/b/deep.wav", "");
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "s"), 0);
}

TEST_F(Combo, MediaBoxStaysAsItIsWithoutTableTypeOrFiles)
{
    qAddComboBoxItem(&box, "None", "");
    EXPECT_EQ(qFillMediaCommboView(&box, "/rundata/none.xml", "sound"), 0);
    writeFile(kTable, "<M><broken");
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "broken"), 0);
    writeFile(kTable, "<M><s/><e filter=\"*\"><filelist><item path=\"/none\"/></filelist></e></M>");
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "other"), 0);
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "s"), 0);
    EXPECT_EQ(qFillMediaCommboView(&box, kTable, "e"), 0);
    EXPECT_EQ(qFillMediaCommboView(nullptr, kTable, "s"), 0);
    EXPECT_EQ(box.count(), 1);
}

TEST_F(Combo, EveryRingToneOfTheFactoryIsListed)
{
    EXPECT_GT(qFillMediaCommboView(&box, "/phone/resource/mediafile.xml", "sound"), 0);
    EXPECT_TRUE(value(0).startsWith("/phone/resource/sysdata/ring/"));
}

} // namespace
