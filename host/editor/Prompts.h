// Where answers to prompts come from: a queue of prepared answers, a script, or a person at the window.
#pragma once

#include "contracts/DrawingHost.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmor {

enum class PromptKind {
    Point,
    Entity,
    Text, ///< blanks are part of the answer
    Selection,
    Keyword,
    Word,     ///< a text without blanks: a blank ends it
    Number,   ///< a number
    Distance, ///< a number, or a point whose distance from base it is
    Angle,    ///< degrees, or a point whose direction from base it is
};

/// What a typed answer is completed from, besides the keywords.
enum class Completion { None, Commands, Layers, Drawings, Networks, Pdfs, Variables, Blocks, Patterns };

struct Prompt {
    PromptKind kind = PromptKind::Text;
    std::wstring text = {};
    std::optional<AcGePoint3d> base = {};    ///< where a rubber band starts
    std::vector<std::wstring> keywords = {}; ///< words that are taken besides the value itself; capitals abbreviate
    std::function<std::wstring(const AcGePoint3d &)> tip = {}; ///< text beside the pointer at a place; may be empty
    bool optional = false; ///< with no answer prepared it is not asked: that counts as Enter
    /// The keywords in the user's language, beside keywords; empty: as they are.
    std::vector<std::wstring> localKeywords = {};
    Completion completion = Completion::None;
    std::size_t silent = 0; ///< so many keywords, the last ones, are taken but not offered in the text
    /// The point is the corner of a window: no object snap, ortho or polar tracking moves it, and from the base a
    /// rectangle runs to the pointer in place of a line.
    bool corner = false;
    bool free = false; ///< the point is taken as it is pointed at, without snaps, ortho and polar
    /// The same prompt in the language of now, while it waits; none: its texts stay as they are.
    std::function<Prompt()> again = {};
};

/// An answer: a point, a text (a point may be given as "x,y"), an entity, a selection, Enter or Escape.
struct Answer {
    struct Enter {};
    struct Escape {};
    struct Pick { ///< an entity by id, at a point
        AcDbObjectId id;
        AcGePoint3d point;
    };
    struct Set { ///< a selection set of the session by its number
        std::int64_t id = 0;
    };
    struct Removed { ///< of a selection: entities that are to be taken out again
        AcDbObjectIdArray ids;
    };
    std::variant<Enter, Escape, AcGePoint3d, std::wstring, Pick, AcDbObjectIdArray, Set, Removed> value;

    bool isEnter() const; ///< also an empty text
    bool isEscape() const { return std::holds_alternative<Escape>(value); }
    const std::wstring *text() const { return std::get_if<std::wstring>(&value); }
    /// The point of a point, of a pick or of a text; a text "@dx,dy" counts from base.
    std::optional<AcGePoint3d> point(const std::optional<AcGePoint3d> &base = {}) const;
};

/// "x,y" or "x,y,z" with decimal points, after "@" relative to base (refused without one), "@d<a" in degrees.
std::optional<AcGePoint3d> parsePoint(std::wstring_view text, const std::optional<AcGePoint3d> &base = {});

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
