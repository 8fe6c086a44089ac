#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workspace/other_pictures_form.h"

namespace graphize {

/// The list of the window FRM_OtherPictures as the text of its file (JSON). Pictures in `folder`,
/// where the file is, stand without it: folder and list may be moved together.
std::string OtherPicturesText(std::vector<OtherPicture> pictures,
                              const std::filesystem::path& folder);
/// The pictures of such a text, without thumbnails. RunTimeError for what is none, or newer.
std::vector<OtherPicture> ReadOtherPictures(std::string_view text,
                                            const std::filesystem::path& folder);

}  // namespace graphize
