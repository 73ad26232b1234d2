// The point pick shows the region under the resting pointer before the click.
#include "tests/definition/dialog_fixture.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/PointMonitors.h"

using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Rests at a place while a point is asked for, and then leaves the prompt.
struct RestingPerson final : velmor::PromptSource {
    explicit RestingPerson(velmor::Drawing &shown) : drawing(shown) {}
    std::optional<velmor::Answer> ask(const velmor::Prompt &prompt) override
    {
        auto &monitors = drawing.component<velmor::PointMonitors>();
        monitors.setBudget(std::chrono::hours(1)); // no clock decides here
        isPoint = prompt.kind == velmor::PromptKind::Point;
        isWaiting = monitors.isWaiting();
        monitors.rest(place);
        outline = monitors.outline();
        return velmor::Answer{velmor::Answer::Escape{}};
    }
    velmor::Drawing &drawing;
    AcGePoint3d place;
    bool isPoint = false, isWaiting = false;
    std::vector<std::vector<AcGePoint2d>> outline;
};

class PickPreview : public DefinitionDialogTest {
protected:
    /// Clicks the pick by point (or another) and rests at a place.
    void restAt(AcGePoint3d place, bool islands, int button = 208)
    {
        person.place = place;
        m_session.setPromptSource(&person);
        run([&](CDialogUnderTest &dialog) {
            select(dialog, {L"D4"});
            dialog.check(268, islands);
            const std::string before = drawing().write();
            dialog.click(button);
            EXPECT_EQ(drawing().write(), before);
            EXPECT_THAT(drawing().component<velmor::PointMonitors>().outline(), IsEmpty());
            EXPECT_FALSE(drawing().component<velmor::PointMonitors>().isWaiting());
        });
        m_session.setPromptSource(nullptr);
        EXPECT_THAT(loosePolylines(), IsEmpty());
    }
    RestingPerson person{drawing()};
};

TEST_F(PickPreview, TheRegionIsShownWhileThePromptIsOpenAndGoesWithIt)
{
    restAt({220, 20}, false);
    EXPECT_TRUE(person.isPoint);
    ASSERT_THAT(person.outline, SizeIs(1));
    EXPECT_EQ(person.outline[0].front(), (AcGePoint2d{200, 0}));
    EXPECT_THAT(person.outline[0], SizeIs(4));
}

TEST_F(PickPreview, IslandsAreLeftOutOfItWhenTheyAreLookedFor)
{
    restAt({220, 20}, true);
    EXPECT_THAT(person.outline, SizeIs(2));
}

TEST_F(PickPreview, OnlyTheBoundaryLayersBoundIt)
{
    addLine(200, 50, 300, 50, L"OTHER");
    restAt({220, 20}, false);
    ASSERT_THAT(person.outline, SizeIs(1));
    EXPECT_EQ(person.outline[0][2], (AcGePoint2d{300, 100}));
}

TEST_F(PickPreview, WhereNoRegionClosesNothingIsShown)
{
    restAt({5000, 20}, false);
    EXPECT_TRUE(person.isWaiting);
    EXPECT_THAT(person.outline, IsEmpty());
}

TEST_F(PickPreview, CornersAreDrawnWithoutIt)
{
    restAt({220, 20}, false, 239);
    EXPECT_TRUE(person.isPoint);
    EXPECT_FALSE(person.isWaiting);
}

} // namespace
