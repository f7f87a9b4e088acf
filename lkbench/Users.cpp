// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Users.h"

#include <algorithm>
#include <array>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {

VirtualUser::VirtualUser(int number, std::unique_ptr<CDriverBase> driver, const ConnectData& connect,
                         ErrorLog& log)
    : m_number(number), m_log(log), m_errors(log), m_driver(std::move(driver)) {
  m_driver->AddHandler(&m_errors);
  const UserErrors::Catch caught(m_errors);
  if (m_driver->Connect(ToHost(connect.server), ToHost(connect.user), ToHost(connect.password)) == 0)
    throw PrepareError("cannot connect to " + connect.shown +
                       (number > 1 ? " as user " + std::to_string(number) : "") + ": " + caught.Text());
}

VirtualUser::~VirtualUser() {
  const UserErrors::Catch caught(m_errors);  // a session that is lost already cannot be ended in order
  m_driver->Disconnect();
}

void VirtualUser::Run(const std::string& sql) {
  const UserErrors::Catch caught(m_errors);
  const bool done = m_driver->PrepareStatement(ToHost(sql), 0) != 0 && m_driver->ExecuteStatement(0) != 0;
  m_driver->CloseStatement();
  if (!done) throw PrepareError(caught.Text() + " (in: " + sql.substr(0, 80) + ")");
}

std::vector<std::vector<std::string>> VirtualUser::Query(const std::string& sql) {
  const UserErrors::Catch caught(m_errors);
  std::vector<std::vector<LKString>> rows;
  if (m_driver->Query(ToHost(sql), rows) == 0)
    throw PrepareError(caught.Text() + " (in: " + sql.substr(0, 80) + ")");
  std::vector<std::vector<std::string>> texts(rows.size());
  for (size_t i = 0; i < rows.size(); ++i)
    for (const LKString& column : rows[i]) texts[i].push_back(column.ToChar());
  return texts;
}

void VirtualUser::RollBack() {
  const UserErrors::Catch caught(m_errors);
  m_driver->Rollback();
}

bool VirtualUser::LostSession() const {
  // Session killed, not logged on, shutdown, end of file on the channel, not connected, lost contact, TNS.
  static constexpr std::array kLost = {28, 1012, 1089, 3113, 3114, 3135, 12537, 12541, 12547, 12571};
  return std::ranges::find(kLost, m_driver->GetLastErrorCode()) != kLost.end();
}

std::vector<VirtualUser*> UserPool::Open(int count) {
  std::vector<VirtualUser*> users;
  for (int number = 1; number <= count; ++number) {
    if (static_cast<int>(m_users.size()) < number)
      m_users.push_back(std::make_unique<VirtualUser>(number, m_new_driver(), m_connect, m_log));
    users.push_back(m_users[static_cast<size_t>(number - 1)].get());
  }
  return users;
}

}  // namespace lkbench
