// The dialog that chooses the layers of boundaries.
#include "tests/dialogs/small_dialog_fixture.h"

#include "controls/WideText.h"
#include "dialogs/CatchLayerDlg.h"
#include "host/drawing/Entities.h"
#include "host/editor/SelectionSets.h"

#include <QListWidget>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using velmor::Answer;

namespace {

class LayerDialog : public SmallDialogTest {
protected:
    LayerDialog()
    {
        m_a1 = addLine(L"A");
        m_a2 = addLine(L"A");
        m_b = addLine(L"B");
        addLine(L"C");
    }

    QListWidget &list() { return *m_dialog.Control<QListWidget>(210); }
    QListWidgetItem *entry(const wchar_t *name)
    {
        const auto found = list().findItems(ToQString(name), Qt::MatchExactly | Qt::MatchCaseSensitive);
        return found.isEmpty() ? nullptr : found.front();
    }
    QStringList entries()
    {
        QStringList names;
        for (int row = 0; row < list().count(); ++row)
            names << list().item(row)->text();
        return names;
    }
    QStringList selected()
    {
        QStringList names;
        for (int row = 0; row < list().count(); ++row)
            if (list().item(row)->isSelected())
                names << list().item(row)->text();
        return names;
    }
    QStringList allLayers()
    {
        QStringList names;
        for (const velmor::Layer &layer : drawing().layers())
            names << ToQString(layer.name);
        return names;
    }
    AcDbObjectIdArray inSet()
    {
        const velmor::SelectionSet *set = m_session.selectionSets().find(m_dialog.m_selectionSet.Name());
        return set ? set->members() : AcDbObjectIdArray{AcDbObjectId()};
    }
    void pick(AcDbObjectIdArray ids)
    {
        if (ids.empty()) {
            m_session.answers().push({Answer::Escape{}});
        } else {
            m_session.answers().push({std::move(ids)});
            m_session.answers().push({Answer::Enter{}});
        }
        click(m_dialog, 209);
    }
    int run(const std::function<void()> &drive) { return SmallDialogTest::run(m_dialog, drive); }

    CCatchLayerDlg m_dialog;
    AcDbObjectId m_a1, m_a2, m_b;
};

TEST_F(LayerDialog, TitleAndCaptionsAreTheMessagesOfTheirNumbersInBothLanguages)
{
    for (const char *language : {"hr", "en"}) {
        start(language);
        CCatchLayerDlg dialog;
        SmallDialogTest::run(dialog, [&] {
            EXPECT_EQ(dialog.windowTitle(), ToQString(message(1983)));
            EXPECT_EQ(text(dialog, 338), ToQString(message(1983)));
            EXPECT_EQ(text(dialog, 328), ToQString(message(2022)));
            EXPECT_EQ(text(dialog, 1), ToQString(message(60)));
            EXPECT_EQ(text(dialog, 2), ToQString(message(67)));
            const auto *pick = dialog.Control<QAbstractButton>(209);
            EXPECT_EQ(pick->iconSize(), QSize(18, 18));
            EXPECT_FALSE(pick->icon().isNull());
        });
    }
}

TEST_F(LayerDialog, TheListHoldsAllLayersInTheTablesOrder)
{
    run([&] {
        EXPECT_EQ(entries(), allLayers());
        EXPECT_EQ(list().selectionMode(), QAbstractItemView::MultiSelection);
    });
}

TEST_F(LayerDialog, WithoutAChoiceNothingIsSelectedAndTheSetIsEmpty)
{
    run([&] {
        EXPECT_THAT(selected(), IsEmpty());
        EXPECT_THAT(m_dialog.m_entityIds, IsEmpty());
        EXPECT_THAT(inSet(), IsEmpty());
        click(m_dialog, 1);
    });
    EXPECT_THAT(m_dialog.m_chosenLayers, IsEmpty());
    EXPECT_THAT(inSet(), IsEmpty());
}

TEST_F(LayerDialog, TheChosenLayersAreSelectedAtTheStartWithTheirEntities)
{
    m_dialog.m_chosenLayers = {L"A"};
    run([&] {
        EXPECT_EQ(selected(), QStringList("A"));
        EXPECT_THAT(m_dialog.m_entityIds, ElementsAre(m_a1, m_a2));
        EXPECT_THAT(inSet(), ElementsAre(m_a1, m_a2));
    });
}

TEST_F(LayerDialog, AChosenLayerThatIsGoneSelectsAllOfThem)
{
    m_dialog.m_chosenLayers = {L"A", L"GONE"};
    run([&] { EXPECT_EQ(selected(), allLayers()); });
}

TEST_F(LayerDialog, TheCaseOfANameCounts)
{
    m_dialog.m_chosenLayers = {L"a"}; // is not there, so all are
    run([&] { EXPECT_EQ(selected(), allLayers()); });
}

TEST_F(LayerDialog, EachClickTakesTheEntitiesOfTheSelectedLayersAnew)
{
    run([&] {
        entry(L"A")->setSelected(true);
        EXPECT_THAT(m_dialog.m_entityIds, ElementsAre(m_a1, m_a2));
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A"));
        entry(L"B")->setSelected(true);
        EXPECT_THAT(m_dialog.m_entityIds, UnorderedElementsAre(m_a1, m_a2, m_b));
        EXPECT_EQ(inSet(), m_dialog.m_entityIds);
        const AcDbObjectId later = addLine(L"B"); // nothing is remembered from click to click
        entry(L"A")->setSelected(false);
        EXPECT_THAT(m_dialog.m_entityIds, ElementsAre(m_b, later));
        EXPECT_EQ(inSet(), m_dialog.m_entityIds);
    });
}

TEST_F(LayerDialog, EntitiesOfBlocksAndPaperSpacesAreTakenAndErasedOnesAreNot)
{
    const auto addTo = [&](velmor::BlockRecord &block) {
        auto line = std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0));
        AcDbLine &inner = *line;
        const AcDbObjectId id = drawing().append(std::move(line), block);
        drawing().setLayerOf(inner, drawing().ensureLayer(L"B"));
        return id;
    };
    const AcDbObjectId inBlock = addTo(drawing().addBlock(L"PART"));
    const AcDbObjectId onPaper = addTo(*drawing().findBlock(L"*Paper_Space"));
    {
        const CZEMCEntityPtr gone(m_b, AcDb::kForWrite);
        gone->erase(true);
    }
    m_dialog.m_chosenLayers = {L"B"};
    run([&] {
        EXPECT_THAT(m_dialog.m_entityIds, UnorderedElementsAre(inBlock, onPaper));
        EXPECT_EQ(inSet(), m_dialog.m_entityIds);
    });
}

TEST_F(LayerDialog, APickReplacesTheChoiceByTheLayersOfThePickedEntities)
{
    m_dialog.m_chosenLayers = {L"C"};
    run([&] {
        pick({m_a1, m_a2, m_b}); // two of one layer: it is selected once
        EXPECT_EQ(selected(), QStringList({"A", "B"}));
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A", L"B"));
        EXPECT_THAT(m_dialog.m_entityIds, UnorderedElementsAre(m_a1, m_a2, m_b));
        EXPECT_TRUE(m_dialog.isVisible());
        click(m_dialog, 1);
    });
    EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A", L"B"));
}

TEST_F(LayerDialog, APickStandsBetweenBeginAndCompleteAndFreesWhatItGot)
{
    run([&] {
        const std::size_t before = m_session.selectionSets().size();
        velmor::Journal::instance().setRecording(true);
        pick({m_a1});
        velmor::Journal::instance().setRecording(false);
        std::vector<std::string> calls;
        for (const auto &entry : velmor::Journal::instance().entries())
            if (entry.operation.starts_with("CAdUi") || entry.operation.starts_with("acedSS"))
                calls.push_back(entry.operation);
        ASSERT_GE(calls.size(), 4u);
        calls.resize(4);
        EXPECT_THAT(calls, ElementsAre("CAdUiBaseDialog::BeginEditorCommand", "acedSSGet", "acedSSFree",
                                       "CAdUiBaseDialog::CompleteEditorCommand"));
        EXPECT_EQ(m_session.selectionSets().size(), before);
    });
}

TEST_F(LayerDialog, ACancelledPickEmptiesTheChoice)
{
    m_dialog.m_chosenLayers = {L"A"};
    run([&] {
        pick({});
        EXPECT_THAT(selected(), IsEmpty());
        EXPECT_THAT(m_dialog.m_chosenLayers, IsEmpty());
        EXPECT_THAT(inSet(), IsEmpty());
        EXPECT_TRUE(m_dialog.isVisible());
    });
}

TEST_F(LayerDialog, ShowOnlyWhatIsSelectedShortensTheListAndLeavesTheChoice)
{
    m_dialog.m_chosenLayers = {L"A", L"C"};
    run([&] {
        click(m_dialog, 328);
        EXPECT_EQ(entries(), QStringList({"A", "C"}));
        EXPECT_EQ(selected(), entries());
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A", L"C"));
        click(m_dialog, 328);
        EXPECT_EQ(entries(), allLayers());
        EXPECT_EQ(selected(), QStringList({"A", "C"}));
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A", L"C"));
    });
}

TEST_F(LayerDialog, WhileOnlyTheSelectedShowOkReturnsJustThese)
{
    m_dialog.m_chosenLayers = {L"A", L"B"};
    EXPECT_EQ(run([&] {
                  click(m_dialog, 328);
                  entry(L"B")->setSelected(false);
                  click(m_dialog, 1);
              }),
              CAdUiBaseDialog::kOk);
    EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A"));
    EXPECT_THAT(m_dialog.m_entityIds, ElementsAre(m_a1, m_a2));
}

TEST_F(LayerDialog, APickOfALayerThatTheShortListLacksSelectsAllThatShow)
{
    m_dialog.m_chosenLayers = {L"A", L"C"};
    run([&] {
        click(m_dialog, 328);
        pick({m_b});
        EXPECT_EQ(entries(), QStringList({"A", "C"}));
        EXPECT_EQ(selected(), entries());
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"A", L"C"));
    });
}

TEST_F(LayerDialog, ALayerThatWentWhileOnlyTheSelectedShowedSelectsAllOnTheWayBack)
{
    m_dialog.m_chosenLayers = {L"A"};
    run([&] {
        click(m_dialog, 328);
        list().item(0)->setText(QStringLiteral("GONE")); // stands for a layer that another program took away
        list().item(0)->setSelected(false);
        list().item(0)->setSelected(true);
        EXPECT_THAT(m_dialog.m_chosenLayers, ElementsAre(L"GONE"));
        click(m_dialog, 328);
        EXPECT_EQ(selected(), allLayers());
    });
}

TEST_F(LayerDialog, EachChangeMakesANewSetAndLeavesNoneBehind)
{
    const std::size_t before = m_session.selectionSets().size();
    run([&] {
        for (const bool on : {true, false, true, false})
            entry(L"A")->setSelected(on);
        EXPECT_EQ(m_session.selectionSets().size(), before + 1);
    });
    EXPECT_EQ(m_session.selectionSets().size(), before); // cancelled
}

TEST_F(LayerDialog, AfterOkTheSetIsTheCallers)
{
    m_dialog.m_chosenLayers = {L"B"};
    EXPECT_EQ(run([&] { click(m_dialog, 1); }), CAdUiBaseDialog::kOk);
    EXPECT_THAT(inSet(), ElementsAre(m_b));
}

TEST_F(LayerDialog, EscapeAndCancelEndItWithCancel)
{
    EXPECT_EQ(run([&] { click(m_dialog, 2); }), CAdUiBaseDialog::kCancel);
    EXPECT_EQ(run([&] {
                  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                  QApplication::sendEvent(&list(), &escape);
                  EXPECT_FALSE(m_dialog.isVisible());
              }),
              CAdUiBaseDialog::kCancel);
}

TEST_F(LayerDialog, AfterOkItsSetIsTheCallersAndOtherwiseItIsFreed)
{
    const std::size_t before = m_session.selectionSets().size();
    CEntitySet taken;
    {
        CCatchLayerDlg dialog;
        dialog.m_chosenLayers = {L"A"};
        ASSERT_EQ(SmallDialogTest::run(dialog, [&] { click(dialog, 1); }), CAdUiBaseDialog::kOk);
        taken = std::move(dialog.m_selectionSet);
        EXPECT_TRUE(dialog.m_selectionSet.IsNone());
    }
    const velmor::SelectionSet *set = m_session.selectionSets().find(taken.Name());
    ASSERT_NE(set, nullptr);
    EXPECT_THAT(set->members(), UnorderedElementsAre(m_a1, m_a2));
    {
        CCatchLayerDlg dialog; // nobody takes what it has
        SmallDialogTest::run(dialog, [&] { click(dialog, 1); });
    }
    EXPECT_EQ(m_session.selectionSets().size(), before + 1);
    taken.Free();
    EXPECT_EQ(m_session.selectionSets().size(), before);
}

TEST_F(LayerDialog, WithoutADrawingItOpensEmpty)
{
    m_session.setDrawing(nullptr);
    run([&] {
        EXPECT_THAT(entries(), IsEmpty());
        click(m_dialog, 1);
    });
    EXPECT_THAT(m_dialog.m_chosenLayers, IsEmpty());
}

} // namespace
