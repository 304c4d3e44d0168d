#include "tests/applets_weather/weatherStand.h"
#include "applets/appletPages.h"
#include "frame/configFiles.h"
#include "frame/moduleEntries.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/picture.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QLabel>

WeatherStand::WeatherStand()
{
    appletPages();
    hostSetModule(settingEntries());
    server.onRequest = [this](QTcpSocket& socket, const QByteArray& path) {
        if (isSilent)
            return;
        const bool isPicture = path.endsWith(".gif");
        socket.write(httpServer::answer(answers.value(path, isPicture ? gif(path[1]) : publicAnswer())));
    };
    replaceFirmwareFile("/phone/resource/WeatherSource.xml",
                        "<WeatherSource><source title=\"Google\" address=\"" + server.url("/w?city=#city") +
                            "\"/></WeatherSource>");
    writeFile(USER_INI, "[Weather]\nstrDefaultCity=London\nstrSource=Google\nnUnit=0\nbDesktop=0\n");
    writeFile("/tmp/.keep", "");
}

QByteArray WeatherStand::publicAnswer()
{
    return "<xml_api_reply><weather><forecast_information><city data=\"x\"/><forecast_date "
           "data=\"2026-11-21\"/>"
           "<unit_system data=\"SI\"/></forecast_information>"
           "<now><condition data=\"Rain\"/><temp_f data=\"46\"/><temp_c data=\"8\"/><icon "
           "data=\"/t.gif\"/></now>"
           "<day><day_of_week data=\"Sat\"/><low data=\"4\"/><high data=\"11\"/><icon data=\"/t2.gif\"/>"
           "<condition data=\"Light rain\"/></day>"
           "<day><day_of_week data=\"Sun\"/><low data=\"6\"/><high data=\"12\"/><icon data=\"/m.gif\"/>"
           "<condition data=\"Cloudy\"/></day>"
           "<day><day_of_week data=\"Mon\"/><low data=\"-3\"/><high data=\"9\"/><icon data=\"/a.gif\"/>"
           "<condition data=\"Sunny\"/></day></weather></xml_api_reply>";
}

QByteArray WeatherStand::signageAnswer()
{
    return "<norvane><ndeck><result><success>ok</success></result><weather><forecast_information>"
           "<forecast_date>2026-12-31</forecast_date><unit_system>US</unit_system></forecast_information>"
           "<current_conditions><condition>Fog &amp; mist</condition><temp_f>40</temp_f><temp_c>4</temp_c>"
           "<icon>http://127.0.0.1:9/t.gif</icon></current_conditions>"
           "<forecast_conditions><day_of_week>Thu</day_of_week><low>31</low><high>50</high>"
           "</forecast_conditions>"
           "<forecast_conditions><day_of_week>Fri</day_of_week><low>33</low><high>51</high>"
           "<icon>http://127.0.0.1:9/m.gif</icon><condition>Sunny</condition></forecast_conditions>"
           "<forecast_conditions><day_of_week>Sat</day_of_week><low>-4</low><high>52</high>"
           "<icon>http://127.0.0.1:9/a.gif</icon><condition>Storm</condition></forecast_conditions>"
           "</weather></ndeck></norvane>";
}

// The pictures are told apart by their sizes.
QByteArray WeatherStand::gif(char name)
{
    const int side = name == 't' ? 11 : name == 'm' ? 12 : 13;
    return kit::gifOfScreen(QSize(side, side));
}

void WeatherStand::config(const char* key, const char* value)
{
    EXPECT_EQ(nuxSetRegistryString(USER_INI, "Weather", key, value), 1);
}

void WeatherStand::waitDone()
{
    EXPECT_TRUE(kit::waitUntil([] { return taskPendingCount() == 0 && picturePending() == 0; }, 20000));
    kit::settle();
}

int WeatherStand::asked() const
{
    int count = 0;
    for (const QByteArray& path : server.paths)
        count += !path.endsWith(".gif");
    return count;
}

QString WeatherStand::label(const char* name) const
{
    return child<QLabel>(name)->text();
}

int WeatherStand::pictureSide(const char* name) const
{
    return child<QLabel>(name)->pixmap(Qt::ReturnByValue).width();
}
