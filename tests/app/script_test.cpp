#include "app/Script.h"
#include "host/editor/Selection.h"
#include "tests/app/ScriptDialog.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace velmor {
namespace {

using testing::HasSubstr;

test::ScriptDialog *lastDialog = nullptr;
struct Seen {
    int clicks = 0, innerClicks = 0;
    std::wstring label;
} seen;

void openDialog()
{
    test::ScriptDialog dialog;
    lastDialog = &dialog;
    dialog.DoModal();
    seen = {dialog.clicks, dialog.innerClicks, dialog.label->text().toStdWString()};
    lastDialog = nullptr;
}

class ScriptTest : public test::EditorFixture {
protected:
    ScriptTest()
    {
        test::application();
        seen = {};
        session.commands().addCommand(L"TEST", L"dialog", L"dialog", 1, openDialog, nullptr, -1, nullptr, nullptr);
    }
    ScriptResult run(std::string_view text)
    {
        out.str({});
        err.str({});
        return Script(session, "s", text, out, err).run();
    }
    std::ostringstream out, err;
};

TEST_F(ScriptTest, LinesRunInOrderAndCommentsDoNot)
{
    const ScriptResult result = run("# first\nlayer \"Main streets\"  # makes it\r\n\nlayer Houses\necho done now\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    EXPECT_TRUE(drawing().findLayer(L"Main streets").has_value());
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"Houses");
    EXPECT_EQ(out.str(), "done now\n");
}

TEST_F(ScriptTest, AWrongLineEndsItWithFileLineAndReason)
{
    const ScriptResult result = run("layer A\n\nnonsense\nlayer B\n");
    EXPECT_EQ(result.code, kBadInput);
    EXPECT_EQ(result.message, "s:3: unknown command \"nonsense\"");
    EXPECT_FALSE(drawing().findLayer(L"B").has_value());
}

TEST_F(ScriptTest, ALineThatCannotBeReadEndsItBeforeAnythingRan)
{
    const ScriptResult result = run("layer A\nlayer \"B\n");
    EXPECT_EQ(result.code, kBadInput);
    EXPECT_THAT(result.message, HasSubstr("s:2: a quotation mark"));
    EXPECT_FALSE(drawing().findLayer(L"A").has_value());
}

TEST_F(ScriptTest, MissingAndSpareAnswersAreWrong)
{
    EXPECT_THAT(run("layer\n").message, HasSubstr("s:1: layer: an answer is missing"));
    EXPECT_THAT(run("layer A B\n").message, HasSubstr("s:1: layer: "));
    EXPECT_EQ(run("layer\nanswer C\n").code, kDone);
    EXPECT_TRUE(drawing().findLayer(L"C").has_value());
    EXPECT_THAT(run("answer C\n").message, HasSubstr("nothing asks"));
}

TEST_F(ScriptTest, ADialogsControlsAreWorkedByNumber)
{
    const ScriptResult result = run("dialog\nclick 10\nclick 10\nexpect 11 2\nprint 11\nclick 2\nlayer After\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    EXPECT_EQ(seen.clicks, 2);
    EXPECT_EQ(out.str(), "2\n");
    EXPECT_TRUE(drawing().findLayer(L"After").has_value());
}

TEST_F(ScriptTest, ItemsTicksCellsAndKeysAreWorkedByNumber)
{
    const ScriptResult result = run("dialog\nitem 23 second\nexpect-item 23 second\nitem 23 first inner\n"
                                    "expect-item 23 inner\ntick 23 first on\nexpect-tick 23 first on\n"
                                    "expect-tick 23 second off\nedit 17 0 1 \"a b\"\nexpect-cell 17 0 1 \"a b\"\n"
                                    "key 23 down\nclose\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    EXPECT_THAT(run("dialog\ntick 23 first\n").message, HasSubstr("s:2: tick needs more words"));
    EXPECT_THAT(run("dialog\ntick 23 first yes\n").message, HasSubstr("s:2: on or off is missing"));
    EXPECT_THAT(run("dialog\nexpect-tick 23 first on\n").message, HasSubstr("s:2: control 23"));
    EXPECT_THAT(run("dialog\nedit 17 x 1 a\n").message, HasSubstr("s:2: a whole number is missing"));
    EXPECT_THAT(run("dialog\nkey 23 hop\n").message, HasSubstr("there is no key \"hop\""));
}

TEST_F(ScriptTest, CloseTakesTheCancelPathAndTheNextLineRunsWithoutTheDialog)
{
    const ScriptResult result = run("dialog\nclose\nclick 10\n");
    EXPECT_EQ(result.message, "s:3: no dialog is open");
}

TEST_F(ScriptTest, ADialogLeftOpenAtTheEndIsCancelled)
{
    EXPECT_EQ(run("dialog\nclick 10\n").code, kDone);
    EXPECT_EQ(seen.clicks, 1);
}

TEST_F(ScriptTest, AWrongLineInADialogClosesItAndEndsTheScript)
{
    const ScriptResult result = run("dialog\nclick 18\nclick 10\nlayer After\n");
    EXPECT_EQ(result.code, kBadInput);
    EXPECT_EQ(result.message, "s:2: control 18 is disabled");
    EXPECT_EQ(seen.clicks, 0);
    EXPECT_FALSE(drawing().findLayer(L"After").has_value());
}

TEST_F(ScriptTest, ADialogOpenedByADialogIsDrivenByTheLinesThatFollow)
{
    const ScriptResult result = run("dialog\nclick 21\nclick 10\nclick 10\nclose\nclick 10\nclose\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    EXPECT_EQ(seen.innerClicks, 2);
    EXPECT_EQ(seen.clicks, 1);
}

TEST_F(ScriptTest, AFailureInsideAnInnerDialogIsToldWithItsOwnLine)
{
    const ScriptResult result = run("dialog\nclick 21\nclick 18\n");
    EXPECT_EQ(result.message, "s:3: control 18 is disabled");
}

TEST_F(ScriptTest, APickIsAnsweredByTheNextLine)
{
    ScriptResult result = run("dialog\nclick 20\nanswer 3,4\nexpect 11 \"3 4\"\nexpect-alert picked\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    EXPECT_EQ(err.str(), "picked\n");
    result = run("dialog\nclick 20\nescape\nexpect 11 \"status -5002\"\n");
    EXPECT_EQ(result.code, kDone) << result.message;
    result = run("dialog\nclick 20\nexpect 11 \"status -5002\"\n"); // no answer: cancelled
    EXPECT_EQ(result.code, kDone) << result.message;
    result = run("dialog\nclick 20\nanswer here\nlayer After\n");
    EXPECT_THAT(result.message, HasSubstr("s:3: a point is asked for"));
    EXPECT_FALSE(drawing().findLayer(L"After").has_value());
}

TEST_F(ScriptTest, WrongWordsOfADialogLineAreTold)
{
    for (const char *line : {"click", "click ten", "click 10 now", "check 12", "check 12 maybe", "choose 13 x",
                             "rows 17 x", "expect 11", "close now", "type 15", "expect-cell 17 0 1", "print", "select",
                             "print nothing", "boundary-layers", "boundary-layers Nope", "select name Nope"}) {
        const ScriptResult result = run(std::string("dialog\n") + line + "\n");
        EXPECT_EQ(result.code, kBadInput) << line;
        EXPECT_THAT(result.message, HasSubstr("s:2: ")) << line;
    }
}

TEST_F(ScriptTest, BoundaryLayersAreKeptInTheDrawingByTheirOwnSpelling)
{
    drawing().ensureLayer(L"Parcels");
    drawing().ensureLayer(L"A,B");
    EXPECT_EQ(run("boundary-layers parcels,0 \"A,B\"\n").code, kDone);
    const auto items = drawing().dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS");
    ASSERT_TRUE(items.has_value());
    EXPECT_EQ(*items, (DataItems{{1, L"Parcels"}, {1, L"0"}, {1, L"A,B"}}));
}

TEST_F(ScriptTest, SelectWithObjectsIsTheCommandAndWithSectionsTheScriptsOwn)
{
    rectangle(0, 0, 10, 10);
    rectangle(20, 0, 30, 10);
    for (const char *line : {"select ALL \"\"", "select all \"\"", "SELECT ALL \"\""}) {
        drawing().component<Selection>().clear();
        EXPECT_EQ(run(std::string(line) + "\n").code, kDone) << line;
        EXPECT_EQ(drawing().component<Selection>().members().size(), 2u) << line;
    }
    EXPECT_THAT(run("select all\n").message, HasSubstr("no such sections"));
    EXPECT_THAT(run("select upstream\n").message, HasSubstr("upstream NAME"));
}

TEST_F(ScriptTest, ABoundaryIsDrawnByItsPoint)
{
    rectangle(0, 0, 10, 10);
    EXPECT_EQ(run("boundary 5,5\n").code, kDone);
    EXPECT_EQ(entityCount(), 2u);
    EXPECT_THAT(run("boundary here\n").message, HasSubstr("s:1: boundary: "));
}

TEST_F(ScriptTest, WhatFailsIsToldApartFromBadInput)
{
    ScriptResult result = run("open /no/such/file.dxf\n");
    EXPECT_EQ(result.code, kBadInput);
    EXPECT_THAT(result.message, HasSubstr("s:1: "));
    result = run("save /no/such/folder/file.dxf\n");
    EXPECT_EQ(result.code, kFailed);
    EXPECT_THAT(result.message, HasSubstr("s:1: "));
}

TEST_F(ScriptTest, WithoutADrawingEveryCommandThatNeedsOneIsBadInput)
{
    session.setDrawing(nullptr);
    for (const char *line : {"save out.dxf", "save", "layer New", "boundary-layers New", "sections New", "boundary 1,1",
                             "-boundary 1,1 \"\"", "select all", "print areas"}) {
        const ScriptResult result = run(std::string(line) + "\n");
        EXPECT_EQ(result.code, kBadInput) << line;
        EXPECT_THAT(result.message, HasSubstr("here is no drawing")) << line;
    }
}

TEST_F(ScriptTest, ADrawingThatHasNoFileYetIsBadInputToASaveThatNamesNone)
{
    EXPECT_EQ(run("save\n").code, kBadInput);
}

TEST_F(ScriptTest, AHandlerThatFailsStopsTheScriptAtItsLine)
{
    const ScriptResult result = run("dialog\nclick 22\nclick 10\n");
    EXPECT_EQ(result.code, kFailed);
    EXPECT_THAT(result.message, AllOf(HasSubstr("s:2: "), HasSubstr("the pump is dry")));
}

TEST(Version, TheApplicationsVersionIsTheOneThatIsPrinted)
{
    char name[] = "velmor", option[] = "--version";
    char *arguments[] = {name, option, nullptr};
    testing::internal::CaptureStdout();
    EXPECT_EQ(runProgram(2, arguments), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "velmor " + QCoreApplication::applicationVersion().toStdString() + "\n");
    EXPECT_FALSE(QCoreApplication::applicationVersion().isEmpty());
}

TEST_F(ScriptTest, AByteOrderMarkAndALastLineWithoutAnEndAreFine)
{
    EXPECT_EQ(run("\xEF\xBB\xBFlayer X\nlayer Y").code, kDone);
    EXPECT_TRUE(drawing().findLayer(L"Y").has_value());
}

} // namespace
} // namespace velmor
