// The program's command line.
#pragma once

namespace velmor {

enum ExitCode {
    kDone = 0,
    kWrongUse = 1, ///< the command line can't be understood
    kBadInput = 2, ///< a file, a script or a name that was given is of no use, or a drawing is damaged
    kFailed = 3,   ///< the work itself failed: a target that can't be written, a full disk
};

/// Runs the program with its arguments; results go to the standard output, errors to the error output in one line.
int runProgram(int argc, char **argv);

} // namespace velmor
