#include "settings/personal/dlgScreenSaver.h"
#include "frame/configFiles.h"
#include "frame/modSetting.h"
#include "frame/roomHooks.h"
#include "frame/wgtHelper.h"
#include "media/PhotoFile.h"
#include "media/imagePreview.h"
#include "support/file/path.h"
#include "support/host/combo.h"
#include "support/host/desktop.h"
#include "support/host/image.h"
#include "support/host/message.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "ui_dlgScreenSaver.h"
#include <QAbstractItemView>
#include <QPointer>
#include <QTimer>

namespace {

const char* const kTheme = "Theme";
const char* const kWallpaper = "strWallpaper";
const char* const kFirstWallpaper = "wallpaper.jpg";
const char* const kOwnFolder = "/phone/resource/sysdata/wallpaper/"; // of a name without a folder
constexpr int kPreviewDelayMs = 200;
constexpr int kLeft = 190;

const tagChoice kSaverTimes[] = {{HX_TR("Never"), "0"},      {HX_TR("30seconds"), "30"},
                                 {HX_TR("1minute"), "60"},   {HX_TR("2minutes"), "120"},
                                 {HX_TR("5minutes"), "300"}, {HX_TR("10minutes"), "600"}};
const tagChoice kSaverTypes[] = {{HX_TR("Photo"), "0"}, {HX_TR("Video"), "1"}};
const tagChoice kSleepTimes[] = {{HX_TR("Always on"), "0"},   {HX_TR("1minute"), "60"},
                                 {HX_TR("2minutes"), "120"},  {HX_TR("5minutes"), "300"},
                                 {HX_TR("10minutes"), "600"}, {HX_TR("30minutes"), "1800"}};

QPointer<dlgScreenSaver> s_pPage;

bool isSignageEnabled()
{
    return roomHooks().isNdeckEnable && roomHooks().isNdeckEnable();
}

} // namespace

dlgScreenSaver* getScreenSaverDlg()
{
    return s_pPage;
}

dlgScreenSaver::dlgScreenSaver(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgScreenSaver)
{
    s_pPage = this;
    ui->setupUi(this);
    BuildFrame(ui->frmScreenSaverBkg, HX_TR("Desktop Setting"), KEYS_CHOICE);
    m_frame.SetSoftKey(SOFT_KEY_IME, "Wallpaper Manager", HX_TR("Wallpaper Manager"),
                       SLOT(on_click_Wallpaper()));
    const HREGISTRY saver = registryOpen(USER_INI, "ScreenSaver");
    Bind({
        {ui->cmbBoxScreenSaver, saver, "nTimeout", "", kSaverTimes},
        {ui->cmbBoxScreenType, saver, "eType", "", kSaverTypes},
        {ui->cmbBoxSleep, registryOpen(USER_INI, "Sleep"), "nTimeout", "", kSleepTimes},
    });
    showStoredPicture();
    QTimer::singleShot(0, this, &dlgScreenSaver::InitData);
}

dlgScreenSaver::~dlgScreenSaver() = default;

// The page opens with a picture, before the files are listed; one that takes a moment comes unless another
// has been chosen by then.
void dlgScreenSaver::showStoredPicture()
{
    m_strWallpaper = NUX_SubClass::nuxGetRegistryString(USER_INI, kTheme, kWallpaper, kFirstWallpaper);
    const char* name = pathGetFileNamePos(m_strWallpaper.GetText());
    addFilenameComboBoxItem(ui->cmbBoxPic, name, m_strWallpaper.GetText());
    ui->labShowPic->setScaledContents(true);
    const chString path =
        m_strWallpaper.GetText()[0] == '/' ? m_strWallpaper : chString(kOwnFolder) + m_strWallpaper;
    if (toQString(path).startsWith(kOwnFolder)) {
        const QSize size = ui->labShowPic->size();
        ui->labShowPic->setPixmap(GetImageManager()->GetImageByScale(path, size.width(), size.height()));
        return;
    }
    tagPictureWish wish;
    wish.strPath = path;
    wish.nWidth = ui->labShowPic->width();
    wish.nHeight = ui->labShowPic->height();
    wish.eFit = PICTURE_FIT_SIDES;
    wish.check = photoCheck;
    pictureTell(wish, this, [this, path](PICTURE_RESULT result, const QPixmap& picture) {
        const bool isChosen = qGetExternValue(ui->cmbBoxPic, ui->cmbBoxPic->currentIndex()) == path;
        if (result == PICTURE_READ && isChosen && ui->labShowPic->pixmap().isNull())
            ui->labShowPic->setPixmap(picture);
    });
}

void dlgScreenSaver::InitData()
{
    setupFilenameComboBox(ui->cmbBoxPic, "wallpaper");
    Bind({{ui->cmbBoxPic, registryOpen(USER_INI, kTheme), kWallpaper, ""}});
    connect(ui->cmbBoxPic, &QComboBox::highlighted, this, &dlgScreenSaver::on_cmbBoxPic_Preview);
    connect(ui->cmbBoxPic, &QComboBox::activated, this, &dlgScreenSaver::on_cmbBoxPic_Preview);
    connect(ui->cmbBoxPic, &QComboBox::currentIndexChanged, this, &dlgScreenSaver::on_cmbBoxPic_Preview);
    m_nSaved = ui->cmbBoxPic->currentIndex();
    on_cmbBoxPic_Preview(m_nSaved);
}

void dlgScreenSaver::RefreshData()
{
    layOut(!isSignageEnabled());
    m_nSaved = ui->cmbBoxPic->currentIndex();
    if (m_pPreview)
        m_pPreview->SetDelay(kPreviewDelayMs);
}

// The rows of the saver, or those below them in their place.
void dlgScreenSaver::layOut(bool saver)
{
    for (QWidget* row :
         {static_cast<QWidget*>(ui->labScreenSaver), static_cast<QWidget*>(ui->labScreeType),
          static_cast<QWidget*>(ui->cmbBoxScreenType), static_cast<QWidget*>(ui->cmbBoxScreenSaver)})
        row->setVisible(saver);
    ui->labSleep->move(kLeft, saver ? 230 : 70);
    ui->cmbBoxSleep->move(kLeft, saver ? 260 : 100);
    ui->labWallpaper->move(kLeft, saver ? 310 : 150);
    ui->cmbBoxPic->move(kLeft, saver ? 340 : 180);
}

QWidget* dlgScreenSaver::FirstFocus()
{
    return isSignageEnabled() ? ui->cmbBoxSleep : ui->cmbBoxScreenSaver;
}

void dlgScreenSaver::on_cmbBoxPic_Preview(int index)
{
    m_nPreview = index;
    if (index < 0)
        return;
    if (!m_pPreview)
        m_pPreview = std::make_unique<imagePreview>(nullptr, ui->labShowPic, kPreviewDelayMs, PREVIEW_IMAGE);
    m_pPreview->startPreview(qGetExternValue(ui->cmbBoxPic, index));
}

// Somebody who leaves the list without a choice sees what is chosen.
bool dlgScreenSaver::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut && watched == ui->cmbBoxPic->view() &&
        m_nPreview != ui->cmbBoxPic->currentIndex())
        on_cmbBoxPic_Preview(ui->cmbBoxPic->currentIndex());
    return ConfigPage::eventFilter(watched, event);
}

// The one before is forgotten, the new one is held ready.
void dlgScreenSaver::keepWallpaper()
{
    GetImageManager()->RemoveImageInCache(m_strWallpaper);
    m_strWallpaper = NUX_SubClass::nuxGetRegistryString(USER_INI, kTheme, kWallpaper, "");
}

void dlgScreenSaver::BroadcastChange()
{
    keepWallpaper();
    GetImageManager()->AddNode(m_strWallpaper, 1);
    desktop_SetWallPaper(nullptr);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_WALLPAPER, 0);
}

void dlgScreenSaver::on_click_Save()
{
    if (!Store())
        return;
    m_nSaved = ui->cmbBoxPic->currentIndex();
    accept();
}

void dlgScreenSaver::on_click_Back()
{
    if (ui->cmbBoxPic->currentIndex() != m_nSaved)
        on_cmbBoxPic_Preview(m_nSaved);
    reject();
}

void dlgScreenSaver::on_click_Wallpaper()
{
    settingOpenPage("Wallpaper Manager", this);
    m_strPath = qGetExternValue(ui->cmbBoxPic, ui->cmbBoxPic->currentIndex());
}

// The saved row may have moved with the files before it.
void dlgScreenSaver::refillPictures()
{
    const chString saved = qGetExternValue(ui->cmbBoxPic, m_nSaved);
    setupFilenameComboBox(ui->cmbBoxPic, "wallpaper");
    m_nSaved = ui->cmbBoxPic->findData(toQString(saved));
}

void dlgScreenSaver::reloadWallPaper()
{
    if (m_strPath.IsEmpty())
        m_strPath = qGetExternValue(ui->cmbBoxPic, ui->cmbBoxPic->currentIndex());
    nuxTrace(TRACE_DETAIL, "reloadWallPaper [%s] %d", m_strPath.GetText(), ui->cmbBoxPic->currentIndex());
    refillPictures();
    const int index = qSelectComboBoxItemIsExist(ui->cmbBoxPic, m_strPath);
    m_strPath = "";
    if (index >= 0) {
        on_cmbBoxPic_Preview(index);
        return;
    }
    ui->cmbBoxPic->setCurrentIndex(0);
    on_cmbBoxPic_Preview(0);
    m_nSaved = 0;
    // The manager has stored another one.
    keepWallpaper();
    nuxTrace(TRACE_DETAIL, "---------------After delete, New wallPaper:[%s]----------------------",
             m_strWallpaper.GetText());
    GetImageManager()->AddNode(m_strWallpaper, 1);
}
