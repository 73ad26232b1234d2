#include "host/editor/HostCommands.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace velmor {
namespace {

using test::EditorFixture;

int calls = 0;
void countCall()
{
    ++calls;
}
void throwUp()
{
    throw std::runtime_error("out of order");
}
bool innerAnswer = true;
void runSaveInside()
{
    innerAnswer = Session::current().commands().run(L"LAYER inner");
}
void runTransparentInside()
{
    innerAnswer = Session::current().commands().run(L"count");
}

class CommandStackTest : public EditorFixture {
protected:
    CommandStackTest() { calls = 0; }
    void add(const wchar_t *name, AcRxFunctionPtr function, std::int32_t flags = 0)
    {
        EXPECT_EQ(stack.addCommand(L"TEST", name, name, flags, function, nullptr, -1, nullptr, nullptr), Acad::eOk);
    }
    CommandStack &stack = session.commands();
};

TEST_F(CommandStackTest, ARegisteredCommandRunsByItsLocalAndItsGlobalName)
{
    EXPECT_EQ(stack.addCommand(L"TEST", L"glob", L"local", 1, countCall, nullptr, -1, nullptr, nullptr), Acad::eOk);
    EXPECT_TRUE(stack.run(L"LOCAL"));
    EXPECT_TRUE(stack.run(L"_glob"));
    EXPECT_FALSE(stack.run(L"glob"));
    EXPECT_EQ(calls, 2);
}

TEST_F(CommandStackTest, ASecondCommandOfTheSameGroupAndNameIsRefused)
{
    add(L"count", countCall);
    EXPECT_EQ(stack.addCommand(L"test", L"COUNT", L"x", 0, countCall, nullptr, -1, nullptr, nullptr),
              Acad::eInvalidInput);
    EXPECT_EQ(stack.addCommand(L"OTHER", L"count", L"x", 0, countCall, nullptr, -1, nullptr, nullptr), Acad::eOk);
}

TEST_F(CommandStackTest, ARemovedCommandIsUnknown)
{
    add(L"count", countCall);
    EXPECT_EQ(stack.removeCmd(L"TEST", L"count"), Acad::eOk);
    EXPECT_EQ(stack.removeCmd(L"TEST", L"count"), Acad::eKeyNotFound);
    std::wstring reason;
    EXPECT_FALSE(stack.run(L"count", &reason));
    EXPECT_THAT(reason, testing::HasSubstr(L"unknown command"));
}

TEST_F(CommandStackTest, AModuleCannotRemoveAHostCommand)
{
    EXPECT_EQ(stack.removeCmd(L"VELMOR", L"SAVE"), Acad::eKeyNotFound);
    EXPECT_NE(stack.find(L"SAVE"), nullptr);
}

TEST_F(CommandStackTest, AnExceptionOfACommandIsToldAndEndsTheCommandOnly)
{
    add(L"bad", throwUp);
    std::wstring reason;
    EXPECT_FALSE(stack.run(L"bad", &reason));
    EXPECT_THAT(reason, testing::HasSubstr(L"out of order"));
    EXPECT_FALSE(stack.isRunning());
}

TEST_F(CommandStackTest, ASecondCommandIsRefusedWhileOneRunsUnlessItIsTransparent)
{
    add(L"outer", runSaveInside);
    add(L"outer2", runTransparentInside);
    add(L"count", countCall, CommandEntry::kTransparent);
    EXPECT_TRUE(stack.run(L"outer"));
    EXPECT_FALSE(innerAnswer);
    EXPECT_TRUE(stack.run(L"outer2"));
    EXPECT_TRUE(innerAnswer);
    EXPECT_EQ(calls, 1);
}

TEST_F(CommandStackTest, AModulesCommandIsRefusedInsideOfItselfThoughItIsTransparent)
{
    add(L"count", runTransparentInside, CommandEntry::kTransparent);
    innerAnswer = true;
    EXPECT_TRUE(stack.run(L"count"));
    EXPECT_FALSE(innerAnswer);
    EXPECT_THAT(session.lastStatus(), testing::HasSubstr(L"count is open already"));
    EXPECT_FALSE(stack.isRunning());
    EXPECT_TRUE(stack.run(L"count")) << "it may start again when it has ended";
}

TEST_F(CommandStackTest, ALockedDocumentRefusesAPersonsCommandButNotTheHoldersOwn)
{
    rectangle(0, 0, 10, 10);
    const AcAxDocLock lock;
    {
        const AcAxDocLock nested;
        EXPECT_EQ(session.documentLocks(), 2);
    }
    std::wstring reason;
    EXPECT_FALSE(stack.run(L"LAYER second", &reason));
    EXPECT_THAT(reason, testing::HasSubstr(L"locked"));
    EXPECT_FALSE(drawing().findLayer(L"second").has_value());
    const double point[3] = {5, 5, 0};
    EXPECT_EQ(acedCommand(RTSTR, L"_-BOUNDARY", RTPOINT, point, RTSTR, L"", RTNONE), RTNORM);
}

TEST_F(CommandStackTest, AHostCommandAsksForWhatTheLineDoesNotHold)
{
    session.answers().push({std::wstring(L"Streets")});
    EXPECT_TRUE(stack.run(L"layer"));
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"Streets");
}

TEST_F(CommandStackTest, ACommandWhosePromptNobodyAnswersIsCancelled)
{
    EXPECT_EQ(stack.start(L"LAYER"), RunStatus::Cancelled);
}

TEST_F(CommandStackTest, AnAnswerTooManyIsRefused)
{
    EXPECT_FALSE(stack.run(L"LAYER one two"));
}

TEST_F(CommandStackTest, SetvarTakesKnownVariablesOnly)
{
    EXPECT_TRUE(stack.run(L"SETVAR hpgaptol 0.25"));
    EXPECT_EQ(session.variable(L"HPGAPTOL"), VariableValue(0.25));
    EXPECT_FALSE(stack.run(L"SETVAR nosuchvariable 1"));
    EXPECT_FALSE(stack.run(L"SETVAR HPGAPTOL -1"));
    EXPECT_FALSE(stack.run(L"SETVAR HPGAPTOL wide"));
}

TEST_F(CommandStackTest, NewAsksBeforeItDropsChanges)
{
    rectangle(0, 0, 1, 1);
    Drawing *before = session.drawing();
    EXPECT_EQ(stack.start(L"NEW", std::vector<Answer>{{std::wstring(L"No")}}), RunStatus::BadInput);
    EXPECT_EQ(session.drawing(), before);
    EXPECT_EQ(stack.start(L"NEW", std::vector<Answer>{{std::wstring(L"Yes")}}), RunStatus::Done);
    EXPECT_EQ(entityCount(), 0u);
}

TEST_F(CommandStackTest, EveryRowOfTheTableCanBeFoundAgain)
{
    for (const CommandInfo &info : stack.list()) {
        const CommandEntry *entry = stack.find(info.localName);
        ASSERT_NE(entry, nullptr) << info.localName;
        EXPECT_EQ(entry->globalName, info.name);
        EXPECT_TRUE(entry->function || entry->work);
    }
}

TEST_F(CommandStackTest, TheContractFindsTheCommandStackAndTheLinkerAndNothingElse)
{
    EXPECT_EQ(acrxSysRegistry()->at(L"ACAD_REGISTERED_COMMANDS"), &stack);
    EXPECT_EQ(acrxSysRegistry()->at(L"DynamicLinker"), &session.modules());
    EXPECT_EQ(acrxSysRegistry()->at(L"SomethingElse"), nullptr);
}

TEST_F(CommandStackTest, AnUnknownCommandOfAnArgumentListIsAnError)
{
    EXPECT_EQ(acedCommand(RTSTR, L"_-NOSUCH", RTSTR, L"", RTNONE), RTERROR);
    EXPECT_EQ(acedCommand(RTNONE), RTREJ);
    EXPECT_EQ(acedCmd(nullptr), RTREJ);
}

} // namespace
} // namespace velmor
