#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <vector>

namespace graphize {

/// Names a captured point within its recipe: no id is given twice, also after all points were
/// deleted. 0 stands for a row that is no captured point (a length, a resampled one).
using PointId = std::uint32_t;

/// Points by their ids. Neighbours are kept as a range: a trace is one.
class PointSet {
 public:
  struct Range {
    PointId First = 0, Last = 0;

    bool operator==(const Range&) const = default;
  };

  PointSet() = default;
  /// In any order and repeated or not; 0 is no point.
  explicit PointSet(std::vector<PointId> ids);
  PointSet(std::initializer_list<PointId> ids) : PointSet(std::vector<PointId>(ids)) {}
  /// Nothing where they are not in ascending order and apart.
  static std::optional<PointSet> OfRanges(std::vector<Range> ranges);

  bool IsEmpty() const { return ranges_.empty(); }
  std::size_t Count() const;
  bool Has(PointId id) const;
  std::vector<PointId> Ids() const;
  /// In ascending order, apart from each other.
  const std::vector<Range>& Ranges() const { return ranges_; }

  bool operator==(const PointSet&) const = default;

 private:
  std::vector<Range> ranges_;
};

PointSet Union(const PointSet& a, const PointSet& b);
/// With the point where it was without it, and without where it was with it.
PointSet Toggled(const PointSet& set, PointId id);

}  // namespace graphize
