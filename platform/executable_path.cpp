#include <ic/platform/executable_path.h>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

#include <vector>

namespace ic::platform {

namespace {

// The longest path the system hands out: the extended-length limit in UTF-16 units, and what
// Linux allows for a path.
constexpr size_t kMaxPathUnits = 32767;

}  // namespace

#if defined(_WIN32)

std::string GetExecutablePath() {
  // GetModuleFileNameW truncates a path that does not fit and then returns the buffer's size,
  // so the buffer grows until the path fits with its terminator.
  std::vector<wchar_t> buffer(260);
  DWORD length = 0;
  for (;;) {
    length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0) return std::string();
    if (length < buffer.size()) break;
    if (buffer.size() >= kMaxPathUnits) return std::string();
    buffer.resize(buffer.size() * 2 > kMaxPathUnits ? kMaxPathUnits : buffer.size() * 2);
  }
  const int bytes = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, buffer.data(),
                                        static_cast<int>(length), nullptr, 0, nullptr, nullptr);
  if (bytes <= 0) return std::string();
  std::string path(static_cast<size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, buffer.data(), static_cast<int>(length),
                      path.data(), bytes, nullptr, nullptr);
  return path;
}

#else

std::string GetExecutablePath() {
  // readlink does not terminate and does not say whether it truncated: a result that fills the
  // buffer may have been cut, so the buffer grows until the link fits with room to spare.
  std::vector<char> buffer(256);
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length <= 0) return std::string();
    if (static_cast<size_t>(length) < buffer.size()) {
      return std::string(buffer.data(), static_cast<size_t>(length));
    }
    if (buffer.size() > kMaxPathUnits) return std::string();
    buffer.resize(buffer.size() * 2);
  }
}

#endif

}  // namespace ic::platform
