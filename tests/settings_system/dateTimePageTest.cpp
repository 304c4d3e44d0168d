// The page "Date & Time", and what its Save makes of the phone's clock.
#include "host/services/system/netWorld.h"
#include "settings/system/dataEditFrame.h"
#include "settings/system/timeEditFrame.h"
#include "support/host/clock.h"
#include "support/host/ime.h"
#include "support/host/net.h"
#include "support/xml/xmlFile.h"
#include "tests/file/failingCalls.h"
#include "tests/kit/kitTime.h"
#include "tests/settings_system/systemPageTest.h"
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <functional>

#define USER_FILE "/rundata/config/user/user.ini"
#define ZONE_FILE "/phone/resource/AutoDST.xml"

namespace {

const char* const kEdits[] = {"editYear", "editMonth", "editDay", "editHour", "editMinute", "editSecond"};

class DateTimePage : public SystemPageTest
{
protected:
    DateTimePage()
    {
        writeSettings("+01:00 ", "Germany, Berlin", "1");
        netWorldSetClock(chTime(2027, 3, 2, 10, 25, 7).GetTime());
    }
    ~DateTimePage() override { kit::holdClocks(false); }
    // No second goes by while the test looks; a box is not answered then.
    static void hold()
    {
        kit::holdClocks(true);
        netWorldSetClock(chTime(2027, 3, 2, 10, 25, 7).GetTime());
    }
    void writeSettings(const QByteArray& time, const QByteArray& name, const QByteArray& mode) const
    {
        writeFile(SYSTEM_FILE, "[LocalTime]\nstrTimeName=\"" + time + "\"\nstrZoneName=" + name +
                                   "\nstrPrimaryNTPServer=ntp.example.org\nbNTPEnable=" + mode + "\n");
    }
    void writeZones(const QByteArray& rows) const { writeFile(ZONE_FILE, rows); }
    void openPage() { open("Date & Time"); }
    void openManual()
    {
        writeSettings("+01:00 ", "Germany, Berlin", "0");
        openPage();
    }
    QComboBox* zones() const { return child<QComboBox>("cmbBoxTimeZone"); }
    void chooseZone(const QString& text)
    {
        const int index = zones()->findText(text);
        ASSERT_GE(index, 0) << qPrintable(text);
        zones()->setCurrentIndex(index);
    }
    void check(const char* radio)
    {
        kit::tap(child<QRadioButton>(radio));
        ASSERT_TRUE(child<QRadioButton>(radio)->isChecked());
    }
    QString fields() const
    {
        QStringList texts;
        for (const char* name : kEdits)
            texts.append(child<QLineEdit>(name)->text());
        return texts.join(' ');
    }
    static QString now()
    {
        return QString::fromUtf8(chTime(netGetLocalTime()).Format("%Y-%m-%d %H:%M:%S").GetText());
    }
    QStringList zoneKeys() const
    {
        return {stored(SYSTEM_FILE, "LocalTime", "strTimeName"),
                stored(SYSTEM_FILE, "LocalTime", "strZoneName")};
    }
};

} // namespace

TEST_F(DateTimePage, ShowsItsTextsAndWhatIsStored)
{
    hold();
    openPage();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Date and Time");
    for (const auto& [label, text] :
         {std::pair{"labTime_Zone", "Time Zone"}, std::pair{"labTime_Format", "Time Format"},
          std::pair{"labTime_Server", "Time Server"}, std::pair{"labDate", "Date"},
          std::pair{"labTime", "Time"}})
        EXPECT_EQ(child<QLabel>(label)->text(), text);
    EXPECT_EQ(child<QRadioButton>("radBtnNTP")->text(), "NTP Mode");
    EXPECT_EQ(child<QRadioButton>("radBtnManualMode")->text(), "Manual Mode");
    EXPECT_EQ(zones()->currentText(), "+01:00 Germany, Berlin");
    QComboBox* format = child<QComboBox>("cmbBoxTimeFormat");
    EXPECT_EQ(format->currentText(), "24-hour");
    EXPECT_EQ(format->itemText(1), "12-hour");
    EXPECT_EQ(format->count(), 2);
    EXPECT_TRUE(child<QRadioButton>("radBtnNTP")->isChecked());
    EXPECT_EQ(child<QLineEdit>("editTimeServer")->text(), "ntp.example.org");
    EXPECT_EQ(fields(), "2027 03 02 10 25 07");
    EXPECT_EQ(focusName(), "cmbBoxTimeZone");
    EXPECT_EQ(zones()->focusPolicy(), Qt::StrongFocus);
    kit::shot("date-time-page");
}

TEST_F(DateTimePage, WithNothingStoredTheClockIsSetByHandInTheFirstZone)
{
    writeFile(SYSTEM_FILE, "");
    openPage();
    EXPECT_TRUE(child<QRadioButton>("radBtnManualMode")->isChecked());
    EXPECT_EQ(child<QLineEdit>("editTimeServer")->text(), "");
    EXPECT_EQ(zones()->currentIndex(), 0);
}

TEST_F(DateTimePage, EveryRowOfTheTableIsAnItemInItsOrder)
{
    openPage();
    xmlFile table;
    ASSERT_TRUE(table.LoadFromFile(ZONE_FILE));
    int row = 0;
    for (xmlElement* zone = table.GetRootElement()->GetFirstChildElement(); zone;
         zone = xmlGetNextElement(zone), ++row)
        ASSERT_EQ(zones()->itemText(row), toQString(zone->GetAttributeValue("szTime").GetString()) +
                                              toQString(zone->GetAttributeValue("szZone").GetString()));
    EXPECT_EQ(zones()->count(), row);
    EXPECT_GT(row, 400);
}

TEST_F(DateTimePage, TheTableIsReadBehindTheFirstShowAndNotAgain)
{
    openPage();
    const int count = zones()->count();
    back();
    writeZones("<DSTData><DST szTime=\"+01:00 \" szZone=\"Elsewhere\"/></DSTData>");
    openPage();
    EXPECT_EQ(zones()->count(), count);
}

TEST_F(DateTimePage, ALaterShowFindsTheStoredZoneAgain)
{
    openPage();
    chooseZone("+05:30 India, New Delhi");
    back();
    openPage();
    EXPECT_EQ(zones()->currentText(), "+01:00 Germany, Berlin") << "an edit that was not saved is gone";
    back();
    writeSettings("+05:30 ", "India, New Delhi", "1");
    openPage();
    EXPECT_EQ(zones()->currentText(), "+05:30 India, New Delhi");
}

TEST_F(DateTimePage, TheZonesOfOlderPhonesAreFound)
{
    openPage();
    for (const auto& [time, name, shown] :
         {std::tuple{"GMT+02:00 ", "Helsinki", "+02:00 Finland, Helsinki"},
          std::tuple{"+00:00 ", "London", "+00:00 Britain (UK), London"},
          std::tuple{"+08:00 ", "Beijing", "+08:00 China, Beijing"},
          std::tuple{"-03:30 ", "St. John's", "-03:30 Canada, St. John's"}}) {
        back();
        writeSettings(time, name, "1");
        openPage();
        EXPECT_EQ(zones()->currentText(), shown);
    }
    back();
    writeSettings("GMT+05:45 ", "Atlantis", "1");
    openPage();
    EXPECT_EQ(zones()->currentText(), "+05:45 Nepal, Kathmandu") << "of an unknown one the hours, at least";
    back();
    writeSettings("nowhere", "Atlantis", "1");
    openPage();
    EXPECT_EQ(zones()->currentIndex(), 0);
}

TEST_F(DateTimePage, TheSameNameWithOtherHoursIsAnotherZone)
{
    writeZones("<DSTData><DST szTime=\"+01:00 \" szZone=\"Same\"/><DST szTime=\"+02:00 \" szZone=\"Same\"/>"
               "<DST szTime=\"+02:00 \" szZone=\"Other\"/></DSTData>");
    writeSettings("+02:00 ", "Same", "1");
    openPage();
    EXPECT_EQ(zones()->currentIndex(), 1);
}

TEST_F(DateTimePage, WithoutAGoodTableTheBoxIsEmptyAndSaveWritesNoZone)
{
    const QByteArray before = readFile(SYSTEM_FILE);
    writeZones("<DSTData>");
    openPage();
    EXPECT_EQ(zones()->count(), 0);
    expectSaved();
    EXPECT_EQ(readFile(SYSTEM_FILE), before);
    expectChangesTold({"19 0"});
}

TEST_F(DateTimePage, AMissingTableIsAnEmptyBox)
{
    QFile::remove(hostPath(ZONE_FILE));
    openPage();
    EXPECT_EQ(zones()->count(), 0);
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+01:00 ", "Germany, Berlin"}));
}

TEST_F(DateTimePage, ATableWithAnotherRootHasNoZones)
{
    writeZones("<Other><DST szTime=\"+01:00 \" szZone=\"Same\"/></Other>");
    openPage();
    EXPECT_EQ(zones()->count(), 0);
}

TEST_F(DateTimePage, WhatIsNoZoneInTheTableIsNotCounted)
{
    writeZones("<DSTData><!-- a --><x/><DST szTime=\"+01:00 \" szZone=\"A\"/><x/><DST szTime=\"+02:00 \" "
               "szZone=\"B\"/></DSTData>");
    openPage();
    EXPECT_EQ(zones()->count(), 2);
    chooseZone("+02:00 B");
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+02:00 ", "B"}));
}

TEST_F(DateTimePage, AMissingBoxIsTraced)
{
    openPage();
    delete zones();
    mark();
    ASSERT_TRUE(QMetaObject::invokeMethod(page, "DateandTime_insert_TimeZone"));
    EXPECT_EQ(traces(), QStringList{"dlgDateAndTime point ui->cmbBoxTimeZone is Null!"});
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+01:00 ", "Germany, Berlin"}));
}

TEST_F(DateTimePage, SaveStoresServerFormatAndZoneAndTells)
{
    hold();
    openPage();
    chooseZone("+05:30 India, New Delhi");
    choose("cmbBoxTimeFormat", "1");
    enter("editTimeServer", "192.0.2.1");
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+05:30 ", "India, New Delhi"}));
    expectStored(USER_FILE, "DateTime", "eTimeFormat", "1");
    expectStored(SYSTEM_FILE, "LocalTime", "strPrimaryNTPServer", "192.0.2.1");
    expectStored(SYSTEM_FILE, "LocalTime", "bNTPEnable", "1");
    expectChangesTold({"19 0"});
    EXPECT_EQ(now(), "2027-03-02 14:55:07") << "the same moment in the other zone";
    EXPECT_TRUE(logged("clock").isEmpty()) << "the server sets the clock, not the fields";
}

TEST_F(DateTimePage, AnUnchangedSaveTellsAsWell)
{
    openPage();
    const QByteArray before = readFile(SYSTEM_FILE);
    expectSaved();
    expectChangesTold({"19 0"});
    EXPECT_EQ(readFile(SYSTEM_FILE), before);
}

TEST_F(DateTimePage, ByHandTheClockIsSetToTheFields)
{
    hold();
    openManual();
    enter("editYear", "2028");
    enter("editMonth", "2");
    enter("editDay", "29");
    enter("editHour", "7");
    enter("editMinute", "5");
    enter("editSecond", "9");
    expectSaved();
    EXPECT_EQ(logged("clock"), QStringList{"2028-02-29 07:05:09"});
    EXPECT_EQ(now(), "2028-02-29 07:05:09");
    expectChangesTold({"19 0"});
    expectStored(SYSTEM_FILE, "LocalTime", "bNTPEnable", "0");
    EXPECT_EQ(zoneKeys(), (QStringList{"+01:00 ", "Germany, Berlin"}));
}

TEST_F(DateTimePage, ByHandTheTimeIsThatOfTheZoneThatIsStoredWithIt)
{
    hold();
    openPage();
    chooseZone("+05:30 India, New Delhi");
    check("radBtnManualMode");
    enter("editHour", "12");
    enter("editMinute", "0");
    enter("editSecond", "0");
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+05:30 ", "India, New Delhi"}));
    EXPECT_EQ(now(), "2027-03-02 12:00:00");
}

TEST_F(DateTimePage, TheClockByHandIsCorrectedAndNeverRefused)
{
    openManual();
    enter("editYear", "99");
    enter("editMonth", "0");
    enter("editDay", "");
    enter("editHour", "");
    enter("editMinute", "7");
    enter("editSecond", "");
    enter("editTimeServer", "not a server!");
    expectSaved();
    EXPECT_EQ(logged("clock"), QStringList{"1970-01-01 00:07:00"});
    expectStored(SYSTEM_FILE, "LocalTime", "strPrimaryNTPServer", "not a server!");
}

// Whichever way the focus goes: a finger on another field, or the key that leads on.
TEST_F(DateTimePage, AYearIsLeftAloneWhileItIsTypedAndWholeWhenTheFocusLeavesIt)
{
    openManual();
    QLineEdit* year = child<QLineEdit>("editYear");
    const std::function<void()> ways[] = {[this] { kit::tap(child<QLineEdit>("editMonth")); },
                                          [] { kit::key(Qt::Key_Tab); }};
    for (const auto& leave : ways) {
        for (const char* text : {"", "2", "999", "1000"}) {
            enter("editYear", text);
            ASSERT_TRUE(year->hasFocus());
            EXPECT_EQ(year->text(), text);
            leave();
            kit::settle();
            ASSERT_FALSE(year->hasFocus());
            EXPECT_EQ(year->text(), "1970") << text;
        }
        enter("editYear", "2031");
        leave();
        kit::settle();
        EXPECT_EQ(year->text(), "2031");
    }
}

TEST_F(DateTimePage, AServerThatIsNoneIsRefused)
{
    openPage();
    enter("editTimeServer", "bad_name!");
    expectRefused(SYSTEM_FILE, "Time server is invalid!", "editTimeServer");
    expectChangesTold({});
    EXPECT_EQ(child<QLineEdit>("editTimeServer")->text(), "bad_name!");
}

TEST_F(DateTimePage, AServerThatIsNotThereOrNotChangedIsNotChecked)
{
    openPage();
    enter("editTimeServer", "");
    expectSaved();
    expectStored(SYSTEM_FILE, "LocalTime", "strPrimaryNTPServer", "");
    writeFile(SYSTEM_FILE, "[LocalTime]\nstrPrimaryNTPServer=bad_name!\nbNTPEnable=1\n");
    openPage();
    expectSaved();
}

TEST_F(DateTimePage, ByHandTheZoneCannotBeChosen)
{
    openPage();
    EXPECT_TRUE(zones()->isEnabled());
    check("radBtnManualMode");
    EXPECT_FALSE(zones()->isEnabled());
    check("radBtnNTP");
    EXPECT_TRUE(zones()->isEnabled());
    back();
    writeSettings("+01:00 ", "Germany, Berlin", "0");
    openPage();
    EXPECT_FALSE(zones()->isEnabled());
    EXPECT_EQ(focusName(), "cmbBoxTimeFormat");
}

TEST_F(DateTimePage, APageThatOpensInManualModeBeginsOnTheFormat)
{
    openManual();
    EXPECT_FALSE(zones()->isEnabled());
    EXPECT_EQ(focusName(), "cmbBoxTimeFormat");
    EXPECT_EQ(zones()->currentText(), "+01:00 Germany, Berlin");
}

TEST_F(DateTimePage, EachShowHasThePresentClock)
{
    hold();
    openManual();
    enter("editHour", "3");
    back();
    netWorldSetClock(chTime(2030, 12, 31, 23, 59, 58).GetTime());
    openPage();
    EXPECT_EQ(fields(), "2030 12 31 23 59 58");
}

TEST_F(DateTimePage, AFullDiskIsToldAndLeavesTheClockAsItIs)
{
    openManual();
    enter("editHour", "3");
    enter("editTimeServer", "other.example.org");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(now().left(14), "2027-03-02 10:");
    EXPECT_EQ(child<QLineEdit>("editHour")->text(), "03");
    EXPECT_EQ(child<QLineEdit>("editTimeServer")->text(), "other.example.org");
    expectChangesTold({});
    expectSaved();
    EXPECT_EQ(now().left(14), "2027-03-02 03:");
}

TEST_F(DateTimePage, AZoneThatCannotBeStoredIsTold)
{
    openPage();
    chooseZone("+05:30 India, New Delhi");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(zones()->currentText(), "+05:30 India, New Delhi");
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+05:30 ", "India, New Delhi"}));
}

TEST_F(DateTimePage, WhenTheOtherSettingsCannotBeSavedTheZoneIsNotStoredEither)
{
    openPage();
    chooseZone("+05:30 India, New Delhi");
    choose("cmbBoxTimeFormat", "1");
    kit::BoxAnswers boxes({"ok"});
    {
        FailingCalls disk;
        disk.failAt(0, EIO);
        save();
        EXPECT_TRUE(disk.failed());
    }
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(zoneKeys(), (QStringList{"+01:00 ", "Germany, Berlin"}));
}

TEST_F(DateTimePage, TheServerHasFourInputMethodsAndTheFieldsDigits)
{
    openPage();
    QLineEdit* server = child<QLineEdit>("editTimeServer");
    EXPECT_EQ(server->maxLength(), 99);
    kit::tap(server);
    for (const char* method : {"2aB", "ABC", "abc", "123", "2aB", "ABC"}) {
        EXPECT_EQ(softKeyTitle(1), method);
        softKey(1);
    }
    back();
    openPage();
    EXPECT_EQ(qGetCurrentIME(server), "2aB");
    for (const char* name : kEdits) {
        kit::tap(child<QLineEdit>(name));
        EXPECT_EQ(softKeyTitle(1), "123") << name;
        kit::type("x7");
        EXPECT_EQ(child<QLineEdit>(name)->text(), "7") << name << ": in the place of all that was there";
    }
}

TEST_F(DateTimePage, TheArrowsGoFromFieldToFieldInTheirOrder)
{
    openPage();
    QStringList names{focusName()};
    for (int step = 0; step < 10; ++step) {
        kit::key(Qt::Key_Down);
        names.append(focusName());
    }
    EXPECT_EQ(names.join(' '),
              "cmbBoxTimeZone cmbBoxTimeFormat radBtnNTP editTimeServer radBtnManualMode editYear "
              "editMonth editDay editHour editMinute editSecond");
}

TEST_F(DateTimePage, FieldsAreTypedOnTheDigitPad)
{
    hold();
    openManual();
    for (int step = 0; step < 3; ++step)
        kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "editYear");
    for (const char digit : {'2', '0', '2', '9'})
        kit::padKey(digit);
    kit::key(Qt::Key_Down);
    kit::padKey('1');
    kit::padKey('2');
    kit::key(Qt::Key_Down);
    EXPECT_EQ(fields(), "2029 12 02 10 25 07");
}

TEST_F(DateTimePage, AClockThatCannotBeStoredIsToldAndStaysAsItIs)
{
    openManual();
    enter("editYear", "2028");
    expectFailedSave(SYSTEM_FILE);
    EXPECT_EQ(now().left(14), "2027-03-02 10:");
    EXPECT_EQ(child<QLineEdit>("editYear")->text(), "2028");
    expectChangesTold({});
    expectSaved();
    EXPECT_EQ(now().left(14), "2028-03-02 10:");
    expectChangesTold({"19 0"});
}

TEST_F(DateTimePage, AYearOfTheClockThatCannotBeTypedStaysAsItIs)
{
    for (const int year : {2086, 2039, 1969}) {
        hold();
        netWorldSetClock(chTime(year, 3, 2, 10, 25, 7).GetTime());
        openManual();
        EXPECT_EQ(fields(), QString("%1 03 02 10 25 07").arg(year));
        kit::tap(child<QLineEdit>("editYear"));
        kit::key(Qt::Key_Down);
        EXPECT_EQ(child<QLineEdit>("editYear")->text(), QString::number(year)) << "left as it was";
        expectSaved();
        EXPECT_EQ(now(), QString("%1-03-02 10:25:07").arg(year));
    }
    openManual();
    child<QLineEdit>("editYear")->setText("2086");
    EXPECT_EQ(child<QLineEdit>("editYear")->text(), "1970") << "of another clock";
}

TEST_F(DateTimePage, ATableOfZonesThatIsFarTooLargeIsNotReadAndTraced)
{
    const QByteArray row = "<DST szTime=\"+01:00 \" szZone=\"Germany, Berlin\"/>";
    writeZones("<DSTData>" + row + QByteArray(XML_TABLE_LIMIT, ' ') + "</DSTData>");
    mark();
    openPage();
    EXPECT_EQ(zones()->count(), 0);
    EXPECT_EQ(traces().filter(ZONE_FILE " is larger than").size(), 1);
    expectSaved();
    EXPECT_EQ(zoneKeys(), (QStringList{"+01:00 ", "Germany, Berlin"}));
}
