#include "media/dlgMediaManager.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "frame/roomHooks.h"
#include "frame/tableRows.h"
#include "media/contactImages.h"
#include "media/dlgImageImport.h"
#include "media/dlgSoundImport.h"
#include "media/dlgVideoImport.h"
#include "media/imagePreview.h"
#include "media/mediaListLook.h"
#include "media/mediaNameDelegate.h"
#include "media/soundPreview.h"
#include "media/videoPreview.h"
#include "support/file/fileTools.h"
#include "support/host/box.h"
#include "support/host/desktop.h"
#include "support/host/dialogs.h"
#include "support/host/image.h"
#include "support/host/message.h"
#include "support/host/screen.h"
#include "support/host/storage.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "support/host/xmlcache.h"
#include "ui_dlgMediaManager.h"
#include <QKeyEvent>
#include <algorithm>

namespace {

enum { KEY_PREVIEW = 0, KEY_ERASE = 1, KEY_USB = 2 };

constexpr int kPathRole = Qt::UserRole;     // of column 0
constexpr int kReadOnlyRole = Qt::UserRole; // of column 1
constexpr int kImageDelayMs = 500;
constexpr int kVideoDelayMs = 0;
constexpr int kSoundDelayMs = 1000;
constexpr int kNoMediaMs = 3000;
constexpr size_t kRowsAStep = 64; // more than the list shows

constexpr int kFactsAir = 9; // between a picture and what is said of it
constexpr int kFactsTextSize = 16;
constexpr int kFactsTextWeight = 50;

const QRect kContactPreview(QPoint(585, 150), QPoint(710, 275));
const QRect kWidePreview(QPoint(495, 150), QPoint(794, 329));
const char* const kWallpaper = "wallpaper";
const char* const kPhotos = "ephoto";
const char* const kSound = "sound";
const char* const kContactImage = "contact-image";
const char* const kPlayIcon = HX_THEME("button/btn_play_bg01.png");
const char* const kThemeSection = "Theme";
const char* const kWallpaperKey = "strWallpaper";
const char* const kStockWallpaper = "/phone/resource/sysdata/wallpaper/wallpaper.jpg";

chString pathOf(const QTableWidget* list, int row)
{
    const QTableWidgetItem* item = list->item(row, 0);
    return item ? item->data(kPathRole).value<chString>() : chString();
}

QByteArray bytesOf(const chString& path)
{
    return QByteArray(path.GetText());
}

void removeFile(const chString& path)
{
    if (!fileRemove(path))
        nuxTrace(TRACE_NOTE, "the file could not be removed: %s", path.GetText());
}

} // namespace

dlgMediaManager::dlgMediaManager(QWidget* parent, tagLeftBarInfo* info)
    : QDialog(parent, Qt::FramelessWindowHint), LeftBarOperation(info), ui(new Ui::dlgMediaManager)
{
    qRegisterMetaType<chString>("chStringA");
    ui->setupUi(this);
    m_frame.Build(this, this, ui->frmBackground, "", KEY_BACK);
    m_formPreview = ui->labImagePreview->geometry();
    m_formList = ui->tabWgtMediaList->geometry();
    ui->labImagePreview->hide();
    ui->labImageFacts->hide();
    setFontStyle(kFactsTextSize, kFactsTextWeight, ui->labImageFacts, true);
    QPalette palette = ui->labImageFacts->palette();
    palette.setColor(QPalette::WindowText, kMediaSecondaryText);
    ui->labImageFacts->setPalette(palette);
    setupMediaFileList(ui->tabWgtMediaList);
    connect(ui->tabWgtMediaList, &QTableWidget::currentItemChanged, this,
            &dlgMediaManager::on_my_currentItemChanged);
}

dlgMediaManager::~dlgMediaManager() = default;

int dlgMediaManager::SetTitle(const char* title, const char* icon)
{
    m_frame.SetTitle(title);
    m_frame.SetLeftBar(icon, title);
    return 1;
}

int dlgMediaManager::LoadImageMedia(const char* type)
{
    BeginLoad(type);
    PlaceList(true);
    PlaceImagePreview();
    auto* preview = new imagePreview(this, ui->labImagePreview, kImageDelayMs, PREVIEW_IMAGE);
    preview->SetFactsLabel(ui->labImageFacts);
    return EndLoad(preview, "image");
}

int dlgMediaManager::LoadVideoMedia(const char* type)
{
    BeginLoad(type);
    PlaceList(false);
    ShowPreviewKey(true);
    return EndLoad(new videoPreview(this, kVideoDelayMs, PREVIEW_VIDEO), "video");
}

int dlgMediaManager::LoadSoundMedia(const char* type)
{
    BeginLoad(type);
    PlaceList(false);
    ShowPreviewKey(false);
    return EndLoad(new soundPreview(this, soundPreview::StoredVolume(), kSoundDelayMs, PREVIEW_SOUND),
                   "sound");
}

// The preview of the type before takes its picture and its sound along.
void dlgMediaManager::BeginLoad(const char* type)
{
    if (m_pPreview)
        m_pPreview->stopPreview();
    delete m_pPreview;
    m_pPreview = nullptr;
    m_strMediaType = type;
}

int dlgMediaManager::EndLoad(basePreview* preview, const char* usbKey)
{
    m_pPreview = preview;
    m_frame.SetSoftKey(KEY_USB, usbKey, HX_TR("USB"), SLOT(on_click_USB()));
    InitData();
    return 1;
}

void dlgMediaManager::PlaceImagePreview()
{
    if (m_strMediaType == kContactImage) {
        ui->labImagePreview->setGeometry(kContactPreview);
        ShowPreviewKey(false);
    } else if (m_strMediaType == kWallpaper || m_strMediaType == kPhotos) {
        ui->labImagePreview->setGeometry(kWidePreview);
        ShowPreviewKey(true);
    } else {
        ui->labImagePreview->setGeometry(m_formPreview);
    }
    QRect facts = ui->labImageFacts->geometry();
    facts.moveCenter(ui->labImagePreview->geometry().center());
    facts.moveTop(ui->labImagePreview->geometry().bottom() + kFactsAir);
    ui->labImageFacts->setGeometry(facts);
}

// Without pictures to show the list has the whole page.
void dlgMediaManager::PlaceList(bool isBesidePreview)
{
    placeMediaList(ui->tabWgtMediaList, ui->frmList, m_formList, isBesidePreview);
    fitMediaFileList(ui->tabWgtMediaList);
}

void dlgMediaManager::ShowPreviewKey(bool isThere)
{
    if (isThere)
        m_frame.SetSoftKey(KEY_PREVIEW, "Preview", HX_TR("Preview"), SLOT(on_click_Preview()));
    else
        m_frame.SetSoftKey(KEY_PREVIEW, "", "", nullptr);
}

void dlgMediaManager::InitData()
{
    fillFileListByType();
    DisplayDeleteButton();
}

bool dlgMediaManager::fillFileListByType()
{
    m_rowsToCome.Clear();
    m_paths.clear();
    qResetTableWidgetContent(ui->tabWgtMediaList);
    std::vector<tagMediaFile> files;
    if (!mediaFilesRead(m_strMediaType, files))
        return false;
    AppendFiles(files);
    if (ui->tabWgtMediaList->rowCount() > 0)
        ui->tabWgtMediaList->setCurrentCell(0, 0);
    return true;
}

// What the list has room for is there at once, thousands of files come while the page is already used.
void dlgMediaManager::AppendFiles(const std::vector<tagMediaFile>& files)
{
    for (const tagMediaFile& file : files)
        m_paths.insert(bytesOf(file.strPath));
    size_t first = 0;
    if (m_rowsToCome.IsDone()) {
        AddRows(files, 0);
        first = kRowsAStep;
    }
    if (first >= files.size())
        return;
    const auto rest = std::make_shared<const std::vector<tagMediaFile>>(files);
    for (; first < files.size(); first += kRowsAStep)
        m_rowsToCome.AddForLater([this, rest, first] { AddRows(*rest, first); });
}

void dlgMediaManager::AddRows(const std::vector<tagMediaFile>& files, size_t first)
{
    const int count = int(std::min(files.size() - first, kRowsAStep));
    const int row = ui->tabWgtMediaList->rowCount();
    ui->tabWgtMediaList->setRowCount(row + count);
    for (int i = 0; i < count; ++i)
        addMediaItem(row + i, files[first + size_t(i)]);
}

void dlgMediaManager::addMediaItem(int row, const tagMediaFile& file)
{
    QTableWidgetItem* name = new QTableWidgetItem(toQString(file.strName));
    name->setData(kPathRole, QVariant::fromValue(file.strPath));
    if (file.nShortName > 0)
        name->setData(MEDIA_SHORT_NAME_ROLE, int(QString::fromUtf8(file.strName, file.nShortName).size()));
    QTableWidgetItem* state = new QTableWidgetItem;
    state->setData(kReadOnlyRole, file.bReadOnly);
    ui->tabWgtMediaList->setItem(row, 0, name);
    ui->tabWgtMediaList->setItem(row, 1, state);
}

void dlgMediaManager::on_reload_FileList()
{
    std::vector<tagMediaFile> files;
    mediaFilesRead(m_strMediaType, files);
    const auto isKnown = [this](const tagMediaFile& file) { return m_paths.contains(bytesOf(file.strPath)); };
    files.erase(std::remove_if(files.begin(), files.end(), isKnown), files.end());
    AppendFiles(files);
}

void dlgMediaManager::on_exit_MediaImport()
{
    DisplayDeleteButton();
    if (ui->tabWgtMediaList->currentRow() < 0 && ui->tabWgtMediaList->rowCount() > 0)
        ui->tabWgtMediaList->setCurrentCell(0, 0);
}

void dlgMediaManager::DisplayDeleteButton()
{
    if (ui->tabWgtMediaList->rowCount() > 0)
        m_frame.SetSoftKey(KEY_ERASE, "Delete", HX_TR("Delete"), SLOT(on_click_Delete()));
    else
        m_frame.SetSoftKey(KEY_ERASE, "", "", nullptr);
}

chString dlgMediaManager::getCurrentMediaFullPath() const
{
    return pathOf(ui->tabWgtMediaList, ui->tabWgtMediaList->currentRow());
}

bool dlgMediaManager::getCurrentMediaReadOnly() const
{
    const QTableWidgetItem* state = ui->tabWgtMediaList->item(ui->tabWgtMediaList->currentRow(), 1);
    return !state || state->data(kReadOnlyRole).toBool();
}

int dlgMediaManager::findItemValue(const chString& path) const
{
    for (int row = 0; row < ui->tabWgtMediaList->rowCount(); ++row) {
        if (pathOf(ui->tabWgtMediaList, row) == path)
            return row;
    }
    return -1;
}

void dlgMediaManager::ShowPlayIcon(int row, bool isThere)
{
    if (QTableWidgetItem* state = ui->tabWgtMediaList->item(row, 1))
        state->setIcon(isThere ? QIcon(GetImageManager()->GetImage(kPlayIcon)) : QIcon());
}

// A step from one column to the other stays on the file.
void dlgMediaManager::on_my_currentItemChanged()
{
    QTableWidgetItem* current = ui->tabWgtMediaList->item(ui->tabWgtMediaList->currentRow(), 0);
    if (current && current == m_pCurrentItem)
        return;
    m_pPreview->stopPreview();
    if (m_pCurrentItem) {
        ShowPlayIcon(ui->tabWgtMediaList->row(m_pCurrentItem), false);
        m_pCurrentItem = nullptr;
    }
    if (!current)
        return;
    m_pCurrentItem = current;
    ShowPlayIcon(current->row(), true);
    m_pPreview->startPreview(getCurrentMediaFullPath());
}

void dlgMediaManager::on_click_Preview()
{
    const int row = ui->tabWgtMediaList->currentRow();
    if (row < 0) {
        xMessageBox(Translate(HX_TR("Error")), Translate(HX_TR("No media found in this phone!")), BOX_NOTE,
                    this, kNoMediaMs);
        return;
    }
    if (row == 0)
        m_pPreview->startPreview(getCurrentMediaFullPath());
    m_pPreview->on_start_preview(false);
}

void dlgMediaManager::on_click_Delete()
{
    if (!m_pCurrentItem)
        return;
    const chString wallpaper = NUX_SubClass::nuxGetRegistryString(USER_INI, kThemeSection, kWallpaperKey, "");
    const chString path = getCurrentMediaFullPath();
    if (getCurrentMediaReadOnly())
        noteBox(HX_TR("It's read only,can't be deleted!"), this);
    else if (path == wallpaper)
        DeleteWallpaper(path);
    else if (m_strMediaType == kContactImage && IsContactImageUse(path))
        DeleteContactImage(path);
    else
        DeleteOther(path);
    if (ui->tabWgtMediaList->rowCount() == 0)
        DisplayDeleteButton();
}

// The row goes whatever becomes of the file.
void dlgMediaManager::DeleteFile(const chString& path)
{
    removeFile(path);
    m_paths.remove(bytesOf(path));
    ui->tabWgtMediaList->removeRow(findItemValue(path));
}

void dlgMediaManager::DeleteWallpaper(const chString& path)
{
    if (!questionBox(HX_TR("It's the Wall Paper! Delete it ?"), this))
        return;
    DeleteFile(path);
    const int isStored = nuxSetRegistryString(USER_INI, kThemeSection, kWallpaperKey, kStockWallpaper);
    desktop_SetWallPaper(nullptr);
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_WALLPAPER, 0);
    noteUnlessSaved(isStored, this);
}

void dlgMediaManager::DeleteContactImage(const chString& path)
{
    if (!questionBox(HX_TR("It's Image is use,Delete it ?"), this))
        return;
    DeleteFile(path);
    if (!ClearUseImage(path))
        noteBox(HX_TR("The contact cannot be saved!"), this);
}

void dlgMediaManager::DeleteOther(const chString& path)
{
    const chString name = fromQString(m_pCurrentItem->text());
    const chString question = chString(Translate(HX_TR("Delete "))) + name + "?";
    if (!xMessageBox(Translate(HX_TR("Note")), question, BOX_QUESTION, this, -1))
        return;
    DeleteFile(path);
    if (m_strMediaType == kSound)
        getMyXmlCache()->removeRingFileData(name, path);
}

void dlgMediaManager::on_click_USB()
{
    on_click_USB(m_frame.m_pSoftKeyBar->GetButton(KEY_USB));
}

// What was imported has to be in the list before its first row is chosen, in whichever order the page tells
// that it is closed.
void dlgMediaManager::on_click_USB(const qSoftButton* button)
{
    if (device_GetStorageCount(STORAGE_ANY) == 0) {
        noteBox(HX_TR("The USB device is not connected!"), this);
        return;
    }
    QDialog* page = NewImportPage(button->name());
    page->setAttribute(Qt::WA_DeleteOnClose);
    connect(page, &QDialog::finished, this, &dlgMediaManager::on_reload_FileList);
    connect(page, &QDialog::rejected, this, &dlgMediaManager::on_exit_MediaImport, Qt::QueuedConnection);
    screenBringUp(page);
}

// kind: the name of the key. Pictures of contacts get the size that they are shown in.
QDialog* dlgMediaManager::NewImportPage(const QString& kind)
{
    if (kind == "sound") {
        m_pPreview->stopPreview();
        return new dlgSoundImport(m_strMediaType, this);
    }
    if (kind == "video")
        return new dlgVideoImport(m_strMediaType, this);
    if (m_strMediaType == kContactImage)
        return new dlgImageImport(m_strMediaType, kContactPreview.width(), kContactPreview.height(), this);
    return new dlgImageImport(m_strMediaType, this);
}

// The page that the list was opened from shows what has become of it.
void dlgMediaManager::on_click_Back()
{
    dlgContactEditor* editor = getContactEditorDlg();
    if (m_strMediaType == kWallpaper && roomHooks().reloadWallPaper)
        roomHooks().reloadWallPaper();
    else if (m_strMediaType == kSound && roomHooks().reloadSound)
        roomHooks().reloadSound();
    else if (m_strMediaType == kContactImage && editor)
        editor->reloadContactImage();
    reject();
}

bool dlgMediaManager::CallListMoveUp()
{
    return tableWrapRow(ui->tabWgtMediaList, Qt::Key_Up);
}

bool dlgMediaManager::CallListMoveDown()
{
    return tableWrapRow(ui->tabWgtMediaList, Qt::Key_Down);
}

// The table takes the steps between the ends itself.
void dlgMediaManager::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Up)
        CallListMoveUp();
    else if (event->key() == Qt::Key_Down)
        CallListMoveDown();
    else if (event->key() == Qt::Key_Escape)
        on_click_Back();
    else if (!qIsOkKey(event->key()))
        QDialog::keyPressEvent(event);
    else if (m_strMediaType != kContactImage && !event->isAutoRepeat())
        on_click_Preview();
}

bool dlgMediaManager::event(QEvent* event)
{
    if (m_pPreview && m_pPreview->GetType() == PREVIEW_SOUND) {
        if (event->type() == QEvent::WindowActivate)
            PlayCurrentAgain();
        else if (event->type() == QEvent::WindowDeactivate)
            m_pPreview->stopPreview();
    }
    return QDialog::event(event);
}

void dlgMediaManager::PlayCurrentAgain()
{
    const int row = ui->tabWgtMediaList->currentRow();
    if (row < 0)
        return;
    ui->tabWgtMediaList->selectRow(row);
    m_pPreview->startPreview(getCurrentMediaFullPath());
}

void dlgMediaManager::hideEvent(QHideEvent* event)
{
    if (m_pPreview)
        m_pPreview->stopPreview();
    QDialog::hideEvent(event);
}
