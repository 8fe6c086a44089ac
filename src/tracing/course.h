#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace graphize {

/// Where a followed curve goes by its last few columns.
class Course {
 public:
  /// The curve is in `row` in this column, which is right of those before, `height` rows tall.
  void Add(int column, double row, int height) {
    if (count_ == kColumns) {
      for (std::size_t i = 1; i < kColumns; ++i) places_[i - 1] = places_[i];
      --count_;
    }
    places_[count_++] = {column, row, height};
    slope_ = SlopeByPlaces();
  }
  /// Forgets what was before: the curve leapt.
  void Clear() { count_ = 0; }

  double Row() const { return Last().Row; }
  /// Rows per column, over as few columns as show it: whole rows tell little of a flat curve's.
  double Slope() const { return slope_; }
  /// The row of a column ahead when it goes straight on.
  double RowAt(int column) const { return Row() + Slope() * (column - Last().Column); }
  /// The greatest height that its slope explains.
  double Tallest() const {
    int tallest = 0;
    for (std::size_t i = 0; i < count_; ++i) tallest = std::max(tallest, places_[i].Height);
    return tallest + std::abs(Slope());
  }

 private:
  struct Place {
    int Column = 0;
    double Row = 0;
    int Height = 0;
  };
  static constexpr std::size_t kColumns = 12;
  static constexpr double kEnoughRows = 4;

  const Place& Last() const { return places_[count_ - 1]; }
  double SlopeByPlaces() const {
    for (std::size_t i = count_; i-- > 0;) {
      const double rows = Row() - places_[i].Row;
      if (i + 1 < count_ && (i == 0 || std::abs(rows) >= kEnoughRows))
        return rows / (Last().Column - places_[i].Column);
    }
    return 0;
  }

  std::array<Place, kColumns> places_{};
  std::size_t count_ = 0;
  double slope_ = 0;
};

}  // namespace graphize
