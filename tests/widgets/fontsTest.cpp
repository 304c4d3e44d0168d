// Which descriptions of fonts the phone reads.
#include "host/look/look.h"
#include <QFileInfo>
#include <QStringList>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

namespace {

QStringList filesRead()
{
    QStringList names;
    FcStrList* files = FcConfigGetConfigFiles(FcConfigGetCurrent());
    while (const FcChar8* file = FcStrListNext(files))
        names.append(QFileInfo(QString::fromUtf8(reinterpret_cast<const char*>(file))).fileName());
    FcStrListDone(files);
    return names;
}

TEST(Fonts, OnlyThePhonesOwnDescriptionIsRead)
{
    EXPECT_EQ(filesRead(), QStringList({"fonts.conf"}));
}

} // namespace
