// SPDX-License-Identifier: Apache-2.0
// The lifecycle operations of the host's own CXact, tapped: in a program that has this file, each goes into
// the journal and returns what a test says. Likewise the draws of CUniqueRandom, which leave no event.
#pragma once

namespace scripted {

// While it is alive the host's own operations return this; otherwise 1.
class HostReturns {
 public:
  explicit HostReturns(int nResult);
  ~HostReturns();
  HostReturns(const HostReturns&) = delete;
  HostReturns& operator=(const HostReturns&) = delete;
};

// While it is alive every draw of a CUniqueRandom is this; otherwise its bound.
class HostDraws {
 public:
  explicit HostDraws(unsigned int nDraw);
  ~HostDraws();
  HostDraws(const HostDraws&) = delete;
  HostDraws& operator=(const HostDraws&) = delete;
};

}  // namespace scripted
