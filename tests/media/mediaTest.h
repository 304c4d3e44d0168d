#pragma once
// What the tests of media files share.
#include "support/container/chList.h"
#include "support/text/chString.h"
#include "tests/kit/phoneTest.h"
#include <QBuffer>
#include <QImage>

class MediaTest : public PhoneTest
{
protected:
    using FileList = chObjList_dynamic<chString, 16>;

    bool isTraced(const QString& text) const { return traces().contains(text); }

    static QByteArray picture(const char* format, int width, int height, QRgb colour = 0xff2060a0)
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format));
        return bytes;
    }
    static FileList listOf(const QStringList& files)
    {
        FileList list;
        for (const QString& file : files)
            list.push_back(chString(file.toUtf8().constData()));
        return list;
    }
    static QStringList texts(const FileList& list)
    {
        QStringList all;
        for (const chString& text : list)
            all.append(QString::fromUtf8(text.GetText()));
        return all;
    }
};
