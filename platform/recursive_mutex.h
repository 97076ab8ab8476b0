// A standard recursive mutex that gives back, when it is destroyed, what the thread run-time set
// aside for it.
//
// With MinGW's POSIX thread run-time, a std::recursive_mutex is allocated by the run-time on its
// first lock, and its destructor (trivial in the C++ run-time) never frees it, so a DLL that holds
// one and is loaded and unloaded again and again would leave that allocation behind each time.
// This type frees it. Elsewhere it is a std::recursive_mutex and nothing more.
#pragma once

#include <mutex>

#include <ic/platform/export.h>

namespace ic::platform {

class IC_API RecursiveMutex : public std::recursive_mutex {
 public:
  RecursiveMutex() = default;
  ~RecursiveMutex();
  RecursiveMutex(const RecursiveMutex&) = delete;
  RecursiveMutex& operator=(const RecursiveMutex&) = delete;
};

}  // namespace ic::platform
