// Random text for the converter tests, biased towards the inputs where converters go wrong.
#pragma once

#include <random>
#include <string>

namespace ic::platform {

// UTF-8 biased towards the bytes where decoders go wrong (80-BF, C0-C2, E0, ED, EF-F5, FF and
// zero), with ASCII runs long enough for the vector gears, and well-formed sequences of every
// length.
std::string BiasedUtf8(std::mt19937& random);

// UTF-16 biased towards surrogates, alone, paired and reversed, with ASCII runs.
std::u16string BiasedUtf16(std::mt19937& random);

}  // namespace ic::platform
