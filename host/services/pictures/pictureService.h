#pragma once
// Reads pictures one after the other on a thread of its own, which gives way to what is shown.
// User-interface thread.
#include "host/services/pictures/imageCache.h"
#include <QObject>
#include <QThreadPool>
#include <deque>
#include <memory>

class PictureService
{
public:
    static PictureService& instance();

    int request(const tagPictureWish& wish, QObject* owner, PictureTold told);
    void cancel(int request);
    void prepare(const tagImageKey& key);
    int pending() const { return int(m_requests.size() + m_ahead.size()) + (m_pRunning ? 1 : 0); }

    // Read on this thread. Valid until the next call.
    static tagImageNode* readNow(const tagImageKey& key, const tagPictureLimits& limits);
    // Null for what takes longer than a frame.
    tagImageNode* readTiny(const tagImageKey& key);
    // For tests.
    void setLimits(const tagPictureLimits& limits) { m_limits = limits; }

private:
    struct tagJob
    {
        int nNumber = 0; // 0: read ahead
        tagImageKey key;
        QObject* pOwner = nullptr;
        PictureTold told;
        QMetaObject::Connection ownersEnd;
    };
    using Jobs = std::deque<std::shared_ptr<tagJob>>;
    using Flag = std::shared_ptr<std::atomic<bool>>;

    PictureService();
    std::shared_ptr<tagJob> takeNext();
    void startNext();
    void start(const std::shared_ptr<tagJob>& job);
    void finish(const std::shared_ptr<tagJob>& job, const tagDecodedPicture& picture,
                const tagImageOrigin& origin);
    void giveWayToRequests();
    static void tell(tagJob& job, const tagImageNode& node);

    Jobs m_requests; // the newest in front
    Jobs m_ahead;    // the oldest in front
    std::shared_ptr<tagJob> m_pRunning;
    Flag m_pStop; // of what runs
    int m_nLast = 0;
    bool m_bStarting = false;
    tagPictureLimits m_limits;
    QObject m_here; // on the user-interface thread
    QThreadPool m_thread;
};
