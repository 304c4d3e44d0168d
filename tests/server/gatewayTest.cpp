// The gateway to JSON services, against an imitation of one, with the description that is shipped.
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/server/jsonService.h"
#include "tests/server/signServer.h"
#include <QElapsedTimer>
#include <QFile>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <thread>
#include <vector>

namespace {

const char* const Place = R"({"results":[{"name":"Anywhere","latitude":51.5085,"longitude":-0.1257}]})";
const char* const Forecast =
    R"({"current":{"temperature":8.4,"code":61},"daily":{"date":["2026-11-21","2026-11-22","2026-11-23"],)"
    R"("low":[3.6,-0.4,5],"high":[11.2,9.5,"12"],"code":[61,3,1234]}})";
const char* const Quote =
    R"({"quote":{"name":"Harbour & Sons","price":146.9,"previous_close":145.55,"open":146,"low":"144.1",)"
    R"("high":148.6,"bid":null,"volume":1816000,"market_cap":"12.4B","time":1795269900}})";

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class Gateway : public SignServerTest
{
protected:
    Gateway() : m_service([this](const QByteArray& target) { return answerTo(target); }) {}
    ~Gateway() override
    {
        release();
        stop();
    }

    // Changes of the shipped description: what stands there, and what instead.
    void startGateway(const QList<QPair<QByteArray, QByteArray>>& changes = {})
    {
        QByteArray plan = readFile(HX_SOURCE_DIR "/tools/signDemo/content/gateway.ini");
        for (const auto& [from, to] : changes) {
            EXPECT_TRUE(plan.contains(from)) << from.constData();
            plan.replace(from, to);
        }
        write("gateway.ini", plan);
        start({"--weather", m_service.url(), "--stock", m_service.url() + "/", "--threads", "2", "--clock",
               "2026-11-21T12:00:00Z"});
        enroll();
    }
    QByteArray answerTo(const QByteArray& target)
    {
        std::unique_lock lock(m_lock);
        m_released.wait(lock, [this] { return !m_isHeld; });
        if (!m_instead.isNull())
            return m_instead;
        return JsonService::answer(target.startsWith("/v1/search")     ? m_place
                                   : target.startsWith("/v1/forecast") ? m_forecast
                                                                       : m_quote);
    }
    // What every request is answered from now on; null for the usual.
    void answerAll(const QByteArray& bytes)
    {
        const std::lock_guard guard(m_lock);
        m_instead = bytes;
    }
    void hold()
    {
        const std::lock_guard guard(m_lock);
        m_isHeld = true;
    }
    void release()
    {
        const std::lock_guard guard(m_lock);
        m_isHeld = false;
        m_released.notify_all();
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
    Answer publicStock(const QByteArray& code) const { return get("/ig/api?stock=" + code); }

    QByteArray m_place = Place, m_forecast = Forecast, m_quote = Quote;

private:
    std::mutex m_lock;
    std::condition_variable m_released;
    bool m_isHeld = false;
    QByteArray m_instead;

protected:
    JsonService m_service;
};

} // namespace

TEST_F(Gateway, TellsAForecastInBothForms)
{
    startGateway();
    const QByteArray open = get("/ig/api?weather=London").body;
    EXPECT_TRUE(open.contains("<forecast_date data=\"2026-11-21\"/><unit_system data=\"SI\"/>"));
    EXPECT_TRUE(open.contains("<condition data=\"Light rain\"/><temp_f data=\"46\"/><temp_c data=\"8\"/>"
                              "<icon data=\"/ig/images/weather/rain.gif\"/>"))
        << open.constData();
    EXPECT_TRUE(open.contains("<day_of_week data=\"Sat\"/><low data=\"4\"/><high data=\"11\"/>"));
    EXPECT_TRUE(open.contains("<day_of_week data=\"Sun\"/><low data=\"0\"/><high data=\"10\"/>"
                              "<icon data=\"/ig/images/weather/cloudy.gif\"/><condition data=\"Cloudy\"/>"));
    EXPECT_TRUE(open.contains("<day_of_week data=\"Mon\"/><low data=\"5\"/><high data=\"12\"/>"
                              "<icon data=\"/ig/images/weather/cloudy.gif\"/>"))
        << "a code that is not described";
    const QByteArray phone = weather("London").body;
    EXPECT_TRUE(phone.contains("<temp_c>8</temp_c>") && phone.contains("<low>4</low>")) << phone.constData();
    EXPECT_TRUE(phone.contains("<icon>http://sign.test:80/ig/images/weather/rain.gif</icon>"));
    EXPECT_EQ(m_service.targets(),
              (QByteArrayList{"/v1/search?name=london&count=1",
                              "/v1/forecast?latitude=51.5085&longitude=-0.1257&days=3&units=metric"}));
}

TEST_F(Gateway, TellsAQuoteInBothForms)
{
    startGateway();
    const QByteArray open = publicStock("HRBR").body;
    EXPECT_TRUE(open.contains("<company data=\"Harbour &amp; Sons\"/><last data=\"146.90\"/><high "
                              "data=\"148.60\"/><low data=\"144.10\"/><volume data=\"1.82M\"/><market_cap "
                              "data=\"12.4B\"/><open data=\"146.00\"/><y_close data=\"145.55\"/><change "
                              "data=\"+1.35\"/><perc_change data=\"0.93\"/><bid data=\"N/A\"/><ask "
                              "data=\"N/A\"/><current_date_utc data=\"20261121\"/>"))
        << open.constData();
    const QList<QByteArray> rows = rowsOf(stock("HRBR").body, "Menu");
    EXPECT_EQ(rows.value(0), "title=Company Name value=Harbour & Sons");
    EXPECT_EQ(rows.value(3), "title=Change in Percent value=+0.93%");
    EXPECT_EQ(rows.value(8), "title=Bid value=N/A");
    EXPECT_EQ(rows.value(12), "title=Last Trade Time value=2:05pm");
    EXPECT_TRUE(publicStock("").body.contains("<finance/>"));
    EXPECT_EQ(m_service.targets(), QByteArrayList{"/v1/quote?symbol=HRBR"});
}

TEST_F(Gateway, LeavesOutWhatAQuoteDoesNotSay)
{
    m_quote = R"({"quote":{"price":"7"}})";
    startGateway();
    const QList<QByteArray> rows = rowsOf(stock("HRBR").body, "Menu");
    EXPECT_EQ(rows.value(0), "title=Company Name value=HRBR");
    EXPECT_EQ(rows.value(1), "title=Last Trade value=7.00");
    for (const int row : {2, 3, 4, 5, 6, 7, 8, 9, 10, 13})
        EXPECT_TRUE(rows.value(row).endsWith(" value=N/A")) << rows.value(row).constData();
}

TEST_F(Gateway, AnotherServiceIsAnotherDescription)
{
    m_forecast =
        R"([{"t":50,"sky":"wet"},{"l":40,"h":60,"sky":"wet"},{"l":41,"h":61,"sky":"x"},{"l":42,"h":62}])";
    startGateway({{"unit=SI", "unit=US"},
                  {"current.temperature", "0.t"},
                  {"current.code", "0.sky"},
                  {"date=daily.date.0\n", ""},
                  {"daily.low.{day}", "{day}.l"},
                  {"daily.high.{day}", "{day}.h"},
                  {"daily.code.{day}", "{day}.sky"},
                  {"*=Cloudy,cloudy", "wet=It is wet,rain\n*=Who knows,fog"}});
    // The first of the list is the present.
    m_forecast.replace(R"([{"t":50,"sky":"wet"},)", R"([{"t":50,"l":40,"h":60,"sky":"wet"},)");
    const QByteArray open = get("/ig/api?weather=Oslo").body;
    EXPECT_TRUE(open.contains("<forecast_date data=\"2026-11-21\"/><unit_system data=\"US\"/>"))
        << open.constData();
    EXPECT_TRUE(open.contains("<condition data=\"It is wet\"/><temp_f data=\"50\"/><temp_c data=\"10\"/>"));
    EXPECT_TRUE(open.contains("<low data=\"40\"/><high data=\"60\"/>")) << open.constData();
    EXPECT_TRUE(open.contains("<condition data=\"Who knows\"/>"));
}

TEST_F(Gateway, AsksOnceForAHundredPhonesAndKeepsServingOthers)
{
    write("stock.xml", "<stocks><stock code='OWN' company='Our own' price='7'/></stocks>");
    write("schedule.xml", "<schedule/>");
    startGateway({{"[stock]", "[stock]\nmost=1"}});
    hold();
    std::vector<std::unique_ptr<Wire>> phones;
    for (int i = 0; i < 100; ++i) {
        phones.push_back(std::make_unique<Wire>(m_port));
        phones.back()->send("GET /ig/api?stock=HRBR HTTP/1.1\r\nHost: x\r\n\r\n");
    }
    // Two threads answer, and none of them waits.
    EXPECT_TRUE(publicStock("OWN").body.contains("Our own"));
    EXPECT_EQ(schedule().status, 200);
    release();
    for (const auto& phone : phones)
        ASSERT_TRUE(phone->readOne().body.contains("146.90"));
    EXPECT_EQ(m_service.targets().size(), 1);
}

TEST_F(Gateway, KeepsAnAnswerForItsTimeAndLonger)
{
    startGateway({{"keep=60", "keep=1"}});
    EXPECT_TRUE(publicStock("HRBR").body.contains("146.90"));
    EXPECT_TRUE(publicStock("HRBR").body.contains("146.90"));
    EXPECT_LE(m_service.targets().size(), 2);
    ASSERT_TRUE(kit::waits(
        [&] { return publicStock("HRBR").status == 200 && m_service.targets().size() > 1; }, 20000));
    // An old answer is better than none, from the first fault on.
    answerAll(JsonService::answer("", "500 Oh"));
    const qsizetype before = m_service.targets().size();
    bool isAlwaysTold = true;
    ASSERT_TRUE(kit::waits(
        [&] {
            isAlwaysTold = publicStock("HRBR").body.contains("146.90") && isAlwaysTold;
            return m_service.targets().size() > before;
        },
        20000));
    EXPECT_TRUE(isAlwaysTold);
    EXPECT_TRUE(publicStock("HRBR").body.contains("146.90"));
    EXPECT_TRUE(log().contains("gateway: stock: status 500"));
}

TEST_F(Gateway, AnUnknownCityOrCodeIsToldAsSuch)
{
    m_place = R"({"results":[]})";
    startGateway();
    EXPECT_EQ(resultOf(weather("Atlantis").body), "get data error");
    EXPECT_TRUE(get("/ig/api?weather=Atlantis").body.contains("<problem_cause data=\"\"/>"));
    answerAll(JsonService::answer(R"({"error":"no such symbol"})", "404 Not Found"));
    EXPECT_TRUE(rowsOf(stock("NONE").body, "Menu").value(0).endsWith("value=N/A"));
    EXPECT_TRUE(publicStock("NONE").body.contains("<finance/>"));
    answerAll(JsonService::answer(R"({"quote":null})"));
    EXPECT_TRUE(publicStock("NULL").body.contains("<finance/>"));
    // Known to be unknown, for a while.
    EXPECT_EQ(m_service.targets().size(), 3);
}

TEST_F(Gateway, WhatIsNoAnswerIsAFeedThatCannotBeReached)
{
    startGateway();
    const QByteArray good = JsonService::answer(Quote);
    const QList<QByteArray> bad = {
        JsonService::answer("", "500 Oh"),
        JsonService::answer(Quote, "302 Found",
                            "Location: " + m_service.url() + "/v1/quote?symbol=OTHER\r\n"),
        JsonService::answer("{\"quote\":{\"price\":1"),
        JsonService::answer(QByteArray("[").repeated(100000)),
        JsonService::answer("{\"quote\":{\"price\":1,\"x\":\"" + QByteArray(10 << 20, 'x') + "\"}}"),
        JsonService::answer("\"price\""),
        good.left(good.size() - 20),
        "HTTP/1.1 banana\r\n\r\n",
        ""};
    for (qsizetype i = 0; i < bad.size(); ++i) {
        answerAll(bad[i]);
        const QByteArray code = "CODE" + QByteArray::number(i);
        const Answer answer = publicStock(code);
        EXPECT_EQ(answer.status, 503) << i;
        EXPECT_EQ(stock(code).status, answer.status) << i;
        EXPECT_FALSE(answer.body.contains("146.90"));
    }
    for (const QByteArray& target : m_service.targets())
        EXPECT_FALSE(target.contains("OTHER")) << "only the administrator names who is asked";
    answerAll(QByteArray());
    EXPECT_TRUE(publicStock("GOOD").body.contains("146.90"));
    EXPECT_TRUE(log().contains("gateway: stock: the answer is too large"));
}

// The phone then says that it has no connection, not that there is no such city.
TEST_F(Gateway, WithoutItsPlacesNoCityIsUnknown)
{
    startGateway();
    answerAll(JsonService::answer("", "500 Oh"));
    EXPECT_EQ(weather("London").status, 503);
    EXPECT_EQ(get("/ig/api?weather=Oslo").status, 503);
}

TEST_F(Gateway, TemperaturesAreRounded)
{
    m_forecast = QByteArray(Forecast).replace("8.4", "-0.6");
    startGateway();
    EXPECT_TRUE(get("/ig/api?weather=London").body.contains("<temp_f data=\"30\"/><temp_c data=\"-1\"/>"));
}

TEST_F(Gateway, APartMayHaveAServiceOfItsOwn)
{
    const JsonService places([](const QByteArray&) { return JsonService::answer(Place); });
    startGateway({{"[place]\n", "[place]\nservice=" + places.url() + "\n"}});
    EXPECT_TRUE(get("/ig/api?weather=London").body.contains("Light rain"));
    EXPECT_EQ(places.targets(), QByteArrayList{"/v1/search?name=london&count=1"});
    EXPECT_EQ(m_service.targets().size(), 1);
}

TEST_F(Gateway, AForecastWithHolesIsNone)
{
    startGateway();
    int count = 0;
    for (const char* hole :
         {R"("low":[3.6,-0.4])", R"("low":[3.6,-0.4,null])", R"("low":[3.6,1e300,5])", R"("low":7)",
          R"("low":[3.6,-1e300,5])", R"("high":[11.2,9.5])", R"("high":[11.2,"warm","12"])"}) {
        const bool isLow = strncmp(hole, "\"low", 4) == 0;
        m_forecast =
            QByteArray(Forecast).replace(isLow ? R"("low":[3.6,-0.4,5])" : R"("high":[11.2,9.5,"12"])", hole);
        m_place = QByteArray(Place).replace("51.5", "5" + QByteArray::number(++count) + ".5");
        EXPECT_EQ(get("/ig/api?weather=city" + QByteArray::number(count)).status, 503) << hole;
    }
}

TEST_F(Gateway, ALongAnswerIsRead)
{
    m_quote =
        QByteArray(Quote).replace("{\"quote\"", "{\"more\":\"" + QByteArray(300000, 'x') + "\",\"quote\"");
    startGateway();
    EXPECT_TRUE(publicStock("HRBR").body.contains("146.90"));
}

TEST_F(Gateway, ACityIsOneHoweverItIsTyped)
{
    startGateway();
    for (const char* city : {"New%20York", "%20NEW%20%20york%20"})
        EXPECT_TRUE(get(QByteArray("/ig/api?weather=") + city).body.contains("Light rain")) << city;
    EXPECT_EQ(m_service.targets().size(), 2);
}

TEST_F(Gateway, AServiceMayBeASecureOne)
{
    write("gateway.ini", readFile(HX_SOURCE_DIR "/tools/signDemo/content/gateway.ini"));
    start({"--stock", "https://127.0.0.1:1"});
    EXPECT_EQ(publicStock("HRBR").status, 503);
}

TEST_F(Gateway, OnePatienceForASilentService)
{
    startGateway({{"[stock]", "[stock]\npatience=1"}});
    hold();
    EXPECT_EQ(publicStock("HRBR").status, 503);
    EXPECT_EQ(publicStock("HRBR").status, 503) << "not asked again at once";
    EXPECT_EQ(m_service.targets().size(), 1);
}

TEST_F(Gateway, AServiceMayTakeItsTime)
{
    startGateway();
    hold();
    std::thread later([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        release();
    });
    EXPECT_TRUE(publicStock("HRBR").body.contains("146.90"));
    later.join();
}

TEST_F(Gateway, WhatIsUnknownIsAskedForAgainAfterItsTime)
{
    startGateway({{"keep=60", "keep=1"}});
    answerAll(JsonService::answer("", "404 Not Found"));
    EXPECT_TRUE(publicStock("NEW").body.contains("<finance/>"));
    answerAll(QByteArray());
    EXPECT_TRUE(kit::waits([&] { return publicStock("NEW").body.contains("146.90"); }, 20000));
}

TEST_F(Gateway, EndsWhileAServiceIsSilent)
{
    startGateway({{"[stock]", "[stock]\npatience=60"}});
    hold();
    const Wire phone(m_port);
    phone.send("GET /ig/api?stock=HRBR HTTP/1.1\r\nHost: x\r\n\r\n");
    ASSERT_TRUE(kit::waits([&] { return m_service.targets().size() == 1; }, 20000));
    stop();
}

TEST_F(Gateway, AServiceThatHasEnoughIsLeftAlone)
{
    startGateway();
    QElapsedTimer waited;
    waited.start();
    answerAll(JsonService::answer("", "429 Too Many Requests", "Retry-After: 2\r\n"));
    EXPECT_EQ(publicStock("ONE").status, 503);
    answerAll(QByteArray());
    EXPECT_EQ(publicStock("TWO").status, 503) << "another code is not asked for either";
    EXPECT_EQ(m_service.targets().size(), 1);
    EXPECT_TRUE(get("/ig/api?weather=London").body.contains("Light rain")) << "another service is";
    EXPECT_TRUE(kit::waits([&] { return publicStock("TWO").body.contains("146.90"); }, 20000));
    EXPECT_GE(waited.elapsed(), 2000) << "as long as it asked for";
}

TEST_F(Gateway, AServiceThatIsBusyIsLeftAloneWhenItSaysForHowLong)
{
    startGateway();
    answerAll(JsonService::answer("", "503 Busy"));
    EXPECT_EQ(publicStock("ONE").status, 503);
    EXPECT_EQ(publicStock("TWO").status, 503);
    EXPECT_EQ(m_service.targets().size(), 2) << "it did not say so";
    answerAll(JsonService::answer("", "503 Busy", "retry-after: 60\r\n"));
    EXPECT_EQ(publicStock("THREE").status, 503);
    EXPECT_EQ(publicStock("FOUR").status, 503);
    EXPECT_EQ(m_service.targets().size(), 3);
}

TEST_F(Gateway, WhileAServiceIsLeftAloneAnOldAnswerIsTold)
{
    startGateway({{"keep=60", "keep=1"}});
    EXPECT_EQ(publicStock("ONE").status, 200);
    answerAll(JsonService::answer("", "429 Too Many Requests", "Retry-After: 60\r\n"));
    EXPECT_EQ(publicStock("TWO").status, 503);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_TRUE(publicStock("ONE").body.contains("146.90"));
    EXPECT_EQ(m_service.targets().size(), 2);
}

TEST_F(Gateway, ATimeToComeAgainMayBeADate)
{
    startGateway();
    answerAll(
        JsonService::answer("", "429 Too Many Requests", "Retry-After: Sat, 21 Nov 2015 14:05:00 GMT\r\n"));
    EXPECT_EQ(publicStock("ONE").status, 503);
    answerAll(QByteArray());
    // Long past; without a time to come again a minute would count.
    EXPECT_TRUE(kit::waits([&] { return publicStock("TWO").status == 200; }, 20000));
}

TEST_F(Gateway, AsksNoMoreOftenThanItMay)
{
    startGateway({{"[stock]", "[stock]\nmost=2"}});
    EXPECT_EQ(publicStock("ONE").status, 200);
    EXPECT_EQ(publicStock("TWO").status, 200);
    EXPECT_EQ(publicStock("THREE").status, 503);
    EXPECT_EQ(publicStock("ONE").status, 200) << "what is known is told";
    EXPECT_EQ(m_service.targets().size(), 2);
}

TEST_F(Gateway, WhatIsAskedForStaysAValue)
{
    startGateway({{"/v1/quote?symbol={code}", "/v1/quote/{code}/now"}});
    weather("a/../B?x%26y=1 z%23%25");
    EXPECT_EQ(m_service.targets().value(0), "/v1/search?name=a%2F..%2Fb%3Fx%26y%3D1%20z%23%25&count=1");
    publicStock("a%26b%20{city}");
    EXPECT_EQ(m_service.targets().value(1).left(10), "/v1/foreca");
    EXPECT_EQ(m_service.targets().value(2), "/v1/quote/a%26b%20%7Bcity%7D/now");
    // What would lead to another path is not asked for at all.
    for (const char* code : {"..", ".", "../x", "a/b", "a%5Cb", "a%00b", "a%0d%0aX:y"})
        EXPECT_TRUE(publicStock(code).body.contains("<finance/>")) << code;
    EXPECT_TRUE(publicStock(QByteArray(101, 'x')).body.contains("<finance/>"));
    EXPECT_EQ(resultOf(weather(QByteArray(101, 'x')).body), "get data error");
    EXPECT_EQ(m_service.targets().size(), 3);
}

TEST_F(Gateway, TextsOfAServiceAreTidied)
{
    m_quote =
        R"({"quote":{"price":1,"name":"a\u0000b\u0001\n<b>&]]>\ud800 )" + QByteArray(1000, 'x') + "\"}}";
    startGateway();
    const Answer answer = stock("HRBR");
    EXPECT_TRUE(isXml(answer.body)) << answer.body.left(400).constData();
    const QByteArray company = rowsOf(answer.body, "Menu").value(0);
    EXPECT_TRUE(company.startsWith("title=Company Name value=a b <b>&]]>")) << company.constData();
    EXPECT_LT(company.size(), 240);
}

TEST_F(Gateway, WhatIsWrittenByHandGoesFirst)
{
    write("weather.xml",
          "<weather><city name='Bern'><now condition='Mine' temperature='1' icon='fog'/><day/><day/><day/>"
          "</city><city name='London' means='9 9 9 9 9 9 9 9 9 9 9 9' wet='9 9 9 9 9 9 9 9 9 9 9 9'/>"
          "</weather>");
    write("stock.xml", "<stocks><stock code='OWN' company='Our own' price='7'/>"
                       "<stock code='HRBR' company='Moves' base='100' swing='1'/></stocks>");
    startGateway();
    EXPECT_TRUE(get("/ig/api?weather=Bern").body.contains("Mine"));
    EXPECT_TRUE(publicStock("OWN").body.contains("Our own"));
    EXPECT_TRUE(m_service.targets().isEmpty());
    EXPECT_TRUE(get("/ig/api?weather=London").body.contains("Light rain"));
    EXPECT_TRUE(publicStock("HRBR").body.contains("Harbour"));
    EXPECT_EQ(m_service.targets().size(), 3);
}

TEST_F(Gateway, WhatHasNoServiceComesFromTheFolder)
{
    const QByteArray months = "'9 9 9 9 9 9 9 9 9 9 9 9'";
    write("weather.xml", "<weather><city name='London' means=" + months + " wet=" + months + "/></weather>");
    write("stock.xml", "<stocks><stock code='HRBR' company='Moves' base='100' swing='1'/></stocks>");
    write("gateway.ini", readFile(HX_SOURCE_DIR "/tools/signDemo/content/gateway.ini"));
    start({"--weather", m_service.url()});
    EXPECT_TRUE(publicStock("HRBR").body.contains("Moves"));
    stop();
    start({"--stock", m_service.url()});
    EXPECT_TRUE(get("/ig/api?weather=London").body.contains("forecast_date"));
    EXPECT_EQ(m_service.targets(), QByteArrayList());
}

TEST_F(Gateway, ADescriptionThatIsWrongIsToldAtTheStart)
{
    const auto complaintsOf = [&](const QByteArray& plan, const QStringList& options) {
        write("gateway.ini", plan);
        QProcess process;
        process.start(HX_BUILD_DIR "/bin/hxSignServer", QStringList{m_folder.path()} + options);
        EXPECT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitCode(), 2);
        return process.readAllStandardError();
    };
    const QStringList stockAlone = {"--stock", "http://127.0.0.1:1"};
    EXPECT_TRUE(complaintsOf("", stockAlone).contains("[stock] needs a path"));
    EXPECT_TRUE(complaintsOf("[stock]\npath=/q#x\nprice=p\n", stockAlone).contains("[stock] needs a path"));
    EXPECT_TRUE(complaintsOf("[stock]\npath=/q\n", stockAlone).contains("[stock] needs price"));
    for (const char* wrong :
         {"ftp://127.0.0.1", "nothing", "http://", "http://{code}.example", "http://127.0.0.1/{code}"})
        EXPECT_TRUE(complaintsOf("[stock]\npath=/q\nprice=p\n", {"--stock", wrong}).contains("is no address"))
            << wrong;
    EXPECT_TRUE(complaintsOf("[stock]\npath=/q\nprice=p\n[conditions]\n1=Rain\n", stockAlone)
                    .contains("[conditions] 1"));
    EXPECT_TRUE(
        complaintsOf("[weather]\npath=/q\n", {"--weather", "http://127.0.0.1:1"}).contains("[place] needs"));
}

TEST_F(Gateway, AnAmountThatNothingCanHaveIsNotTold)
{
    m_quote = QByteArray(m_quote).replace("1816000", "1e300");
    startGateway();
    EXPECT_TRUE(publicStock("HRBR").body.contains("<volume data=\"N/A\"/>"));
}

TEST_F(Gateway, APlaceWithoutItsCoordinatesIsNone)
{
    startGateway();
    int count = 0;
    for (const char* wrong : {R"("latitude":"north","longitude":-0.1257)",
                              R"("latitude":51.5085,"longitude":"east")", R"("latitude":51.5085)",
                              R"("latitude":51.5085,"longitude":1e9)", R"("latitude":1e9,"longitude":1)"}) {
        m_place = "{\"results\":[{" + QByteArray(wrong) + "}]}";
        EXPECT_EQ(resultOf(weather("city" + QByteArray::number(++count)).body), "get data error") << wrong;
    }
    for (const QByteArray& target : m_service.targets())
        EXPECT_TRUE(target.startsWith("/v1/search")) << target.constData();
}

TEST_F(Gateway, AHighPriceKeepsItsCents)
{
    m_quote = QByteArray(Quote).replace("146.9,", "1234567.89,");
    startGateway();
    EXPECT_TRUE(publicStock("HRBR").body.contains("<last data=\"1234567.89\"/>"));
}

TEST_F(Gateway, APriceThatIsNoNumberIsNoQuote)
{
    startGateway();
    int count = 0;
    for (const char* price : {"\"halted\"", "\"inf\"", "\"nan\"", "true", "null"}) {
        m_quote = QByteArray(Quote).replace("146.9,", QByteArray(price) + ",");
        const QByteArray code = "C" + QByteArray::number(++count);
        EXPECT_TRUE(publicStock(code).body.contains("<finance/>")) << price;
        EXPECT_TRUE(rowsOf(stock(code).body, "Menu").value(4).endsWith("value=N/A")) << price;
    }
}

TEST_F(Gateway, AStockThatWasWorthNothingHasNoPercent)
{
    m_quote = QByteArray(Quote).replace("145.55", "0");
    startGateway();
    const QByteArray open = publicStock("HRBR").body;
    EXPECT_TRUE(open.contains("<change data=\"+146.90\"/><perc_change data=\"0.00\"/>")) << open.constData();
}

TEST_F(Gateway, AMoveThatIsNoCentHasNoMinus)
{
    m_quote = QByteArray(Quote).replace("146.9,", "145.5499,");
    startGateway();
    EXPECT_TRUE(publicStock("HRBR").body.contains("<change data=\"+0.00\"/><perc_change data=\"0.00\"/>"));
}

TEST_F(Gateway, TheLargestAmountsAreTold)
{
    m_quote = QByteArray(Quote).replace("\"12.4B\"", "5e15");
    startGateway();
    EXPECT_TRUE(publicStock("HRBR").body.contains("<market_cap data=\"5000T\"/>"));
}

TEST_F(Gateway, ATimeMayBeInSecondsMillisecondsOrWritten)
{
    startGateway();
    int count = 0;
    for (const char* time : {"1795269900", "1795269900000", "\"1795269900\"", "\"2026-11-21T14:05:00Z\"",
                             "\"2026-11-21T16:05:00+02:00\""}) {
        m_quote = QByteArray(Quote).replace("1795269900", time);
        const QList<QByteArray> rows = rowsOf(stock("C" + QByteArray::number(++count)).body, "Menu");
        EXPECT_EQ(rows.value(11), "title=Last Trade Date value=11/21/2026") << time;
        EXPECT_EQ(rows.value(12), "title=Last Trade Time value=2:05pm") << time;
    }
    for (const char* none : {"\"today\"", "1e300", "null"}) {
        m_quote = QByteArray(Quote).replace("1795269900", none);
        const QList<QByteArray> rows = rowsOf(stock("C" + QByteArray::number(++count)).body, "Menu");
        EXPECT_EQ(rows.value(11), "title=Last Trade Date value=11/21/2026") << none;
        EXPECT_EQ(rows.value(12), "title=Last Trade Time value=12:00pm") << none;
    }
}

// West of the server it is still yesterday; some services write an hour behind the date.
TEST_F(Gateway, TheDayIsThatOfThePlace)
{
    m_forecast = QByteArray(Forecast).replace("2026-11-21\"", "2026-11-20T06:00\"");
    startGateway();
    const QByteArray open = get("/ig/api?weather=London").body;
    EXPECT_TRUE(open.contains("<forecast_date data=\"2026-11-20\"/>")) << open.constData();
    EXPECT_TRUE(open.contains("<day_of_week data=\"Fri\"/>"));
}

TEST_F(Gateway, AMinuteHasAHundredAndTwentyQuestionsUnlessItIsSaid)
{
    startGateway();
    for (int i = 0; i < 120; ++i)
        ASSERT_EQ(publicStock("C" + QByteArray::number(i)).status, 200) << i;
    EXPECT_EQ(publicStock("ONE-MORE").status, 503);
    EXPECT_EQ(m_service.targets().size(), 120);
}
