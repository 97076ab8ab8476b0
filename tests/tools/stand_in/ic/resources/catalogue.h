// Stand-in for the catalogue macros, for the resource compiler's tests only. It exposes the
// generated tables through plain functions so that a test can read every code unit of them.
#pragma once

#define IC_RESOURCE_CATALOGUE_DECLARATIONS(count) \
  inline constexpr int kRowCount = (count);       \
  const char16_t* Name();                         \
  const char16_t* const* Texts();                 \
  const char16_t* const* Keys();

#define IC_RESOURCE_CATALOGUE(name, count, texts, keys)           \
  static_assert((count) == kRowCount);                            \
  static_assert(sizeof(texts) / sizeof(texts[0]) == (count) + 1); \
  static_assert(sizeof(keys) / sizeof(keys[0]) == (count) + 1);   \
  const char16_t* Name() {                                        \
    return name;                                                  \
  }                                                               \
  const char16_t* const* Texts() {                                \
    return texts;                                                 \
  }                                                               \
  const char16_t* const* Keys() {                                 \
    return keys;                                                  \
  }
