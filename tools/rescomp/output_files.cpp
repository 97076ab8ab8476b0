#include "output_files.h"

#include <fstream>
#include <random>
#include <system_error>
#include <utility>

namespace ic::rescomp {

namespace fs = std::filesystem;

namespace {

// A name beside `target` that no file has yet: ".NAME.XXXXXXXX.tmp".
fs::path TemporaryFor(const fs::path& target) {
  static std::mt19937 random{std::random_device{}()};
  static constexpr char kHex[] = "0123456789abcdef";
  for (;;) {
    std::string suffix;
    for (int i = 0; i < 8; ++i)
      suffix.push_back(kHex[random() & 0xF]);
    std::string name = ".";
    name += target.filename().string();
    name += '.';
    name += suffix;
    name += ".tmp";
    fs::path candidate = target.parent_path() / name;
    std::error_code error;
    if (!fs::exists(candidate, error) && !error) return candidate;
    if (error) return candidate;  // the write will fail and report the directory
  }
}

bool WriteFile(const fs::path& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  return !out.fail();
}

}  // namespace

void OutputFiles::Add(fs::path target, std::string content) {
  files_.push_back({std::move(target), std::move(content), {}});
}

bool OutputFiles::Commit(std::string& failed) {
  auto removeTemporaries = [this] {
    for (Pending& file : files_) {
      if (file.temporary.empty()) continue;
      std::error_code ignored;
      fs::remove(file.temporary, ignored);
      file.temporary.clear();
    }
  };
  for (Pending& file : files_) {
    file.temporary = TemporaryFor(file.target);
    if (!WriteFile(file.temporary, file.content)) {
      failed = file.target.string();
      removeTemporaries();
      return false;
    }
  }
  for (Pending& file : files_) {
    std::error_code error;
    fs::rename(file.temporary, file.target, error);
    if (error) {
      failed = file.target.string();
      removeTemporaries();
      return false;
    }
    file.temporary.clear();
  }
  return true;
}

}  // namespace ic::rescomp
