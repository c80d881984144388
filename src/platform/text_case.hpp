#pragma once

#include <string>
#include <string_view>

namespace lunoval {

// Upper case by the locale's rules ("mar." becomes "MAR.", Turkish i becomes İ).
std::string uppercased(std::string_view text, const std::string& localeIdentifier);

}  // namespace lunoval
