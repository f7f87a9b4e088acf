// SPDX-License-Identifier: Apache-2.0
// OraError is the one exception type inside the library: an Oracle number with its text. It never leaves the
// C border, where the guard turns it into OCI_ERROR and a record of the error handle.
#pragma once

#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace ocimaria {

class OraError : public std::exception {
 public:
  // The text is the number's own (ErrorTable.h) with each "{}" replaced by the next argument.
  explicit OraError(int code, std::initializer_list<std::string_view> arguments = {});
  // A text of the caller's own, without the "ORA-nnnnn: " in front.
  static OraError WithText(int code, std::string text);

  int Code() const { return m_code; }
  const std::string& Text() const { return m_text; }  // without prefix and line end
  const char* what() const noexcept override { return m_text.c_str(); }

 private:
  OraError(int code, std::string text, int) : m_code(code), m_text(std::move(text)) {}
  int m_code;
  std::string m_text;
};

}  // namespace ocimaria
