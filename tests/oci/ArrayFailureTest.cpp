// SPDX-License-Identifier: Apache-2.0
// Array inserts with failing rows: every kind of failure at every place of a batch, in every mode. What
// stays, what is counted, what is told, what is committed.
#include <algorithm>
#include <array>
#include <cstring>

#include "Contract.h"
#include "RowErrors.h"

namespace oci_test {
namespace {

constexpr std::size_t kWidth = 24;  // bytes of a bound text

struct FailureKind {
  const char* name;
  const char* column;  // declaration of V
  const char* value;   // what V is given in the VALUES
  const char* good;
  const char* bad;  // null: the NULL indicator, or see the name
  int code;
  const char* text;
};

constexpr FailureKind kKinds[] = {
    {"DuplicateKey", "VARCHAR2(5)", ":V", "good", "good", 1,
     "ORA-00001: unique constraint (LKBENCH.PK_T_FAIL) violated\n"},
    {"NullIntoNotNull", "VARCHAR2(5) NOT NULL", ":V", "good", nullptr, 1400,
     "ORA-01400: cannot insert NULL into (\"LKBENCH\".\"T_FAIL\".\"V\")\n"},
    {"EmptyTextIntoNotNull", "VARCHAR2(5) NOT NULL", ":V", "good", "", 1400,
     "ORA-01400: cannot insert NULL into (\"LKBENCH\".\"T_FAIL\".\"V\")\n"},
    {"TextTooLong", "VARCHAR2(5)", ":V", "good", "abcdef", 12899,
     "ORA-12899: value too large for column \"LKBENCH\".\"T_FAIL\".\"V\"\n"},
    {"NumberOutOfRange", "NUMBER(4)", ":V", "1234", "12345", 1438,
     "ORA-01438: value larger than specified precision allowed for this column\n"},
    {"BadNumberText", "NUMBER(4)", ":V", "1234", "12x4", 1722, "ORA-01722: invalid number\n"},
    {"BadDateText", "DATE", ":V", "2001-02-03 04:05:06", "2001-13-03 04:05:06", 1843,
     "ORA-01843: not a valid month\n"},
    {"BadMaskedDateText", "DATE", "TO_DATE(:V, 'YYYY/MM/DD')", "2001/02/03", "2001/02/30", 1839,
     "ORA-01839: date not valid for month specified\n"},
    {"UnendedText", "VARCHAR2(24)", ":V", "good", "123456789012345678901234", 1480,
     "ORA-01480: trailing null missing from STR bind value\n"},
};

struct Batch {
  ub4 rows;
  std::vector<ub4> failing;
};

std::vector<Batch> Batches() {
  return {{1, {}},  {1, {0}}, {2, {0}},    {2, {1}},    {7, {}},        {7, {0}},      {7, {1}},
          {7, {3}}, {7, {6}}, {7, {2, 5}}, {7, {5, 6}}, {7, {0, 1, 2}}, {3, {0, 1, 2}}};
}

struct Mode {
  const char* name;
  ub4 flags;
  bool Commits() const { return (flags & OCI_COMMIT_ON_SUCCESS) != 0; }
  bool Collects() const { return (flags & OCI_BATCH_ERRORS) != 0; }
};

constexpr Mode kModes[] = {{"Default", OCI_DEFAULT},
                           {"Commit", OCI_COMMIT_ON_SUCCESS},
                           {"Collect", OCI_BATCH_ERRORS},
                           {"CollectAndCommit", OCI_BATCH_ERRORS | OCI_COMMIT_ON_SUCCESS}};

using Parameters = std::tuple<Transport, FailureKind, Mode>;

class ArrayFailure : public testing::TestWithParam<Parameters> {
 protected:
  static constexpr double kTaken = 1000;  // a key that is there already

  ArrayFailure() {
    const Address address = AddressOf(std::get<0>(GetParam()));
    ConnectTo(client, address);
    ConnectTo(other, address);
    Exec(client, "DROP TABLE T_FAIL");
    MustExec(client, std::string("CREATE TABLE T_FAIL (ID NUMBER NOT NULL, V ") + Kind().column +
                         ", PRIMARY KEY(ID))");
    insert = std::make_unique<Statement>(
        client, std::string("INSERT INTO T_FAIL (ID, V) VALUES (:ID, ") + Kind().value + ")");
    insert->Bind(1, ids.data(), 8, SQLT_FLT);
    insert->Bind(2, texts.data(), kWidth, SQLT_STR, indicators.data());
  }

  static const FailureKind& Kind() { return std::get<1>(GetParam()); }
  static const Mode& TheMode() { return std::get<2>(GetParam()); }

  void Fill(const Batch& batch) {
    for (ub4 row = 0; row < batch.rows; ++row) {
      const bool fails = std::ranges::find(batch.failing, row) != batch.failing.end();
      const bool duplicates = fails && Kind().code == 1;
      ids[row] = duplicates ? kTaken : row + 1;
      const char* value = fails ? Kind().bad : Kind().good;
      indicators[row] = value ? OCI_IND_NOTNULL : OCI_IND_NULL;
      std::memset(texts[row].data(), 0, kWidth);
      if (value) std::memcpy(texts[row].data(), value, std::strlen(value));
    }
  }

  // The keys that must be there after this batch, in order.
  static std::string Kept(const Batch& batch) {
    std::string keys;
    for (ub4 row = 0; row < batch.rows; ++row) {
      const bool fails = std::ranges::find(batch.failing, row) != batch.failing.end();
      if (fails && !TheMode().Collects()) break;
      if (!fails) keys += std::to_string(row + 1) + " ";
    }
    return keys;
  }

  static std::string Keys(Client& reader) {
    std::string keys;
    for (const auto& row : Rows(reader, "SELECT ID FROM T_FAIL WHERE ID < 1000 ORDER BY ID"))
      keys += row[0] + " ";
    return keys;
  }

  void Check(const Batch& batch) {
    SCOPED_TRACE(testing::Message() << batch.rows << " rows, failing "
                                    << testing::PrintToString(batch.failing));
    MustExec(client, "DELETE FROM T_FAIL");
    MustExec(client,
             std::string("INSERT INTO T_FAIL (ID, V) VALUES (1000, ") +
                 (Kind().column[0] == 'V' ? "'x'" : "NULL") + ")",
             OCI_COMMIT_ON_SUCCESS);
    Fill(batch);
    const sword status = insert->Execute(batch.rows, TheMode().flags);
    CheckReport(batch, status);
    EXPECT_EQ(insert->RowCount(), std::ranges::count(Kept(batch), ' '));
    EXPECT_EQ(insert->Attribute<ub2>(OCI_ATTR_PARSE_ERROR_OFFSET), 0);
    CheckCollected(batch);
    const std::string committed = TheMode().Commits() && batch.failing.empty() ? Kept(batch) : "";
    EXPECT_EQ(Keys(client), Kept(batch));
    EXPECT_EQ(Keys(other), committed);
    client.Rollback();
    EXPECT_EQ(Keys(client), committed);
  }

  void CheckReport(const Batch& batch, sword status) {
    const Report report = client.LastReport();
    if (batch.failing.empty()) {
      EXPECT_EQ(status, OCI_SUCCESS) << report.text;
    } else if (TheMode().Collects()) {
      EXPECT_EQ(status, OCI_SUCCESS_WITH_INFO);
      EXPECT_EQ(report.text, "ORA-24381: error(s) in array DML\n");
    } else {
      EXPECT_EQ(status, OCI_ERROR);
      EXPECT_EQ(report.code, Kind().code);
      EXPECT_EQ(report.text, Kind().text);
    }
  }

  void CheckCollected(const Batch& batch) {
    std::vector<FailedRow> expected;
    if (TheMode().Collects())
      for (const ub4 row : batch.failing) expected.push_back({row, Kind().code});
    EXPECT_EQ(FailedRows(client, *insert), expected);
  }

  Client client, other;
  std::array<double, 8> ids{};
  std::array<std::array<char, kWidth>, 8> texts{};
  std::array<sb2, 8> indicators{};
  std::unique_ptr<Statement> insert;
};

TEST_P(ArrayFailure, KeepsCountsAndTellsAsOracleDoes) {
  for (const Batch& batch : Batches()) Check(batch);
}

std::string CaseName(const testing::TestParamInfo<Parameters>& of) {
  const auto& [transport, kind, mode] = of.param;
  return std::string(kind.name) + mode.name + NameOf(transport);
}
INSTANTIATE_TEST_SUITE_P(Over, ArrayFailure,
                         testing::Combine(testing::Values(Transport::kSocket, Transport::kTls),
                                          testing::ValuesIn(kKinds), testing::ValuesIn(kModes)),
                         CaseName);

}  // namespace
}  // namespace oci_test
