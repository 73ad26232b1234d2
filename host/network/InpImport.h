// The two halves of importing a SWMM network file, for who shows how far it is and takes a cancel.
#pragma once

#include "host/network/InpReader.h"
#include "host/network/Network.h"

#include <functional>

namespace velmor {

/// Told from time to time how much is done, from 0 to 1; false ends the work, with the status Cancelled.
using ImportProgress = std::function<bool(double done)>;

/// Reads the file. Touches no drawing, so it may go on beside one.
InpNetwork readInpFile(const std::filesystem::path &file, const NetworkImportOptions &options,
                       const ImportProgress &progress = {});
/// Puts what was read into a drawing; name is the file's, for messages. What was drawn before it was cancelled stays
/// for the step that the import is part of to take back.
NetworkImportResult drawNetwork(Drawing &drawing, InpNetwork network, const std::string &name,
                                const ImportProgress &progress = {});

} // namespace velmor
