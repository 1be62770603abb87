#include "Common/Files.h"

#include "tests/mervlib/ImageTestTools.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <list>

#include <unistd.h>

namespace fs = std::filesystem;
using Names = std::list<std::string>;

namespace {

// A folder with files, hidden files, and a link to itself; removed in the end.
class Files : public testing::Test
{
protected:
    Files()
    {
        fs::remove_all(root);
        fs::create_directories(root / "b folder" / "deep");
        fs::create_directories(root / ".hidden");
        for (const char *name :
             {"z.txt", "a.txt", ".secret", "b folder/c.txt", "b folder/deep/d.txt", ".hidden/e"})
            std::ofstream(root / name) << "12345";
        fs::create_directory_symlink(root, root / "b folder" / "loop");
    }
    ~Files() override { fs::remove_all(root); }

    const fs::path root =
        fs::path(testing::TempDir()) / ("tevora files \xc3\xa4 " + std::to_string(getpid()));
};

} // namespace

TEST_F(Files, sizeOfAFile)
{
    EXPECT_EQ(MERV::fileSize((root / "a.txt").string().c_str()), 5);
    std::ofstream(root / "empty").flush();
    EXPECT_EQ(MERV::fileSize((root / "empty").string().c_str()), 0);
}

TEST_F(Files, missingFileIsReportedWithTheSystemsText)
{
    CapturedStream out(std::cout);
    EXPECT_EQ(MERV::fileSize((root / "missing").string().c_str()), -1);
    EXPECT_EQ(out.str(), std::string(std::strerror(ENOENT)) + "\n");
}

TEST_F(Files, sizeOfAFolderIsAnError)
{
    CapturedStream out(std::cout);
    EXPECT_EQ(MERV::fileSize(root.string().c_str()), -1);
    EXPECT_NE(out.str(), "");
}

TEST_F(Files, listSkipsHiddenNamesAndAppends)
{
    Names names{"before"};
    MERV::listFiles(root.string(), names, false);
    EXPECT_EQ(names, (Names{"before", "a.txt", "b folder", "z.txt"}));
}

TEST_F(Files, recursiveListIsRelativeAndFollowsNoLinks)
{
    Names names;
    MERV::listFiles(root.string(), names, true);
    EXPECT_EQ(names, (Names{"a.txt", "b folder", "b folder/c.txt", "b folder/deep", "b folder/deep/d.txt",
                            "b folder/loop", "z.txt"}));
}

TEST_F(Files, trailingSeparatorMakesNoDifference)
{
    Names names;
    MERV::listFiles(root.string() + "/", names, false);
    EXPECT_EQ(names, (Names{"a.txt", "b folder", "z.txt"}));
}

TEST_F(Files, missingFolderAddsNothing)
{
    Names names;
    MERV::listFiles((root / "missing").string(), names, true);
    MERV::listFiles("", names, true);
    MERV::listFiles((root / "a.txt").string(), names, true);
    EXPECT_TRUE(names.empty());
}
