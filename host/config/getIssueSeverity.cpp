#include "ca/config/getIssueSeverity.h"

namespace ca::config {

Severity getIssueSeverity(const std::shared_ptr<resource_core::BaseMsgID>&) {
    return Severity::Error;
}

} // namespace ca::config
