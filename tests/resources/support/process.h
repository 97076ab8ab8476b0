// Runs a program and collects its exit status and both output streams.
#pragma once

#include <string>
#include <vector>

namespace ic::test {

struct ProcessResult {
  int status = -1;        ///< exit status, or -1 if the program did not exit normally
  std::string out;        ///< everything written to standard output
  std::string err;        ///< everything written to standard error
  bool timedOut = false;  ///< the program was killed at the time limit
};

/// Runs `program` with `arguments` (not including the program name), standard input closed,
/// and waits for it; with a positive `timeoutSeconds`, kills it when it runs longer.
ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         int timeoutSeconds = 0);

}  // namespace ic::test
