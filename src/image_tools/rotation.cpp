#include "image_tools/rotation.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "raster/orientation.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// Quarter turns clockwise, 0 to 3, or -1 for an angle between them.
int QuarterTurns(int degrees) {
  return degrees % 90 != 0 ? -1 : ((degrees / 90) % 4 + 4) % 4;
}

double Radians(int degrees) {
  return degrees * std::numbers::pi / 180;
}

std::optional<Raster> Turn(const Raster& picture, int quarters, PictureOperation& operation) {
  static constexpr int kOrientations[] = {1, 6, 3, 8};
  const bool onItsSide = quarters % 2 == 1;
  return RasterByRows(onItsSide ? picture.Height() : picture.Width(),
                      onItsSide ? picture.Width() : picture.Height(), operation,
                      [&](Raster& turned, int first, int end) {
                        OrientRows(picture, kOrientations[quarters], turned, first, end);
                      });
}

/// The four components of a pixel, 16 bits to each.
std::uint64_t Spread(std::uint32_t pixel) {
  return (pixel & 0x00ff00ffull) | (pixel & 0xff00ff00ull) << 24;
}

std::uint32_t Joined(std::uint64_t spread) {
  return static_cast<std::uint32_t>((spread & 0x00ff00ffull) | (spread >> 24 & 0xff00ff00ull));
}

/// From a (part 0) to b (part 256), all components at once.
std::uint64_t Mixed(std::uint64_t a, std::uint64_t b, std::uint32_t part) {
  return (((a << 8) + (b - a) * part + 0x0080008000800080ull) >> 8) & 0x00ff00ff00ff00ffull;
}

/// Reads between the pixels of a picture that lies on white. Positions count from the middle of the
/// first pixel and have kFractionBits of fraction.
class Sampler {
 public:
  static constexpr int kFractionBits = 32;

  explicit Sampler(const Raster& picture) : picture_(picture) {}

  /// Fills `out` with the pixels at (x, y) and every (stepX, stepY) further. `areGrey`: the
  /// picture's components are all the same.
  void Fill(std::span<std::uint32_t> out, std::int64_t x, std::int64_t y, std::int64_t stepX,
            std::int64_t stepY, bool areGrey) const {
    const auto last = std::ssize(out) - 1;
    // On a straight line all is within where both ends are.
    const bool within = IsWithin(x, y) && IsWithin(x + last * stepX, y + last * stepY);
    for (std::uint32_t& pixel : out) {
      pixel = !within ? At(x, y) : areGrey ? GreyWithin(x, y) : Within(x, y);
      x += stepX;
      y += stepY;
    }
  }

 private:
  static int Whole(std::int64_t position) { return static_cast<int>(position >> kFractionBits); }
  static std::uint32_t Part(std::int64_t position) {
    return static_cast<std::uint32_t>(position >> (kFractionBits - 8)) & 0xffu;
  }

  /// Whether all four neighbours are pixels of the picture.
  bool IsWithin(std::int64_t x, std::int64_t y) const {
    return Whole(x) >= 0 && Whole(y) >= 0 && Whole(x) + 1 < picture_.Width() &&
           Whole(y) + 1 < picture_.Height();
  }
  std::uint32_t At(std::int64_t x, std::int64_t y) const {
    const int column = Whole(x), row = Whole(y);
    if (column < -1 || row < -1 || column >= picture_.Width() || row >= picture_.Height())
      return kWhitePixel;
    return Mix(Pixel(column, row), Pixel(column + 1, row), Pixel(column, row + 1),
               Pixel(column + 1, row + 1), x, y);
  }
  std::uint32_t Within(std::int64_t x, std::int64_t y) const {
    const std::uint32_t* above = picture_.Row(Whole(y)) + Whole(x);
    const std::uint32_t* below = above + picture_.Width();
    return Mix(above[0], above[1], below[0], below[1], x, y);
  }
  /// The same of one component, above and below at once.
  std::uint32_t GreyWithin(std::int64_t x, std::int64_t y) const {
    const std::uint32_t* above = picture_.Row(Whole(y)) + Whole(x);
    const std::uint32_t* below = above + picture_.Width();
    if (above[0] == above[1] && below[0] == below[1] && above[0] == below[0]) return above[0];
    const auto both = [&](int i) {
      return std::uint64_t{above[i] & 0xffu} | std::uint64_t{below[i] & 0xffu} << 32;
    };
    const std::uint64_t mixed = Mixed(both(0), both(1), Part(x));
    return kBlackPixel |
           static_cast<std::uint32_t>(Mixed(mixed & 0xffu, mixed >> 32, Part(y))) * 0x010101u;
  }
  std::uint32_t Pixel(int column, int row) const {
    const bool inside = static_cast<unsigned>(column) < static_cast<unsigned>(picture_.Width()) &&
                        static_cast<unsigned>(row) < static_cast<unsigned>(picture_.Height());
    return inside ? picture_.Row(row)[column] : kWhitePixel;
  }
  static std::uint32_t Mix(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d,
                           std::int64_t x, std::int64_t y) {
    if (a == b && c == d && a == c) return a;  // most of a plot is paper
    return Joined(
        Mixed(Mixed(Spread(a), Spread(b), Part(x)), Mixed(Spread(c), Spread(d), Part(x)), Part(y)));
  }

  const Raster& picture_;
};

}  // namespace

PictureSize RotatedSize(PictureSize size, int degrees) {
  const int quarters = QuarterTurns(degrees);
  if (quarters >= 0) return quarters % 2 == 0 ? size : PictureSize{size.Height, size.Width};
  const double c = std::fabs(std::cos(Radians(degrees)));
  const double s = std::fabs(std::sin(Radians(degrees)));
  const auto w = static_cast<double>(size.Width), h = static_cast<double>(size.Height);
  // What rounding adds to a whole number makes no row of its own.
  const auto whole = [](double side) { return static_cast<std::int64_t>(std::ceil(side - 1e-6)); };
  return {whole(w * c + h * s), whole(w * s + h * c)};
}

AffineMap RotationMap(PictureSize size, int degrees) {
  const PictureSize turned = RotatedSize(size, degrees);
  const auto middle = [](std::int64_t side) { return static_cast<double>(side - 1) / 2; };
  const int quarters = QuarterTurns(degrees);
  static constexpr int kCosines[] = {1, 0, -1, 0}, kSines[] = {0, 1, 0, -1};
  const double cosine = quarters >= 0 ? kCosines[quarters] : std::cos(Radians(degrees));
  const double sine = quarters >= 0 ? kSines[quarters] : std::sin(Radians(degrees));
  return Turned(cosine, sine, 1, 1, middle(size.Width), middle(size.Height), middle(turned.Width),
                middle(turned.Height));
}

std::optional<Raster> Rotate(const Raster& picture, int degrees, bool areGrey,
                             PictureOperation& operation) {
  if (const int quarters = QuarterTurns(degrees); quarters >= 0)
    return Turn(picture, quarters, operation);
  const PictureSize size = RotatedSize({picture.Width(), picture.Height()}, degrees);
  const int width = static_cast<int>(size.Width), height = static_cast<int>(size.Height);
  const Sampler sampler(picture);
  // Where the pixels of the result lie in the picture: turned back about the middles of both.
  constexpr double kOne = static_cast<double>(std::int64_t{1} << Sampler::kFractionBits);
  const double c = std::cos(Radians(degrees)), s = std::sin(Radians(degrees));
  const double middleX = (width - 1) / 2.0, middleY = (height - 1) / 2.0;
  const double pictureX = (picture.Width() - 1) / 2.0, pictureY = (picture.Height() - 1) / 2.0;
  const std::int64_t stepX = std::llround(c * kOne), stepY = std::llround(-s * kOne);
  // In squares, or a picture on its side would miss the cache at every pixel.
  constexpr int kSquare = 64;
  const auto fillSquare = [&](Raster& turned, int left, int right, int top, int bottom) {
    for (int y = top; y < bottom; ++y) {
      const double dx = left - middleX, dy = y - middleY;
      const std::int64_t x = std::llround((dx * c + dy * s + pictureX) * kOne);
      const std::int64_t y1 = std::llround((dy * c - dx * s + pictureY) * kOne);
      sampler.Fill({turned.Row(y) + left, turned.Row(y) + right}, x, y1, stepX, stepY, areGrey);
    }
  };
  return RasterByRows(width, height, operation, [&](Raster& turned, int first, int end) {
    for (int left = 0; left < width; left += kSquare)
      fillSquare(turned, left, std::min(left + kSquare, width), first, end);
  });
}

}  // namespace graphize
