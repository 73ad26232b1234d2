// Questions that only a person can answer, asked over the window.
#pragma once

#include "host/editor/Session.h"

#include <string>

namespace velmor {

/// A view of the session at which a person sits.
class Person {
public:
    virtual ~Person() = default;
    /// Asks whether to go on; action is the name of the button for that, the other one cancels.
    virtual bool agreesTo(const std::wstring &question, const std::wstring &action) = 0;
    /// Whether the drawing may be given up: unsaved changes are asked about, and saved when that is wished.
    virtual bool givesUpDrawing() = 0;

    /// Null where nobody sits, or where what is asked has its answers prepared.
    static Person *of(Session &session)
    {
        return session.answers().size() == 0 ? dynamic_cast<Person *>(session.view()) : nullptr;
    }
};

} // namespace velmor
