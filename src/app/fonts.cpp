#include "app/fonts.h"

#include <fontconfig/fontconfig.h>

namespace graphize {

std::jthread ReadFonts() {
  return std::jthread([] { FcInit(); });
}

}  // namespace graphize
