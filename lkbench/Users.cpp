// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Users.h"

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/VerbThread.h"

namespace lkbench {

namespace {

// What to look at when the database refuses a session.
std::string Advice(long code) {
  switch (code) {
    case 18:
      return ": use fewer users, or let the server take more connections";
    case 1017:
      return ": check the user of the target and --password";
    case 12170:
    case 12541:
      return ": is the server running, and can it be reached from here?";
    default:
      return {};
  }
}

std::string ConnectProblem(const ConnectData& connect, int number, const std::string& reason, long code) {
  return "cannot connect to " + connect.shown + (number > 1 ? " as user " + std::to_string(number) : "") +
         ": " + DatabaseText(reason) + Advice(code);
}

}  // namespace

VirtualUser::VirtualUser(int number, std::unique_ptr<CDriverBase> driver, const ConnectData& connect,
                         ErrorLog& log, CallWatch& calls)
    : m_number(number),
      m_connect(connect),
      m_log(log),
      m_calls(calls),
      m_errors(log, connect.shown),
      m_driver(std::move(driver)) {
  m_driver->AddHandler(&m_errors);
  const CallWatch::Work work = ForLkbench();
  const UserErrors::Catch caught(m_errors);
  if (!Connect())
    throw PrepareError(ConnectProblem(connect, number, caught.Text(), m_driver->GetLastErrorCode()));
}

VirtualUser::~VirtualUser() {
  const UserErrors::Catch caught(m_errors);  // a session that is lost already cannot be ended in order
  m_driver->Disconnect();
}

CallWatch::Work VirtualUser::AtWork() {
  return CallWatch::Work(m_calls, *m_driver, "user " + std::to_string(m_number));
}

CallWatch::Work VirtualUser::ForLkbench() {
  if (m_number > 1) return AtWork();
  return CallWatch::Work(m_calls, *m_driver, "lkbench's own session");
}

bool VirtualUser::Connect() {
  return m_driver->Connect(ToHost(m_connect.server), ToHost(m_connect.user), ToHost(m_connect.password)) != 0;
}

bool VirtualUser::Reopen() {
  m_driver->Disconnect();
  ForgetError();
  if (!Connect()) return false;
  m_errors.NoteNewSession();
  return true;
}

void VirtualUser::Report(const std::string& text) {
  m_log.Report(ERROR_LEVEL, "-1", text);
  m_errors.Note(-1, text);
}

LastError VirtualUser::Error() const {
  LastError error = m_errors.First();
  if (error.code == 0) error.code = m_driver->GetLastErrorCode();
  return error;
}

void VirtualUser::ForgetError() {
  m_driver->ClearLastErrorCode();
  m_errors.Forget();
}

std::string VirtualUser::ServerVersion() {
  const CallWatch::Work work = ForLkbench();
  return OneLine(m_driver->GetServerVersion().ToChar());
}

void VirtualUser::Run(const std::string& sql) {
  const CallWatch::Work work = ForLkbench();
  const CallBreaker::Scope breakable(m_calls.Breaker(), *m_driver);
  const UserErrors::Catch caught(m_errors);
  const bool done = m_driver->PrepareStatement(ToHost(sql), 0) != 0 && m_driver->ExecuteStatement(0) != 0;
  m_driver->CloseStatement();
  if (!done) Fail(caught.Text(), sql);
}

std::vector<std::vector<std::string>> VirtualUser::Query(const std::string& sql) {
  const CallWatch::Work work = ForLkbench();
  const CallBreaker::Scope breakable(m_calls.Breaker(), *m_driver);
  const UserErrors::Catch caught(m_errors);
  std::vector<std::vector<LKString>> rows;
  if (m_driver->Query(ToHost(sql), rows) == 0) Fail(caught.Text(), sql);
  std::vector<std::vector<std::string>> texts(rows.size());
  for (size_t i = 0; i < rows.size(); ++i)
    for (const LKString& column : rows[i]) texts[i].push_back(column.ToChar());
  return texts;
}

void VirtualUser::Fail(const std::string& reason, const std::string& sql) const {
  throw PrepareError(m_connect.shown + ": " + DatabaseText(reason) + " (in: " + sql.substr(0, 80) + ")");
}

void VirtualUser::RollBack() {
  const UserErrors::Catch caught(m_errors);
  if (m_driver->Rollback() == 0 && LostSession()) m_errors.NoteLoss(caught.Text());
}

bool VirtualUser::LostSession() const { return IsSessionLoss(m_driver->GetLastErrorCode()); }

std::vector<VirtualUser*> UserPool::Open(int count) {
  std::vector<VirtualUser*> users;
  for (int number = 1; number <= count; ++number) {
    if (static_cast<int>(m_users.size()) < number)
      m_users.push_back(std::make_unique<VirtualUser>(number, m_new_driver(), m_connect, m_log, m_calls));
    users.push_back(m_users[static_cast<size_t>(number - 1)].get());
  }
  return users;
}

bool UserPool::Close(std::chrono::nanoseconds patience) {
  auto users = std::make_shared<std::vector<std::unique_ptr<VirtualUser>>>(std::move(m_users));
  m_users.clear();
  return EndsWithin(patience, [users] { users->clear(); });
}

}  // namespace lkbench
