#include "media/dlgMediaImport.h"
#include "frame/noteBox.h"
#include "media/basePreview.h"
#include "media/diskWait.h"
#include "media/importJob.h"
#include "media/mediaListLook.h"
#include "support/file/chPathNameA.h"
#include "support/file/diskFolder.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/box.h"
#include "support/host/language.h"
#include "support/host/storage.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "support/host/xmlcache.h"
#include "ui_dlgMediaImport.h"
#include <QKeyEvent>
#include <QPointer>
#include <string>

namespace {

enum { KEY_ENTER = 0, KEY_IMPORT = 1, KEY_DELETE_FILE = 2, KEY_EXIT = 3 };

constexpr int kTextSize = 18; // pixels
constexpr int kTextWeight = 75;
constexpr int kDeleteFailedMs = 3000;
constexpr int kEndMs = 48; // for a cancelled import to clear up
const char* const kStorages = "/storage";
const char* const kTable = "/phone/resource/mediafile.xml";
const char* const kSound = "sound";
const char* const kTitle = HX_TR("File Manager");

int noPercent()
{
    return 0;
}

} // namespace

void setupImportFileList(QListWidget* list)
{
    setFontStyle(kTextSize, kTextWeight, list, true);
    setupMediaRows(list);
}

dlgMediaImport::dlgMediaImport(const char* type, QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint), ui(new Ui::dlgMediaImport), m_devices(this),
      m_strMediaType(type)
{
    ui->setupUi(this);
    setFixedSize(geometry().size());
    move(0, 0);
    SetBackgroundToFrame(ui->frmBackground, HX_THEME("general/gen_setting_bg.jpg"));
    m_pTopBar = qReplaceTopBar(ui->labTopBar, nullptr);
    m_pLeftBar = qReplaceLeftBar(ui->labLeftBar, nullptr, HX_THEME("menu/menu_filemanage.png"));
    m_pSoftKeyBar = qReplaceSoftKeyBar(ui->labSoftKeyBar);
    m_pView = qReplaceMediaImportView(ui->lstWgtMediaList);
    setupImportFileList(m_pView);
    placeMediaList(m_pView, ui->frmList, m_pView->geometry(), true);
    m_pView->setFocus();
    m_pView->installEventFilter(this);
    ui->labImagePreview->hide();
    SetKey(KEY_EXIT, "Exit", HX_TR("Exit"), SLOT(on_click_Back()));
    connect(m_pView, &QListWidget::currentItemChanged, this, &dlgMediaImport::on_currentItemChanged);
    ShowTexts();
    qFollowLanguage(this, [this] { ShowTexts(); });
}

dlgMediaImport::~dlgMediaImport() = default;

void dlgMediaImport::Open(basePreview* preview)
{
    m_pPreview = preview;
    m_pView->LoadMediaType(kTable, m_strMediaType);
}

void dlgMediaImport::HidePreview()
{
    ui->labImagePreview->hide();
    placeMediaList(m_pView, ui->frmList, m_pView->geometry(), false);
}

QLabel* dlgMediaImport::PreviewLabel() const
{
    return ui->labImagePreview;
}

void dlgMediaImport::ShowTexts()
{
    m_pTopBar->setTitle(qTranslate(kTitle));
    m_pLeftBar->setTitle(qTranslate(kTitle));
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        if (m_aszLabels[i])
            m_pSoftKeyBar->SetButtonTitle(i, qTranslate(m_aszLabels[i]));
    }
}

void dlgMediaImport::SetKey(int index, const char* name, const char* label, const char* slot)
{
    m_aszLabels[index] = label;
    m_pSoftKeyBar->SetButton(index, name, Translate(label), this, slot);
}

void dlgMediaImport::HideKey(int index)
{
    m_aszLabels[index] = nullptr;
    m_pSoftKeyBar->SetButton(index, "", "", nullptr, nullptr);
}

void dlgMediaImport::ShowPreviewKey(const char* label)
{
    SetKey(KEY_ENTER, "Enter", label, SLOT(on_click_Preview()));
}

void dlgMediaImport::ShowImportKey()
{
    SetKey(KEY_IMPORT, "Import", HX_TR("Import"), SLOT(on_click_Import()));
}

void dlgMediaImport::ShowDeleteKey()
{
    SetKey(KEY_DELETE_FILE, "Delete", HX_TR("Delete"), SLOT(on_click_Delete()));
}

chString dlgMediaImport::CurrentFile() const
{
    return m_pView->itemFullPath(m_pView->currentRow());
}

bool dlgMediaImport::IsFile() const
{
    return m_pView->currentRow() >= 0 && !m_pView->itemIsDirectory(m_pView->currentRow());
}

// The way up sorts before the folder on view.
void dlgMediaImport::on_currentItemChanged()
{
    m_pPreview->stopPreview();
    const chString path = CurrentFile();
    const chString folder = m_pView->GetCurPath();
    if (folder == kStorages || folder > path) {
        ShowPreviewKey(HX_TR("Enter"));
        HideKey(KEY_IMPORT);
        HideKey(KEY_DELETE_FILE);
    } else if (m_pView->itemIsDirectory(m_pView->currentRow())) {
        ShowPreviewKey(HX_TR("Enter"));
        HideKey(KEY_IMPORT);
        ShowDeleteKey();
    } else {
        ShowPreviewKey(HX_TR("Preview"));
        ShowSoftKey();
        if (!path.IsEmpty())
            m_pPreview->startPreview(path);
    }
}

// The list would keep some of the keys that are OK. A held key opens one folder.
bool dlgMediaImport::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !qIsOkKey(static_cast<QKeyEvent*>(event)->key()))
        return QDialog::eventFilter(watched, event);
    keyPressEvent(static_cast<QKeyEvent*>(event));
    return true;
}

void dlgMediaImport::keyPressEvent(QKeyEvent* event)
{
    if (!qIsOkKey(event->key()))
        QDialog::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        on_click_Preview();
}

void dlgMediaImport::on_click_Preview()
{
    if (m_bBusy || m_pView->currentRow() < 0)
        return;
    if (m_pView->itemIsDirectory(m_pView->currentRow()))
        m_pView->itemClicked(m_pView->currentItem());
    else
        m_pPreview->on_start_preview(false);
}

void dlgMediaImport::on_click_Import()
{
    const int row = m_pView->currentRow();
    if (m_bBusy || row < 0 || m_pView->itemIsDirectory(row))
        return;
    const QPointer<dlgMediaImport> page(this);
    m_bBusy = true;
    ImportCurrent();
    if (page)
        m_bBusy = false;
}

void dlgMediaImport::ImportCurrent()
{
    const QPointer<dlgMediaImport> page(this);
    const chString source = CurrentFile();
    const chString folder = m_pView->getImportPath();
    chDiskWork look([from = std::string(source.GetText()), to = std::string(folder.GetText())] {
        // What is gone meanwhile needs no room: the copy says that it failed.
        return !pathFileExist(from.c_str()) || IsEnoughSpace(from.c_str(), to.c_str(), SPACE_MEDIA);
    });
    if (!diskWait(look, this, HX_TR("Importing..."), noPercent) || !page)
        return;
    if (!look.Result()) {
        noteBox(HX_TR("No enough space !"), this);
        return;
    }
    const chPathNameA target(folder, pathGetFileNamePos(source));
    if (pathFileExist(target) && (!questionBox(HX_TR("Load the same file ?"), this) || !page))
        return;
    const bool done = ImportFile(source, target.GetPath());
    if (!page)
        return;
    if (done)
        TellSuccess(source, target.GetPath());
    else
        TellFailure(source, target.GetPath());
    if (page && m_bDiskGone)
        DevRemove();
}

void dlgMediaImport::TellFailure(const chString& source, const chString& target)
{
    const char* how = m_bCancelled ? "is cancelled" : "fail!";
    nuxTrace(TRACE_NOTE, "Import file (%s) to (%s) %s", source.GetText(), target.GetText(), how);
    fileRemove(target);
    if (!m_bCancelled)
        noteBox(HX_TR("Loading fail!"), this);
}

void dlgMediaImport::TellSuccess(const chString& source, const chString& target)
{
    if (m_strMediaType == kSound)
        getMyXmlCache()->addRingFileData(pathGetFileNamePos(source), target);
    noteBox(HX_TR("Successful loading!"), this);
}

bool dlgMediaImport::ImportFile(const chString& source, const chString& target) const
{
    return Import(source, target, 0, 0);
}

bool dlgMediaImport::Import(const chString& source, const chString& target, int width, int height) const
{
    const QPointer<const dlgMediaImport> page(this);
    const auto job = std::make_shared<ImportJob>(source, target, width, height);
    m_job = job;
    m_strSource = source;
    chDiskWork work([job] { return job->Run(); });
    const int isOver = diskWait(work, const_cast<dlgMediaImport*>(this), HX_TR("Importing..."),
                                [job] { return job->Percent(); });
    if (!isOver)
        job->Cancel();
    // One that was done in the moment of the cancel has not cleared up itself.
    if (!isOver && work.Wait(kEndMs) && work.Result())
        fileRemove(target);
    if (!page)
        return false;
    m_bCancelled = !isOver;
    m_job.reset();
    if (!isOver || !work.Result())
        return false;
    // A person may take the phone's power away as soon as he is told; nobody waits for that here.
    const chDiskWork flush([to = std::string(target.GetText())] {
        chString folder(to.c_str());
        return pathRemoveFileSpec(folder) && fileFlushFolder(folder);
    });
    return true;
}

void dlgMediaImport::on_click_Delete()
{
    if (m_bBusy || m_pView->currentRow() < 0)
        return;
    const QPointer<dlgMediaImport> page(this);
    m_bBusy = true;
    DeleteCurrent();
    if (page)
        m_bBusy = false;
}

void dlgMediaImport::DeleteCurrent()
{
    const QPointer<dlgMediaImport> page(this);
    const chString path = CurrentFile();
    const QString question = qTranslate(HX_TR("Delete ")) + m_pView->currentItem()->text() + QLatin1Char('?');
    if (!xMessageBox(Translate(HX_TR("Note")), fromQString(question), BOX_QUESTION, this, -1) || !page)
        return;
    chDiskWork work([path = std::string(path.GetText())] { return diskRemove(path.c_str()); });
    const bool isGone = diskWait(work, this, HX_TR("Deleting..."), noPercent) && work.Result();
    if (page && isGone && CurrentFile() == path)
        m_pView->removeCurrentSelect();
    else if (page && !isGone)
        xMessageBox(Translate(HX_TR("Note")), Translate(HX_TR("Delete failed!")), BOX_QUESTION, this,
                    kDeleteFailedMs);
    const chDiskWork flush([] {
        fileFlushAll();
        return 1;
    });
}

void dlgMediaImport::on_click_Back()
{
    close();
}

int dlgMediaImport::TryThreadMessage(msgObject& msg)
{
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REFRESH) {
        m_devices.Refresh();
        DevRefresh();
    } else if (msg.wParam == DEVICE_EVENT_REMOVE) {
        DevRemove();
    }
    return 1;
}

void dlgMediaImport::DevRefresh()
{
    if (m_pView->GetCurPath() != kStorages)
        return;
    m_pPreview->stopPreview();
    m_pView->EnterDirectory(kStorages);
}

// An import from the disk that has gone ends first, and its user is told.
void dlgMediaImport::DevRemove()
{
    m_bDiskGone = m_job != nullptr;
    if (m_job) {
        if (!IsExistCurrentStorage(m_strSource))
            m_job->Abort();
        return;
    }
    if (device_GetStorageCount(STORAGE_ANY) == 0) {
        m_pPreview->stopPreview();
        close();
        return;
    }
    if (!IsExistCurrentStorage(m_pView->GetCurPath())) {
        m_pPreview->stopPreview();
        m_pView->EnterDirectory(kStorages);
    }
}
