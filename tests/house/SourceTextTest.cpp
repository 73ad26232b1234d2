// No file of the project names a folder of somebody's machine or a host that only somebody's network knows.
#include "tests/house/IncludeRules.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

bool isText(const std::string &content)
{
    return content.find('\0') == std::string::npos;
}

/// Absolute folders of a person's or a build's machine, as they would be typed.
std::vector<std::string> machinePaths(const std::string &content)
{
    // In pieces, so that this file does not hold what it looks for.
    static const std::regex pattern("(^|[^A-Za-z0-9_.}/-])(/(wo"
                                    "rk|ro"
                                    "ot|ho"
                                    "me|tm"
                                    "p|Us"
                                    "ers)/)");
    std::vector<std::string> found;
    for (std::sregex_iterator match(content.begin(), content.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[2]);
    return found;
}

/// Hosts of URLs that are not public places of standards and of the libraries that we use.
std::vector<std::string> strangeHosts(const std::string &content)
{
    static const std::set<std::string> known = {"www.w3.org",           "www.gnu.org", "doc.qt.io",
                                                "libgeos.org",          "cmake.org",   "www.epa.gov",
                                                "ezdxf.readthedocs.io", "gdal.org"};
    static const std::regex pattern("(?:https?|ftp|ssh|git)://(?:[^/@\\s\"'<>)]*@)?([A-Za-z0-9.-]+)");
    std::vector<std::string> found;
    for (std::sregex_iterator match(content.begin(), content.end(), pattern), end; match != end; ++match) {
        if (!known.contains((*match)[1]))
            found.push_back((*match)[1]);
    }
    return found;
}

} // namespace

TEST(SourceText, NoFileNamesAFolderOfAMachine)
{
    const auto top = house::sourceFolder();
    for (const std::string &path : house::projectFiles(top)) {
        const std::string content = house::readFile(top / path);
        if (isText(content)) {
            EXPECT_THAT(machinePaths(content), IsEmpty()) << path;
        }
    }
}

TEST(SourceText, NoFileNamesAHostThatIsNotPublic)
{
    const auto top = house::sourceFolder();
    for (const std::string &path : house::projectFiles(top)) {
        const std::string content = house::readFile(top / path);
        if (isText(content)) {
            EXPECT_THAT(strangeHosts(content), IsEmpty()) << path;
        }
    }
}

TEST(SourceText, WhatIsLookedForIsFound)
{
    const std::string slash = "/";
    EXPECT_THAT(machinePaths("open(\"" + slash + "home/ana/x.dxf\")"), SizeIs(1));
    EXPECT_THAT(machinePaths("cd " + slash + "root/"), SizeIs(1));
    EXPECT_THAT(machinePaths("see docs" + slash + "home/page and ${DIR}" + slash + "work/x"), IsEmpty());
    const std::string scheme = "https:" + slash + slash;
    EXPECT_THAT(strangeHosts(scheme + "packages.example.internal/simple " + scheme + "www.w3.org/2000/svg"),
                testing::ElementsAre("packages.example.internal"));
    EXPECT_THAT(strangeHosts(scheme + "token@mirror.example/x"), testing::ElementsAre("mirror.example"));
}
