// Scripts: what a person would do at the program, as text, a line each.
//
//   # comment                        to the end of the line; words with blanks stand in "quotation marks"
//   COMMAND [ANSWER ...]             a command of the host or of a module with the first answers to its prompts
//   answer [TEXT]                    answers the prompt that waits; without a text it is Enter
//   escape                           the same with Escape
//   select all | name N ... | handle H ... | upstream N
//                                    the sections that the selection tool gives next
//                                    (with other words, and no dialog open, it is the command SELECT)
//   print areas | areas-csv | areas-json | CONTROL
//   echo TEXT ...                    prints the words
//   expect-alert TEXT                the last alert so far
// and while a dialog is open, its controls by number:
//   click N | check N on|off | choose N VALUE | choose-text N TEXT | type N TEXT | rows N R ... | close
//   expect N TEXT | expect-checked N on|off | expect-enabled N on|off | expect-rows N COUNT
//   expect-cell N ROW COLUMN TEXT
//
// A prompt takes the next line when that is answer or escape, and counts as cancelled otherwise. A dialog that is
// open when the script ends is cancelled.
#pragma once

#include "app/Program.h"
#include "host/editor/Session.h"
#include "host/editor/Words.h"

#include <functional>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace velmor {

struct ScriptResult {
    ExitCode code = kDone;
    std::string message; ///< "FILE:LINE: reason" unless done
};

class Script final : public PromptSource {
public:
    /// name stands in messages. Results and status lines go to out, alerts to err.
    Script(Session &session, std::string name, std::string_view text, std::ostream &out, std::ostream &err);
    ~Script() override;
    Script(const Script &) = delete;
    Script &operator=(const Script &) = delete;

    /// Runs all lines; the first wrong one ends it. A line that can't be read as words ends it before anything ran.
    ScriptResult run();

    std::optional<Answer> ask(const Prompt &prompt) override;

private:
    struct Line {
        std::size_t number = 0;
        std::wstring text; ///< without the first word, blanks at the ends taken off
        std::vector<Word> words;
    };
    struct Verb;
    using Words = std::span<const Word>;

    void drive(CAdUiBaseDialog &dialog);
    void execute(const Line &line);
    void executeInDialog(const Line &line);
    void runCommand(const Line &line);
    void tellHeldAlert();
    void select(Words words);
    void print(Words words);
    void fail(std::wstring reason, ExitCode code = kBadInput);
    const Line &current() const { return m_lines[m_current]; }

    Session &m_session;
    std::string m_name;
    std::ostream &m_out, &m_err;
    std::vector<Line> m_lines;
    std::size_t m_next = 0;    ///< the line that is read next
    std::size_t m_current = 0; ///< the line that runs
    ScriptResult m_result;
    std::vector<CAdUiBaseDialog *> m_dialogs; ///< open ones, the outermost first
    bool m_holdsAlerts = false;               ///< a command runs whose last alert may become the script's own message
    std::optional<std::wstring> m_heldAlert;
};

} // namespace velmor
