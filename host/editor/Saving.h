// Saving the session's drawing without writing over what others did.
#pragma once

#include <filesystem>
#include <string>

namespace velmor {

class Session;

/// What was agreed to before.
struct SaveWords {
    bool overDamaged = false; ///< write over the file although it was damaged when it was read
    bool overOthers = false;  ///< and although another program has changed it since, or has it open
    bool overAny = true;      ///< another file than the drawing's own may be replaced; else a person is asked about it
};

struct SaveOutcome {
    bool isSaved = false;
    bool isUnwanted = false;   ///< the person was asked and cancelled
    std::wstring message = {}; ///< one line for both kinds of failure
};

/// Saves the drawing, which then has that file for its own. A file that was damaged when it was read, that is the
/// drawing's own one but has been changed by somebody since it was read or saved here, or that another program has
/// open, is only written over when the person agrees; without a person it is refused.
/// REQUIRES: the session has a drawing.
SaveOutcome saveDrawingAs(Session &session, const std::filesystem::path &file, const SaveWords &words = {});

/// Whether a file may be written to: a person is asked when one stands there. True without a person.
bool mayReplaceFile(Session &session, const std::filesystem::path &file);

} // namespace velmor
