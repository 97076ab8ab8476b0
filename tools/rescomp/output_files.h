// Replaces a set of output files together, so that a failed run leaves no half-written file
// and no output of an earlier run changed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ic::rescomp {

class OutputFiles {
 public:
  // Adds a file to write; nothing is written before Commit.
  void Add(std::filesystem::path target, std::string content);

  // Writes each file to a temporary in its target's directory, then renames the temporaries
  // over the targets. When a temporary cannot be written, every temporary is removed, no
  // target is touched, the path of the file that failed goes to `failed`, and the result is
  // false. (A rename that fails after earlier ones succeeded leaves those in place.)
  bool Commit(std::string& failed);

 private:
  struct Pending {
    std::filesystem::path target;
    std::string content;
    std::filesystem::path temporary;
  };
  std::vector<Pending> files_;
};

}  // namespace ic::rescomp
