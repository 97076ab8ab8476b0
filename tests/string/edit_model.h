// A model of the editing members on std::string, and a run of edits that applies the same
// edit to a string of any narrow shape and to the model and compares them. The unit tests take
// the choices from a seeded generator, the editing fuzz target from its input bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <ic/string/chain.h>
#include <ic/string/ic_string.h>

#include "edit_test_util.h"

namespace ic::test {

/// A random text for the edits: up to `maxLength` units from a small alphabet with line ends,
/// each choice taken from `choices` (Pick(low, high)).
template <class Choices>
std::string ModelText(Choices& choices, int maxLength) {
  static const char alphabet[] = "abcab\r\nxy";
  const int length = choices.Pick(0, maxLength);
  std::string t;
  for (int i = 0; i < length; ++i)
    t += alphabet[choices.Pick(0, static_cast<int>(sizeof alphabet) - 2)];
  return t;
}

// The model of each edit on std::string, with the same out-of-range rules.
struct StdModel {
  std::string s;

  void KeepLeft(int count) {
    if (count <= 0)
      s.clear();
    else if (count < static_cast<int>(s.size()))
      s.resize(static_cast<size_t>(count));
  }
  void KeepFrom(int position) {
    if (position <= 0) return;
    if (position > static_cast<int>(s.size()))
      s.clear();
    else
      s.erase(0, static_cast<size_t>(position));
  }
  void KeepRange(int position, int count) {
    if (position < 0) {
      count += position;
      position = 0;
    }
    if (count < 0) count = 0;
    if (position >= static_cast<int>(s.size())) {
      s.clear();
      return;
    }
    s = s.substr(static_cast<size_t>(position), static_cast<size_t>(count));
  }
  void Remove(int position, int count) {
    if (position < 0) {
      count += position;
      position = 0;
    }
    if (count < 0 || position >= static_cast<int>(s.size())) return;
    s.erase(static_cast<size_t>(position), static_cast<size_t>(count));
  }
  void Insert(const std::string& t, int position) {
    if (t.empty() || position < 0 || position > static_cast<int>(s.size())) return;
    s.insert(static_cast<size_t>(position), t);
  }
  void SetTail(int position, const std::string& t) {
    if (position < 0) position = 0;
    if (static_cast<int>(s.size()) <= position) return;
    s = s.substr(0, static_cast<size_t>(position)) + t;
  }
  void PutRepeated(const std::string& t, int repeat, int position) {
    if (t.empty() || position < 0 || repeat < 1 || position > static_cast<int>(s.size())) return;
    s.resize(static_cast<size_t>(position));
    for (int i = 0; i < repeat; ++i)
      s += t;
  }
  void ReplaceRange(int position, int count, const std::string& t) {
    if (t.empty() || position < 0 || position > static_cast<int>(s.size())) return;
    if (count < 0) count = 0;
    s.replace(static_cast<size_t>(position), static_cast<size_t>(count), t);
  }
  int ReplaceAll(const std::string& needle, const std::string& t, int maxCount) {
    if (needle.empty()) return 0;
    if (maxCount <= 0) maxCount = 0x7fffffff;
    std::string out;
    size_t from = 0;
    int count = 0;
    for (size_t at; count < maxCount && (at = s.find(needle, from)) != std::string::npos;) {
      out.append(s, from, at - from);
      out += t;
      from = at + needle.size();
      ++count;
    }
    out.append(s, from, std::string::npos);
    s = out;
    return count;
  }
  void Normalize(const std::string& lineEnd) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
      if (s[i] == '\r' || s[i] == '\n') {
        if (s[i] == '\r' && i + 1 < s.size() && s[i + 1] == '\n') ++i;
        out += lineEnd;
      } else {
        out += s[i];
      }
    }
    s = out;
  }
};

/// One run of edits on a string of shape S and on the model, with the choices (edit, positions,
/// texts) taken from `Choices`, which has Pick(low, high) and RandomText(maxLength).
template <class S, class Choices>
class EditRun {
 public:
  EditRun(Choices& choices, const std::string& start)
      : _model(choices), _foreign(start), _s(InitialString(_foreign)) {
    _std.s = start;
  }

  /// Applies one edit to both; returns an empty text when they agree afterwards, otherwise
  /// what differs.
  std::string Step() {
    const int length = static_cast<int>(_std.s.size());
    const int op = _model.Pick(0, 16);
    const int a = _model.Pick(-3, length + 3);
    const int b = _model.Pick(-3, length + 3);
    const std::string t = _model.RandomText(4);
    const std::string u = _model.RandomText(3);
    // Copies that other owners hold: a write must not reach them.
    std::vector<S> copies;
    if constexpr (S::IsShared) copies.emplace_back(_s);
    const std::string before = _std.s;
    switch (op) {
      case 0:
        _s.KeepLeft(a);
        _std.KeepLeft(a);
        break;
      case 1:
        _s.KeepFrom(a);
        _std.KeepFrom(a);
        break;
      case 2:
        _s.KeepRange(a, true, b);
        _std.KeepRange(a, b);
        break;
      case 3:
        _s.Remove(a, true, b);
        _std.Remove(a, b);
        break;
      case 4:
        _s.Insert(t.c_str(), a);
        _std.Insert(t, a);
        break;
      case 5:
        _s.SetTail(a, true, t.c_str());
        _std.SetTail(a, t);
        break;
      case 6:
        _s.PutRepeated(u.c_str(), b, a);
        _std.PutRepeated(u, b, a);
        break;
      case 7:
        _s.ReplaceRange(a, true, b, t.c_str());
        _std.ReplaceRange(a, b, t);
        break;
      case 8: {
        const int max = _model.Pick(0, 3);
        if (_s.ReplaceAll(u.c_str(), -1, t.c_str(), -1, max) != _std.ReplaceAll(u, t, max))
          return "ReplaceAll counts differ";
        break;
      }
      case 9:
        _s.Append(t.c_str());
        _std.s += t;
        break;
      case 10:
        _s.Assign(_s + t.c_str() + _s);  // aliasing through the chain guard
        _std.s = before + t + before;
        break;
      case 11:
        _s.Append(_s);
        _std.s += before;
        break;
      case 12: {
        const char* end = _model.Pick(0, 1) ? "\n" : "\r\n";
        _s.NormalizeLineEnds(end);
        _std.Normalize(end);
        break;
      }
      case 13:
        _s.Replace(U'a', U'z');
        for (char& c : _std.s)
          if (c == 'a') c = 'z';
        break;
      case 14:
        if (TextOf(_s.Mid(a, true, b)) != Mid(a, b)) return "Mid differs";
        if (TextOf(_s.Left(a)) !=
            (a < 0 ? std::string() : _std.s.substr(0, static_cast<size_t>(a))))
          return "Left differs";
        break;
      case 15: {
        _s.Assign(t.c_str(), static_cast<int32_t>(t.size()), true);
        _std.s = t;
        break;
      }
      default: {
        uint32_t cursor = static_cast<uint32_t>(_s.GetLength());
        _s.PutAtCursor(t.c_str(), -1, cursor, 0);
        _std.s += t;
        break;
      }
    }
    const std::string where = "op " + std::to_string(op) + " a " + std::to_string(a) + " b " +
                              std::to_string(b) + " t '" + t + "' u '" + u + "' before '" + before +
                              "'";
    if (TextOf(_s) != _std.s)
      return "text differs: '" + TextOf(_s) + "' vs '" + _std.s + "', " + where;
    if (_s.GetText()[_s.GetLength()] != 0) return "no terminator, " + where;
    for (const S& copy : copies)
      if (TextOf(copy) != before) return "another owner's text changed, " + where;
    if (std::string(_foreign.c_str()) != _foreignOriginal) return "foreign text changed, " + where;
    if (_std.s != before) ++_changes;
    _longest = std::max(_longest, _std.s.size());
    return std::string();
  }
  /// Steps that changed the text, and the longest text reached: the run must have done work.
  int Changes() const { return _changes; }
  size_t Longest() const { return _longest; }

 private:
  static S InitialString(const std::string& foreign) {
    if constexpr (S::IsView)
      return S(foreign.c_str());  // a view of text that the run owns
    else
      return S(foreign.c_str(), static_cast<int32_t>(foreign.size()));
  }
  std::string Mid(int position, int count) const {
    if (position < 0) {
      count += position;
      position = 0;
    }
    if (position >= static_cast<int>(_std.s.size()) || count < 1) return std::string();
    return _std.s.substr(static_cast<size_t>(position), static_cast<size_t>(count));
  }

  Choices& _model;
  std::string _foreign;
  const std::string _foreignOriginal = _foreign;
  S _s;
  StdModel _std;
  int _changes = 0;
  size_t _longest = 0;
};

}  // namespace ic::test
