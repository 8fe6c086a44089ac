#include "base/descriptor.h"

#include <unistd.h>

#include <utility>

namespace graphize {

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

Descriptor::~Descriptor() {
  if (IsOpen()) close(descriptor_);
}

}  // namespace graphize
