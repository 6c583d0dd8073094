#pragma once

#include "entry/FormattingExplorerBridge.h"

/// Has no state: every call makes its own tree and pass, and what else it isn't given.
class FormattingExplorerBridgeImpl : public FormattingExplorerBridge {
public:
    std::u16string format(const std::u16string& sourceText, const std::u16string& jsonText) override;
    ca::formatting::TreeFormatResult formatParsed(const ca::formatting::TreeFormatRequest& request) override;
};
