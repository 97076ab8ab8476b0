// Editing: a sequence of edits coded in the input bytes, applied to the unique, shared and view
// shapes and to a std::string model (the model of the unit tests), compared after every edit.
// Each input byte is one choice (which edit, positions, texts); the shape comes first.
#include <cstdint>
#include <string>

#include <ic/string/ic_string.h>

#include "edit_model.h"
#include "fuzz_input.h"

namespace {

// The choices of an edit run, read from the input.
class ByteChoices {
 public:
  explicit ByteChoices(ic::fuzz::FuzzInput& input) : _input(input) {}
  int Pick(int low, int high) { return _input.Int(low, high); }
  std::string RandomText(int maxLength) { return ic::test::ModelText(*this, maxLength); }

 private:
  ic::fuzz::FuzzInput& _input;
};

template <class S>
void Run(ic::fuzz::FuzzInput& input) {
  ByteChoices choices(input);
  ic::test::EditRun<S, ByteChoices> run(choices, choices.RandomText(40));
  // At most 64 edits, and none once the text has passed 256 KiB: a text may double per edit
  // (an edit that inserts the text into itself), and 25 doublings would take every input to
  // hundreds of megabytes and seconds without reaching any new code.
  constexpr size_t kLongestText = 256 * 1024;
  for (int step = 0; step < 64 && !input.Empty() && run.Longest() <= kLongestText; ++step) {
    const std::string fault = run.Step();
    if (!fault.empty()) ic::fuzz::Fail(fault.c_str());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ic::fuzz::FuzzInput input(data, size);
  switch (input.Byte() % 3) {
    case 0:
      Run<ic::ICStringUnique>(input);
      break;
    case 1:
      Run<ic::ICStringShared>(input);
      break;
    default:
      Run<ic::ICStringView>(input);
      break;
  }
  return 0;
}
