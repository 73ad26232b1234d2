// What a click changed in the drawing is one step: undone, all is as it was; and a handler that fails half way leaves
// drawing, lists and tree as they were.
#include "tests/review/editing_fixture.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Fails once, when the entity's data is about to change, or when the entity has been erased.
class CFailsOnce final : public velmor::DrawingObserver {
public:
    CFailsOnce(velmor::Drawing &drawing, AcDbObjectId entity)
        : m_drawing(drawing), m_pEntity(velmor::ObjectAccess::object(entity))
    {
        m_drawing.addObserver(*this);
    }
    ~CFailsOnce() override { m_drawing.removeObserver(*this); }
    bool HasFailed() const { return m_pEntity == nullptr; }

private:
    void entityErased(AcDbEntity &entity, bool) override { Fail(entity); }
    void dataChanging(AcDbObject &object, const std::string &) override { Fail(object); }
    void Fail(const AcDbObject &object)
    {
        if (&object != m_pEntity)
            return;
        m_pEntity = nullptr;
        throw std::runtime_error("the disk is gone");
    }
    velmor::Drawing &m_drawing;
    const AcDbObject *m_pEntity;
};

class Undo : public EditingTest {
protected:
    Undo()
    {
        for (const wchar_t *node : {L"MH1", L"MH2", L"MH3"})
            addNode(node, {0, 0});
        addSection(L"D1", {0, 0}, {10, 0}, L"MH1", L"MH2");
        addSection(L"D2", {20, 0}, {30, 0}, L"MH2", L"MH3");
        addArea(L"A", 3, 0, 0.5, 100, {{L"D1", 0.5}, {L"D2", 0.5}});
        addArea(L"B", 1, 20, 0.6, 200, {{L"D2", 1.0}});
        addArea(L"C", 2, 40, 0.7, 300);
        drawing().write(); // gives what a save gives
        settle();
    }
    /// All that is known of the areas.
    Rows state()
    {
        Rows found;
        for (const AreaPtr &area : areas()) {
            std::string line = guid(area) + ' ' + velmor::journalText(area->GetName()) + ' ' +
                               std::to_string(area->GetType()) + ' ' + velmor::journalText(area->GetFlowCoeff()) + ' ' +
                               velmor::journalText(area->GetPopulation());
            for (const std::string &share : shares(area))
                line += ' ' + share;
            found.push_back(line);
        }
        found.push_back("labels " + std::to_string(labels().size()));
        return found;
    }
    /// One click of the open dialog is one step; undone, everything is as before it, and redone as behind it.
    void expectOneStep(const std::function<void(CReviewUnderTest &)> &prepare,
                       const std::function<void(CReviewUnderTest &)> &change)
    {
        std::string before, after;
        Rows stateBefore, stateAfter;
        runCommand([&](CReviewUnderTest &dialog) {
            dialog.RunHandler([&] { drawing().setDictionaryEntry("TEST", "FIRST", {{1, std::wstring(L"step")}}); });
            prepare(dialog);
            const std::size_t steps = log().undoCount();
            before = drawing().write();
            stateBefore = state();
            change(dialog);
            EXPECT_EQ(log().undoCount(), steps + 1);
            after = drawing().write();
            stateAfter = state();
            EXPECT_NE(before, after);
        });
        EXPECT_EQ(m_session.commands().start(L"U"), velmor::RunStatus::Done);
        EXPECT_EQ(state(), stateBefore);
        EXPECT_EQ(drawing().write(), before);
        EXPECT_EQ(m_session.commands().start(L"REDO"), velmor::RunStatus::Done);
        EXPECT_EQ(state(), stateAfter);
        EXPECT_EQ(drawing().write(), after);
    }
};

TEST_F(Undo, WrittenDataOfManyIsOneStepWithTheirLabels)
{
    expectOneStep(
        [](CReviewUnderTest &dialog) {
            dialog.click(124);
            dialog.type(110, "0.9");
            dialog.type(220, "900");
        },
        [&](CReviewUnderTest &dialog) { dialog.click(127); });
}

TEST_F(Undo, AShareIsOneStep)
{
    expectOneStep([](CReviewUnderTest &) {},
                  [](CReviewUnderTest &dialog) {
                      dialog.list()->EditCell(0, 1);
                      dialog.list()->GetEditBox()->setText("40");
                      dialog.list()->CommitEditing();
                  });
}

TEST_F(Undo, ATypeIsOneStep)
{
    expectOneStep([](CReviewUnderTest &) {}, [](CReviewUnderTest &dialog) { dialog.click(132); });
}

TEST_F(Undo, AllErasedAreasComeBackByOneStepWithTheirLabels)
{
    expectOneStep(
        [&](CReviewUnderTest &dialog) {
            dialog.click(124);
            dialog.click(127);
            answer(L"Yes");
        },
        [&](CReviewUnderTest &dialog) {
            dialog.click(250);
            EXPECT_THAT(areas(), IsEmpty());
        });
}

TEST_F(Undo, TheFocusedAreaErasedByTheKeyIsOneStep)
{
    expectOneStep([](CReviewUnderTest &dialog) { dialog.select(L"B"); },
                  [](CReviewUnderTest &dialog) { dialog.press(Qt::Key_Delete); });
}

TEST_F(Undo, RenamingAllIsOneStep)
{
    expectOneStep([](CReviewUnderTest &) {}, [](CReviewUnderTest &dialog) { dialog.click(260); });
}

TEST_F(Undo, ATypedNameIsOneStep)
{
    expectOneStep([](CReviewUnderTest &) {}, [](CReviewUnderTest &dialog) { dialog.editName(L"A", "North"); });
}

TEST_F(Undo, WhatOnlyShowsOrAsksIsNoStep)
{
    runCommand([&](CReviewUnderTest &dialog) {
        const std::size_t steps = log().undoCount();
        dialog.click(124);
        answer(L"No");
        dialog.click(250);
        dialog.click(125);
        dialog.type(352, "3");
        dialog.select(L"B");
        dialog.list()->SetItemText(0, 1, L"100.5");
        dialog.RunHandler([&] { dialog.OnWindowMessage(CXListCtrl::DataChangedMessage(), 0, 1); });
        EXPECT_EQ(log().undoCount(), steps);
    });
}

// --- A handler that fails half way --------------------------------------------------------------------------

class Failing : public Undo {
protected:
    /// The change fails at area B: the drawing, the tree, the counts, the ticks and the fields are as before it.
    void expectTakenBack(const std::function<void(CReviewUnderTest &)> &prepare,
                         const std::function<void(CReviewUnderTest &)> &change)
    {
        runCommand([&](CReviewUnderTest &dialog) {
            prepare(dialog);
            const std::string before = drawing().write();
            const Rows stateBefore = state(), countsBefore = counts(dialog), rowsBefore = rows(dialog);
            const auto treeBefore = dialog.treeNames();
            const auto checkedBefore = dialog.CheckedGuids();
            const std::wstring focusBefore = dialog.CurrentArea() ? dialog.CurrentArea()->GetGuid() : L"";
            {
                CFailsOnce failing(drawing(), areaNamed(L"B")->GetObjectId());
                change(dialog);
                EXPECT_TRUE(failing.HasFailed());
            }
            EXPECT_THAT(alerts(), ElementsAre(HasSubstr(L"the disk is gone")));
            alerts().clear();
            EXPECT_EQ(state(), stateBefore);
            EXPECT_EQ(drawing().write(), before);
            EXPECT_EQ(counts(dialog), countsBefore);
            EXPECT_EQ(rows(dialog), rowsBefore);
            EXPECT_EQ(dialog.treeNames(), treeBefore);
            EXPECT_EQ(dialog.CheckedGuids(), checkedBefore);
            ASSERT_NE(dialog.CurrentArea(), nullptr);
            EXPECT_EQ(dialog.CurrentArea()->GetGuid(), focusBefore);
            for (const AreaPtr &area : dialog.CheckedAreas())
                EXPECT_EQ(area, areaOfGuid(area->GetGuid())) << "the store's own area, not one that was erased";
            EXPECT_EQ(dialog.CurrentArea(), areaOfGuid(focusBefore));
            // The dialog goes on.
            change(dialog);
            EXPECT_THAT(alerts(), IsEmpty());
            EXPECT_NE(state(), stateBefore);
        });
    }
    static AreaPtr areaOfGuid(const std::wstring &guid)
    {
        return ZEMGis::Sewage::CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(guid);
    }
};

TEST_F(Failing, WriteDataOfAllIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.click(124); },
                    [](CReviewUnderTest &dialog) {
                        dialog.type(110, "0.9");
                        dialog.click(127);
                    });
}

TEST_F(Failing, ErasingAllIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.click(124); },
                    [&](CReviewUnderTest &dialog) {
                        answer(L"Yes");
                        dialog.click(250);
                    });
}

TEST_F(Failing, ErasingTheFocusedAreaIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.select(L"B"); },
                    [](CReviewUnderTest &dialog) { dialog.press(Qt::Key_Delete); });
}

TEST_F(Failing, RenamingAllIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &) {}, [](CReviewUnderTest &dialog) { dialog.click(260); });
}

TEST_F(Failing, ATypeIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.select(L"B"); },
                    [](CReviewUnderTest &dialog) { dialog.click(132); });
}

TEST_F(Failing, AShareIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.select(L"B"); },
                    [](CReviewUnderTest &dialog) {
                        dialog.list()->SetItemText(0, 1, L"40");
                        dialog.RunHandler([&] { dialog.OnWindowMessage(CXListCtrl::DataChangedMessage(), 0, 1); });
                    });
}

TEST_F(Failing, ATypedNameIsTakenBack)
{
    expectTakenBack([](CReviewUnderTest &dialog) { dialog.select(L"B"); },
                    [](CReviewUnderTest &dialog) { dialog.editName(L"B", "North"); });
}

} // namespace
