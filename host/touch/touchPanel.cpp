#include "host/touch/touchPanel.h"
#include "host/touch/finger.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kFolder = "/dev/input";
const char* const kDevice = "/dev/input/TouchScreen";
constexpr int kNsInUs = 1000;

// As readers of such a pipe know it: 16 bytes, whatever the machine.
struct tagRecord
{
    int32_t nSeconds;
    int32_t nMicroseconds;
    uint16_t nType;
    uint16_t nCode;
    int32_t nValue;
};

void append(QByteArray& records, int type, int code, int value)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const tagRecord record = {int32_t(now.tv_sec), int32_t(now.tv_nsec / kNsInUs), uint16_t(type),
                              uint16_t(code), value};
    records.append(reinterpret_cast<const char*>(&record), sizeof record);
}

bool isPipe(const char* path)
{
    struct stat info;
    return lstat(path, &info) == 0 && S_ISFIFO(info.st_mode);
}

// A reader that has gone must not end the phone.
bool writeQuietly(int pipe, const QByteArray& bytes)
{
    sigset_t broken;
    sigset_t before;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &broken, &before);
    const bool gone = write(pipe, bytes.constData(), size_t(bytes.size())) < 0 && errno == EPIPE;
    const timespec none = {};
    if (gone)
        sigtimedwait(&broken, nullptr, &none);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return !gone;
}

} // namespace

TouchPanel& TouchPanel::instance()
{
    static TouchPanel panel;
    return panel;
}

bool TouchPanel::start()
{
    if (!m_path.isEmpty())
        return true;
    if (deviceGetRoot().IsEmpty() || !pathMakeDirectories(kFolder))
        return false;
    const chString path = devicePathFollowFolder(kDevice);
    if (mkfifo(path, S_IRUSR | S_IWUSR) != 0 && !isPipe(path))
        return false;
    m_path = path.GetText();
    return true;
}

void TouchPanel::report(int x, int y, int pressure)
{
    m_nX = x;
    m_nY = y;
    QByteArray records;
    append(records, EV_ABS, ABS_X, x);
    append(records, EV_ABS, ABS_Y, y);
    append(records, EV_ABS, ABS_Z, pressure); // which is where these panels report it
    append(records, EV_SYN, SYN_REPORT, 0);
    send(records);
    drive(pressure);
}

void TouchPanel::lift()
{
    QByteArray records;
    append(records, EV_ABS, ABS_Z, 0);
    append(records, EV_SYN, SYN_REPORT, 0);
    send(records);
    drive(0);
}

// Nobody may be reading; whoever reads too slowly loses reports, as with a device.
void TouchPanel::send(const QByteArray& records)
{
    if (m_nPipe < 0 && !m_path.isEmpty())
        m_nPipe = open(m_path.constData(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (m_nPipe < 0 || writeQuietly(m_nPipe, records))
        return;
    close(m_nPipe);
    m_nPipe = -1;
}

// What the window system's driver does.
void TouchPanel::drive(int pressure)
{
    if (pressure <= 0) {
        if (m_bDown)
            fingerTouch(m_screen, FINGER_UP);
        m_bDown = false;
        return;
    }
    if (!m_bDown)
        m_mapping.look();
    const QPoint screen = m_mapping.toScreen(m_nX, m_nY);
    if (!m_bDown)
        fingerTouch(screen, FINGER_DOWN);
    else if (screen != m_screen)
        fingerTouch(screen, FINGER_MOVE);
    m_bDown = true;
    m_screen = screen;
}
