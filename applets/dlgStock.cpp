#include "applets/dlgStock.h"
#include "applets/cStockController.h"
#include "applets/feed.h"
#include "applets/stockEntry.h"
#include "applets/stockInfo.h"
#include "applets/stockList.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/box.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_dlgStock.h"
#include <algorithm>
#include <climits>

dlgStock* g_pDlgStock = nullptr;

namespace {

enum { KEY_ADD = 0, KEY_REMOVE = 1, KEY_METHOD = 2, KEY_EXIT = 3 };

constexpr int kNoteMs = 3000;
constexpr int kLoadMs = 3000;
constexpr int kMostSeconds = INT_MAX / 1000;
constexpr int kMostLetters = 200; // more than a label shows of any size

constexpr int kDataSize = 22;
constexpr int kDataWeight = 87;
constexpr int kNormalWeight = 50;
constexpr int kSemiBold = 63;
constexpr int kBold = 75;
constexpr int kTitleSize = 19;
constexpr int kPriceSize = 44;
constexpr int kRateSize = 24;
constexpr int kSmallSize = 16;
constexpr int kSmallest = 10;

// The price and its changes stand one behind the other.
constexpr int kPriceWidth = 240;
constexpr int kRateWidth = 130;
constexpr int kRatesFrom = 220;
constexpr int kPriceAir = 28;
constexpr int kRateAir = 12;
constexpr int kTimeWidth = 200;
constexpr int kTimeAir = 5;

const QRect kRefresh(QPoint(300, 54), QSize(78, 40));
const QRect kDelete(QPoint(386, 54), QSize(78, 40));
const QColor kCaption(96, 119, 141);
const QColor kTitle(255, 255, 255);
const QColor kTrend[] = {QColor(232, 54, 26), QColor(0, 153, 68)}; // red, green

void setColour(QLabel* label, const QColor& colour)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
}

int textWidth(const QLabel* label)
{
    return label->fontMetrics().horizontalAdvance(label->text());
}

// Makes the letters smaller until they have room.
void fit(QLabel* label, int size, int weight, int width)
{
    do {
        setFontStyle(size, weight, label, true);
    } while (textWidth(label) > width && --size >= kSmallest);
}

// Places the label of that text, right after x; where the next one may begin.
int placeBehind(QLabel* label, int x, int most)
{
    const int width = std::min(textWidth(label) + 2, most);
    label->setGeometry(x, label->y(), width, label->height());
    return x + width;
}

} // namespace

dlgStock::dlgStock(QWidget* parent, tagLeftBarInfo* info, const char* view)
    : SettingPage(parent, info), StockView(view), ui(new Ui::dlgStock), pRefreshTimer(new QTimer(this)),
      pLoadTimer(new QTimer)
{
    ui->setupUi(this);
    m_frame.Build(this, nullptr, ui->frmBackGround, "", 0);
    SetBackgroundToFrame(ui->frmBackGround, HX_THEME("general/stock_bg.jpg"));
    m_frame.m_pTopBar->setObjectName("labTop");
    m_frame.m_pSoftKeyBar->setObjectName("labSoftBar");
    m_frame.SetSoftKey(KEY_ADD, "Add stock", HX_TR("Add stock"), SLOT(on_click_AddStock()));
    m_frame.SetSoftKey(KEY_REMOVE, "Delete stock", HX_TR("Delete stock"), SLOT(on_click_DeleteStock()));
    m_frame.SetSoftKey(KEY_METHOD, "IME", HX_TR("IME"), SLOT(on_click_IME()));
    m_frame.SetSoftKey(KEY_EXIT, "Exit", HX_TR("Exit"), SLOT(on_click_Exit()));
    FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_AS_BEFORE},
                 {FOCUS_ANY, SHOWS_NOTHING, SHOWS_AS_BEFORE},
                 {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_AS_BEFORE}});
    qInstallIME(ui->editSearch, "2aB,ABC,abc,123");
    buildLabels();
    buildButtons();
    qFollowLanguage(this, [this] { showOwnTexts(); });
    showOwnTexts();
    g_pDlgStock = this;
    connect(pLoadTimer.get(), &QTimer::timeout, this, &dlgStock::OnLoadOverTime);
    followList(true);
    // The end of pRefreshTimer is connected to nothing: quotes change when the user asks for them.
}

dlgStock::~dlgStock()
{
    if (g_pDlgStock == this)
        g_pDlgStock = nullptr;
    GetGlobalCStockController().ForgetView(this);
}

void dlgStock::showOwnTexts()
{
    setWindowTitle(qTranslate("Stock"));
    // The same word as the loudness, in English.
    ui->labVolume->setText(qTranslate(HX_TR_NOTE("Volume", "of trades"), "of trades"));
}

// What is shown of a quote, in the order of the page.
struct dlgStock::tagPart
{
    QLabel* pLabel;
    chString tagCStockInfo::*pField;
    int nSize;
    int nWeight;
    int nWidth; // pixels
};

std::vector<dlgStock::tagPart> dlgStock::parts() const
{
    using info = tagCStockInfo;
    const int width = ui->labOpeningPriceData->width();
    return {
        {ui->labStockName, &info::strCompany, kDataSize, kNormalWeight, ui->labStockName->width()},
        {ui->labCurrentPrice, &info::strLast, kPriceSize, kBold, kPriceWidth},
        {ui->labCurrentRate, &info::strPercChange, kRateSize, kSemiBold, kRateWidth},
        {ui->labCurrentPriceRate, &info::strChange, kRateSize, kSemiBold, kRateWidth},
        {ui->labOpeningPriceData, &info::strOpen, kDataSize, kDataWeight, width},
        {ui->labPrevClosingPriceData, &info::strPrevClose, kDataSize, kDataWeight, width},
        {ui->labLowData, &info::strLow, kDataSize, kDataWeight, width},
        {ui->labHighData, &info::strHigh, kDataSize, kDataWeight, width},
        {ui->labBidPriceData, &info::strBid, kDataSize, kDataWeight, width},
        {ui->labAskPriceData, &info::strAsk, kDataSize, kDataWeight, width},
        {ui->labMarketCapData, &info::strMarketCap, kDataSize, kDataWeight, width},
        {ui->labVolumeData, &info::strVolume, kDataSize, kDataWeight, width},
        {ui->labTime, &info::strUpdated, kSmallSize, kNormalWeight, kTimeWidth},
    };
}

void dlgStock::buildLabels()
{
    ui->labStock->raise(); // over the top bar
    setFontStyle(kTitleSize, kSemiBold, ui->labStock, true);
    setColour(ui->labStock, kTitle);
    setFontStyle(kSmallSize, kNormalWeight, ui->labUpdated, true);
    for (QLabel* label : {ui->labOpeningPrice, ui->labPrevClosingPrice, ui->labLow, ui->labHigh,
                          ui->labBidPrice, ui->labAskPrice, ui->labMarketCap, ui->labVolume, ui->labUpdated,
                          ui->labTime, ui->labCurrentRate, ui->labCurrentPriceRate})
        setColour(label, kCaption);
    showInfo(STOCK_DEF_INFO);
}

void dlgStock::buildButtons()
{
    btnRefresh = CreateUIPushButton(kRefresh, "btnRefresh", this);
    SetButton3StatusImage(btnRefresh, HX_THEME("button/btn_refresh_bg01.png"),
                          HX_THEME("button/btn_refresh_bg02.png"), HX_THEME("button/btn_refresh_bg01.png"));
    connect(btnRefresh, &QPushButton::clicked, this, &dlgStock::click_btnRefresh);
    btnDelete = CreateUIPushButton(kDelete, "btnDelete", this);
    SetButton3StatusImage(btnDelete, HX_THEME("button/btn_delete_bg01.png"),
                          HX_THEME("button/btn_delete_bg02.png"), HX_THEME("button/btn_delete_bg03.png"));
    connect(btnDelete, &QPushButton::clicked, this, &dlgStock::click_btnDelete);
    for (QPushButton* button : {btnRefresh, btnDelete})
        button->setFocusPolicy(Qt::NoFocus);
}

void dlgStock::showInfo(const tagCStockInfo& info)
{
    for (const tagPart& part : parts()) {
        part.pLabel->setText(feedShownText(toQString(info.*part.pField), kMostLetters));
        fit(part.pLabel, part.nSize, part.nWeight, part.nWidth);
    }
    int x = placeBehind(ui->labCurrentPrice, ui->labCurrentPrice->x(), kPriceWidth);
    x = placeBehind(ui->labCurrentPriceRate, std::max(x + kPriceAir, kRatesFrom), kRateWidth);
    placeBehind(ui->labCurrentRate, x + kRateAir, kRateWidth);
    const int right = ui->labStockName->geometry().right();
    const int time = std::min(textWidth(ui->labTime) + 2, kTimeWidth);
    ui->labTime->setGeometry(right - time + 1, ui->labTime->y(), time, ui->labTime->height());
    ui->labUpdated->move(ui->labTime->x() - kTimeAir - ui->labUpdated->width(), ui->labUpdated->y());
}

void dlgStock::colourRates(int index)
{
    setColour(ui->labCurrentRate, kTrend[index]);
    setColour(ui->labCurrentPriceRate, kTrend[index]);
}

void dlgStock::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    nClosed = 0;
    nRiseColor = nuxGetRegistryInt(USER_INI, "Stock", "nRiseColor", 1);
    GetGlobalCStockController().SetStockInfo(STOCK_DEF_INFO);
    showInfo(STOCK_DEF_INFO);
    nRefreshSeconds = nuxGetRegistryInt(USER_INI, "Stock", "nTime", 60);
    StartTimerFromCfg();
    // The page paints first.
    QTimer::singleShot(0, this, &dlgStock::relayLoad);
    qSetCurrentIME(ui->editSearch, "2aB");
    ui->editSearch->setFocus();
}

void dlgStock::relayLoad()
{
    ReloadStockList();
    UpdateDenominator();
    if (ui->cmbStockList->count() > 0)
        ui->cmbStockList->setCurrentIndex(0);
    click_btnRefresh();
}

void dlgStock::DownloadStockInfo(const chString& code)
{
    GetGlobalCStockController().StockRequest(chReferObject(this), code);
    ResetTimerFromCfg();
}

void dlgStock::RefreshView(const tagCStockInfo& info)
{
    pLoadTimer->stop();
    showInfo(info);
    const char trend = *info.strChange.GetText();
    const int rise = nRiseColor == 0 ? 0 : 1;
    if (trend == '-')
        colourRates(1 - rise);
    else if (trend == '+')
        colourRates(rise);
}

void dlgStock::ShowNote(const char* text)
{
    noteUnlessCovered(text, this, kNoteMs);
}

void dlgStock::followList(bool bFollow)
{
    const auto changed = qOverload<int>(&QComboBox::currentIndexChanged);
    if (bFollow)
        connect(ui->cmbStockList, changed, this, &dlgStock::Changed_cmbStockList);
    else
        disconnect(ui->cmbStockList, changed, this, &dlgStock::Changed_cmbStockList);
}

QStringList dlgStock::codes() const
{
    QStringList codes;
    for (int i = 0; i < ui->cmbStockList->count(); ++i)
        codes.append(ui->cmbStockList->itemText(i));
    return codes;
}

int dlgStock::indexOf(const QString& code) const
{
    return ui->cmbStockList->findText(code, Qt::MatchExactly | Qt::MatchCaseSensitive);
}

// Without a download. current: selected when it is there, else the first one is.
void dlgStock::showCodes(const QStringList& codes, const QString& current)
{
    followList(false);
    ui->cmbStockList->clear();
    ui->cmbStockList->addItems(codes);
    ui->cmbStockList->setCurrentIndex(std::max(indexOf(current), codes.isEmpty() ? -1 : 0));
    followList(true);
    UpdateDenominator();
}

void dlgStock::ReloadStockList()
{
    QStringList stored;
    if (stockListRead(stored) && IsStockInfoChange(stored))
        showCodes(stored, QString());
}

void dlgStock::reloadKeeping(const QString& code)
{
    QStringList stored;
    if (stockListRead(stored) && IsStockInfoChange(stored))
        showCodes(stored, code);
}

bool dlgStock::IsStockInfoChange(const QStringList& codes) const
{
    return codes != this->codes();
}

bool dlgStock::IsStockInCombo(const chString& code) const
{
    return indexOf(toQString(code)) >= 0;
}

int dlgStock::GetStockCount() const
{
    return stockListCount();
}

int dlgStock::SaveStockList()
{
    const STOCK_LIST_SAVED saved = stockListSave(codes());
    if (saved == STOCK_LIST_FULL)
        ShowNote(HX_TR("Stock is full!"));
    return saved == STOCK_LIST_FULL ? 0 : noteUnlessSaved(saved == STOCK_LIST_DONE, this);
}

// What could not be stored is not shown as if it were: a second try would find it there already.
void dlgStock::saveOrRestore(const QStringList& before, const QString& current)
{
    if (SaveStockList())
        return;
    showCodes(before, current);
    Changed_cmbStockList(ui->cmbStockList->currentIndex());
}

void dlgStock::UpdateDenominator()
{
    ui->labDenominator->setText(
        QString::asprintf("%d/%d", ui->cmbStockList->currentIndex() + 1, ui->cmbStockList->count()));
}

void dlgStock::StartTimerFromCfg()
{
    // A time of none would keep the phone busy.
    pRefreshTimer->start(std::clamp(nRefreshSeconds, 1, kMostSeconds) * 1000);
}

void dlgStock::ResetTimerFromCfg()
{
    pRefreshTimer->stop();
    StartTimerFromCfg();
}

void dlgStock::OnTimer(int, int)
{
    click_btnRefresh();
}

void dlgStock::Changed_cmbStockList(int)
{
    showInfo(STOCK_DEF_INFO);
    UpdateDenominator();
    pLoadTimer->start(kLoadMs);
    click_btnRefresh();
}

void dlgStock::click_btnRefresh()
{
    const QString code = ui->cmbStockList->currentText();
    if (!code.isEmpty())
        DownloadStockInfo(fromQString(code));
}

// Only the soft key deletes: this one is too close to the refresh for a finger.
void dlgStock::click_btnDelete() {}

void dlgStock::OnLoadOverTime()
{
    pLoadTimer->stop();
    if (!nClosed)
        ShowNote(HX_TR("NetWork is not good, please wait for a while!"));
}

void dlgStock::on_click_AddStock()
{
    const QString code = qReturnLineEdit(ui->editSearch);
    const QString current = ui->cmbStockList->currentText();
    if (code.isEmpty())
        return ShowNote(HX_TR("Input is empty!"));
    if (IsStockInCombo(fromQString(code)))
        return ShowNote(HX_TR("The stock is existed!"));
    if (GetStockCount() == STOCK_COUNT_LIMIT) {
        ShowNote(HX_TR("Stock is full!"));
        return reloadKeeping(current);
    }
    const QString question = qTranslate(HX_TR("Add %1 ?")).arg(code);
    if (!xMessageBox(Translate(HX_TR("Add Stock")), question.toUtf8(), BOX_QUESTION, this, -1))
        return;
    reloadKeeping(current);
    // Somebody else may have added it meanwhile.
    if (IsStockInCombo(fromQString(code)))
        return ShowNote(HX_TR("The stock is existed!"));
    const QStringList before = codes();
    ui->cmbStockList->addItem(code);
    ui->cmbStockList->setCurrentIndex(ui->cmbStockList->count() - 1);
    saveOrRestore(before, current);
}

void dlgStock::on_click_DeleteStock()
{
    if (ui->cmbStockList->count() == 0)
        return;
    const QString code = ui->cmbStockList->currentText();
    const QString question = qTranslate(HX_TR("Delete ")) + code + QStringLiteral(" ?");
    if (!xMessageBox(Translate(HX_TR("Delete Stock")), question.toUtf8(), BOX_QUESTION, this, -1))
        return;
    reloadKeeping(code);
    const QStringList before = codes();
    removeCode(code);
    UpdateDenominator();
    saveOrRestore(before, code);
    if (ui->cmbStockList->count() == 0) {
        GetGlobalCStockController().ForgetRequest();
        RefreshView(STOCK_DEF_INFO);
    }
}

// The one that moves up is selected and asked for; behind the last one, the last.
void dlgStock::removeCode(const QString& code)
{
    const int index = indexOf(code);
    if (index < 0)
        return;
    followList(false);
    ui->cmbStockList->removeItem(index);
    followList(true);
    Changed_cmbStockList(ui->cmbStockList->currentIndex());
}

void dlgStock::on_click_IME()
{
    SettingPage::on_click_IME();
}

void dlgStock::on_click_Exit()
{
    leave();
    close();
}

// However the page is closed.
void dlgStock::reject()
{
    leave();
    SettingPage::reject();
}

void dlgStock::leave()
{
    nClosed = 1;
    pRefreshTimer->stop();
    ui->editSearch->clear();
}

int UpdataStockData()
{
    if (!g_pDlgStock)
        return 0;
    g_pDlgStock->ReloadStockList();
    return 1;
}
