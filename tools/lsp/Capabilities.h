#pragma once

#include "lsp/Client.h"
#include "lsp/Json.h"

namespace ombrel::lsp {

/// The InitializeResult: what the server can do for this client.
Json describeServer(const Client& client);

/// The folder that a client has opened, as a URI; empty if it has opened none. Of several, the first.
std::string findFolder(const Json& initializeParams);

} // namespace ombrel::lsp
