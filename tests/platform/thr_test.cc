// Threads with waits and timeouts, and manual-reset events.
#include "platform/thr.hh"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using CLOCK = std::chrono::steady_clock;

TEST(ThrThread, WaitTimesOutWhileRunningAndSucceedsAfterEnd) {
  THR_EVENT release;
  THR_THREAD* thread = thr_thread_create(
      [](void* param) -> unsigned {
        static_cast<THR_EVENT*>(param)->wait(-1);
        return 0;
      },
      &release);
  ASSERT_NE(thread, nullptr);
  auto start = CLOCK::now();
  EXPECT_FALSE(thr_thread_wait(thread, 100));
  EXPECT_GE(CLOCK::now() - start, std::chrono::milliseconds(90));
  release.post();
  EXPECT_TRUE(thr_thread_wait(thread, 5000));
  EXPECT_TRUE(thr_thread_wait(thread, 0));  // stays ended until closed
  thr_thread_close(thread);
}

TEST(ThrThread, ProcedureRunsWithItsParameterAndCloseJoins) {
  std::atomic<int> value{0};
  THR_THREAD* thread = thr_thread_create(
      [](void* param) -> unsigned {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        static_cast<std::atomic<int>*>(param)->store(42);
        return 0;
      },
      &value);
  ASSERT_NE(thread, nullptr);
  thr_thread_close(thread);  // without a prior wait: must still join
  EXPECT_EQ(value.load(), 42);
  EXPECT_EQ(thr_thread_create(nullptr, nullptr), nullptr);
}

TEST(ThrEvent, StaysPostedUntilResetAndWaitTimesOut) {
  THR_EVENT event;
  EXPECT_FALSE(event.is_posted());
  auto start = CLOCK::now();
  EXPECT_FALSE(thr_event_wait(&event, 80));
  EXPECT_GE(CLOCK::now() - start, std::chrono::milliseconds(70));
  thr_event_post(&event);
  EXPECT_TRUE(thr_event_wait(&event, 0));
  EXPECT_TRUE(thr_event_wait(&event, 0));  // manual reset: still posted
  thr_event_reset(&event);
  EXPECT_FALSE(thr_event_wait(&event, 0));
}

TEST(ThrEvent, PostFromAnotherThreadWakesAllWaiters) {
  THR_EVENT event;
  std::atomic<int> woken{0};
  std::thread a([&] { woken += event.wait(5000) ? 1 : 0; });
  std::thread b([&] { woken += event.wait(-1) ? 1 : 0; });
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  event.post();
  a.join();
  b.join();
  EXPECT_EQ(woken.load(), 2);
}

}  // namespace
