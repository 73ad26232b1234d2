// CZEMCBoundary's form for regions: it asks the command for them and joins neighbours of what appeared.
#include "geometry/ZEMCBoundary.h"

#include "host/drawing/Journal.h"
#include "tests/geometry/ScriptedHost.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;
using velmor::JournalEntry;
using velmor::journalText;

const PickSet kNothing(0);
const PickSet kThree(3);
const AcGePoint3d kPoint(1.5, 2.5, 3.5);

class Regions : public testing::Test {
protected:
    ~Regions() override
    {
        Journal::instance().setRecording(false);
        Journal::instance().clear();
    }
    /// The joins that a run asked for.
    std::vector<JournalEntry> joins()
    {
        Journal::instance().setRecording(true);
        CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name);
        Journal::instance().setRecording(false);
        std::vector<JournalEntry> found;
        for (const JournalEntry &entry : Journal::instance().entries()) {
            if (entry.operation == "AcDbEntity::booleanOper")
                found.push_back(entry);
        }
        return found;
    }
    static JournalEntry join(AcDbObjectId into, AcDbObjectId other)
    {
        return {"AcDbEntity::booleanOper", {journalText(into), "0", journalText(other)}};
    }
    ScriptedHost host;
    AcDbObjectId boundary;
};

} // namespace

TEST_F(Regions, SeveralPointsForRegionsAskForRegions)
{
    const AcGePoint3dArray points = {{1, 2, 3}, {4, 5, 6}};
    CZEMCBoundary::CreateBoundary(points, boundary, kNothing.name);
    CZEMCBoundary::CreateBoundary(points, boundary, kThree.name);
    ASSERT_THAT(host.commands, SizeIs(2));
    EXPECT_THAT(host.commands[0], ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_N'", "''", "'_O'", "'_R'", "''",
                                              "<1,2,3>", "<4,5,6>", "''"));
    EXPECT_THAT(host.commands[1], ElementsAre("'_-BOUNDARY'", "'_A'", "'_I'", "'_N'", "''", "'_B'", "'_N'", "<picks 3>",
                                              "''", "'_O'", "'_R'", "''", "<1,2,3>", "<4,5,6>", "''"));
    EXPECT_TRUE(host.throughChain);
}

TEST_F(Regions, RegionsNeverWriteTheBoundaryAndPairsThatOpenCountAsJoined)
{
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name));
    host.command = [&] { host.addSquare(0, 0, 1); };
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name)) << "no pair";
    AcDbObjectId first;
    host.command = [&] {
        first = host.addSquare(0, 0, 1);
        host.addSquare(3, 0, 1);
    };
    EXPECT_TRUE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name));
    EXPECT_TRUE(boundary.isNull());
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, first, AcDb::kForWrite), Acad::eOk) << "both were closed again";
    entity->close();
}

TEST_F(Regions, APairThatDoesNotOpenIsSkipped)
{
    AcDbEntity *held = nullptr;
    host.command = [&] {
        // Open for reading elsewhere: the walk sees it, opening it for writing fails.
        ASSERT_EQ(acdbOpenAcDbEntity(held, host.addSquare(0, 0, 1), AcDb::kForRead), Acad::eOk);
        host.addSquare(3, 0, 1);
    };
    EXPECT_FALSE(CZEMCBoundary::CreateBoundary(AcGePoint3dArray{kPoint}, boundary, kNothing.name));
    held->close();
}

TEST_F(Regions, EachNewOneIsAskedToTakeInItsNextNeighbour)
{
    std::vector<AcDbObjectId> made;
    host.command = [&] {
        for (int i = 0; i < 3; ++i)
            made.push_back(host.addSquare(3 * i, 0, 1));
    };
    const auto found = joins();
    ASSERT_THAT(made, SizeIs(3));
    EXPECT_THAT(found, ElementsAre(join(made[0], made[1]), join(made[1], made[2])));
}

TEST_F(Regions, APairWithOneThatDoesNotOpenIsNotJoinedTheOthersAre)
{
    std::vector<AcDbObjectId> made;
    AcDbEntity *held = nullptr;
    host.command = [&] {
        for (int i = 0; i < 4; ++i)
            made.push_back(host.addSquare(3 * i, 0, 1));
        ASSERT_EQ(acdbOpenAcDbEntity(held, made[3], AcDb::kForRead), Acad::eOk);
    };
    const auto found = joins();
    held->close();
    EXPECT_THAT(found, ElementsAre(join(made[0], made[1]), join(made[1], made[2])));
}

TEST_F(Regions, OneAloneIsJoinedWithNothing)
{
    host.command = [&] { host.addSquare(0, 0, 1); };
    EXPECT_THAT(joins(), IsEmpty());
}
