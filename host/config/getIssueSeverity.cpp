#include "ca/config/getIssueSeverity.h"

#include "i18n/ConfigMessages.h"
#include "resource_core/caConfig.h"

namespace ca::config {

using fl::i18n::ConfigMessage;

Severity getIssueSeverity(const std::shared_ptr<resource_core::BaseMsgID>& message) {
    const bool isDuplicate = message != nullptr && message->catalog == CodeAnalyzer::caConfig::catalogName &&
                             message->key == fl::i18n::getConfigKey(ConfigMessage::DuplicateField);
    return isDuplicate ? Severity::Warning : Severity::Error;
}

} // namespace ca::config
