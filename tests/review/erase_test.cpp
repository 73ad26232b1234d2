// Areas are erased by the button and by the Delete key.
#include "tests/review/editing_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

class Erasing : public EditingTest {
protected:
    /// Whether there was a question in these lines.
    static bool asked(const JournalLines &lines)
    {
        return std::ranges::any_of(lines, [](const std::string &line) { return line.starts_with("acedAskYesNo"); });
    }
    static JournalLines only(const JournalLines &lines, std::initializer_list<std::string_view> operations)
    {
        JournalLines found;
        for (const std::string &line : lines) {
            if (std::ranges::any_of(operations, [&](std::string_view name) { return line.starts_with(name); }))
                found.push_back(line);
        }
        return found;
    }
    static std::string question(int count)
    {
        return "acedAskYesNo(" + velmor::journalText(message(11226)) + ' ' + std::to_string(count) + " \n" +
               velmor::journalText(message(7199)) + ')';
    }
    static std::string get(const std::string &guid)
    {
        return "CCatchmentAreaManager::GetCatchmentAreaByGuid(" + guid + ')';
    }
    static std::string remove(const std::string &guid) { return "CCatchmentAreaManager::DeleteCA(" + guid + ')'; }
    static std::string unmark(const std::string &guid) { return "CCatchmentArea::UnMark(" + guid + ')'; }
};

TEST_F(Erasing, TheFocusedAreaGoesWithoutAQuestionAndEveryCallComesInThisOrder)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    const std::string id = handle(area), key = guid(area);
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(250); }),
                    ElementsAre("SetActiveCommand(CA_ERASE)", "AcDbEntity::unhighlight(" + id + ')', unmark(key),
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", get(key), remove(key),
                                // the refill ends the highlight of what stood before
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()", "acedRedraw(4)",
                                "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                "~SetActiveCommand(CA_ERASE)"));
        EXPECT_THAT(areas(), IsEmpty());
        EXPECT_THAT(dialog.treeNames(), IsEmpty());
        EXPECT_EQ(dialog.CurrentArea(), nullptr);
        EXPECT_THAT(counts(dialog), ElementsAre("0", "0", "0", "0"));
        EXPECT_EQ(dialog.text(126), "");
    });
}

TEST_F(Erasing, OneCheckedAreaIsAskedAboutWithTheCountOne)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    const std::string key = guid(area);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        answer(L"Yes");
        const JournalLines lines = recorded([&] { dialog.click(250); });
        EXPECT_THAT(lines, Contains(question(1)));
        EXPECT_THAT(areas(), IsEmpty());
        EXPECT_THAT(dialog.CheckedAreas(), IsEmpty());
        EXPECT_THAT(dialog.CheckedGuids(), IsEmpty());
    });
}

TEST_F(Erasing, EachCheckedAreaIsUnmarkedFetchedAndDeletedInTheOrderOfTheStore)
{
    const AreaPtr a = addArea(L"A", 1, 0), b = addArea(L"B", 3, 20), c = addArea(L"C", 4, 40);
    const std::string first = guid(a), second = guid(c);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"C");
        dialog.tick(L"A");
        dialog.select(L"B");
        answer(L"Yes");
        const JournalLines lines = recorded([&] { dialog.click(250); });
        const auto asked = std::ranges::find(lines, question(2));
        ASSERT_NE(asked, lines.end());
        EXPECT_THAT(JournalLines(asked + 1, std::min(asked + 7, lines.end())),
                    ElementsAre(unmark(first), get(first), remove(first), unmark(second), get(second), remove(second)));
        EXPECT_THAT(names(), ElementsAre("B"));
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"B"));
        ASSERT_NE(dialog.CurrentArea(), nullptr);
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"B") << "it was not checked, so it is still in focus";
        EXPECT_THAT(counts(dialog), ElementsAre("1", "1", "0", "1"));
    });
}

TEST_F(Erasing, TheFocusedAreaIsForgottenWhenItIsAmongTheChecked)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"B");
        dialog.tick(L"B");
        answer(L"Yes");
        dialog.click(250);
        ASSERT_NE(dialog.CurrentArea(), nullptr) << "the first one left is selected";
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"A");
    });
}

TEST_F(Erasing, OnAnythingButYesAllStaysAndTheMarksComeBack)
{
    const AreaPtr a = addArea(L"A", 1, 0), b = addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.click(124);
        for (const wchar_t *text : {L"No", L"", L"perhaps"}) {
            answer(text);
            const JournalLines lines = recorded([&] { dialog.click(250); });
            ASSERT_TRUE(asked(lines));
            EXPECT_THAT(only(lines, {"CCatchmentArea::Mark", "CCatchmentAreaManager::DeleteCA"}),
                        ElementsAre(StartsWith("CCatchmentArea::Mark(" + guid(a)),
                                    StartsWith("CCatchmentArea::Mark(" + guid(b))));
            EXPECT_THAT(lines, Not(Contains("acedRedraw(4)"))) << "it ends there";
            EXPECT_EQ(lines.back(), "~SetActiveCommand(CA_ERASE)");
            EXPECT_THAT(areas(), SizeIs(2));
            EXPECT_THAT(dialog.CheckedAreas(), SizeIs(2));
        }
        m_session.answers().push({velmor::Answer::Escape{}});
        dialog.click(250);
        EXPECT_THAT(areas(), SizeIs(2));
    });
}

TEST_F(Erasing, WithoutAnAreaTheTreeIsOnlyFilledAnew)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.click(250); }),
                    ElementsAre("SetActiveCommand(CA_ERASE)", "acedRedraw(4)", "AcTransactionManager::flushGraphics()",
                                "acedUpdateDisplay()", "~SetActiveCommand(CA_ERASE)"));
    });
}

TEST_F(Erasing, WhileACommandRunsTheButtonDoesNothing)
{
    addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        const ZEMGis::Notification::SetActiveCommand other(L"CA_OTHER");
        EXPECT_THAT(recorded([&] { dialog.click(250); }), IsEmpty());
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

TEST_F(Erasing, AnErasedAreaIsGoneFromEveryFilter)
{
    addArea(L"A", 7, 0);
    addArea(L"B", 7, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"A");
        dialog.click(250);
        EXPECT_THAT(counts(dialog), ElementsAre("1", "1", "1", "1"));
        for (const int filter : {129, 130, 133, 134}) {
            dialog.click(filter);
            EXPECT_THAT(dialog.treeNames(), ElementsAre(L"B")) << filter;
        }
    });
}

TEST_F(Erasing, ItsDrawingAndItsLabelGoWithIt)
{
    const AreaPtr area = addArea(L"A", 1, 0);
    const AcDbObjectId entity = area->GetObjectId();
    run([&](CReviewUnderTest &dialog) {
        dialog.click(127);
        ASSERT_THAT(labels(), SizeIs(1));
        dialog.click(250);
        EXPECT_TRUE(entity.isErased());
        EXPECT_THAT(labels(), IsEmpty());
    });
}

TEST_F(Erasing, TheDeleteKeyErasesTheFocusedAreaWithoutAQuestionThoughOthersAreChecked)
{
    addArea(L"A", 1, 0);
    addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.tick(L"A");
        dialog.select(L"B");
        const JournalLines lines = recorded([&] { dialog.press(Qt::Key_Delete); });
        EXPECT_FALSE(asked(lines));
        EXPECT_THAT(names(), ElementsAre("A"));
        EXPECT_THAT(only(lines, {"SetActiveCommand", "~SetActiveCommand"}), IsEmpty());
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), "acedUpdateDisplay()");
    });
}

TEST_F(Erasing, TheDeleteKeyHasNoGuard)
{
    addArea(L"A", 1, 0);
    run([&](CReviewUnderTest &dialog) {
        const ZEMGis::Notification::SetActiveCommand other(L"CA_OTHER");
        dialog.press(Qt::Key_Delete);
        EXPECT_THAT(areas(), IsEmpty());
    });
}

TEST_F(Erasing, TheDeleteKeyOnASectionErasesItsArea)
{
    addSection(L"D1", {0, 0}, {10, 0});
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    addArea(L"B", 1, 20);
    run([&](CReviewUnderTest &dialog) {
        dialog.selectSection(L"A", L"D1");
        dialog.press(Qt::Key_Delete);
        EXPECT_THAT(names(), ElementsAre("B"));
        EXPECT_NE(network().sectionByName(L"D1"), nullptr) << "the network is only read";
    });
}

TEST_F(Erasing, TheDeleteKeyWithoutAnAreaFillsTheTreeAndRefreshes)
{
    run([&](CReviewUnderTest &dialog) {
        EXPECT_THAT(recorded([&] { dialog.press(Qt::Key_Delete); }),
                    ElementsAre("acedRedraw(4)", "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()"));
    });
}

TEST_F(Erasing, AfterTheDeleteKeyTheFirstAreaIsInFocusThoughTheSelectionEventRanInTheMiddle)
{
    addSection(L"D1", {0, 0}, {10, 0});
    addArea(L"A", 1, 0, 0.25, 100, {{L"D1", 0.5}});
    addArea(L"B", 1, 20);
    addArea(L"C", 1, 40);
    run([&](CReviewUnderTest &dialog) {
        dialog.select(L"C");
        dialog.press(Qt::Key_Delete);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A", L"B"));
        ASSERT_NE(dialog.CurrentArea(), nullptr);
        EXPECT_EQ(dialog.CurrentArea()->GetName(), L"A");
        EXPECT_EQ(dialog.text(110), "0.25");
        EXPECT_THAT(rows(dialog), ElementsAre("D1 50.0000"));
    });
}

TEST_F(Erasing, TheDeleteKeyInTheSectionListErasesNothing)
{
    addSection(L"D1", {0, 0}, {10, 0});
    addArea(L"A", 1, 0, 0.5, 100, {{L"D1", 1.0}});
    run([&](CReviewUnderTest &dialog) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
        QApplication::sendEvent(dialog.list(), &key);
        EXPECT_THAT(areas(), SizeIs(1));
    });
}

} // namespace
