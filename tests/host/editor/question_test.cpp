// The question with Yes and No: by prepared answers, by a script, and as a box where a person sits.
#include "contracts/QuestionBox.h"

#include "host/drawing/Journal.h"
#include "host/editor/Person.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <QMessageBox>
#include <QTimer>

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::ElementsAre;

struct Sitting final : SessionView, Person {
    bool agreesTo(const std::wstring &, const std::wstring &) override { return true; }
    bool givesUpDrawing() override { return true; }
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

struct Scripted final : PromptSource {
    std::vector<Prompt> asked;
    Answer answer;
    std::optional<Answer> ask(const Prompt &prompt) override
    {
        asked.push_back(prompt);
        return answer;
    }
};

class Question : public EditorFixture {
protected:
    Question() { test::application(); }
    ~Question() override
    {
        session.setView(nullptr);
        session.setPromptSource(nullptr);
        Journal::instance().setRecording(false);
        Journal::instance().clear();
    }
    bool answered(const wchar_t *answer)
    {
        session.answers().push({std::wstring(answer)});
        const bool yes = acedAskYesNo(L"Erase?");
        EXPECT_EQ(session.answers().size(), 0u);
        return yes;
    }
    /// Asks with a person at the window, who does that with the box.
    bool asked(const std::function<void(QMessageBox &)> &act)
    {
        Sitting view;
        session.setView(&view);
        bool shown = false;
        QTimer::singleShot(0, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            shown = true;
            act(*box);
        });
        const bool yes = acedAskYesNo(L"Two areas \nErase?");
        session.setView(nullptr);
        EXPECT_TRUE(shown);
        return yes;
    }
};

TEST_F(Question, APreparedYesIsYesAndEveryOtherAnswerIsNo)
{
    for (const wchar_t *yes : {L"Yes", L"yes", L"Y", L"_Y"})
        EXPECT_TRUE(answered(yes)) << yes;
    for (const wchar_t *no : {L"No", L"n", L"", L"perhaps", L"1"})
        EXPECT_FALSE(answered(no)) << no;
}

TEST_F(Question, EscapeAndNobodyToAskAreNo)
{
    session.answers().push({Answer::Escape{}});
    EXPECT_FALSE(acedAskYesNo(L"Erase?"));
    EXPECT_FALSE(acedAskYesNo(L"Erase?"));
    EXPECT_FALSE(acedAskYesNo(nullptr));
}

TEST_F(Question, APromptSourceIsAskedWithTheTextAndBothWords)
{
    Scripted source;
    source.answer = {std::wstring(L"Yes")};
    session.setPromptSource(&source);
    EXPECT_TRUE(acedAskYesNo(L"Two areas \nErase?"));
    ASSERT_EQ(source.asked.size(), 1u);
    EXPECT_EQ(source.asked[0].text, L"Two areas \nErase?");
    EXPECT_EQ(source.asked[0].kind, PromptKind::Keyword);
    EXPECT_THAT(source.asked[0].keywords, ElementsAre(L"Yes", L"No"));
}

TEST_F(Question, ItStandsInTheJournalWithItsText)
{
    Journal::instance().setRecording(true);
    acedAskYesNo(L"Erase?");
    Journal::instance().setRecording(false);
    EXPECT_THAT(Journal::instance().entries(), ElementsAre(JournalEntry{"acedAskYesNo", {"Erase?"}}));
}

TEST_F(Question, APersonSeesABoxWithTheTextAndTwoButtonsOfWhichNoIsTheDefault)
{
    EXPECT_TRUE(asked([](QMessageBox &box) {
        EXPECT_EQ(box.text(), "Two areas \nErase?");
        EXPECT_EQ(box.buttons().size(), 2);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
        box.button(QMessageBox::Yes)->click();
    }));
    EXPECT_FALSE(asked([](QMessageBox &box) { box.button(QMessageBox::No)->click(); }));
}

TEST_F(Question, EscapeInTheBoxIsNo)
{
    EXPECT_FALSE(asked([](QMessageBox &box) { box.reject(); }));
}

TEST_F(Question, APreparedAnswerSparesThePersonTheBox)
{
    Sitting view;
    session.setView(&view);
    EXPECT_TRUE(answered(L"Yes"));
}

} // namespace
} // namespace velmor
