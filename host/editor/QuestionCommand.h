// A command that asks a fixed list of questions, one after another.
#pragma once

#include "host/editor/Command.h"
#include "host/services/Messages.h"

#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// A question of a command: a text under the name of its prompt, or one of the keywords.
struct Question {
    const char *message = nullptr;           ///< name of the prompt's text; without one the keyword stands for it
    std::vector<std::wstring> keywords = {}; ///< the only answers; none: any text
    bool optional = false;
    Completion completion = Completion::None;

    Prompt prompt() const
    {
        return {.kind = keywords.empty() ? PromptKind::Text : PromptKind::Keyword,
                .text = message ? uiText(message) : keywords.front(),
                .keywords = keywords,
                .optional = optional,
                .completion = completion};
    }
};

inline Question optionalWord(const wchar_t *keyword)
{
    return {.message = nullptr, .keywords = {keyword}, .optional = true, .completion = Completion::None};
}

/// Asks a fixed list of questions and then does its work with the answers, all of them texts.
class QuestionCommand final : public Command {
public:
    using Answers = std::vector<std::wstring>;
    using Work = std::function<Next(Session &, const Answers &)>;
    QuestionCommand(std::vector<Question> questions, Work work)
        : m_questions(std::move(questions)), m_work(std::move(work))
    {
    }

    Next start(Session &session) override { return m_questions.empty() ? m_work(session, {}) : Next::Ask; }
    Prompt prompt() const override { return m_questions[m_answers.size()].prompt(); }
    Next take(Session &session, const Answer &answer) override
    {
        const Question &asked = m_questions[m_answers.size()];
        std::wstring text = answer.text() ? *answer.text() : std::wstring();
        if (!asked.keywords.empty() && !text.empty()) {
            const std::wstring *keyword = matchKeyword(asked.keywords, text);
            if (!keyword)
                return Next::Refused;
            text = *keyword;
        }
        if (text.empty() && !(answer.isEnter() && (asked.optional || !asked.keywords.empty())))
            return Next::Refused;
        m_answers.push_back(std::move(text));
        return m_answers.size() == m_questions.size() ? m_work(session, m_answers) : Next::Ask;
    }

private:
    std::vector<Question> m_questions;
    Work m_work;
    Answers m_answers;
};

} // namespace velmor
