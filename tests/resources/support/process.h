// Runs a program and collects its exit status and both output streams.
#pragma once

#include <string>
#include <vector>

namespace ic::test {

struct ProcessResult {
  int Status = -1;  ///< exit status, or -1 if the program did not exit normally
  std::string Out;  ///< everything written to standard output
  std::string Err;  ///< everything written to standard error
};

/// Runs `program` with `arguments` (not including the program name), standard input closed,
/// and waits for it.
ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace ic::test
