// What every module has for LoadModule, beside what it offers: part of each of them, and of nothing
// else.

#include "base/translation.h"
#include "base/version.h"

extern "C" __attribute__((visibility("default"))) const char* const GraphizeModuleStamp =
    graphize::ModuleStamp();

extern "C" __attribute__((visibility("default"))) void GraphizeSetTranslator(
    graphize::Translator translator) {
  graphize::SetTranslator(translator);
}
