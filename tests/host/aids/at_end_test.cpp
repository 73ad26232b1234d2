// What a destructor does through the host, and aids that are told to it.
#include "contracts/EditorAids.h"
#include "host/drawing/ChangeLog.h"
#include "host/editor/Guarded.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using AtEnd = test::EditorFixture;

struct Ending {
    ~Ending()
    {
        acedAtEnd(L"Areas", [] { throw std::runtime_error("the view is gone"); });
        acedAtEnd(L"Areas", [this] { m_done = true; });
    }
    bool &m_done;
};

TEST_F(AtEnd, WhatADestructorThrowsIsToldAndTheRestIsDone)
{
    bool done = false;
    {
        const Ending ending{done};
    }
    EXPECT_TRUE(done);
    EXPECT_THAT(session.alerts(), ElementsAre(testing::AllOf(HasSubstr(L"Areas"), HasSubstr(L"the view is gone"))));
}

TEST_F(AtEnd, WhileAWorkThatFailedUnwindsOnlyThatIsTold)
{
    bool done = false;
    EXPECT_FALSE(runGuarded(session, L"work", [&] {
        const Ending ending{done};
        throw std::runtime_error("the pump is dry");
    }));
    EXPECT_TRUE(done);
    EXPECT_THAT(session.alerts(), ElementsAre(HasSubstr(L"the pump is dry")));
}

TEST_F(AtEnd, AnAidIsTakenWhileACommandRunsAndRefusedElsewhere)
{
    const AcDbObjectId before = line(0, 0, 1, 0);
    EXPECT_EQ(acedSetAid(before), RTERROR);
    runGuarded(session, L"work", [&] {
        EXPECT_EQ(acedSetAid(before), RTERROR) << "it is the drawing's";
        EXPECT_EQ(acedSetAid(AcDbObjectId()), RTERROR);
        EXPECT_EQ(acedSetAid(line(0, 1, 1, 1)), RTNORM);
    });
    EXPECT_THAT(session.alerts(), IsEmpty());
}

} // namespace
} // namespace velmor
