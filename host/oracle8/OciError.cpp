// SPDX-License-Identifier: Apache-2.0
#include "oracle8/OciError.h"

#include <array>
#include <string>

namespace oracle8 {
namespace {

constexpr ub4 kMaxRecords = 32;  // a client library that never says "no more" must not hang us

bool IsStatus(sword status, sword expected) { return (status & 0xFFFF) == (expected & 0xFFFF); }

std::string WithoutLineEnd(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return text;
}

ErrorText ReadRecords(OCIError* error) {
  ErrorText result;
  std::string joined;
  for (ub4 record = 1; record <= kMaxRecords; ++record) {
    std::array<OraText, 3072> buffer{};
    sb4 code = 0;
    const sword status = OCIErrorGet(error, record, nullptr, &code, buffer.data(),
                                     static_cast<ub4>(buffer.size()), OCI_HTYPE_ERROR);
    if (Failed(status) && buffer[0] == 0) break;
    buffer.back() = 0;
    if (record == 1) result.code = code;
    if (!joined.empty()) joined += '\n';
    joined += WithoutLineEnd(reinterpret_cast<const char*>(buffer.data()));
    if (Failed(status)) break;  // a text that was cut to the buffer
  }
  result.text = LKString(joined.c_str(), static_cast<int>(joined.size()));
  return result;
}

LKString TextWithoutRecord(sword status) {
  LKString text = L"The Oracle client returned status ";
  text += std::to_wstring(status).c_str();
  return text + L" and left no error record.";
}

}  // namespace

ErrorText ReadError(sword status, OCIError* error) {
  if (IsStatus(status, OCI_INVALID_HANDLE))  // leaves no record: what the handle holds is an older one
    return {0, L"The Oracle client returned OCI_INVALID_HANDLE: a handle is null, freed or of another type."};
  ErrorText result;
  if (error != nullptr) result = ReadRecords(error);
  if (result.text.IsEmpty()) result.text = TextWithoutRecord(status);
  return result;
}

}  // namespace oracle8
