#include "capture/point_set.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace graphize {

PointSet::PointSet(std::vector<PointId> ids) {
  std::sort(ids.begin(), ids.end());
  for (const PointId id : ids) {
    if (id == 0) continue;
    if (!ranges_.empty() && id <= ranges_.back().Last + 1)
      ranges_.back().Last = id;
    else
      ranges_.push_back({id, id});
  }
}

std::optional<PointSet> PointSet::OfRanges(std::vector<Range> ranges) {
  PointSet set;
  PointId before = 0;
  for (const auto& [first, last] : ranges) {
    if (first <= before || last < first) return std::nullopt;
    before = last;
  }
  set.ranges_ = std::move(ranges);
  return set;
}

std::size_t PointSet::Count() const {
  std::size_t count = 0;
  for (const auto& [first, last] : ranges_) count += std::size_t{last} - first + 1;
  return count;
}

bool PointSet::Has(PointId id) const {
  const auto behind =
      std::upper_bound(ranges_.begin(), ranges_.end(), id,
                       [](PointId i, const Range& range) { return i < range.First; });
  return behind != ranges_.begin() && id <= std::prev(behind)->Last;
}

std::vector<PointId> PointSet::Ids() const {
  std::vector<PointId> ids;
  ids.reserve(Count());
  for (const auto& [first, last] : ranges_)
    for (PointId id = first; id <= last; ++id) ids.push_back(id);
  return ids;
}

PointSet Union(const PointSet& a, const PointSet& b) {
  std::vector<PointId> ids = a.Ids();
  const std::vector<PointId> more = b.Ids();
  ids.insert(ids.end(), more.begin(), more.end());
  return PointSet(std::move(ids));
}

PointSet Toggled(const PointSet& set, PointId id) {
  std::vector<PointId> ids = set.Ids();
  if (set.Has(id))
    std::erase(ids, id);
  else
    ids.push_back(id);
  return PointSet(std::move(ids));
}

}  // namespace graphize
