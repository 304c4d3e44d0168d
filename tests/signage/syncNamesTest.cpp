// Names that a server may not give to a file: none of them reaches the disk or a request.
#include "signage/nDeckFolder.h"
#include "signage/scheduleReader.h"
#include "tests/signage/signageTest.h"

namespace {

class SyncNames : public SignageTest
{
protected:
    static QByteArray escaped(const QByteArray& name) { return QString(name).toHtmlEscaped().toUtf8(); }
    // A schedule that names the file as a layout and as a medium.
    void offer(const QByteArray& name)
    {
        const QByteArray file = escaped(name);
        server.schedule = "<norvane><ndeck><result><success/></result><schedule><layout file=\"" + file +
                          "\" fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\"/></schedule><files>"
                          "<file type=\"layout\" path=\"" +
                          file +
                          "\" md5=\"1\"/>"
                          "<file type=\"media\" path=\"" +
                          file +
                          "\" md5=\"1\" size=\"1\"/>"
                          "</files></ndeck></norvane>";
    }
    void expectRefused(const QByteArray& name)
    {
        server.order.clear();
        offer(name);
        ASSERT_TRUE(sync());
        EXPECT_EQ(server.order, QList<QByteArray>{"schedule"}) << name.constData();
        EXPECT_EQ(records(), QStringList()) << name.constData();
        EXPECT_EQ(deckFiles(), QStringList()) << name.constData();
        EXPECT_TRUE(traces().filter("refuses the file name").size() >= 2) << name.constData();
    }
};

} // namespace

TEST_F(SyncNames, ThatLeadOutOfTheFolderAreRefused)
{
    for (const char* name : {"../a.png", "/etc/passwd", "sub/a.png", "..", ".", "a.png/", "/"})
        expectRefused(name);
}

TEST_F(SyncNames, WithControlCharactersAreRefused)
{
    server.schedule = "<norvane><ndeck><files><file type=\"media\" path=\"a&#10;b\" md5=\"1\" size=\"1\"/>"
                      "<file type=\"media\" path=\"a&#9;b\" md5=\"1\" size=\"1\"/>"
                      "<file type=\"media\" path=\"a&#127;b\" md5=\"1\" size=\"1\"/>"
                      "</files></ndeck></norvane>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(server.order, QList<QByteArray>{"schedule"});
    EXPECT_TRUE(traces().contains("nDeckFileManager refuses the file name(a?b)"));
}

TEST_F(SyncNames, OfTheClientsOwnFilesAreRefused)
{
    for (const char* name :
         {"FileList.xml", "FileList.xml.new", "display.xml", "register.tmp", "filelist.XML", "DISPLAY.xml",
          "Register.Tmp", "display.xml.bad", ".display.xml.save0", ".hidden"})
        expectRefused(name);
}

TEST_F(SyncNames, WithTheClientsSuffixesAreRefused)
{
    for (const char* name : {"a.ing", "a.new", "a.png.ing", "a.png.NEW", ".ing", ".new", "a.Ing"})
        expectRefused(name);
}

TEST_F(SyncNames, ThatAreEmptyAreRefused)
{
    expectRefused("");
}

TEST_F(SyncNames, OfUpTo140BytesAreTaken)
{
    expectRefused(QByteArray(141, 'n'));
    const QByteArray longest(140, 'n');
    server.schedule = QByteArray();
    server.medias = {{longest, "1"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deck(longest), "1");
}

TEST_F(SyncNames, ThatOnlyLookLikeTheClientsOwnAreTaken)
{
    server.medias = {{"xdisplay.xml", "1"}, {"display.xmlx", "2"}, {"ing", "3"}, {"new", "4"}, {"a..b", "5"}};
    ASSERT_TRUE(syncIntoUse());
    EXPECT_EQ(deckFiles(), (QStringList{"a..b", "display.xmlx", "ing", "new", "xdisplay.xml"}));
}

TEST_F(SyncNames, OfTheStoredListAreCheckedToo)
{
    writeFile("/rundata/config/victim.ing", "x");
    writeFile("/rundata/config/other.new", "x");
    writeDeck("display.xml",
              "<files><file type=\"media\" path=\"../config/victim.ing\" md5=\"1\" size=\"1\"/>"
              "<file type=\"media\" path=\"../config/other.new\" md5=\"1\" size=\"1\"/>"
              "<file type=\"media\" path=\"../config/system.ini\" md5=\"1\" size=\"1\"/>"
              "<file type=\"media\" path=\"FileList.xml.ing\" md5=\"1\" size=\"1\"/></files>");
    EXPECT_TRUE(manager.InitFileList());
    ASSERT_TRUE(quiet());
    EXPECT_EQ(records(), QStringList());
    EXPECT_EQ(server.order, QList<QByteArray>());
    EXPECT_EQ(readFile("/rundata/config/victim.ing"), "x");
    EXPECT_EQ(readFile("/rundata/config/other.new"), "x");
}

TEST_F(SyncNames, AFloodOfEntriesIsCutOff)
{
    QByteArray layouts, files;
    for (int i = 0; i < SCHEDULE_LAYOUT_LIMIT + 10; ++i)
        layouts += "<layout file=\"" + QByteArray::number(i) + "\" fromdt=\"0\" todt=\"2037-01-01 0:0:0\"/>";
    for (int i = 0; i < SCHEDULE_MEDIA_LIMIT + 10; ++i)
        files += "<file type=\"media\" path=\"m" + QByteArray::number(i) + "\" md5=\"1\" size=\"1\"/>";
    writeDeck("FileList.xml", "<norvane><ndeck><schedule>" + layouts + "</schedule><files>" + files +
                                  "</files></ndeck></norvane>");
    const scheduleReader reader("/rundata/nDeck/FileList.xml");
    EXPECT_TRUE(reader.IsValid());
    nDeckLayoutList found;
    nDeckNodeList medias;
    reader.GetLayouts(found);
    reader.GetMedias(medias);
    EXPECT_EQ(found.size(), SCHEDULE_LAYOUT_LIMIT);
    EXPECT_EQ(medias.size(), SCHEDULE_MEDIA_LIMIT);
}

TEST_F(SyncNames, AnEntryWithAnEndlessTextIsLeftOut)
{
    server.schedule = "<norvane><ndeck><files><file type=\"media\" path=\"a\" md5=\"" + QByteArray(256, '1') +
                      "\" size=\"1\"/><file type=\"media\" path=\"b\" md5=\"" + QByteArray(255, '1') +
                      "\" size=\"1\"/></files></ndeck></norvane>";
    server.silent = {"b"};
    ASSERT_TRUE(manager.DownloadDisplayFrame());
    ASSERT_TRUE(kit::waitUntil([&] { return server.requests("b") == 1; }));
    EXPECT_EQ(server.requests("a"), 0);
}
