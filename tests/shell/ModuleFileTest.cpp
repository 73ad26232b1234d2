// The module's file: what it shows to the loader and to other modules.
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <cxxabi.h>

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// A symbol as nm lists it; the name as the source has it.
struct Symbol {
    std::string kind, name;
};

std::string outputOf(const std::string &command)
{
    const std::unique_ptr<FILE, int (*)(FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char buffer[4096];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe.get()))
        text += buffer;
    return text;
}

std::string demangled(const std::string &name)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void *)> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status),
                                                       std::free);
    return status == 0 ? text.get() : name;
}

std::vector<Symbol> symbols(const std::string &options)
{
    std::vector<Symbol> found;
    std::istringstream lines(outputOf("nm --format=posix " + options + " '" VELMOR_MODULE_FILE "'"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        Symbol symbol;
        words >> symbol.name >> symbol.kind;
        symbol.name = demangled(symbol.name.substr(0, symbol.name.find('@')));
        found.push_back(symbol);
    }
    return found;
}

std::vector<std::string> namesOf(const std::vector<Symbol> &symbols)
{
    std::vector<std::string> names;
    for (const Symbol &symbol : symbols)
        names.push_back(symbol.name);
    return names;
}

const std::vector<Symbol> &shown()
{
    static const auto list = symbols("-D --defined-only");
    return list;
}

/// The classes of the tree list that other modules know.
const std::set<std::string> kShownClasses = {
    "CTreeListCtrl",    "CTreeListModel",    "CTreeListItem",      "CTreeListItemGuard",  "CTreeListHeaderCtrl",
    "CTreeListTipCtrl", "CTreeListEditCtrl", "CTreeListComboCtrl", "CTreeListStaticCtrl", "CTreeListOwner"};

/// The class that a symbol belongs to, tables and thunks too; empty for what is of no class.
std::string classOf(std::string name)
{
    for (const std::string prefix :
         {"vtable for ", "typeinfo for ", "typeinfo name for ", "non-virtual thunk to ", "guard variable for "}) {
        if (name.starts_with(prefix))
            name = name.substr(prefix.size());
    }
    const auto end = name.find_first_of(":(<");
    return end == std::string::npos || name.compare(end, 2, "::") == 0 ? name.substr(0, end) : std::string();
}

} // namespace

TEST(ModuleFile, ShowsItsTwoEntryPointsAndTheTreeListAndNothingElse)
{
    std::set<std::string> others;
    for (const Symbol &symbol : shown()) {
        if (!kShownClasses.contains(classOf(symbol.name)))
            others.insert(symbol.name);
    }
    EXPECT_THAT(others, UnorderedElementsAre("acrxEntryPoint", "acrxGetApiVersion",
                                             "PartsOf(TreeListCell const&, TreeListRect const&)",
                                             "TextOffsetOf(TreeListCell const&)"));
}

TEST(ModuleFile, ShowsNoClassInsideOfThose)
{
    for (const Symbol &symbol : shown()) {
        const std::string name = symbol.name.substr(0, symbol.name.find('('));
        const std::size_t first = name.find("::");
        EXPECT_EQ(first == std::string::npos ? first : name.find("::", first + 1), std::string::npos) << symbol.name;
    }
}

TEST(ModuleFile, ShowsWhatAnotherModuleNeedsOfEachWidgetOfTheTreeList)
{
    const auto names = namesOf(shown());
    for (const char *widget : {"CTreeListCtrl", "CTreeListHeaderCtrl", "CTreeListTipCtrl", "CTreeListEditCtrl",
                               "CTreeListComboCtrl", "CTreeListStaticCtrl"}) {
        const std::string name = widget;
        for (const std::string &needed : {"vtable for " + name, "typeinfo for " + name, "typeinfo name for " + name,
                                          name + "::staticMetaObject", name + "::~" + name + "()"})
            EXPECT_THAT(names, Contains(needed));
    }
    EXPECT_THAT(names, Contains("typeinfo for CTreeListModel"));
    EXPECT_THAT(names, Contains("vtable for CTreeListModel"));
}

TEST(ModuleFile, NothingThatItShowsKeepsItLoadedForGood)
{
    // A symbol that is unique in the whole program ties its library to the program's end.
    for (const Symbol &symbol : shown())
        EXPECT_NE(symbol.kind, "u") << symbol.name;
}

TEST(ModuleFile, AsksTheHostForItsOperationsWhenItIsLoaded)
{
    const auto open = namesOf(symbols("-D --undefined-only"));
    EXPECT_THAT(open, Contains(HasSubstr("acrxSysRegistry")));
    EXPECT_THAT(open, Contains(HasSubstr("CAdUiBaseDialog")));
}

TEST(ModuleFile, IsFoundByItsNameInTheFolderOfWhoAsksForIt)
{
    EXPECT_THAT(outputOf("readelf -d '" VELMOR_MODULE_FILE "'"), HasSubstr("soname: [zemxvelmor.so]"));
}
