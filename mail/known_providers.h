#pragma once

#include "mail/server_proposal.h"

#include <optional>

/// The servers of a well-known provider, as it publishes them for mail programs; nothing for other
/// addresses. Asks nobody.
std::optional<ServerProposal> known_servers(const QString &address);

/// The usual names in a domain of its own. A guess: nothing says that there are such servers.
ServerProposal guessed_servers(const QString &address);
