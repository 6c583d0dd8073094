#pragma once

#include "ca/config/Config.h"
#include "ombrel/api.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ca {

/// What an analysis knows of code generation: nothing, in this host.
class OMBREL_HOST_API CodeGenerationSupport {
public:
    CodeGenerationSupport();
};

/// The options of one analysis. This host's parser needs none of them and takes any values, empty pointers
/// too.
struct AnalysisOptions {
    std::shared_ptr<CodeGenerationSupport> codeGenerationSupport;
    std::shared_ptr<void> userData;
    std::uint64_t flags = 0;
    std::shared_ptr<config::Config> config;
    std::vector<std::u16string> searchPath;
};

} // namespace ca
