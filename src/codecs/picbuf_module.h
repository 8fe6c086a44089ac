#pragma once

#include "codecs/picbuf.h"

namespace graphize {

/// What the module graphize_picbuf.so offers under the name `GraphizePicbuf`.
struct PicbufModule {
  decltype(&LoadPicture) Load;
  decltype(&SavePicture) Save;
  decltype(&DecodePicture) Decode;
  decltype(&EncodePicture) Encode;
};

}  // namespace graphize
