// A load tells how far it is, and ends when nobody wants it any more.
#include "host/drawing/Drawing.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace velmor;

namespace {

class Loading : public testing::Test {
protected:
    Loading()
    {
        const auto town = Drawing::createNew();
        for (int i = 0; i < 20000; ++i)
            town->append(std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1)));
        m_text = town->write();
        m_file = std::filesystem::temp_directory_path() / ("velmor_loading_" + std::to_string(::getpid()) + ".dxf");
        std::ofstream(m_file, std::ios::binary) << m_text;
    }
    ~Loading() override { std::filesystem::remove(m_file); }
    std::string m_text;
    std::filesystem::path m_file;
};

TEST_F(Loading, TellsMoreAndMoreFromNothingToAll)
{
    std::vector<double> told;
    const LoadResult loaded = Drawing::load(m_file, {[&](double done) {
                                                told.push_back(done);
                                                return true;
                                            }});
    ASSERT_TRUE(loaded.drawing);
    EXPECT_GE(told.size(), 5u);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GE(told.front(), 0.0);
    EXPECT_GT(told.back(), 0.8);
    EXPECT_LE(told.back(), 1.0);
    EXPECT_EQ(loaded.drawing->write(), Drawing::load(m_file).drawing->write());
}

TEST_F(Loading, EndsAtEveryPlaceItIsCancelledAtAndLeavesNothing)
{
    int calls = 0;
    Drawing::load(m_file, {[&](double) { return ++calls > 0; }});
    for (int last = 1; last <= calls; ++last) {
        int left = last;
        const LoadResult loaded = Drawing::load(m_file, {[&](double) { return --left > 0; }});
        EXPECT_FALSE(loaded.drawing);
        EXPECT_EQ(loaded.status, FileStatus::Cancelled);
        EXPECT_FALSE(loaded.message.empty());
        EXPECT_EQ(left, 0) << "it asks no more once it was cancelled";
    }
}

TEST_F(Loading, FromMemoryCanBeCancelledToo)
{
    EXPECT_EQ(Drawing::read(m_text, {[](double) { return false; }}).status, FileStatus::Cancelled);
}

} // namespace
