// Who the phone is to the signage server, and how it makes itself known.
#include "signage/nDeckDisplay.h"
#include "signage/nDeckRegister.h"
#include "support/host/http.h"
#include "tests/signage/signageTest.h"
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* const kResult = "/tmp/ndeck_reg_result.txt";

class Registration : public SignageTest
{
protected:
    // Asks the server and waits for its answer.
    void askServer()
    {
        nDeckRegisterDisplay();
        ASSERT_TRUE(quiet());
    }
    int state() const { return GetNDeckRegister().GetRegisterStatus(); }
};

using ServerConfig = Registration;
using ClientIdentity = Registration;

} // namespace

TEST_F(ServerConfig, DropsEverySlashAtTheEndOfTheAddress)
{
    configure("strServerURL", server.http.url("///"));
    EXPECT_STREQ(manager.GetServerConfig().strUrl, server.http.url(""));
    askServer();
    EXPECT_TRUE(server.lastPath("register").startsWith("/service/register.htm?"));
}

TEST_F(ServerConfig, OfNothingButSlashesIsEmpty)
{
    configure("strServerURL", "//");
    EXPECT_STREQ(manager.GetServerConfig().strUrl, "");
}

TEST_F(ServerConfig, IsReadAnewAtEachCall)
{
    EXPECT_STREQ(manager.GetServerConfig().strName, "lobby");
    configure("strDisplayName", "hall");
    EXPECT_STREQ(manager.GetServerConfig().strName, "hall");
}

TEST_F(ServerConfig, HoldsWhatIsConfiguredAndWhoTheClientIs)
{
    const _ServerCfg& config = manager.GetServerConfig();
    EXPECT_STREQ(config.strKey, "key");
    EXPECT_STREQ(config.strPassword, "pwd");
    EXPECT_STREQ(config.strClientKey, "00:11:22:33:44:55");
    EXPECT_STREQ(config.strVersion, "2.0");
    EXPECT_STREQ(config.strClientType, "hx7206p");
    EXPECT_STREQ(config.strLanguage, "en");
}

TEST_F(ServerConfig, IsCompleteOnlyWithAddressKeyPasswordAndName)
{
    EXPECT_TRUE(manager.IsNdeckConfigComplete());
    for (const char* key : {"strServerURL", "strServerKey", "strServerPwd", "strDisplayName"}) {
        const chString kept =
            NUX_SubClass::nuxGetRegistryString("/rundata/config/system.ini", "nDeck", key, "");
        configure(key, "");
        EXPECT_FALSE(manager.IsNdeckConfigComplete()) << key;
        configure(key, kept.GetText());
    }
    EXPECT_TRUE(manager.IsNdeckConfigComplete());
}

TEST_F(ClientIdentity, IsTheSmallBoardWhereTheMemorySays128M)
{
    writeFile("/proc/ddrsize", "DDR 128M\n");
    EXPECT_STREQ(GetClientType(), "hx7206");
}

TEST_F(ClientIdentity, IsTheLargeBoardForAnyOtherMemory)
{
    writeFile("/proc/ddrsize", "256M\n");
    EXPECT_STREQ(GetClientType(), "hx7206p");
}

TEST_F(ClientIdentity, IsTheLargeBoardWithoutTheMemoryFile)
{
    EXPECT_STREQ(GetClientType(), "hx7206p");
}

TEST_F(ClientIdentity, LooksOnlyAtTheFirstSixteenBytesOfTheMemoryFile)
{
    writeFile("/proc/ddrsize", "0123456789abcd128M");
    EXPECT_STREQ(GetClientType(), "hx7206p");
}

TEST_F(ClientIdentity, FindsTheMemorySizeBehindAZeroByte)
{
    writeFile("/proc/ddrsize", QByteArray("\0\0"
                                          "128M",
                                          6));
    EXPECT_STREQ(GetClientType(), "hx7206");
}

TEST_F(ClientIdentity, TakesTheLanguageCodeFromItsTable)
{
    writeFile("/phone/resource/LanguageCode.ini", "[Code]\nFrench=fr\n");
    nuxSetRegistryString("/rundata/config/user/user.ini", "Language", "strGUILanguage", "French");
    EXPECT_STREQ(GetLanguageCode(), "fr");
}

TEST_F(ClientIdentity, SpeaksEnglishInALanguageThatTheTableLacks)
{
    nuxSetRegistryString("/rundata/config/user/user.ini", "Language", "strGUILanguage", "Klingon");
    EXPECT_STREQ(GetLanguageCode(), "en");
}

TEST_F(ClientIdentity, SpeaksEnglishWhereTheTableHasAnEmptyCode)
{
    writeFile("/phone/resource/LanguageCode.ini", "[Code]\nEnglish=\n");
    EXPECT_STREQ(GetLanguageCode(), "en");
}

TEST_F(ClientIdentity, LooksUpEnglishWhereNoLanguageIsSet)
{
    writeFile("/phone/resource/LanguageCode.ini", "[Code]\nEnglish=xx\n");
    nuxSetRegistryString("/rundata/config/user/user.ini", "Language", "strGUILanguage", "English");
    EXPECT_STREQ(GetLanguageCode(), "xx");
}

TEST_F(ClientIdentity, StaysAsItWasForTheLifeOfTheProcess)
{
    EXPECT_STREQ(GetLanguageCode(), "en");
    EXPECT_STREQ(GetClientType(), "hx7206p");
    EXPECT_STREQ(GetClientKey(), "00:11:22:33:44:55");
    writeFile("/phone/resource/LanguageCode.ini", "[Code]\nEnglish=xx\n");
    writeFile("/proc/ddrsize", "128M");
    netWorld().mac = "00:00:00:00:00:01";
    EXPECT_STREQ(GetLanguageCode(), "en");
    EXPECT_STREQ(GetClientType(), "hx7206p");
    EXPECT_STREQ(GetClientKey(), "00:11:22:33:44:55");
}

TEST_F(ClientIdentity, IsAskedForAgainWhileTheAddressOfTheDeviceIsEmpty)
{
    netWorld().mac = "";
    EXPECT_STREQ(GetClientKey(), "");
    netWorld().mac = "00:11:22:33:44:66";
    EXPECT_STREQ(GetClientKey(), "00:11:22:33:44:66");
}

TEST_F(Registration, AsksWithEverythingInItsOrderAndUnescaped)
{
    configure("strDisplayName", "lobby+1");
    askServer();
    const QByteArray path = "/service/register.htm?serverKey=key&password=pwd&clientName=lobby+1"
                            "&hardwareKey=00:11:22:33:44:55&clientType=hx7206p&version=2.0&language=en";
    EXPECT_EQ(server.lastPath("register"), path);
    EXPECT_TRUE(traces().contains("OnRegisterDisplay(" + server.http.url(path) + ")"));
}

TEST_F(Registration, SucceedsWithTheElementInTheReply)
{
    EXPECT_EQ(state(), 0);
    askServer();
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(readFile(kResult), server.registration);
}

TEST_F(Registration, StaysAsItWasAfterAReplyWithoutTheElement)
{
    server.registration = "<norvane><ndeck><result><error>no</error></result></ndeck></norvane>";
    askServer();
    EXPECT_EQ(state(), 0);
    GetNDeckRegister().SetRegisterStatus(1);
    askServer();
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(readFile(kResult), server.registration);
}

TEST_F(Registration, WantsTheElementInItsPlace)
{
    server.registration = "<norvane><result><success/></result></norvane>";
    askServer();
    EXPECT_EQ(state(), 0);
}

TEST_F(Registration, IsTakenAwayByAnEmptyReply)
{
    GetNDeckRegister().SetRegisterStatus(1);
    writeFile(kResult, "old");
    server.registration = "";
    askServer();
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(readFile(kResult), "");
    EXPECT_TRUE(QFile::exists(hostPath(kResult)));
}

TEST_F(Registration, KeepsItsStateWhenTheTransferFails)
{
    GetNDeckRegister().SetRegisterStatus(1);
    server.http.close();
    askServer();
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(readFile(kResult), "Unknown");
}

TEST_F(Registration, DoesNotReadTheReplyOfAnEarlierRequestAfterAFailedOne)
{
    writeDeck("register.tmp", "");
    GetNDeckRegister().SetRegisterStatus(1);
    server.http.close();
    askServer();
    EXPECT_EQ(state(), 1);
}

TEST_F(Registration, IgnoresAnActionThatIsNotItsOwn)
{
    HttpAction foreign;
    foreign.nResult = 1;
    foreign.strLocalFile = "/rundata/nDeck/other.tmp";
    GetNDeckRegister().SetRegisterStatus(1);
    GetNDeckRegister().OnCallback(&foreign);
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(readFile(kResult), "Unknown");
}

TEST_F(Registration, DoesNothingWithoutAnAction)
{
    GetNDeckRegister().OnCallback(nullptr);
    EXPECT_FALSE(QFile::exists(hostPath(kResult)));
}

TEST_F(Registration, BringsUpWhatTheFolderHoldsOnlyTheFirstTime)
{
    writeDeck("a.xml", "<layout/>");
    writeDeck("display.xml",
              "<files><file type=\"layout\" path=\"a.xml\" md5=\"1\" fromdt=\"2000-01-01 00:00:00\" "
              "todt=\"2037-01-01 00:00:00\" eventType=\"\"/></files>");
    askServer();
    EXPECT_EQ(GetNDeckDispaly().GetLayoutsCount(), 1);
    DisplayFrame none;
    GetNDeckDispaly().UpdateDisplay(&none);
    askServer();
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(GetNDeckDispaly().GetLayoutsCount(), 0);
}

TEST_F(Registration, TakesNoReplyThatIsTooLarge)
{
    server.registration =
        "<norvane><ndeck><result><success/></result></ndeck></norvane>" + QByteArray(70000, ' ');
    askServer();
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(readFile(kResult), "Unknown");
}

TEST_F(Registration, IsSetByAScheduleWithSuccess)
{
    ASSERT_TRUE(sync());
    EXPECT_EQ(state(), 1);
}

TEST_F(Registration, IsTakenAwayByAScheduleWithAnError)
{
    GetNDeckRegister().SetRegisterStatus(1);
    server.schedule = "<norvane><ndeck><result><error/><success/></result></ndeck></norvane>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(state(), 0);
}

TEST_F(Registration, IsTakenAwayByAnEmptySchedule)
{
    GetNDeckRegister().SetRegisterStatus(1);
    server.schedule = "";
    ASSERT_TRUE(sync());
    EXPECT_EQ(state(), 0);
    EXPECT_TRUE(traces().contains("nDeckFileManager::UpdateRegisterStatus false(filelist empty)"));
}

TEST_F(Registration, StaysAsItWasAfterAScheduleWithoutAResult)
{
    server.schedule = "<norvane><ndeck/></norvane>";
    ASSERT_TRUE(sync());
    EXPECT_EQ(state(), 0);
    GetNDeckRegister().SetRegisterStatus(1);
    ASSERT_TRUE(sync());
    EXPECT_EQ(state(), 1);
}

TEST_F(Registration, AnAnswerIsWrittenOverTheOneBefore)
{
    EXPECT_TRUE(WriteRegisterInfo("a long answer"));
    EXPECT_EQ(readFile(kResult), "a long answer");
    EXPECT_TRUE(WriteRegisterInfo("short"));
    EXPECT_EQ(readFile(kResult), "short");
    EXPECT_TRUE(WriteRegisterInfo(""));
    EXPECT_EQ(readFile(kResult), "");
}

TEST_F(Registration, AnAnswerIsNotWrittenThroughAPlantedLink)
{
    writeFile("/rundata/precious", "precious");
    ASSERT_EQ(chmod(hostPath("/tmp").toUtf8(), 01777), 0);
    for (const QByteArray& target :
         {QByteArray("/rundata/precious"), hostPath("/rundata/precious").toUtf8()}) {
        QFile::remove(hostPath(kResult));
        ASSERT_EQ(symlink(target, hostPath(kResult).toUtf8()), 0);
        EXPECT_TRUE(WriteRegisterInfo("an answer"));
        EXPECT_EQ(readFile("/rundata/precious"), "precious");
        EXPECT_EQ(readFile(kResult), "an answer");
        EXPECT_FALSE(QFileInfo(hostPath(kResult)).isSymLink());
    }
}

TEST_F(Registration, IsNotTriedAgainByItself)
{
    server.failing.insert("register");
    askServer();
    kit::stepTime(120000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(server.requests("register"), 1);
}

TEST_F(Registration, IsEnabledOnlyByOne)
{
    EXPECT_TRUE(GetNDeckDispaly().IsNdeckEnable());
    for (const char* value : {"0", "2", "-1", ""}) {
        configure("bEnable", value);
        EXPECT_FALSE(GetNDeckDispaly().IsNdeckEnable()) << value;
    }
}
