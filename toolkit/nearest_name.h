#ifndef TARN_TOOLKIT_NEAREST_NAME_H
#define TARN_TOOLKIT_NEAREST_NAME_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::toolkit {

using Names = std::initializer_list<std::string_view>;

/// The name that somebody who wrote `word` most likely meant: the one with the smallest number of
/// inserted, left out, replaced or exchanged letters, case aside. Nothing when even that differs in
/// more than a third of the letters.
std::optional<std::string> NearestName(std::string_view word, Names names);

}  // namespace tarn::toolkit

#endif
