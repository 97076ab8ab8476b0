// Loading a shared library at run time: LoadLibraryW, GetProcAddress and FreeLibrary on Windows,
// dlopen, dlsym and dlclose elsewhere. Hosts of the language module (icres, the tests) use it;
// the text library itself does not, so it lives in a small library of its own
// (target ic_dynamic_library).
#pragma once

#include <string>

namespace ic::platform {

/// A loaded shared library. Moving passes the handle on; destruction unloads it.
class DynamicLibrary {
 public:
  DynamicLibrary() noexcept = default;
  ~DynamicLibrary() { Unload(); }
  DynamicLibrary(DynamicLibrary&& other) noexcept : _handle(other._handle) {
    other._handle = nullptr;
  }
  DynamicLibrary& operator=(DynamicLibrary&& other) noexcept;
  DynamicLibrary(const DynamicLibrary&) = delete;
  DynamicLibrary& operator=(const DynamicLibrary&) = delete;

  /// Loads the library at `path` (UTF-8), resolving all its symbols now and keeping them out of
  /// the global namespace. A path that names no folder is taken relative to the working
  /// directory, not searched for along the system's library path. On failure the object stays
  /// empty and `error` receives the loader's reason in one line; an empty path fails.
  static DynamicLibrary Load(const std::string& path, std::string& error);

  /// True while a library is loaded.
  bool IsLoaded() const noexcept { return _handle != nullptr; }

  /// The address of the exported function `name`, or null if it is not exported or nothing is
  /// loaded.
  void* FindSymbol(const char* name) const noexcept;

  /// The exported function `name` as a pointer of type `Function`, or null.
  template <class Function>
  Function Find(const char* name) const noexcept {
    return reinterpret_cast<Function>(FindSymbol(name));
  }

  /// Unloads the library; true if the loader reported no fault, and true when nothing is loaded.
  bool Unload() noexcept;

 private:
  void* _handle = nullptr;
};

/// True if the library at `path` is mapped into this process now, without loading it.
bool IsLibraryMapped(const std::string& path);

}  // namespace ic::platform
