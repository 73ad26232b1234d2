// The way from the panel of areas to the dialog in which the shares of an area's sections are edited.
#include "host/drawing/Journal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/UndoHistory.h"
#include "host/editor/panels/Panel.h"
#include "host/editor/panels/PanelModel.h"
#include "host/sewage/AreaDialogs.h"
#include "host/sewage/AreasModel.h"
#include "tests/host/sewage/AreaWorld.h"

#include "contracts/HostDialog.h"
#include "host/services/Services.h"

#include <QAction>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> g_opened;
std::function<void(const test::AreaPtr &)> g_work;

/// Stands for a module's dialog.
void dialogOfModule(boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> area)
{
    g_opened.push_back(area->GetName());
    if (g_work)
        g_work(area);
}

class SharesFromThePanel : public test::AreaWorld {
protected:
    void SetUp() override
    {
        Services::instance().start({.language = "en"});
        test::AreaWorld::SetUp();
        for (const auto &[guid, name] : {std::pair{L"{1}", L"P1"}, {L"{2}", L"P2"}}) {
            const test::AreaPtr area = create(guid, L"POLYGON ((0 0, 100 0, 100 100, 0 100, 0 0))", name);
            test::SectionShares shares{{section(L"S1"), 0.5}, {section(L"S2"), 0.5}};
            manager().AssignCA(shares, area);
        }
        const std::vector<PanelSpec> specs = panelSpecs();
        const auto spec =
            std::ranges::find_if(specs, [](const PanelSpec &s) { return std::string_view(s.name) == "areas"; });
        ASSERT_NE(spec, specs.end());
        panel.reset(spec->make(session));
        panel->setDrawing(&drawing());
        panel->show();
        panel->bringUpToDate();
        table = panel->findChild<PanelTable *>();
    }
    void TearDown() override
    {
        ZEMGis::Sewage::SetSectionSharesDialog(nullptr);
        g_opened.clear();
        g_work = nullptr;
        panel->setDrawing(nullptr);
        panel.reset();
    }
    void give(ZEMGis::Sewage::AreaDialog dialog)
    {
        ZEMGis::Sewage::SetSectionSharesDialog(dialog);
        panel->bringUpToDate();
    }
    QPushButton *button() const
    {
        for (QPushButton *found : panel->findChildren<QPushButton *>())
            if (found->text().startsWith(QStringLiteral("Shares")))
                return found;
        return nullptr;
    }
    QAction *action() const { return table->actions().value(0); }
    std::vector<std::string> sharesShown() const
    {
        std::vector<std::string> cells;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            cells.push_back(table->model()->index(row, AreasModel::Sections).data().toString().toStdString());
        return cells;
    }

    std::unique_ptr<Panel> panel;
    PanelTable *table = nullptr;
};

TEST_F(SharesFromThePanel, NothingIsOfferedWithoutAModule)
{
    ASSERT_NE(button(), nullptr);
    table->selectRow(0);
    EXPECT_FALSE(button()->isEnabled());
    EXPECT_FALSE(action()->isEnabled());
    QTest::keyClick(table, Qt::Key_Return, Qt::AltModifier);
    EXPECT_THAT(g_opened, IsEmpty());
}

TEST_F(SharesFromThePanel, TheDialogIsOfferedForOneAreaWhileItsModuleIsThere)
{
    give(dialogOfModule);
    EXPECT_FALSE(button()->isEnabled()) << "no area is chosen";
    table->selectRow(1);
    EXPECT_TRUE(button()->isEnabled());
    table->selectAll();
    EXPECT_FALSE(button()->isEnabled()) << "the dialog is about one area";
    table->selectRow(1);
    button()->click();
    EXPECT_THAT(g_opened, ElementsAre(L"P2"));
    give(nullptr);
    EXPECT_FALSE(button()->isEnabled());
    button()->click();
    EXPECT_THAT(g_opened, ElementsAre(L"P2"));
}

TEST_F(SharesFromThePanel, AKeyAndTheContextMenuOpenItToo)
{
    give(dialogOfModule);
    table->selectRow(0);
    panel->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Return, Qt::AltModifier);
    EXPECT_THAT(g_opened, ElementsAre(L"P1"));
    EXPECT_EQ(table->contextMenuPolicy(), Qt::ActionsContextMenu);
    action()->trigger();
    EXPECT_THAT(g_opened, ElementsAre(L"P1", L"P1"));
}

TEST_F(SharesFromThePanel, ItDoesNotOpenWhileACommandHoldsTheDrawing)
{
    give(dialogOfModule);
    table->selectRow(0);
    {
        const ZEMGis::Utility::CDocLock lock;
        button()->click();
        EXPECT_THAT(g_opened, IsEmpty());
        EXPECT_FALSE(session.lastStatus().empty());
    }
    button()->click();
    EXPECT_THAT(g_opened, ElementsAre(L"P1"));
}

TEST_F(SharesFromThePanel, EachEditingIsOneUndoStepAndThePanelShowsIt)
{
    give(dialogOfModule);
    g_work = [this](const test::AreaPtr &area) {
        CAdUiBaseDialog dialog;
        dialog.setWindowTitle(QStringLiteral("Sections"));
        for (const double share : {0.25, 0.75})
            EXPECT_TRUE(dialog.RunHandler([&] { area->SetConnectedSectionShare(section(L"S1"), share, 1); }));
    };
    auto &history = drawing().component<UndoHistory>();
    const auto steps = history.undoCount();
    table->selectRow(0);
    button()->click();
    panel->bringUpToDate();
    EXPECT_THAT(sharesShown(), ElementsAre("S1 75.0%, S2 50.0%", "S1 50.0%, S2 50.0%"));
    EXPECT_EQ(history.undoCount(), steps + 2);
    ASSERT_TRUE(history.undo());
    panel->bringUpToDate();
    EXPECT_THAT(sharesShown(), ElementsAre("S1 25.0%, S2 50.0%", "S1 50.0%, S2 50.0%"));
    ASSERT_TRUE(history.undo());
    panel->bringUpToDate();
    EXPECT_THAT(sharesShown(), ElementsAre("S1 50.0%, S2 50.0%", "S1 50.0%, S2 50.0%"));
}

} // namespace
} // namespace velmor
