#include "workspace/picture_part.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/free_beside.h"
#include "base/numbers.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "image_tools/picture_tools.h"
#include "image_tools/scaling.h"
#include "raster/size_limits.h"

namespace graphize {

namespace {

constexpr std::pair<const char*, int> kShares[] = {{"half", 50}, {"quarter", 25}};

std::optional<int> PercentOf(const std::string& part) {
  for (const auto& [name, percent] : kShares)
    if (part == name) return percent;
  return std::nullopt;
}

/// A rectangle of picture pixels.
struct Rectangle {
  int Left, Top, Width, Height;
};

std::optional<Rectangle> RectangleOf(const std::string& part) {
  std::array<int, 4> numbers{};
  std::size_t count = 0, start = 0;
  while (start <= part.size()) {
    const std::size_t end = std::min(part.find(',', start), part.size());
    const auto number = IntegerText(TrimRight(part.substr(start, end - start)), 0,
                                    static_cast<int>(kMaxDecodedSide));
    if (!number || count == numbers.size()) return std::nullopt;
    numbers[count++] = *number;
    start = part.find_first_not_of(' ', std::min(end + 1, part.size()));
    if (start == part.npos || end == part.size()) break;
  }
  if (count < numbers.size()) return std::nullopt;
  return Rectangle{numbers[0], numbers[1], numbers[2], numbers[3]};
}

std::string SizeText(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

bool IsTooLong(int width, int height) {
  return std::max(width, height) > kMaxPictureSide;
}

std::string AskForPart(const Desktop& desktop, const std::string& name, int width, int height) {
  TextPrompt prompt{.Prompt = Tr("\"%1\" is %2 pixels, and neither width nor height may be more "
                                 "than %3.\r\nOpen it at half "
                                 "or a quarter of its size, or a part of it: LEFT,TOP,WIDTH,HEIGHT",
                                 name, SizeText(width, height), kMaxPictureSide),
                    .Caption = "Graphize"};
  for (const auto& share : kShares)
    if (PartFault(share.first, width, height).empty()) prompt.Choices.push_back(share.first);
  prompt.Choices.push_back("0,0," + std::to_string(std::min<std::int64_t>(width, kMaxPictureSide)) +
                           "," + std::to_string(std::min<std::int64_t>(height, kMaxPictureSide)));
  prompt.Default = prompt.Choices.front();
  while (true) {
    std::string part = LowerCase(desktop.Prompt(prompt));
    if (part.empty()) return {};
    const std::string fault = PartFault(part, width, height);
    if (fault.empty()) return part;
    Tell(desktop, fault, MessageIcon::Exclamation);
    prompt.Default = part;
  }
}

bool IsPartText(const std::string& part) {
  return PercentOf(part) || RectangleOf(part);
}

std::string PartFault(const std::string& part, int width, int height) {
  if (const auto percent = PercentOf(part)) {
    if (IsTooSmall(PictureTool::Resize, *percent, {width, height}))
      return Tr("There is nothing left of %2 pixels at a %1 of their size.", part,
                SizeText(width, height));
    const PictureSize size = ResultSize(PictureTool::Resize, *percent, {width, height});
    if (std::max(size.Width, size.Height) <= kMaxPictureSide) return {};
    return Tr("A %1 of %2 pixels is still too large.", part, SizeText(width, height));
  }
  const auto asked = RectangleOf(part);
  if (!asked) return Tr("\"%1\" is not half, quarter or a part LEFT,TOP,WIDTH,HEIGHT.", part);
  if (asked->Width < 1 || asked->Height < 1 || std::int64_t{asked->Left} + asked->Width > width ||
      std::int64_t{asked->Top} + asked->Height > height)
    return Tr("The part %1 does not lie on the picture, which is %2 pixels.", part,
              SizeText(width, height));
  return SizeRefusal(asked->Width, asked->Height);
}

bool TakePart(Raster& picture, const std::string& part, const PictureProgress& progress) {
  std::optional<Raster> result;
  if (const auto percent = PercentOf(part)) {
    bool stopped = false;
    const PictureProgress watched = [&](int done) {
      stopped = (progress && !progress(done)) || stopped;
      return !stopped;
    };
    const auto palette = QueryPalette(picture, watched);
    if (stopped) return false;
    result =
        RunTool(PictureTool::Resize, *percent, picture, palette ? &*palette : nullptr, watched);
  } else if (const auto asked = RectangleOf(part)) {
    result = RunBeside(progress, [&](PictureOperation& operation) {
      return CutOut(picture, asked->Left, asked->Top, asked->Width, asked->Height, operation);
    });
  }
  if (!result) return false;
  FreeBeside(std::exchange(picture, std::move(*result)));
  return true;
}

}  // namespace graphize
