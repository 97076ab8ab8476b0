#include <ic/platform/recursive_mutex.h>

#if defined(_WIN32) && defined(__GLIBCXX__) && defined(__GTHREAD_RECURSIVE_MUTEX_INIT) && \
    defined(_GLIBCXX_HAS_GTHREADS)
#include <pthread.h>
#define IC_FREE_RUN_TIME_MUTEX 1
#endif

namespace ic::platform {

RecursiveMutex::~RecursiveMutex() {
#if defined(IC_FREE_RUN_TIME_MUTEX)
  // The C++ run-time's destructor does nothing where the mutex has a static initialiser.
  pthread_mutex_destroy(native_handle());
#endif
}

}  // namespace ic::platform
