// Whatever is clicked and answered in the dialog, in any order: what holds of the areas, of the drawing behind it, and
// of undo.
#include "tests/definition/manual_fixture.h"

#include <random>

using namespace ZEMGis;
using testing::IsEmpty;

namespace {

class RandomRoads : public ManualDefinitionTest {
protected:
    static constexpr int kActions = 40;

    RandomRoads()
    {
        addSecondCourtyard();
        m_entities = {addBox(4000, 0, 4100, 100, L"0"), addBox(4010, 10, 4090, 90, L"0"),
                      addLine(4200, 0, 4300, 0, L"0"), addBox(4400, 0, 4500, 80, L"0")};
        addLine(600, 0, 700, 0); // an open parcel
        addLine(700, 0, 700, 100);
        addLine(700, 100, 600, 100);
        log().begin(); // what the fixture drew is no step of a road
        log().keep();
        log().forget();
    }
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    void act(CDialogUnderTest &dialog)
    {
        switch (below(14)) {
        case 0:
            dialog.choose(257, below(3) == 0 ? 3 : below(2));
            break;
        case 1:
            if (below(2) == 0)
                select(dialog, {L"D1", L"D4"});
            else
                select(dialog, {L"D3", L"D2", L"D1"});
            break;
        case 2:
        case 3:
        case 4:
            if (below(5) == 0)
                answerEscape();
            else
                answer(below(710), below(110));
            dialog.click(208);
            break;
        case 5:
            if (below(4) == 0)
                answerEnter();
            else
                answerPick(m_entities[static_cast<std::size_t>(below(4))]);
            dialog.click(209);
            break;
        case 6:
            for (int corners = below(6); corners > 0; --corners)
                answer(5000 + below(100), below(100));
            below(2) == 0 ? answerEnter() : answerEscape();
            dialog.click(239);
            break;
        case 7:
            dialog.list()->clearSelection();
            for (int row = 0; row < dialog.list()->topLevelItemCount(); ++row)
                dialog.list()->topLevelItem(row)->setSelected(below(3) > 0);
            break;
        case 8:
            if (below(3) == 0)
                dialog.list()->selectAll();
            dialog.type(329, QStringLiteral("N%1").arg(below(12)));
            [[fallthrough]];
        case 9:
        case 10:
            dialog.type(215, "0.5");
            dialog.type(213, QString::number(1 + below(5)));
            dialog.click(221);
            break;
        case 11:
            dialog.click(below(2) == 0 ? 204 : 205);
            break;
        default:
            const int checks[] = {106, 107, 108, 268, 274, 296};
            dialog.click(checks[below(6)]);
            break;
        }
        m_session.answers().clear(); // of a click that a disabled button didn't take
    }
    void expectRowsInStep(const CDialogUnderTest &dialog)
    {
        const int count = dialog.list()->topLevelItemCount();
        EXPECT_TRUE(count == 0 || dialog.list()->topLevelItem(0)->text(0).toStdString() == mainText());
        for (int row = 1; row < count; ++row)
            EXPECT_EQ(dialog.list()->topLevelItem(row)->text(0).toStdString(), islandText());
        if (count > 0) {
            EXPECT_GE(loosePolylines().size() + 1, static_cast<std::size_t>(count)); // a pick of a line draws none
        }
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.IsEditorCommandRunning());
        EXPECT_THAT(lines(), testing::SizeIs(1)) << "the one to pick";
    }
    static void expectAreasInOrder()
    {
        std::set<std::wstring> names;
        const auto all = areas();
        for (std::size_t i = 0; i < all.size(); ++i) {
            const bool isNew = names.insert(all[i]->GetName()).second;
            EXPECT_TRUE(isNew || all[i]->IsHidden() != 0) << "a name twice";
            const Data::CDataBox main = property(*all[i], L"CA_MAIN_AREA");
            if (main.IsNotNull() && !static_cast<std::wstring>(main).empty()) {
                const auto owner =
                    Sewage::CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(static_cast<std::wstring>(main));
                ASSERT_TRUE(owner);
                CStringArray islands;
                property(*owner, L"CA_ISLANDS").GetArrayCopy(islands);
                EXPECT_EQ(std::ranges::count(islands, all[i]->GetGuid()), 1);
            }
            Sewage::SectionShares shares;
            if (all[i]->GetConnectedSections(shares) != 0) {
                double whole = 0.0;
                for (const auto &[section, share] : shares)
                    whole += share;
                EXPECT_NEAR(whole, 1.0, 1e-12);
            }
        }
    }

    std::mt19937 m_random;
    std::vector<AcDbObjectId> m_entities;
};

TEST_F(RandomRoads, LeaveAreasInOrderNothingElseInTheDrawingAndAllOfItCanBeUndoneAndDoneAgain)
{
    std::size_t saved = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        m_random.seed(seed);
        alerts().clear();
        const auto polylines = loosePolylines();
        const std::size_t standing = areas().size();
        const std::string before = drawing().write();
        const std::size_t steps = log().undoCount();
        run([&](CDialogUnderTest &dialog) {
            for (int i = 0; i < kActions && !HasFailure(); ++i) {
                act(dialog);
                expectRowsInStep(dialog);
                expectAreasInOrder();
            }
        });
        ASSERT_FALSE(HasFailure());
        saved += areas().size() - standing;
        EXPECT_THAT(hatches(), IsEmpty());
        const bool refused = std::ranges::count(alerts(), message(2005)) > 0; // then outlines stay, as told
        EXPECT_TRUE(refused || loosePolylines() == polylines);
        for (const std::wstring &alert : alerts())
            EXPECT_TRUE(alert == message(1620) || alert == message(2002) || alert == message(2005) ||
                        alert == message(2155));
        const std::string after = drawing().write();
        std::size_t undone = 0;
        while (log().undoCount() > steps && log().undo())
            ++undone;
        EXPECT_EQ(drawing().write(), before);
        while (undone > 0 && log().redo())
            --undone;
        EXPECT_EQ(drawing().write(), after);
        m_session.setVariable(L"OSMODE", 37);
    }
    EXPECT_GT(saved, 20u) << "the roads lead somewhere";
}

} // namespace
