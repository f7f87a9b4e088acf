// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ParameterColumn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "oci/mariadb/Dates.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/OracleNumber.h"

namespace ocimaria {

// How the bytes of an external type are read.
enum class Reading {
  kSigned,
  kUnsigned,
  kReal,
  kZeroEnded,
  kCounted,
  kBytes,
  kDate,
  kNumber,
  kCountedNumber
};

struct InputType {
  ub2 type;
  Reading reading;
  std::uint32_t sizes;  // bit n: n bytes fit; 0: any size
};

namespace {

constexpr std::uint32_t Sizes(std::initializer_list<unsigned> sizes) {
  std::uint32_t bits = 0;
  for (const unsigned size : sizes) bits |= std::uint32_t{1} << size;
  return bits;
}

constexpr std::array kInputTypes{
    InputType{SQLT_CHR, Reading::kCounted, 0},
    InputType{SQLT_NUM, Reading::kNumber, Sizes({21, 22})},
    InputType{SQLT_INT, Reading::kSigned, Sizes({1, 2, 4, 8})},
    InputType{SQLT_FLT, Reading::kReal, Sizes({4, 8})},
    InputType{SQLT_STR, Reading::kZeroEnded, 0},
    InputType{SQLT_VNU, Reading::kCountedNumber, Sizes({22})},
    InputType{SQLT_LNG, Reading::kCounted, 0},
    InputType{SQLT_DAT, Reading::kDate, Sizes({kOracleDateBytes})},
    InputType{SQLT_BFLOAT, Reading::kReal, Sizes({4})},
    InputType{SQLT_BDOUBLE, Reading::kReal, Sizes({8})},
    InputType{SQLT_BIN, Reading::kBytes, 0},
    InputType{SQLT_LBI, Reading::kBytes, 0},
    InputType{SQLT_UIN, Reading::kUnsigned, Sizes({1, 2, 4, 8})},
    InputType{SQLT_AFC, Reading::kCounted, 0},
    InputType{SQLT_AVC, Reading::kZeroEnded, 0},
};

const InputType* FindInput(ub2 type) {
  const auto found = std::ranges::find(kInputTypes, type, &InputType::type);
  return found == kInputTypes.end() ? nullptr : &*found;
}

template <class T>
T Read(const char* data) {
  T value;
  std::memcpy(&value, data, sizeof value);
  return value;
}

std::int64_t ReadSigned(const char* data, std::size_t size) {
  switch (size) {
    case 1:
      return Read<sb1>(data);
    case 2:
      return Read<sb2>(data);
    case 4:
      return Read<sb4>(data);
    default:
      return Read<sb8>(data);
  }
}

std::uint64_t ReadUnsigned(const char* data, std::size_t size) {
  switch (size) {
    case 1:
      return Read<ub1>(data);
    case 2:
      return Read<ub2>(data);
    case 4:
      return Read<ub4>(data);
    default:
      return Read<ub8>(data);
  }
}

double ReadReal(const char* data, std::size_t size) {
  const double value = size == sizeof(float) ? double{Read<float>(data)} : Read<double>(data);
  if (!std::isfinite(value)) throw OraError(1426);  // the server has no such number and would store another
  return value;
}

enum_field_types WireOf(const InputType& input, bool masked) {
  if (masked) return MYSQL_TYPE_DATETIME;
  switch (input.reading) {
    case Reading::kSigned:
    case Reading::kUnsigned:
      return MYSQL_TYPE_LONGLONG;
    case Reading::kReal:
      return MYSQL_TYPE_DOUBLE;
    case Reading::kDate:
      return MYSQL_TYPE_DATETIME;
    case Reading::kBytes:
      return MYSQL_TYPE_BLOB;
    default:
      return MYSQL_TYPE_STRING;
  }
}

}  // namespace

bool ParameterColumn::Takes(ub2 type, std::size_t size) {
  const InputType* input = FindInput(type);
  if (!input) return false;
  return input->sizes == 0 || (size < 32 && (input->sizes >> size & 1) != 0);
}

ParameterColumn::ParameterColumn(const BindHandle& bind, const sql::DateMask* mask)
    : m_bind(bind),
      m_mask(mask),
      m_input(*FindInput(m_bind.DataType())),
      m_wire(WireOf(m_input, m_mask != nullptr)) {}

std::size_t ParameterColumn::Append(ub4 element) {
  if (m_bind.IsNull(element)) return AppendNull();
  if (m_mask && m_input.reading != Reading::kDate) return AppendMasked(element);
  const char* data = m_bind.Value(element);
  switch (m_input.reading) {
    case Reading::kSigned:
    case Reading::kUnsigned:
    case Reading::kReal:
      return AppendNumber(element);
    case Reading::kDate:
      return AppendTime(FromOracleDate(reinterpret_cast<const ub1*>(data)));
    case Reading::kNumber:
      return AppendOwnedText(OracleNumberToText(reinterpret_cast<const ub1*>(data),
                                                m_bind.Length(element).value_or(m_bind.Size())));
    case Reading::kCountedNumber:
      return AppendOwnedText(
          OracleNumberToText(reinterpret_cast<const ub1*>(data) + 1, static_cast<ub1>(*data)));
    default: {
      const std::string_view text = Text(element);
      return AppendText(text.data(), text.size());
    }
  }
}

std::string_view ParameterColumn::Text(ub4 element) const {
  const char* data = m_bind.Value(element);
  const std::size_t most = std::min(m_bind.Length(element).value_or(m_bind.Size()), m_bind.Size());
  if (m_input.reading != Reading::kZeroEnded) return {data, most};
  const void* end = std::memchr(data, 0, most);
  if (!end) throw OraError(1480);
  return {data, static_cast<std::size_t>(static_cast<const char*>(end) - data)};
}

std::size_t ParameterColumn::AppendMasked(ub4 element) {
  if (m_input.reading != Reading::kZeroEnded && m_input.reading != Reading::kCounted)
    throw OraError(932, {"CHAR", "NUMBER"});
  const std::string_view text = Text(element);
  if (text.empty()) return AppendNull();
  return AppendTime(FromDateTime(m_mask->Read(text)));
}

std::size_t ParameterColumn::AppendNull() {
  switch (m_wire) {
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_DOUBLE:
      m_numbers.push_back(0);
      break;
    case MYSQL_TYPE_DATETIME:
      m_times.emplace_back();
      break;
    default:
      m_pointers.push_back("");
      m_lengths.push_back(0);
  }
  m_indicators.push_back(STMT_INDICATOR_NULL);
  return 1;
}

std::size_t ParameterColumn::AppendNumber(ub4 element) {
  const char* data = m_bind.Value(element);
  std::uint64_t bits = 0;
  if (m_input.reading == Reading::kSigned) {
    bits = static_cast<std::uint64_t>(ReadSigned(data, m_bind.Size()));
  } else if (m_input.reading == Reading::kUnsigned) {
    bits = ReadUnsigned(data, m_bind.Size());
  } else {
    const double value = ReadReal(data, m_bind.Size());
    std::memcpy(&bits, &value, sizeof bits);
  }
  m_numbers.push_back(bits);
  m_indicators.push_back(STMT_INDICATOR_NONE);
  return sizeof bits + 1;
}

// A text without characters is NULL.
std::size_t ParameterColumn::AppendText(const char* data, std::size_t length) {
  if (length == 0) return AppendNull();
  m_pointers.push_back(data);
  m_lengths.push_back(length);
  m_indicators.push_back(STMT_INDICATOR_NONE);
  return length + 9;
}

std::size_t ParameterColumn::AppendOwnedText(std::string text) {
  m_owned.push_front(std::move(text));
  return AppendText(m_owned.front().data(), m_owned.front().size());
}

std::size_t ParameterColumn::AppendTime(const MYSQL_TIME& time) {
  m_times.push_back(time);
  m_indicators.push_back(STMT_INDICATOR_NONE);
  return 13;
}

void ParameterColumn::Reserve(std::size_t rows) {
  m_indicators.reserve(rows);
  switch (m_wire) {
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_DOUBLE:
      m_numbers.reserve(rows);
      break;
    case MYSQL_TYPE_DATETIME:
      m_times.reserve(rows);
      break;
    default:
      m_pointers.reserve(rows);
      m_lengths.reserve(rows);
  }
}

void ParameterColumn::Resize(std::size_t rows) {
  const auto shrink = [rows](auto& values) {
    if (values.size() > rows) values.resize(rows);
  };
  shrink(m_indicators);
  shrink(m_numbers);
  shrink(m_times);
  shrink(m_pointers);
  shrink(m_lengths);
  if (rows == 0) m_owned.clear();
}

MYSQL_BIND ParameterColumn::ArrayBind(std::size_t first) {
  MYSQL_BIND bind{};
  bind.buffer_type = m_wire;
  bind.u.indicator = m_indicators.data() + first;
  bind.is_unsigned = m_input.reading == Reading::kUnsigned ? 1 : 0;
  if (m_wire == MYSQL_TYPE_LONGLONG || m_wire == MYSQL_TYPE_DOUBLE) {
    bind.buffer = m_numbers.data() + first;
    return bind;
  }
  if (m_wire == MYSQL_TYPE_DATETIME) {  // like text: an array of pointers
    m_pointers.clear();
    for (const MYSQL_TIME& time : m_times) m_pointers.push_back(&time);
  } else {
    bind.length = m_lengths.data() + first;
  }
  bind.buffer = m_pointers.data() + first;
  return bind;
}

MYSQL_BIND ParameterColumn::SingleBind(std::size_t row) {
  MYSQL_BIND bind{};
  bind.buffer_type = m_wire;
  bind.is_null = &m_indicators[row];
  bind.is_unsigned = m_input.reading == Reading::kUnsigned ? 1 : 0;
  if (m_wire == MYSQL_TYPE_LONGLONG || m_wire == MYSQL_TYPE_DOUBLE) {
    bind.buffer = &m_numbers[row];
  } else if (m_wire == MYSQL_TYPE_DATETIME) {
    bind.buffer = &m_times[row];
  } else {
    bind.buffer = const_cast<void*>(m_pointers[row]);
    bind.length = &m_lengths[row];
    bind.buffer_length = m_lengths[row];
  }
  return bind;
}

}  // namespace ocimaria
