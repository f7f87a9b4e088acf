// SPDX-License-Identifier: Apache-2.0
// The calls of loading a table whose only column is ID. Statements, parameters and binds are numbered as the
// loads of a test come: the first load has stmt#1 for the table and stmt#2 for the loader.
#pragma once

#include <string>

#include "CallLists.h"
#include "DescribedTable.h"

namespace scripted {

class IdTable {
 public:
  // nLoad: the number of this load, from 1, among those that describe a table.
  IdTable(const std::string& name, int nLoad) : m_name(name), m_load(nLoad) {}

  // OCI calls 1 to 11.
  Events Describe() const {
    const std::string sql = "SELECT * FROM " + m_name;
    Events events = {"OCIHandleAlloc(env#1, 4, 0, null)",
                     Prepare(Table(), sql),
                     "OCIStmtExecute(svc#1, " + Table() + ", err#1, 0, 0, null, null, 16)",
                     "OCIAttrGet(" + Table() + ", 4, null, 18, err#1)",
                     "OCIParamGet(" + Table() + ", 4, err#1, 1)",
                     "OCIAttrGet(" + Parameter() + ", 53, &, 4, err#1)"};
    for (const char* szAttribute : {"2", "1", "7", "5", "6"})
      events.push_back("OCIAttrGet(" + Parameter() + ", 53, null, " + szAttribute + ", err#1)");
    return events;
  }
  // 12 to 15.
  Events Bind() const {
    return {"OCIHandleAlloc(env#1, 4, 0, null)",
            Prepare(Loader(), "INSERT INTO " + m_name + " (ID) VALUES (:ID)"),
            "OCIBindByPos(" + Loader() + ", err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
            "OCIBindArrayOfStruct(bind#" + std::to_string(m_load) + ", err#1, 8, 0, 0, 0)"};
  }
  std::string Batch(int nRows) const {
    return "OCIStmtExecute(svc#1, " + Loader() + ", err#1, " + std::to_string(nRows) + ", 0, null, null, 32)";
  }
  std::string FreeLoader() const { return "OCIHandleFree(" + Loader() + ", 4)"; }
  std::string FreeTable() const { return "OCIHandleFree(" + Table() + ", 4)"; }
  Events Free() const { return {FreeLoader(), FreeTable()}; }

  // `set` is "" or " (set 2 of 3)".
  Events Started(const std::string& set = "") const {
    return {"HandleInfoMsg(\"Started loading table " + m_name + set + ".\")"};
  }
  // `set` is "" or "(set 2 of 3)".
  Events Completed(const std::string& set = "") const {
    return {"HandleInfoMsg(\"Completed loading table " + m_name + set + ".\")"};
  }
  Events Load(const Events& batches) const {
    return Together({Started(), Describe(), Bind(), batches, Free(), Completed()});
  }

 private:
  std::string Table() const { return "stmt#" + std::to_string(2 * m_load - 1); }
  std::string Loader() const { return "stmt#" + std::to_string(2 * m_load); }
  std::string Parameter() const { return "par#" + std::to_string(m_load); }
  static std::string Prepare(const std::string& statement, const std::string& sql) {
    return "OCIStmtPrepare(" + statement + ", err#1, \"" + sql + "\", " + std::to_string(sql.size()) +
           ", 1, 0)";
  }

  std::string m_name;
  int m_load;
};

}  // namespace scripted
