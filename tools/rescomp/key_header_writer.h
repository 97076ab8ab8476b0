// Writes the key header of one module: a compile-time constant per key, for hosts that name
// messages in their code (see <ic/resources/message_key.h>).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "source_reader.h"

namespace ic::rescomp {

// Every parameter use of a decoded message text, in text order, a name used twice listed twice.
// Escaped braces are no parameters.
std::vector<std::string> ParameterUses(std::u16string_view text);

// The names of `uses`, each once, in the order of their first use.
std::vector<std::string> DistinctNames(const std::vector<std::string>& uses);

// The C++ name of a key's constant: the key itself, or the key and '_' when the key is a C++
// keyword ("delete" becomes "delete_").
std::string KeyConstantName(std::string_view key);

// The key header of `module`: in namespace ic::msg::MODULE one constant per key,
//   inline constexpr ::ic::resources::MessageKey<"MODULE", "KEY", "PARAM"...> KEY{};
// and in namespace ic::msg_index the array MODULE of every key's MessageKeyInfo in row order.
// When two keys would get the same constant name, `faults` gets a message for each and the
// result is empty.
std::string GenerateKeyHeader(const Module& module, std::string_view sourceName,
                              std::vector<std::string>& faults);

}  // namespace ic::rescomp
