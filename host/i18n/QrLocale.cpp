#include "fl/i18n/QrLocale.h"

#include <utility>

namespace fl::i18n {

QrLocale::QrLocale(std::string name) : name(std::move(name)) {}

const QrLocale& QrLocale::global() {
    static const QrLocale& locale = *new QrLocale("en");
    return locale;
}

} // namespace fl::i18n
