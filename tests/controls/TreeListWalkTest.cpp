// A thousand trees, a million random steps: after each the tree list equals a plain tree that is counted anew.
#include "tests/controls/TreeListSteps.h"

#include <gtest/gtest.h>

#include <random>

using tree_list_steps::Options;
using tree_list_steps::Source;
using tree_list_steps::Walk;

namespace {

class Dice : public Source {
public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    unsigned Below(unsigned bound) override { return m_engine() % bound; }

private:
    std::minstd_rand m_engine;
};

struct Sum {
    unsigned steps = 0;
    std::size_t items = 0; ///< compared, over all steps
    int trees = 0, wide = 0;
};

void walk(unsigned seed, const Options &options, unsigned steps, Sum &sum)
{
    Dice dice(seed);
    Walk tree(dice, options);
    while (tree.Steps() < steps && tree.Step())
        sum.items += tree.Count();
    ASSERT_EQ(tree.What(), "") << "seed " << seed;
    EXPECT_EQ(tree.Close(), 0) << "memory that is not given back, seed " << seed;
    sum.steps += tree.Steps();
    ++sum.trees;
    sum.wide += tree.MostChildren() > 128;
}

} // namespace

TEST(TreeListWalk, AThousandTreesEqualAPlainRecountAfterEachOfAMillionSteps)
{
    Sum sum;
    for (unsigned seed = 1; seed <= 960 && !HasFatalFailure(); ++seed)
        walk(seed, {.most = 8 + seed % 40, .pooled = seed % 2 == 0}, 1000, sum);
    for (unsigned seed = 961; seed <= 1000 && !HasFatalFailure(); ++seed)
        walk(seed, {.most = 400, .wide = true, .pooled = seed % 2 == 0}, 1000, sum);
    EXPECT_EQ(sum.trees, 1000);
    EXPECT_EQ(sum.steps, 1000000u);
    EXPECT_GT(sum.items, 12 * 1000000u) << "trees too small";
    EXPECT_GT(sum.wide, 20) << "too few lists of many siblings to try their index";
    RecordProperty("steps", static_cast<int>(sum.steps));
    RecordProperty("items", static_cast<int>(sum.items));
}

TEST(TreeListWalk, ListsOfManyHundredSiblingsEqualAPlainRecount)
{
    Sum sum;
    for (unsigned seed = 2001; seed <= 2002 && !HasFatalFailure(); ++seed)
        walk(seed, {.most = 1200, .wide = true, .nested = false, .pooled = seed % 2 == 0}, 5000, sum);
    EXPECT_EQ(sum.wide, 2);
}
