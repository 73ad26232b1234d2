// How a command that reads from top to bottom asks for what it needs.
//
// Such a command is a function that gets an Asker. Answers that were prepared (the words behind the command's name, an
// argument list) come first, then whoever answers the session's prompts. A question goes on until it gets an answer of
// use; Escape, and answers that ran out, leave the command by the exception Cancelled, so a command changes the drawing
// behind its last question, or catches it to keep what stands.
#pragma once

#include "host/editor/Command.h"
#include "host/editor/Session.h"

#include <span>

namespace velmor {

/// The command was ended by the one who answers.
struct Cancelled {};

/// A question: the name of its text, and what may be answered besides the value itself.
struct Ask {
    const char *message;                  ///< name of the text, without a colon
    std::vector<std::wstring> words = {}; ///< options, capitals abbreviate; their local forms are ui.word.WORD
    std::wstring standard = {};           ///< shown as <standard>; what Enter means
    std::optional<AcGePoint3d> base = {}; ///< where a rubber band starts and "@" counts from
    Completion completion = Completion::None;
    bool enter = false;    ///< Enter is an answer of its own; with a standard it always is
    bool optional = false; ///< the same, and where no person is, it is not asked when nothing is prepared: Enter
    std::vector<std::wstring> silent = {}; ///< words that are taken too, but not offered
    bool corner = false;                   ///< the point is the corner of a window (see Prompt)
    bool free = false;                     ///< the point is taken as it is pointed at
};

struct Reply {
    enum class Kind { Enter, Word, Point, Number, Text };
    Kind kind = Kind::Enter;
    std::wstring word = {}; ///< one of the question's words
    AcGePoint3d point = {};
    double number = 0.0;
    std::wstring text = {}; ///< also of a word: as it was typed
    bool isEnter() const { return kind == Kind::Enter; }
    bool is(std::wstring_view option) const { return kind == Kind::Word && word == option; }
};

class Asker {
public:
    Asker(Session &session, std::span<const Answer> &answers, bool askSession)
        : m_session(session), m_answers(answers), m_askSession(askSession)
    {
    }

    Session &session() { return m_session; }
    /// REQUIRES: a drawing is open (see CommandStack::addWork).
    Drawing &drawing() { return *m_session.drawing(); }

    /// "@" in the next question counts from it, unless it is a corner or a free one.
    Reply point(const Ask &ask);
    /// A point that has no other answer than a point.
    AcGePoint3d onlyPoint(const char *message, const std::optional<AcGePoint3d> &base = {});
    /// The same for the corner of a window; base is the corner before it.
    AcGePoint3d corner(const char *message, const std::optional<AcGePoint3d> &base = {});
    Reply number(const Ask &ask);
    /// A number above or equal lowest; given also as a point, whose distance from the base it is.
    Reply distance(const Ask &ask, double lowest = 0.0);
    /// Radians; typed in degrees, or given as a point seen from the base.
    Reply angle(const Ask &ask);
    Reply word(const Ask &ask);
    /// A text with blanks.
    Reply text(const Ask &ask);
    /// A text without blanks: a name, a value.
    Reply name(const Ask &ask);
    /// The text of an attribute: the question is told as the block has it, Enter means the standard.
    Reply attribute(const std::wstring &question, const std::wstring &standard);
    /// One entity; refused when there is none.
    Answer::Pick entity(const Ask &ask);
    /// Entities till Enter; without asking those that stand selected, which are selected no longer then. Options: All,
    /// Window, Crossing, Last, Previous, Remove, Add.
    AcDbObjectIdArray objects(const char *message = "ui.prompt.objects");
    /// One answer of a selection as it was given: entities, a set, a place, ALL, or entities that are taken out again;
    /// nothing for Enter. One that selectedEntities does not know, and takes nothing out, is refused.
    std::optional<Answer> selection(const char *message = "ui.prompt.objects");

    /// Says one line and counts the answer as of no use.
    void refuse(const std::wstring &why);
    bool refused() const { return m_refused; }
    /// Answers are there that were prepared.
    bool hasAnswers() const { return !m_answers.empty(); }
    /// Takes a word off them when it comes next. It is never asked for: how a menu tells what was settled before.
    bool takeWord(const std::wstring &word);
    /// The last answer was one of them.
    bool wasPrepared() const { return m_wasPrepared; }

private:
    Answer ask(const Prompt &prompt);
    AcDbObjectIdArray windowObjects(bool crossing);
    /// Asks till the answer is Enter, a word, or one of which the reader makes a reply.
    template <class Reader>
    Reply askFor(PromptKind kind, const Ask &ask, const char *needed, Reader read);

    Session &m_session;
    std::span<const Answer> &m_answers;
    bool m_askSession;
    bool m_refused = false, m_wasPrepared = false;
    bool m_asksAgain = false; ///< the last answer was refused, so no standard stands in for the next
};

/// The prompt of a question as a person reads it: its text, the words that are offered and the standard, in the
/// language of now.
Prompt promptOf(PromptKind kind, const Ask &ask);
/// A number as a person types it: "2.5", "1e3"; also "1:500" and "1/4" as quotients. Nothing for another text.
std::optional<double> parseReal(std::wstring_view text);
/// A number as a person reads it, no more digits than it has, at most so many behind the point.
std::wstring realText(double value, int decimals = 4);

} // namespace velmor
