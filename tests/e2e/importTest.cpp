// A stick is put into the running phone, and what lies on it is imported.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>

namespace {

class ImportStory : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        put("photos/beach.jpg", kit::jpegPhoto({600, 400}));
        put("$(reboot) `id`.jpg", kit::jpegPhoto({300, 300}));
        put("large.jpg", kit::jpegPhoto({2500, 1500}));
        put("damaged.jpg", "no picture");
        put("tune.wav", "tune");
    }
    QString stick() const { return root() + "/STICK"; }
    void put(const QString& name, const QByteArray& content) const
    {
        QDir().mkpath(QFileInfo(stick() + '/' + name).path());
        QFile file(stick() + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    void plug() { ctl({"set", "storage", "plug", "usb", stick()}); }
    void pull() { ctl({"set", "storage", "unplug", stick()}); }
    void openImport(const QString& manager, const QString& page)
    {
        plug();
        ctl({"open", manager});
        waitPage("dlgMediaManager");
        softKey(2);
        waitPage(page);
    }
    QStringList rows()
    {
        QStringList names;
        for (const QJsonValue& name : widget("lstWgtMediaList")["items"].toArray())
            names.append(name.toString());
        return names;
    }
    // By the arrow keys.
    void goTo(const QString& name)
    {
        ASSERT_TRUE(rows().contains(name)) << qPrintable(name);
        for (int i = 0; i < 30 && rows().value(widget("lstWgtMediaList")["index"].toInt()) != name; ++i)
            key("Down");
    }
    QString keyTitle(int index) { return softKeys().value(index); }
    bool offers(int index, const QString& title)
    {
        return kit::waits([&] { return keyTitle(index) == title; }, 5000);
    }
    void expectBox(const QString& text, const QString& button)
    {
        waitPage("dlgMessageBox");
        EXPECT_EQ(widget("labText")["text"].toString(), text);
        tap(button);
    }
    QStringList managed()
    {
        QStringList names;
        for (const QJsonValue& row : widget("tabWgtMediaList")["rows"].toArray())
            names.append(row.toArray().first().toString());
        return names;
    }
    QString file(const char* devicePath) const { return root() + devicePath; }
};

TEST_F(ImportStory, APictureComesFromAStickByFinger)
{
    openImport("Photo Manager", "dlgImageImport");
    EXPECT_EQ(rows(), QStringList{"STICK"});
    softKey(0);
    EXPECT_EQ(rows(), QStringList({"..", "photos", "$(reboot) `id`.jpg", "damaged.jpg", "large.jpg"}));
    const QJsonObject list = widget("lstWgtMediaList");
    const int x = list["x"].toInt() + 60, y = list["y"].toInt() + 18;
    tap(x, y + 36);
    tap(x, y + 36);
    EXPECT_EQ(rows(), QStringList({"..", "beach.jpg"}));
    tap(x, y + 36);
    ASSERT_TRUE(offers(1, "Import"));
    softKey(1);
    expectBox("Successful loading!", "btnOK");
    waitPage("dlgImageImport");
    softKey(1);
    expectBox("Load the same file ?", "btnNo");
    softKey(3);
    waitPage("dlgMediaManager");
    EXPECT_TRUE(managed().contains("beach.jpg"));
    EXPECT_EQ(QImage(file("/rundata/media/image/beach.jpg")).size(), QSize(600, 400));
}

TEST_F(ImportStory, APictureOfAContactIsScaledByKeysWhateverItIsCalled)
{
    openImport("Contact Picture Manage", "dlgImageImport");
    key("Return");
    goTo("$(reboot) `id`.jpg");
    ASSERT_TRUE(offers(1, "Import"));
    key("F2");
    expectBox("Successful loading!", "btnOK");
    const QStringList made = QDir(file("/rundata/media/contact-image")).entryList({"20*.jpg"}, QDir::Files);
    ASSERT_EQ(made.size(), 1);
    EXPECT_EQ(QImage(file("/rundata/media/contact-image/") + made.first()).size(), QSize(126, 126));
    EXPECT_TRUE(logOf("reboot").isEmpty());
    EXPECT_EQ(
        logOf("command").filter("/mini-boot/bin/imageScale.exx @&@/storage/uDisk1/$(reboot) `id`.jpg").size(),
        1);
    key("F4");
    waitPage("dlgMediaManager");
    EXPECT_TRUE(managed().contains(made.first()));
}

TEST_F(ImportStory, ATooLargeOrDamagedPictureSaysSoAndIsNotOffered)
{
    openImport("Photo Manager", "dlgImageImport");
    key("Return");
    for (const auto& [name, words] :
         {std::pair("damaged.jpg", "Image is error!"), std::pair("large.jpg", "Image is oversized!")}) {
        goTo(name);
        EXPECT_TRUE(kit::waits([&] { return widget("labImagePreview")["text"].toString() == words; }, 5000))
            << name;
        EXPECT_EQ(softKeys(), QStringList({"", "", "Delete", "Exit"}));
    }
}

TEST_F(ImportStory, ARingToneIsThereToBeChosen)
{
    openImport("Sound Manager", "dlgSoundImport");
    key("Return");
    goTo("tune.wav");
    ASSERT_TRUE(offers(1, "Import"));
    EXPECT_TRUE(kit::waits([&] { return logOf("ring").contains("/storage/uDisk1/tune.wav 1"); }, 5000));
    key("F2");
    expectBox("Successful loading!", "btnOK");
    key("F4");
    waitPage("dlgMediaManager");
    EXPECT_TRUE(managed().contains("tune.wav"));
}

TEST_F(ImportStory, AStickThatIsPulledClosesThePageAtAnyMoment)
{
    for (const int moment : {0, 1, 2, 3}) {
        openImport("Photo Manager", "dlgImageImport");
        if (moment > 0)
            key("Return");
        if (moment > 1)
            goTo("large.jpg");
        if (moment > 2) {
            ctl({"key", "F3"});
            waitPage("dlgMessageBox");
        }
        pull();
        waitPage("dlgMediaManager");
        EXPECT_TRUE(QFile::exists(stick() + "/large.jpg"));
        softKey(3);
        waitPage("frmDesktop");
    }
}

TEST_F(ImportStory, SpeaksTheLanguageOfThePhone)
{
    ctl({"config", "/rundata/config/user/user.ini", "Language", "strGUILanguage", "French"});
    quit();
    start();
    openImport("Photo Manager", "dlgImageImport");
    key("Return");
    goTo("$(reboot) `id`.jpg");
    ASSERT_TRUE(offers(1, "Importer"));
    EXPECT_EQ(softKeys(), QStringList({"Aperçu", "Importer", "Effacer", "Quitter"}));
    key("F2");
    expectBox("Le fichier a été importé.", "btnOK");
}

TEST_F(ImportStory, WithoutAStickThereIsNothingToImportFrom)
{
    ctl({"open", "Photo Manager"});
    waitPage("dlgMediaManager");
    softKey(2);
    expectBox("The USB device is not connected!", "btnOK");
}

} // namespace
