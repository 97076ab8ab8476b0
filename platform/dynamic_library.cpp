// The loader calls behind DynamicLibrary: the native ones on Windows, the POSIX dynamic loader
// elsewhere.
#include <ic/platform/dynamic_library.h>

#include <utility>

#if defined(_WIN32)
#include <ic/platform/internal/windows_api.h>
#else
#include <dlfcn.h>
#endif

namespace ic::platform {

namespace {

bool NamesNoFolder(const std::string& path) {
  return path.find('/') == std::string::npos && path.find('\\') == std::string::npos;
}

#if defined(_WIN32)

std::wstring Widen(const std::string& text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int count = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<size_t>(count), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), count);
  return wide;
}

std::string LastErrorText() {
  const DWORD code = GetLastError();
  char* buffer = nullptr;
  const DWORD length = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<char*>(&buffer), 0, nullptr);
  std::string text = length ? std::string(buffer, length) : "error " + std::to_string(code);
  if (buffer) LocalFree(buffer);
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
    text.pop_back();
  return text;
}

#endif

}  // namespace

DynamicLibrary& DynamicLibrary::operator=(DynamicLibrary&& other) noexcept {
  if (this != &other) {
    Unload();
    _handle = std::exchange(other._handle, nullptr);
  }
  return *this;
}

#if defined(_WIN32)

DynamicLibrary DynamicLibrary::Load(const std::string& path, std::string& error) {
  DynamicLibrary library;
  if (path.empty()) {
    error = "no library named";
    return library;
  }
  // LoadLibraryW would search the system's folders for a bare name.
  const std::wstring where = Widen(NamesNoFolder(path) ? ".\\" + path : path);
  library._handle = LoadLibraryW(where.c_str());
  if (!library._handle) error = LastErrorText();
  return library;
}

void* DynamicLibrary::FindSymbol(const char* name) const noexcept {
  if (!_handle || !name) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(_handle), name));
}

bool DynamicLibrary::Unload() noexcept {
  if (!_handle) return true;
  const BOOL freed = FreeLibrary(static_cast<HMODULE>(std::exchange(_handle, nullptr)));
  return freed != 0;
}

bool IsLibraryMapped(const std::string& path) {
  HMODULE module = nullptr;
  const std::wstring where = Widen(path);
  return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, where.c_str(), &module) !=
         0;
}

#else

DynamicLibrary DynamicLibrary::Load(const std::string& path, std::string& error) {
  DynamicLibrary library;
  if (path.empty()) {
    error = "no library named";
    return library;
  }
  // dlopen would search the library path for a name without a slash.
  const std::string where = NamesNoFolder(path) ? "./" + path : path;
  library._handle = dlopen(where.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library._handle) {
    const char* reason = dlerror();
    error = reason ? reason : "unknown error";
  }
  return library;
}

void* DynamicLibrary::FindSymbol(const char* name) const noexcept {
  if (!_handle || !name) return nullptr;
  return dlsym(_handle, name);
}

bool DynamicLibrary::Unload() noexcept {
  if (!_handle) return true;
  return dlclose(std::exchange(_handle, nullptr)) == 0;
}

bool IsLibraryMapped(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (!handle) return false;
  dlclose(handle);
  return true;
}

#endif

}  // namespace ic::platform
