// A two-stage index into CaseTable, generated with it, that finds a code point's record in
// constant time: CaseIndexStage1 gives, for the block of 64 code points that holds it, a row of
// CaseIndexStage2 (row 0 is empty), whose entry is the record's index plus one, or 0. The case
// mappers use it; FindCaseRecord keeps to the binary search. Internal to the text subsystem.
#pragma once

#include <cstdint>

#include <ic/platform/export.h>
#include <ic/text/case_table.h>

namespace ic {

inline constexpr uint32_t CaseIndexBlockSize = 64;
/// Blocks up to and including the one that holds the last record.
inline constexpr uint32_t CaseIndexBlocks = 1958;
/// Rows of stage 2: one for each block that holds records, and the empty row 0.
inline constexpr uint32_t CaseIndexRows = 64;

extern IC_API const uint8_t CaseIndexStage1[CaseIndexBlocks];
extern IC_API const uint16_t CaseIndexStage2[CaseIndexRows][CaseIndexBlockSize];

/// The record of `code`, or null, by the index.
inline const CaseRecord* LookupCaseRecord(uint32_t code) noexcept {
  const uint32_t block = code / CaseIndexBlockSize;
  if (block >= CaseIndexBlocks) return nullptr;
  const uint16_t entry = CaseIndexStage2[CaseIndexStage1[block]][code % CaseIndexBlockSize];
  return entry == 0 ? nullptr : &CaseTable[entry - 1];
}

}  // namespace ic
