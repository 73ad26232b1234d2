#include "host/editor/Saving.h"

#include "host/drawing/FileMark.h"
#include "host/editor/Person.h"
#include "host/editor/Recovery.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

namespace velmor {

namespace {

/// Why writing the file would cost somebody else's work; empty when it would not.
std::wstring othersAt(Session &session, const std::filesystem::path &file)
{
    if (session.drawing()->component<FileMark>().isOthersNow(file))
        return uiMessage("ui.save.changed", {wide(file.string())});
    // That its own file is open elsewhere too was told when it was opened, and who of the two saves last is asked.
    const bool isOwn = !session.path().empty() && isSameFile(file, session.path());
    if (!isOwn && Recovery::instance().isOpenElsewhere(file))
        return uiMessage("ui.save.openElsewhere", {wide(file.string())});
    return {};
}

} // namespace

bool mayReplaceFile(Session &session, const std::filesystem::path &file)
{
    std::error_code error;
    Person *person = Person::of(session);
    return !person || !std::filesystem::exists(file, error) ||
           person->agreesTo(uiMessage("ui.save.exists", {wide(file.string())}), uiText("ui.save.replace"));
}

SaveOutcome saveDrawingAs(Session &session, const std::filesystem::path &file, const SaveWords &words)
{
    Person *person = Person::of(session);
    const auto agrees = [&](const std::wstring &question) {
        return person->agreesTo(question, uiText("ui.save.replace"));
    };
    if (!words.overOthers)
        if (const std::wstring others = othersAt(session, file); !others.empty()) {
            if (!person)
                return {.message = others + L' ' + uiText("ui.save.words")};
            if (!agrees(others + L' ' + uiText("ui.save.sure")))
                return {.isUnwanted = true, .message = uiText("ui.save.kept")};
        }
    const bool isOwn = !session.path().empty() && isSameFile(file, session.path());
    if (!words.overAny && !words.overOthers && !isOwn && !mayReplaceFile(session, file))
        return {.isUnwanted = true, .message = uiText("ui.save.kept")};
    Drawing &drawing = *session.drawing();
    SaveResult saved = drawing.save(file, {.overwriteDamaged = words.overDamaged});
    if (saved.status == FileStatus::Refused && person && drawing.loadReport().damaged() && !words.overDamaged) {
        if (!agrees(uiText("ui.save.damaged")))
            return {.isUnwanted = true, .message = uiText("ui.save.kept")};
        saved = drawing.save(file, {.overwriteDamaged = true});
    }
    if (!saved)
        return {.message = wide(saved.message)};
    session.setPath(file);
    return {.isSaved = true};
}

} // namespace velmor
