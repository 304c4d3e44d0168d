#include "host/services/pictures/pictureService.h"
#include "host/services/system/giveWay.h"
#include <QCoreApplication>
#include <algorithm>
#include <climits>

namespace {

constexpr size_t kMostAhead = 16;       // pictures that wait to be read ahead
constexpr qint64 kTinyBytes = 64 << 10; // of a file that takes less than a frame to read
constexpr qint64 kTinyPixels = 64 << 10;
constexpr int kTinyRoom = 800 * 480; // pixels that it is stretched to

tagPictureShape shapeOf(const tagPictureWish& wish)
{
    const QSize room(wish.nWidth, wish.nHeight);
    return {room.expandedTo(QSize(1, 1)).boundedTo(QSize(PICTURE_ROOM_WIDTH, PICTURE_ROOM_HEIGHT)),
            wish.eFit};
}

tagImageKey keyOf(const tagPictureWish& wish)
{
    return {QByteArray(wish.strPath.GetText()), shapeOf(wish), wish.check};
}

tagDecodedPicture decodeChecked(const tagImageKey& key, const tagPictureLimits& limits,
                                const std::atomic<bool>* stop)
{
    const PICTURE_RESULT checked = key.check ? key.check(key.path.constData()) : PICTURE_READ;
    if (checked != PICTURE_READ)
        return {checked, QImage(), QSize()};
    return pictureDecode(key.path.constData(), key.shape, limits, stop);
}

} // namespace

PictureService::PictureService()
{
    m_thread.setMaxThreadCount(1);
    // What reads pictures goes with the application.
    qAddPostRoutine([] {
        PictureService& service = instance();
        if (service.m_pStop)
            *service.m_pStop = true;
        service.m_thread.waitForDone();
    });
}

PictureService& PictureService::instance()
{
    static PictureService* service = new PictureService;
    return *service;
}

int PictureService::request(const tagPictureWish& wish, QObject* owner, PictureTold told)
{
    auto job = std::make_shared<tagJob>();
    m_nLast = m_nLast == INT_MAX ? 1 : m_nLast + 1;
    job->nNumber = m_nLast;
    job->key = keyOf(wish);
    job->pOwner = owner;
    job->told = std::move(told);
    job->ownersEnd = QObject::connect(owner, &QObject::destroyed, &m_here,
                                      [this, number = job->nNumber] { cancel(number); });
    m_requests.push_front(job);
    giveWayToRequests();
    startNext();
    return job->nNumber;
}

void PictureService::cancel(int request)
{
    const auto isIt = [request](const std::shared_ptr<tagJob>& job) { return job->nNumber == request; };
    if (request == 0)
        return;
    const auto found = std::find_if(m_requests.begin(), m_requests.end(), isIt);
    if (found != m_requests.end()) {
        QObject::disconnect((*found)->ownersEnd);
        m_requests.erase(found);
    } else if (m_pRunning && isIt(m_pRunning)) {
        QObject::disconnect(m_pRunning->ownersEnd);
        m_pRunning->pOwner = nullptr;
        *m_pStop = true;
    }
}

void PictureService::prepare(const tagImageKey& key)
{
    const auto isSame = [&key](const std::shared_ptr<tagJob>& job) { return job->key == key; };
    if (std::any_of(m_ahead.begin(), m_ahead.end(), isSame))
        return;
    auto job = std::make_shared<tagJob>();
    job->key = key;
    m_ahead.push_back(job);
    if (m_ahead.size() > kMostAhead)
        m_ahead.pop_front();
    startNext();
}

// What is only read ahead begins again later.
void PictureService::giveWayToRequests()
{
    if (!m_pRunning || m_pRunning->nNumber != 0 || *m_pStop)
        return;
    *m_pStop = true;
    m_ahead.push_front(std::make_shared<tagJob>(*m_pRunning));
}

std::shared_ptr<PictureService::tagJob> PictureService::takeNext()
{
    Jobs& jobs = m_requests.empty() ? m_ahead : m_requests;
    if (jobs.empty())
        return nullptr;
    const std::shared_ptr<tagJob> job = jobs.front();
    jobs.pop_front();
    return job;
}

// In a turn of its own, so that nobody is told before his call is over.
void PictureService::startNext()
{
    if (m_pRunning || m_bStarting || (m_requests.empty() && m_ahead.empty()))
        return;
    m_bStarting = true;
    QMetaObject::invokeMethod(
        &m_here,
        [this] {
            m_bStarting = false;
            const std::shared_ptr<tagJob> job = m_pRunning ? nullptr : takeNext();
            if (!job)
                return;
            if (tagImageNode* known = ImageCache::instance().find(job->key, ImageCache::LOOK_NOW))
                tell(*job, *known);
            else
                start(job);
            startNext();
        },
        Qt::QueuedConnection);
}

void PictureService::start(const std::shared_ptr<tagJob>& job)
{
    m_pRunning = job;
    m_pStop = std::make_shared<std::atomic<bool>>(false);
    m_thread.start([this, job, stop = m_pStop, limits = m_limits] {
        threadGiveWay(GIVE_WAY_PICTURES);
        const tagImageOrigin origin = tagImageOrigin::of(job->key.path.constData());
        const tagDecodedPicture picture = decodeChecked(job->key, limits, stop.get());
        QMetaObject::invokeMethod(
            &m_here, [=] { finish(job, picture, origin); }, Qt::QueuedConnection);
    });
}

void PictureService::finish(const std::shared_ptr<tagJob>& job, const tagDecodedPicture& picture,
                            const tagImageOrigin& origin)
{
    // What was stopped in the middle is not known.
    const bool isStopped = *m_pStop && picture.eResult != PICTURE_READ;
    m_pRunning = nullptr;
    if (!isStopped) {
        const tagImageNode node = *ImageCache::instance().store(job->key, picture, origin);
        tell(*job, node);
    }
    startNext();
}

void PictureService::tell(tagJob& job, const tagImageNode& node)
{
    QObject::disconnect(job.ownersEnd);
    if (!job.pOwner)
        return;
    job.pOwner = nullptr;
    const PICTURE_RESULT result = node.eResult;
    const QPixmap picture = node.pixmap;
    job.told(result, picture);
}

tagImageNode* PictureService::readNow(const tagImageKey& key, const tagPictureLimits& limits)
{
    const tagImageOrigin origin = tagImageOrigin::of(key.path.constData());
    return ImageCache::instance().store(key, decodeChecked(key, limits, nullptr), origin);
}

tagImageNode* PictureService::readTiny(const tagImageKey& key)
{
    tagPictureLimits limits = m_limits;
    limits.nPixels = kTinyPixels;
    const tagImageOrigin origin = tagImageOrigin::of(key.path.constData());
    const QSize& room = key.shape.room;
    const bool mayEnlarge =
        key.shape.eFit == tagPictureShape::EXACT || key.shape.eFit == tagPictureShape::COVER;
    const bool isEnlarged = mayEnlarge && room.width() * room.height() > kTinyRoom;
    if (origin.stat.nSize > kTinyBytes || isEnlarged)
        return nullptr;
    const tagDecodedPicture picture = decodeChecked(key, limits, nullptr);
    return picture.eResult == PICTURE_TOO_LARGE ? nullptr
                                                : ImageCache::instance().store(key, picture, origin);
}

int pictureRequest(const tagPictureWish& wish, QObject* owner, PictureTold told)
{
    return PictureService::instance().request(wish, owner, std::move(told));
}

void pictureCancel(int request)
{
    PictureService::instance().cancel(request);
}

void picturePrepare(const tagPictureWish& wish)
{
    const tagImageKey key = keyOf(wish);
    if (!ImageCache::instance().find(key, ImageCache::LOOK_NOW))
        PictureService::instance().prepare(key);
}

bool pictureAtOnce(const tagPictureWish& wish, PICTURE_RESULT& result, QPixmap& picture)
{
    const tagImageKey key = keyOf(wish);
    const tagImageNode* node = ImageCache::instance().find(key, ImageCache::LOOK_NOW);
    if (!node) {
        node = PictureService::instance().readTiny(key);
        if (!node)
            return false;
    }
    result = node->eResult;
    picture = node->pixmap;
    return true;
}

int pictureTell(const tagPictureWish& wish, QObject* owner, const PictureTold& told)
{
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    if (!pictureAtOnce(wish, result, picture))
        return pictureRequest(wish, owner, told);
    told(result, picture);
    return 0;
}

bool pictureFacts(const tagPictureWish& wish, tagPictureFacts& facts)
{
    const tagImageNode* node = ImageCache::instance().find(keyOf(wish), ImageCache::LOOK_NOW);
    if (!node || node->eResult != PICTURE_READ)
        return false;
    facts = {node->sizeInFile.width(), node->sizeInFile.height(), node->origin.stat.nSize};
    return true;
}

int picturePending()
{
    return PictureService::instance().pending();
}
