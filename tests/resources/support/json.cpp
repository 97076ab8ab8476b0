// Recursive-descent JSON reader.
#include "json.h"

#include <cstdlib>
#include <stdexcept>

#include "utf8.h"

namespace ic::test {

const JsonValue& JsonValue::operator[](const std::string& name) const {
  for (const auto& [key, value] : object) {
    if (key == name) return value;
  }
  throw std::runtime_error("no member " + name);
}

namespace {

class Parser {
 public:
  explicit Parser(const std::string& text) : _text(text) {}

  JsonValue Document() {
    JsonValue value = Value();
    SkipSpace();
    if (_at != _text.size()) Fail("text after the value");
    return value;
  }

 private:
  JsonValue Value() {
    SkipSpace();
    if (_at >= _text.size()) Fail("unexpected end");
    JsonValue value;
    const char c = _text[_at];
    if (c == '{') {
      value.type = JsonValue::Kind::Object;
      ++_at;
      SkipSpace();
      if (Take('}')) return value;
      do {
        SkipSpace();
        if (_at >= _text.size() || _text[_at] != '"') Fail("expected a member name");
        std::string name = String();
        SkipSpace();
        if (!Take(':')) Fail("expected :");
        value.object.emplace_back(std::move(name), Value());
        SkipSpace();
      } while (Take(','));
      if (!Take('}')) Fail("expected , or }");
    } else if (c == '[') {
      value.type = JsonValue::Kind::Array;
      ++_at;
      SkipSpace();
      if (Take(']')) return value;
      do {
        value.array.push_back(Value());
        SkipSpace();
      } while (Take(','));
      if (!Take(']')) Fail("expected , or ]");
    } else if (c == '"') {
      value.type = JsonValue::Kind::String;
      value.string = String();
    } else if (Literal("null")) {
      value.type = JsonValue::Kind::Null;
    } else if (Literal("true")) {
      value.type = JsonValue::Kind::Boolean;
      value.boolean = true;
    } else if (Literal("false")) {
      value.type = JsonValue::Kind::Boolean;
    } else {
      value.type = JsonValue::Kind::Number;
      value.number = Number();
    }
    return value;
  }

  double Number() {
    const size_t start = _at;
    Take('-');
    if (!Take('0') && Digits() == 0) Fail("bad number");
    if (Take('.') && Digits() == 0) Fail("bad fraction");
    if (Take('e') || Take('E')) {
      if (!Take('+')) Take('-');
      if (Digits() == 0) Fail("bad exponent");
    }
    return std::strtod(_text.substr(start, _at - start).c_str(), nullptr);
  }

  size_t Digits() {
    const size_t start = _at;
    while (_at < _text.size() && _text[_at] >= '0' && _text[_at] <= '9')
      ++_at;
    return _at - start;
  }

  std::string String() {
    ++_at;  // the opening quote
    std::string out;
    for (;;) {
      if (_at >= _text.size()) Fail("unterminated string");
      const auto c = static_cast<unsigned char>(_text[_at++]);
      if (c == '"') return out;
      if (c < 0x20) Fail("control character in a string");
      if (c != '\\') {
        out += static_cast<char>(c);
        continue;
      }
      if (_at >= _text.size()) Fail("unterminated escape");
      const char e = _text[_at++];
      switch (e) {
        case '"':
          out += '"';
          break;
        case '\\':
          out += '\\';
          break;
        case '/':
          out += '/';
          break;
        case 'b':
          out += '\b';
          break;
        case 'f':
          out += '\f';
          break;
        case 'n':
          out += '\n';
          break;
        case 'r':
          out += '\r';
          break;
        case 't':
          out += '\t';
          break;
        case 'u': {
          char32_t cp = Hex4();
          if (cp >= 0xD800 && cp <= 0xDBFF) {
            if (!Literal("\\u")) Fail("lone high surrogate");
            const char32_t low = Hex4();
            if (low < 0xDC00 || low > 0xDFFF) Fail("bad low surrogate");
            cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
          }
          AppendUtf8(out, cp);
          break;
        }
        default:
          Fail("unknown escape");
      }
    }
  }

  char32_t Hex4() {
    if (_at + 4 > _text.size()) Fail("short \\u escape");
    char32_t value = 0;
    for (int i = 0; i < 4; ++i) {
      const char h = _text[_at++];
      value <<= 4;
      if (h >= '0' && h <= '9') {
        value |= static_cast<char32_t>(h - '0');
      } else if (h >= 'a' && h <= 'f') {
        value |= static_cast<char32_t>(h - 'a' + 10);
      } else if (h >= 'A' && h <= 'F') {
        value |= static_cast<char32_t>(h - 'A' + 10);
      } else {
        Fail("bad hex digit");
      }
    }
    return value;
  }

  bool Literal(const char* word) {
    const std::string w(word);
    if (_text.compare(_at, w.size(), w) != 0) return false;
    _at += w.size();
    return true;
  }

  bool Take(char c) {
    if (_at < _text.size() && _text[_at] == c) {
      ++_at;
      return true;
    }
    return false;
  }

  void SkipSpace() {
    while (_at < _text.size() &&
           (_text[_at] == ' ' || _text[_at] == '\t' || _text[_at] == '\n' || _text[_at] == '\r')) {
      ++_at;
    }
  }

  [[noreturn]] void Fail(const std::string& what) const {
    throw std::runtime_error("JSON at offset " + std::to_string(_at) + ": " + what);
  }

  const std::string& _text;
  size_t _at = 0;
};

}  // namespace

JsonValue ParseJson(const std::string& text) {
  return Parser(text).Document();
}

}  // namespace ic::test
