#include "host/widgets/folderReading.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/image.h"
#include "support/host/mediaview.h"
#include "support/host/storage.h"
#include "support/xml/xmlFile.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTimer>
#include <memory>

namespace {

const char kStorages[] = "/storage"; // stands for the list of storages
const char kFolderIcon[] = HX_THEME("icon/icon_folder.png");
const char kFilmIcon[] = HX_THEME("icon/icon_file_film.png");
const char kPictureIcon[] = HX_THEME("icon/icon_file_picture.png");
const char kSoundIcon[] = HX_THEME("icon/icon_file_sound.png");
constexpr int kIconSize = 32;
constexpr int kWaitMs = 12; // for a folder that is read at once; a disk may take longer
constexpr int kTurnMs = 4;  // for the rows that are made in one turn of the event loop
enum { NameRole = Qt::UserRole, PathRole, FolderRole };

bool isBelow(const QByteArray& path, const QByteArray& folder)
{
    return path == folder || path.startsWith(folder + '/');
}

// Without "." and "..", and with single slashes.
QByteArray cleanFolder(const char* path)
{
    QByteArrayList parts;
    for (const QByteArray& part : QByteArray(path).split('/')) {
        if (part == ".." && !parts.isEmpty())
            parts.removeLast();
        else if (!part.isEmpty() && part != "." && part != "..")
            parts.append(part);
    }
    return '/' + parts.join('/');
}

// A name may hold whatever a disk can store: what moves the rest of the line is not shown.
QString shownName(const QByteArray& name)
{
    QString text = QString::fromUtf8(name);
    for (QChar& letter : text) {
        const ushort code = letter.unicode();
        const bool turns = (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
        if (turns || letter.category() == QChar::Other_Control)
            letter = QLatin1Char(' ');
    }
    return text;
}

// In a row that is chosen as in any other.
QIcon iconOf(const char* path)
{
    const QPixmap picture = GetImageManager()->GetImage(path);
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

// Of the files of a type of the media table.
QIcon fileIcon(const QByteArray& type)
{
    if (type == "sound")
        return iconOf(kSoundIcon);
    return iconOf(type == "video" || type == "ad" ? kFilmIcon : kPictureIcon);
}

bool isReadOnly(xmlElement* item)
{
    return item->GetAttributeValue("bReadOnly") == "1";
}

// The first folder of a type that the phone may write.
chString importFolder(xmlElement* type)
{
    xmlElement* list = type->FindChildElement("filelist");
    for (xmlElement* item = list ? list->FindChildElement("item") : nullptr; item;
         item = xmlGetNextElement(item)) {
        if (!isReadOnly(item))
            return item->GetAttributeValue("path").GetString();
    }
    return chString();
}

// The mount path of the storage that holds path; empty when it is not there.
QByteArray storageOf(const QByteArray& path)
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages) {
        if (isBelow(path, storage.strPath.GetText()))
            return storage.strPath.GetText();
    }
    return QByteArray();
}

QByteArray above(const QByteArray& path)
{
    return path == storageOf(path) ? QByteArray(kStorages) : path.left(path.lastIndexOf('/'));
}

} // namespace

struct qMediaImportView::Private : public QObject
{
    explicit Private(qMediaImportView* view);
    bool eventFilter(QObject* watched, QEvent* event) override;
    QListWidgetItem* AddRow(const QByteArray& name, bool isFolder);
    void AddRowOf(const QByteArray& name, const QByteArray& path);
    void ListStorages();
    void Show(const QByteArray& folder);
    void OnMoreRows();
    void AddRows();
    int RowOf(const QByteArray& path) const;
    QByteArray PathOf(const QListWidgetItem* item) const;

    qMediaImportView* q;
    const QIcon folderIcon = iconOf(kFolderIcon);
    QIcon fileIcon;
    chString strFilter;
    chString strImport;
    QByteArray current;
    QByteArray before;                      // the folder that was on view last
    std::unique_ptr<FolderReading> reading; // null when all rows are there
    int nNext = 0;                          // of its entries, to become a row
    QTimer moreRows;
    bool tappedCurrent = false;
};

qMediaImportView::Private::Private(qMediaImportView* view) : q(view)
{
    q->viewport()->installEventFilter(this);
    moreRows.setInterval(0);
    moreRows.callOnTimeout(this, [this] { OnMoreRows(); });
}

// The first tap on a row selects it, the next one opens it: a folder can be selected without going into it. A
// quick second tap is a tap like any other.
bool qMediaImportView::Private::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick) {
        const QMouseEvent* tap = static_cast<QMouseEvent*>(event);
        QMouseEvent press(QEvent::MouseButtonPress, tap->position(), tap->globalPosition(), tap->button(),
                          tap->buttons(), tap->modifiers());
        QCoreApplication::sendEvent(watched, &press);
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress) {
        const QListWidgetItem* tapped = q->itemAt(static_cast<QMouseEvent*>(event)->position().toPoint());
        tappedCurrent = tapped && tapped == q->currentItem();
    }
    return false;
}

QListWidgetItem* qMediaImportView::Private::AddRow(const QByteArray& name, bool isFolder)
{
    QListWidgetItem* item = new QListWidgetItem(shownName(name), q);
    item->setData(NameRole, name);
    item->setIcon(isFolder ? folderIcon : fileIcon);
    if (isFolder)
        item->setData(FolderRole, true);
    return item;
}

// A folder that is not one of the folder on view.
void qMediaImportView::Private::AddRowOf(const QByteArray& name, const QByteArray& path)
{
    AddRow(name, true)->setData(PathRole, path);
}

void qMediaImportView::Private::ListStorages()
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages)
        AddRowOf(storage.strName.GetText(), storage.strPath.GetText());
}

// The way up is there at once, the rest when it has been read.
void qMediaImportView::Private::Show(const QByteArray& folder)
{
    {
        const QSignalBlocker quiet(q);
        moreRows.stop();
        q->clear();
        before = current;
        current = folder;
        nNext = 0;
        if (folder == kStorages)
            ListStorages();
        else
            AddRowOf("..", above(folder));
        if (reading && reading->isOver())
            AddRows();
    }
    if (q->count() > 0)
        q->setCurrentRow(RowOf(before));
    else
        emit q->currentItemChanged(nullptr, nullptr);
    if (reading && !reading->isOver())
        reading->tell([this] { OnMoreRows(); });
}

void qMediaImportView::Private::OnMoreRows()
{
    AddRows();
    // Who comes out of a folder stands on it, unless he has gone on meanwhile.
    if (q->currentRow() == 0)
        q->setCurrentRow(RowOf(before));
}

// Some each turn of the event loop.
void qMediaImportView::Private::AddRows()
{
    QElapsedTimer turn;
    turn.start();
    const std::vector<tagDiskEntry>& entries = reading->entries();
    for (; nNext < int(entries.size()) && !turn.hasExpired(kTurnMs); ++nNext) {
        const tagDiskEntry& entry = entries[size_t(nNext)];
        AddRow(QByteArray::fromStdString(entry.strName), entry.bFolder);
    }
    if (nNext < int(entries.size())) {
        moreRows.start();
        return;
    }
    moreRows.stop();
    reading.reset();
}

// Of the folder that holds path, or is it; the first one when there is none.
int qMediaImportView::Private::RowOf(const QByteArray& path) const
{
    for (int row = 0; row < q->count() && q->item(row)->data(FolderRole).toBool(); ++row) {
        if (q->item(row)->data(NameRole).toByteArray() != ".." && isBelow(path, PathOf(q->item(row))))
            return row;
    }
    return 0;
}

QByteArray qMediaImportView::Private::PathOf(const QListWidgetItem* item) const
{
    const QVariant path = item->data(PathRole);
    return path.isValid() ? path.toByteArray() : current + '/' + item->data(NameRole).toByteArray();
}

qMediaImportView::qMediaImportView(QWidget* parent) : QListWidget(parent), m_p(new Private(this))
{
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setIconSize(QSize(kIconSize, kIconSize));
    setUniformItemSizes(true);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (m_p->tappedCurrent)
            itemClicked(item);
    });
}

qMediaImportView::~qMediaImportView()
{
    delete m_p;
}

int qMediaImportView::LoadMediaType(const char* table, const char* type)
{
    xmlFile file(table);
    xmlElement* root = file.GetRootElement();
    xmlElement* found = root && type ? root->FindChildElement(type) : nullptr;
    if (!found)
        return 0;
    m_p->strFilter = found->GetAttributeValue("filter").GetString();
    m_p->strImport = importFolder(found);
    m_p->fileIcon = fileIcon(type);
    return EnterDirectory(kStorages);
}

bool qMediaImportView::itemIsDirectory(int row) const
{
    return row >= 0 && row < count() && item(row)->data(FolderRole).toBool();
}

chString qMediaImportView::itemFullPath(int row) const
{
    return row >= 0 && row < count() ? chString(m_p->PathOf(item(row)).constData()) : chString();
}

chString qMediaImportView::getImportPath() const
{
    return m_p->strImport;
}

chString qMediaImportView::GetCurPath() const
{
    return m_p->current.constData();
}

bool qMediaImportView::isReading() const
{
    return m_p->reading != nullptr;
}

int qMediaImportView::EnterDirectory(const char* path)
{
    const QByteArray folder = cleanFolder(path);
    std::unique_ptr<FolderReading> reading;
    if (folder != kStorages) {
        if (storageOf(folder).isEmpty())
            return 0;
        reading = std::make_unique<FolderReading>(folder, m_p->strFilter.GetText());
        if (reading->waitFor(kWaitMs) && !reading->isFolder())
            return 0;
    }
    m_p->reading = std::move(reading);
    m_p->Show(folder);
    return 1;
}

void qMediaImportView::removeCurrentSelect()
{
    delete takeItem(currentRow());
}

void qMediaImportView::itemClicked(QListWidgetItem* item)
{
    if (item && item->data(FolderRole).toBool())
        EnterDirectory(m_p->PathOf(item).constData());
}

qMediaImportView* qReplaceMediaImportView(QWidget* placeholder)
{
    return replacePlaceholder<qMediaImportView>(placeholder);
}
