#include "app/RegionReport.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using boundary::Point;
using testing::ElementsAre;

TEST(PointList, LinesHoldTwoNumbersWithACommaASemicolonOrBlanks)
{
    std::vector<Point> points;
    std::size_t wrong = 0;
    EXPECT_TRUE(readPoints("1,2\n 3 ; 4 \r\n\n# none\n5\t6 # here\n-7e1,8", points, wrong));
    EXPECT_THAT(points, ElementsAre(Point{1, 2}, Point{3, 4}, Point{5, 6}, Point{-70, 8}));
}

TEST(PointList, AWrongLineIsTold)
{
    for (const char *text : {"1,2\n3\n", "1,2\n1,2,3\n", "1,2\nx,y\n", "1,2\nnan,1\n", "1,2\n3;;\n"}) {
        std::vector<Point> points;
        std::size_t wrong = 0;
        EXPECT_FALSE(readPoints(text, points, wrong)) << text;
        EXPECT_EQ(wrong, 2u) << text;
    }
}

TEST(RegionJson, NumbersReadBackTheSame)
{
    RegionAnswer answer{{0.1, 1.0 / 3.0}, {}, 0.25};
    answer.region.status = boundary::Status::Found;
    answer.region.outer = {{0, 0, 0}, {1.0 / 3.0, 0, 0.5}, {0, 1, 0}};
    const std::string text = regionsJson(std::vector{answer});
    EXPECT_THAT(text, testing::HasSubstr("[0.1, 0.3333333333333333]"));
    EXPECT_THAT(text, testing::HasSubstr("[0.3333333333333333, 0, 0.5]"));
    EXPECT_THAT(text, testing::HasSubstr("\"islands\": []"));
}

TEST(RegionJson, AMissHasAReasonAndItsGaps)
{
    RegionAnswer answer{{1, 2}, {}, 0};
    answer.region.status = boundary::Status::Open;
    answer.region.gaps = {{{0, 0}, {0, 1}, 1}};
    const std::string text = regionsJson(std::vector{answer});
    EXPECT_THAT(text, testing::HasSubstr("\"found\": false, \"reason\": \"open\", "
                                         "\"gaps\": [{\"from\": [0, 0], \"to\": [0, 1], \"width\": 1}]"));
    EXPECT_EQ(regionsJson({}), "[\n]\n");
}

} // namespace
} // namespace velmor
