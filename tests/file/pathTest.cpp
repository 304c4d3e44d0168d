#include "support/file/path.h"
#include "support/file/chPathNameA.h"
#include "tests/file/freshRoot.h"

namespace {

TEST_F(FreshRoot, FilesAndFoldersExist)
{
    put("/a", "x");
    makeFolder("/d");
    EXPECT_EQ(pathFileExist("/a"), 1);
    EXPECT_EQ(pathFileExist("/d"), 1);
    EXPECT_EQ(pathFileExist("/none"), 0);
    EXPECT_EQ(pathFileExist(""), 0);
    EXPECT_EQ(pathFileExist(nullptr), 0);
    EXPECT_EQ(pathIsDirectory("/d"), 1);
    EXPECT_EQ(pathIsDirectory("/a"), 0);
}

TEST_F(FreshRoot, LinkToNothingDoesNotExist)
{
    ASSERT_EQ(symlink("/none", onMachine("/a").c_str()), 0);
    EXPECT_EQ(pathFileExist("/a"), 0);
}

TEST(Path, FileNameFollowsTheLastSlash)
{
    EXPECT_STREQ(pathGetFileNamePos("/a/b/c.txt"), "c.txt");
    EXPECT_STREQ(pathGetFileNamePos("c.txt"), "c.txt");
    EXPECT_STREQ(pathGetFileNamePos("/a/b/"), "");
    EXPECT_STREQ(pathGetFileNamePos(""), "");
    EXPECT_STREQ(pathGetFileNamePos(nullptr), "");
}

TEST(Path, ExtensionComesWithItsDot)
{
    EXPECT_STREQ(pathGetFileExtensionPos("/a/photo.tar.JPG"), ".JPG");
    EXPECT_STREQ(pathGetFileExtensionPos("photo."), ".");
    EXPECT_STREQ(pathGetFileExtensionPos(".hidden"), ".hidden");
}

TEST(Path, NameWithoutADotHasTheEmptyExtensionAtItsEnd)
{
    const char path[] = "/a.b/name";
    EXPECT_EQ(pathGetFileExtensionPos(path), path + strlen(path));
    EXPECT_STREQ(pathGetFileExtensionPos(nullptr), "");
}

TEST(Path, FileSpecIsCutOff)
{
    const char* cases[][2] = {{"/a/b.c", "/a"}, {"/b", "/"}, {"b", ""}, {"/a/", "/a"}, {"a/b", "a"}};
    for (const auto& one : cases) {
        chString path(one[0]);
        EXPECT_EQ(pathRemoveFileSpec(path), 1) << one[0];
        EXPECT_EQ(path, one[1]) << one[0];
    }
    chString root("/"), empty;
    EXPECT_EQ(pathRemoveFileSpec(root), 0);
    EXPECT_EQ(root, "/");
    EXPECT_EQ(pathRemoveFileSpec(empty), 0);
}

TEST(Path, OnlyBareFileNamesAreSafe)
{
    for (const char* name : {"a", "photo 1.jpg", "...", ".hidden", "\xe5\x9b\xbe.png"})
        EXPECT_EQ(pathIsSafeName(name), 1) << name;
    for (const char* name : {"", ".", "..", "a/b", "/", "../a", "a\nb", "a\x7f", "\x01"})
        EXPECT_EQ(pathIsSafeName(name), 0) << name;
    EXPECT_EQ(pathIsSafeName(nullptr), 0);
    EXPECT_EQ(pathIsSafeName(std::string(255, 'a').c_str()), 1);
    EXPECT_EQ(pathIsSafeName(std::string(256, 'a').c_str()), 0);
}

TEST_F(FreshRoot, FoldersAreMadeAllTheWay)
{
    EXPECT_EQ(pathMakeDirectories("/a/b/c"), 1);
    EXPECT_EQ(pathIsDirectory("/a/b/c"), 1);
    EXPECT_EQ(pathMakeDirectories("/a/b/c/"), 1);
    EXPECT_EQ(pathMakeDirectories("/"), 1);
    put("/a/file", "x");
    EXPECT_EQ(pathMakeDirectories("/a/file/d"), 0);
    EXPECT_EQ(pathMakeDirectories("/a/file"), 0);
    EXPECT_EQ(pathMakeDirectories(""), 0);
    EXPECT_EQ(pathMakeDirectories(nullptr), 0);
}

TEST(PathName, PiecesAreJoinedWithOneSlash)
{
    EXPECT_STREQ(chPathNameA("/a", "b"), "/a/b");
    EXPECT_STREQ(chPathNameA("/a/", "/b"), "/a/b");
    EXPECT_STREQ(chPathNameA("/", "b"), "/b");
    EXPECT_STREQ(chPathNameA("", "b"), "b");
    EXPECT_STREQ(chPathNameA("/a").Append("b").Append("c.d"), "/a/b/c.d");
}

TEST(PathName, NameAndExtensionAreFound)
{
    chPathNameA path("/media/sd", "film.avi");
    EXPECT_STREQ(path.GetFileName(), "film.avi");
    EXPECT_STREQ(path.GetExtension(), ".avi");
    EXPECT_STREQ(path.SetExtension(".mp4"), "/media/sd/film.mp4");
    EXPECT_STREQ(path.SetExtension(""), "/media/sd/film");
    EXPECT_EQ(path.RemoveFileSpec(), 1);
    EXPECT_EQ(path.GetPath(), "/media/sd");
    EXPECT_EQ(chPathNameA().IsEmpty(), 1);
}

} // namespace
