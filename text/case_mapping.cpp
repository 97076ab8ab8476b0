#include <ic/text/case_mapping.h>

#include <ic/text/internal/case_index.h>
#include <ic/text/internal/case_map_engine.h>

namespace ic {

const CaseRecord* FindCaseRecord(uint32_t code) noexcept {
  int32_t low = 0;
  int32_t high = CaseTableSize - 1;
  while (low <= high) {
    const int32_t middle = (low + high) >> 1;
    const uint32_t found = CaseTable[middle].code;
    if (found == code) return &CaseTable[middle];
    if (found < code)
      low = middle + 1;
    else
      high = middle - 1;
  }
  return nullptr;
}

namespace internal {

uint32_t LowerFromTable(uint32_t code) noexcept {
  const CaseRecord* record = LookupCaseRecord(code);
  return record ? record->lower : code;
}

uint32_t UpperFromTable(uint32_t code) noexcept {
  const CaseRecord* record = LookupCaseRecord(code);
  return record ? record->upper : code;
}

}  // namespace internal

void MapCodePointsInPlace(char* text, CodePointMapper mapper) noexcept {
  if (text == nullptr || *text == 0) return;
  internal::MapSameSize(text, mapper);
}

int32_t MapCodePoints(char* text, int32_t bufferSize, CodePointMapper mapper) noexcept {
  if (text == nullptr || bufferSize == 0) return MapInvalidArgument;
  const internal::MapMeasure m = internal::MeasureMapped(text, mapper);
  if (m.total >= bufferSize) return static_cast<int32_t>(m.total + 1);
  internal::RewriteMapped(text, m, mapper);
  return 0;
}

}  // namespace ic
