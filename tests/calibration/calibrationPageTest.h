#pragma once
// The page "LCD Adjusting" with a pipe for its raw device.
#include "calibration/calibrationPages.h"
#include "tests/calibration/rawRecords.h"
#include "tests/kit/pageTest.h"
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

class CalibrationPage : public PageTest
{
protected:
    CalibrationPage()
    {
        calibrationPages();
        qunsetenv("TSLIB_TSDEVICE");
        qunsetenv("TSLIB_TSEVENTTYPE");
        makePipe("/dev/input/TouchScreen");
    }
    ~CalibrationPage() override
    {
        if (m_page)
            m_page->close();
        kit::settle();
        closeWriter();
        qunsetenv("TSLIB_TSDEVICE");
        qunsetenv("TSLIB_TSEVENTTYPE");
    }
    // As a person does: by name, and "Yes" to the question.
    void openPage()
    {
        kit::BoxAnswers boxes({"yes"});
        m_page = open("LCD Adjusting");
        EXPECT_EQ(boxes.texts(), QStringList{"Touch screen calibration will begin."});
    }
    bool isOpen() const { return m_page && m_page->isVisible(); }
    QRect cross() const { return child<QFrame>("frmCross")->geometry(); }

    void makePipe(const char* device)
    {
        closeWriter();
        QDir().mkpath(QFileInfo(hostPath(device)).path());
        ASSERT_EQ(mkfifo(qPrintable(hostPath(device)), 0600), 0);
        openWriter(device);
    }
    void openWriter(const char* device)
    {
        m_nWriter = ::open(qPrintable(hostPath(device)), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(m_nWriter, 0);
    }
    void closeWriter()
    {
        if (m_nWriter >= 0)
            close(m_nWriter);
        m_nWriter = -1;
    }
    void send(const QByteArray& records) { EXPECT_EQ(sendSome(records), records.size()); }
    // As much as the pipe takes.
    ssize_t sendSome(const QByteArray& records)
    {
        return write(m_nWriter, records.constData(), size_t(records.size()));
    }
    // Bytes that the page has not read yet.
    int unread() const
    {
        int count = 0;
        EXPECT_EQ(ioctl(m_nWriter, FIONREAD, &count), 0);
        return count;
    }

    // A finger comes down and stays until the point is taken: the panel at these counts.
    void holdAt(int x, int y)
    {
        kit::press({400, 100});
        QByteArray reports;
        for (int i = 0; i < 13; ++i) // two samples each, the first of all without pressure
            reports += rawRecords::report(x, y, 60);
        send(reports);
        kit::stepTime(400);
    }
    void touchPoint(int x, int y)
    {
        holdAt(x, y);
        send(rawRecords::lifted());
        kit::release({400, 100});
        kit::stepTime(200);
    }
    // A panel that lies turned by a quarter, 4 counts a pixel one way and 7 the other.
    void touchFivePoints()
    {
        const int x[] = {50, 750, 750, 50, 400};
        const int y[] = {50, 50, 430, 430, 240};
        for (int i = 0; i < 5; ++i)
            touchPoint(3900 - 7 * y[i], 300 + 4 * x[i]);
    }
    // Touches that no plane takes to the crosses.
    void failRound()
    {
        for (const QPoint& place :
             {QPoint(100, 100), QPoint(700, 100), QPoint(700, 400), QPoint(100, 400), QPoint(900, 900)})
            touchPoint(place.x(), place.y());
    }
    void expectJitter(const char* x, const char* y)
    {
        EXPECT_EQ(readFile("/proc/tsc/x_jitter"), x);
        EXPECT_EQ(readFile("/proc/tsc/y_jitter"), y);
    }

    enum : int { m_nRoundMs = 200 }; // from the last point of a round to its end
    QPointer<QWidget> m_page;

private:
    int m_nWriter = -1;
};
