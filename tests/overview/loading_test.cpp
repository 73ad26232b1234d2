// Both modules in the embedded host: they come, the overview opens, they go in any order.
#include "contracts/HostDialog.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Session.h"
#include "host/network/NetworkData.h"
#include "host/services/Services.h"
#include "tests/dialogs/DialogProgram.h"

#include <QAccessible>
#include <QAccessibleInterface>

#include <gmock/gmock.h>

#include <fstream>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// True while the library lies in the program's memory.
bool isMapped(const std::string &name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with("/" + name))
            return true;
    }
    return false;
}

class BothModules : public testing::Test {
protected:
    BothModules() : folder(newDialogFolder("velmor_loading_"))
    {
        dialogApplication();
        velmor::Services::instance().start({.language = "en"});
        session.setMessageSink({});
        session.setDrawing(velmor::Drawing::createNew());
        velmor::Drawing &drawing = *session.drawing();
        for (const double x : {0.0, 10.0}) {
            auto line = std::make_unique<AcDbLine>(AcGePoint3d(x + 10, 0), AcGePoint3d(x, 0));
            AcDbEntity &entity = *line;
            drawing.append(std::move(line));
            velmor::SectionData data;
            data.name = std::to_wstring(static_cast<int>(x));
            data.guid = L"{" + data.name + L"}";
            drawing.setData(entity, velmor::kSectionKey, velmor::itemsOf(data));
        }
    }
    ~BothModules() override
    {
        session.modules().unloadAll();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    void load(const char *file) { ASSERT_EQ(session.modules().loadModule(file), std::nullopt); }
    void unload(const char *file) { ASSERT_EQ(session.modules().unloadModule(file), std::nullopt); }
    std::vector<std::wstring> moduleCommands()
    {
        std::vector<std::wstring> names;
        for (const velmor::CommandInfo &info : session.commands().list()) {
            if (!info.isHostCommand)
                names.push_back(info.name);
        }
        return names;
    }
    /// Opens the overview and lets it paint.
    void open()
    {
        int opened = 0;
        std::vector<QAccessible::Id> ids;
        session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            ++opened;
            EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Network Overview"));
            EXPECT_GT(session.documentLocks(), 0);
            EXPECT_FALSE(dialog.grab().isNull());
            // What a screen reader asks is made by the module, and must go with it.
            auto *rows = dialog.findChild<QWidget *>(QStringLiteral("treeNetwork"));
            ASSERT_NE(rows, nullptr);
            QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(rows);
            ASSERT_NE(heard, nullptr);
            ASSERT_NE(heard->tableInterface(), nullptr);
            for (QAccessibleInterface *made : {heard->child(0), heard->tableInterface()->cellAt(0, 0)}) {
                ASSERT_NE(made, nullptr);
                EXPECT_FALSE(made->text(QAccessible::Name).isEmpty());
                ids.push_back(QAccessible::uniqueId(made));
            }
        });
        const auto widgets = QApplication::topLevelWidgets().size();
        EXPECT_TRUE(session.commands().run(L"zemsewage_overview"));
        session.setDialogDriver(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(opened, 1);
        EXPECT_EQ(ids.size(), 2u);
        for (const QAccessible::Id id : ids)
            EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr) << "gone with the dialog";
        EXPECT_EQ(session.documentLocks(), 0);
        EXPECT_EQ(QApplication::topLevelWidgets().size(), widgets);
        EXPECT_THAT(session.alerts(), IsEmpty());
    }
    /// Nothing of a module that went may be asked by what goes on.
    static void goOn()
    {
        QWidget window;
        window.resize(40, 40);
        window.show();
        window.grab();
        EXPECT_NE(QAccessible::queryAccessibleInterface(&window), nullptr);
        QApplication::processEvents();
    }

    static constexpr const char *kFirst = VELMOR_MODULE_FILE, *kSecond = VELMOR_OVERVIEW_FILE;
    std::filesystem::path folder;
    velmor::Session session;
};

} // namespace

TEST_F(BothModules, TheSecondBringsOneTransparentCommand)
{
    load(kFirst);
    load(kSecond);
    EXPECT_THAT(moduleCommands(), ElementsAre(L"zemsewage_create", L"zemsewage_edit", L"zemsewage_overview"));
    const velmor::CommandEntry *entry = session.commands().find(L"zemsewage_overview");
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->isTransparent());
    ASSERT_THAT(session.modules().modules(), SizeIs(2));
    EXPECT_TRUE(session.modules().modules()[1]->unlocked);
    EXPECT_TRUE(session.modules().modules()[1]->mdiAware);
    open();
}

TEST_F(BothModules, TheyGoInTheOrderInWhichTheyCame)
{
    for (int round = 0; round < 3; ++round) {
        load(kFirst);
        load(kSecond);
        open();
        unload(kFirst);
        EXPECT_THAT(moduleCommands(), ElementsAre(L"zemsewage_overview"));
        EXPECT_TRUE(isMapped("zemxvelmor.so")) << "the second one stands on it";
        open();
        unload(kSecond);
        EXPECT_THAT(moduleCommands(), IsEmpty());
        EXPECT_FALSE(isMapped("zemxvelmor.so"));
        EXPECT_FALSE(isMapped("zemxoverview.so"));
        goOn();
    }
}

TEST_F(BothModules, TheyGoTheLastOneFirst)
{
    for (int round = 0; round < 3; ++round) {
        load(kFirst);
        load(kSecond);
        open();
        unload(kSecond);
        EXPECT_FALSE(isMapped("zemxoverview.so"));
        EXPECT_TRUE(isMapped("zemxvelmor.so"));
        EXPECT_THAT(moduleCommands(), ElementsAre(L"zemsewage_create", L"zemsewage_edit"));
        goOn();
        unload(kFirst);
        EXPECT_FALSE(isMapped("zemxvelmor.so"));
        goOn();
    }
}

TEST_F(BothModules, TheFirstComesBackWhileTheSecondKeepsItsLibrary)
{
    load(kFirst);
    load(kSecond);
    unload(kFirst);
    load(kFirst);
    EXPECT_THAT(moduleCommands(),
                testing::UnorderedElementsAre(L"zemsewage_create", L"zemsewage_edit", L"zemsewage_overview"));
    int opened = 0;
    session.setDialogDriver([&](CAdUiBaseDialog &) { ++opened; });
    EXPECT_TRUE(session.commands().run(L"zemsewage_edit"));
    EXPECT_EQ(opened, 1);
    open();
}

TEST_F(BothModules, TheSecondAloneFindsTheFirstsLibraryBesideItAndBringsNoneOfItsCommands)
{
    load(kSecond);
    EXPECT_THAT(moduleCommands(), ElementsAre(L"zemsewage_overview"));
    open();
    unload(kSecond);
    EXPECT_FALSE(isMapped("zemxvelmor.so"));
    goOn();
}

TEST_F(BothModules, TheSecondWithoutTheFirstBesideItIsRefusedWithOneLineAndLeavesNothing)
{
    const auto lonely = folder / "zemxoverview.so";
    std::filesystem::copy_file(kSecond, lonely);
    const auto problem = session.modules().loadModule(lonely);
    ASSERT_TRUE(problem);
    EXPECT_THAT(*problem, HasSubstr("zemxvelmor.so"));
    EXPECT_EQ(problem->find('\n'), std::string::npos);
    EXPECT_THAT(session.modules().modules(), IsEmpty());
    EXPECT_THAT(moduleCommands(), IsEmpty());
}

TEST_F(BothModules, OtherMessagesAnswerZeroAndTouchNothing)
{
    load(kFirst);
    load(kSecond);
    const velmor::Module &module = *session.modules().modules()[1];
    velmor::Journal::instance().setRecording(true);
    for (const int message : {0, 3, 4, 5, 16, 1000, -1})
        EXPECT_EQ(module.entry(message, session.modules().modules()[1].get()), 0) << message;
    EXPECT_THAT(velmor::Journal::instance().entries(), IsEmpty());
    velmor::Journal::instance().setRecording(false);
}
