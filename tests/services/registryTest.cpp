#include "support/host/registry.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/phoneTest.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <climits>
#include <cstring>
#include <thread>

namespace {

const char* const kFile = "/rundata/config/user/test.ini";

class Registry : public PhoneTest
{
protected:
    static std::string text(const char* section, const char* key, const char* def = "(def)")
    {
        return NUX_SubClass::nuxGetRegistryString(kFile, section, key, def).GetText();
    }
};

} // namespace

TEST_F(Registry, AMissingKeyFileGivesAllDefaults)
{
    EXPECT_EQ(nuxGetRegistryInt("/rundata/config/none.ini", "A", "n", 17), 17);
    EXPECT_EQ(NUX_SubClass::nuxGetRegistryString("/rundata/config/none.ini", "A", "s", "dflt"), "dflt");
    char buffer[REGISTRY_BUFFER_SIZE];
    nuxGetRegistryString("/rundata/config/none.ini", "A", "s", buffer, "dflt");
    EXPECT_STREQ(buffer, "dflt");
    EXPECT_EQ(registryGetInt(registryOpen("/none/none.ini", "A"), "n", 4), 4);
}

TEST_F(Registry, AnAbsentSectionOrKeyGivesTheDefault)
{
    writeFile(kFile, "[A]\nk=1\n");
    EXPECT_EQ(text("B", "k"), "(def)");
    EXPECT_EQ(text("A", "n"), "(def)");
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "n", -3), -3);
}

TEST_F(Registry, AnEmptyValueIsAValue)
{
    writeFile(kFile, "[A]\nk=\n");
    EXPECT_EQ(text("A", "k"), "");
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 5), 0);
}

TEST_F(Registry, TextReadAsANumberGivesItsLeadingDigitsOrZero)
{
    writeFile(kFile, "[A]\na=12abc\nb=abc\nc=-7 x\nd=+3\ne=99999999999\nf=-99999999999\ng=- 1\nh=\"  "
                     "8\"\ni=0x10\nj=99999999999999999999999999\n");
    const auto number = [](const char* key) { return nuxGetRegistryInt(kFile, "A", key, 77); };
    EXPECT_EQ(number("a"), 12);
    EXPECT_EQ(number("b"), 0);
    EXPECT_EQ(number("c"), -7);
    EXPECT_EQ(number("d"), 3);
    EXPECT_EQ(number("e"), INT_MAX);
    EXPECT_EQ(number("f"), INT_MIN);
    EXPECT_EQ(number("g"), 0);
    EXPECT_EQ(number("h"), 8);
    EXPECT_EQ(number("i"), 0);
    EXPECT_EQ(number("j"), INT_MAX);
}

TEST_F(Registry, ABufferIsClippedButNeverInsideACharacter)
{
    writeFile(kFile, "[A]\nk=ab\xC3\xA9\xC3\xA9\n");
    char buffer[8];
    nuxGetRegistryString(kFile, "A", "k", buffer, "", 6);
    EXPECT_STREQ(buffer, "ab\xC3\xA9");
    nuxGetRegistryString(kFile, "A", "k", buffer, "", 7);
    EXPECT_STREQ(buffer, "ab\xC3\xA9\xC3\xA9");
    nuxGetRegistryString(kFile, "A", "none", buffer, "0123456789", 4);
    EXPECT_STREQ(buffer, "012");
    nuxGetRegistryString(kFile, "A", "none", buffer, nullptr, 4);
    EXPECT_STREQ(buffer, "");
}

TEST_F(Registry, ALongValueFillsABufferOf256BytesAtMost)
{
    writeFile(kFile, "[A]\nk=" + QByteArray(1000, 'x') + "\n");
    char buffer[REGISTRY_BUFFER_SIZE + 1];
    buffer[REGISTRY_BUFFER_SIZE] = '!';
    nuxGetRegistryString(kFile, "A", "k", buffer, "");
    EXPECT_EQ(strlen(buffer), 255u);
    EXPECT_EQ(buffer[REGISTRY_BUFFER_SIZE], '!');
    EXPECT_EQ(text("A", "k").size(), 1000u);
}

TEST_F(Registry, AWriteCreatesFileSectionAndKeyAndTheNextReadSeesIt)
{
    EXPECT_EQ(text("A", "k"), "(def)");
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", " v; "), 1);
    EXPECT_EQ(text("A", "k"), " v; ");
    EXPECT_EQ(nuxSetRegistryInt(kFile, "B", "n", -5), 1);
    EXPECT_EQ(nuxGetRegistryInt(kFile, "B", "n", 0), -5);
    EXPECT_EQ(readFile(kFile), "[A]\nk=\" v; \"\n\n[B]\nn=-5\n");
}

TEST_F(Registry, AWriteKeepsCommentsOrderAndUnknownKeys)
{
    writeFile(kFile, "; mine\n[Z]\nunknown=1\n\n[A]\nk = 1\n");
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "K", "2"), 1);
    EXPECT_EQ(readFile(kFile), "; mine\n[Z]\nunknown=1\n\n[A]\nk = 2\n");
}

TEST_F(Registry, AValueWithALineEndIsRefusedAndTheOldFileStays)
{
    writeFile(kFile, "[A]\nk=1\n");
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "a\nb"), 0);
    EXPECT_EQ(readFile(kFile), "[A]\nk=1\n");
}

TEST_F(Registry, TheSameSectionGivesTheSameHandle)
{
    HREGISTRY handle = registryOpen(kFile, "A");
    EXPECT_EQ(handle, registryOpen(kFile, "A"));
    EXPECT_EQ(handle, registryOpen(kFile, "a"));
    EXPECT_NE(handle, registryOpen(kFile, "B"));
    EXPECT_NE(handle, registryOpen("/rundata/config/system.ini", "A"));
}

TEST_F(Registry, AHandleReadsAndWritesItsSection)
{
    HREGISTRY handle = registryOpen(kFile, "A");
    EXPECT_EQ(registrySetString(handle, "k", "31"), 1);
    EXPECT_EQ(registryGetInt(handle, "K", 0), 31);
    EXPECT_EQ(registryGetString(handle, "k", ""), "31");
    EXPECT_EQ(nuxGetRegistryInt(kFile, "A", "k", 0), 31);
}

TEST_F(Registry, SeveralKeysAreOneSaveAndAllOrNone)
{
    writeFile(kFile, "[A]\na=0\n");
    HREGISTRY handle = registryOpen(kFile, "A");
    const tagRegistryValue good[] = {{"a", "1"}, {"b", "2"}};
    EXPECT_EQ(registrySetStrings(handle, good, 2), 1);
    EXPECT_EQ(readFile(kFile), "[A]\na=1\nb=2\n");
    const tagRegistryValue bad[] = {{"a", "9"}, {"c", "x\ny"}};
    EXPECT_EQ(registrySetStrings(handle, bad, 2), 0);
    EXPECT_EQ(readFile(kFile), "[A]\na=1\nb=2\n");
    EXPECT_EQ(registrySetStrings(handle, nullptr, 0), 1);
}

TEST_F(Registry, NullsAreTolerated)
{
    EXPECT_EQ(nuxGetRegistryInt(nullptr, nullptr, nullptr, 3), 3);
    EXPECT_EQ(nuxSetRegistryString(nullptr, "A", "k", "1"), 0);
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", nullptr, "1"), 0);
    EXPECT_EQ(registryGetInt(nullptr, "k", 3), 3);
    EXPECT_EQ(registryGetString(nullptr, "k", "d"), "d");
    EXPECT_EQ(registrySetString(nullptr, "k", "d"), 0);
    nuxGetRegistryString(kFile, "A", "k", nullptr, "d");
}

TEST_F(Registry, AnUnchangedValueIsNotWrittenAgain)
{
    ASSERT_EQ(nuxSetRegistryString(kFile, "A", "k", "1"), 1);
    const QDateTime before = QFileInfo(hostPath(kFile)).lastModified();
    ASSERT_TRUE(QFile::setPermissions(hostPath(kFile), QFile::ReadOwner));
    EXPECT_EQ(nuxSetRegistryString(kFile, "A", "k", "1"), 1);
    EXPECT_EQ(QFileInfo(hostPath(kFile)).lastModified(), before);
}

TEST_F(Registry, ADeviceRootThatChangesGivesOtherFiles)
{
    writeFile(kFile, "[A]\nk=1\n");
    HREGISTRY handle = registryOpen(kFile, "A");
    EXPECT_EQ(registryGetInt(handle, "k", 0), 1);
    QTemporaryDir other;
    ASSERT_TRUE(QDir(other.path()).mkpath("rundata/config/user"));
    ASSERT_TRUE(QFile::copy(hostPath(kFile), other.path() + kFile));
    ASSERT_TRUE(QFile::remove(hostPath(kFile)));
    writeFile(kFile, "[A]\nk=2\n");
    for (int i = 0; i < 20; ++i) {
        deviceSetRoot(other.path().toUtf8().constData());
        ASSERT_EQ(registryGetInt(handle, "k", 0), 1);
        deviceSetRoot(root().toUtf8().constData());
        ASSERT_EQ(registryGetInt(handle, "k", 0), 2);
    }
}

TEST_F(Registry, ReadersAndWritersOnManyThreadsLoseNothing)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            const std::string key = "k" + std::to_string(t);
            for (int i = 1; i <= 50; ++i) {
                // Refused while the others were at work for too long, and made again.
                int attempts = 0;
                while (!nuxSetRegistryInt(kFile, "A", key.c_str(), i))
                    ASSERT_LT(++attempts, 100);
                EXPECT_EQ(nuxGetRegistryInt(kFile, "A", key.c_str(), 0), i);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_EQ(nuxGetRegistryInt(kFile, "A", ("k" + std::to_string(t)).c_str(), 0), 50);
}
