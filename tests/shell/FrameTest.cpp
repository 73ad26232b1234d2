// The application frame: which handler a message reaches, what init and unload ask of the host, and in what order.
#include "shell/ModuleFrame.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

// --- This program's host: it writes down what it is asked
// ----------------------------------------------------------------

namespace {

std::vector<std::string> g_calls;
std::map<int, std::wstring> g_strings;
bool g_servicesPresent = true;
int g_packet = 0, g_module = 0;

std::string Narrow(const wchar_t *text)
{
    std::string narrow;
    for (; text && *text; ++text)
        narrow += static_cast<char>(*text);
    return narrow;
}

std::string NameOf(const void *pointer)
{
    if (!pointer)
        return "null";
    return pointer == &g_packet ? "packet" : pointer == &g_module ? "module" : "other";
}

class Linker final : public AcRxDynamicLinker {
public:
    bool unlockApplication(void *packet) override
    {
        g_calls.push_back("unlock " + NameOf(packet));
        return true;
    }
    bool registerAppMDIAware(void *packet) override
    {
        g_calls.push_back("mdi " + NameOf(packet));
        return true;
    }
};

class Stack final : public AcEdCommandStack {
public:
    Acad::ErrorStatus addCommand(const wchar_t *group, const wchar_t *globalName, const wchar_t *localName,
                                 std::int32_t flags, AcRxFunctionPtr, void *uiContext, int functionCode,
                                 void *resourceInstance, void **commandId) override
    {
        g_calls.push_back("add " + Narrow(group) + " " + Narrow(globalName) + " " + Narrow(localName) + " " +
                          std::to_string(flags) + " ui " + NameOf(uiContext) + " code " + std::to_string(functionCode) +
                          " from " + NameOf(resourceInstance) + " id " + NameOf(commandId));
        return Acad::eInvalidInput; // nobody looks at it
    }
    Acad::ErrorStatus removeCmd(const wchar_t *group, const wchar_t *globalName) override
    {
        g_calls.push_back("remove " + Narrow(group) + " " + Narrow(globalName));
        return Acad::eOk;
    }
};

class Registry final : public AcRxDictionary {
public:
    AcRxObject *at(const wchar_t *name) const override
    {
        static Linker linker;
        static Stack stack;
        if (!g_servicesPresent)
            return nullptr;
        if (std::wstring(name) == L"DynamicLinker")
            return &linker;
        return std::wstring(name) == L"ACAD_REGISTERED_COMMANDS" ? static_cast<AcRxObject *>(&stack) : nullptr;
    }
};

} // namespace

AcRxObject::~AcRxObject() = default;
AcRxDictionary *acrxSysRegistry()
{
    static Registry registry;
    return &registry;
}
void acrxBuildClassHierarchy()
{
    g_calls.emplace_back("hierarchy");
}
bool acuiLoadString(void *moduleHandle, int id, wchar_t *buffer, int length)
{
    g_calls.push_back("string " + std::to_string(id) + " of " + NameOf(moduleHandle) + " into " +
                      std::to_string(length));
    const auto found = g_strings.find(id);
    if (found == g_strings.end())
        return false;
    buffer[found->second.copy(buffer, static_cast<std::size_t>(length) - 1)] = L'\0';
    return true;
}
int acedDefun(const wchar_t *name, short code)
{
    g_calls.push_back("defun " + Narrow(name) + " " + std::to_string(code));
    return RTNORM;
}
int acedUndef(const wchar_t *name, short code)
{
    g_calls.push_back("undef " + Narrow(name) + " " + std::to_string(code));
    return RTNORM;
}

namespace {

void CommandBody() {}

constexpr CommandEntry kCreate = {L"ZEMXVelmor", L"create", L"create", 1, CommandBody, nullptr, -1};
constexpr CommandEntry kSession = {L"ZEMXVelmor", L"session", L"session", 1 | kSessionCommandFlag,
                                   CommandBody,   nullptr,    -1};
constexpr CommandEntry kNameless = {L"ZEMXVelmor", L"nameless", nullptr, 1, CommandBody, nullptr, 77};
constexpr FunctionEntry kFunction = {L"c:velmor", 4};

class TestApp : public AcRxArxApp {
public:
    std::vector<const CommandEntry *> commands;
    std::vector<const FunctionEntry *> functions;
    std::vector<ClassEntry *> classes;
    void Lock() { m_bUnlocked = m_bMDIAware = false; }

protected:
    void RegisterServerComponents() override { g_calls.emplace_back("server components"); }
    CommandTable Commands() const override { return commands; }
    FunctionTable Functions() const override { return functions; }
    ClassTable Classes() const override { return classes; }
};

/// Answers each message with its handler's place.
class SlotApp : public AcRxDbxApp {
public:
    int On_kInitAppMsg(void *) override { return 101; }
    int On_kUnloadAppMsg(void *) override { return 102; }
    int On_kLoadDwgMsg(void *) override { return 103; }
    int On_kUnloadDwgMsg(void *) override { return 104; }
    int On_kInvkSubrMsg(void *) override { return 105; }
    int On_kCfgMsg(void *) override { return 106; }
    int On_kEndMsg(void *) override { return 107; }
    int On_kQuitMsg(void *) override { return 108; }
    int On_kSaveMsg(void *) override { return 109; }
    int On_kDependencyMsg(void *) override { return 110; }
    int On_kNoDependencyMsg(void *) override { return 111; }
    int On_kOleUnloadAppMsg(void *) override { return 112; }
    int On_kPreQuitMsg(void *) override { return 113; }
    int On_kInitDialogMsg(void *) override { return 114; }
    int On_kEndDialogMsg(void *) override { return 115; }
    int On_kNullMsg(void *) override { return 100; }
};

class Frame : public testing::Test {
protected:
    void SetUp() override
    {
        g_calls.clear();
        g_strings.clear();
        g_servicesPresent = true;
        ModuleHandle() = &g_module;
    }
    TestApp app;
};

} // namespace

TEST_F(Frame, MessagesOneToFifteenReachTheHandlersInOrderAndZeroTheLast)
{
    SlotApp slots;
    for (int message = 0; message <= 15; ++message)
        EXPECT_EQ(slots.acrxEntryPoint(message, nullptr), 100 + message);
}

TEST_F(Frame, AnyOtherMessageGivesZeroAndTouchesNothing)
{
    SlotApp slots;
    for (const int message : {-1, 16, 17, 1000, -2147483647 - 1, 2147483647})
        EXPECT_EQ(slots.acrxEntryPoint(message, nullptr), 0);
    app.commands = {&kCreate};
    EXPECT_EQ(app.acrxEntryPoint(16, &g_packet), 0);
    EXPECT_THAT(g_calls, IsEmpty());
}

TEST_F(Frame, HandlersThatNobodyOverridesDoNothing)
{
    app.commands = {&kCreate};
    for (int message = 0; message <= 15; ++message) {
        if (message != 1 && message != 2) {
            EXPECT_EQ(app.acrxEntryPoint(message, &g_packet), 0);
        }
    }
    EXPECT_THAT(g_calls, IsEmpty());
}

TEST_F(Frame, InitUnlocksAndAddsTheCommandsInOrder)
{
    app.commands = {&kCreate, &kSession};
    EXPECT_EQ(app.acrxEntryPoint(1, &g_packet), 0);
    EXPECT_THAT(g_calls, ElementsAre("unlock packet", "mdi packet", "server components",
                                     "add ZEMXVelmor create create 1 ui null code -1 from module id null",
                                     "add ZEMXVelmor session session 2097153 ui null code -1 from null id null"));
}

TEST_F(Frame, ARowWithoutALocalNameTakesItFromTheStringTable)
{
    g_strings[77] = std::wstring(200, L'n');
    app.commands = {&kNameless};
    app.acrxEntryPoint(1, &g_packet);
    ASSERT_EQ(g_calls.size(), 5u);
    EXPECT_EQ(g_calls[3], "string 77 of module into 132");
    EXPECT_EQ(g_calls[4],
              "add ZEMXVelmor nameless " + std::string(131, 'n') + " 1 ui null code -1 from module id null");
}

TEST_F(Frame, EmptyPlacesInATableAreSkipped)
{
    app.commands = {nullptr, &kCreate, nullptr};
    app.functions = {nullptr, &kFunction};
    app.classes = {nullptr};
    app.acrxEntryPoint(1, &g_packet);
    EXPECT_THAT(g_calls,
                ElementsAre("unlock packet", "mdi packet", "server components",
                            "add ZEMXVelmor create create 1 ui null code -1 from module id null", "defun c:velmor 4"));
    g_calls.clear();
    app.acrxEntryPoint(2, &g_packet);
    EXPECT_THAT(g_calls, ElementsAre("remove ZEMXVelmor create", "undef c:velmor 4"));
}

TEST_F(Frame, ALockedApplicationIsNotUnlocked)
{
    app.Lock();
    app.acrxEntryPoint(1, &g_packet);
    EXPECT_THAT(g_calls, ElementsAre("server components"));
}

TEST_F(Frame, AnEmptyClassTableBuildsNoHierarchy)
{
    app.acrxEntryPoint(1, &g_packet);
    EXPECT_THAT(g_calls, testing::Not(testing::Contains("hierarchy")));
}

TEST_F(Frame, ClassesAreInitialisedOnceAndCleanedUpBeforeTheCommandsGo)
{
    ClassEntry first = {[] { g_calls.emplace_back("init first"); }, [] { g_calls.emplace_back("clean first"); }, false};
    ClassEntry second = {[] { g_calls.emplace_back("init second"); }, [] { g_calls.emplace_back("clean second"); },
                         false};
    app.classes = {&first, nullptr, &second};
    app.commands = {&kCreate};
    app.acrxEntryPoint(1, &g_packet);
    EXPECT_THAT(g_calls,
                ElementsAre("unlock packet", "mdi packet", "server components", "init first", "init second",
                            "hierarchy", "add ZEMXVelmor create create 1 ui null code -1 from module id null"));
    EXPECT_TRUE(first.m_bInitialised && second.m_bInitialised);
    g_calls.clear();
    EXPECT_EQ(app.acrxEntryPoint(2, &g_packet), 0);
    EXPECT_THAT(g_calls, ElementsAre("clean first", "clean second", "remove ZEMXVelmor create"));
    EXPECT_FALSE(first.m_bInitialised || second.m_bInitialised);
}

TEST_F(Frame, AHostWithoutTheServicesIsBorne)
{
    g_servicesPresent = false;
    app.commands = {&kCreate};
    EXPECT_EQ(app.acrxEntryPoint(1, &g_packet), 0);
    EXPECT_EQ(app.acrxEntryPoint(2, &g_packet), 0);
    EXPECT_THAT(g_calls, ElementsAre("server components"));
}
