// Guesses which name a misspelt one was meant to be.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace scenario {

/// The choice that name is most likely a slip of: a few wrong letters, other letter case, '_' or
/// '-' between words, or its beginning only. Empty when there is none.
std::string_view nearMiss(std::string_view name, std::span<std::string_view const> choices);

/// "; did you mean CHOICE?", for the end of a message; empty without a near miss.
std::string didYouMean(std::string_view name, std::span<std::string_view const> choices);

}  // namespace scenario
