#pragma once

#include "ombrel/api.h"

#include <string>

namespace fl::i18n {

/// The language that people are spoken to in. English is the only one so far.
class OMBREL_HOST_API QrLocale {
public:
    /// The locale of the process. Lives forever.
    static const QrLocale& global();

    /// A language tag: "en".
    const std::string& getName() const { return name; }

private:
    explicit QrLocale(std::string name);

    std::string name;
};

} // namespace fl::i18n
