// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <functional>
#include <latch>
#include <thread>
#include <vector>

#include "core/LKString.h"

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 500;

// Starts the threads at once; each runs the work for every round and says whether its text was right.
template <class Work>
int CountWrongTexts(Work work) {
  std::atomic<int> nWrong{0};
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  for (int nThread = 0; nThread < kThreads; ++nThread)
    threads.emplace_back([&, nThread] {
      start.arrive_and_wait();
      for (int nRound = 0; nRound < kRounds; ++nRound)
        if (!work(nThread, nRound)) ++nWrong;
    });
  threads.clear();
  return nWrong;
}

std::string Expected(int nThread, int nRound) {
  return "T" + std::to_string(nThread) + " where id = " + std::to_string(nRound) + "!";
}

// An argument whose rendering, within the call that renders it, does what the test says.
struct Acting {
  const std::function<void()>* pAct;
};
std::wstring_view LKFormatText(const Acting& acting) {
  (*acting.pAct)();
  return L"acted";
}

// Has many threads format an argument that looks whether another one is at it. `format` returns what the text
// must be.
template <class Format>
void ExpectTurns(Format format) {
  std::atomic<int> nInside{0};
  std::atomic<int> nMost{0};
  const std::function<void()> act = [&] {
    nMost = std::max(nMost.load(), ++nInside);
    std::this_thread::yield();
    --nInside;
  };
  const int nWrong = CountWrongTexts([&](int, int nRound) {
    LKString text;
    const std::string expected = format(text, Acting{&act}, nRound);
    return text.ToChar() == expected;
  });
  EXPECT_EQ(nWrong, 0);
  EXPECT_EQ(nMost, 1);
}

}  // namespace

TEST(FormatThreads, OfOneInstantiationTakeTurns) {
  ExpectTurns([](LKString& text, Acting acting, int nRound) {
    text.Format(L"%s %d", acting, nRound);
    return "acted " + std::to_string(nRound);
  });
}

TEST(FormatThreads, OfOneInstantiationTakeTurnsUpToTheirLastArgument) {
  ExpectTurns([](LKString& text, Acting acting, int nRound) {
    text.Format(L"%d %s", nRound, acting);
    return std::to_string(nRound) + " acted";
  });
}

// Were one lock held for all, this test would wait for itself.
TEST(FormatThreads, OfDifferentInstantiationsDoNotWaitForEachOther) {
  std::latch inside(1);
  std::latch done(1);
  const std::function<void()> act = [&] {
    inside.count_down();
    done.wait();
  };
  LKString held;
  std::jthread holder([&] { held.Format(L"%s %d", Acting{&act}, 1); });
  inside.wait();
  LKString text;
  text.Format(L"%s %d %d", "other", 2, 3);
  EXPECT_EQ(text, LKString(L"other 2 3"));
  done.count_down();
  holder.join();
  EXPECT_EQ(held, LKString(L"acted 1"));
}

// With a lock that a thread cannot take twice, this test would wait for itself.
TEST(FormatThreads, OfOneInstantiationMayNestInOneThread) {
  LKString inner;
  const std::function<void()> nothing = [] {};
  const std::function<void()> act = [&] { inner.Format(L"in: %s %d", Acting{&nothing}, 1); };
  LKString outer;
  outer.Format(L"out: %s %d!", Acting{&act}, 2);
  EXPECT_EQ(inner, LKString(L"in: acted 1"));
  EXPECT_EQ(outer, LKString(L"out: acted 2!"));
}

TEST(FormatThreads, OfOneInstantiationDoNotMixTheirMatches) {
  const int nWrong = CountWrongTexts([](int nThread, int nRound) {
    // specifiers at other places in each thread: a match of another thread would cut the format elsewhere
    const LKString padding(std::wstring(static_cast<size_t>(nThread) * 7, L' ').c_str());
    LKString text;
    text.Format(padding + L"T%d where id = %lld!", nThread, static_cast<long>(nRound));
    return text == padding + LKString(Expected(nThread, nRound).c_str(),
                                      static_cast<int>(Expected(nThread, nRound).size()));
  });
  EXPECT_EQ(nWrong, 0);
}

TEST(FormatThreads, OfDifferentInstantiationsGiveTheirOwnTexts) {
  const int nWrong = CountWrongTexts([](int nThread, int nRound) {
    LKString text;
    switch (nThread % 4) {
      case 0:
        text.Format(L"%d %d", nThread, nRound);
        return text.ToChar() == std::to_string(nThread) + " " + std::to_string(nRound);
      case 1:
        text.Format(L"%s %d %d", "x", nThread, nRound);
        return text.ToChar() == "x " + std::to_string(nThread) + " " + std::to_string(nRound);
      case 2:
        text.Format(L"%s %s %d %d", "x", "y", nThread, nRound);
        return text.ToChar() == "x y " + std::to_string(nThread) + " " + std::to_string(nRound);
      default:
        text.Format(L"%d", nRound);
        return text.ToChar() == std::to_string(nRound);
    }
  });
  EXPECT_EQ(nWrong, 0);
}
