// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <filesystem>
#include <semaphore>
#include <thread>

#include "Fakes.h"

namespace lkbench {
namespace {

using namespace std::chrono_literals;

std::ptrdiff_t Threads() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

class UserPoolTest : public testing::Test {
 protected:
  Console m_console;
  ErrorLog m_log{m_console};
  HostSetUp m_host{m_console, m_log};
  Diary m_diary;
  std::function<void()> m_disconnect;
  CallBreaker m_breaker;
  CallWatch m_calls{m_breaker};
  UserPool m_pool{[this] {
                    auto driver = std::make_unique<FakeDriver>(m_diary);
                    driver->m_disconnect = m_disconnect;
                    return driver;
                  },
                  {"fake", "fake", "", ""},
                  m_log,
                  m_calls};
};

TEST_F(UserPoolTest, EndsEverySession) {
  std::atomic<int> ended = 0;
  m_disconnect = [&] { ++ended; };
  m_pool.Open(3);
  EXPECT_TRUE(m_pool.Close(1min));
  EXPECT_EQ(ended, 3);
}

TEST_F(UserPoolTest, DoesNotWaitForEverForASessionThatDoesNotEnd) {
  std::binary_semaphore go{0};
  m_disconnect = [&] { go.acquire(); };
  m_pool.Open(1);
  const auto before = Threads();
  EXPECT_FALSE(m_pool.Close(20ms));
  go.release();
  while (Threads() > before) std::this_thread::sleep_for(1ms);  // it uses what belongs to this test
}

}  // namespace
}  // namespace lkbench
