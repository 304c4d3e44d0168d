#include "applets/dlgWeather.h"
#include "applets/weatherController.h"
#include "applets/weatherDelivery.h"
#include "applets/weatherFiles.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "frame/pageClass.h"
#include "frame/popupDialog.h"
#include "support/host/button.h"
#include "support/host/image.h"
#include "support/host/ime.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgWeather.h"
#include <QPainter>
#include <QPointer>

HX_PAGE_OF_ANOTHER_FILE(dlgWeather);

namespace {

const char* const kSection = "Weather";
const char* const kCityKey = "strDefaultCity";
const char* const kAllViews = "allUI";
const char* const kSearchButton = HX_THEME("button/btn_weather_enter_bg01.png");
const char* const kSearchPressed = HX_THEME("button/btn_weather_enter_bg02.png");
const QRect kSearchPlace(QPoint(630, 394), QPoint(705, 429));
constexpr int kLongestCity = 99;
constexpr int kDateSize = 17;
constexpr int kStatusSize = 20;
constexpr int kRangeSize = 30;
constexpr int kCaptionSize = 15;
constexpr QRgb kInk = 0xffffffff;
constexpr QRgb kPaleInk = 0xb8ffffff;

QPointer<dlgWeather>& thePage()
{
    static QPointer<dlgWeather> page;
    return page;
}

HREGISTRY weatherSection()
{
    return registryOpen(USER_INI, kSection);
}

} // namespace

dlgWeather* GetdlgWeahterSetting()
{
    if (!thePage())
        PopupDialog<dlgWeather>(nullptr, 1, 0, 0);
    return thePage();
}

void weatherShowOnPage(chObject* view, const tagMoreDaysInfo& info)
{
    dlgWeather* page = view ? static_cast<dlgWeather*>(static_cast<MVCView*>(view)) : GetdlgWeahterSetting();
    page->Refresh(info);
}

dlgWeather::dlgWeather(QWidget* parent, tagLeftBarInfo* info, const char* view)
    : SettingPage(parent, info), MVCView(view), ui(new Ui::dlgWeather)
{
    thePage() = this;
    ui->setupUi(this);
    makeLabels();
    // A city is no text of the phone's. Before the frame's own, so that it comes after it.
    qFollowLanguage(this, [this] {
        if (!m_strCity.isEmpty())
            m_frame.m_pTopBar->setTitle(m_strCity);
    });
    // The columns take the place of the left bar.
    m_frame.Build(this, nullptr, ui->frmBackground, HX_TR("Weather"), KEY_IME | KEY_DELETE | KEY_BACK);
    FollowFocus({{FOCUS_ANY, SHOWS_OWN_METHOD, SHOWS_AS_BEFORE}});
    m_frame.SetSoftKey(0, "", HX_TR("Set Desktop"), SLOT(on_click_Set2Desktop()));
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/weather_bg.jpg"));
    makeSearch();
    Bind({{ui->editSearch, weatherSection(), kCityKey, "London", "123,2aB,ABC,abc", "2aB", kLongestCity}});
    m_notify.MonitorSection(USER_INI, kSection);
    connect(&m_notify, SIGNAL(registryChanged(HREGISTRY)), SLOT(OnUnitChanged(HREGISTRY)));
    connect(&m_overTimer, &QTimer::timeout, this, &dlgWeather::OnUpdateOverTime);
}

dlgWeather::~dlgWeather()
{
    WeatherAction::ForgetView(this);
}

// What a server says is shown as it stands, in the size in which it has room.
QLabel* dlgWeather::makeLabel(QLabel*& place, int size, QRgb colour)
{
    QLabel* label = qCreateLineLabel(this);
    label->setObjectName(place->objectName());
    label->setGeometry(place->geometry());
    label->setAlignment(place->alignment());
    label->setText(place->text());
    label->setTextFormat(Qt::PlainText);
    setFontStyle(size, -1, label, false);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgba(colour));
    label->setPalette(palette);
    delete place;
    return place = label;
}

void dlgWeather::makeLabels()
{
    QLabel** const days[DAYS][4] = {
        {&ui->labDate1, &ui->labIcon1, &ui->labStatus1, &ui->labTemperature1},
        {&ui->labDate2, &ui->labIcon2, &ui->labStatus2, &ui->labTemperature2},
        {&ui->labDate3, &ui->labIcon3, &ui->labStatus3, &ui->labTemperature3},
    };
    for (int i = 0; i < DAYS; ++i) {
        m_columns[i].pDate = makeLabel(*days[i][0], kDateSize, kInk);
        m_columns[i].pPicture = *days[i][1];
        m_columns[i].pStatus = makeLabel(*days[i][2], kStatusSize, kInk);
        m_columns[i].pRange = makeLabel(*days[i][3], kRangeSize, kInk);
    }
    for (QLabel** caption : {&ui->labData, &ui->labStatus, &ui->labTemp})
        makeLabel(*caption, kCaptionSize, kPaleInk);
}

void dlgWeather::makeSearch()
{
    ui->labIcon->setPixmap(GetImageManager()->GetImage(HX_THEME("icon/icon_search.png")));
    btnSearch = CreateUIPushButton(kSearchPlace, "btnSearch", this);
    SetButton3StatusImage(btnSearch, kSearchButton, kSearchPressed, kSearchButton);
    btnSearch->setFocusPolicy(Qt::NoFocus);
    connect(btnSearch, &QPushButton::clicked, this, &dlgWeather::click_btnSearched);
    // The keys do not reach the button.
    connect(ui->editSearch, &QLineEdit::returnPressed, this, &dlgWeather::click_btnSearched);
}

void dlgWeather::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
}

void dlgWeather::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    clearInfo();
    nClosed = 0;
    ui->editSearch->setFocus();
    SetInputMethods();
    m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, qGetCurrentIME(ui->editSearch));
    doSreach();
}

// Without a stored city that is an empty one.
void dlgWeather::takeConfiguredCity()
{
    ui->editSearch->setText(toQString(registryGetString(weatherSection(), kCityKey, "")));
}

void dlgWeather::doSreach()
{
    takeConfiguredCity();
    search(ui->editSearch->text(), true);
}

void dlgWeather::click_btnSearched()
{
    clearInfo();
    search(qReturnLineEdit(ui->editSearch), true);
}

void dlgWeather::search(const QString& city, bool isTimed)
{
    WeatherController& controller = GetWeatherControl();
    controller.strCity = fromQString(city);
    if (isTimed)
        m_overTimer.start(OVERTIME_MS);
    controller.SendRquest2Logic(chReferObject(this), controller.strCity);
}

void dlgWeather::clearInfo()
{
    m_frame.SetTitle("");
    m_strCity.clear();
    for (tagColumn& column : m_columns) {
        for (QLabel* label : {column.pDate, column.pStatus, column.pRange})
            label->clear();
        showPicture(column, "");
    }
}

void dlgWeather::Refresh(tagMoreDaysInfo info)
{
    m_overTimer.stop();
    if (nClosed != 0)
        return;
    if (info.bConnected && info.bSiteFound) {
        showForecast(info);
        return;
    }
    m_strCity.clear();
    m_frame.SetTitle(HX_TR("Weather"));
    noteLater(info.bConnected ? HX_TR("No site information") : HX_TR("Can't connect"));
}

void dlgWeather::showForecast(const tagMoreDaysInfo& info)
{
    showTitle(ui->editSearch->text());
    m_columns[0].pDate->setText(info.strDate1);
    showPicture(m_columns[0], WEATHER_PICTURE_TODAY);
    m_columns[0].pStatus->setText(info.strStatus1);
    m_columns[0].pRange->setText(info.strTemperature1);
    m_columns[1].pDate->setText(info.strDate2);
    showPicture(m_columns[1], WEATHER_PICTURE_TOMORROW);
    m_columns[1].pStatus->setText(info.strStatus2);
    m_columns[1].pRange->setText(info.strTemperature2);
    if (!info.strStatus3.isEmpty()) {
        showPicture(m_columns[2], WEATHER_PICTURE_AFTER);
        m_columns[2].pDate->setText(info.strDate3);
    }
    m_columns[2].pStatus->setText(info.strStatus3);
    m_columns[2].pRange->setText(info.strTemperature3);
}

void dlgWeather::showTitle(const QString& city)
{
    m_frame.SetTitle("");
    m_strCity = city;
    m_frame.m_pTopBar->setTitle(city);
}

// Anybody's picture, of any size; the old one stays until the new one is read.
void dlgWeather::showPicture(tagColumn& column, const char* file)
{
    pictureCancel(column.nPicture);
    column.nPicture = 0;
    if (!*file) {
        column.pPicture->setPixmap(QPixmap());
        return;
    }
    tagPictureWish wish;
    wish.strPath = file;
    wish.nWidth = column.pPicture->width();
    wish.nHeight = column.pPicture->height();
    column.nPicture = pictureTell(wish, this, [&column](PICTURE_RESULT, const QPixmap& picture) {
        column.nPicture = 0;
        column.pPicture->setPixmap(picture);
    });
}

// In the next turn: the page may only just be coming up, and whoever told is not done.
void dlgWeather::noteLater(const char* text)
{
    const bool isWaiting = m_szNote;
    m_szNote = text;
    if (isWaiting)
        return;
    QTimer::singleShot(0, this, [this] {
        const char* note = m_szNote;
        m_szNote = nullptr;
        if (nClosed == 0)
            noteUnlessCovered(note, this, NOTE_MS);
    });
}

void dlgWeather::OnUpdateOverTime()
{
    m_overTimer.stop();
    if (nClosed == 0)
        noteUnlessCovered(HX_TR("NetWork is not good, please wait for a while!"), this, NOTE_MS);
}

void dlgWeather::on_click_Back()
{
    m_overTimer.stop();
    nClosed = 1;
    SettingPage::on_click_Back();
}

void dlgWeather::on_click_Delete()
{
    if (ui->editSearch->hasFocus())
        qOnBackspaceClicked(this);
}

int dlgWeather::storeForDesktop()
{
    if (!nuxSetRegistryInt(USER_INI, kSection, "bDesktop", 1))
        return 0;
    SaveConfigsToRegistry();
    return AreConfigsSaved();
}

void dlgWeather::on_click_Set2Desktop()
{
    qReturnLineEdit(ui->editSearch);
    if (!noteUnlessSaved(storeForDesktop(), this))
        return;
    noteBox(HX_TR("Succeed to Set Desktop!"), this, NOTE_MS);
    GetWeatherFrame()->RefreshBySendRequest();
}

// What changes here or elsewhere reaches page and home screen together.
void dlgWeather::OnUnitChanged(HREGISTRY changed)
{
    clearInfo();
    if (changed == weatherSection()) {
        nuxTrace(TRACE_NOTE, "Refresh weather data");
        takeConfiguredCity();
    }
    strViewName = kAllViews;
    search(ui->editSearch->text(), false);
}
