// SPDX-License-Identifier: Apache-2.0
// Integer names that the contract uses. `__int64` is `long` on this platform: CTRKMap<long, long>, "%lld" and
// "%I64d" of a `long` argument depend on it. kept: not `long long`, although it is as wide.
#pragma once

typedef long __int64;  // NOLINT(bugprone-reserved-identifier): the name is the contract's
typedef int BOOL;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif

static_assert(sizeof(__int64) == 8, "the contract's 64-bit integer is long");
static_assert(sizeof(wchar_t) == 4, "LKString holds 4-byte characters");
