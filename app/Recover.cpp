#include "app/Recover.h"

#include "app/Script.h"
#include "host/editor/Recovery.h"
#include "host/services/Messages.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <iostream>

namespace velmor {

namespace {

int complain(ExitCode code, const std::string &message)
{
    std::cerr << "velmor: " << message << std::endl;
    return code;
}

void list(const std::vector<LeftDrawing> &drawings)
{
    if (drawings.empty())
        std::cout << uiLine("ui.cli.recover.none") << '\n';
    std::size_t number = 0;
    for (const LeftDrawing &left : drawings) {
        const auto time =
            std::chrono::system_clock::to_time_t(std::chrono::time_point_cast<std::chrono::system_clock::duration>(
                std::chrono::file_clock::to_sys(left.time)));
        std::cout << uiLine("ui.cli.recover.row",
                            {std::to_string(++number), fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(time)),
                             std::to_string(left.steps),
                             left.path.empty() ? uiLine("ui.recovery.unnamed") : left.path.string()})
                  << '\n';
    }
}

} // namespace

int recoverDrawings(const RecoverRequest &request)
{
    const auto folder = Recovery::standardFolder();
    if (folder.empty())
        return complain(kFailed, uiLine("ui.cli.recover.noFolder"));
    Recovery &recovery = Recovery::instance();
    recovery.enable(folder, {});
    struct End {
        ~End() { Recovery::instance().disable(); }
    } const end;
    const auto drawings = recovery.left();
    if (request.number == 0) {
        list(drawings);
        return kDone;
    }
    if (request.number < 1 || static_cast<std::size_t>(request.number) > drawings.size())
        return complain(kWrongUse, uiLine("ui.cli.recover.number",
                                          {std::to_string(request.number), std::to_string(drawings.size())}));
    const LeftDrawing &left = drawings[static_cast<std::size_t>(request.number) - 1];
    if (request.output.empty() && !request.drop)
        return complain(kWrongUse, uiLine("ui.cli.recover.what"));
    int code = kDone;
    if (!request.output.empty()) {
        {
            RecoveredDrawing recovered = recovery.recover(left);
            if (!recovered.drawing)
                return complain(kFailed, recovered.message);
            // A copy: what was recovered stays to be recovered, unless it is dropped.
            if (const SaveResult saved = recovered.drawing->save(request.output, {.isCopy = true}); !saved)
                return complain(kFailed, saved.message);
            if (!recovered.complete)
                code = complain(kBadInput, uiLine("ui.recovery.partly"));
            std::cout << uiLine("ui.cli.recover.written", {request.output, std::to_string(recovered.steps)}) << '\n';
        }
        recovery.disable(); // lets go of it
        recovery.enable(folder, {});
    }
    if (request.drop)
        recovery.drop(left);
    std::cout.flush();
    return std::cout ? code : complain(kFailed, uiLine("ui.cli.results"));
}

} // namespace velmor
