#include "support/file/rawDevice.h"

#include "support/file/deviceRoot.h"
#include "support/file/sharedFolder.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <string.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

namespace {

const int US_PER_SECOND = 1000000;
const int NS_PER_US = 1000;

// As it comes through a pipe or from a file, on any machine.
struct tagShortRecord
{
    int32_t nSeconds;
    int32_t nMicroseconds;
    uint16_t nType;
    uint16_t nCode;
    int32_t nValue;
};
static_assert(sizeof(tagShortRecord) == 16, "as others write it");

// Bytes read, less than size when there are no more, -1 when the device is gone.
ssize_t readRecord(int fd, void* record, size_t size)
{
    ssize_t count;
    do
        count = read(fd, record, size);
    while (count < 0 && errno == EINTR);
    return count < 0 && errno == EAGAIN ? 0 : count;
}

// 1 for a whole record.
int answer(ssize_t count, size_t size)
{
    return count < 0 ? -1 : count == ssize_t(size);
}

int readKernel(int fd, tagRawEvent& event)
{
    struct input_event record;
    const int result = answer(readRecord(fd, &record, sizeof(record)), sizeof(record));
    if (result > 0) {
        event.time.tv_sec = time_t(record.input_event_sec);
        event.time.tv_usec = suseconds_t(record.input_event_usec);
        event.nType = record.type;
        event.nCode = record.code;
        event.nValue = record.value;
    }
    return result;
}

int readShort(int fd, tagRawEvent& event)
{
    tagShortRecord record;
    const int result = answer(readRecord(fd, &record, sizeof(record)), sizeof(record));
    if (result > 0) {
        event.time.tv_sec = record.nSeconds;
        event.time.tv_usec = record.nMicroseconds;
        event.nType = record.nType;
        event.nCode = record.nCode;
        event.nValue = record.nValue;
    }
    return result;
}

} // namespace

int rawDeviceOpen(const char* path, int nonblock)
{
    return fileOpenSafely(devicePathFollow(path), O_RDONLY | O_NOCTTY | (nonblock ? O_NONBLOCK : 0), 0);
}

void rawDeviceClose(int fd)
{
    close(fd);
}

// Only such a device knows the version of the input system.
RAW_RECORD rawDeviceRecord(int fd)
{
    int version = 0;
    return ioctl(fd, EVIOCGVERSION, &version) == 0 ? RAW_RECORD_KERNEL : RAW_RECORD_SHORT;
}

int rawDeviceWait(int fd, int us)
{
    if (fd < 0)
        return -1;
    struct pollfd one = {fd, POLLIN, 0};
    const struct timespec time = {us / US_PER_SECOND, long(us % US_PER_SECOND) * NS_PER_US};
    const int count = ppoll(&one, 1, &time, nullptr);
    return count > 0 && (one.revents & POLLNVAL) ? -1 : count;
}

int rawDeviceRead(int fd, RAW_RECORD record, tagRawEvent& event)
{
    return record == RAW_RECORD_KERNEL ? readKernel(fd, event) : readShort(fd, event);
}

int rawDeviceSet(const char* path, const char* text)
{
    const int fd =
        fileOpenSafely(devicePathFollow(path), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY, 0666);
    if (fd < 0)
        return 0;
    const ssize_t size = ssize_t(strlen(text));
    const bool taken = write(fd, text, size_t(size)) == size;
    return close(fd) == 0 && taken;
}
