#include "runs_under_wine.h"

namespace ic::platform {

// Only a Windows program runs under wine.
bool RunsUnderWine() {
  return false;
}

}  // namespace ic::platform
