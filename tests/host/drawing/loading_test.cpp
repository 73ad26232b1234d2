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

/// A binary drawing of as many lines.
std::string binaryLines(int lines)
{
    std::string bytes("AutoCAD Binary DXF\r\n\x1a");
    bytes.push_back('\0');
    const auto code = [&](int number) {
        bytes.push_back(static_cast<char>(number & 255));
        bytes.push_back(static_cast<char>(number >> 8));
    };
    const auto text = [&](int number, const std::string &value) {
        code(number);
        bytes += value;
        bytes.push_back('\0');
    };
    const auto real = [&](int number, double value) {
        code(number);
        bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    };
    text(0, "SECTION");
    text(2, "HEADER");
    text(9, "$ACADVER");
    text(1, "AC1015");
    text(0, "ENDSEC");
    text(0, "SECTION");
    text(2, "ENTITIES");
    for (int i = 0; i < lines; ++i) {
        text(0, "LINE");
        text(8, "0");
        for (const int number : {10, 20, 11, 21})
            real(number, i + number);
    }
    text(0, "ENDSEC");
    text(0, "EOF");
    return bytes;
}

TEST_F(Loading, ABinaryFileTellsHowFarItIsAndCanBeCancelledAnywhere)
{
    const std::string bytes = binaryLines(40000);
    std::vector<double> told;
    const LoadResult loaded = Drawing::read(bytes, {[&](double done) {
                                                told.push_back(done);
                                                return true;
                                            }});
    ASSERT_TRUE(loaded.drawing);
    EXPECT_TRUE(loaded.report.binary);
    EXPECT_EQ(loaded.drawing->modelSpace().entities().size(), 40000u);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GE(std::ranges::count_if(told, [](double done) { return done < 0.4; }), 3) << "while it is unpacked";
    EXPECT_GT(told.back(), 0.8);
    for (std::size_t last = 1; last <= told.size(); ++last) {
        std::size_t left = last;
        EXPECT_EQ(Drawing::read(bytes, {[&](double) { return --left > 0; }}).status, FileStatus::Cancelled);
    }
}

TEST_F(Loading, FromMemoryCanBeCancelledToo)
{
    EXPECT_EQ(Drawing::read(m_text, {[](double) { return false; }}).status, FileStatus::Cancelled);
}

} // namespace
