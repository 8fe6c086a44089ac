#pragma once

#include "codecs/decode_file.h"
#include "codecs/picbuf.h"

namespace graphize {

/// What a module that reads pictures offers under the name `GraphizeReader`: graphize_direct.so for
/// the types that have readers of their own, graphize_picbuf.so, with the picture library, for all.
struct ReaderModule {
  void (*Start)();  // before it is used; only the first call costs anything
  ReadStored* Read;
};

/// What graphize_picbuf.so offers under the name `GraphizeWriter`.
struct WriterModule {
  decltype(&SavePicture) Save;
  decltype(&EncodePicture) Encode;
};

}  // namespace graphize
