#pragma once

#include "pass/FormattingExplorerBridge.h"

/// Has no state: every call makes its own analyzer, configuration, tree and pass.
class FormattingExplorerBridgeImpl : public FormattingExplorerBridge {
public:
    std::u16string format(const std::u16string& sourceText, const std::u16string& jsonText) override;
};
