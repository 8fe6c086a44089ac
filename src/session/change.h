#pragma once

#include <any>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

#include "raster/raster_event.h"
#include "session/document.h"

namespace graphize {

/// What one command has made different: found by comparing, and symmetrical. It holds what the
/// document is not, before or after.
struct Change {
  struct Record {
    std::size_t Number;  // in RecordsOf
    std::any Other;
  };
  std::vector<Record> Records;
  ArrayChanges Arrays;
  std::shared_ptr<const PointStore> Points;  // all of them, where another curve became active
  ListPage Page;
  std::size_t StepsKept = 0;  // of the recipe, in front of what differs
  std::vector<Step> Steps;
  std::vector<RasterEvent> Raster;
  std::size_t Bytes = 0;  // without whole pictures and curves that were put away
};

/// What of the document has become different over any number of changes, also of those that were
/// taken back or done again: enough to write down what it has become.
struct DocumentDelta {
  struct Part {
    bool Differs = false;
    std::size_t First = SIZE_MAX, Behind = SIZE_MAX;  // elements that are as they were
  };

  bool Anew = false;     // it is another document
  bool Any = false;      // something is different
  bool Records = false;  // small records that do not go with the points
  std::array<Part, std::tuple_size_v<ArrayCopies>> Arrays;
  std::size_t StepsKept = SIZE_MAX;

  void Add(const Change& change);
};

/// Whether a whole picture took the place of another.
bool HasPicture(const Change& change);
/// Whether it holds what other changes may hold, too.
bool HasShared(const Change& change);
/// Without what it may share.
std::size_t BytesOf(const Change& change);

/// The memory of what changes share, each picture and curve counted once.
class SharedBytes {
 public:
  void Add(const Change& change);
  std::size_t AllButLargestPicture() const { return all_ - largest_; }

 private:
  void AddPicture(const PictureBox& box);
  void AddPoints(const std::shared_ptr<const PointStore>& points);

  std::set<const void*> seen_;
  std::size_t all_ = 0, largest_ = 0;
};

}  // namespace graphize
