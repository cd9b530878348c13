// Threads with waits and timeouts, and manual-reset events.
#include "platform/thr.hh"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

TEST(ThrThread, WaitTimesOutWhileRunningAndSucceedsAfterEnd) {
  THR_EVENT release;
  THR_THREAD* thread = thr_thread_create(
      [](void* param) -> unsigned { return static_cast<THR_EVENT*>(param)->wait(-1) ? 0 : 1; },
      &release);
  ASSERT_NE(thread, nullptr);
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(thr_thread_wait(thread, 100));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
  release.post();
  EXPECT_TRUE(thr_thread_wait(thread, 5000));
  EXPECT_TRUE(thr_thread_wait(thread, 0));  // stays ended until closed
  thr_thread_close(thread);
}

TEST(ThrEvent, StaysPostedUntilResetAndWakesEveryWaiter) {
  THR_EVENT event;
  EXPECT_FALSE(thr_event_wait(&event, 50));
  std::atomic<int> woken{0};
  std::thread a([&] { woken += event.wait(5000) ? 1 : 0; });
  std::thread b([&] { woken += event.wait(-1) ? 1 : 0; });
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  thr_event_post(&event);
  a.join();
  b.join();
  EXPECT_EQ(woken.load(), 2);
  EXPECT_TRUE(thr_event_wait(&event, 0));  // manual reset: still posted
  thr_event_reset(&event);
  EXPECT_FALSE(event.is_posted());
}

}  // namespace
