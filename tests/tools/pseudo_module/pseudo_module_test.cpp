// The pseudo-locale module: loaded through the same export as the real one, it has the same
// catalogues and keys, and each text is the real one marked, lengthened and with its Latin
// letters replaced, its parameters and escaped braces untouched.
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "loaded_module.h"
#include "module_paths.h"
#include "process.h"
#include "utf8.h"

namespace {

using ic::resources::ResourceStringLibrary;
using ic::test::Utf8;

constexpr char16_t kOpen = u'\u27E6';
constexpr char16_t kClose = u'\u27E7';

// A text cut into parameters ("{name}"), escaped braces ("\{", "\}") and single other units;
// the test's own reading of the convention.
struct Piece {
  bool kept;  // parameter or escaped brace, to stand unchanged
  std::u16string units;
};

std::vector<Piece> Pieces(std::u16string_view text) {
  std::vector<Piece> pieces;
  for (size_t i = 0; i < text.size();) {
    if (text[i] == u'\\' && i + 1 < text.size() && (text[i + 1] == u'{' || text[i + 1] == u'}')) {
      pieces.push_back({true, std::u16string(text.substr(i, 2))});
      i += 2;
      continue;
    }
    if (text[i] == u'{') {
      size_t end = i + 1;
      while (end < text.size() &&
             (isalnum(text[end] < 0x80 ? text[end] : 0) || text[end] == u'_' || text[end] == u'.'))
        ++end;
      if (end > i + 1 && end < text.size() && text[end] == u'}') {
        pieces.push_back({true, std::u16string(text.substr(i, end + 1 - i))});
        i = end + 1;
        continue;
      }
    }
    pieces.push_back({false, std::u16string(1, text[i])});
    ++i;
  }
  return pieces;
}

size_t CodePoints(std::u16string_view text) {
  size_t count = 0;
  for (char16_t unit : text)
    count += (unit < 0xDC00 || unit > 0xDFFF) ? 1 : 0;
  return count;
}

bool IsAsciiLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

class PseudoModuleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(_real.IsLoaded()) << _real.Error();
    ASSERT_TRUE(_pseudo.IsLoaded()) << _pseudo.Error();
  }
  ic::test::LoadedModule _real{ic::test::ModulePath};
  ic::test::LoadedModule _pseudo{IC_TEST_PSEUDO_MODULE_PATH};
};

TEST_F(PseudoModuleTest, SameCataloguesAndKeysThroughTheSameExport) {
  ASSERT_NE(_pseudo.getFirst, nullptr);
  const auto real = _real.Chain();
  const auto pseudo = _pseudo.Chain();
  ASSERT_EQ(pseudo.size(), 13u);
  ASSERT_EQ(pseudo.size(), real.size());
  for (size_t i = 0; i < real.size(); ++i) {
    EXPECT_EQ(Utf8(pseudo[i]->Name), Utf8(real[i]->Name));
    ASSERT_EQ(pseudo[i]->Count, real[i]->Count);
    for (int32_t row = 0; row < real[i]->Count; ++row) {
      EXPECT_EQ(Utf8(pseudo[i]->GetKey(pseudo[i], row)), Utf8(real[i]->GetKey(real[i], row)));
    }
    EXPECT_EQ(pseudo[i]->GetText(pseudo[i], pseudo[i]->Count), nullptr);
  }
  // The module's own manager works as in the real one.
  ASSERT_NE(_pseudo.findRow, nullptr);
  EXPECT_EQ(_pseudo.findRow(_pseudo.Find(u"xml"), u"wfc_GIMatch"),
            _real.findRow(_real.Find(u"xml"), u"wfc_GIMatch"));
}

TEST_F(PseudoModuleTest, EveryTextIsMarkedLengthenedAndKeepsItsParameters) {
  std::map<char16_t, char16_t> lookAlike;  // one look-alike per letter, across all texts
  size_t rows = 0;
  for (ResourceStringLibrary* record : _real.Chain()) {
    ResourceStringLibrary* pseudoRecord = _pseudo.Find(record->Name);
    ASSERT_NE(pseudoRecord, nullptr);
    for (int32_t row = 0; row < record->Count; ++row) {
      const std::u16string real = record->GetText(record, row);
      const std::u16string pseudo = pseudoRecord->GetText(pseudoRecord, row);
      SCOPED_TRACE(Utf8(record->Name) + "/" + Utf8(record->GetKey(record, row)) + ": " +
                   Utf8(pseudo));
      ASSERT_GE(pseudo.size(), 2u);
      EXPECT_EQ(pseudo.front(), kOpen);
      EXPECT_EQ(pseudo.back(), kClose);
      // At least 30 % longer than the real text, markers aside.
      EXPECT_GE(CodePoints(pseudo) - 2, (CodePoints(real) * 13 + 9) / 10);

      // Piece by piece: kept pieces equal, letters replaced, everything else as it was.
      const std::vector<Piece> realPieces = Pieces(real);
      const std::u16string body = pseudo.substr(1, pseudo.size() - 2);
      size_t at = 0;
      for (const Piece& piece : realPieces) {
        ASSERT_LE(at + piece.units.size(), body.size());
        const std::u16string got = body.substr(at, piece.units.size());
        at += piece.units.size();
        if (piece.kept || !IsAsciiLetter(piece.units[0])) {
          EXPECT_EQ(Utf8(got), Utf8(piece.units));
          continue;
        }
        EXPECT_GT(got[0], 0x7F) << "letter " << char(piece.units[0]) << " left as it was";
        const auto [known, fresh] = lookAlike.emplace(piece.units[0], got[0]);
        EXPECT_EQ(known->second, got[0]) << "letter " << char(piece.units[0]);
      }
      // The rest is the lengthening: no letter, no brace, no marker.
      for (char16_t unit : body.substr(at)) {
        EXPECT_FALSE(IsAsciiLetter(unit) || unit == u'{' || unit == u'}' || unit == kOpen ||
                     unit == kClose);
      }
      // Every parameter of the real text survives, as often as it stands there.
      std::vector<std::u16string> realKept, pseudoKept;
      for (const Piece& piece : realPieces)
        if (piece.kept) realKept.push_back(piece.units);
      for (const Piece& piece : Pieces(body))
        if (piece.kept) pseudoKept.push_back(piece.units);
      EXPECT_EQ(pseudoKept, realKept);
      ++rows;
    }
  }
  EXPECT_EQ(rows, 514u);
  // Distinct letters have distinct look-alikes, so a reader can tell them apart.
  std::map<char16_t, char16_t> back;
  for (const auto& [letter, alike] : lookAlike) {
    EXPECT_TRUE(back.emplace(alike, letter).second) << char(letter);
  }
  EXPECT_GT(lookAlike.size(), 40u);  // the catalogues use most Latin letters of both cases
}

#if defined(IC_TEST_ICRES_PATH)
TEST(PseudoModuleHostTest, IcresReadsThePseudoModule) {
  const ic::test::ProcessResult result = ic::test::RunProcess(
      IC_TEST_ICRES_PATH, {"--module", IC_TEST_PSEUDO_MODULE_PATH, "get", "Scintilla",
                           "ResultWndFindPos", "index=3", "count=7"});
  EXPECT_EQ(result.status, 0) << result.err;
  // "{index} of {count}": 18 code points, 6 of padding.
  EXPECT_EQ(result.out, "\u27E63 öƒ 7~~~~~~\u27E7\n");
}
#endif

}  // namespace
