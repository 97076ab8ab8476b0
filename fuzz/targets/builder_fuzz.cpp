// The string builder and concatenation chains. A run of Add calls coded in the input goes
// through the builder twice, measuring and then writing, on a target that may already hold
// text; the text and the counts are compared with a std::string built alongside. Chains of
// strings, texts and units, some naming the target itself, are compared with std::string
// concatenation.
#include <cstdint>
#include <string>
#include <vector>

#include <ic/string/builder.h>
#include <ic/string/chain.h>
#include <ic/string/ic_string.h>
#include <ic/string/utf8.h>

#include "fuzz_input.h"

namespace {

using ic::fuzz::FuzzInput;

template <class S>
std::string TextOf(const S& s) {
  return std::string(s.GetText(), static_cast<size_t>(s.GetLength()));
}

// One Add call of the run, as read from the input.
struct AddCall {
  int kind = 0;
  std::string text;
  uint32_t code = 0;
};

std::vector<AddCall> ReadCalls(FuzzInput& input) {
  std::vector<AddCall> calls;
  while (!input.Empty() && calls.size() < 48) {
    AddCall call;
    call.kind = input.Int(0, 4);
    if (call.kind == 3) {
      call.code = static_cast<uint32_t>(input.Int(0, 0x7fffffff)) % 0x120000;
    } else {
      call.text = input.Text(40);
      call.text = call.text.substr(0, call.text.find('\0'));
    }
    calls.push_back(call);
  }
  return calls;
}

// What each call adds when writing, and what it counts when measuring.
void Expect(const AddCall& call, std::string& text, int32_t& measured) {
  switch (call.kind) {
    case 3: {
      char bytes[4];
      char* cursor = bytes;
      if (call.code != 0) {
        measured += ic::GetUTF8CodePointSize(call.code);
        if (ic::EncodeCodePoint(cursor, call.code)) text.append(bytes, cursor);
      }
      return;
    }
    case 4: {
      const unsigned char byte = call.text.empty() ? 0 : static_cast<unsigned char>(call.text[0]);
      if (byte == 0) return;
      char bytes[4];
      char* cursor = bytes;
      ic::EncodeCodePoint(cursor, byte);  // Latin-1
      text.append(bytes, cursor);
      measured += static_cast<int32_t>(cursor - bytes);
      return;
    }
    case 1:  // a range of half the text
      text += call.text.substr(0, call.text.size() / 2);
      measured += static_cast<int32_t>(call.text.size() / 2);
      return;
    default:
      text += call.text;
      measured += static_cast<int32_t>(call.text.size());
      return;
  }
}

template <class S>
void Apply(ic::ICStringBuilder<S>& b, const AddCall& call) {
  switch (call.kind) {
    case 0:
      b.Add(call.text.c_str());
      break;
    case 1:
      b.Add(ic::ICStringRange{call.text.c_str(), static_cast<int32_t>(call.text.size() / 2)});
      break;
    case 2:
      b.Add(ic::ICStringShared(call.text.c_str()));
      break;
    case 3:
      b.Add(static_cast<char32_t>(call.code));
      break;
    default:
      b.Add(call.text.empty() ? '\0' : call.text[0]);
      break;
  }
}

template <class S>
void CheckBuilder(const std::string& start, const std::vector<AddCall>& calls, int32_t hint) {
  S target(start.c_str(), static_cast<int32_t>(start.size()));
  const S other = target;  // a shared target must leave this owner's text alone
  ic::ICStringBuilder<S> b{&target, target.GetLength(), hint, false};
  std::string expected = start;
  int32_t measured = static_cast<int32_t>(start.size());
  for (const AddCall& call : calls) {
    Apply(b, call);
    Expect(call, expected, measured);
  }
  IC_FUZZ_CHECK(b.Count == measured);
  IC_FUZZ_CHECK(TextOf(target) == start);
  b.Count = target.GetLength();
  b.Writing = true;
  for (const AddCall& call : calls)
    Apply(b, call);
  IC_FUZZ_CHECK(b.Count == static_cast<int32_t>(expected.size()));
  IC_FUZZ_CHECK(TextOf(target) == expected);
  IC_FUZZ_CHECK(TextOf(other) == start);
}

template <class S>
void CheckChains(const std::string& x, const std::string& y, const std::string& z) {
  S a(x.c_str(), static_cast<int32_t>(x.size()));
  const ic::ICStringShared b(y.c_str());
  const ic::ICStringUnique c(z.c_str());
  IC_FUZZ_CHECK(TextOf(S(a + b)) == x + y);
  IC_FUZZ_CHECK(TextOf(S(a + b + c)) == x + y + z);
  IC_FUZZ_CHECK(TextOf(S(b + z.c_str() + a + 'q')) == y + z + x + 'q');
  // The target inside its own chain.
  a.Append(a + b + a);
  IC_FUZZ_CHECK(TextOf(a) == x + x + y + x);
  a.Assign(c + a + c);
  IC_FUZZ_CHECK(TextOf(a) == z + x + x + y + x + z);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput input(data, size);
  const int shape = input.Int(0, 1);
  const int32_t hint = input.Int(0, 64);
  std::string start = input.Text(40);
  start = start.substr(0, start.find('\0'));
  std::string y = input.Text(20);
  y = y.substr(0, y.find('\0'));
  const std::vector<AddCall> calls = ReadCalls(input);
  if (shape == 0) {
    CheckBuilder<ic::ICStringUnique>(start, calls, hint);
    CheckChains<ic::ICStringUnique>(start, y, calls.empty() ? "" : calls[0].text);
  } else {
    CheckBuilder<ic::ICStringShared>(start, calls, hint);
    CheckChains<ic::ICStringShared>(start, y, calls.empty() ? "" : calls[0].text);
  }
  return 0;
}
