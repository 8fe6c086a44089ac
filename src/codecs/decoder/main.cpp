// The program that decodes a picture for Graphize; codecs/decode_protocol.h says how it is started.

#include <cstring>
#include <exception>

#include "base/deferred_text.h"
#include "base/module.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "base/version.h"
#include "codecs/decode_protocol.h"
#include "codecs/decoder/confinement.h"
#include "codecs/decoder/serve.h"

int main(int argc, char** argv) {
  using namespace graphize;
  if (argc != 4 || std::strcmp(argv[1], ModuleStamp()) != 0) return kOtherBuild;
  const auto seconds = IntegerText(argv[3], 1, 1'000'000);
  if (!seconds) return 1;
  SetTranslator(DeferText);
  try {
    const auto& module = *static_cast<const PicbufModule*>(LoadModule(argv[2], "GraphizePicbuf"));
    module.Start();
    return ServeOnePicture(Confine(*seconds),
                           [&](const std::string& name, std::string_view file,
                               const MakeRaster& make, PictureOperation& operation) {
                             return module.Decode(name, file, make, operation, DecodeBy::Fastest);
                           });
  } catch (const std::exception&) {
    return 1;
  }
}
