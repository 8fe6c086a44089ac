#include "base/translation.h"
#include "base/version.h"
#include "codecs/picbuf_module.h"

extern "C" __attribute__((visibility("default"))) const char* const GraphizeModuleStamp =
    graphize::ModuleStamp();

extern "C" __attribute__((visibility("default"))) void GraphizeSetTranslator(
    graphize::Translator translator) {
  graphize::SetTranslator(translator);
}

extern "C" __attribute__((visibility("default"))) const graphize::PicbufModule GraphizePicbuf = {
    graphize::StartLibrary, graphize::DecodeFile, graphize::SavePicture, graphize::EncodePicture};
