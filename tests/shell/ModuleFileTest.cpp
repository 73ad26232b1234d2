// The module's file: what it shows to the loader and to other modules.
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <cxxabi.h>

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

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
    static const auto list = symbols("-D --extern-only --defined-only");
    return list;
}

/// What the headers of the tree list promise to other modules.
struct Promise {
    std::set<std::string> classes, functions;
};

std::string textOf(const std::string &file)
{
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    std::ifstream stream((source ? source : ".") + ("/" + file));
    EXPECT_TRUE(stream.is_open()) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void read(const std::string &header, std::set<std::string> &seen, Promise &promise)
{
    if (!seen.insert(header).second)
        return;
    const std::string text = textOf(header);
    const auto each = [&text](const char *pattern, const auto &found) {
        const std::regex expression(pattern);
        for (auto at = std::sregex_iterator(text.begin(), text.end(), expression); at != std::sregex_iterator(); ++at)
            found((*at)[1].str());
    };
    each(R"(class TREELIST_API (\w+))", [&](const std::string &name) { promise.classes.insert(name); });
    each(R"(\nTREELIST_API [^(;{]*?(\w+)\()", [&](const std::string &name) { promise.functions.insert(name); });
    each(R"rx(#include "(controls/\w+/\w+\.h)")rx", [&](const std::string &file) { read(file, seen, promise); });
}

/// The control's header, those of the parts that it hands out, and all that they include.
const Promise &promised()
{
    static const Promise all = [] {
        Promise promise;
        std::set<std::string> seen;
        for (const char *name : {"TreeListCtrl", "TreeListHeaderCtrl", "TreeListHeaderWindows", "TreeListTipCtrl",
                                 "TLCDragWnd", "TLCDropWnd"})
            read("controls/treelist/" + std::string(name) + ".h", seen, promise);
        return promise;
    }();
    return all;
}

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

TEST(ModuleFile, ShowsItsTwoEntryPointsAndWhatTheTreeListsHeadersPromiseAndNothingElse)
{
    std::set<std::string> functions = {"acrxEntryPoint", "acrxGetApiVersion"};
    functions.insert(promised().functions.begin(), promised().functions.end());
    std::set<std::string> classesShown, functionsShown;
    for (const Symbol &symbol : shown()) {
        const std::string function = symbol.name.substr(0, symbol.name.find('('));
        const std::string name = classOf(symbol.name);
        if (name.empty() || functions.contains(function))
            functionsShown.insert(function);
        else
            classesShown.insert(name);
    }
    EXPECT_EQ(classesShown, promised().classes);
    EXPECT_EQ(functionsShown, functions);
}

TEST(ModuleFile, WhateverClassTheControlHandsOutIsPromised)
{
    const std::string text =
        textOf("controls/treelist/TreeListCtrl.h") + textOf("controls/treelist/TreeListHeaderCtrl.h");
    const std::regex handsOut(R"(\b(C\w+) \*Get\w+\()");
    std::set<std::string> classes;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), handsOut); at != std::sregex_iterator(); ++at)
        classes.insert((*at)[1].str());
    EXPECT_THAT(classes, Contains("CTLCDragWnd"));
    for (const std::string &name : classes)
        EXPECT_THAT(promised().classes, Contains(name));
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
    for (const char *window : {"CTLCDragWnd", "CTLCDropWnd", "CTLHDragWnd", "CTLHDropWnd", "CTreeListLayeredWnd"}) {
        EXPECT_THAT(names, Contains(std::string("vtable for ") + window));
        EXPECT_THAT(names, Contains(std::string("typeinfo for ") + window));
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
