#include "host/drawing/Journal.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <fstream>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::HasSubstr;
using testing::Optional;

std::filesystem::path modulePath(const char *name)
{
    return std::filesystem::path(TEST_MODULE_DIR) / (std::string("test_module_") + name + ".so");
}

class ModuleLoaderTest : public EditorFixture {
protected:
    ModuleLoader &loader = session.modules();
    CommandStack &stack = session.commands();
};

TEST_F(ModuleLoaderTest, LoadingRegistersTheCommandsAndUnloadingRemovesThem)
{
    ASSERT_EQ(loader.loadModule(modulePath("good")), std::nullopt);
    ASSERT_EQ(loader.modules().size(), 1u);
    EXPECT_TRUE(loader.modules()[0]->unlocked);
    EXPECT_TRUE(loader.modules()[0]->mdiAware);
    EXPECT_TRUE(stack.run(L"test_gruss"));
    EXPECT_THAT(session.alerts(), testing::ElementsAre(L"hello from the module"));
    EXPECT_EQ(loader.unloadModule(modulePath("good")), std::nullopt);
    EXPECT_EQ(stack.find(L"_test_hello"), nullptr);
    EXPECT_EQ(stack.find(L"test_throw"), nullptr); // also the one that the module forgot
    EXPECT_TRUE(loader.modules().empty());
}

TEST_F(ModuleLoaderTest, WhatAModuleAsksForAtItsStartAndEndStandsInTheJournalInOrder)
{
    const std::string name = modulePath("good").filename().string();
    Journal::instance().setRecording(true);
    ASSERT_EQ(loader.loadModule(modulePath("good")), std::nullopt);
    EXPECT_EQ(loader.unloadModule(modulePath("good")), std::nullopt);
    Journal::instance().setRecording(false);
    EXPECT_THAT(
        Journal::instance().entries(),
        testing::ElementsAre(JournalEntry{"AcRxDynamicLinker::unlockApplication", {name}},
                             JournalEntry{"AcRxDynamicLinker::registerAppMDIAware", {name}},
                             JournalEntry{"AcEdCommandStack::addCommand", {"TEST", "test_hello", "test_gruss", "1"}},
                             JournalEntry{"AcEdCommandStack::addCommand", {"TEST", "test_throw", "null", "0"}},
                             JournalEntry{"AcEdCommandStack::removeCmd", {"TEST", "test_hello"}}));
}

TEST_F(ModuleLoaderTest, AModuleMayBeLoadedAgain)
{
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(loader.loadModule(modulePath("good")), std::nullopt);
        ASSERT_EQ(loader.loadModule(modulePath("good")), std::nullopt); // and twice counts once
        EXPECT_EQ(loader.modules().size(), 1u);
        EXPECT_EQ(loader.unloadModule(modulePath("good")), std::nullopt);
    }
}

TEST_F(ModuleLoaderTest, AnExceptionOfAModulesCommandStaysInside)
{
    ASSERT_EQ(loader.loadModule(modulePath("good")), std::nullopt);
    std::wstring reason;
    EXPECT_FALSE(stack.run(L"test_throw", &reason));
    EXPECT_THAT(reason, HasSubstr(L"the module's command failed"));
}

TEST_F(ModuleLoaderTest, WhatIsNoModuleIsRefusedAndLeavesNothingBehind)
{
    const std::size_t commands = stack.entries().size();
    EXPECT_THAT(loader.loadModule(modulePath("missing")), Optional(HasSubstr("no module at")));
    EXPECT_THAT(loader.loadModule(TEST_MODULE_DIR), Optional(HasSubstr("no module at")));
    const auto text = std::filesystem::path(testing::TempDir()) / "velmor_no_library.so";
    std::ofstream(text) << "no library";
    EXPECT_THAT(loader.loadModule(text), Optional(HasSubstr("can't load the module")));
    std::filesystem::remove(text);
    EXPECT_THAT(loader.loadModule(modulePath("no_entry")), Optional(HasSubstr("entry point is missing")));
    EXPECT_THAT(loader.loadModule(modulePath("other_version")), Optional(HasSubstr("built for version")));
    EXPECT_THAT(loader.loadModule(modulePath("refusing")), Optional(HasSubstr("refused to start (answer 3)")));
    EXPECT_EQ(stack.entries().size(), commands);
    EXPECT_TRUE(loader.modules().empty());
    EXPECT_TRUE(session.alerts().empty());
}

TEST_F(ModuleLoaderTest, AModuleThatDoesNotUnlockItselfStays)
{
    ASSERT_EQ(loader.loadModule(modulePath("locked")), std::nullopt);
    EXPECT_THAT(loader.unloadModule(modulePath("locked")), Optional(HasSubstr("does not let itself")));
    EXPECT_NE(stack.find(L"test_locked"), nullptr);
}

TEST_F(ModuleLoaderTest, UnloadingWhatIsNotLoadedSaysSo)
{
    EXPECT_THAT(loader.unloadModule(modulePath("good")), Optional(HasSubstr("is not loaded")));
}

TEST(ModuleStrings, AModulesStringTableIsReadByIdAndCutToTheBuffer)
{
    static const AcUiString kStrings[] = {{5, L"five"}, {7, L"seven"}};
    int module = 0;
    wchar_t buffer[5] = L"zzzz";
    EXPECT_FALSE(acuiLoadString(&module, 5, buffer, 5));
    acuiSetStringTable(&module, kStrings, 2);
    EXPECT_TRUE(acuiLoadString(&module, 5, buffer, 5));
    EXPECT_STREQ(buffer, L"five");
    EXPECT_TRUE(acuiLoadString(&module, 7, buffer, 5));
    EXPECT_STREQ(buffer, L"seve");
    EXPECT_FALSE(acuiLoadString(&module, 6, buffer, 5));
    acuiDetachModule(&module);
    EXPECT_FALSE(acuiLoadString(&module, 5, buffer, 5));
}

TEST(ExternalFunctions, NamesStandUnderTheirCodesTillTheyAreUndefined)
{
    EXPECT_EQ(acedDefun(L"c:test", 3), RTNORM);
    EXPECT_EQ(acedUndef(L"c:other", 3), RTERROR);
    EXPECT_EQ(acedUndef(L"c:test", 3), RTNORM);
    EXPECT_EQ(acedUndef(L"c:test", 3), RTERROR);
}

TEST(ExternalFunctions, OneWithoutANameOrWithANegativeCodeIsRefusedAndALaterNameReplaces)
{
    EXPECT_EQ(acedDefun(nullptr, 3), RTERROR);
    EXPECT_EQ(acedDefun(L"", 3), RTERROR);
    EXPECT_EQ(acedDefun(L"c:test", -1), RTERROR);
    EXPECT_EQ(acedUndef(L"c:test", -1), RTERROR);
    EXPECT_EQ(acedDefun(L"c:first", 3), RTNORM);
    EXPECT_EQ(acedDefun(L"c:second", 3), RTNORM);
    EXPECT_EQ(acedUndef(L"c:first", 3), RTERROR);
    EXPECT_EQ(acedUndef(L"c:second", 3), RTNORM);
}

int callsOfExternal = 0;
int codeDuringCall = 0;

TEST(ExternalFunctions, ANameThatBeginsWithCIsTypedAsACommandOnceItHasAFunction)
{
    Session session;
    session.setMessageSink({});
    callsOfExternal = codeDuringCall = 0;
    const auto function = [] {
        ++callsOfExternal;
        codeDuringCall = acedGetFunCode();
        return 0;
    };
    EXPECT_EQ(acedRegFunc(function, 3), RTERROR) << "no name stands under the code";
    ASSERT_EQ(acedDefun(L"C:TEST", 3), RTNORM);
    EXPECT_FALSE(session.commands().run(L"TEST"));
    ASSERT_EQ(acedRegFunc(function, 3), RTNORM);
    EXPECT_TRUE(session.commands().run(L"test"));
    EXPECT_EQ(callsOfExternal, 1);
    EXPECT_EQ(codeDuringCall, 3);
    EXPECT_EQ(acedGetFunCode(), RTERROR) << "the call is over";
    EXPECT_EQ(acedUndef(L"C:TEST", 3), RTNORM);
    EXPECT_FALSE(session.commands().run(L"TEST"));
    EXPECT_EQ(callsOfExternal, 1);
}

} // namespace
} // namespace velmor
