// Where answers to prompts come from: a queue of prepared answers, a script, or a person at the window.
#pragma once

#include "contracts/DrawingHost.h"

#include <deque>
#include <optional>
#include <string>
#include <variant>

namespace velmor {

enum class PromptKind { Point, Entity, Text, Selection, Keyword };

struct Prompt {
    PromptKind kind = PromptKind::Text;
    std::wstring text;
    std::optional<AcGePoint3d> base; ///< where a rubber band starts
};

/// An answer: a point, a text (a point may be given as "x,y"), an entity, a selection, Enter or Escape.
struct Answer {
    struct Enter {};
    struct Escape {};
    struct Pick { ///< an entity by id, at a point
        AcDbObjectId id;
        AcGePoint3d point;
    };
    std::variant<Enter, Escape, AcGePoint3d, std::wstring, Pick, AcDbObjectIdArray> value;
};

class PromptSource {
public:
    virtual ~PromptSource() = default;
    /// The answer, or nothing when this source has none (the prompt then counts as cancelled).
    virtual std::optional<Answer> ask(const Prompt &prompt) = 0;
};

/// Prepared answers, first in first out.
class AnswerQueue final : public PromptSource {
public:
    void push(Answer answer) { m_answers.push_back(std::move(answer)); }
    std::size_t size() const { return m_answers.size(); }
    void clear() { m_answers.clear(); }
    std::optional<Answer> ask(const Prompt &prompt) override;

private:
    std::deque<Answer> m_answers;
};

} // namespace velmor
