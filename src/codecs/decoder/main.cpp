// The program that decodes pictures for Graphize; codecs/decode_protocol.h says how it is started.

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
#include "codecs/picture_modules.h"

int main(int argc, char** argv) {
  using namespace graphize;
  if (argc != 4 || std::strcmp(argv[1], ModuleStamp()) != 0) return kOtherBuild;
  const auto seconds = IntegerText(argv[3], 1, 1'000'000);
  if (!seconds) return 1;
  SetTranslator(DeferText);
  const void* module = nullptr;
  try {
    module = LoadModule(argv[2], "GraphizeReader");
  } catch (const std::exception&) {
    return kNoModule;
  }
  try {
    const auto& reader = *static_cast<const ReaderModule*>(module);
    reader.Start();
    return ServeDecoders([&](int channel) { return Confine(channel, *seconds); },
                         [&](const std::string& name, std::string_view file, const MakeRaster& make,
                             PictureOperation& operation) {
                           return DecodeFile(name, file, make, operation, reader.Read);
                         });
  } catch (const std::exception&) {
    return 1;
  }
}
