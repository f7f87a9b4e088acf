// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Define.h"

#include "oci/mariadb/Guard.h"
#include "oci/mariadb/OutputValue.h"
#include "oci/mariadb/Statement.h"

namespace ocimaria {

void DefineHandle::Set(void* values, sb4 size, ub2 type, void* indicators, ub2* lengths, ub2* codes) {
  if (!values || size < 0 || !CanDefine(type, static_cast<std::size_t>(size))) throw OraError(3115);
  m_first = {static_cast<char*>(values),
             static_cast<std::size_t>(size),
             type,
             static_cast<sb2*>(indicators),
             lengths,
             codes};
}

OutputElement DefineHandle::Element(ub4 row) const {
  OutputElement element = m_first;
  element.value += std::size_t{row} * element.size;
  if (element.indicator) element.indicator += row;
  if (element.length) element.length += row;
  if (element.code) element.code += row;
  return element;
}

}  // namespace ocimaria

using namespace ocimaria;

// The handle that comes in is not looked at: a statement has one define for each column, made here.
extern "C" sword OCIDefineByPos(OCIStmt* stmtp, OCIDefine** defnpp, OCIError* errhp, ub4 position,
                                void* valuep, sb4 value_sz, ub2 dty, void* indp, ub2* rlenp, ub2* rcodep,
                                ub4 mode) {
  return Guarded(OCI_CALL(stmtp, errhp, position, valuep, value_sz, dty, indp, rlenp, rcodep, mode), errhp,
                 [&](ErrorHandle&) -> sword {
                   auto& statement = Need<StatementHandle>(stmtp);
                   if (!defnpp) throw InvalidHandle{};
                   statement.RequirePrepared();
                   constexpr ub4 kMostColumns = 4096;
                   if (position == 0 || position > kMostColumns) throw OraError(1007);
                   if (mode != OCI_DEFAULT) throw OraError(24300);
                   const auto define = std::make_shared<DefineHandle>();
                   define->Set(valuep, value_sz, dty, indp, rlenp, rcodep);
                   statement.SetDefine(position, define);
                   *defnpp = static_cast<OCIDefine*>(define->Token());
                   return OCI_SUCCESS;
                 });
}
