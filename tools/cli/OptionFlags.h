#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ombrel {

struct OptionsRequest;

/// Adds what chooses options: the flags of the table, --set, --config and --no-config. Of a flag and a --set
/// for one option the last on the command line wins.
void addOptionFlags(CLI::App& app, OptionsRequest& request);

} // namespace ombrel
