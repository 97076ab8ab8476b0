// Windows only: the bookkeeping of the differential tests for where wine departs from what
// Windows documents. Such a difference is recorded under its name with its first input and
// printed; it counts as wine's, not as agreement, and a test accepts it only under wine.
#pragma once

#include <map>
#include <string>

#include "runs_under_wine.h"

namespace ic::platform {

/// Differences seen, by name, with their count and first input.
class WineDifferences {
 public:
  void Add(const std::string& name, const std::string& example);
  int Count(const std::string& name) const;
  /// Prints one line per difference: what was compared, the name, the count, the first input.
  void Print(const char* compared) const;

 private:
  struct Entry {
    int count = 0;
    std::string example;
  };
  std::map<std::string, Entry> _entries;
};

}  // namespace ic::platform
