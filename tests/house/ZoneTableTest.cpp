// The table of time zones that the image brings along.
#include "support/file/deviceRoot.h"
#include "support/xml/xmlFile.h"
#include "tests/house/sourceTree.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTimeZone>
#include <cstring>
#include <gtest/gtest.h>

namespace {

const QString kData = "/usr/share/zoneinfo/";
const QString kNames = sourcePath("tools/zoneTable/names.tsv");

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

struct Zone
{
    QString time;
    QString name;
    QByteArray rule;
};

QList<Zone> zones()
{
    xmlFile table;
    deviceSetRoot(imagePath("").toUtf8().constData());
    EXPECT_TRUE(table.LoadFromFile("/phone/resource/AutoDST.xml"));
    EXPECT_STREQ(table.GetRootElement()->GetName(), "DSTData");
    QList<Zone> found;
    for (xmlElement* row = table.GetRootElement()->GetFirstChildElement(); row;
         row = xmlGetNextElement(row)) {
        EXPECT_STREQ(row->GetName(), "DST");
        found.append({row->GetAttributeValue("szTime").GetString().GetText(),
                      row->GetAttributeValue("szZone").GetString().GetText(),
                      row->GetAttributeValue("szRule").GetString().GetText()});
    }
    return found;
}

int secondsOf(const QString& time)
{
    const int seconds = (time.mid(1, 2).toInt() * 60 + time.mid(4, 2).toInt()) * 60;
    return time[0] == '-' ? -seconds : seconds;
}

void writeData(const QString& folder, const QByteArray& version, const QByteArray& countries,
               const QByteArray& zones)
{
    const std::pair<const char*, QByteArray> files[] = {
        {"tzdata.zi", version + '\n'}, {"iso3166.tab", countries}, {"zone.tab", zones}};
    for (const auto& [name, text] : files) {
        QFile file(folder + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(text), text.size());
    }
}

int makeTable(const QString& data, const QString& names, const QString& target, QByteArray* errors = nullptr)
{
    QProcess tool;
    tool.start(kit::program("hxZoneTable"), {data, names, target});
    EXPECT_TRUE(tool.waitForFinished());
    if (errors)
        *errors = tool.readAllStandardError();
    return tool.exitCode();
}

} // namespace

TEST(ZoneTable, EveryZoneOfEveryCountryIsThereOnce)
{
    QSet<QByteArray> rules;
    QSet<QString> shown;
    for (const Zone& zone : zones()) {
        EXPECT_FALSE(rules.contains(zone.rule)) << zone.rule.constData();
        EXPECT_FALSE(shown.contains(zone.time + zone.name)) << qPrintable(zone.time + zone.name);
        rules.insert(zone.rule);
        shown.insert(zone.time + zone.name);
    }
    int rows = 0;
    for (const QByteArray& line : contentOf(kData + "zone.tab").split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        EXPECT_TRUE(rules.contains(line.split('\t')[2])) << line.constData();
        ++rows;
    }
    EXPECT_GT(rows, 400);
    EXPECT_TRUE(rules.contains("Etc/UTC"));
    EXPECT_EQ(rules.size(), rows + 1);
}

TEST(ZoneTable, RowsBeginWithTheHoursOfStandardTimeAndStandInTheirOrder)
{
    int last = -24 * 3600;
    for (const Zone& zone : zones()) {
        ASSERT_EQ(zone.time.size(), 7) << qPrintable(zone.time);
        EXPECT_TRUE(zone.time[0] == '+' || zone.time[0] == '-');
        EXPECT_EQ(zone.time[3], QChar(':'));
        EXPECT_EQ(zone.time[6], QChar(' '));
        const QTimeZone rules(zone.rule);
        ASSERT_TRUE(rules.isValid()) << zone.rule.constData();
        const int seconds = secondsOf(zone.time);
        EXPECT_GE(seconds, last) << qPrintable(zone.name);
        last = seconds;
        // In the winter of either half of the world.
        QList<int> offsets;
        for (const int month : {1, 7})
            offsets.append(rules.offsetFromUtc(QDateTime(QDate(2025, month, 1), QTime(12, 0), Qt::UTC)));
        EXPECT_EQ(seconds, qMin(offsets[0], offsets[1])) << qPrintable(zone.name);
    }
}

TEST(ZoneTable, NamesAreThoseThatPeopleLookFor)
{
    QSet<QString> shown;
    for (const Zone& zone : zones())
        shown.insert(zone.time + zone.name);
    for (const char* text :
         {"+01:00 Germany, Berlin", "+00:00 Britain (UK), London", "+00:00 Ireland, Dublin",
          "-05:00 United States, New York", "-07:00 United States, Phoenix",
          "-06:00 United States, Tell City (Indiana)", "+08:00 China, Beijing", "+05:30 India, New Delhi",
          "+08:00 Singapore", "+05:45 Nepal, Kathmandu", "-03:30 Canada, St. John's",
          "+01:00 Morocco, Casablanca", "+10:00 Australia, Sydney", "+12:45 New Zealand, Chatham",
          "+00:00 UTC", "-03:00 Argentina, Buenos Aires", "+11:00 Norfolk Island"})
        EXPECT_TRUE(shown.contains(QString::fromUtf8(text))) << text;
}

TEST(ZoneTable, TheSameDataMakeTheSameTable)
{
    QTemporaryDir folder;
    ASSERT_EQ(makeTable(kData, kNames, folder.filePath("AutoDST.xml")), 0);
    EXPECT_EQ(contentOf(folder.filePath("AutoDST.xml")), contentOf(imagePath("/phone/resource/AutoDST.xml")));
}

TEST(ZoneTable, NamesStandInTheOrderOfTheirLettersWhateverTheirCaseAndAccents)
{
    QTemporaryDir folder;
    writeData(folder.path(), "# version 2025b", "ZM\tZambia\nBG\tbulgaria\nAX\tÅland Islands\n",
              "ZM\t-1525+02817\tAfrica/Lusaka\nBG\t+4241+02319\tEurope/Sofia\n"
              "AX\t+6006+01957\tEurope/Mariehamn\n");
    const QString target = folder.filePath("AutoDST.xml");
    ASSERT_EQ(makeTable(folder.path(), kNames, target), 0);
    const QByteArray table = contentOf(target);
    EXPECT_TRUE(table.contains("<!-- Time-zone data 2025b -->")) << table.constData();
    int last = 0;
    for (const char* name : {"UTC", "Åland Islands, Mariehamn", "bulgaria, Sofia", "Zambia, Lusaka"}) {
        const int place = int(table.indexOf(QByteArray("szZone=\"") + name + '"'));
        EXPECT_GT(place, last) << name << '\n' << table.constData();
        last = place;
    }
}

TEST(ZoneTable, DataThatDoNotSayTheirVersionAreTold)
{
    QTemporaryDir folder;
    writeData(folder.path(), "# no number", "", "");
    QByteArray errors;
    EXPECT_EQ(makeTable(folder.path(), kNames, folder.filePath("AutoDST.xml"), &errors), 1);
    EXPECT_TRUE(errors.contains("does not say which version it is")) << errors.constData();
}

TEST(ZoneTable, DataThatAreMissingOrBrokenAreTold)
{
    QTemporaryDir folder;
    const QString target = folder.filePath("AutoDST.xml");
    QByteArray errors;
    EXPECT_EQ(makeTable(folder.path(), kNames, target, &errors), 1);
    EXPECT_TRUE(errors.contains("tzdata.zi")) << errors.constData();
    const QString data = folder.filePath("data");
    ASSERT_TRUE(QDir().mkpath(data));
    for (const char* file : {"tzdata.zi", "iso3166.tab"})
        ASSERT_TRUE(QFile::copy(kData + file, data + '/' + file));
    EXPECT_EQ(makeTable(data, kNames, target, &errors), 1);
    EXPECT_TRUE(errors.contains("zone.tab")) << errors.constData();
    for (const auto& [row, why] :
         {std::pair{"DE\t+5230+01322\tEurope/Nowhere\n", "no rules for the zone Europe/Nowhere"},
          std::pair{"DE\tEurope/Berlin\n", "too few columns"}}) {
        QFile zoneTab(data + "/zone.tab");
        ASSERT_TRUE(zoneTab.open(QIODevice::WriteOnly));
        zoneTab.write(row);
        zoneTab.close();
        EXPECT_EQ(makeTable(data, kNames, target, &errors), 1);
        EXPECT_TRUE(errors.contains(why)) << errors.constData();
    }
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_EQ(makeTable(kData, folder.filePath("no.tsv"), target, &errors), 1);
    EXPECT_EQ(makeTable(kData, kNames, folder.filePath("no/AutoDST.xml"), &errors), 1);
    EXPECT_TRUE(errors.contains("cannot write")) << errors.constData();
}

TEST(ZoneTable, TheFactorysZoneIsOneOfThem)
{
    const QByteArray settings = contentOf(sourcePath("rootfs/factory/config/system.ini"));
    int fitting = 0;
    for (const Zone& zone : zones())
        fitting += settings.contains(
            ("strTimeName=\"" + zone.time + "\"\nstrZoneName=" + zone.name + "\n").toUtf8());
    EXPECT_EQ(fitting, 1);
}
