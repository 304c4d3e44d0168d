#pragma once
// What the tests of the show share: a phone whose signage client is on and known to its server, the files of
// its folder, and layouts that are put up as a schedule would.
#include "host/services/system/hostLog.h"
#include "signage/NdeckWidgetPoolManager.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckPanel.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckWindow.h"
#include "support/host/net.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/phoneTest.h"
#include "tests/kit/plain/signTexts.h"
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QStringList>

#define SYSTEM_FILE "/rundata/config/system.ini"
#define NDECK_FOLDER "/rundata/nDeck/"

inline const QRect kFull(QPoint(0, 0), QPoint(799, 479));

class DisplayTest : public PhoneTest
{
protected:
    // Layouts change at their second, not some time after.
    DisplayTest() { kit::holdClocks(true); }
    void SetUp() override
    {
        set("bEnable", 1);
        GetNDeckRegister().SetRegisterStatus(1);
    }

    static nDeckDisplay& display() { return GetNDeckDispaly(); }
    static nDeckFrame& frame() { return GetnDeckFrame(); }
    static nDeckWindow& window() { return GetnDeckWindow(); }

    static void set(const char* key, int value) { nuxSetRegistryInt(SYSTEM_FILE, "nDeck", key, value); }

    // Full screen, as the page opens it.
    static void show(E_NDECKWINDOW_TYPE type = NDECK_WINDOW_PAGE)
    {
        EXPECT_TRUE(nDeckWindowDisplay(1, type, nullptr, kFull));
        kit::settle();
        picturesCome();
    }

    // Large ones take a moment.
    static void picturesCome()
    {
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
        kit::settle();
    }

    // A file that the client has fetched.
    void addFile(const char* name, const QByteArray& content)
    {
        writeFile((QByteArray(NDECK_FOLDER) + name).constData(), content);
        GetNDeckFileManager().UpdateFileList(name, name, "media", "1", "", "", "", "", 0);
    }

    static QByteArray picture(const QColor& colour, const char* format = "PNG", QSize size = QSize(80, 48))
    {
        return kit::signPicture(colour, size, format);
    }

    static chString timeText(int offsetSeconds)
    {
        return chTime(netGetLocalTime() + offsetSeconds).Format("%Y-%m-%d %H:%M:%S");
    }

    // One layout of the next frame; times in seconds from now.
    void addLayout(const char* file, const QByteArray& xml, int from = -3600, int to = 3600, int meeting = 0)
    {
        writeFile((QByteArray(NDECK_FOLDER) + file).constData(), xml);
        _nDeckLayoutNode node;
        node.file = file;
        node.md5 = file;
        node.fromdt = timeText(from);
        node.todt = timeText(to);
        node.bMeeting = meeting;
        m_frame.layouts.push_back(node);
    }

    // A medium that the frame needs, fetched or not.
    void awaitMedia(const char* name)
    {
        _nDeckFileNode node;
        node.path = name;
        node.type = "media";
        m_frame.medias.push_back(node);
    }

    // The client runs, and a schedule brought the frame.
    void takeUp()
    {
        display().CreateDisplay();
        display().UpdateDisplay(&m_frame);
        kit::settle();
    }

    static QByteArray layout(const QByteArray& regions, const QByteArray& attributes = "")
    {
        return kit::signLayout(regions, attributes);
    }
    static QByteArray region(const QRect& rect, const QByteArray& media)
    {
        return kit::signRegion(rect, media);
    }
    static QByteArray region(const QByteArray& media) { return region(QRect(0, 0, 800, 480), media); }
    static QByteArray image(const char* file, const char* seconds, const char* number = "")
    {
        return kit::signImage(file, seconds, dialled(number));
    }
    static QByteArray video(const char* file, const char* seconds, const char* number = "")
    {
        return kit::signVideo(file, seconds, dialled(number));
    }
    static QByteArray text(const char* html, const char* seconds, const char* attributes = "")
    {
        return kit::signText(html, seconds, attributes);
    }
    static QByteArray dialled(const char* number) { return QByteArray("phoneNum=\"") + number + '"'; }

    QString current() const
    {
        return display().GetCurrentLayout() == display().end()
                   ? QString()
                   : toQString(display().GetCurrentLayout()->GetName());
    }

    static QList<nDeckPanel*> panels() { return frame().findChildren<nDeckPanel*>(); }
    static QRgb pixel(int x, int y) { return kit::screen().pixel(x, y) | 0xff000000u; }
    static QString background() { return toQString(frame().GetBackgroundImage()); }

    bool traced(const QString& line) const { return traces().contains(line); }

    DisplayFrame m_frame;
};
