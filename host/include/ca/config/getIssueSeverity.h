#pragma once

#include "ca/config/ConfigIssue.h"
#include "ombrel/api.h"

#include <memory>

namespace ca::config {

/// The severity of issues with this message. A field that is there twice is a warning, for the last one
/// counts. Every other message tells of something that was asked for and has no effect, so the answer is
/// `Error`, for an empty pointer too.
OMBREL_HOST_API Severity getIssueSeverity(const std::shared_ptr<resource_core::BaseMsgID>& message);

} // namespace ca::config
