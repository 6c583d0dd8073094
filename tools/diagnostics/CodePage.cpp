#include "diagnostics/CodePage.h"

#include <fmt/format.h>

namespace ombrel {

std::string describeCode(const CodeInfo& info) {
    return fmt::format("### {}\n\n{}\n\n- Cause: {}\n- What to do: {}\n", info.name, info.summary, info.cause,
                       info.remedy);
}

} // namespace ombrel
