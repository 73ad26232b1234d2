// Saving never writes over what somebody else did to a file, unless it is agreed to.
#include "host/editor/Saving.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/CommandStack.h"
#include "host/editor/DrawingKeeper.h"
#include "host/editor/Person.h"
#include "host/editor/Recovery.h"

#include <gmock/gmock.h>

#include <fstream>
#include <unistd.h>

namespace velmor {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

struct Sitting final : SessionView, Person {
    std::vector<std::wstring> asked;
    int givenUp = 0;
    bool agrees = false;
    bool agreesTo(const std::wstring &question, const std::wstring &) override
    {
        asked.push_back(question);
        return agrees;
    }
    bool givesUpDrawing() override
    {
        ++givenUp;
        return agrees;
    }
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

class Saving : public testing::Test {
protected:
    Saving()
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-saving-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_file = m_folder / "town.dxf";
        m_other = m_folder / "other.dxf";
        EXPECT_TRUE(Drawing::createNew()->save(m_file));
        m_session.setDrawing(Drawing::load(m_file).drawing, m_file);
        change();
    }
    ~Saving() override
    {
        Recovery::instance().disable();
        m_session.setView(nullptr);
        fs::remove_all(m_folder);
    }
    void change()
    {
        m_session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(++m_lines, 0)));
    }
    /// Another program reads the file, and saves it with a line of its own.
    static void changeFromOutside(const fs::path &file)
    {
        const auto drawing = Drawing::load(file).drawing;
        drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(7, 7), AcGePoint3d(8, 8)));
        ASSERT_TRUE(drawing->save(file));
    }
    static std::string bytesOf(const fs::path &file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    bool run(const std::wstring &line) { return m_session.commands().run(line); }

    fs::path m_folder, m_file, m_other;
    Session m_session;
    int m_lines = 0;
};

TEST_F(Saving, OnesOwnSavesAreNobodyElsesChanges)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(run(L"SAVE"));
        change();
    }
    EXPECT_TRUE(run(L"SAVEAS \"" + m_other.wstring() + L"\""));
    change();
    EXPECT_TRUE(run(L"SAVE"));
    EXPECT_THAT(m_session.alerts(), IsEmpty());
}

TEST_F(Saving, AFileThatSomebodyHasChangedIsRefusedWithoutAPerson)
{
    changeFromOutside(m_file);
    const std::string theirs = bytesOf(m_file);
    EXPECT_FALSE(run(L"SAVE"));
    ASSERT_THAT(m_session.alerts(), SizeIs(1));
    EXPECT_THAT(m_session.alerts()[0], HasSubstr(m_file.wstring()));
    EXPECT_THAT(m_session.alerts()[0], HasSubstr(L"OVERWRITE-CHANGED"));
    EXPECT_EQ(bytesOf(m_file), theirs);
    EXPECT_TRUE(m_session.drawing()->isModified());
    // By any name that leads to it.
    EXPECT_FALSE(run(L"SAVEAS \"" + (m_folder / "." / "town.dxf").wstring() + L"\""));
    EXPECT_EQ(bytesOf(m_file), theirs);
    // Under another name both are kept, and with the word it is replaced.
    EXPECT_TRUE(run(L"SAVE \"" + m_other.wstring() + L"\""));
    EXPECT_EQ(bytesOf(m_file), theirs);
    changeFromOutside(m_other);
    EXPECT_TRUE(run(L"SAVE \"" + m_other.wstring() + L"\" OVERWRITE-CHANGED"));
    EXPECT_FALSE(m_session.drawing()->isModified());
    change();
    EXPECT_TRUE(run(L"SAVE"));
}

TEST_F(Saving, AChangeAfterTheOwnSaveIsOneToo)
{
    EXPECT_TRUE(run(L"SAVE"));
    change();
    changeFromOutside(m_file);
    EXPECT_FALSE(run(L"SAVE"));
}

TEST_F(Saving, AFileThatIsGoneIsWrittenAnew)
{
    fs::remove(m_file);
    EXPECT_TRUE(run(L"SAVE"));
    EXPECT_TRUE(fs::exists(m_file));
}

TEST_F(Saving, APersonIsAsked)
{
    Sitting person;
    m_session.setView(&person);
    changeFromOutside(m_file);
    const std::string theirs = bytesOf(m_file);
    EXPECT_FALSE(run(L"SAVE"));
    ASSERT_THAT(person.asked, SizeIs(1));
    EXPECT_THAT(person.asked[0], HasSubstr(m_file.wstring()));
    EXPECT_EQ(bytesOf(m_file), theirs);
    EXPECT_THAT(m_session.alerts(), IsEmpty()) << "who cancels need not be told";
    const SaveOutcome unwanted = saveDrawingAs(m_session, m_file);
    EXPECT_TRUE(unwanted.isUnwanted);
    person.agrees = true;
    EXPECT_TRUE(run(L"SAVE"));
    EXPECT_NE(bytesOf(m_file), theirs);
    EXPECT_EQ(bytesOf(m_folder / "town.dxf.bak"), theirs);
}

TEST_F(Saving, AFileThatAnotherProgramHasOpenIsAskedAboutToo)
{
    Recovery::instance().enable(m_folder / "state", {});
    m_session.setDrawing(Drawing::load(m_file).drawing, m_file);
    change();
    HeldFolder theirs, also;
    std::string reason;
    ASSERT_TRUE(theirs.make(m_folder / "state", m_other, reason));
    ASSERT_TRUE(also.make(m_folder / "state", m_file, reason));
    EXPECT_FALSE(run(L"SAVEAS \"" + m_other.wstring() + L"\""));
    ASSERT_THAT(m_session.alerts(), SizeIs(1));
    EXPECT_THAT(m_session.alerts()[0], HasSubstr(m_other.wstring()));
    EXPECT_FALSE(fs::exists(m_other));
    EXPECT_TRUE(run(L"SAVE")) << "the own file is asked about once the other one has saved it";
    EXPECT_TRUE(run(L"SAVEAS \"" + m_other.wstring() + L"\" OVERWRITE-CHANGED"));
}

TEST_F(Saving, APersonIsAskedBeforeAnotherFileIsReplacedAScriptIsNot)
{
    EXPECT_TRUE(Drawing::createNew()->save(m_other));
    const std::string theirs = bytesOf(m_other);
    const std::wstring line = L"SAVEAS \"" + m_other.wstring() + L"\"";
    Sitting person;
    m_session.setView(&person);
    EXPECT_FALSE(run(line));
    ASSERT_THAT(person.asked, SizeIs(1));
    EXPECT_THAT(person.asked[0], HasSubstr(m_other.wstring()));
    EXPECT_EQ(bytesOf(m_other), theirs);
    EXPECT_EQ(m_session.path(), m_file);
    m_session.setView(nullptr);
    EXPECT_TRUE(run(line));
    EXPECT_NE(bytesOf(m_other), theirs);
}

TEST_F(Saving, APersonIsAskedAboutUnsavedChangesAndPreparedAnswersAreTaken)
{
    Sitting person;
    m_session.setView(&person);
    Drawing *former = m_session.drawing();
    EXPECT_FALSE(run(L"NEW"));
    EXPECT_FALSE(run(L"OPEN \"" + m_file.wstring() + L"\""));
    EXPECT_EQ(person.givenUp, 2);
    EXPECT_EQ(m_session.drawing(), former);
    EXPECT_TRUE(run(L"NEW Yes"));
    EXPECT_EQ(person.givenUp, 2);
    person.agrees = true;
    change();
    EXPECT_TRUE(run(L"OPEN \"" + m_file.wstring() + L"\""));
    EXPECT_EQ(person.givenUp, 3);
    EXPECT_EQ(m_session.path(), m_file);
}

TEST_F(Saving, TheQuestionInTheCommandLineHasItsWordsInTheUsersLanguage)
{
    struct Source final : PromptSource {
        std::vector<Prompt> asked;
        std::optional<Answer> ask(const Prompt &prompt) override
        {
            asked.push_back(prompt);
            return std::nullopt;
        }
    } source;
    m_session.setPromptSource(&source);
    EXPECT_FALSE(run(L"NEW"));
    m_session.setPromptSource(nullptr);
    ASSERT_THAT(source.asked, SizeIs(1));
    ASSERT_EQ(source.asked[0].localKeywords.size(), source.asked[0].keywords.size());
    for (const std::wstring &word : source.asked[0].localKeywords)
        EXPECT_THAT(source.asked[0].text, HasSubstr(word));
}

} // namespace
} // namespace velmor
