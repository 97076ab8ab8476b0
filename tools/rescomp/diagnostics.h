// Faults found in catalogue sources, collected in the order in which they were found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ic::rescomp {

enum class Severity { kWarning, kError };

struct Diagnostic {
  Severity severity = Severity::kError;
  std::string file;  // the source file as the compiler names it
  long line = 0;     // 1-based; 0 when the fault has no line
  std::string message;
};

// `text` between single quotes, as names stand in messages.
std::string Quote(std::string_view text);

// Formats a diagnostic as one line without the line end: "FILE(LINE): error: MESSAGE", or
// "FILE: error: MESSAGE" when it has no line; "warning" for a warning.
std::string FormatDiagnostic(const Diagnostic& diagnostic);

class Diagnostics {
 public:
  void Error(std::string file, long line, std::string message);
  void Warning(std::string file, long line, std::string message);

  const std::vector<Diagnostic>& All() const { return all_; }
  int ErrorCount() const { return errors_; }

 private:
  std::vector<Diagnostic> all_;
  int errors_ = 0;
};

}  // namespace ic::rescomp
