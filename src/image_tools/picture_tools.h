#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/affine_map.h"
#include "base/raster.h"
#include "image_tools/rotation.h"
#include "raster/colour_table.h"
#include "raster/picture_operation.h"

namespace graphize {

/// The image tools, in the order in which they are offered. Each makes a new picture and leaves the
/// old one as it is. Their amount is 0 to 10, in percent (resize, stretch) or in degrees clockwise
/// (rotate); blur and negate have none.
enum class PictureTool { Blur, EdgeDetect, Negate, Sharpen, Soften, Resize, Stretch, Rotate };
inline constexpr int kPictureTools = 8;

PictureSize ResultSize(PictureTool tool, int amount, PictureSize size);

/// Where the picture's pixels are in the result: their middles have whole positions in both.
AffineMap MapOf(PictureTool tool, int amount, PictureSize size);

/// Whether the picture has fewer pixels each way than the filter's neighbourhood, or the result
/// would have none.
bool IsTooSmall(PictureTool tool, int amount, PictureSize size);

/// Why the result would be too large, sentences in plain words; empty when it would not.
/// `freeMemory` is in bytes.
std::string ResultRefusal(PictureTool tool, int amount, PictureSize size, std::int64_t freeMemory);

/// Bytes that can be had without harm to other programs; the largest number where the system does
/// not tell.
std::int64_t FreeMemory();

/// The picture's colour depth: with at most 256 colours it is in palette mode and has a table of
/// them.
std::optional<ColourTable> QueryPalette(const Raster& picture, const PictureProgress& progress);

/// Runs a tool for which the picture is neither too small nor too large. With a palette the scaled
/// picture has its colours alone. Nothing when `progress` stopped it.
std::optional<Raster> RunTool(PictureTool tool, int amount, const Raster& picture,
                              const ColourTable* palette, const PictureProgress& progress);

/// Reduces what a tool has made of a picture with few colours to few again: of black and white to
/// these two, because the tracers follow only black, else to a palette (colour_reduction.h). False
/// when `progress` stopped it: the picture is then half done.
bool ReduceDepth(Raster& picture, const ColourTable& before, const PictureProgress& progress);

}  // namespace graphize
