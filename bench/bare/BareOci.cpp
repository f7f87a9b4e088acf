// SPDX-License-Identifier: Apache-2.0
// bare_oci insert|update|delete SOCKET USER SCHEMA ROWS SECONDS TABLE...
// The workload's transactions by one user, made of the OCI calls that the plug-in makes for them, in its
// order, and no more: texts and values were made beforehand. ROWS is the number of rows that updates and
// deletes draw from.
#include <oci.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "bench/bare/Timed.h"
#include "bench/bare/WorkloadTexts.h"

namespace bare {
namespace {

const OraText* Text(const std::string& text) { return reinterpret_cast<const OraText*>(text.data()); }

struct Handles {
  OCIEnv* env = nullptr;
  OCIError* error = nullptr;
  OCIServer* server = nullptr;
  OCISvcCtx* service = nullptr;
  OCISession* session = nullptr;

  void Check(sword status) const {
    if (status == OCI_SUCCESS) return;
    std::array<OraText, 512> text{};
    sb4 code = 0;
    OCIErrorGet(error, 1, nullptr, &code, text.data(), text.size(), OCI_HTYPE_ERROR);
    std::cerr << text.data();
    std::_Exit(1);
  }
  template <class T>
  void Alloc(T** handle, ub4 type) const {
    Check(OCIHandleAlloc(env, reinterpret_cast<void**>(handle), type, 0, nullptr));
  }
};

Handles Connect(const std::string& socket, const std::string& user, const std::string& schema) {
  Handles own;
  std::string name = user;  // an attribute is handed over by a pointer that is not const
  OCIEnvNlsCreate(&own.env, OCI_THREADED, nullptr, nullptr, nullptr, nullptr, 0, nullptr, 873, 873);
  own.Alloc(&own.error, OCI_HTYPE_ERROR);
  own.Alloc(&own.server, OCI_HTYPE_SERVER);
  own.Alloc(&own.service, OCI_HTYPE_SVCCTX);
  own.Alloc(&own.session, OCI_HTYPE_SESSION);
  const std::string target = "mariadb:///" + schema + "?socket=" + socket;
  own.Check(
      OCIServerAttach(own.server, own.error, Text(target), static_cast<sb4>(target.size()), OCI_DEFAULT));
  own.Check(OCIAttrSet(own.service, OCI_HTYPE_SVCCTX, own.server, 0, OCI_ATTR_SERVER, own.error));
  own.Check(OCIAttrSet(own.session, OCI_HTYPE_SESSION, name.data(), static_cast<ub4>(name.size()),
                       OCI_ATTR_USERNAME, own.error));
  own.Check(OCISessionBegin(own.service, own.error, own.session, OCI_CRED_RDBMS, OCI_DEFAULT));
  own.Check(OCIAttrSet(own.service, OCI_HTYPE_SVCCTX, own.session, 0, OCI_ATTR_SESSION, own.error));
  return own;
}

class Statement {
 public:
  explicit Statement(const Handles& handles) : m_handles(handles) {
    handles.Alloc(&m_handle, OCI_HTYPE_STMT);
  }
  ~Statement() { OCIHandleFree(m_handle, OCI_HTYPE_STMT); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  void Prepare(const std::string& text) {
    m_handles.Check(OCIStmtPrepare(m_handle, m_handles.error, Text(text), static_cast<ub4>(text.size()),
                                   OCI_NTV_SYNTAX, OCI_DEFAULT));
  }
  void Execute(ub4 iterations, ub4 mode) {
    m_handles.Check(
        OCIStmtExecute(m_handles.service, m_handle, m_handles.error, iterations, 0, nullptr, nullptr, mode));
  }
  ub4 Number(ub4 attribute) {
    ub4 value = 0;
    m_handles.Check(OCIAttrGet(m_handle, OCI_HTYPE_STMT, &value, nullptr, attribute, m_handles.error));
    return value;
  }
  OCIStmt* Native() { return m_handle; }

 private:
  const Handles& m_handles;
  OCIStmt* m_handle = nullptr;
};

// One row of a table, bound as the plug-in binds it.
class Row {
 public:
  explicit Row(const WorkloadTexts& texts) : m_texts(texts), m_bound(texts.Columns().size()) {}

  void Bind(const Handles& handles, Statement& insert) {
    for (size_t i = 0; i < m_bound.size(); ++i) {
      Bound& bound = m_bound[i];
      const bool is_number = m_texts.Columns()[i].kind == Kind::kNumber;
      void* data = is_number ? static_cast<void*>(&bound.number) : bound.text.data();
      const auto size = static_cast<ub4>(is_number ? sizeof bound.number : bound.text.size());
      OCIBind* bind = nullptr;
      handles.Check(OCIBindByPos(insert.Native(), &bind, handles.error, static_cast<ub4>(i + 1), data,
                                 static_cast<sb4>(size), is_number ? SQLT_FLT : SQLT_STR, &bound.indicator,
                                 nullptr, nullptr, 0, nullptr, OCI_DEFAULT));
      handles.Check(OCIBindArrayOfStruct(bind, handles.error, size, 0, 0, 0));
    }
  }
  void Fill(double id, size_t row) {
    const auto& values = m_texts.Row(row);
    for (size_t i = 0; i < m_bound.size(); ++i) {
      Bound& bound = m_bound[i];
      bound.indicator = values[i].is_null ? -1 : 0;
      bound.number = values[i].number;
      if (m_texts.Columns()[i].kind != Kind::kNumber)
        bound.text[values[i].text.copy(bound.text.data(), bound.text.size() - 1)] = '\0';
    }
    m_bound[0].number = id;
  }

 private:
  struct Bound {
    double number;
    std::array<char, 64> text;
    sb2 indicator;
  };
  const WorkloadTexts& m_texts;
  std::vector<Bound> m_bound;
};

// All that the plug-in reads of a described table.
void ReadColumns(const Handles& handles, Statement& described) {
  const ub4 columns = described.Number(OCI_ATTR_PARAM_COUNT);
  for (ub4 position = 1; position <= columns; ++position) {
    void* column = nullptr;
    handles.Check(OCIParamGet(described.Native(), OCI_HTYPE_STMT, handles.error, &column, position));
    const auto read = [&](void* value, ub4* size, ub4 attribute) {
      handles.Check(OCIAttrGet(column, OCI_DTYPE_PARAM, value, size, attribute, handles.error));
    };
    const char* name = nullptr;
    ub4 length = 0;
    ub2 type = 0, size = 0;
    ub1 nullable = 0;
    read(&name, &length, OCI_ATTR_NAME);
    read(&type, nullptr, OCI_ATTR_DATA_TYPE);
    read(&size, nullptr, OCI_ATTR_DATA_SIZE);
    read(&nullable, nullptr, OCI_ATTR_IS_NULL);
    if (type != SQLT_NUM) continue;
    sb2 precision = 0;
    sb1 scale = 0;
    read(&precision, nullptr, OCI_ATTR_PRECISION);
    read(&scale, nullptr, OCI_ATTR_SCALE);
  }
}

struct Table {
  Table(Session& session, const std::string& name)
      : texts(session, name), describe(texts.Describe()), insert(texts.OracleInsert()), row(texts) {}
  WorkloadTexts texts;
  std::string describe, insert;
  Row row;
};

class Transactions {
 public:
  Transactions(const Handles& handles, Session& session, size_t rows, const std::vector<std::string>& tables)
      : m_handles(handles), m_draw(tables.size(), rows), m_next_id(handles), m_statement(handles) {
    for (const std::string& name : tables) m_tables.push_back(std::make_unique<Table>(session, name));
    m_next_id.Prepare(m_next_id_text);
    OCIDefine* define = nullptr;
    handles.Check(OCIDefineByPos(m_next_id.Native(), &define, handles.error, 1, &m_id, sizeof m_id, SQLT_FLT,
                                 &m_indicator, nullptr, nullptr, OCI_DEFAULT));
  }

  void InsertRow() {
    Table& table = *m_tables[m_draw.Table()];
    Statement described(m_handles), insert(m_handles);
    DescribeAndBind(table, described, insert);
    m_next_id.Execute(1, OCI_DEFAULT);
    table.row.Fill(m_id, m_draw.Row());
    insert.Execute(1, OCI_DEFAULT);
    Commit();
  }
  // The insert is prepared and bound, and not executed.
  void UpdateRow() {
    Table& table = *m_tables[m_draw.Table()];
    {
      Statement described(m_handles), insert(m_handles);
      DescribeAndBind(table, described, insert);
    }
    RunText(table.texts.OracleUpdate(m_draw.Row()));
  }
  void DeleteRow() { RunText(m_tables[m_draw.Table()]->texts.Delete(m_draw.Row())); }

 private:
  void DescribeAndBind(Table& table, Statement& described, Statement& insert) {
    described.Prepare(table.describe);
    described.Execute(0, OCI_DESCRIBE_ONLY);
    ReadColumns(m_handles, described);
    insert.Prepare(table.insert);
    table.row.Bind(m_handles, insert);
  }
  void RunText(const std::string& text) {
    m_statement.Prepare(text);
    m_statement.Execute(1, OCI_DEFAULT);
    m_statement.Number(OCI_ATTR_ROW_COUNT);
    Commit();
  }
  void Commit() { m_handles.Check(OCITransCommit(m_handles.service, m_handles.error, OCI_DEFAULT)); }

  const Handles& m_handles;
  const std::string m_next_id_text = kNextId;
  Draw m_draw;
  Statement m_next_id, m_statement;
  double m_id = 0;
  sb2 m_indicator = 0;
  std::vector<std::unique_ptr<Table>> m_tables;
};

}  // namespace
}  // namespace bare

int main(int argc, char** argv) {
  if (argc < 8) {
    std::cerr << "usage: bare_oci insert|update|delete SOCKET USER SCHEMA ROWS SECONDS TABLE...\n";
    return 1;
  }
  const std::string kind = argv[1];
  bare::Session session(argv[2], argv[3], argv[4]);  // for reading the tables
  const bare::Handles handles = bare::Connect(argv[2], argv[3], argv[4]);
  bare::Transactions transactions(handles, session, std::stoul(argv[5]), {argv + 7, argv + argc});
  const double seconds = std::stod(argv[6]);
  if (kind == "insert") bare::RepeatFor(seconds, [&] { transactions.InsertRow(); });
  if (kind == "update") bare::RepeatFor(seconds, [&] { transactions.UpdateRow(); });
  if (kind == "delete") bare::RepeatFor(seconds, [&] { transactions.DeleteRow(); });
}
