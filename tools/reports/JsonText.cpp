#include "reports/JsonText.h"

#include "text/Printable.h"

#include <nlohmann/json.hpp>

namespace ombrel {

std::string makeJsonText(const nlohmann::ordered_json& value) {
    return escapeHidden(value.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
}

} // namespace ombrel
