// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Breaker.h"

#include <chrono>

#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

constexpr std::chrono::milliseconds kResend{10};

struct SharedBreaker {
  std::mutex mutex;
  std::weak_ptr<Breaker> breaker;
};

}  // namespace

std::shared_ptr<Breaker> Breaker::Shared() {
  static auto& shared = *new SharedBreaker;  // outlives every environment, freed or not
  std::lock_guard lock(shared.mutex);
  auto breaker = shared.breaker.lock();
  if (!breaker) shared.breaker = breaker = std::make_shared<Breaker>();
  return breaker;
}

Breaker::~Breaker() {
  {
    std::lock_guard lock(m_mutex);
    m_ending = true;
  }
  m_wake.notify_one();
  if (m_thread.joinable()) m_thread.join();
}

void Breaker::Break(const std::shared_ptr<Connection>& connection) {
  const std::uint64_t call = connection->Calls().RequestBreak();
  if (call == 0) return;
  trace::ConnectionEvent(connection->Id(), "interrupt wanted");
  {
    std::lock_guard lock(m_mutex);
    m_requests.push_back({connection, call});
    if (!m_thread.joinable()) m_thread = std::thread([this] { Work(); });
  }
  m_wake.notify_one();
}

void Breaker::Work() {
  std::vector<Request> open;
  std::unique_lock lock(m_mutex);
  while (!m_ending) {
    const auto wanted = [this] { return m_ending || !m_requests.empty(); };
    if (open.empty())
      m_wake.wait(lock, wanted);
    else
      m_wake.wait_for(lock, kResend, wanted);
    open.insert(open.end(), m_requests.begin(), m_requests.end());
    m_requests.clear();
    lock.unlock();
    std::erase_if(open, [this](const Request& request) { return !Serve(request); });
    lock.lock();
  }
}

// The control connection is made before the call is asked to stay in its window: only the kill itself may
// hold a call up. A failure here is no failure of the call: the next attempt connects anew.
bool Breaker::Serve(const Request& request) {
  const auto victim = request.connection.lock();
  if (!victim) return false;
  auto& control = m_controls[{victim->ServerName(), victim->Account().user}];
  try {
    if (!control)
      control =
          std::make_unique<Connection>(victim->Target(), victim->Account(), Connection::Purpose::kControl);
    return victim->Calls().KillIfRunning(request.call,
                                         [&] { control->Run("KILL QUERY " + std::to_string(victim->Id())); });
  } catch (const ServerFailure&) {
    if (control->Lost()) control.reset();
  } catch (const OraError&) {
    control.reset();
  }
  return victim->Calls().IsRunning(request.call);
}

}  // namespace ocimaria
