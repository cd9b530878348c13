// Threads and event objects for the engine link: one reader thread per engine
// process, and events that threads post and wait for.
#pragma once

#include <condition_variable>
#include <mutex>

using THR_THREAD_PROC = unsigned (*)(void* param);
struct THR_THREAD;  // opaque

// Starts a thread running proc(param). Null when it cannot be made.
THR_THREAD* thr_thread_create(THR_THREAD_PROC proc, void* param);
// Waits for the thread to end: timeout_ms < 0 waits without limit. True when it
// has ended (its handle stays valid until thr_thread_close).
bool thr_thread_wait(THR_THREAD* thread, int timeout_ms);
// Joins (if it ended or after waiting for it) and frees the handle.
void thr_thread_close(THR_THREAD* thread);

// A manual-reset event: once posted it stays posted until reset.
class THR_EVENT {
 public:
  void post();
  void reset();
  bool is_posted() const;
  // Waits until posted: timeout_ms < 0 waits without limit. True when posted.
  bool wait(int timeout_ms);

 private:
  mutable std::mutex m_mutex;
  std::condition_variable m_cond;
  bool m_posted = false;
};

inline void thr_event_post(THR_EVENT* event) { event->post(); }
inline void thr_event_reset(THR_EVENT* event) { event->reset(); }
inline bool thr_event_wait(THR_EVENT* event, int timeout_ms) { return event->wait(timeout_ms); }
