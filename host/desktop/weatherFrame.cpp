#include "host/desktop/weatherCard.h"
#include "support/file/fileTools.h"
#include "support/host/module.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/weather.h"
#include <QElapsedTimer>
#include <QEvent>
#include <QPointer>
#include <QTimer>

namespace {

const char* const kUserIni = "/rundata/config/user/user.ini";
const char* const kSection = "Weather";
const char* const kPicture = "/tmp/Today.gif";
const char* const kPage = "Weather";

constexpr int kFirstMs = 5000;           // after the boot, which has better things to do
constexpr int kFreshMs = 30 * 60 * 1000; // a forecast
constexpr int kRetryMs = 60 * 1000;      // after a request that brought none
constexpr int kSettleMs = 1000;          // after a change: the answer to whoever made it may serve as well
constexpr int kPictureLookMs = 250;      // for a picture that is still to come
constexpr int kPictureLooks = 40;

// What a forecast depends on.
struct tagWanted
{
    chString city;
    chString source;
    int unit = 0;
    bool operator==(const tagWanted& other) const
    {
        return city == other.city && source == other.source && unit == other.unit;
    }
};

tagWanted configuredWanted()
{
    const HREGISTRY section = registryOpen(kUserIni, kSection);
    return {registryGetString(section, "strDefaultCity", "London"),
            registryGetString(section, "strSource", ""), registryGetInt(section, "nUnit", 0)};
}

} // namespace

struct WeatherFrame::Private : qRegistryNotify
{
    explicit Private(WeatherFrame* owner) : frame(owner)
    {
        due.setSingleShot(true);
        due.callOnTimeout([this] { look(); });
        pictureLook.setInterval(kPictureLookMs);
        pictureLook.callOnTimeout([this] { lookForPicture(); });
        readConfiguration();
    }
    void OnRegistryChanged(HREGISTRY) override
    {
        readConfiguration();
        showCard();
        if (due.isActive() || !isFresh())
            due.start(kSettleMs);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::WindowActivate)
            due.start(0);
        return false;
    }
    void readConfiguration()
    {
        isOn = registryGetInt(registryOpen(kUserIni, kSection), "bDesktop", 0) == 1;
        wanted = configuredWanted();
    }
    bool isInSight() const { return home && home->isActiveWindow(); }
    bool isFresh() const { return taken.isValid() && takenFor == wanted && taken.elapsed() < kFreshMs; }
    // How long the next request can wait.
    qint64 waitMs() const
    {
        const qint64 old = isFresh() && !isWithoutPicture ? kFreshMs - taken.elapsed() : 0;
        const bool isAgain = asked.isValid() && askedFor == wanted;
        return qMax(old, isAgain ? kRetryMs - asked.elapsed() : 0);
    }
    void look()
    {
        if (!isOn || !isInSight())
            return;
        const qint64 wait = waitMs();
        if (wait > 0)
            due.start(int(wait));
        else
            ask();
    }
    void ask()
    {
        asked.start();
        askedFor = wanted;
        due.start(kRetryMs);
        if (const auto request = hostModule().requestWeather)
            request(chReferObject(frame), wanted.city);
    }
    // An answer to all views may be for a city that somebody has only searched.
    bool isForOurCity() const
    {
        const auto city = hostModule().weatherCity;
        return !city || city() == wanted.city;
    }
    void take(const tagMoreDaysInfo& info)
    {
        readConfiguration();
        if (!isForOurCity()) {
            asked.invalidate();
            due.start(kSettleMs);
            return;
        }
        if (card && !(takenFor.city == wanted.city))
            card->setPicture(QPixmap());
        taken.start();
        takenFor = wanted;
        // A forecast may lack the temperature of its unit.
        const bool hasTemperature = info.strCurrentTemp.size() > 1;
        const tagWeatherCard now = {hasTemperature ? info.strCurrentTemp : QString(), toQString(wanted.city),
                                    info.strTemperature1, info.strStatus1};
        const bool isToldAgain = pictureLook.isActive() && now == content;
        content = now;
        showCard();
        if (isToldAgain)
            lookForPicture();
        else
            awaitPicture();
        look();
    }
    // A forecast comes before its pictures, and not every view is told of those. What is there is the picture
    // of whoever asked before.
    void awaitPicture()
    {
        isWithoutPicture = false;
        fileLook(kPicture, pictureFile);
        looksLeft = kPictureLooks;
        pictureLook.start();
    }
    void readPicture()
    {
        pictureCancel(pictureRequest);
        tagPictureWish wish;
        wish.strPath = kPicture;
        wish.nWidth = wish.nHeight = weatherCard::PICTURE_SIZE;
        pictureRequest = pictureTell(wish, this, [this](PICTURE_RESULT result, const QPixmap& picture) {
            pictureRequest = 0;
            if (card && (result == PICTURE_READ || result == PICTURE_MISSING))
                card->setPicture(picture);
        });
    }
    void lookForPicture()
    {
        // What comes after another search is that city's.
        isWithoutPicture = !isForOurCity();
        tagFileStat now;
        fileLook(kPicture, now);
        const bool isNew = !isWithoutPicture && now != pictureFile;
        if (isNew)
            readPicture();
        if (isNew || isWithoutPicture || --looksLeft <= 0)
            pictureLook.stop();
        if (isWithoutPicture)
            due.start(kSettleMs);
    }
    void showCard()
    {
        if (!home)
            return;
        const bool isShown = isOn && taken.isValid() && !isTaken;
        if (isShown && !card)
            makeCard();
        if (!card)
            return;
        card->setContent(content);
        card->setVisible(isShown);
    }
    void makeCard()
    {
        card = new weatherCard(home);
        card->setGeometry(place);
        QObject::connect(card, &QAbstractButton::clicked, card,
                         [] { hostModule().openPage(chString(kPage), nullptr); });
    }

    WeatherFrame* frame;
    QPointer<QWidget> home;
    QPointer<weatherCard> card;
    QRect place;
    QTimer due;
    QTimer pictureLook;
    int looksLeft = 0;
    tagFileStat pictureFile;
    bool isWithoutPicture = false; // another search came before it
    int pictureRequest = 0;
    bool isOn = false;
    bool isTaken = false; // its place, by something else
    tagWanted wanted;
    tagWanted askedFor;
    tagWanted takenFor;
    QElapsedTimer asked;
    QElapsedTimer taken;
    tagWeatherCard content;
};

WeatherFrame::WeatherFrame() : MVCView("frmDektop"), m_p(new Private(this)) {}

WeatherFrame::~WeatherFrame()
{
    delete m_p;
}

void WeatherFrame::Refresh(tagMoreDaysInfo info)
{
    if (info.bConnected && info.bSiteFound)
        m_p->take(info);
}

void WeatherFrame::RefreshBySendRequest()
{
    m_p->readConfiguration();
    m_p->showCard();
    if (m_p->isOn)
        m_p->ask();
}

void WeatherFrame::ShowOn(QWidget* home, const QRect& place)
{
    m_p->home = home;
    m_p->place = place;
    home->installEventFilter(m_p);
    m_p->MonitorSection(kUserIni, kSection);
    m_p->showCard();
    m_p->due.start(kFirstMs);
}

void WeatherFrame::MakeRoom(bool isTaken)
{
    m_p->isTaken = isTaken;
    m_p->showCard();
}

WeatherFrame* GetWeatherFrame()
{
    static WeatherFrame* frame = new WeatherFrame;
    return frame;
}
