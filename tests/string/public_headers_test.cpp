// The headers a host includes declare no public underscore member: the low-level layer of the
// string family (_GetBuffer, _SetStringEnd, _PrepareGrow, ...) is reachable only through the
// library's internal accessor and the tests' LayerAccess.
//
// The scan reads every header that `cmake --install` copies (all .h files of the subsystem
// folders except those under internal/) and reports each name beginning with an underscore and
// a capital letter that is declared directly in a class body under public access.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <ic/string/ic_string.h>

// Compile-time: a host cannot name the layer's members (each would be callable if public).
template <class S>
concept HostCanGetBuffer = requires(S& s) {
  s._GetBuffer();
};
template <class S>
concept HostCanSetStringEnd = requires(S& s) {
  s._SetStringEnd(0);
};
template <class S>
concept HostCanPrepareGrow = requires(S& s) {
  s._PrepareGrow(1);
};
template <class S>
concept HostCanReserve = requires(S& s) {
  s._Reserve(1, 0u);
};
template <class S>
concept HostCanMakeOwned = requires(S& s) {
  s._MakeOwned();
};
template <class S>
concept HostCanAssignText = requires(S& s, const typename S::UnitType* t) {
  s._AssignText(t, 0);
};
template <class S>
concept HostCanOpenGap = requires(S& s) {
  s._OpenGap(1, 0);
};
template <class S>
concept HostCanGetLength = requires(const S& s) {
  s.GetLength();
};

static_assert(HostCanGetLength<ic::ICStringUnique>, "the control: a public member is found");
static_assert(!HostCanGetBuffer<ic::ICStringUnique> && !HostCanGetBuffer<ic::ICStringSharedW>);
static_assert(!HostCanSetStringEnd<ic::ICStringShared> && !HostCanSetStringEnd<ic::ICStringView>);
static_assert(!HostCanPrepareGrow<ic::ICStringUniqueW> && !HostCanReserve<ic::ICStringUnique>);
static_assert(!HostCanMakeOwned<ic::ICStringView> && !HostCanAssignText<ic::ICStringUnique>);
static_assert(!HostCanOpenGap<ic::ICStringUnique>);

namespace {

struct Finding {
  int line;
  std::string name;
};

// Blanks out comments, string and character literals and preprocessor lines (newlines stay, so
// line numbers hold).
std::string StripNonCode(std::string_view text) {
  std::string out(text);
  size_t i = 0;
  bool lineStart = true;
  while (i < out.size()) {
    const char c = out[i];
    if (lineStart && (c == ' ' || c == '\t')) {
      ++i;
      continue;
    }
    if (lineStart && c == '#') {
      // A directive runs to the end of the line, continued by a backslash.
      while (i < out.size() && out[i] != '\n') {
        if (out[i] == '\\' && i + 1 < out.size() && out[i + 1] == '\n') {
          out[i] = ' ';
          i += 2;
          continue;
        }
        out[i++] = ' ';
      }
      continue;
    }
    lineStart = c == '\n';
    if (c == '/' && i + 1 < out.size() && out[i + 1] == '/') {
      while (i < out.size() && out[i] != '\n')
        out[i++] = ' ';
    } else if (c == '/' && i + 1 < out.size() && out[i + 1] == '*') {
      while (i < out.size() && !(out[i] == '*' && i + 1 < out.size() && out[i + 1] == '/')) {
        if (out[i] != '\n') out[i] = ' ';
        ++i;
      }
      if (i < out.size()) out[i++] = ' ';
      if (i < out.size()) out[i++] = ' ';
    } else if (c == '"' || c == '\'') {
      out[i++] = ' ';
      while (i < out.size() && out[i] != c && out[i] != '\n') {
        if (out[i] == '\\' && i + 1 < out.size()) out[i++] = ' ';
        out[i++] = ' ';
      }
      if (i < out.size() && out[i] == c) out[i++] = ' ';
    } else {
      ++i;
    }
  }
  return out;
}

bool IsIdentChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// The words of a statement head, with template parameter lists and parenthesised parts left out.
std::vector<std::string> HeadWords(std::string_view head) {
  std::vector<std::string> words;
  int angle = 0;
  int paren = 0;
  for (size_t i = 0; i < head.size();) {
    const char c = head[i];
    if (c == '<') ++angle;
    if (c == '>' && angle > 0) --angle;
    if (c == '(') ++paren;
    if (c == ')' && paren > 0) --paren;
    if (IsIdentChar(c)) {
      size_t j = i;
      while (j < head.size() && IsIdentChar(head[j]))
        ++j;
      if (angle == 0 && paren == 0) words.emplace_back(head.substr(i, j - i));
      i = j;
    } else {
      ++i;
    }
  }
  return words;
}

// What a '{' opens, from the words in front of it: a class body (with its default access) or
// anything else (a namespace, a function body, an enumeration, an initialiser).
enum class Scope { Other, PublicClass, PrivateClass };

Scope OpenedScope(std::string_view head) {
  const std::vector<std::string> words = HeadWords(head);
  if (head.find('(') != std::string_view::npos) {
    // A function head or a lambda; a class head has no parentheses outside its template list.
    bool onlyInTemplate = true;
    int angle = 0;
    for (char c : head) {
      if (c == '<') ++angle;
      if (c == '>' && angle > 0) --angle;
      if (c == '(' && angle == 0) onlyInTemplate = false;
    }
    if (!onlyInTemplate) return Scope::Other;
  }
  for (size_t k = 0; k < words.size(); ++k) {
    if (words[k] == "enum") return Scope::Other;
    if (words[k] == "class") return Scope::PrivateClass;
    if (words[k] == "struct" || words[k] == "union") return Scope::PublicClass;
  }
  return Scope::Other;
}

// Names `_X...` declared directly in a class body while the access is public.
std::vector<Finding> PublicUnderscoreMembers(std::string_view source) {
  const std::string code = StripNonCode(source);
  struct Level {
    bool isClass;
    bool isPublic;
  };
  std::vector<Level> stack;
  std::vector<Finding> found;
  size_t headStart = 0;
  int line = 1;
  for (size_t i = 0; i < code.size(); ++i) {
    const char c = code[i];
    if (c == '\n') {
      ++line;
      continue;
    }
    if (c == '{') {
      const Scope scope = OpenedScope(std::string_view(code).substr(headStart, i - headStart));
      stack.push_back({scope != Scope::Other, scope == Scope::PublicClass});
      headStart = i + 1;
      continue;
    }
    if (c == '}') {
      if (!stack.empty()) stack.pop_back();
      headStart = i + 1;
      continue;
    }
    if (c == ';') {
      headStart = i + 1;
      continue;
    }
    const bool inClass = !stack.empty() && stack.back().isClass;
    if (!inClass || !IsIdentChar(c) || (i > 0 && IsIdentChar(code[i - 1]))) continue;
    size_t j = i;
    while (j < code.size() && IsIdentChar(code[j]))
      ++j;
    const std::string_view word = std::string_view(code).substr(i, j - i);
    size_t k = j;
    while (k < code.size() && (code[k] == ' ' || code[k] == '\t'))
      ++k;
    const bool label =
        k < code.size() && code[k] == ':' && (k + 1 >= code.size() || code[k + 1] != ':');
    if (label && (word == "public" || word == "protected" || word == "private")) {
      stack.back().isPublic = word == "public";
      headStart = k + 1;
    } else if (stack.back().isPublic && word.size() > 1 && word[0] == '_' && word[1] >= 'A' &&
               word[1] <= 'Z') {
      found.push_back({line, std::string(word)});
    }
    i = j - 1;
  }
  return found;
}

std::vector<std::string> Names(const std::vector<Finding>& findings) {
  std::vector<std::string> names;
  for (const Finding& f : findings)
    names.push_back(f.name);
  return names;
}

using Strings = std::vector<std::string>;

TEST(PublicHeaderScan, FindsPublicUnderscoreMembers) {
  EXPECT_EQ(Names(PublicUnderscoreMembers("struct A { void _Grow(int); int Size(); };")),
            Strings{"_Grow"});
  EXPECT_EQ(Names(PublicUnderscoreMembers("class A {\n public:\n  bool _IsEmpty() const;\n};")),
            Strings{"_IsEmpty"});
  EXPECT_EQ(Names(PublicUnderscoreMembers(
                "template <class T>\nclass B : public C<T> {\n protected:\n  void _A();\n"
                " public:\n  static int _B;\n  using C<T>::_C;\n};")),
            (Strings{"_B", "_C"}));
  // A nested struct is public by default even inside a class's private part.
  EXPECT_EQ(Names(PublicUnderscoreMembers("class A { struct N { void _X(); }; void _Y(); };")),
            Strings{"_X"});
}

TEST(PublicHeaderScan, IgnoresWhatIsNoPublicMember) {
  // Private and protected members, calls in inline bodies, comments, literals, free functions,
  // preprocessor lines and lower-case fields.
  EXPECT_TRUE(PublicUnderscoreMembers("class A { void _X(); };").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("struct A {\n private:\n  void _X();\n};").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("struct A {\n protected:\n  void _X();\n};").empty());
  EXPECT_TRUE(
      PublicUnderscoreMembers("struct A { void F() { s._X(); if (a) { _Y(); } } };").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("struct A { /// calls _X()\n void F(); // _Y\n };").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("struct A { const char* n = \"_X()\"; };").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("namespace ic { int _Parse(const char*); }").empty());
  EXPECT_TRUE(
      PublicUnderscoreMembers("#define M \\\n  struct A { void _X(); };\nint f();").empty());
  EXPECT_TRUE(PublicUnderscoreMembers("struct A { int _text; };").empty());
  EXPECT_TRUE(
      PublicUnderscoreMembers("template <class T> void F() requires(true) { _X(); }").empty());
}

TEST(PublicHeaderScan, ReportsLines) {
  const std::vector<Finding> f =
      PublicUnderscoreMembers("struct A {\n  int a;\n\n  void _Z();\n};");
  ASSERT_EQ(f.size(), 1u);
  EXPECT_EQ(f[0].line, 4);
}

// Every installed header: the .h files of the subsystem folders, outside internal/ folders.
TEST(PublicHeaders, DeclareNoPublicUnderscoreMember) {
  namespace fs = std::filesystem;
  std::stringstream subsystems(IC_SUBSYSTEM_LIST);
  std::string sub;
  int headers = 0;
  while (std::getline(subsystems, sub, ',')) {
    const fs::path root = fs::path(IC_SOURCE_DIR) / sub;
    ASSERT_TRUE(fs::is_directory(root)) << root;
    for (const fs::directory_entry& e : fs::recursive_directory_iterator(root)) {
      if (!e.is_regular_file() || e.path().extension() != ".h") continue;
      const std::string relative = fs::relative(e.path(), IC_SOURCE_DIR).generic_string();
      if (relative.find("/internal/") != std::string::npos) continue;
      std::ifstream in(e.path(), std::ios::binary);
      std::stringstream text;
      text << in.rdbuf();
      ++headers;
      for (const Finding& f : PublicUnderscoreMembers(text.str()))
        ADD_FAILURE() << relative << ":" << f.line << ": public member " << f.name;
    }
  }
  EXPECT_GT(headers, 50);
}

}  // namespace
