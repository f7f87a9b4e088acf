// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Bind.h"

#include <cstring>

#include "oci/mariadb/Guard.h"
#include "oci/mariadb/ParameterColumn.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {

void BindHandle::Set(void* values, sb4 size, ub2 type, void* indicators, const ub2* lengths, ub2* codes) {
  if (size < 0 || !ParameterColumn::Takes(type, static_cast<std::size_t>(size))) throw OraError(3115);
  m_values = static_cast<const char*>(values);
  m_size = static_cast<std::size_t>(size);
  m_type = type;
  m_indicators = static_cast<const char*>(indicators);
  m_lengths = reinterpret_cast<const char*>(lengths);
  m_codes = reinterpret_cast<char*>(codes);
  SetSkips(static_cast<ub4>(size), sizeof(sb2), sizeof(ub2), sizeof(ub2));
}

void BindHandle::SetSkips(ub4 value, ub4 indicator, ub4 length, ub4 code) {
  m_value_skip = value;
  m_indicator_skip = indicator;
  m_length_skip = length;
  m_code_skip = code;
}

void BindHandle::SetCode(ub4 row, ub2 code) const {
  if (m_codes) std::memcpy(m_codes + std::size_t{row} * m_code_skip, &code, sizeof code);
}

}  // namespace ocimaria

using namespace ocimaria;

namespace {

struct BindArguments {
  void* values;
  sb4 size;
  ub2 type;
  void* indicators;
  ub2* lengths;
  ub2* codes;
  ub4 max_elements;
  ub4 mode;
};

// The handle that comes in is not looked at: a statement has one bind for each placeholder, made here.
sword Bind(OCIBind** bindpp, StatementHandle& statement, const Places& places, const BindArguments& given) {
  if (!bindpp) throw InvalidHandle{};
  if (given.mode != OCI_DEFAULT) throw OraError(24300);
  if (given.max_elements != 0) throw OraError(3115);  // arrays of stored blocks
  const auto bind = std::make_shared<BindHandle>();
  bind->Set(given.values, given.size, given.type, given.indicators, given.lengths, given.codes);
  statement.SetBind(places, bind);
  *bindpp = static_cast<OCIBind*>(bind->Token());
  return OCI_SUCCESS;
}

}  // namespace

extern "C" sword OCIBindByPos(OCIStmt* stmtp, OCIBind** bindpp, OCIError* errhp, ub4 position, void* valuep,
                              sb4 value_sz, ub2 dty, void* indp, ub2* alenp, ub2* rcodep, ub4 maxarr_len,
                              ub4*, ub4 mode) {
  return Guarded(
      OCI_CALL(stmtp, errhp, position, valuep, value_sz, dty, indp, alenp, rcodep, maxarr_len, mode), errhp,
      [&](ErrorHandle&) -> sword {
        auto& statement = Need<StatementHandle>(stmtp);
        return Bind(bindpp, statement, statement.PlacesAt(position),
                    {valuep, value_sz, dty, indp, alenp, rcodep, maxarr_len, mode});
      });
}

extern "C" sword OCIBindByName(OCIStmt* stmtp, OCIBind** bindpp, OCIError* errhp, const OraText* placeholder,
                               sb4 placeh_len, void* valuep, sb4 value_sz, ub2 dty, void* indp, ub2* alenp,
                               ub2* rcodep, ub4 maxarr_len, ub4*, ub4 mode) {
  return Guarded(
      OCI_CALL(stmtp, errhp, placeh_len, valuep, value_sz, dty, indp, alenp, rcodep, maxarr_len, mode), errhp,
      [&](ErrorHandle&) -> sword {
        auto& statement = Need<StatementHandle>(stmtp);
        if (!placeholder || placeh_len < 0) throw OraError(1036);
        const std::string_view name(reinterpret_cast<const char*>(placeholder),
                                    static_cast<std::size_t>(placeh_len));
        return Bind(bindpp, statement, statement.PlacesNamed(name),
                    {valuep, value_sz, dty, indp, alenp, rcodep, maxarr_len, mode});
      });
}

extern "C" sword OCIBindArrayOfStruct(OCIBind* bindp, OCIError* errhp, ub4 pvskip, ub4 indskip, ub4 alskip,
                                      ub4 rcskip) {
  return Guarded(OCI_CALL(bindp, errhp, pvskip, indskip, alskip, rcskip), errhp, [&](ErrorHandle&) -> sword {
    Need<BindHandle>(bindp).SetSkips(pvskip, indskip, alskip, rcskip);
    return OCI_SUCCESS;
  });
}
