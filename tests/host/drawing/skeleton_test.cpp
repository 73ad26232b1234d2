#include "host/drawing/dxf/Skeleton.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using testing::Contains;
using testing::Eq;
using testing::HasSubstr;

namespace {

struct Group {
    int code;
    std::string value;
    bool operator==(const Group &) const = default;
};

std::vector<Group> groupsOf(const std::string &text)
{
    std::vector<Group> groups;
    std::istringstream lines(text);
    std::string code, value;
    while (std::getline(lines, code)) {
        EXPECT_TRUE(std::getline(lines, value)) << "a code without a value";
        groups.push_back({std::stoi(code), value});
    }
    return groups;
}

bool isHandleOf(int code)
{
    return code == 5 || code == 105;
}

bool isPointer(int code)
{
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399);
}

struct Output {
    int status = -1;
    std::string text;
};

Output run(const std::string &command)
{
    Output output;
    FILE *pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return output;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        output.text.append(buffer, count);
    output.status = ::pclose(pipe);
    return output;
}

class NewDrawingFile : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-new-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
        m_file = m_folder / "new.dxf";
        std::ofstream(m_file, std::ios::binary) << velmor::newDrawingText();
    }
    void TearDown() override { fs::remove_all(m_folder); }
    fs::path m_folder, m_file;
};

} // namespace

TEST(NewDrawing, EverySectionIsThereInOrder)
{
    std::vector<std::string> sections;
    const auto groups = groupsOf(velmor::newDrawingText());
    for (std::size_t i = 0; i + 1 < groups.size(); ++i)
        if (groups[i] == Group{0, "SECTION"})
            sections.push_back(groups[i + 1].value);
    EXPECT_THAT(sections, testing::ElementsAre("HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"));
    EXPECT_EQ(groups.back(), (Group{0, "EOF"}));
}

TEST(NewDrawing, VersionUnitsAndTablesAreAsADrawingNeedsThem)
{
    const auto groups = groupsOf(velmor::newDrawingText());
    const auto variable = [&](const std::string &name) {
        const auto at = std::find(groups.begin(), groups.end(), Group{9, name});
        return at == groups.end() ? std::string() : (at + 1)->value;
    };
    EXPECT_EQ(variable("$ACADVER"), "AC1027");
    EXPECT_EQ(variable("$INSUNITS"), "6");
    EXPECT_EQ(variable("$MEASUREMENT"), "1");
    std::set<std::string> tables;
    for (std::size_t i = 0; i + 1 < groups.size(); ++i)
        if (groups[i] == Group{0, "TABLE"})
            tables.insert(groups[i + 1].value);
    EXPECT_EQ(tables, (std::set<std::string>{"APPID", "BLOCK_RECORD", "DIMSTYLE", "LAYER", "LTYPE", "STYLE", "UCS",
                                             "VIEW", "VPORT"}));
}

TEST(NewDrawing, HandlesAreUniqueAndEveryPointerLeadsToOne)
{
    std::set<std::string> handles;
    const auto groups = groupsOf(velmor::newDrawingText());
    std::uint64_t seed = 0, largest = 0;
    for (std::size_t i = 1; i < groups.size(); ++i) {
        if (groups[i - 1] == Group{9, "$HANDSEED"}) {
            seed = std::stoull(groups[i].value, nullptr, 16);
        } else if (isHandleOf(groups[i].code)) {
            EXPECT_TRUE(handles.insert(groups[i].value).second) << groups[i].value;
            largest = std::max<std::uint64_t>(largest, std::stoull(groups[i].value, nullptr, 16));
        }
    }
    EXPECT_GT(seed, largest);
    for (const Group &group : groups) {
        if (isPointer(group.code) && group.value != "0") {
            EXPECT_THAT(handles, Contains(Eq(group.value))) << "code " << group.code;
        }
    }
}

TEST_F(NewDrawingFile, AnotherProgramsAuditFindsNothing)
{
    const std::string python = "/usr/bin/python3";
    if (run(python + " -c 'import ezdxf'").status != 0)
        GTEST_SKIP() << "python3-ezdxf is not installed";
    const fs::path script = m_folder / "audit.py";
    std::ofstream(script) << R"(import sys, logging
import ezdxf
from ezdxf import recover
messages = []
class Keep(logging.Handler):
    def emit(self, record):
        if record.levelno >= logging.WARNING: messages.append(record.getMessage())
logging.getLogger('ezdxf').addHandler(Keep())
doc = ezdxf.readfile(sys.argv[1])
audit = doc.audit()
strict, found = recover.readfile(sys.argv[1])
for error in list(audit.errors) + list(audit.fixes) + list(found.errors) + list(found.fixes):
    print('AUDIT', error.code, error.message)
for message in messages:
    print('LOG', message)
print('layouts', ','.join(sorted(doc.layout_names())))
print('units', doc.units)
doc.modelspace().add_line((0, 0), (1, 1))
doc.saveas(sys.argv[1] + '.again.dxf')
)";
    const Output output = run(python + " " + script.string() + " " + m_file.string());
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_EQ(output.text, "layouts Layout1,Model\nunits 6\n");
}

TEST_F(NewDrawingFile, ASecondProgramReadsIt)
{
    if (run("ogrinfo --version").status != 0)
        GTEST_SKIP() << "GDAL's ogrinfo is not installed";
    const Output output = run("ogrinfo -al " + m_file.string());
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_THAT(output.text, HasSubstr("Feature Count: 0"));
    EXPECT_THAT(output.text, testing::Not(HasSubstr("ERROR")));
    EXPECT_THAT(output.text, testing::Not(HasSubstr("Warning")));
}
