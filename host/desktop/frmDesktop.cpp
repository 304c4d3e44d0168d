#include "host/desktop/callButton.h"
#include "host/desktop/dssKeyStrip.h"
#include "host/desktop/frmDial.h"
#include "host/desktop/homeButton.h"
#include "host/desktop/homeClock.h"
#include "host/desktop/homeStatus.h"
#include "host/desktop/idleSaver.h"
#include "host/desktop/idleShow.h"
#include "host/desktop/missedCalls.h"
#include "host/desktop/quickKeys.h"
#include "host/desktop/readyNotice.h"
#include "host/look/look.h"
#include "host/screen/windowStack.h"
#include "support/file/fileTools.h"
#include "support/host/api.h"
#include "support/host/desktop.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/message.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "support/host/weather.h"
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

namespace {

constexpr int kRefreshMs = 1000;
constexpr int kColumns = 6;
constexpr int kColumnWidth = 128;
constexpr QRect kDialKey(392, 62, 84, 84);
constexpr QRect kWeather(492, 54, 288, 104);
const char* const kUserIni = "/rundata/config/user/user.ini";
const char* const kOwnPictures = "/phone/"; // small, and there at once
const char* const kWallpapers = "/phone/resource/sysdata/wallpaper/";

struct HomeTile
{
    const char* name;
    const char* picture;
    const char* caption;
    const char* page; // a page, or a menu file
};

const HomeTile kTiles[kColumns] = {
    {"tileDirectory", HX_THEME("home/home_directory.png"), HX_TR("Directory"), "Directory"},
    {"tileCallHistroy", HX_THEME("home/home_callhistory.png"), HX_TR("Call Histroy"), "Call Histroy"},
    {"tileSetting", HX_THEME("home/home_setting.png"), HX_TR("Setting"), "setting.xml"},
    {"tileCallFeature", HX_THEME("home/home_callfeature.png"), HX_TR("Call Feature"), "callfeature.xml"},
    {"tileApplication", HX_THEME("home/home_application.png"), HX_TR("Application"), "application.xml"},
    {"tileMedia", HX_THEME("home/home_media.png"), HX_TR("Media"), "media.xml"},
};

void openTile(const char* page)
{
    const chString name(page);
    if (QByteArray(page).endsWith(".xml"))
        hostModule().openMenu(name);
    else
        hostModule().openPage(name, nullptr);
}

// The configured wallpaper: a full path, or the name of one that came with the phone.
chString configuredWallpaper()
{
    const chString name =
        NUX_SubClass::nuxGetRegistryString(kUserIni, "Theme", "strWallpaper", "wallpaper.jpg");
    return name.GetText()[0] == '/' ? name : chString(kWallpapers) + name;
}

} // namespace

struct frmDesktop::Private : chMsgProcesser
{
    homeStatus* status = nullptr;
    homeClock* clock = nullptr;
    idleShow* show = nullptr;
    homeButton* tiles[kColumns] = {};
    homeButton* keys[kColumns] = {};
    dssKeyStrip* strip = nullptr; // comes when the screen is up
    QTimer refresh;
    QPixmap wallpaper;
    chString wallpaperPath;
    tagFileStat wallpaperFile;
    int wallpaperRequest = 0;
    bool isReadyTold = false;

    int rows() const { return strip ? 3 : 2; }
    // From the top: the tiles, the programmable keys once they are there, the quick keys.
    QAbstractButton* at(int row, int column) const
    {
        if (row == 0)
            return tiles[column];
        return strip && row == 1 ? strip->button(column) : keys[column];
    }
    // Whoever stores another one may have shown it himself.
    bool isWallpaperOfSettings() const
    {
        tagFileStat now;
        fileStat(wallpaperPath, now);
        return wallpaperPath == configuredWallpaper() && now == wallpaperFile;
    }
    // The factory's takes the place of one that cannot be shown.
    void takeWallpaper(QWidget* desktop, QPixmap picture)
    {
        if (picture.isNull())
            picture = GetImageManager()->GetImage(chString(kWallpapers) + "wallpaper.jpg");
        wallpaper = picture.isNull() || picture.size() == desktop->size()
                        ? picture
                        : picture.scaled(desktop->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        desktop->update();
    }
    // Once the home screen has been painted as a whole, which ends after the event at hand.
    void tellReady(QWidget* desktop)
    {
        if (isReadyTold || wallpaperRequest != 0)
            return;
        isReadyTold = true;
        QTimer::singleShot(0, desktop, [this, desktop] {
            readyNoticeSend();
            QTimer::singleShot(0, desktop, [this, desktop] {
                makeStrip(desktop);
                GetWeatherFrame()->ShowOn(desktop, kWeather);
            });
        });
    }
    void makeStrip(QWidget* desktop)
    {
        strip = new dssKeyStrip(desktop);
        for (int column = 0; column < kColumns; ++column)
            strip->button(column)->installEventFilter(desktop);
    }
    int TryThreadMessage(msgObject& msg) override
    {
        const bool isWallpaper =
            msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_WALLPAPER;
        if (isWallpaper && !isWallpaperOfSettings())
            desktop_SetWallPaper(nullptr);
        return 0;
    }
    // The list of calls tells them; its tile how many there are.
    void showMissed() { tiles[1]->setBadge(missedCalls::instance().count()); }
    void showCaptions()
    {
        for (int column = 0; column < kColumns; ++column)
            tiles[column]->setContent(kTiles[column].picture, qTranslate(kTiles[column].caption));
    }
};

frmDesktop* frmDesktop::GetInstance()
{
    static frmDesktop* desktop = new frmDesktop;
    return desktop;
}

frmDesktop::frmDesktop() : QWidget(nullptr, Qt::FramelessWindowHint), m_p(new Private)
{
    setObjectName("frmDesktop");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(0, 0, look::kScreenWidth, look::kScreenHeight);
    m_p->status = new homeStatus(this);
    m_p->status->setGeometry(0, 0, look::kScreenWidth, look::kTopBarHeight);
    m_p->clock = new homeClock(this);
    m_p->clock->setGeometry(40, 46, 400, 134);
    for (int column = 0; column < kColumns; ++column) {
        const HomeTile& tile = kTiles[column];
        homeButton* button = new homeButton(homeButton::Tile, this);
        button->setObjectName(tile.name);
        button->setGeometry(18 + kColumnWidth * column, 182, 124, 138);
        connect(button, &QAbstractButton::clicked, this, [page = tile.page] { openTile(page); });
        m_p->tiles[column] = button;
        homeButton* key = new homeButton(homeButton::QuickKey, this);
        key->setObjectName(QString("quickKey%1").arg(column + 1));
        key->setGeometry(22 + kColumnWidth * column, 374, 116, 96);
        m_p->keys[column] = key;
        button->installEventFilter(this);
        key->installEventFilter(this);
    }
    callButton* dial = new callButton(this);
    dial->setObjectName("btnDial");
    dial->setDisc(HX_THEME("button/btn_answer_bg01.png"), HX_THEME("button/btn_answer_bg02.png"));
    dial->setGeometry(kDialKey);
    connect(dial, &QAbstractButton::clicked, this, [] { dialScreenOpen(); });
    m_p->showMissed();
    connect(&missedCalls::instance(), &missedCalls::changed, this, [this] { m_p->showMissed(); });
    m_p->show = new idleShow(this);
    connect(m_p->show, &idleShow::changed, this, [this] {
        GetWeatherFrame()->MakeRoom(m_p->show->state() == idleShow::CORNER);
        update();
    });
    new idleSaver(this);
    m_p->tiles[2]->setFocus();
    ReloadQuickKeys();
    m_p->showCaptions();
    qFollowLanguage(this, [this] { m_p->showCaptions(); });
    connect(&m_p->refresh, &QTimer::timeout, this, [this] {
        m_p->clock->refresh();
        m_p->status->refresh();
    });
}

frmDesktop::~frmDesktop()
{
    delete m_p;
}

void frmDesktop::FinishLoading()
{
    // What was opened during the boot stays on top.
    windowStack::instance().showUnder(this);
    if (m_pLoading) {
        m_pLoading->hide();
        m_pLoading->deleteLater();
        m_pLoading = nullptr;
    }
}

void frmDesktop::SetWallPaper(const char* path)
{
    pictureCancel(m_p->wallpaperRequest);
    m_p->wallpaperRequest = 0;
    const chString wanted = path && *path ? chString(path) : configuredWallpaper();
    m_p->wallpaperPath = wanted;
    m_p->wallpaperFile = {};
    fileStat(wanted, m_p->wallpaperFile);
    if (toQString(wanted).startsWith(kOwnPictures)) {
        m_p->takeWallpaper(this, GetImageManager()->GetImage(wanted));
        return;
    }
    tagPictureWish wish;
    wish.strPath = wanted;
    wish.nWidth = width();
    wish.nHeight = height();
    wish.eFit = PICTURE_FIT_EXACT;
    m_p->wallpaperRequest = pictureRequest(wish, this, [this](PICTURE_RESULT, const QPixmap& picture) {
        m_p->wallpaperRequest = 0;
        m_p->takeWallpaper(this, picture);
    });
}

void frmDesktop::ReloadQuickKeys()
{
    const QList<tagQuickKey> keys = quickKeysRead();
    for (int column = 0; column < kColumns; ++column) {
        const tagQuickKey key = keys.value(column);
        homeButton* button = m_p->keys[column];
        button->disconnect(this);
        button->setContent(key.strPicture, key.strName);
        connect(button, &QAbstractButton::clicked, this,
                [key, column, button] { quickKeyPress(key, column, button->portrait()); });
        connect(button, &homeButton::held, this,
                [key, column, button] { quickKeyEdit(key, column, button->portrait()); });
    }
}

bool frmDesktop::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (m_p->wallpaper.isNull())
            SetWallPaper(nullptr);
        m_p->refresh.start(kRefreshMs);
        break;
    case QEvent::WindowActivate:
        // What changed while a page was on top.
        m_p->clock->refresh();
        m_p->status->refresh();
        if (m_p->strip)
            m_p->strip->refresh();
        update();
        break;
    case QEvent::Hide:
        m_p->refresh.stop();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void frmDesktop::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_p->wallpaper.isNull())
        look::paintLeftBar(painter, rect());
    else
        painter.drawPixmap(0, 0, m_p->wallpaper);
    if (m_p->show->state() == idleShow::CORNER)
        m_p->show->corner().paintMount(painter);
    if (!m_pLoading)
        m_p->tellReady(this);
}

// A digit begins a number wherever the focus is.
bool frmDesktop::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && opensDialScreen(static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

void frmDesktop::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F8)
        m_p->status->toggleDoNotDisturb();
    else if (!opensDialScreen(event))
        moveFocus(event->key());
}

void frmDesktop::moveFocus(int key)
{
    int row = 0;
    int column = 0;
    const int rows = m_p->rows();
    for (int i = 0; i < rows * kColumns; ++i) {
        if (m_p->at(i / kColumns, i % kColumns)->hasFocus()) {
            row = i / kColumns;
            column = i % kColumns;
        }
    }
    if (key == Qt::Key_Left)
        column = (column + kColumns - 1) % kColumns;
    else if (key == Qt::Key_Right)
        column = (column + 1) % kColumns;
    else if (key == Qt::Key_Up)
        row = (row + rows - 1) % rows;
    else if (key == Qt::Key_Down)
        row = (row + 1) % rows;
    m_p->at(row, column)->setFocus(Qt::OtherFocusReason);
}

bool frmDesktop::opensDialScreen(QKeyEvent* event)
{
    static const QString digits("0123456789*#");
    const QString sign = event->text();
    if (sign.size() == 1 && digits.contains(sign))
        dialScreenOpen(sign);
    else if (event->key() == Qt::Key_Call)
        dialScreenOpen();
    else
        return false;
    return true;
}
