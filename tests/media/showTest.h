#pragma once
// What the tests of shows and savers share: pictures and films that "/phone/resource/screenview.xml" names,
// and disks.
#include "host/services/storage/storageWorld.h"
#include "tests/media/mediaTest.h"
#include <QDir>

class ShowTest : public MediaTest
{
protected:
    static constexpr unsigned kColours[] = {0xffc04020, 0xff20c040, 0xff2040c0};

    void putPictures(int count)
    {
        for (int i = 0; i < count; ++i)
            writeFile(QString("/rundata/media/image/%1.png").arg(i).toUtf8(),
                      picture("PNG", 8, 8, kColours[i]));
        putTable("image", "ImageView", "*.png");
    }
    void putFilms(int count)
    {
        for (int i = 0; i < count; ++i)
            writeFile(QString("/rundata/media/video/%1.mp4").arg(i).toUtf8(), "film");
        putTable("video", "VideoView", "*.mp4");
    }
    // The phone's folder, and every USB disk.
    void putTable(const char* folder, const char* kind, const char* filter)
    {
        writeFile("/phone/resource/screenview.xml",
                  QString("<%1><time><timeout interval=\"9\"/></time><storage><device type=\"phone\"><file>"
                          "<item path=\"/rundata/media/%2\" filter=\"%3\" bSubDir=\"0\"/></file></device>"
                          "<device type=\"uDisk\"><file><item path=\"/\" filter=\"%3\" bSubDir=\"1\"/></file>"
                          "</device></storage></%1>")
                      .arg(kind, folder, filter)
                      .toUtf8());
    }
    static bool isAt(int picture)
    {
        const QImage screen = kit::screen();
        return screen.pixel(5, 5) == kColours[picture] && screen.pixel(795, 475) == kColours[picture];
    }
    // What is on the disk of that name, on this machine.
    QString onDisk(const char* name, const char* file) const { return m_disks.filePath(name) + "/" + file; }
    // The phone's path of the disk.
    QString plug(STORAGE_TYPE type, const char* name)
    {
        QDir(m_disks.path()).mkpath(name);
        const QString path = storageWorldPlug(type, m_disks.filePath(name));
        EXPECT_FALSE(path.isEmpty());
        kit::settle();
        return path;
    }
    void unplug(const char* name)
    {
        EXPECT_EQ(storageWorldUnplug(m_disks.filePath(name)), 1);
        kit::settle();
    }

private:
    QTemporaryDir m_disks;
};
