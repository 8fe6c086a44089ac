#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "reading/ink_blend.h"
#include "reading/ink_map.h"
#include "reading/stroke_path.h"

namespace graphize {

/// What a stroke is like, measured along it.
struct StrokeKind {
  double Width = 1;       // pixels across it
  bool IsHard = false;    // drawn in full pixels, without soft edges
  bool IsDotted = false;  // a row of dots
};

/// Where the stroke's middle lies across one column of the picture, or across one row where it is
/// steeper than 45 degrees.
struct StrokeSample {
  bool AlongRow = false;  // steep: `At` is the row, `Middle` a column
  int At = 0;
  double Middle = 0;       // where it is seen, else where the path went
  bool IsSeen = false;     // not hidden, not merged with other ink, not in a gap
  bool IsGap = false;      // there is only paper
  bool IsPart = false;     // less ink than the stroke's full width
  bool IsLoose = false;    // seen to half a pixel only, as the top of a stroke without soft edges
  bool IsCrowded = false;  // more ink than the stroke's
  int Pixel = 0;           // of the path, an index
  double Slope = 0;        // of the path: rows per column, or columns per row where it is steep

  double X() const { return AlongRow ? Middle : At; }
  double Y() const { return AlongRow ? At : Middle; }
  bool operator==(const StrokeSample&) const = default;
};

StrokeKind KindOf(const InkMap& map, const std::vector<PathPixel>& path);

/// First and last pixel of ink in a cut.
struct InkRun {
  int First = 0, Last = 0;
};

/// A path and the samples along it, as SamplesOf gives them.
class SampledPath {
 public:
  /// The map and the blends must outlive it.
  SampledPath(const InkMap& map, std::vector<PathPixel> path, const StrokeKind& kind,
              const InkBlends* blends = nullptr);

  const std::vector<PathPixel>& Path() const { return path_; }
  const std::vector<StrokeSample>& Samples() const { return samples_; }

  /// Pixels `first` to before `end` of the path become `pixels`. Only what they touch is looked at
  /// again: a path may be long, and change at each of its crossings.
  void Exchange(std::size_t first, std::size_t end, std::span<const PathPixel> pixels);

 private:
  struct Cut {
    StrokeSample Sample;  // by this cut alone
    InkRun Ink;
    int First, Last;  // of the path's pixels
  };

  int Count() const { return static_cast<int>(path_.size()); }
  /// The nearest to a number beyond the ends.
  PathPixel Pixel(int i) const {
    return path_[static_cast<std::size_t>(std::clamp(i, 0, Count() - 1))];
  }
  int NextPixel() const { return cuts_.empty() ? 0 : cuts_.back().Last + 1; }
  Cut NextCut() const;
  bool IsSteep(int i, bool before) const;
  std::vector<InkRun> RunsBeyond(const StrokeSample& sample, int step) const;
  void Finish();

  const InkMap& map_;
  StrokeKind kind_;
  const InkBlends* blends_;
  int reach_;  // pixels of the path to both sides that tell its slope
  std::vector<PathPixel> path_;
  std::vector<Cut> cuts_;
  std::vector<StrokeSample> samples_;
};

/// One sample per column, or row, that the path goes through, in its order. Where a stroke ends or
/// is interrupted, what is not its full width across is not seen. What other inks share with it is
/// seen by `blends`, if given; and where a part of the stroke shows one of its edges, its width
/// tells the other.
std::vector<StrokeSample> SamplesOf(const InkMap& map, const std::vector<PathPixel>& path,
                                    const StrokeKind& kind, const InkBlends* blends = nullptr);

}  // namespace graphize
