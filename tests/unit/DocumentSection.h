// Cuts one section out of a converted document, so that tests compare a
// whole section letter by letter.
#pragma once

#include <string>

namespace morvanta::testing {

// From the line that starts with `first` through the line that starts with
// `last`, line feeds included; empty when either is missing.
inline std::string Section(const std::string& document, const std::string& first, const std::string& last) {
    const auto begin = document.find("\n" + first);
    if (begin == std::string::npos) return {};
    const auto lastLine = document.find("\n" + last, begin + 1);
    if (lastLine == std::string::npos) return {};
    const auto end = document.find('\n', lastLine + 1);
    return document.substr(begin + 1, end == std::string::npos ? std::string::npos : end - begin);
}

}  // namespace morvanta::testing
