#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace graphize::test {

/// A way into the program for what anybody may have written or sent.
struct FuzzTarget {
  std::string Name;
  /// Reads the input as the program does; what it refuses in words is right. Ends the process where
  /// a promise does not hold. False: the input is not of this target's kind.
  bool (*Read)(const FuzzTarget& target, std::string_view input);
};

/// All of them. Inputs of several parts, such as those of a project, have kPartEnd between them.
const std::vector<FuzzTarget>& FuzzTargets();
inline constexpr char kPartEnd = '\x1e';

/// Sound inputs of a target, to begin with.
std::vector<std::string> SeedsOf(const FuzzTarget& target);

}  // namespace graphize::test
