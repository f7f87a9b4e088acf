// SPDX-License-Identifier: Apache-2.0
// Connector/C as a library of this process: set up once, by whichever thread comes first, and never taken
// down, because other users of it may live in the same process.
#pragma once

namespace ocimaria {

// Call before any use of Connector/C by the calling thread. Registers the thread's clean-up with its end.
void UseClientLibrary();

}  // namespace ocimaria
