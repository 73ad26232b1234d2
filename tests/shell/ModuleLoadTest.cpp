// The module in the embedded host: it comes, it is used, it goes.
#include "contracts/HostDialog.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Session.h"
#include "host/sewage/AreaDialogs.h"

#include <QApplication>
#include <QLineEdit>

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class ModuleInHost : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "test";
        static char *argv[] = {name, nullptr};
        // Never destroyed: at the program's end its devices would outlive what the toolkit keeps of them.
        static auto *application = new QApplication(argc, argv);
        Q_UNUSED(application);
    }
    ModuleInHost()
    {
        session.setMessageSink({});
        session.setDrawing(velmor::Drawing::createNew());
    }
    void load() { ASSERT_EQ(session.modules().loadModule(VELMOR_MODULE_FILE), std::nullopt); }
    std::vector<std::wstring> moduleCommands()
    {
        std::vector<std::wstring> names;
        for (const velmor::CommandInfo &info : session.commands().list()) {
            if (info.group == L"ZEMXVelmor")
                names.push_back(info.name);
        }
        return names;
    }
    velmor::Session session;
};

} // namespace

TEST_F(ModuleInHost, LoadingRegistersTwoTransparentCommands)
{
    EXPECT_THAT(moduleCommands(), IsEmpty());
    load();
    EXPECT_THAT(moduleCommands(), ElementsAre(L"zemsewage_create", L"zemsewage_edit"));
    for (const wchar_t *name : {L"zemsewage_create", L"zemsewage_edit"}) {
        const velmor::CommandEntry *entry = session.commands().find(name);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->group, L"ZEMXVelmor");
        EXPECT_EQ(entry->localName, name);
        EXPECT_EQ(entry->flags, 1);
    }
    ASSERT_THAT(session.modules().modules(), SizeIs(1));
    EXPECT_TRUE(session.modules().modules()[0]->unlocked);
    EXPECT_TRUE(session.modules().modules()[0]->mdiAware);
}

TEST_F(ModuleInHost, UnloadingLeavesNeitherCommandKnown)
{
    for (int round = 0; round < 3; ++round) {
        load();
        ASSERT_EQ(session.modules().unloadModule(VELMOR_MODULE_FILE), std::nullopt);
        EXPECT_THAT(moduleCommands(), IsEmpty());
        EXPECT_EQ(session.commands().find(L"zemsewage_create"), nullptr);
        EXPECT_EQ(session.commands().find(L"_zemsewage_edit"), nullptr);
        std::wstring reason;
        EXPECT_FALSE(session.commands().run(L"zemsewage_edit", &reason));
    }
}

TEST_F(ModuleInHost, OtherMessagesAnswerZeroAndTouchNothing)
{
    load();
    const velmor::Module &module = *session.modules().modules()[0];
    velmor::Journal::instance().setRecording(true);
    for (const int message : {0, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 1000, -1})
        EXPECT_EQ(module.entry(message, session.modules().modules()[0].get()), 0) << message;
    EXPECT_THAT(velmor::Journal::instance().entries(), IsEmpty());
    velmor::Journal::instance().setRecording(false);
    EXPECT_THAT(moduleCommands(), SizeIs(2));
}

TEST_F(ModuleInHost, ComingItEntersItselfInTheResourceChainAndSetsUpTheDialogLibraryAndGoingItLeavesTheChain)
{
    const std::string module = std::filesystem::path(VELMOR_MODULE_FILE).filename().string();
    const auto recorded = [] {
        std::vector<velmor::JournalEntry> chain;
        for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
            if (entry.operation.starts_with("acui") || entry.operation == "InitAcUiDLL")
                chain.push_back(entry);
        }
        return chain;
    };
    using velmor::JournalEntry;
    velmor::Journal::instance().setRecording(true);
    load();
    EXPECT_THAT(recorded(), ElementsAre(JournalEntry{"acuiAttachModule", {module}}, JournalEntry{"InitAcUiDLL", {}}));
    velmor::Journal::instance().setRecording(true);
    ASSERT_EQ(session.modules().unloadModule(VELMOR_MODULE_FILE), std::nullopt);
    EXPECT_THAT(recorded(), ElementsAre(JournalEntry{"acuiDetachModule", {module}}));
    velmor::Journal::instance().setRecording(false);
}

TEST_F(ModuleInHost, CreateOpensOneModalDialogAndDestroysIt)
{
    load();
    int opened = 0;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        ++opened;
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.parentWidget(), nullptr);
    });
    const auto widgetsBefore = QApplication::topLevelWidgets().size();
    for (int run = 1; run <= 2; ++run) {
        std::wstring reason;
        EXPECT_TRUE(session.commands().run(L"zemsewage_create", &reason))
            << QString::fromStdWString(reason).toStdString();
        EXPECT_EQ(opened, run);
        EXPECT_EQ(session.documentLocks(), 0);
        EXPECT_EQ(QApplication::topLevelWidgets().size(), widgetsBefore);
    }
}

TEST_F(ModuleInHost, ADialogThatAnExceptionLeavesIsGoneAndGivesTheDocumentBack)
{
    load();
    CAdUiBaseDialog *opened = nullptr;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        opened = &dialog;
        QObject::connect(&dialog, &QObject::destroyed, [&] { opened = nullptr; });
        EXPECT_GT(session.documentLocks(), 0);
        throw std::runtime_error("out of it");
    });
    const auto widgetsBefore = QApplication::topLevelWidgets().size();
    velmor::Journal::instance().setRecording(true);
    session.commands().run(L"zemsewage_create");
    velmor::Journal::instance().setRecording(false);
    EXPECT_EQ(opened, nullptr);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), widgetsBefore);
    EXPECT_EQ(session.documentLocks(), 0);
    EXPECT_FALSE(session.commands().isRunning());
    // The dialog's own end cleared the drawing, and the user is told why the command stopped.
    EXPECT_THAT(velmor::Journal::instance().entries(),
                testing::Contains(velmor::JournalEntry{"CCatchmentAreaManager::UnMarkAllCatchments", {"7"}}));
    ASSERT_THAT(session.alerts(), SizeIs(1));
    EXPECT_NE(session.alerts()[0].find(L"out of it"), std::wstring::npos);
    // Nothing holds the next run back.
    int runs = 0;
    session.setDialogDriver([&](CAdUiBaseDialog &) { ++runs; });
    EXPECT_TRUE(session.commands().run(L"zemsewage_create"));
    EXPECT_EQ(runs, 1);
}

TEST_F(ModuleInHost, EditOpensTheReviewModallyAndLeavesNothingBehind)
{
    load();
    int runs = 0;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        ++runs;
        EXPECT_EQ(dialog.windowTitle().toStdWString(), ZEMGis::CModuleConfiguration::Instance()->GetMsg(4578));
        EXPECT_NE(dialog.GetDlgItem(107), nullptr);
        EXPECT_GT(session.documentLocks(), 0);
    });
    const auto widgetsBefore = QApplication::topLevelWidgets().size();
    EXPECT_TRUE(session.commands().run(L"zemsewage_edit"));
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), widgetsBefore);
    EXPECT_EQ(session.documentLocks(), 0);
    EXPECT_THAT(session.alerts(), testing::IsEmpty());
}

TEST_F(ModuleInHost, WhileItIsThereTheHostHasItsDialogForTheSharesOfAnArea)
{
    EXPECT_EQ(velmor::sectionSharesDialog(), nullptr);
    load();
    const ZEMGis::Sewage::AreaDialog dialog = velmor::sectionSharesDialog();
    ASSERT_NE(dialog, nullptr);
    boost::shared_ptr<ZEMGis::Data::CProperties> properties(new ZEMGis::Data::CProperties);
    const auto area = ZEMGis::Sewage::CCatchmentAreaManager::Instance()->CreateCA(
        L"POLYGON ((0 0, 100 0, 100 50, 0 50, 0 0))", L"A", 1, properties);
    ASSERT_TRUE(area);
    QString shown;
    session.setDialogDriver([&](CAdUiBaseDialog &opened) { shown = opened.Control<QLineEdit>(104)->text(); });
    dialog(area);
    EXPECT_EQ(shown, "0.5000") << "hectares of that area";
    session.setDialogDriver(nullptr);
    ASSERT_EQ(session.modules().unloadModule(VELMOR_MODULE_FILE), std::nullopt);
    EXPECT_EQ(velmor::sectionSharesDialog(), nullptr);
}
