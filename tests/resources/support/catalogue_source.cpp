// A small reader of exactly the XML subset the catalogue sources use.
#include "catalogue_source.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "utf8.h"

namespace ic::test {

namespace {

class Reader {
 public:
  Reader(std::string text, std::string path) : _text(std::move(text)), _path(std::move(path)) {}

  std::vector<SourceModule> Read() {
    std::vector<SourceModule> modules;
    SkipMisc();
    if (Peek("<?xml")) {
      SkipPast("?>");
      SkipMisc();
    }
    ExpectStartTag("resources");
    for (;;) {
      SkipMisc();
      if (Peek("</resources")) break;
      std::map<std::string, std::string> attributes;
      bool empty = false;
      const std::string tag = StartTag(attributes, empty);
      if (tag != "module") Fail("unexpected element <" + tag + ">");
      SourceModule module;
      module.name = Required(attributes, "name");
      if (!empty) ReadModuleBody(module);
      modules.push_back(std::move(module));
    }
    return modules;
  }

 private:
  void ReadModuleBody(SourceModule& module) {
    for (;;) {
      SkipMisc();
      if (Peek("</module")) {
        SkipPast(">");
        return;
      }
      std::map<std::string, std::string> attributes;
      bool empty = false;
      const std::string tag = StartTag(attributes, empty);
      if (tag != "string") Fail("unexpected element <" + tag + "> in a module");
      SourceString string;
      string.key = Required(attributes, "name");
      if (!empty) string.text = ResolveEscapes(ReadTextUntil("</string"));
      if (!empty) SkipPast(">");
      module.strings.push_back(std::move(string));
    }
  }

  // Character data up to `end`, entities resolved; comments inside are skipped.
  std::string ReadTextUntil(const std::string& end) {
    std::string out;
    while (!Peek(end)) {
      if (_at >= _text.size()) Fail("missing " + end);
      if (Peek("<!--")) {
        SkipPast("-->");
      } else if (Peek("<![CDATA[")) {
        _at += 9;
        const size_t close = _text.find("]]>", _at);
        if (close == std::string::npos) Fail("unterminated CDATA");
        out += _text.substr(_at, close - _at);
        _at = close + 3;
      } else if (_text[_at] == '<') {
        Fail("markup inside a string");
      } else if (_text[_at] == '&') {
        out += Entity();
      } else {
        out += _text[_at++];
      }
    }
    return out;
  }

  std::string Entity() {
    const size_t semicolon = _text.find(';', _at);
    if (semicolon == std::string::npos) Fail("unterminated entity");
    const std::string name = _text.substr(_at + 1, semicolon - _at - 1);
    _at = semicolon + 1;
    static const std::map<std::string, std::string> kNamed = {
        {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    if (const auto named = kNamed.find(name); named != kNamed.end()) return named->second;
    if (name.size() > 1 && name[0] == '#') {
      const bool hex = name[1] == 'x';
      const unsigned long cp = std::stoul(name.substr(hex ? 2 : 1), nullptr, hex ? 16 : 10);
      std::string out;
      AppendUtf8(out, static_cast<char32_t>(cp));
      return out;
    }
    Fail("unknown entity &" + name + ";");
  }

  std::string ResolveEscapes(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '\\') {
        out += text[i];
        continue;
      }
      if (i + 1 == text.size()) Fail("a backslash ends a string");
      const char next = text[++i];
      switch (next) {
        case 'n':
          out += '\n';
          break;
        case 'r':
          out += '\r';
          break;
        case 't':
          out += '\t';
          break;
        case '\\':
          out += '\\';
          break;
        case '{':
        case '}':
          out += '\\';
          out += next;
          break;
        default:
          Fail(std::string("unknown escape \\") + next);
      }
    }
    return out;
  }

  std::string StartTag(std::map<std::string, std::string>& attributes, bool& empty) {
    if (_at >= _text.size() || _text[_at] != '<') Fail("expected a start tag");
    ++_at;
    const std::string name = Name();
    for (;;) {
      SkipSpace();
      if (Peek("/>")) {
        _at += 2;
        empty = true;
        return name;
      }
      if (Peek(">")) {
        ++_at;
        empty = false;
        return name;
      }
      const std::string attribute = Name();
      SkipSpace();
      if (!Peek("=")) Fail("expected = after " + attribute);
      ++_at;
      SkipSpace();
      if (_at >= _text.size() || (_text[_at] != '"' && _text[_at] != '\'')) Fail("expected quote");
      const std::string quote(1, _text[_at++]);
      attributes[attribute] = ReadTextUntil(quote);
      ++_at;
    }
  }

  void ExpectStartTag(const std::string& wanted) {
    std::map<std::string, std::string> attributes;
    bool empty = false;
    if (StartTag(attributes, empty) != wanted || empty) Fail("expected <" + wanted + ">");
  }

  std::string Name() {
    const size_t start = _at;
    while (_at < _text.size() &&
           (std::isalnum(static_cast<unsigned char>(_text[_at])) || _text[_at] == '_' ||
            _text[_at] == '-' || _text[_at] == ':' || _text[_at] == '.')) {
      ++_at;
    }
    if (_at == start) Fail("expected a name");
    return _text.substr(start, _at - start);
  }

  std::string Required(const std::map<std::string, std::string>& attributes,
                       const std::string& name) {
    const auto at = attributes.find(name);
    if (at == attributes.end()) Fail("missing attribute " + name);
    return at->second;
  }

  void SkipMisc() {
    for (;;) {
      SkipSpace();
      if (!Peek("<!--")) return;
      SkipPast("-->");
    }
  }

  void SkipSpace() {
    while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])))
      ++_at;
  }

  void SkipPast(const std::string& end) {
    const size_t found = _text.find(end, _at);
    if (found == std::string::npos) Fail("missing " + end);
    _at = found + end.size();
  }

  bool Peek(const std::string& what) const { return _text.compare(_at, what.size(), what) == 0; }

  [[noreturn]] void Fail(const std::string& what) const {
    const size_t end = std::min(_at, _text.size());
    const auto line = 1 + std::count(_text.begin(), _text.begin() + static_cast<long>(end), '\n');
    throw std::runtime_error(_path + ":" + std::to_string(line) + ": " + what);
  }

  std::string _text;
  std::string _path;
  size_t _at = 0;
};

}  // namespace

std::vector<SourceModule> ReadCatalogueSource(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::ostringstream content;
  content << in.rdbuf();
  return Reader(content.str(), path).Read();
}

}  // namespace ic::test
