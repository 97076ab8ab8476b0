// Runs a fuzz target's function over files, without libFuzzer: each argument is a file or a
// folder whose files are all run, in name order. This is how the corpora run as tests in every
// build, with any compiler. Exits non-zero when no file was found; a failed check aborts.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    const fs::path arg = argv[i];
    if (fs::is_directory(arg)) {
      for (const fs::directory_entry& entry : fs::directory_iterator(arg))
        if (entry.is_regular_file()) files.push_back(entry.path());
    } else if (fs::is_regular_file(arg)) {
      files.push_back(arg);
    } else {
      std::fprintf(stderr, "replay: no such file or folder: %s\n", argv[i]);
      return 2;
    }
  }
  if (files.empty()) {
    std::fprintf(stderr, "replay: no input files\n");
    return 2;
  }
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // A copy in a block of its own size, as libFuzzer hands it over.
    std::vector<uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
  }
  std::printf("replay: %zu inputs run\n", files.size());
  return 0;
}
