// SPDX-License-Identifier: Apache-2.0
// How long a connection may wait for the network. Without a limit a call whose answer was lost on the way
// (a cable pulled, a firewall that forgot the connection, a machine that lost its power) would wait for ever.
// The limits are on the network's silence, not on the server's: a statement may take as long as it needs.
#pragma once

#include <mysql.h>

namespace ocimaria {

// Before connecting: no step of the log-in waits longer than this.
void LimitLogIn(MYSQL* mysql, unsigned seconds);

// After the log-in: the system finds out within about `seconds` that the other end of a TCP link does not
// answer, also while nothing is asked of it, and the call that waits fails as on any lost connection.
void WatchLink(MYSQL* mysql, unsigned seconds);

}  // namespace ocimaria
