#include "host/services/pictures/imageCache.h"
#include "support/file/deviceRoot.h"
#include <ctime>

namespace {

constexpr qsizetype kMemoryLimit = 16 << 20; // bytes of pixels; what is kept does not count
constexpr qsizetype kNodeCost = 256;         // also of a picture that is not there
constexpr qint64 kLookMs = 100;              // a file is looked at no more often

qint64 nowMs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000LL;
}

// A key may borrow its path.
QByteArray owned(const QByteArray& path)
{
    return QByteArray(path.constData(), path.size());
}

} // namespace

size_t qHash(const tagImageKey& key, size_t seed)
{
    return qHashMulti(seed, key.path, key.shape.room.width(), key.shape.room.height(), key.shape.eFit,
                      reinterpret_cast<quintptr>(key.check));
}

tagImageOrigin tagImageOrigin::of(const char* path)
{
    tagImageOrigin origin;
    origin.nRoot = deviceGetRootNumber();
    fileStat(path, origin.stat);
    return origin;
}

qsizetype tagImageNode::cost() const
{
    return kNodeCost + qsizetype(pixmap.width()) * pixmap.height() * pixmap.depth() / 8;
}

ImageCache& ImageCache::instance()
{
    static ImageCache* cache = new ImageCache;
    return *cache;
}

tagImageNode* ImageCache::find(const tagImageKey& key, LOOK look)
{
    const auto found = m_nodes.find(key);
    if (found == m_nodes.end() || !isCurrent(*found, key.path, look))
        return nullptr;
    found->nUsed = ++m_nUses;
    return &*found;
}

bool ImageCache::isCurrent(tagImageNode& node, const QByteArray& path, LOOK look)
{
    const qint64 now = nowMs();
    if (node.origin.nRoot != deviceGetRootNumber())
        return false;
    if (look == LOOK_NOW_AND_THEN && now - node.nLookedMs < kLookMs)
        return true;
    if (!(tagImageOrigin::of(path.constData()) == node.origin))
        return false; // and whoever asks next looks again
    node.nLookedMs = now;
    return true;
}

// A picture that could not be opened is none for now only: it is remembered as that of a file that is not
// there, so that the next look reads it again.
tagImageNode* ImageCache::store(const tagImageKey& key, const tagDecodedPicture& picture,
                                const tagImageOrigin& origin)
{
    const tagImageKey own{owned(key.path), key.shape, key.check};
    tagImageNode node;
    node.eResult = picture.eResult;
    node.pixmap = QPixmap::fromImage(picture.image);
    node.sizeInFile = picture.sizeInFile;
    node.origin = origin;
    if (picture.eResult == PICTURE_MISSING)
        node.origin.stat = tagFileStat();
    node.nLookedMs = nowMs();
    const auto old = m_nodes.constFind(own);
    if (old != m_nodes.constEnd()) {
        node.bKept = old->bKept;
        m_nCost -= old->bKept ? 0 : old->cost();
        m_nodes.erase(old);
    }
    if (!node.bKept) {
        makeRoom(node.cost());
        m_nCost += node.cost();
    }
    node.nUsed = ++m_nUses;
    return &*m_nodes.insert(own, node);
}

// To forget one that somebody still holds gives no memory back, and takes more when it is read again.
void ImageCache::makeRoom(qsizetype needed)
{
    while (m_nCost > 0 && m_nCost + needed > kMemoryLimit) {
        auto oldest = m_nodes.end();
        for (auto it = m_nodes.begin(); it != m_nodes.end(); ++it) {
            const bool isHeld = it->bKept || !(it->pixmap.isNull() || it->pixmap.isDetached());
            if (!isHeld && (oldest == m_nodes.end() || it->nUsed < oldest->nUsed))
                oldest = it;
        }
        if (oldest == m_nodes.end())
            return;
        m_nCost -= oldest->cost();
        m_nodes.erase(oldest);
    }
}

void ImageCache::setKept(tagImageNode& node, bool kept)
{
    if (node.bKept != kept)
        m_nCost += kept ? -node.cost() : node.cost();
    node.bKept = kept;
}

void ImageCache::remove(const QByteArray& path)
{
    for (auto it = m_nodes.begin(); it != m_nodes.end();) {
        if (it.key().path != path) {
            ++it;
            continue;
        }
        m_nCost -= it->bKept ? 0 : it->cost();
        it = m_nodes.erase(it);
    }
}

qsizetype ImageCache::bytes() const
{
    qsizetype sum = 0;
    for (const tagImageNode& node : m_nodes)
        sum += node.cost();
    return sum;
}
