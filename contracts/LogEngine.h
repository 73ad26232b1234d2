// The logging library: a master switch and the log file's path.
#pragma once

#include "contracts/HostTypes.h"

#include <string>

class ZEMX_CONTRACT CLogEngine {
public:
    /// Not 0 when diagnostic tracing is on.
    static int GetLoggingOnOff();
    /// Full path of the log file in the file system's encoding; may name a file that can't be opened.
    static std::string GetLogFileFullPath();
};
