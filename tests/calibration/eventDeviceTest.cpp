// The raw reader on a device that the kernel itself has made.
#include "calibration/touchReader.h"
#include "support/file/rawDevice.h"
#include "tests/kit/phoneTest.h"
#include <QDir>
#include <QFile>
#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

enum : int { MOST = 4095 };

// A touch panel of the kernel, as long as it lives.
class KernelPanel
{
public:
    KernelPanel() : m_nDevice(open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC))
    {
        uinput_setup setup = {};
        strcpy(setup.name, "hxTestPanel");
        if (m_nDevice < 0 || ioctl(m_nDevice, UI_SET_EVBIT, EV_ABS) != 0 || !hasAxis(ABS_X) ||
            !hasAxis(ABS_Y) || !hasAxis(ABS_Z) || ioctl(m_nDevice, UI_DEV_SETUP, &setup) != 0)
            return;
        m_bThere = ioctl(m_nDevice, UI_DEV_CREATE) == 0;
    }
    ~KernelPanel()
    {
        if (m_bThere)
            ioctl(m_nDevice, UI_DEV_DESTROY);
        if (m_nDevice >= 0)
            close(m_nDevice);
    }
    bool isThere() const { return m_bThere; }
    // Its node, which somebody may have to make first; empty when nobody does.
    QString node() const
    {
        char folder[64] = {};
        if (ioctl(m_nDevice, UI_GET_SYSNAME(sizeof folder - 1), folder) < 0)
            return {};
        const QStringList events =
            QDir(QString("/sys/devices/virtual/input/") + folder).entryList({"event*"}, QDir::Dirs);
        const QString path = "/dev/input/" + events.value(0);
        const bool there =
            !events.isEmpty() && kit::waitUntil([&] { return access(qPrintable(path), R_OK) == 0; });
        return there ? path : QString();
    }
    void report(int x, int y, int pressure)
    {
        for (const input_event& event : {record(EV_ABS, ABS_X, x), record(EV_ABS, ABS_Y, y),
                                         record(EV_ABS, ABS_Z, pressure), record(EV_SYN, SYN_REPORT, 0)})
            ASSERT_EQ(write(m_nDevice, &event, sizeof event), ssize_t(sizeof event));
    }

private:
    bool hasAxis(int code)
    {
        uinput_abs_setup axis = {};
        axis.code = uint16_t(code);
        axis.absinfo.maximum = MOST;
        return ioctl(m_nDevice, UI_SET_ABSBIT, code) == 0 && ioctl(m_nDevice, UI_ABS_SETUP, &axis) == 0;
    }
    static input_event record(int type, int code, int value)
    {
        input_event event = {};
        event.type = uint16_t(type);
        event.code = uint16_t(code);
        event.value = value;
        return event;
    }
    int m_nDevice;
    bool m_bThere = false;
};

class EventDevice : public PhoneTest
{
};

} // namespace

TEST_F(EventDevice, IsReadWithTheKernelsOwnRecords)
{
    KernelPanel panel;
    if (!panel.isThere())
        GTEST_SKIP() << "this machine lets nobody make an input device (/dev/uinput)";
    const QString node = panel.node();
    if (node.isEmpty())
        GTEST_SKIP() << "the input device has no node that this user may read";
    tsdev ts;
    ts.fd = open(qPrintable(node), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(ts.fd, 0);
    EXPECT_EQ(rawDeviceRecord(ts.fd), RAW_RECORD_KERNEL);
    panel.report(1200, 3400, 60);
    ts_sample samples[2];
    EXPECT_EQ(ts_read_raw(&ts, samples, 2), 2);
    EXPECT_EQ(samples[1].x, 1200);
    EXPECT_EQ(samples[1].y, 3400);
    EXPECT_EQ(samples[1].pressure, 60u);
    EXPECT_GT(samples[1].tv.tv_sec, 0);
    close(ts.fd);
}
