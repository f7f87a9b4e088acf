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

// Where in the library an error was made.
struct SourcePlace {
  const char* file;
  int line;
  static constexpr SourcePlace Here(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    return {file, line};
  }
};

// The server's failure that an error stands for; number 0: none.
struct ServerOrigin {
  unsigned number = 0;
  std::string text;
  bool in_block = false;
};

class OraError : public std::exception {
 public:
  // The text is the number's own (ErrorTable.h) with each "{}" replaced by the next argument.
  explicit OraError(int code, std::initializer_list<std::string_view> arguments = {},
                    SourcePlace place = SourcePlace::Here());
  // A text of the caller's own, without the "ORA-nnnnn: " in front.
  static OraError WithText(int code, std::string text, SourcePlace place = SourcePlace::Here());

  int Code() const { return m_code; }
  const std::string& Text() const { return m_text; }  // without prefix and line end
  const SourcePlace& Place() const { return m_place; }
  const ServerOrigin& Server() const { return m_server; }
  void SetServer(ServerOrigin server) { m_server = std::move(server); }
  const char* what() const noexcept override { return m_text.c_str(); }

 private:
  OraError(int code, std::string text, SourcePlace place)
      : m_code(code), m_text(std::move(text)), m_place(place) {}
  int m_code;
  std::string m_text;
  SourcePlace m_place;
  ServerOrigin m_server;
};

}  // namespace ocimaria
