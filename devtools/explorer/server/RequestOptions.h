#pragma once

#include "diagnostics/Problem.h"
#include "explorer/server/ApiRequest.h"
#include "options/FileOptions.h"

namespace ombrel {

/// The options that a request asks for.
struct RequestOptions {
    FileOptions values;
    Problems problems; ///< places are in the text of the options; the values don't count if one is an error
};

/// Reads them as the command line reads an options file that is for every file. Files that the text extends
/// are not read: that is a problem, as are overrides, which are about the names of files.
RequestOptions readOptions(const ApiRequest& request);

} // namespace ombrel
