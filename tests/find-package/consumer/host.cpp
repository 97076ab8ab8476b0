// A host of the language module, built from the installed package alone (with CMake or with
// pkg-config): it loads the module at run time, walks the chain of catalogues, sets the
// language, reads xml/wfc_GIMatch and substitutes its parameters by name. The module's path is
// the first argument. Prints the message and exits with 0 when every step gave what it should.
#include <dlfcn.h>

#include <cstdio>
#include <string>
#include <string_view>

#include <ic/msg/xml.h>
#include <ic/resources/host_api.h>
#include <ic/resources/manager.h>
#include <ic/resources/message_key.h>
#include <ic/string/utf_convert.h>

namespace {

using namespace ic::resources;

int Fail(const char* step) {
  std::fprintf(stderr, "host: %s\n", step);
  return 1;
}

template <class Function>
Function Export(void* module, const char* name) {
  return reinterpret_cast<Function>(dlsym(module, name));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return Fail("usage: host MODULE");
  void* module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (!module) return Fail(dlerror());
  const auto getFirst =
      Export<GetFirstResourceStringLibraryFn>(module, "GetFirstResourceStringLibrary");
  const auto setLanguage = Export<SetResourceLanguageFn>(module, "SetResourceLanguage");
  const auto getLanguage = Export<GetResourceLanguageFn>(module, "GetResourceLanguage");
  if (!getFirst || !setLanguage || !getLanguage) return Fail("the module lacks its exports");

  // The chain: thirteen catalogues, gui at the head and os at the tail.
  const ResourceStringLibrary* first = getFirst();
  int catalogues = 0;
  std::u16string_view last;
  for (const ResourceStringLibrary* record = first; record && catalogues < 100;
       record = record->Next) {
    ++catalogues;
    last = record->Name;
  }
  if (catalogues != 13 || std::u16string_view(first->Name) != u"gui" || last != u"os") {
    return Fail("the chain is not the thirteen catalogues from gui to os");
  }
  // The runtime linked into the host (ic::resources) reads the module's records as well.
  if (!FindLibraryFrom(getFirst(), u"xml")) return Fail("FindLibraryFrom finds no xml");

  // The language, through the module's manager; the host's own table agrees on its index.
  setLanguage(u"ZH");
  char16_t code[8] = {};
  if (getLanguage(true, code, 8) != 0 || std::u16string_view(code) != u"zh") {
    return Fail("the module's language is not zh");
  }
  if (GetLanguageIndex(code) != 3) return Fail("GetLanguageIndex(zh) is not 3");

  // The message, by its key constant, with its parameters by name.
  using namespace ic::resources::literals;
  const char16_t* text = FindMessageText(getFirst(), ic::msg::xml::wfc_GIMatch);
  if (!text) return Fail("xml/wfc_GIMatch is missing");
  const std::u16string shown =
      Substitute(ic::msg::xml::wfc_GIMatch, text, "etag"_param = u"b", "stag"_param = u"a");
  if (shown != u"结束标记名称b与开始标记名称a不匹配。")
    return Fail("the substituted message differs");
  std::puts(ic::ConvertToUTF8(shown.c_str()).GetText());
  return dlclose(module) == 0 ? 0 : Fail("dlclose failed");
}
