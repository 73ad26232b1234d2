// What the tests of the manual definition share: answers to its prompts, and what they left in list and drawing.
#pragma once

#include "tests/definition/dialog_fixture.h"

#include "controls/WideText.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Transient.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Prompts.h"

/// Answers the prompts from a function and keeps them.
class CPromptsUnderTest : public velmor::PromptSource {
public:
    std::function<velmor::Answer(const velmor::Prompt &)> m_answer;
    std::vector<velmor::Prompt> m_asked;

    std::optional<velmor::Answer> ask(const velmor::Prompt &prompt) override
    {
        m_asked.push_back(prompt);
        return m_answer(prompt);
    }
};

class ManualDefinitionTest : public DefinitionDialogTest {
protected:
    static constexpr double kSnaps = 37;

    ManualDefinitionTest()
    {
        setSetting("CATCH_NAME_PREFIX", std::wstring(L"S-"));
        m_session.setVariable(L"OSMODE", 37);
    }
    ~ManualDefinitionTest() override { m_session.setPromptSource(nullptr); }

    void answer(double x, double y) { m_session.answers().push({AcGePoint3d(x, y)}); }
    void answerPick(AcDbObjectId id) { m_session.answers().push({velmor::Answer::Pick{id, {}}}); }
    void answerEnter() { m_session.answers().push({velmor::Answer::Enter{}}); }
    void answerEscape() { m_session.answers().push({velmor::Answer::Escape{}}); }

    /// Sections and a coefficient, so that a row can be saved.
    void prepare(CDialogUnderTest &dialog, int method, std::initializer_list<const wchar_t *> sections)
    {
        dialog.choose(257, method);
        if (sections.size() > 0)
            select(dialog, sections);
        dialog.type(215, "0.35");
        dialog.check(274, false);
    }
    void pickPoint(CDialogUnderTest &dialog, double x, double y)
    {
        answer(x, y);
        dialog.click(208);
    }
    void pickEntity(CDialogUnderTest &dialog, AcDbObjectId id)
    {
        answerPick(id);
        dialog.click(209);
    }
    void pickCorners(CDialogUnderTest &dialog, std::initializer_list<std::pair<double, double>> corners)
    {
        for (const auto &[x, y] : corners)
            answer(x, y);
        answerEnter();
        dialog.click(239);
    }
    /// Two courtyards in the third parcel, of 400 square metres each.
    void addSecondCourtyard() { addBox(210, 60, 230, 80); }

    int snaps() const { return std::get<int>(*m_session.variable(L"OSMODE")); }
    using Rows = std::vector<std::string>;
    static Rows rows(const CDialogUnderTest &dialog)
    {
        Rows found;
        for (int i = 0; i < dialog.list()->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *row = dialog.list()->topLevelItem(i);
            found.push_back((row->text(0) + " " + row->text(1) + (row->isSelected() ? " chosen" : "")).toStdString());
        }
        return found;
    }
    static std::string mainText() { return velmor::journalText(message(2003)); }
    static std::string islandText() { return velmor::journalText(message(2004)); }
    const AcDbHatch *hatch(std::size_t index)
    {
        return static_cast<const AcDbHatch *>(velmor::ObjectAccess::object(hatches().at(index)));
    }
    static std::vector<std::pair<double, double>> verticesOf(AcDbObjectId id)
    {
        std::vector<std::pair<double, double>> found;
        AcGePoint3dArray points;
        CZEMCPolylineLWPtr(id, AcDb::kForRead).getVertexPoints(points);
        for (const AcGePoint3d &point : points)
            found.emplace_back(point.x, point.y);
        return found;
    }
    std::vector<AcDbObjectId> lines()
    {
        std::vector<AcDbObjectId> ids;
        for (AcDbEntity *entity : drawing().modelSpace().entities()) {
            if (entity->isA() == AcDbLine::desc() && !entity->isErased() && entity->layer() == L"0")
                ids.push_back(entity->objectId());
        }
        return ids;
    }
    velmor::ChangeLog &log() { return drawing().component<velmor::ChangeLog>(); }
    /// What the fixture drew is no step.
    void forgetSteps()
    {
        log().begin();
        log().keep();
        log().forget();
    }
    /// Runs the dialog as a person has it: a command opens it.
    void runCommand(const Drive &drive)
    {
        m_drive = drive;
        if (!m_session.commands().find(L"DEFINE"))
            m_session.commands().addWork(L"DEFINE", 0, [this](velmor::Asker &) {
                run(m_drive);
                return velmor::Command::Next::Commit;
            });
        EXPECT_EQ(m_session.commands().start(L"DEFINE"), velmor::RunStatus::Done);
    }
    Drive m_drive; ///< of the command
    /// The calls of one click as "operation arguments", those of the given names.
    template <class Click>
    static std::vector<std::string> record(std::initializer_list<std::string_view> operations, Click click)
    {
        velmor::Journal::instance().setRecording(true);
        click();
        velmor::Journal::instance().setRecording(false);
        std::vector<std::string> found;
        for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
            if (std::ranges::find(operations, entry.operation) == operations.end())
                continue;
            found.push_back(entry.operation.substr(entry.operation.rfind(':') + 1));
            for (const std::string &argument : entry.arguments)
                found.back() += " " + argument;
        }
        return found;
    }
};
