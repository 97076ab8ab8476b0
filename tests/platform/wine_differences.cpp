#include "wine_differences.h"

#include <cstdio>

namespace ic::platform {

void WineDifferences::Add(const std::string& name, const std::string& example) {
  Entry& entry = _entries[name];
  if (entry.count++ == 0) entry.example = example;
}

int WineDifferences::Count(const std::string& name) const {
  const auto found = _entries.find(name);
  return found == _entries.end() ? 0 : found->second.count;
}

void WineDifferences::Print(const char* compared) const {
  for (const auto& [name, entry] : _entries)
    std::printf("[ wine     ] %s: %s: %d inputs, first: %s\n", compared, name.c_str(), entry.count,
                entry.example.c_str());
}

}  // namespace ic::platform
