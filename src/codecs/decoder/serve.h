#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/decode_file.h"

namespace graphize {

/// DecodeFile, by whoever reads the picture: nothing where it is left to another decoder.
using Decoding = std::function<std::optional<LoadedPicture>(
    const std::string& name, std::string_view file, const MakeRaster& make,
    PictureOperation& operation)>;

/// Decodes one picture for the parent process as decode_protocol.h says: tells it that `layers`
/// hold, waits for its request, and gives the exit code. The process ends at once when the parent
/// does.
int ServeOnePicture(unsigned layers, const Decoding& decode);

}  // namespace graphize
