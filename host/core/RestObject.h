// SPDX-License-Identifier: Apache-2.0
// CRestObject is the resource side of a host object: a table of named properties, read and written as XML or
// JSON. Not thread-safe: the host calls it on the thread that owns the object.
#pragma once

#include <vector>

#include "core/LKString.h"

enum SerializeMode { Xml = 1, Json = 2 };

// One request as it travels down the object tree.
struct Context {
  LKString szCommand;
  LKString szRestURI;
  LKString szRequestData;
  int nMethod = 0;
  SerializeMode nContextType = Json;
  SerializeMode nAcceptType = Json;
};

enum enumRestPropertyType { REST_INT, REST_INT64, REST_DOUBLE, REST_STRING };

// One named property: `pValue` points at a field of the object that filled the table (int, __int64, double or
// LKString by `nType`) and lives as long as that object.
struct REST_PROPERTY_ENTRY {
  LKString szName;
  enumRestPropertyType nType = REST_INT;
  void* pValue = nullptr;
  bool bReadOnly = false;
};

class CRestObject {
 public:
  // Slot order is part of the contract.
  virtual void GetPropertyTable(std::vector<REST_PROPERTY_ENTRY>& table);
  virtual ~CRestObject();
  // An HTTP status. szRestURI leads to the object meant, one child name per segment (404 where it ends);
  // there nMethod, an enumRestMethod, decides.
  virtual int ProcessRequest(Context context, LKString& szResponse);
  virtual CRestObject* GetNextObject(LKString szName);          // the child of that name, or null
  virtual int DoGet(Context context, LKString& szResponse);     // 200 with the properties
  virtual int DoPut(Context context, LKString& szResponse);     // 200; 400, nothing changed
  virtual int DoPost(Context context, LKString& szResponse);    // 405
  virtual int DoDelete(Context context, LKString& szResponse);  // 405
  virtual int IsValid();                                        // 1
  virtual int Apply();                                          // 1
};

enum enumRestMethod { REST_GET = 0, REST_PUT = 1, REST_POST = 2, REST_DELETE = 3 };
