#include "host/services/players/videoFrames.h"
#include "support/host/player.h"
#include "support/host/trace.h"
#include <QSocketNotifier>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// A sealed memory of the right size that belongs to our own user: it can neither shrink nor be foreign.
bool isStore(int fd)
{
    struct stat info;
    const int seals = fcntl(fd, F_GET_SEALS);
    return seals >= 0 && (seals & F_SEAL_SHRINK) && fstat(fd, &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_uid == geteuid() && info.st_size == off_t(VIDEO_STORE_BYTES);
}

int openOf(unsigned int process, unsigned int descriptor)
{
    char path[64];
    snprintf(path, sizeof path, "/proc/%u/fd/%u", process, descriptor);
    return open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

} // namespace

videoFrames& videoFrames::instance()
{
    static videoFrames* frames = new videoFrames;
    return *frames;
}

bool videoFrames::newest(tagVideoPicture& picture) const
{
    tagVideoPicture read;
    if (!m_pStore || !videoStoreNewest(m_pStore, VIDEO_STORE_BYTES, read))
        return false;
    if (m_bForgotten && read.nFrame == m_nForgotten)
        return false;
    picture = read;
    return true;
}

bool videoFrames::next(tagVideoPicture& picture) const
{
    tagVideoPicture read;
    if (!newest(read))
        return false;
    picture = read;
    return !m_bPainted || videoStoreAfter(m_pStore, VIDEO_STORE_BYTES, m_nPainted, picture);
}

void videoFrames::painted(const tagVideoPicture& picture)
{
    m_bPainted = true;
    m_nPainted = picture.nFrame;
    tagVideoPicture last;
    if (newest(last) && last.nFrame != m_nPainted)
        QMetaObject::invokeMethod(this, &videoFrames::changed, Qt::QueuedConnection);
}

bool videoFrames::isSame(const tagVideoPicture& picture) const
{
    return m_pStore && videoStoreIsSame(m_pStore, picture);
}

void videoFrames::askForSize(const QSize& size)
{
    chThreadBase* server = size == m_asked ? nullptr : msgGetThreadByName("app_hxMedia");
    if (server &&
        msgPostMsgToThread(server, MEDIA_MSG_PICTURE_SIZE, unsigned(size.width()), unsigned(size.height())))
        m_asked = size;
}

void videoFrames::askForOwn(const QRect& place)
{
    chThreadBase* server = place == m_askedOwn ? nullptr : msgGetThreadByName("app_hxMedia");
    const auto both = [](int one, int other) { return unsigned(one) << 16 | unsigned(other); };
    if (server && msgPostMsgToThread(server, MEDIA_MSG_OWN_PLACE, both(place.x(), place.y()),
                                     both(place.width(), place.height())))
        m_askedOwn = place;
}

void videoFrames::forget()
{
    tagVideoPicture picture;
    m_bForgotten = m_pStore && videoStoreNewest(m_pStore, VIDEO_STORE_BYTES, picture);
    m_nForgotten = m_nPainted = picture.nFrame;
    m_bPainted = m_bForgotten;
    emit changed();
}

int videoFrames::TryThreadMessage(msgObject& msg)
{
    if (msg.message != MEDIA_MSG_FRAME)
        return 0;
    hear(msg.wParam, msg.lParam);
    return 1;
}

void videoFrames::hear(unsigned int process, unsigned int descriptor)
{
    const bool isKnown = m_pStore && process == m_nProcess && descriptor == m_nDescriptor;
    if (!isKnown && !attach(process, descriptor)) {
        if (!m_bRefused)
            nuxTrace(TRACE_NOTE, "process %u offers no pictures under %u", process, descriptor);
        m_bRefused = true;
        return;
    }
    m_bRefused = false;
    emit changed();
}

bool videoFrames::attach(unsigned int process, unsigned int descriptor)
{
    const int fd = openOf(process, descriptor);
    void* store =
        fd >= 0 && isStore(fd) ? mmap(nullptr, VIDEO_STORE_BYTES, PROT_READ, MAP_SHARED, fd, 0) : MAP_FAILED;
    if (fd >= 0)
        close(fd);
    if (store == MAP_FAILED)
        return false;
    detach();
    m_pStore = store;
    m_nProcess = process;
    m_nDescriptor = descriptor;
    watch(process);
    return true;
}

void videoFrames::watch(unsigned int process)
{
    m_nProcessFd = int(syscall(SYS_pidfd_open, pid_t(process), 0));
    if (m_nProcessFd < 0)
        return;
    m_pEnd = new QSocketNotifier(m_nProcessFd, QSocketNotifier::Read, this);
    connect(m_pEnd, &QSocketNotifier::activated, this, [this] {
        nuxTrace(TRACE_NOTE, "the media server has ended, and its picture with it");
        detach();
        emit changed();
    });
}

void videoFrames::detach()
{
    if (m_pStore)
        munmap(const_cast<void*>(m_pStore), VIDEO_STORE_BYTES);
    m_pStore = nullptr;
    m_bForgotten = m_bPainted = false;
    m_asked = QSize();
    m_askedOwn.reset();
    if (m_pEnd) {
        m_pEnd->setEnabled(false);
        m_pEnd->deleteLater();
    }
    m_pEnd = nullptr;
    if (m_nProcessFd >= 0)
        close(m_nProcessFd);
    m_nProcessFd = -1;
}
