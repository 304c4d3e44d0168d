#include "tests/frame/frameTest.h"
#include "support/host/registry.h"
#include <QDir>
#include <QFile>

void FrameTest::writeKey(const char* file, const char* section, const char* key, const char* value)
{
    ASSERT_EQ(nuxSetRegistryString(file, section, key, value), 1);
}

void FrameTest::replaceFirmwareFile(const char* devicePath, const QByteArray& content) const
{
    // The firmware is a link to the built image: its folders on the way become folders of this test.
    const QStringList parts = QString(devicePath).split('/', Qt::SkipEmptyParts);
    QString path = root();
    for (int i = 0; i + 1 < parts.size(); ++i) {
        path += "/" + parts[i];
        const QString image = QFileInfo(path).symLinkTarget();
        if (image.isEmpty())
            continue;
        QFile::remove(path);
        QDir().mkpath(path);
        for (const QFileInfo& entry : QDir(image).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
            QFile::link(entry.filePath(), path + "/" + entry.fileName());
    }
    QFile::remove(hostPath(devicePath));
    writeFile(devicePath, content);
}
