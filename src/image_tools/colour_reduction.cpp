#include "image_tools/colour_reduction.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/colour_table.h"
#include "raster/parallel_rows.h"

namespace graphize {

namespace {

/// Colours are told apart by five bits of each component while the palette is sought.
constexpr std::size_t kCells = 1 << 15;

std::size_t CellOf(std::uint32_t pixel) {
  return (pixel >> 9 & 0x7c00u) | (pixel >> 6 & 0x3e0u) | (pixel >> 3 & 0x1fu);
}

/// The pixels of one cell: how many there are, and the sums of their components.
struct Cell {
  std::size_t Index = 0;
  std::uint64_t Count = 0;
  std::array<std::uint64_t, 3> Sums{};

  double Mean(int part) const {
    return static_cast<double>(Sums[part]) / static_cast<double>(Count);
  }
};

bool IsKept(std::uint32_t pixel) {
  return pixel == kBlackPixel || pixel == kWhitePixel;
}

/// The cells that hold any pixel but black and white.
std::vector<Cell> CountCells(const Raster& picture, PictureOperation& operation) {
  std::vector<Cell> cells(kCells);
  for (int y = 0; y < picture.Height() && !operation.Stopped; ++y) {
    const std::uint32_t* row = picture.Row(y);
    for (int x = 0, next; x < picture.Width(); x = next) {
      for (next = x + 1; next < picture.Width() && row[next] == row[x];) ++next;
      if (IsKept(row[x])) continue;
      Cell& cell = cells[CellOf(row[x])];
      cell.Count += static_cast<std::uint64_t>(next - x);
      for (int part = 0; part < 3; ++part)
        cell.Sums[part] += static_cast<std::uint64_t>(next - x) * (row[x] >> (8 * part) & 0xffu);
    }
    operation.Advance(static_cast<double>(y) / picture.Height());
  }
  for (std::size_t i = 0; i < kCells; ++i) cells[i].Index = i;
  std::erase_if(cells, [](const Cell& cell) { return cell.Count == 0; });
  return cells;
}

/// Cells `First` to `End` - 1, which become one colour.
struct Box {
  std::size_t First = 0, End = 0;
  std::uint64_t Count = 0;
  int LongestPart = 0;
  double Length = 0;

  double Worth() const { return Length * static_cast<double>(Count); }
};

Box BoxOf(const std::vector<Cell>& cells, std::size_t first, std::size_t end) {
  Box box{first, end};
  for (std::size_t i = first; i < end; ++i) box.Count += cells[i].Count;
  for (int part = 0; part < 3; ++part) {
    const auto [least, most] = std::minmax_element(
        cells.begin() + static_cast<std::ptrdiff_t>(first),
        cells.begin() + static_cast<std::ptrdiff_t>(end),
        [part](const Cell& a, const Cell& b) { return a.Mean(part) < b.Mean(part); });
    const double length = most->Mean(part) - least->Mean(part);
    if (length > box.Length) box.Length = length, box.LongestPart = part;
  }
  return box;
}

/// Cuts the box where half of its pixels lie on either side.
std::pair<Box, Box> Cut(std::vector<Cell>& cells, const Box& box) {
  std::sort(cells.begin() + static_cast<std::ptrdiff_t>(box.First),
            cells.begin() + static_cast<std::ptrdiff_t>(box.End),
            [part = box.LongestPart](const Cell& a, const Cell& b) {
              return a.Mean(part) < b.Mean(part);
            });
  std::uint64_t below = cells[box.First].Count;
  std::size_t middle = box.First + 1;
  while (middle + 1 < box.End && 2 * below < box.Count) below += cells[middle++].Count;
  return {BoxOf(cells, box.First, middle), BoxOf(cells, middle, box.End)};
}

std::vector<Box> MedianCut(std::vector<Cell>& cells, std::size_t most,
                           const PictureOperation& operation) {
  std::vector<Box> boxes = {BoxOf(cells, 0, cells.size())};
  const auto byWorth = [](const Box& a, const Box& b) { return a.Worth() < b.Worth(); };
  while (boxes.size() < most && boxes.front().Worth() > 0 && !operation.Stopped) {
    std::pop_heap(boxes.begin(), boxes.end(), byWorth);
    const auto [low, high] = Cut(cells, boxes.back());
    boxes.back() = low;
    std::push_heap(boxes.begin(), boxes.end(), byWorth);
    boxes.push_back(high);
    std::push_heap(boxes.begin(), boxes.end(), byWorth);
  }
  return boxes;
}

/// The mean of a box as a pixel; never black, which would be a curve.
std::uint32_t ColourOf(const std::vector<Cell>& cells, const Box& box) {
  std::array<std::uint64_t, 3> sums{};
  for (std::size_t i = box.First; i < box.End; ++i)
    for (int part = 0; part < 3; ++part) sums[part] += cells[i].Sums[part];
  std::uint32_t pixel = kBlackPixel;
  for (int part = 0; part < 3; ++part)
    pixel |= static_cast<std::uint32_t>((sums[part] + box.Count / 2) / box.Count) << (8 * part);
  return pixel == kBlackPixel ? 0xff010101u : pixel;
}

}  // namespace

bool ReduceToPalette(Raster& picture, PictureOperation& operation) {
  const double from = operation.From, third = (operation.To - from) / 3;
  const auto begin = [&](int part) {
    operation.From = from + part * third;
    operation.To = operation.From + third;
  };
  begin(0);
  if (ColourTable::Of(picture, operation)) return true;
  begin(1);
  std::vector<Cell> cells = CountCells(picture, operation);
  if (operation.Stopped) return false;
  begin(2);

  std::vector<std::uint32_t> colours(kCells);
  for (const Box& box : MedianCut(cells, 254, operation)) {
    const std::uint32_t colour = ColourOf(cells, box);
    for (std::size_t i = box.First; i < box.End; ++i) colours[cells[i].Index] = colour;
  }
  return ParallelRows(picture.Width(), picture.Height(), operation, [&](int first, int end) {
    std::uint32_t* const last = picture.Row(end - 1) + picture.Width();
    for (std::uint32_t* pixel = picture.Row(first); pixel != last; ++pixel)
      if (!IsKept(*pixel)) *pixel = colours[CellOf(*pixel)];
  });
}

}  // namespace graphize
