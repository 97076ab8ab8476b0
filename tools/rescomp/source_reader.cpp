#include "source_reader.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include "names.h"
#include "text_checks.h"
#include "utf8.h"

namespace ic::rescomp {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kUnnamed = "<unnamed>";

// The bytes of a regular file; nothing for a file that cannot be read and for anything that is
// not a regular file (a folder, a device such as /dev/zero that never ends, a pipe).
std::optional<std::string> ReadFileBytes(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) return std::nullopt;
  return std::move(buffer).str();
}

fs::path CanonicalOrAbsolute(const std::string& path) {
  std::error_code error;
  fs::path canonical = fs::weakly_canonical(path, error);
  if (error) return fs::absolute(path, error).lexically_normal();
  return canonical;
}

bool IsXmlSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// What is being read at a level of the element tree.
enum class Kind {
  kResources,  // the root element
  kModule,
  kString,
  kInclude,
  kSkipped,  // a wrong root, or an element that has no place where it stands, with its content
};

struct Frame {
  Kind kind;
  bool strayTextReported = false;
};

// State shared by the readers of a source and of the files it includes.
struct ReaderState {
  Catalogue& catalogue;
  Diagnostics& diagnostics;
  ReadOptions options;
  std::vector<fs::path> openFiles;                 // files being read, for include cycles
  std::map<std::string, std::string> moduleSites;  // module name -> "file(line)" of its definition
};

// Reads one file with expat; an Include starts a reader for the included file at once, so
// that modules and faults keep the order in which they stand.
class FileReader {
 public:
  FileReader(ReaderState& state, std::string file) : state_(state), file_(std::move(file)) {}

  void Parse(const std::string& bytes) {
    parser_ = XML_ParserCreate(nullptr);
    if (parser_ == nullptr) {
      Error(0, "out of memory while creating the XML parser");
      return;
    }
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, &FileReader::OnStart, &FileReader::OnEnd);
    XML_SetCharacterDataHandler(parser_, &FileReader::OnText);
    XML_SetXmlDeclHandler(parser_, &FileReader::OnDeclaration);
    CheckEncodingMark(bytes);
    if (bytes.size() > static_cast<std::size_t>(INT_MAX)) {
      Error(0, "the file is too large");
      state_.catalogue.complete = false;
    } else if (XML_Parse(parser_, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) ==
               XML_STATUS_ERROR) {
      Error(Line(), std::string("XML error: ") + XML_ErrorString(XML_GetErrorCode(parser_)));
      state_.catalogue.complete = false;
    }
    XML_ParserFree(parser_);
    parser_ = nullptr;
  }

 private:
  struct OpenModule {
    std::string name;   // as shown in messages
    bool keep = false;  // a valid name, defined for the first time
    long line = 0;
    bool hasParams = false;
    std::set<std::string> params;
    std::map<std::string, long> stringLines;  // name -> line of its definition
    std::vector<ResourceString> strings;
  };

  struct OpenString {
    std::string name;  // as shown in messages
    bool keep = false;
    long line = 0;
    std::string text;  // UTF-8, as expat delivers it
  };

  static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
    static_cast<FileReader*>(self)->Start(name, attributes);
  }
  static void XMLCALL OnEnd(void* self, const XML_Char*) { static_cast<FileReader*>(self)->End(); }
  static void XMLCALL OnDeclaration(void* self, const XML_Char*, const XML_Char* encoding, int) {
    static_cast<FileReader*>(self)->Declaration(encoding);
  }
  static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
    static_cast<FileReader*>(self)->Text(std::string_view(text, static_cast<std::size_t>(length)));
  }

  long Line() const { return static_cast<long>(XML_GetCurrentLineNumber(parser_)); }

  // A source is UTF-8 without a byte-order mark. The XML parser would read UTF-16 and a
  // declared encoding just as well, so these are reported here; the reading goes on, so that
  // the faults behind them are reported in the same run.
  void CheckEncodingMark(std::string_view bytes) {
    const auto starts = [bytes](std::string_view mark) {
      return bytes.substr(0, mark.size()) == mark;
    };
    if (starts("\xfe\xff") || starts("\xff\xfe") || starts(std::string_view("<\0", 2)) ||
        starts(std::string_view("\0<", 2))) {
      Error(1, "the file is in UTF-16: a catalogue source is UTF-8");
    } else if (starts("\xef\xbb\xbf")) {
      Error(1, "the file begins with a byte-order mark: a catalogue source is UTF-8 without one");
    }
  }

  void Declaration(const XML_Char* encoding) {
    if (encoding == nullptr) return;
    std::string name(encoding);
    for (char& c : name)
      c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    if (name != "UTF-8" && name != "UTF8") {
      Error(Line(), "the XML declaration names the encoding " + Quote(encoding) +
                        ": a catalogue source is UTF-8");
    }
  }
  void Error(long line, std::string message) {
    state_.diagnostics.Error(file_, line, std::move(message));
  }
  void Warning(long line, std::string message) {
    state_.diagnostics.Warning(file_, line, std::move(message));
  }

  void Start(std::string_view name, const XML_Char** attributes) {
    const long line = Line();
    if (frames_.empty()) {
      if (name != "resources") {
        Error(line,
              "the file is not valid resource string XML: it lacks the 'resources' root "
              "element (found " +
                  Quote(name) + ")");
        frames_.push_back({Kind::kSkipped});
        return;
      }
      for (const XML_Char** a = attributes; *a != nullptr; a += 2) {
        const std::string_view attribute = a[0];
        if (attribute != "xmlns" && attribute.substr(0, 6) != "xmlns:") {
          Error(line, "unknown attribute " + Quote(attribute) + " on the 'resources' element");
        }
      }
      frames_.push_back({Kind::kResources});
      return;
    }
    switch (frames_.back().kind) {
      case Kind::kResources:
        if (name == "module") {
          StartModule(line, attributes);
          frames_.push_back({Kind::kModule});
        } else if (name == "Include") {
          Include(line, attributes);
          frames_.push_back({Kind::kInclude});
        } else {
          Error(line, "unexpected element " + Quote(name) +
                          " in 'resources': expected 'module' or 'Include'");
          frames_.push_back({Kind::kSkipped});
        }
        return;
      case Kind::kModule:
        if (name == "string") {
          StartString(line, attributes);
          frames_.push_back({Kind::kString});
        } else {
          Error(line, "unexpected element " + Quote(name) + " in module " + Quote(module_->name) +
                          ": expected 'string'");
          frames_.push_back({Kind::kSkipped});
        }
        return;
      case Kind::kString:
        Error(line, "unexpected element " + Quote(name) + " inside resource string " +
                        Quote(string_->name) + ": a resource string holds text only");
        frames_.push_back({Kind::kSkipped});
        return;
      case Kind::kInclude:
        Error(line, "unexpected element " + Quote(name) + " inside 'Include'");
        frames_.push_back({Kind::kSkipped});
        return;
      case Kind::kSkipped:
        frames_.push_back({Kind::kSkipped});
        return;
    }
  }

  void End() {
    const Kind kind = frames_.back().kind;
    frames_.pop_back();
    if (kind == Kind::kString) {
      FinishString();
    } else if (kind == Kind::kModule) {
      FinishModule();
    }
  }

  void Text(std::string_view text) {
    if (frames_.empty()) return;
    Frame& frame = frames_.back();
    if (frame.kind == Kind::kString) {
      string_->text.append(text);
      return;
    }
    if (frame.kind == Kind::kSkipped || frame.strayTextReported) return;
    if (std::all_of(text.begin(), text.end(), IsXmlSpace)) return;
    frame.strayTextReported = true;
    Error(Line(), "unexpected text outside a resource string");
  }

  void StartModule(long line, const XML_Char** attributes) {
    module_.emplace(OpenModule{});
    module_->line = line;
    const char* name = nullptr;
    const char* params = nullptr;
    for (const XML_Char** a = attributes; *a != nullptr; a += 2) {
      const std::string_view attribute = a[0];
      if (attribute == "name") {
        name = a[1];
      } else if (attribute == "params") {
        params = a[1];
      } else {
        Error(line, "unknown attribute " + Quote(attribute) + " on a 'module' element");
      }
    }
    module_->name = name != nullptr ? name : std::string(kUnnamed);
    if (name == nullptr) {
      Error(line, "missing 'name' attribute in a 'module' element");
    } else if (!IsModuleName(name)) {
      Error(line, "invalid module name " + Quote(name) +
                      ": a module name becomes a C++ namespace and must be an identifier "
                      "(letter or '_' first, then letters, digits, '_') that is not a keyword");
    } else if (auto found = state_.moduleSites.find(name); found != state_.moduleSites.end()) {
      Error(line, "the module " + Quote(name) + " is already defined at " + found->second);
    } else {
      state_.moduleSites.emplace(name, file_ + "(" + std::to_string(line) + ")");
      module_->keep = true;
    }
    if (params != nullptr) {
      module_->hasParams = true;
      std::string_view rest = params;
      while (!rest.empty()) {
        const std::size_t start = std::min(rest.size(), rest.find_first_not_of(" \t\r\n"));
        rest.remove_prefix(start);
        if (rest.empty()) break;
        const std::size_t end = std::min(rest.size(), rest.find_first_of(" \t\r\n"));
        const std::string param(rest.substr(0, end));
        rest.remove_prefix(end);
        const auto decoded = DecodeUtf8(param);
        if (!decoded || !IsParameterName(*decoded)) {
          Error(line, "invalid parameter name " + Quote(param) + " in the 'params' of module " +
                          Quote(module_->name) +
                          ": a parameter name is made of letters, digits, '_' and '.'");
        }
        module_->params.insert(param);
      }
    }
  }

  void FinishModule() {
    if (module_->keep) {
      state_.catalogue.modules.push_back(
          {module_->name, file_, module_->line, std::move(module_->strings)});
    }
    module_.reset();
  }

  void StartString(long line, const XML_Char** attributes) {
    string_.emplace(OpenString{});
    string_->line = line;
    const char* name = nullptr;
    std::vector<std::string> unknown;
    for (const XML_Char** a = attributes; *a != nullptr; a += 2) {
      const std::string_view attribute = a[0];
      if (attribute == "name") {
        name = a[1];
      } else if (attribute != "note") {
        unknown.emplace_back(attribute);
      }
    }
    string_->name = name != nullptr ? name : std::string(kUnnamed);
    if (name == nullptr) {
      Error(line,
            "missing 'name' attribute in a 'string' element of module " + Quote(module_->name));
    } else if (!IsResourceName(name)) {
      Error(line, "invalid resource name " + Quote(name) +
                      ": a resource name is a C identifier (letter or '_' first, then letters, "
                      "digits, '_')");
    } else if (auto found = module_->stringLines.find(name); found != module_->stringLines.end()) {
      Error(line, "the resource string " + Quote(name) + " of module " + Quote(module_->name) +
                      " is already defined at " + file_ + "(" + std::to_string(found->second) +
                      ")");
    } else {
      module_->stringLines.emplace(name, line);
      string_->keep = true;
    }
    for (const std::string& attribute : unknown) {
      Error(line, "unknown meta attribute " + Quote(attribute) + " in resource string " +
                      Quote(string_->name) + " of module " + Quote(module_->name));
    }
  }

  void FinishString() {
    OpenString& string = *string_;
    const std::string what = "resource string " + Quote(string.name);
    if (string.text.find_first_of("\r\n") != std::string::npos) {
      Error(string.line, what + " contains a raw line break; use the \\n sequence");
    }
    const auto source = DecodeUtf8(string.text);
    if (!source) {
      // expat hands over well-formed UTF-8 only; this guards the decoder's contract.
      Error(string.line, what + " is not valid UTF-8");
      string_.reset();
      return;
    }
    DecodedText decoded = DecodeEscapes(*source);
    for (const std::string& fault : decoded.faults)
      Error(string.line, what + ": " + fault);
    const bool declared = module_->hasParams && state_.options.checkDeclaredParameters;
    for (const std::string& fault :
         CheckParameters(decoded.text, declared ? &module_->params : nullptr, module_->name)) {
      Error(string.line, what + ": " + fault);
    }
    if (state_.options.warnEmpty && LooksEmpty(decoded.text)) {
      Warning(string.line, what + " seems to be empty");
    }
    if (string.keep) {
      module_->strings.push_back({string.name, ToUtf16(decoded.text), string.line});
    }
    string_.reset();
  }

  void Include(long line, const XML_Char** attributes);

  ReaderState& state_;
  std::string file_;
  XML_Parser parser_ = nullptr;
  std::vector<Frame> frames_;
  std::optional<OpenModule> module_;
  std::optional<OpenString> string_;
};

void FileReader::Include(long line, const XML_Char** attributes) {
  const char* target = nullptr;
  for (const XML_Char** a = attributes; *a != nullptr; a += 2) {
    const std::string_view attribute = a[0];
    if (attribute == "file") {
      target = a[1];
    } else {
      Error(line, "unknown attribute " + Quote(attribute) + " on an 'Include' element");
    }
  }
  if (target == nullptr) {
    Error(line, "the Include element lacks the 'file' attribute");
    return;
  }
  // An Include names its file relative to the file that holds it.
  const std::string path = (fs::path(file_).parent_path() / target).lexically_normal().string();
  const fs::path identity = CanonicalOrAbsolute(path);
  if (std::find(state_.openFiles.begin(), state_.openFiles.end(), identity) !=
      state_.openFiles.end()) {
    Error(line, "the Include of " + Quote(path) + " forms a cycle: the file is already being read");
    return;
  }
  const auto bytes = ReadFileBytes(path);
  if (!bytes) {
    Error(line, "cannot open the included file " + Quote(path));
    state_.catalogue.complete = false;
    return;
  }
  state_.catalogue.files.push_back(path);
  state_.openFiles.push_back(identity);
  FileReader(state_, path).Parse(*bytes);
  state_.openFiles.pop_back();
}

}  // namespace

const Module* Catalogue::Find(std::string_view name) const {
  for (const Module& module : modules) {
    if (module.name == name) return &module;
  }
  return nullptr;
}

Catalogue ReadCatalogue(const std::string& path, Diagnostics& diagnostics,
                        const ReadOptions& options) {
  Catalogue catalogue;
  const auto bytes = ReadFileBytes(path);
  if (!bytes) {
    diagnostics.Error(path, 0, "cannot open the file");
    catalogue.complete = false;
    return catalogue;
  }
  return ReadCatalogueBytes(path, *bytes, diagnostics, options);
}

Catalogue ReadCatalogueBytes(const std::string& path, const std::string& bytes,
                             Diagnostics& diagnostics, const ReadOptions& options) {
  Catalogue catalogue;
  catalogue.files.push_back(path);
  ReaderState state{catalogue, diagnostics, options, {CanonicalOrAbsolute(path)}, {}};
  FileReader(state, path).Parse(bytes);
  return catalogue;
}

}  // namespace ic::rescomp
