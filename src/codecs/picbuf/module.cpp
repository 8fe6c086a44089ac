#include "base/translation.h"
#include "base/version.h"
#include "codecs/picbuf/library.h"
#include "codecs/picture_modules.h"

extern "C" __attribute__((visibility("default"))) const char* const GraphizeModuleStamp =
    graphize::ModuleStamp();

extern "C" __attribute__((visibility("default"))) void GraphizeSetTranslator(
    graphize::Translator translator) {
  graphize::SetTranslator(translator);
}

extern "C" __attribute__((visibility("default")))
const graphize::ReaderModule GraphizeReader = {graphize::StartLibrary, graphize::ReadByLibrary};

extern "C" __attribute__((visibility("default")))
const graphize::WriterModule GraphizeWriter = {graphize::SavePicture, graphize::EncodePicture};
