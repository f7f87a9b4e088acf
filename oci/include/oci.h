/* SPDX-License-Identifier: Apache-2.0 */
/* Numbers and prototypes stand in columns, to be compared with the guides. */
/* clang-format off */
/* The Oracle Call Interface as far as this project calls it: types, numbers and prototypes of the LP64 Linux ABI,
 * restated from Oracle's public OCI guides (bind and define, statement, connection and miscellaneous functions).
 * Handles are opaque; whoever allocates one frees it. A handle may be used by one thread at a time, except that
 * OCIBreak may be called while another thread is inside a call on the same service context. */
#ifndef LK_OCI_H
#define LK_OCI_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char ub1;
typedef signed char sb1;
typedef unsigned short ub2;
typedef short sb2;
typedef unsigned int ub4;
typedef int sb4;
typedef unsigned long ub8;
typedef long sb8;
typedef int sword;
typedef unsigned char OraText;

typedef struct OCIEnv OCIEnv;
typedef struct OCIError OCIError;
typedef struct OCIServer OCIServer;
typedef struct OCISvcCtx OCISvcCtx;
typedef struct OCISession OCISession;
typedef struct OCIStmt OCIStmt;
typedef struct OCIBind OCIBind;
typedef struct OCIDefine OCIDefine;
typedef struct OCIParam OCIParam;
typedef struct OCISnapshot OCISnapshot;

/* Statuses. */
#define OCI_SUCCESS 0
#define OCI_SUCCESS_WITH_INFO 1
#define OCI_NEED_DATA 99
#define OCI_NO_DATA 100
#define OCI_ERROR (-1)
#define OCI_INVALID_HANDLE (-2)
#define OCI_STILL_EXECUTING (-3123)

/* Handle and descriptor types. */
#define OCI_HTYPE_ENV 1
#define OCI_HTYPE_ERROR 2
#define OCI_HTYPE_SVCCTX 3
#define OCI_HTYPE_STMT 4
#define OCI_HTYPE_BIND 5
#define OCI_HTYPE_DEFINE 6
#define OCI_HTYPE_DESCRIBE 7
#define OCI_HTYPE_SERVER 8
#define OCI_HTYPE_SESSION 9
#define OCI_DTYPE_PARAM 53

/* Attributes; the width that a get writes stands behind each. */
#define OCI_ATTR_DATA_SIZE 1       /* param: ub2 */
#define OCI_ATTR_DATA_TYPE 2       /* param: ub2 */
#define OCI_ATTR_NAME 4            /* param: text and ub4 length */
#define OCI_ATTR_PRECISION 5       /* param of a statement: sb2 */
#define OCI_ATTR_SCALE 6           /* param: sb1 */
#define OCI_ATTR_IS_NULL 7         /* param: ub1 */
#define OCI_ATTR_SERVER 6          /* svcctx: handle */
#define OCI_ATTR_SESSION 7         /* svcctx: handle */
#define OCI_ATTR_ROW_COUNT 9       /* stmt: ub4 */
#define OCI_ATTR_FSPRECISION 16    /* param: ub1 */
#define OCI_ATTR_LFPRECISION 17    /* param: ub1 */
#define OCI_ATTR_PARAM_COUNT 18    /* stmt: ub4 */
#define OCI_ATTR_USERNAME 22       /* session: text */
#define OCI_ATTR_PASSWORD 23       /* session: text */
#define OCI_ATTR_STMT_TYPE 24      /* stmt: ub2 */
#define OCI_ATTR_CHARSET_FORM 32   /* param: ub1 */
#define OCI_ATTR_NUM_DML_ERRORS 73 /* stmt: ub4 */
#define OCI_ATTR_DML_ROW_OFFSET 74 /* error: ub4, from 0 */
#define OCI_ATTR_PARSE_ERROR_OFFSET 129 /* stmt: ub2, from 0 */
#define OCI_ATTR_SERVER_STATUS 143 /* server: ub4; 1 connected, 0 not */
#define OCI_ATTR_BIND_COUNT 190    /* stmt: ub4 */
#define OCI_ATTR_ROWS_FETCHED 197  /* stmt: ub4 */
#define OCI_ATTR_CHAR_USED 285     /* param: ub1 */
#define OCI_ATTR_CHAR_SIZE 286     /* param: ub2 */
#define OCI_ATTR_UB8_ROW_COUNT 457 /* stmt: ub8 */

/* Modes, by the call that takes them. */
#define OCI_DEFAULT 0
#define OCI_THREADED 0x1           /* OCIEnvCreate */
#define OCI_BATCH_MODE 0x1         /* OCIStmtExecute, likewise below */
#define OCI_EXACT_FETCH 0x2
#define OCI_DESCRIBE_ONLY 0x10
#define OCI_COMMIT_ON_SUCCESS 0x20
#define OCI_BATCH_ERRORS 0x80
#define OCI_PARSE_ONLY 0x100
#define OCI_FETCH_NEXT 0x2         /* orientation */
#define OCI_NTV_SYNTAX 1           /* OCIStmtPrepare */
#define OCI_CRED_RDBMS 1           /* OCISessionBegin */

/* Indicators. */
#define OCI_IND_NOTNULL 0
#define OCI_IND_NULL (-1)

/* Statement types. */
#define OCI_STMT_UNKNOWN 0
#define OCI_STMT_SELECT 1
#define OCI_STMT_UPDATE 2
#define OCI_STMT_DELETE 3
#define OCI_STMT_INSERT 4
#define OCI_STMT_CREATE 5
#define OCI_STMT_DROP 6
#define OCI_STMT_ALTER 7
#define OCI_STMT_BEGIN 8
#define OCI_STMT_DECLARE 9
#define OCI_STMT_CALL 10
#define OCI_STMT_MERGE 16
#define OCI_STMT_ROLLBACK 17
#define OCI_STMT_COMMIT 21

/* Data types: external (bind, define) and internal (describe). */
#define SQLT_CHR 1
#define SQLT_NUM 2
#define SQLT_INT 3
#define SQLT_FLT 4
#define SQLT_STR 5
#define SQLT_VNU 6
#define SQLT_LNG 8
#define SQLT_DAT 12
#define SQLT_BFLOAT 21
#define SQLT_BDOUBLE 22
#define SQLT_BIN 23
#define SQLT_LBI 24
#define SQLT_UIN 68
#define SQLT_AFC 96
#define SQLT_AVC 97
#define SQLT_IBFLOAT 100
#define SQLT_IBDOUBLE 101
#define SQLT_RDD 104
#define SQLT_CLOB 112
#define SQLT_BLOB 113
#define SQLT_BFILE 114
#define SQLT_TIMESTAMP 187
#define SQLT_TIMESTAMP_TZ 188
#define SQLT_INTERVAL_YM 189
#define SQLT_INTERVAL_DS 190
#define SQLT_TIMESTAMP_LTZ 232

/* Environment, handles, attributes, errors. */
sword OCIEnvCreate(OCIEnv **envhpp, ub4 mode, void *ctxp, void *(*malocfp)(void *ctxp, size_t size),
                   void *(*ralocfp)(void *ctxp, void *memptr, size_t newsize), void (*mfreefp)(void *ctxp, void *memptr),
                   size_t xtramem_sz, void **usrmempp);
sword OCIEnvNlsCreate(OCIEnv **envhpp, ub4 mode, void *ctxp, void *(*malocfp)(void *ctxp, size_t size),
                      void *(*ralocfp)(void *ctxp, void *memptr, size_t newsize),
                      void (*mfreefp)(void *ctxp, void *memptr), size_t xtramem_sz, void **usrmempp, ub2 charset,
                      ub2 ncharset);
sword OCIHandleAlloc(const void *parenth, void **hndlpp, ub4 type, size_t xtramem_sz, void **usrmempp);
sword OCIHandleFree(void *hndlp, ub4 type);
sword OCIDescriptorFree(void *descp, ub4 type);
sword OCIAttrGet(const void *trgthndlp, ub4 trghndltyp, void *attributep, ub4 *sizep, ub4 attrtype, OCIError *errhp);
sword OCIAttrSet(void *trgthndlp, ub4 trghndltyp, void *attributep, ub4 size, ub4 attrtype, OCIError *errhp);
sword OCIParamGet(const void *hndlp, ub4 htype, OCIError *errhp, void **parmdpp, ub4 pos);
sword OCIErrorGet(void *hndlp, ub4 recordno, OraText *sqlstate, sb4 *errcodep, OraText *bufp, ub4 bufsiz, ub4 type);

/* Connection and transactions. */
sword OCIServerAttach(OCIServer *srvhp, OCIError *errhp, const OraText *dblink, sb4 dblink_len, ub4 mode);
sword OCIServerDetach(OCIServer *srvhp, OCIError *errhp, ub4 mode);
sword OCISessionBegin(OCISvcCtx *svchp, OCIError *errhp, OCISession *usrhp, ub4 credt, ub4 mode);
sword OCISessionEnd(OCISvcCtx *svchp, OCIError *errhp, OCISession *usrhp, ub4 mode);
sword OCIServerVersion(void *hndlp, OCIError *errhp, OraText *bufp, ub4 bufsz, ub1 hndltype);
void OCIClientVersion(sword *major, sword *minor, sword *update, sword *patch, sword *port_update);
sword OCIPing(OCISvcCtx *svchp, OCIError *errhp, ub4 mode);
sword OCIBreak(void *hndlp, OCIError *errhp);
sword OCIReset(void *hndlp, OCIError *errhp);
sword OCITransCommit(OCISvcCtx *svchp, OCIError *errhp, ub4 flags);
sword OCITransRollback(OCISvcCtx *svchp, OCIError *errhp, ub4 flags);

/* Statements. */
sword OCIStmtPrepare(OCIStmt *stmtp, OCIError *errhp, const OraText *stmt, ub4 stmt_len, ub4 language, ub4 mode);
sword OCIStmtExecute(OCISvcCtx *svchp, OCIStmt *stmtp, OCIError *errhp, ub4 iters, ub4 rowoff,
                     const OCISnapshot *snap_in, OCISnapshot *snap_out, ub4 mode);
sword OCIStmtFetch2(OCIStmt *stmtp, OCIError *errhp, ub4 nrows, ub2 orientation, sb4 fetchOffset, ub4 mode);
sword OCIBindByPos(OCIStmt *stmtp, OCIBind **bindpp, OCIError *errhp, ub4 position, void *valuep, sb4 value_sz, ub2 dty,
                   void *indp, ub2 *alenp, ub2 *rcodep, ub4 maxarr_len, ub4 *curelep, ub4 mode);
sword OCIBindByName(OCIStmt *stmtp, OCIBind **bindpp, OCIError *errhp, const OraText *placeholder, sb4 placeh_len,
                    void *valuep, sb4 value_sz, ub2 dty, void *indp, ub2 *alenp, ub2 *rcodep, ub4 maxarr_len,
                    ub4 *curelep, ub4 mode);
sword OCIBindArrayOfStruct(OCIBind *bindp, OCIError *errhp, ub4 pvskip, ub4 indskip, ub4 alskip, ub4 rcskip);
sword OCIDefineByPos(OCIStmt *stmtp, OCIDefine **defnpp, OCIError *errhp, ub4 position, void *valuep, sb4 value_sz,
                     ub2 dty, void *indp, ub2 *rlenp, ub2 *rcodep, ub4 mode);

#ifdef __cplusplus
}
#endif

#endif
