// Pictures of contacts are scaled while they are imported.
#include "media/pictureScaling.h"
#include "support/host/net.h"
#include "support/host/program.h"
#include "tests/kit/kitTime.h"
#include "tests/media/importPage.h"
#include <QFile>
#include <cstring>
#include <ctime>

namespace {

using Texts = QStringList;

const char* const kFolder = "/rundata/media/contact-image";
const char* const kProgram = "/mini-boot/bin/imageScale.exx";

class ImportScale : public ImportTest
{
protected:
    ImportScale() { good = picture("JPG", 400, 200); }
    // Takes the place of the program.
    void script(const QByteArray& text) const
    {
        writeFile(kProgram, "#!/bin/sh\n" + text + "\n");
        QFile::setPermissions(hostPath(kProgram), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QImage imported(const QString& name) const { return QImage(hostPath(kFolder) + '/' + name); }
    Texts filesThere() const { return filesIn(kFolder); }
    static QString now() { return QString("20300102030405"); }
    // The phone's clock at the beginning of that second.
    void setSecond(int second) const
    {
        timespec machine;
        clock_gettime(CLOCK_REALTIME, &machine);
        kit::moveClocks(1000 - machine.tv_nsec / 1000000);
        netSetLocalTime(2030, 1, 2, 3, 4, second);
    }
    QString trace() const { return traces().filter("=========cCommand(").value(0); }

    QByteArray good;
};

TEST_F(ImportScale, APictureHasTheSizeOfAContactsThen)
{
    put("face.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Successful loading!"});
    EXPECT_EQ(filesThere(), Texts{"face.jpg"});
    EXPECT_EQ(imported("face.jpg").size(), QSize(126, 126));
    EXPECT_EQ(readFile("/tmp/imageScale.out"), "1");
    EXPECT_EQ(trace(), "=========cCommand(export QT_PLUGIN_PATH=/phone/lib;/mini-boot/bin/imageScale.exx "
                       "\"@&@/storage/uDisk1/face.jpg @&@126 @&@126 @&@/rundata/media/contact-image/face.jpg "
                       "@&@/tmp/imageScale.out\")");
}

TEST_F(ImportScale, BlanksAreTakenOutOfTheNameAndItKeepsItsLetters)
{
    put("my Face_1.a.JPG", good);
    openContacts();
    enter();
    EXPECT_EQ(import("my Face_1.a.JPG"), Texts{"Successful loading!"});
    EXPECT_EQ(filesThere(), Texts{"myFace_1.a.JPG"});
    EXPECT_EQ(imported("myFace_1.a.JPG").size(), QSize(126, 126));
    EXPECT_TRUE(trace().contains("\"@&@/storage/uDisk1/my Face_1.a.JPG @&@126"));
}

TEST_F(ImportScale, ANameInOtherLettersBecomesTheTime)
{
    QRgb colour = 0xff2060a0;
    for (const char* name : {"\xE9\x9F\xB3.png", "a-b.png", "a(1).png", "a\nb.png"}) {
        colour += 0x200000;
        put(QString::fromUtf8(name), picture("PNG", 20, 10, colour));
        openContacts();
        enter();
        setSecond(5);
        EXPECT_EQ(import(QString::fromUtf8(name)), Texts{"Successful loading!"}) << name;
        EXPECT_EQ(filesThere(), Texts{now() + ".png"}) << "those of one second overwrite each other";
        EXPECT_EQ(imported(now() + ".png").pixel(63, 63), colour) << name;
        delete page;
    }
    openContacts();
    enter();
    setSecond(6);
    import("a-b.png");
    EXPECT_EQ(filesThere(), Texts({now() + ".png", "20300102030406.png"}));
}

TEST_F(ImportScale, NoNameEverReachesAShell)
{
    int second = 0;
    for (const char* name :
         {"$(touch pwned).jpg", "`touch pwned`.jpg", "\";touch pwned;\".jpg", "'.jpg", "a\ntouch pwned\n.jpg",
          "& @&@1 @&@x.jpg", "$HOME.jpg", "*.jpg", "|sh.jpg", "\\.jpg"}) {
        put(name, good);
        openContacts();
        enter();
        setSecond(second++);
        EXPECT_EQ(import(name), Texts{"Successful loading!"}) << name;
        EXPECT_TRUE(trace().contains(QString("\"@&@/storage/uDisk1/%1 @&@126 @&@126 @&@").arg(name))) << name;
        mark();
        delete page;
    }
    EXPECT_EQ(filesThere().size(), second);
    for (const QString& file : filesThere())
        EXPECT_EQ(imported(file).size(), QSize(126, 126)) << qPrintable(file);
    EXPECT_FALSE(QFile::exists("pwned"));
    EXPECT_FALSE(QFile::exists(stick() + "/pwned"));
}

TEST_F(ImportScale, ThePluginsAndTheDeviceRootAreTheProgramsEnvironment)
{
    script("printf %s \"$QT_PLUGIN_PATH $HX_SYSROOT $#\" > \"$HX_SYSROOT/seen\"");
    put("face.jpg", good);
    openContacts();
    enter();
    import("face.jpg");
    EXPECT_EQ(readFile("/seen"), "/phone/lib " + root().toUtf8() + " 1") << "all words are one argument";
}

TEST_F(ImportScale, OnlyTheVerdictZeroIsAFailure)
{
    put("face.jpg", good);
    for (const char* verdict : {"1", "", "00", "0\n", "no", "-1", "0 "}) {
        script("printf '" + QByteArray(verdict) + "' > \"$HX_SYSROOT/tmp/imageScale.out\"");
        openContacts();
        enter();
        EXPECT_EQ(import("face.jpg"), Texts{"Successful loading!"}) << verdict;
        EXPECT_EQ(readFile("/rundata/media/contact-image/face.jpg"), good);
        QFile::remove(hostPath(kFolder) + "/face.jpg");
        delete page;
    }
    script("printf 0 > \"$HX_SYSROOT/tmp/imageScale.out\"");
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts()) << "the target is removed";
    EXPECT_TRUE(
        isTraced("Import file (/storage/uDisk1/face.jpg) to (/rundata/media/contact-image/face.jpg) fail!"));
}

TEST_F(ImportScale, AVerdictOnAnotherPictureDoesNotCount)
{
    writeFile("/tmp/imageScale.out", "0");
    script("true");
    put("face.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Successful loading!"});
}

TEST_F(ImportScale, WhereAnotherVerdictCannotBeTakenAwayNothingCounts)
{
    QDir().mkpath(hostPath("/tmp/imageScale.out"));
    put("face.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts());
    EXPECT_TRUE(isTraced("/tmp/imageScale.out is somebody else's"));
}

TEST_F(ImportScale, AVerdictThatIsALinkIsNotFollowed)
{
    QDir().mkpath(hostPath("/tmp"));
    QFile::link(hostPath("/rundata/config/system.ini"), hostPath("/tmp/imageScale.out"));
    const QByteArray before = readFile("/rundata/config/system.ini");
    put("face.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Successful loading!"});
    EXPECT_EQ(readFile("/rundata/config/system.ini"), before);
    EXPECT_EQ(readFile("/tmp/imageScale.out"), "1");
}

TEST_F(ImportScale, AProgramThatDiesHasNotScaled)
{
    script("kill -9 $$");
    put("face.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts());
}

TEST_F(ImportScale, AFailedScalingLeavesItsFileUnderTheNameThatItWasGiven)
{
    script("printf 0 > \"$HX_SYSROOT/tmp/imageScale.out\"");
    put("a-b.jpg", good);
    put("my face.jpg", good);
    openContacts();
    enter();
    setSecond(5);
    EXPECT_EQ(import("a-b.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts{now() + ".jpg"});
    EXPECT_EQ(import("my face.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts({now() + ".jpg", "myface.jpg"}));
    EXPECT_EQ(readFile("/rundata/media/contact-image/myface.jpg"), good) << "as it was copied";
}

TEST_F(ImportScale, AFailedCopyLeavesNothingUnderAnyName)
{
    QDir().mkpath(hostPath(kFolder) + '/' + now() + ".jpg");
    put("a-b.jpg", good);
    openContacts();
    enter();
    setSecond(5);
    EXPECT_EQ(import("a-b.jpg"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts{now() + ".jpg"}) << "the folder that was in the way";
    EXPECT_EQ(trace(), "") << "nothing is scaled that was not copied";
}

// The longest name whose command still fits, and one blank more, which the target loses.
TEST_F(ImportScale, ACommandOf256BytesIsRefusedAndLeavesNothing)
{
    const tagScaleOrder nameless = {"/storage/uDisk1/.jpg", "/rundata/media/contact-image/.jpg", 126, 126};
    const int room = 255 - int(scaleCommand(nameless).size());
    const QString letters(room / 2, 'n');
    const QString fits = QString(room % 2, ' ') + letters + ".jpg";
    const QString longer = ' ' + fits;
    put(fits, good);
    put(longer, good);
    openContacts();
    enter();
    EXPECT_EQ(import(fits), Texts{"Successful loading!"});
    EXPECT_EQ(trace().size(), int(strlen("=========cCommand()")) + 255);
    EXPECT_EQ(filesThere(), Texts{letters + ".jpg"});
    mark();
    EXPECT_EQ(import(longer), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts{letters + ".jpg"});
    EXPECT_EQ(trace(), "");
    EXPECT_TRUE(isTraced("(/storage/uDisk1/" + longer + ") has too long a name to be scaled"));
}

TEST_F(ImportScale, AWidthOrHeightBelowOneIsAPlainCopy)
{
    put("my face.jpg", good);
    for (const auto& [width, height] : {std::pair(0, 126), std::pair(126, 0), std::pair(-1, 126)}) {
        open<dlgImageImport>("contact-image", width, height);
        enter();
        EXPECT_EQ(import("my face.jpg"), Texts{"Successful loading!"});
        EXPECT_EQ(readFile("/rundata/media/contact-image/my face.jpg"), good);
        EXPECT_EQ(trace(), "");
        QFile::remove(hostPath(kFolder) + "/my face.jpg");
        delete page;
    }
}

TEST_F(ImportScale, ADamagedPictureThatPassesTheFirstLookFailsAndTheStickStaysUsable)
{
    put("face.png", picture("PNG", 300, 300).left(400));
    put("other.jpg", good);
    openContacts();
    enter();
    EXPECT_EQ(import("face.png"), Texts{"Loading fail!"});
    EXPECT_EQ(filesThere(), Texts());
    EXPECT_EQ(import("other.jpg"), Texts{"Successful loading!"});
}

} // namespace
