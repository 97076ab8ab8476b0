#include "diagnostics.h"

#include <utility>

namespace ic::rescomp {

std::string Quote(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 2);
  out += '\'';
  out += text;
  out += '\'';
  return out;
}

std::string FormatDiagnostic(const Diagnostic& diagnostic) {
  std::string out = diagnostic.file;
  if (diagnostic.line > 0) {
    out += '(';
    out += std::to_string(diagnostic.line);
    out += ')';
  }
  out += diagnostic.severity == Severity::kError ? ": error: " : ": warning: ";
  out += diagnostic.message;
  return out;
}

void Diagnostics::Error(std::string file, long line, std::string message) {
  all_.push_back({Severity::kError, std::move(file), line, std::move(message)});
  ++errors_;
}

void Diagnostics::Warning(std::string file, long line, std::string message) {
  all_.push_back({Severity::kWarning, std::move(file), line, std::move(message)});
}

}  // namespace ic::rescomp
