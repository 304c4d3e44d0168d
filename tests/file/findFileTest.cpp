#include "support/file/findFile.h"
#include "support/file/path.h"
#include "tests/file/freshRoot.h"

namespace {

using Names = std::vector<std::string>;
using Found = chObjList_dynamic<chString, 16>;

class FindFile : public FreshRoot
{
protected:
    Names find(const char* folder, const char* filter, int flags)
    {
        Found list;
        m_result = nuxFindFile(folder, filter, list, flags);
        Names names;
        for (const chString& path : list)
            names.push_back(path.GetText());
        return names;
    }
    int m_result = -1;
};

TEST_F(FindFile, PatternsAreSeparatedBySemicolonsOrBlanks)
{
    for (const char* name : {"/b.jpg", "/a.png", "/c.gif", "/d.txt"})
        put(name, "x");
    EXPECT_EQ(find("/", "*.jpg;*.png", 0), (Names{"/a.png", "/b.jpg"}));
    EXPECT_EQ(find("/", " *.jpg  *.gif ; ", 0), (Names{"/b.jpg", "/c.gif"}));
    EXPECT_EQ(m_result, 1);
}

TEST_F(FindFile, CaseDoesNotMatter)
{
    put("/A.JPG", "x");
    put("/b.jpg", "x");
    EXPECT_EQ(find("/", "*.Jpg", 0), (Names{"/A.JPG", "/b.jpg"}));
}

TEST_F(FindFile, EmptyFilterTakesEveryFile)
{
    put("/a", "x");
    EXPECT_EQ(find("/", "", 0), Names{"/a"});
    EXPECT_EQ(find("/", nullptr, 0), Names{"/a"});
}

TEST_F(FindFile, PathsAreDevicePathsInOrderOfTheirNames)
{
    makeFolder("/m");
    for (const char* name : {"/m/3", "/m/1", "/m/2"})
        put(name, "x");
    EXPECT_EQ(find("/m", "*", 0), (Names{"/m/1", "/m/2", "/m/3"}));
    EXPECT_EQ(find("/m//", "*", 0), (Names{"/m/1", "/m/2", "/m/3"}));
}

TEST_F(FindFile, SubfoldersAreSearchedOnlyWhenAsked)
{
    ASSERT_EQ(pathMakeDirectories("/m/sub/deep"), 1);
    ASSERT_EQ(pathMakeDirectories("/m/also"), 1);
    for (const char* name : {"/m/z.a", "/m/sub/b.a", "/m/sub/deep/c.a", "/m/also/d.a", "/m/also/d.b"})
        put(name, "x");
    EXPECT_EQ(find("/m", "*.a", 0), Names{"/m/z.a"});
    EXPECT_EQ(find("/m", "*.a", 1), (Names{"/m/z.a", "/m/also/d.a", "/m/sub/b.a", "/m/sub/deep/c.a"}));
}

TEST_F(FindFile, LinksThatLeadBackEnd)
{
    ASSERT_EQ(pathMakeDirectories("/m/sub"), 1);
    put("/m/sub/a", "x");
    ASSERT_EQ(symlink("..", onMachine("/m/sub/up").c_str()), 0);
    ASSERT_EQ(symlink("/m", onMachine("/m/sub/again").c_str()), 0);
    EXPECT_EQ(find("/m", "*", 1), Names{"/m/sub/a"});
}

TEST_F(FindFile, LinkedFilesAreFoundAndBrokenLinksAreNot)
{
    makeFolder("/d");
    put("/d/real", "x");
    makeFolder("/m");
    ASSERT_EQ(symlink("/d/real", onMachine("/m/link").c_str()), 0);
    ASSERT_EQ(symlink("/d/none", onMachine("/m/broken").c_str()), 0);
    ASSERT_EQ(symlink("/d", onMachine("/m/folder").c_str()), 0);
    EXPECT_EQ(find("/m", "*", 0), Names{"/m/link"});
    EXPECT_EQ(find("/m", "*", 1), (Names{"/m/link", "/m/folder/real"}));
}

TEST_F(FindFile, MissingFolderGivesNothing)
{
    EXPECT_EQ(find("/none", "*", 1), Names{});
    EXPECT_EQ(m_result, 0);
    put("/file", "x");
    EXPECT_EQ(find("/file", "*", 1), Names{});
    EXPECT_EQ(m_result, 0);
    EXPECT_EQ(find(nullptr, "*", 0), Names{});
    EXPECT_EQ(m_result, 0);
}

TEST_F(FindFile, ARelativePathLeadsNowhere)
{
    put("/file", "x");
    const std::string outside = onMachine("/");
    ASSERT_EQ(chdir(outside.c_str()), 0);
    for (const char* folder : {".", "./", "..", "x/.."}) {
        EXPECT_EQ(find(folder, "*", 0), Names{}) << folder;
        EXPECT_EQ(m_result, 0) << folder;
    }
}

TEST_F(FindFile, HitsGoToTheEndOfTheList)
{
    put("/a", "x");
    Found list;
    list.append(chString("before"));
    EXPECT_EQ(nuxFindFile("/", "*", list, 0), 1);
    EXPECT_EQ(list.count, 2);
    EXPECT_EQ(list.back(), "/a");
}

TEST(MatchFilter, StarsAndQuestionMarks)
{
    EXPECT_EQ(pathMatchFilter("abcabd", "a*bd"), 1);
    EXPECT_EQ(pathMatchFilter("abcabd", "a*bc"), 0);
    EXPECT_EQ(pathMatchFilter("abc", "a?c"), 1);
    EXPECT_EQ(pathMatchFilter("ac", "a?c"), 0);
    EXPECT_EQ(pathMatchFilter("a\xc3\xa9"
                              "c",
                              "a?c"),
              1);
    EXPECT_EQ(pathMatchFilter("abc", "abc***"), 1);
    EXPECT_EQ(pathMatchFilter("", "?"), 0);
    EXPECT_EQ(pathMatchFilter("a[b]", "a[b]"), 1);
    EXPECT_EQ(pathMatchFilter("ab", "a[b]"), 0);
}

TEST(MatchFilter, ManyStarsEndSoon)
{
    const std::string name(200, 'a');
    std::string filter;
    for (int i = 0; i < 100; ++i)
        filter += "*a";
    EXPECT_EQ(pathMatchFilter(name.c_str(), (filter + "b").c_str()), 0);
}

} // namespace
