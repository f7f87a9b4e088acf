// SPDX-License-Identifier: Apache-2.0
// The statement handle of a workload transaction: allocated once, run many times, freed once. The transaction
// owns it; failures are reported through the driver here. One thread.
#pragma once

#include <oci.h>

#include "core/LKString.h"

class COracle8Driver;

// Allocates the handle unless there is one. 1, or 0 after reporting szMessage.
int EnsureStatement(COracle8Driver* pDriver, OCIStmt** ppStmt, const wchar_t* szMessage);

// Frees the handle, if there is one, and makes it null.
void FreeStatement(OCIStmt** ppStmt);

// Prepares the text, runs it once without a commit and reads how many rows it changed. 1, or 0 after a
// report: of szPrepareMessage when the prepare failed, without a message of our own when the execute did.
int RunMeasured(COracle8Driver* pDriver, OCIStmt* pStmt, const LKString& szSQL,
                const wchar_t* szPrepareMessage, ub4& nRows);
