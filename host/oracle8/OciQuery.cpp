// SPDX-License-Identifier: Apache-2.0
#include "oracle8/OciQuery.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "oracle8/OciStatement.h"

namespace oracle8 {
namespace {

constexpr size_t kScalarWidth = 128;  // numbers, dates, timestamps and intervals as text, in any format
constexpr size_t kLongWidth =
    size_t{64} * 1024;  // LONG and LOB types, whose description gives no useful size
constexpr size_t kBlockBytes = size_t{1024} * 1024;
constexpr size_t kMaxBlockRows = 100;

size_t TextWidth(const ColumnDescription& column) {
  switch (column.type) {
    case SQLT_CHR:
    case SQLT_AFC:
      return std::max(kScalarWidth, column.size * size_t{4} + 1);  // UTF-8 from a one-byte character set
    case SQLT_BIN:
      return std::max(kScalarWidth, column.size * size_t{2} + 1);  // hexadecimal
    case SQLT_LNG:
    case SQLT_LBI:
    case SQLT_CLOB:
    case SQLT_BLOB:
      return kLongWidth;
    default:
      return kScalarWidth;
  }
}

struct Column {
  size_t width = 0;
  std::vector<char> values;
  std::vector<sb2> indicators;
};

LKString TooLong(size_t position, size_t width) {
  LKString text = L"read column ";
  text += std::to_wstring(position).c_str();
  text += L": a value is longer than the ";
  text += std::to_wstring(width - 1).c_str();
  return text + L" bytes that a query returns of this type.";
}

LKString Cell(const std::vector<Column>& columns, size_t index, size_t row) {
  const Column& column = columns[index];
  const sb2 indicator = column.indicators[row];
  if (indicator == OCI_IND_NULL) return {};
  if (indicator != OCI_IND_NOTNULL) throw OciFailure(OCI_SUCCESS, TooLong(index + 1, column.width));
  const char* text = column.values.data() + row * column.width;
  return LKString(text, static_cast<int>(strnlen(text, column.width)));
}

std::vector<Column> DescribeColumns(OciStatement& statement) {
  std::vector<Column> columns(statement.ColumnCount());
  for (ub4 i = 0; i < columns.size(); ++i) columns[i].width = TextWidth(statement.DescribeColumn(i + 1));
  return columns;
}

size_t BlockRows(const std::vector<Column>& columns) {
  size_t row_bytes = 1;
  for (const Column& column : columns) row_bytes += column.width;
  return std::clamp<size_t>(kBlockBytes / row_bytes, 1, kMaxBlockRows);
}

void DefineColumns(OciStatement& statement, std::vector<Column>& columns, size_t rows) {
  for (size_t i = 0; i < columns.size(); ++i) {
    Column& column = columns[i];
    column.values.resize(column.width * rows);
    column.indicators.resize(rows);
    statement.DefineText(static_cast<ub4>(i + 1), column.values.data(), column.width,
                         column.indicators.data());
  }
}

}  // namespace

std::vector<std::vector<LKString>> ReadRows(const OciSession& session, const LKString& sql) {
  // Before the statement: its defines point into the columns.
  std::vector<Column> columns;
  OciStatement statement(session, sql);
  statement.Execute(0, OCI_DEFAULT);
  columns = DescribeColumns(statement);
  const size_t block = BlockRows(columns);
  DefineColumns(statement, columns, block);
  std::vector<std::vector<LKString>> rows;
  for (size_t fetched = block; fetched == block;) {
    fetched = statement.Fetch(static_cast<ub4>(block));
    for (size_t row = 0; row < fetched; ++row) {
      auto& cells = rows.emplace_back();
      for (size_t i = 0; i < columns.size(); ++i) cells.push_back(Cell(columns, i, row));
    }
  }
  return rows;
}

}  // namespace oracle8
