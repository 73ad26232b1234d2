// The command that lists and recovers drawings that programs left behind.
#pragma once

#include <string>

namespace velmor {

struct RecoverRequest {
    int number = 0;     ///< of the list, from 1; 0: only list
    std::string output; ///< where the drawing goes; empty: nowhere
    bool drop = false;  ///< forget it (after it was written, when an output is named)
};

/// The exit code.
int recoverDrawings(const RecoverRequest &request);

} // namespace velmor
