// Windows only: a DLL built as the language module is (the same entry point, the C++, GCC and
// thread run-times linked in) with nothing of the module in it but one function-local static,
// whose thread-safe initialisation goes through the thread run-time as the module's do. Loading
// and unloading it shows what the run-times alone leave on the heap per load.
#include <string>

namespace {

const std::string& Greeting() {
  static const std::string text(64, 'x');
  return text;
}

}  // namespace

extern "C" __declspec(dllexport) int UseBareModule() {
  return static_cast<int>(Greeting().size());
}
