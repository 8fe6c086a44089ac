#include "raster/picture_scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// Products of a zoom and a screen's scaling are not exact where a pixel begins.
constexpr double kInexact = 1e-6;
/// Columns that are mixed at a time, so that all of it stays near the processor.
constexpr int kPiece = 256;

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

  const auto paint = [&](int firstRow, int endRow) {
    std::vector<std::uint32_t> upper(static_cast<std::size_t>(count)), lower(upper.size());
    std::array<std::uint32_t, kPiece> a, b, c, d;
    const auto rowOf = [&](int y, std::vector<std::uint32_t>& made) -> const std::uint32_t* {
      if (level == 0) return picture.Row(y) + first;
      pyramid.CopyRow(picture, level, first, y, count, made.data());
      return made.data();
    };
    for (int y = firstRow; y < endRow; ++y) {
      const auto [from, last] = rows[y];
      std::uint32_t* to = part.Row(y);
      if (y > firstRow && rows[y - 1].First == from && rows[y - 1].Last == last) {
        std::copy_n(part.Row(y - 1), part.Width(), to);
        continue;
      }
      const std::uint32_t* above = rowOf(from, upper);
      if (alone && from == last) {
        if (count == part.Width())
          std::copy_n(above, part.Width(), to);  // one each
        else
          for (int x = 0; x < part.Width(); ++x) to[x] = above[columns[x].First - first];
        continue;
      }
      const std::uint32_t* below = last == from ? above : rowOf(last, lower);
      for (int x = 0; x < part.Width(); x += kPiece) {
        const int length = std::min(part.Width() - x, kPiece);
        for (int i = 0; i < length; ++i) {
          const int one = columns[x + i].First - first, other = columns[x + i].Last - first;
          a[i] = above[one];
          b[i] = above[other];
          c[i] = below[one];
          d[i] = below[other];
        }
        MixRows(a.data(), b.data(), c.data(), d.data(), length, pyramid.DarkGround(), to + x);
      }
    }
  };
  PictureOperation unwatched;
  ParallelRows(part.Width(), part.Height(), unwatched, paint);
}

}  // namespace graphize
