// The function of text_reader.h as the program sees it: the first call loads the module that does
// the work. The module's own function of this name is hidden in it.

#include "base/module.h"
#include "finding_axes/text_reader.h"

namespace graphize {

std::string ReadTextLine(const TextLine& line) {
  static const auto* module = static_cast<const TextReaderModule*>(
      LoadModule(ModulePath("graphize_text.so"), "GraphizeText"));
  return module->Read(line);
}

}  // namespace graphize
