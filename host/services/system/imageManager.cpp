#include "host/services/system/giveWay.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "support/host/image.h"
#include "support/host/text.h"
#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QThreadPool>
#include <algorithm>
#include <cstring>
#include <ctime>
#include <deque>
#include <unistd.h>

namespace {

constexpr qsizetype kMemoryLimit = 16 << 20; // bytes of pixels; what is kept does not count
constexpr qsizetype kNodeCost = 256;         // also of a picture that is not there
constexpr size_t kMostPrepared = 16;         // pictures that wait to be read ahead
constexpr qint64 kLookMs = 100;              // a file is looked at no more often

struct ImageKey
{
    QByteArray path;
    int w = 0; // 0 by 0: the picture as it is
    int h = 0;
    bool operator==(const ImageKey& other) const
    {
        return w == other.w && h == other.h && path == other.path;
    }
};

size_t qHash(const ImageKey& key, size_t seed)
{
    return qHashMulti(seed, key.path, key.w, key.h);
}

struct ImageNode
{
    QPixmap pixmap;
    tagFileStat stat; // of a file that is not there: all zero
    unsigned root = 0;
    qint64 lookedMs = 0;
    quint64 used = 0;
    bool kept = false;

    qsizetype Cost() const
    {
        return kNodeCost + qsizetype(pixmap.width()) * pixmap.height() * pixmap.depth() / 8;
    }
};

qint64 nowMs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000LL;
}

QByteArray borrowed(const char* path)
{
    return path ? QByteArray::fromRawData(path, static_cast<qsizetype>(strlen(path))) : QByteArray();
}

// Scaled while it is read, which spares the memory of a large photo.
void scaleToFit(QImageReader& reader, QSize room)
{
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize size = turned ? reader.size().transposed() : reader.size();
    if (!size.isValid())
        return;
    const QSize fitting = size.scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    reader.setScaledSize(turned ? fitting.transposed() : fitting);
}

// room: empty for the picture as it is. Any thread.
QImage readPicture(const char* path, QSize room)
{
    QFile file;
    const int fd = fileOpenToRead(path);
    if (fd < 0 || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return QImage();
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!room.isEmpty())
        scaleToFit(reader, room);
    return reader.read();
}

// Of the file that a picture was read from. A picture that could not be opened is none for now only: it is
// remembered as that of a file that is not there, so that the next look reads it again.
tagFileStat rememberedStat(const tagFileStat& stat, const char* path, bool isRead)
{
    const int fd = isRead ? -1 : fileOpenToRead(path);
    if (fd >= 0)
        close(fd);
    return isRead || fd >= 0 ? stat : tagFileStat();
}

// In the form that a pixmap takes as it is.
QImage readForScreen(const char* path)
{
    const QImage image = readPicture(path, QSize());
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

} // namespace

struct ImageManager::Private
{
    ImageNode& Fresh(const ImageKey& key);
    bool IsCurrent(ImageNode& node, const QByteArray& path);
    ImageNode& Read(const ImageKey& key, qint64 now);
    void Store(const ImageKey& key, const ImageNode& node);
    void MakeRoom(qsizetype needed);
    void SetKept(ImageNode& node, bool kept);
    void PrepareNext();
    void TakePrepared(const QByteArray& path, const ImageNode& node);

    QHash<ImageKey, ImageNode> nodes;
    qsizetype cost = 0; // of the nodes that are not kept
    quint64 uses = 0;
    std::deque<QByteArray> toPrepare;
    bool preparing = false;
    QObject here; // on the user-interface thread
    QThreadPool ahead;
};

// The node, read again when its file changed. Valid until the next call.
ImageNode& ImageManager::Private::Fresh(const ImageKey& key)
{
    const auto found = nodes.find(key);
    if (found != nodes.end() && IsCurrent(*found, key.path)) {
        found->used = ++uses;
        return *found;
    }
    return Read(key, nowMs());
}

bool ImageManager::Private::IsCurrent(ImageNode& node, const QByteArray& path)
{
    const qint64 now = nowMs();
    const unsigned root = deviceGetRootNumber();
    if (node.root != root)
        return false;
    if (now - node.lookedMs < kLookMs)
        return true;
    tagFileStat stat;
    fileStat(path.constData(), stat);
    if (stat != node.stat)
        return false; // and whoever asks next looks again
    node.lookedMs = now;
    return true;
}

ImageNode& ImageManager::Private::Read(const ImageKey& key, qint64 now)
{
    const ImageKey own{QByteArray(key.path.constData()), key.w, key.h};
    ImageNode node;
    node.root = deviceGetRootNumber();
    node.lookedMs = now;
    node.kept = nodes.value(own).kept;
    fileStat(own.path.constData(), node.stat);
    node.pixmap = QPixmap::fromImage(readPicture(own.path.constData(), QSize(own.w, own.h)));
    node.stat = rememberedStat(node.stat, own.path.constData(), !node.pixmap.isNull());
    Store(own, node);
    return nodes[own];
}

void ImageManager::Private::Store(const ImageKey& key, const ImageNode& node)
{
    const auto old = nodes.constFind(key);
    if (old != nodes.constEnd() && !old->kept)
        cost -= old->Cost();
    nodes.remove(key);
    if (!node.kept) {
        MakeRoom(node.Cost());
        cost += node.Cost();
    }
    nodes.insert(key, node)->used = ++uses;
}

// What was not asked for longest goes first.
void ImageManager::Private::MakeRoom(qsizetype needed)
{
    while (cost > 0 && cost + needed > kMemoryLimit) {
        auto oldest = nodes.end();
        for (auto it = nodes.begin(); it != nodes.end(); ++it) {
            if (!it->kept && (oldest == nodes.end() || it->used < oldest->used))
                oldest = it;
        }
        cost -= oldest->Cost();
        nodes.erase(oldest);
    }
}

void ImageManager::Private::SetKept(ImageNode& node, bool kept)
{
    if (node.kept != kept)
        cost += kept ? -node.Cost() : node.Cost();
    node.kept = kept;
}

// One at a time: whoever shows something needs the processor more.
void ImageManager::Private::PrepareNext()
{
    while (!preparing && !toPrepare.empty()) {
        const QByteArray path = toPrepare.front();
        toPrepare.pop_front();
        const auto found = nodes.find({path});
        if (found != nodes.end() && IsCurrent(*found, path))
            continue;
        preparing = true;
        ahead.start([this, path] {
            threadGiveWay(GIVE_WAY_READING_AHEAD);
            const unsigned root = deviceGetRootNumber();
            tagFileStat stat;
            fileStat(path.constData(), stat);
            const QImage image = readForScreen(path.constData());
            stat = rememberedStat(stat, path.constData(), !image.isNull());
            QMetaObject::invokeMethod(
                &here,
                [=] {
                    ImageNode node;
                    node.root = root;
                    node.stat = stat;
                    node.pixmap = QPixmap::fromImage(image);
                    TakePrepared(path, node);
                },
                Qt::QueuedConnection);
        });
    }
}

void ImageManager::Private::TakePrepared(const QByteArray& path, const ImageNode& node)
{
    preparing = false;
    const ImageKey key{path};
    const auto found = nodes.find(key);
    if (found == nodes.end() || !(found->root == node.root && found->stat == node.stat)) {
        ImageNode taken = node;
        taken.lookedMs = nowMs();
        taken.kept = found != nodes.end() && found->kept;
        Store(key, taken);
    }
    PrepareNext();
}

ImageManager::ImageManager() : m_p(new Private)
{
    m_p->ahead.setMaxThreadCount(1);
    // What reads pictures goes with the application.
    qAddPostRoutine([] { GetImageManager()->m_p->ahead.waitForDone(); });
}

ImageManager::~ImageManager()
{
    delete m_p;
}

QPixmap ImageManager::GetImage(const char* path)
{
    return path && *path ? m_p->Fresh({borrowed(path)}).pixmap : QPixmap();
}

QPixmap ImageManager::GetImageByScale(const char* path, int w, int h)
{
    if (!path || !*path || w <= 0 || h <= 0)
        return QPixmap();
    return m_p->Fresh({borrowed(path), w, h}).pixmap;
}

int ImageManager::AddNode(const char* path, int keep)
{
    if (!path || !*path)
        return 0;
    ImageNode& node = m_p->Fresh({borrowed(path)});
    const bool isThere = !node.pixmap.isNull();
    m_p->SetKept(node, keep != 0 && isThere);
    return isThere ? 1 : 0;
}

void ImageManager::PrepareNode(const char* path)
{
    if (!path || !*path)
        return;
    m_p->toPrepare.emplace_back(path);
    if (m_p->toPrepare.size() > kMostPrepared)
        m_p->toPrepare.pop_front();
    m_p->PrepareNext();
}

int ImageManager::GetPreparing() const
{
    return int(m_p->toPrepare.size()) + (m_p->preparing ? 1 : 0);
}

void ImageManager::RemoveImageInCache(const char* path)
{
    const QByteArray wanted = borrowed(path);
    for (auto it = m_p->nodes.begin(); it != m_p->nodes.end();) {
        if (it.key().path != wanted) {
            ++it;
            continue;
        }
        m_p->cost -= it->kept ? 0 : it->Cost();
        it = m_p->nodes.erase(it);
    }
}

ImageManager* GetImageManager()
{
    static ImageManager* manager = new ImageManager;
    return manager;
}
