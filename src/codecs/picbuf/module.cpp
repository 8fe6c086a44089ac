#include "codecs/picbuf/library.h"
#include "codecs/picture_modules.h"

extern "C" __attribute__((visibility("default")))
const graphize::ReaderModule GraphizeReader = {graphize::StartLibrary, graphize::ReadByLibrary};

extern "C" __attribute__((visibility("default")))
const graphize::WriterModule GraphizeWriter = {graphize::SavePicture, graphize::EncodePicture};
