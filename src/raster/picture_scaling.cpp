#include "raster/picture_scaling.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// Products of a zoom and a screen's scaling are not exact where a pixel begins.
constexpr double kInexact = 1e-6;

/// The pixels of a level that one row or column of the screen shows: one or two of them.
struct Shown {
  int First = 0, Last = 0;
};

/// For each screen pixel from `from` on what it shows of `length` pixels of a level, `scale` screen
/// pixels each.
std::vector<Shown> ShownBy(int from, int count, double start, double scale, int length) {
  const auto pixelAt = [&](int screen) {
    return static_cast<int>(std::floor((screen - start) / scale + kInexact));
  };
  std::vector<Shown> shown(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const int first = pixelAt(from + i);
    const int last = std::max(scale < 1 ? pixelAt(from + i + 1) - 1 : first, first);
    shown[i] = {std::clamp(first, 0, length - 1), std::clamp(last, 0, length - 1)};
  }
  return shown;
}

int LengthAt(int level, int length) {
  return ((length - 1) >> level) + 1;
}

}  // namespace

int FirstScreenPixel(double start, double scale, int pixel) {
  return static_cast<int>(std::ceil(start + pixel * scale - kInexact));
}

int LevelFor(double scale) {
  const int halvings = static_cast<int>(std::floor(std::log2(1 / scale) + kInexact));
  return std::clamp(halvings, 0, Pyramid::kLargestLevel);
}

int PictureColumn(const PictureScaling& scaling, int screenX) {
  return static_cast<int>(std::floor((screenX - scaling.Left) / scaling.Scale + kInexact));
}

int PictureRow(const PictureScaling& scaling, int screenY) {
  return static_cast<int>(std::floor((screenY - scaling.Top) / scaling.Scale + kInexact));
}

void PaintScaled(Raster& part, int left, int top, const Raster& picture, Pyramid& pyramid,
                 const PictureScaling& scaling) {
  if (part.IsEmpty() || picture.IsEmpty()) return;
  const int level = LevelFor(scaling.Scale);
  const double scale = std::ldexp(scaling.Scale, level);
  const std::vector<Shown> columns =
      ShownBy(left, part.Width(), scaling.Left, scale, LengthAt(level, picture.Width()));
  const std::vector<Shown> rows =
      ShownBy(top, part.Height(), scaling.Top, scale, LengthAt(level, picture.Height()));
  const int first = columns.front().First, count = columns.back().Last - first + 1;
  pyramid.Need(picture, level, first, rows.front().First, first + count, rows.back().Last + 1);
  const bool alone = std::all_of(columns.begin(), columns.end(),
                                 [](const Shown& shown) { return shown.First == shown.Last; });

  const auto pixels = static_cast<std::size_t>(part.Width());
  const auto paint = [&](int firstRow, int endRow) {
    std::vector<std::uint32_t> upper(static_cast<std::size_t>(count)), lower(upper.size());
    std::vector<std::uint32_t> upperEven(pixels), upperOdd(pixels), lowerEven(pixels),
        lowerOdd(pixels);
    const auto spread = [&](const std::uint32_t* row, int Shown::*end, std::uint32_t* to) {
      for (std::size_t i = 0; i < pixels; ++i) to[i] = row[columns[i].*end - first];
    };
    const auto rowOf = [&](int y, std::vector<std::uint32_t>& made) -> const std::uint32_t* {
      if (level == 0) return picture.Row(y) + first;
      pyramid.CopyRow(picture, level, first, y, count, made.data());
      return made.data();
    };
    for (int y = firstRow; y < endRow; ++y) {
      const auto [from, last] = rows[y];
      if (y > firstRow && rows[y - 1].First == from && rows[y - 1].Last == last) {
        std::copy_n(part.Row(y - 1), pixels, part.Row(y));
        continue;
      }
      const std::uint32_t* source = rowOf(from, upper);
      if (alone && from == last) {
        if (count == part.Width())
          std::copy_n(source, pixels, part.Row(y));  // one each
        else
          spread(source, &Shown::First, part.Row(y));
        continue;
      }
      const bool single = last == from;
      spread(source, &Shown::First, upperEven.data());
      spread(source, &Shown::Last, upperOdd.data());
      if (!single) {
        source = rowOf(last, lower);
        spread(source, &Shown::First, lowerEven.data());
        spread(source, &Shown::Last, lowerOdd.data());
      }
      MixRows(upperEven.data(), upperOdd.data(), single ? upperEven.data() : lowerEven.data(),
              single ? upperOdd.data() : lowerOdd.data(), part.Width(), pyramid.DarkGround(),
              part.Row(y));
    }
  };
  PictureOperation unwatched;
  ParallelRows(part.Width(), part.Height(), unwatched, paint);
}

}  // namespace graphize
