// Centres looked up by place.
#include "definition/CentreGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

TEST(CentreGrid, NearIsLessThanAThousandthInXAndInYAndNothingOfZ)
{
    CCentreGrid grid;
    EXPECT_FALSE(grid.HoldsNear({1, 2, 0}));
    grid.Add({1, 2, 5});
    EXPECT_TRUE(grid.HoldsNear({1.0009, 1.9991, -7}));
    EXPECT_FALSE(grid.HoldsNear({1.0011, 2, 5}));
    EXPECT_FALSE(grid.HoldsNear({1, 2.0011, 5}));
    grid.Clear();
    EXPECT_FALSE(grid.HoldsNear({1, 2, 5}));
}

TEST(CentreGrid, EqualIsThreeDimensionalAndWithinThePointsTolerance)
{
    CCentreGrid grid;
    grid.Add({1, 2, 5});
    EXPECT_TRUE(grid.Holds({1 + 5e-11, 2, 5}));
    EXPECT_FALSE(grid.Holds({1 + 1e-6, 2, 5}));
    EXPECT_FALSE(grid.Holds({1, 2, 5.1}));
}

TEST(CentreGrid, WhatIsNoNumberIsNearNothing)
{
    CCentreGrid grid;
    grid.Add({std::nan(""), 2, 0});
    EXPECT_FALSE(grid.HoldsNear({std::nan(""), 2, 0}));
    EXPECT_FALSE(grid.HoldsNear({0, 2, 0}));
}

TEST(CentreGrid, AnswersAsAWalkOverAllCentresDoes)
{
    std::mt19937 random(7);
    for (const double origin : {0.0, -3.25, 583195.159999074, 5033007.509124181, 1e9}) {
        std::uniform_real_distribution<double> place(-0.01, 0.01);
        CCentreGrid grid;
        std::vector<AcGePoint3d> all;
        std::size_t near = 0;
        for (int i = 0; i < 400; ++i) {
            const AcGePoint3d centre(origin + place(random), origin - place(random));
            const bool expected = std::ranges::any_of(all, [&](const AcGePoint3d &known) {
                return std::abs(known.x - centre.x) < 0.001 && std::abs(known.y - centre.y) < 0.001;
            });
            EXPECT_EQ(grid.HoldsNear(centre), expected) << origin << " " << i;
            EXPECT_EQ(grid.Holds(centre), std::ranges::find(all, centre) != all.end()) << origin << " " << i;
            near += expected;
            if (!expected || i % 3 == 0) {
                grid.Add(centre);
                all.push_back(centre);
            }
        }
        EXPECT_GT(near, 20u);
        EXPECT_LT(near, 390u);
    }
}

} // namespace
