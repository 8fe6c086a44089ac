#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/decode_file.h"

namespace graphize {

/// Fences the process in, but for the file `channel`; gives the layers that hold (DecodeLayer).
using Confining = std::function<unsigned(int channel)>;
/// DecodeFile, by whoever reads the picture: nothing where it is left to another decoder.
using Decoding = std::function<std::optional<LoadedPicture>(
    const std::string& name, std::string_view file, const MakeRaster& make,
    PictureOperation& operation)>;

/// Forks a decoder for every request that comes from the parent process, as decode_protocol.h says,
/// until there is no parent. This process must have one thread alone. Gives the exit code.
int ServeDecoders(const Confining& confine, const Decoding& decode);

}  // namespace graphize
