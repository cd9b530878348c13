// Threads and manual-reset events over the standard library.
#include "platform/thr.hh"

#include "platform/msg.hh"

#include <chrono>
#include <exception>
#include <memory>
#include <system_error>
#include <thread>

namespace {
// Shared by the handle and the running thread, so that a thread may close its
// own handle without the thread touching freed memory afterwards.
struct THR_STATE {
  std::mutex mutex;
  std::condition_variable ended_cond;
  bool ended = false;
};
}  // namespace

struct THR_THREAD {
  std::thread thread;
  std::shared_ptr<THR_STATE> state = std::make_shared<THR_STATE>();
};

THR_THREAD* thr_thread_create(THR_THREAD_PROC proc, void* param) {
  if (proc == nullptr) return nullptr;
  auto* handle = new THR_THREAD;
  try {
    handle->thread = std::thread([state = handle->state, proc, param] {
      // An exception must not take the whole program down through
      // std::terminate: it is a broken invariant of the thread's procedure.
      try {
        proc(param);
      } catch (const std::exception& error) {
        msg_internal_error(error.what(), "thr", __LINE__);
      } catch (...) {
        msg_internal_error("unknown exception in thread procedure", "thr", __LINE__);
      }
      std::lock_guard<std::mutex> lock(state->mutex);
      state->ended = true;
      state->ended_cond.notify_all();
    });
  } catch (const std::system_error&) {
    delete handle;
    return nullptr;
  }
  return handle;
}

bool thr_thread_wait(THR_THREAD* thread, int timeout_ms) {
  if (thread == nullptr) return true;
  THR_STATE& state = *thread->state;
  std::unique_lock<std::mutex> lock(state.mutex);
  if (timeout_ms < 0) {
    state.ended_cond.wait(lock, [&state] { return state.ended; });
    return true;
  }
  return state.ended_cond.wait_for(lock, std::chrono::milliseconds(timeout_ms),
                                   [&state] { return state.ended; });
}

void thr_thread_close(THR_THREAD* thread) {
  if (thread == nullptr) return;
  if (thread->thread.joinable()) {
    if (thread->thread.get_id() == std::this_thread::get_id())
      thread->thread.detach();  // closing one's own handle: nothing to wait for
    else
      thread->thread.join();
  }
  delete thread;
}

void THR_EVENT::post() {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_posted = true;
  m_cond.notify_all();
}

void THR_EVENT::reset() {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_posted = false;
}

bool THR_EVENT::is_posted() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_posted;
}

bool THR_EVENT::wait(int timeout_ms) {
  std::unique_lock<std::mutex> lock(m_mutex);
  if (timeout_ms < 0) {
    m_cond.wait(lock, [this] { return m_posted; });
    return true;
  }
  return m_cond.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return m_posted; });
}
