#include "finding_axes/ink_image.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "raster/paper.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// Lines and letters are found on a picture of at most so many pixels across.
constexpr int kLargestSide = 2600;

int DifferenceOf(std::uint32_t pixel, Rgb paper) {
  const Rgb d = RgbOf(pixel) - paper;
  return static_cast<int>(std::max({std::fabs(d.R), std::fabs(d.G), std::fabs(d.B)}));
}

/// Means of squares of `factor` pixels; a rest at the right and lower side is left out.
Raster Reduced(const Raster& picture, int factor, PictureOperation& operation) {
  Raster reduced(picture.Width() / factor, picture.Height() / factor);
  const std::uint32_t count = static_cast<std::uint32_t>(factor * factor);
  ParallelRows(picture.Width() * factor, reduced.Height(), operation, [&](int first, int end) {
    std::vector<std::array<std::uint32_t, 3>> sums(reduced.Width());
    for (int y = first; y < end; ++y) {
      std::fill(sums.begin(), sums.end(), std::array<std::uint32_t, 3>{});
      for (int j = 0; j < factor; ++j) {
        const std::uint32_t* row = picture.Row(y * factor + j);
        for (auto& sum : sums)
          for (int i = 0; i < factor; ++i, ++row) {
            sum[0] += *row >> 16 & 0xff;
            sum[1] += *row >> 8 & 0xff;
            sum[2] += *row & 0xff;
          }
      }
      std::uint32_t* to = reduced.Row(y);
      for (const auto& sum : sums)
        *to++ = 0xff000000u | (sum[0] / count) << 16 | (sum[1] / count) << 8 | sum[2] / count;
    }
  });
  return reduced;
}

/// The level that a twentieth of all inked pixels passes.
int FullLevel(const InkImage& ink) {
  std::array<std::size_t, 256> counts{};
  for (const std::uint8_t value : ink.Values) ++counts[value];
  std::size_t inked = 0;
  for (int level = ink.Weak; level < 256; ++level) inked += counts[level];
  std::size_t above = 0;
  for (int level = 255; level > ink.Weak; --level)
    if ((above += counts[level]) * 20 >= inked) return level;
  return ink.Weak;
}

}  // namespace

double InkImage::Sample(double x, double y) const {
  const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
  const double s = x - left, t = y - top;
  return (1 - t) * ((1 - s) * At(left, top) + s * At(left + 1, top)) +
         t * ((1 - s) * At(left, top + 1) + s * At(left + 1, top + 1));
}

InkImage InkOf(const Raster& picture, PictureOperation& operation) {
  const int side = std::max(picture.Width(), picture.Height());
  const int factor = std::max((side + kLargestSide - 1) / kLargestSide, 1);
  Raster small;
  if (factor > 1) small = Reduced(picture, factor, operation);
  if (operation.Stopped) return {};
  const Raster& from = factor > 1 ? small : picture;
  const Paper paper = PaperOf(from, &operation);
  if (operation.Stopped) return {};
  InkImage ink;
  ink.Width = from.Width();
  ink.Height = from.Height();
  ink.Values.resize(from.PixelCount());
  ink.Scale = factor;
  const double shift = 0.5 * (factor - 1);
  ink.ToPicture = {ink.Scale, 0, shift, 0, ink.Scale, shift};
  ParallelRows(from.Width(), from.Height(), operation, [&](int first, int end) {
    for (int y = first; y < end; ++y) {
      const std::uint32_t* row = from.Row(y);
      std::uint8_t* to = ink.Values.data() + static_cast<std::size_t>(y) * from.Width();
      for (int x = 0; x < from.Width(); ++x)
        to[x] = static_cast<std::uint8_t>(DifferenceOf(row[x], paper.At(x, y)));
    }
  });
  if (operation.Stopped) return {};
  ink.Weak = std::clamp(static_cast<int>(5 * paper.Grain), 20, 80);
  ink.Full = FullLevel(ink);
  return ink;
}

InkImage Upright(const InkImage& ink, double angle, double skew) {
  const double c = std::cos(angle), s = std::sin(angle), lean = std::tan(skew);
  // Where a position of the upright image lies on the one that leans.
  AffineMap back{c, -s + lean * c, 0, s, c + lean * s, 0};
  const double w = 0.5 * (ink.Width - 1), h = 0.5 * (ink.Height - 1);
  InkImage upright = ink;
  const double wide = std::fabs(c) * ink.Width + std::fabs(s) * ink.Height;
  const double high = std::fabs(s) * ink.Width + std::fabs(c) * ink.Height;
  upright.Width = static_cast<int>(std::ceil(wide));
  upright.Height = static_cast<int>(std::ceil(high));
  const double u = 0.5 * (upright.Width - 1), v = 0.5 * (upright.Height - 1);
  back.X = w - (back.XX * u + back.XY * v);
  back.Y = h - (back.YX * u + back.YY * v);
  upright.Values.resize(static_cast<std::size_t>(upright.Width) * upright.Height);
  auto to = upright.Values.begin();
  for (int y = 0; y < upright.Height; ++y)
    for (int x = 0; x < upright.Width; ++x, ++to)
      *to = static_cast<std::uint8_t>(std::lround(
          ink.Sample(back.XX * x + back.XY * y + back.X, back.YX * x + back.YY * y + back.Y)));
  upright.ToPicture = Then(back, ink.ToPicture);
  return upright;
}

InkImage Enlarged(const InkImage& ink) {
  // A new pixel's middle lies a quarter of an old one beside that one's.
  static constexpr double kNear[4] = {-0.0703125, 0.8671875, 0.2265625, -0.0234375};
  InkImage large = ink;
  large.Enlarged = 2 * ink.Enlarged;
  large.Scale = ink.Scale / 2;
  large.Width = 2 * ink.Width;
  large.Height = 2 * ink.Height;
  large.Values.resize(static_cast<std::size_t>(large.Width) * large.Height);
  large.ToPicture = Then({0.5, 0, -0.25, 0, 0.5, -0.25}, ink.ToPicture);
  std::vector<float> wide(static_cast<std::size_t>(large.Width) * ink.Height);
  for (int y = 0; y < ink.Height; ++y)
    for (int x = 0; x < large.Width; ++x) {
      const int way = x % 2 == 0 ? -1 : 1;
      double sum = 0;
      for (int k = 0; k < 4; ++k)
        sum += kNear[k] * ink.At(std::clamp(x / 2 + way * (k - 1), 0, ink.Width - 1), y);
      wide[static_cast<std::size_t>(y) * large.Width + x] = static_cast<float>(sum);
    }
  for (int y = 0; y < large.Height; ++y) {
    const int way = y % 2 == 0 ? -1 : 1;
    for (int x = 0; x < large.Width; ++x) {
      double sum = 0;
      for (int k = 0; k < 4; ++k) {
        const int from = std::clamp(y / 2 + way * (k - 1), 0, ink.Height - 1);
        sum +=
            kNear[k] * static_cast<double>(wide[static_cast<std::size_t>(from) * large.Width + x]);
      }
      large.Values[static_cast<std::size_t>(y) * large.Width + x] =
          static_cast<std::uint8_t>(std::clamp(std::lround(sum), 0L, 255L));
    }
  }
  return large;
}

InkImage QuarterTurned(const InkImage& ink) {
  InkImage turned = ink;
  turned.Width = ink.Height;
  turned.Height = ink.Width;
  // Upward on the picture is rightward here.
  const AffineMap back{0, 1, 0, -1, 0, static_cast<double>(ink.Height - 1)};
  for (int y = 0; y < turned.Height; ++y)
    for (int x = 0; x < turned.Width; ++x)
      turned.Values[static_cast<std::size_t>(y) * turned.Width + x] =
          ink.Values[static_cast<std::size_t>(ink.Height - 1 - x) * ink.Width + y];
  turned.ToPicture = Then(back, ink.ToPicture);
  return turned;
}

}  // namespace graphize
