#pragma once
// What the tests of the media manager share: the page as a menu opens it, over files that the test puts
// there.
#include "media/dlgMediaManager.h"
#include "media/mediaPages.h"
#include "support/host/text.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/pageTest.h"
#include "tests/media/mediaTest.h"
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTableWidget>
#include <QTimer>
#include <functional>

class MediaManagerTest : public PageTest
{
protected:
    MediaManagerTest()
    {
        mediaPages();
        kit::holdClocks(true);
        // Of photos and films the phone has those that a test puts there.
        for (const char* folder : {"/phone/resource/sysdata/ephoto", "/phone/resource/sysdata/video"})
            QDir(hostPath(folder)).removeRecursively();
    }

    struct Pictures : MediaTest
    {
        using MediaTest::picture;
    };
    void putPicture(const char* path, QRgb colour = 0xff2060a0)
    {
        writeFile(path, Pictures::picture("PNG", 8, 8, colour));
    }
    void putPhotos(const QStringList& names)
    {
        for (const QString& name : names)
            putPicture(("/rundata/media/image/" + name).toUtf8());
    }
    void putRings(const QStringList& names)
    {
        for (const QString& name : names)
            writeFile(("/rundata/media/ring/" + name).toUtf8(), "RIFF");
    }
    // A table of one type.
    void putTable(const char* type, const char* filter, const QByteArray& items)
    {
        writeFile("/phone/resource/mediafile.xml", QByteArray("<MediaFile><") + type + " filter=\"" + filter +
                                                       "\"><filelist>" + items + "</filelist></" + type +
                                                       "></MediaFile>");
    }

    dlgMediaManager* manager() { return static_cast<dlgMediaManager*>(page); }
    QTableWidget* list() { return child<QTableWidget>("tabWgtMediaList"); }
    QLabel* label() { return child<QLabel>("labImagePreview"); }
    QStringList names()
    {
        QStringList all;
        for (int row = 0; row < list()->rowCount(); ++row)
            all.append(list()->item(row, 0)->text());
        return all;
    }
    int row() { return list()->currentRow(); }
    QString softKeys()
    {
        QStringList all;
        for (int key = 0; key < SOFT_KEY_COUNT; ++key)
            all.append(softKeyTitle(key));
        return all.join("|");
    }
    // The rows with the icon of the one that plays.
    QList<int> playing()
    {
        QList<int> rows;
        for (int row = 0; row < list()->rowCount(); ++row) {
            if (!list()->item(row, 1)->icon().isNull())
                rows.append(row);
        }
        return rows;
    }
    void tapRow(int row)
    {
        kit::tap(list()->viewport()->mapToGlobal(list()->visualItemRect(list()->item(row, 0)).center()));
    }
    // Does something while the next box is open.
    void whenBoxIsUp(const std::function<void(QDialog*)>& action)
    {
        QTimer* look = new QTimer(page);
        QObject::connect(look, &QTimer::timeout, look, [look, action] {
            QDialog* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!box || !look->isActive())
                return;
            look->stop();
            action(box);
        });
        look->start(0);
    }
    bool isThere(const char* path) const { return QFile::exists(hostPath(path)); }
    QStringList rings() const { return logged("ring"); }
};
