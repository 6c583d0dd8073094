#pragma once

#include "fl/i18n/QrLocale.h"
#include "ombrel/api.h"
#include "resource_core/BaseMsgID.h"

#include <string>

namespace fl::i18n {

/// The words of messages.
class OMBREL_HOST_API MessageCatalog {
public:
    /// The text of a message with its arguments in it: one sentence without a full stop, for people. A
    /// message that no catalog has gives its catalog, key and arguments as they are, so that nothing is ever
    /// lost: `catalog:key: argument, argument`. Any thread may call this.
    static std::u16string get_message(const resource_core::BaseMsgID& id, const QrLocale& locale);
};

} // namespace fl::i18n
