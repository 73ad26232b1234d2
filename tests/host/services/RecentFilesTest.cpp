// The list of files that were opened last.
#include "host/services/RecentFiles.h"

#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::TestFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(RecentFiles, TheLatestComesFirstAndEachOnce)
{
    const TestFolder folder;
    const auto a = folder.write("a.dxf", ""), b = folder.write("b.dxf", "");
    const RecentFiles recent(folder.path() / "user");
    EXPECT_THAT(recent.list(), IsEmpty());
    EXPECT_TRUE(recent.add(a));
    EXPECT_TRUE(recent.add(b));
    EXPECT_TRUE(recent.add(folder.path() / "." / "a.dxf"));
    EXPECT_THAT(RecentFiles(folder.path() / "user").list(), ElementsAre(a, b));
    EXPECT_TRUE(recent.clear());
    EXPECT_THAT(recent.list(), IsEmpty());
}

TEST(RecentFiles, WhatIsNotThereIsLeftOutAndComesBackWithItsFile)
{
    const TestFolder folder;
    const auto a = folder.write("a.dxf", ""), b = folder.write("b.dxf", "");
    const RecentFiles recent(folder.path());
    recent.add(a);
    recent.add(b);
    std::filesystem::remove(b);
    EXPECT_THAT(recent.list(), ElementsAre(a));
    recent.add(a);
    folder.write("b.dxf", "");
    EXPECT_THAT(recent.list(), ElementsAre(a, b));
}

TEST(RecentFiles, OnlySoManyAreKept)
{
    const TestFolder folder;
    const RecentFiles recent(folder.path());
    for (int i = 0; i < 20; ++i)
        recent.add(folder.write("f" + std::to_string(i) + ".dxf", ""));
    EXPECT_THAT(recent.list(), SizeIs(RecentFiles::kMost));
    EXPECT_EQ(recent.list().front().filename(), "f19.dxf");
}

TEST(RecentFiles, ANameThatIsNoLineIsPassedOverAndADamagedListBorne)
{
    const TestFolder folder;
    const RecentFiles recent(folder.path());
    EXPECT_TRUE(recent.add(folder.path() / "two\nlines.dxf"));
    EXPECT_THAT(recent.list(), IsEmpty());
    const auto a = folder.write("a.dxf", "");
    folder.write("recent.txt", "relative.dxf\n\n" + a.string());
    EXPECT_THAT(recent.list(), ElementsAre(a));
}

TEST(RecentFiles, WithoutAFolderThereIsNoList)
{
    const RecentFiles recent{std::filesystem::path()};
    EXPECT_TRUE(recent.add("/a.dxf"));
    EXPECT_THAT(recent.list(), IsEmpty());
}

} // namespace
} // namespace velmor
