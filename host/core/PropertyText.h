// SPDX-License-Identifier: Apache-2.0
// Named values as text, the one form that requests (CRestObject) and archives (CLKArchive) share:
//   JSON: {"Name": "value", "Count": 3}
//   XML:  <properties><property name="Name">value</property>…</properties>
// and the step between a value's text and the field that holds it. Any thread.
#pragma once

#include <vector>

#include "core/LKString.h"
#include "core/RestObject.h"

struct LKProperty {
  LKString szName;
  LKString szValue;
  bool bQuoted = true;  // false for a number, which JSON writes without quotes
};

using LKPropertyList = std::vector<LKProperty>;  // in the order of the text

LKString LKWriteProperties(const LKPropertyList& list, SerializeMode eMode);

// False, with the list untouched, for a text that is not of the form above.
bool LKReadProperties(const LKString& szText, SerializeMode eMode, LKPropertyList& list);

LKProperty LKPropertyOf(const REST_PROPERTY_ENTRY& entry);

// Whether the text is a value of the entry's type. Numbers are decimal, without blanks around them.
bool LKIsValueOf(const REST_PROPERTY_ENTRY& entry, const LKString& szValue);

// Writes the value into the entry's field; false, with the field untouched, when it is none of its type.
bool LKStoreValue(const REST_PROPERTY_ENTRY& entry, const LKString& szValue);
