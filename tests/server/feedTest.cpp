#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/server/signServer.h"
#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QTcpServer>

namespace {

const char* const Weather =
    "<weather><city name='New York' unit='US'><now condition='Sunny' temperature='50' icon='sunny'/>"
    "<day condition='Sunny' low='41' high='59' icon='sunny'/><day condition='Rain' low='43' high='55' "
    "icon='rain'/>"
    "<day condition='Fog' low='44' high='56' icon='fog'/></city>"
    "<city name='Bern'><now condition='Schnee &amp; Eis' temperature='-1' icon='snow'/>"
    "<day condition='Snow' low='-4' high='1' icon='snow'/><day condition='Fog' low='-2' high='3' icon='fog'/>"
    "<day condition='Sunny' low='0' high='5' icon='sunny'/></city>"
    "<city name='Short'><now condition='Sunny' temperature='5' icon='sunny'/><day low='1' high='2'/>"
    "<day low='1' high='2'/></city></weather>";

const char* const Stock =
    "<stocks><stock code='HBR' company='Harbour' previous='40' open='40.5' low='39' high='42' price='41' "
    "market_cap='8B' volume='1M'/>"
    "<stock code='DOWN' company='Down' previous='50' open='49' low='47' high='49.5' price='48' "
    "market_cap='1B' "
    "volume='2M'/>"
    "<stock code='LIVE' company='Live' previous='100' open='100' low='99' high='101' price='100' "
    "market_cap='1B' volume='2M' swing='5'/></stocks>";

class Feed : public SignServerTest
{
protected:
    void SetUp() override
    {
        write("weather.xml", Weather);
        write("stock.xml", Stock);
        start();
        enroll();
    }
    Answer weather(const QByteArray& city) const
    {
        return get("/service/weather.htm?&serverKey=key&hardwareKey=aabbcc&version=2.0&language=en&city=" +
                   city);
    }
    Answer stock(const QByteArray& code) const
    {
        return get("/service/stock.htm?&serverKey=key&hardwareKey=aabbcc&version=2.0&language=en&code=" +
                   code);
    }
};

// The elements below "weather", one text each: "name: child=value ...". Values are attributes or texts.
QList<QByteArray> sectionsOf(const QByteArray& reply)
{
    QList<QByteArray> sections;
    QXmlStreamReader xml(reply);
    while (!xml.atEnd() && xml.name() != QLatin1String("weather"))
        xml.readNext();
    while (xml.readNextStartElement()) {
        QByteArray section = xml.name().toUtf8() + ":";
        while (xml.readNextStartElement()) {
            const QByteArray name = xml.name().toUtf8();
            const QByteArray data = xml.attributes().value("data").toUtf8();
            const QByteArray text = xml.readElementText().toUtf8();
            section += " " + name + "=" + data + text;
        }
        sections.append(section);
    }
    return sections;
}

QByteArray dayName(int fromToday)
{
    return QLocale::c()
        .dayName(QDate::currentDate().addDays(fromToday).dayOfWeek(), QLocale::ShortFormat)
        .toUtf8();
}

QByteArray today()
{
    return QDate::currentDate().toString("yyyy-MM-dd").toUtf8();
}

TEST_F(Feed, WeatherForAPhoneIsTextInElementsByPosition)
{
    const Answer answer = weather("Bern");
    const QByteArray root = "http://sign.test:80/ig/images/weather/";
    EXPECT_EQ(sectionsOf(answer.body),
              (QList<QByteArray>{
                  "forecast_information: forecast_date=" + today() + " unit_system=SI",
                  "current_conditions: condition=Schnee & Eis temp_f=30 temp_c=-1 icon=" + root + "snow.gif",
                  "forecast_conditions: day_of_week=" + dayName(0) + " low=-4 high=1 icon=" + root +
                      "snow.gif condition=Snow",
                  "forecast_conditions: day_of_week=" + dayName(1) + " low=-2 high=3 icon=" + root +
                      "fog.gif condition=Fog",
                  "forecast_conditions: day_of_week=" + dayName(2) + " low=0 high=5 icon=" + root +
                      "sunny.gif condition=Sunny"}));
    EXPECT_TRUE(isXml(answer.body));
    EXPECT_TRUE(answer.body.contains("<norvane>"));
}

TEST_F(Feed, PublicWeatherIsAttributesWithPicturesBelowTheFeedsRoot)
{
    const Answer answer = get("/ig/api?weather=New York");
    const QList<QByteArray> sections = sectionsOf(answer.body);
    ASSERT_EQ(sections.size(), 5);
    EXPECT_EQ(sections[0], "forecast_information: forecast_date=" + today() + " unit_system=US");
    EXPECT_EQ(sections[1],
              "current_conditions: condition=Sunny temp_f=50 temp_c=10 icon=/ig/images/weather/sunny.gif");
    EXPECT_EQ(sections[2], "forecast_conditions: day_of_week=" + dayName(0) +
                               " low=41 high=59 icon=/ig/images/weather/sunny.gif condition=Sunny");
    EXPECT_TRUE(answer.body.contains("<xml_api_reply version=\"1\"><weather><forecast_information>"));
}

TEST_F(Feed, ACityIsFoundInAnyCase)
{
    EXPECT_EQ(sectionsOf(weather("new york").body).size(), 5);
    EXPECT_EQ(sectionsOf(weather("NEW%20YORK").body).size(), 5);
    EXPECT_EQ(sectionsOf(weather("%20New%20%20York%20").body).size(), 5) << "whatever blanks were typed";
}

TEST_F(Feed, AnUnknownCityIsToldInEachFormat)
{
    EXPECT_EQ(resultOf(weather("Atlantis").body), "get data error");
    const QByteArray open = get("/ig/api?weather=Atlantis").body;
    EXPECT_TRUE(open.contains("<weather><problem_cause data=\"\"/></weather>"));
}

TEST_F(Feed, ACityWithTooFewDaysIsUnknown)
{
    EXPECT_EQ(resultOf(weather("Short").body), "get data error");
}

TEST_F(Feed, WeatherAndStockAreForRegisteredDisplays)
{
    EXPECT_EQ(resultOf(get("/service/weather.htm?&serverKey=no&hardwareKey=aabbcc&city=Bern").body),
              "unknown server key");
    EXPECT_EQ(resultOf(get("/service/stock.htm?&serverKey=key&hardwareKey=no&code=HBR").body),
              "this display is not registered");
}

TEST_F(Feed, WeatherPicturesComeFromTheIcons)
{
    write("icons/sunny.gif", "GIF89a");
    const Answer answer = get("/ig/images/weather/sunny.gif");
    EXPECT_EQ(answer.body, "GIF89a");
    EXPECT_EQ(answer.fields["content-type"], "image/gif");
    EXPECT_EQ(get("/ig/images/weather/../../server.ini").status, 404);
    EXPECT_EQ(get("/ig/images/weather/%2e%2e%2fserver.ini").status, 404);
}

TEST_F(Feed, StockForAPhoneIsRowsOfTitleAndValue)
{
    const QList<QByteArray> rows = rowsOf(stock("HBR").body, "Menu");
    EXPECT_EQ(rows.mid(0, 11),
              (QList<QByteArray>{"title=Company Name value=Harbour", "title=Last Trade value=41.00",
                                 "title=Change value=+1.00", "title=Change in Percent value=+2.50%",
                                 "title=Open value=40.50", "title=Previous Close value=40.00",
                                 "title=Day's High value=42.00", "title=Day's Low value=39.00",
                                 "title=Bid value=40.98", "title=Ask value=41.02", "title=Volume value=1M"}));
    ASSERT_EQ(rows.size(), 14);
    EXPECT_TRUE(rows[11].startsWith("title=Last Trade Date value="));
    EXPECT_TRUE(rows[12].startsWith("title=Last Trade Time value="));
    EXPECT_EQ(rows[13], "title=Market Cap value=8B");
}

TEST_F(Feed, PublicStockIsOneElementAValue)
{
    const QByteArray reply = get("/ig/api?stock=DOWN").body;
    EXPECT_TRUE(reply.contains("<xml_api_reply version=\"1\"><finance><company data=\"Down\"/>"));
    EXPECT_TRUE(reply.contains("<change data=\"-2.00\"/><perc_change data=\"-4.00\"/>"));
    EXPECT_TRUE(reply.contains("<y_close data=\"50.00\"/>"));
    const QByteArray day = QDateTime::currentDateTimeUtc().toString("yyyyMMdd").toUtf8();
    EXPECT_TRUE(reply.contains("<current_date_utc data=\"" + day + "\"/>"));
}

TEST_F(Feed, AnUnknownStockHasNothingToTell)
{
    for (const QByteArray& row : rowsOf(stock("hbr").body, "Menu"))
        EXPECT_TRUE(row.endsWith(" value=N/A")) << row.constData();
    EXPECT_EQ(rowsOf(stock("hbr").body, "Menu").size(), 14);
    EXPECT_TRUE(get("/ig/api?stock=hbr").body.endsWith("<finance/></xml_api_reply>\n") ||
                get("/ig/api?stock=hbr").body.endsWith("<finance/></xml_api_reply>"));
}

TEST_F(Feed, ASwingingPriceStaysWithinItsSwingAndBetweenLowAndHigh)
{
    const QList<QByteArray> rows = rowsOf(stock("LIVE").body, "Menu");
    const auto number = [&](int i) { return rows[i].mid(rows[i].lastIndexOf('=') + 1).toDouble(); };
    EXPECT_NEAR(number(1), 100, 5.01);
    EXPECT_GE(number(6), number(1));
    EXPECT_LE(number(7), number(1));
}

TEST_F(Feed, AnEditCountsAtTheNextRequest)
{
    write("weather.xml", QByteArray(Weather).replace("Bern", "Basel"));
    EXPECT_EQ(sectionsOf(weather("Basel").body).size(), 5);
    EXPECT_EQ(resultOf(weather("Bern").body), "get data error");
}

TEST_F(Feed, WithoutItsFileKnowsNothing)
{
    QFile::remove(path("weather.xml"));
    QFile::remove(path("stock.xml"));
    EXPECT_EQ(resultOf(weather("Bern").body), "get data error");
    EXPECT_TRUE(rowsOf(stock("HBR").body, "Menu")[0].endsWith("N/A"));
}

TEST_F(Feed, AnEmptyCityIsAnUnknownCityAndNoStock)
{
    EXPECT_TRUE(get("/ig/api?weather=").body.contains("<weather><problem_cause data=\"\"/></weather>"));
    EXPECT_TRUE(get("/ig/api?stock=").body.contains("<finance/>"));
}

TEST_F(Feed, ACityHasOtherNamesToo)
{
    write("weather.xml",
          "<weather><city name='Munich' also='Muenchen, M\xc3\xbcnchen' latitude='48' longitude='11' "
          "means='0 1 5 9 14 17 19 19 14 10 4 1' spread='9' wet='9 9 9 9 9 9 9 9 9 9 9 9'/>"
          "<city name='Eleven' means='0 1 5 9 14 17 19 19 14 10 4' wet='9 9 9 9 9 9 9 9 9 9 9 9'/>"
          "</weather>");
    EXPECT_EQ(sectionsOf(weather("m\xc3\xbcnchen").body).size(), 5);
    EXPECT_EQ(sectionsOf(weather("muenchen").body), sectionsOf(weather("Munich").body));
    EXPECT_EQ(resultOf(weather("M").body), "get data error");
    EXPECT_EQ(resultOf(weather("Eleven").body), "get data error") << "of eleven months nothing follows";
}

TEST_F(Feed, AGivenClockGivesTheDay)
{
    stop();
    write("stock.xml",
          "<stocks><stock code='M' company='Moves' base='100' swing='2' shares='1M' trades='1M'/></stocks>");
    start({"--clock", "2026-02-27T12:30:00Z"});
    EXPECT_TRUE(sectionsOf(weather("Bern").body)[0].contains("forecast_date=2026-02-27"));
    EXPECT_TRUE(sectionsOf(weather("Bern").body)[3].contains("day_of_week=Sat"));
    const QList<QByteArray> rows = rowsOf(stock("M").body, "Menu");
    EXPECT_EQ(rows.value(11), "title=Last Trade Date value=2/27/2026");
    EXPECT_EQ(rows.value(12), "title=Last Trade Time value=12:30pm");
    EXPECT_TRUE(get("/ig/api?stock=M").body.contains("<current_date_utc data=\"20260227\"/>"));
}

TEST_F(Feed, HasASecondAddressForThePublicFeedsAlone)
{
    stop();
    const int port = int(kit::freePort());
    start({"--feeds", QString::number(port)});
    ASSERT_TRUE(kit::waits([&] { return log().contains("feeds: at http://127.0.0.1:"); }, 20000));
    m_port = port;
    EXPECT_EQ(sectionsOf(get("/ig/api?weather=Bern").body).size(), 5);
    EXPECT_EQ(get("/ig/images/weather/no.gif").status, 404);
    for (const char* target :
         {"/status", "/faults", "/service/getschedule.htm?serverKey=key&hardwareKey=aabbcc"})
        EXPECT_EQ(get(target).status, 404) << target;
    EXPECT_EQ(enroll("Lobby").status, 404);
}

TEST_F(Feed, TakesItsSecondAddressWhenItBecomesFree)
{
    stop();
    QTcpServer stranger;
    ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
    const int port = stranger.serverPort();
    start({"--feeds", QString::number(port)});
    EXPECT_EQ(sectionsOf(weather("Bern").body).size(), 5) << "the rest does not wait";
    ASSERT_TRUE(kit::waits([&] { return log().contains("is another program's; waiting for it"); }, 20000));
    stranger.close();
    ASSERT_TRUE(kit::waits([&] { return log().contains("feeds: at http://127.0.0.1:"); }, 20000));
    EXPECT_EQ(log().count("waiting for it"), 1);
    m_port = port;
    EXPECT_EQ(sectionsOf(get("/ig/api?weather=Bern").body).size(), 5);
}

TEST_F(Feed, CanBeAllThatIsServed)
{
    stop();
    const int port = int(kit::freePort());
    start({"--port", "none", "--feeds", QString::number(port)});
    ASSERT_EQ(m_port, port);
    ASSERT_TRUE(kit::waits([&] { return log().contains("feeds: at http://127.0.0.1:"); }, 20000));
    EXPECT_EQ(sectionsOf(get("/ig/api?weather=Bern").body).size(), 5);
    EXPECT_EQ(enroll("Lobby").status, 404);
}

TEST_F(Feed, EndsWhileItWaitsForItsSecondAddress)
{
    stop();
    QTcpServer stranger;
    ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost));
    start({"--feeds", QString::number(stranger.serverPort())});
    stop();
}

} // namespace
