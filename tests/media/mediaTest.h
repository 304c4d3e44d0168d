#pragma once
// What the tests of media files share.
#include "host/services/system/hostLog.h"
#include "support/container/chList.h"
#include "support/text/chString.h"
#include "tests/kit/phoneTest.h"
#include <QBuffer>
#include <QImage>

class MediaTest : public PhoneTest
{
protected:
    using FileList = chObjList_dynamic<chString, 16>;

    // What was traced since the test began, in order.
    QStringList traces() const
    {
        QStringList found;
        for (const tagLogEntry& entry : hostLogFrom(m_nFirstLog)) {
            if (entry.strKind == "trace")
                found.append(entry.strText);
        }
        return found;
    }
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

private:
    const int m_nFirstLog = hostLogFrom(0).isEmpty() ? 1 : hostLogFrom(0).last().nNumber + 1;
};
