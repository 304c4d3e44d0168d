#include "support/host/xmlcache.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"

namespace {

class XmlCache : public PhoneTest
{
protected:
    QStringList rings()
    {
        QStringList found;
        for (const tagRingFile& ring : cache.ringFiles())
            found.append(toQString(ring.strName) + " " + toQString(ring.strPath));
        return found;
    }
    qMyXmlCache cache;
};

} // namespace

TEST_F(XmlCache, TheRingTonesOfTheMediaTableComeFirst)
{
    writeFile("/rundata/media/ring/b.wav", "x");
    writeFile("/rundata/media/ring/a.mp3", "x");
    writeFile("/rundata/media/ring/c.txt", "x");
    const QStringList found = rings();
    ASSERT_GE(found.size(), 2);
    EXPECT_TRUE(found.first().contains("/phone/resource/sysdata/ring/")) << found.first().toStdString();
    EXPECT_EQ(found.mid(found.size() - 2),
              QStringList({"a.mp3 /rundata/media/ring/a.mp3", "b.wav /rundata/media/ring/b.wav"}));
}

TEST_F(XmlCache, AnAddedRingToneGoesToTheEnd)
{
    const qsizetype before = rings().size();
    cache.addRingFileData("New", "/rundata/media/ring/new.wav");
    EXPECT_EQ(rings().size(), before + 1);
    EXPECT_EQ(rings().last(), "New /rundata/media/ring/new.wav");
}

TEST_F(XmlCache, APathThatIsThereGetsTheNewName)
{
    cache.addRingFileData("New", "/rundata/media/ring/new.wav");
    const qsizetype before = rings().size();
    cache.addRingFileData("Newer", "/rundata/media/ring/new.wav");
    EXPECT_EQ(rings().size(), before);
    EXPECT_EQ(rings().last(), "Newer /rundata/media/ring/new.wav");
}

TEST_F(XmlCache, ARingToneIsRemovedByItsPathWhateverItIsCalled)
{
    const QStringList before = rings();
    cache.addRingFileData("New", "/rundata/media/ring/new.wav");
    cache.removeRingFileData("prefix New", "/rundata/media/ring/new.wav");
    cache.removeRingFileData("none", "/none");
    EXPECT_EQ(rings(), before);
}

TEST_F(XmlCache, ThereIsOneForThePhone)
{
    EXPECT_EQ(getMyXmlCache(), getMyXmlCache());
}
