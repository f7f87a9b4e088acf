/* SPDX-License-Identifier: Apache-2.0 */
/* An OCI library without a database. Every call that the host makes to connect, prepare and execute succeeds;
 * a statement that is executed is not run anywhere but handed to the recorder. There is nothing to read: a
 * fetch ends at once, a describe fails. One thread at a time. */
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*LkStatementTaker)(void* context, const char* text, size_t size);

/* From now on `take` is called with the text of every statement that is executed; null ends it. */
void LkRecordStatements(LkStatementTaker take, void* context);

#ifdef __cplusplus
}
#endif
