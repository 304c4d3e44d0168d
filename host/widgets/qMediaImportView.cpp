#include "host/widgets/replacePlaceholder.h"
#include "support/file/deviceRoot.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/host/image.h"
#include "support/host/mediaview.h"
#include "support/host/storage.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <QCoreApplication>
#include <QDir>
#include <QMouseEvent>

namespace {

const char kStorages[] = "/storage"; // stands for the list of storages
const char kFolderIcon[] = HX_THEME("icon/icon_folder.png");
constexpr int kIconSize = 32;
enum { PathRole = Qt::UserRole, FolderRole };

bool isBelow(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

QString cleanFolder(const char* path)
{
    return QDir::cleanPath(QString::fromUtf8(path));
}

QDir deviceFolder(const QString& path)
{
    return QDir(toQString(devicePathFollow(path.toUtf8().constData())));
}

bool isReadableFolder(const QString& path)
{
    return pathIsDirectory(path.toUtf8().constData()) && deviceFolder(path).isReadable();
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

} // namespace

struct qMediaImportView::Private : public QObject
{
    explicit Private(qMediaImportView* view) : q(view) { q->viewport()->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override;
    void AddFolder(const QString& name, const QString& path);
    void AddFile(const QString& name, const QString& path);
    void ListStorages();
    void ListFolder(const QString& path);
    QString StorageOf(const QString& path) const;
    QString Above(const QString& path) const;
    int RowOf(const QString& path) const;

    qMediaImportView* q;
    chString strFilter;
    chString strImport;
    QString current;
    bool tappedCurrent = false;
};

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

void qMediaImportView::Private::AddFolder(const QString& name, const QString& path)
{
    QListWidgetItem* item = new QListWidgetItem(QIcon(GetImageManager()->GetImage(kFolderIcon)), name, q);
    item->setData(PathRole, path);
    item->setData(FolderRole, true);
}

void qMediaImportView::Private::AddFile(const QString& name, const QString& path)
{
    QListWidgetItem* item = new QListWidgetItem(name, q);
    item->setData(PathRole, path);
    item->setData(FolderRole, false);
}

void qMediaImportView::Private::ListStorages()
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages)
        AddFolder(toQString(storage.strName), toQString(storage.strPath));
}

void qMediaImportView::Private::ListFolder(const QString& path)
{
    const QDir folder = deviceFolder(path);
    AddFolder(QStringLiteral(".."), Above(path));
    const QDir::SortFlags order = QDir::Name | QDir::IgnoreCase;
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, order))
        AddFolder(name, path + QLatin1Char('/') + name);
    for (const QString& name : folder.entryList(QDir::Files, order)) {
        if (pathMatchFilter(name.toUtf8().constData(), strFilter.GetText()))
            AddFile(name, path + QLatin1Char('/') + name);
    }
}

// The mount path of the storage that holds path; empty when it is not there.
QString qMediaImportView::Private::StorageOf(const QString& path) const
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages) {
        const QString mount = toQString(storage.strPath);
        if (isBelow(path, mount))
            return mount;
    }
    return QString();
}

QString qMediaImportView::Private::Above(const QString& path) const
{
    return path == StorageOf(path) ? QString::fromLatin1(kStorages)
                                   : path.left(path.lastIndexOf(QLatin1Char('/')));
}

int qMediaImportView::Private::RowOf(const QString& path) const
{
    for (int row = 0; row < q->count(); ++row) {
        if (isBelow(path, q->item(row)->data(PathRole).toString()) &&
            q->item(row)->text() != QLatin1String(".."))
            return row;
    }
    return q->count() > 0 ? 0 : -1;
}

qMediaImportView::qMediaImportView(QWidget* parent) : QListWidget(parent), m_p(new Private(this))
{
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setIconSize(QSize(kIconSize, kIconSize));
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
    return EnterDirectory(kStorages);
}

bool qMediaImportView::itemIsDirectory(int row) const
{
    return row >= 0 && row < count() && item(row)->data(FolderRole).toBool();
}

chString qMediaImportView::itemFullPath(int row) const
{
    return row >= 0 && row < count() ? fromQString(item(row)->data(PathRole).toString()) : chString();
}

chString qMediaImportView::getImportPath() const
{
    return m_p->strImport;
}

chString qMediaImportView::GetCurPath() const
{
    return fromQString(m_p->current);
}

int qMediaImportView::EnterDirectory(const char* path)
{
    const QString folder = cleanFolder(path);
    const bool isList = folder == QLatin1String(kStorages);
    if (!isList && (m_p->StorageOf(folder).isEmpty() || !isReadableFolder(folder)))
        return 0;
    const QString before = m_p->current;
    {
        const QSignalBlocker quiet(this);
        clear();
        m_p->current = folder;
        if (isList)
            m_p->ListStorages();
        else
            m_p->ListFolder(folder);
    }
    if (count() > 0)
        setCurrentRow(m_p->RowOf(before));
    else
        emit currentItemChanged(nullptr, nullptr);
    return 1;
}

void qMediaImportView::removeCurrentSelect()
{
    delete takeItem(currentRow());
}

void qMediaImportView::itemClicked(QListWidgetItem* item)
{
    if (item && item->data(FolderRole).toBool())
        EnterDirectory(item->data(PathRole).toString().toUtf8().constData());
}

qMediaImportView* qReplaceMediaImportView(QWidget* placeholder)
{
    return replacePlaceholder<qMediaImportView>(placeholder);
}
