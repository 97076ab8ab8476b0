// icres get's substitution of {name} parameters: the listing and the substitution of arbitrary
// message texts, with values for every parameter, with one value too many and with one
// missing. The substituted text is compared with a plain left-to-right reading written here.
#include <cstdint>
#include <map>
#include <string>

#include "fuzz_input.h"
#include "substitute.h"

namespace {

using ic::icres::SubstitutionFault;

bool NameUnit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '.';
}

std::string Reference(const std::string& text, const std::map<std::string, std::string>& values) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    if (text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '{' || text[i + 1] == '}')) {
      out += text[i + 1];
      i += 2;
      continue;
    }
    if (text[i] == '{') {
      size_t end = i + 1;
      while (end < text.size() && NameUnit(text[end]))
        ++end;
      if (end > i + 1 && end < text.size() && text[end] == '}') {
        out += values.at(text.substr(i + 1, end - i - 1));
        i = end + 1;
        continue;
      }
    }
    out += text[i++];
  }
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  const std::string value = input.Text(16);
  const std::string text = input.Rest();
  const std::vector<std::string> names = ic::icres::ListParameters(text);
  std::map<std::string, std::string> values;
  for (size_t i = 0; i < names.size(); ++i)
    values[names[i]] = value + std::to_string(i);

  const ic::icres::SubstitutionResult all = ic::icres::Substitute(text, values);
  IC_FUZZ_CHECK(all.fault == SubstitutionFault::None);
  IC_FUZZ_CHECK(all.text == Reference(text, values));

  std::map<std::string, std::string> extra = values;
  extra["{not a name}"] = value;
  IC_FUZZ_CHECK(ic::icres::Substitute(text, extra).fault == SubstitutionFault::UnknownParameter);

  if (!names.empty()) {
    std::map<std::string, std::string> missing = values;
    missing.erase(names.back());
    const ic::icres::SubstitutionResult result = ic::icres::Substitute(text, missing);
    IC_FUZZ_CHECK(result.fault == SubstitutionFault::MissingValue);
    IC_FUZZ_CHECK(result.name == names.back());
  }
  return 0;
}
