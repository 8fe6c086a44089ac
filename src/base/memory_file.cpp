#include "base/memory_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace graphize {

Descriptor NewMemoryFile() {
  return Descriptor(memfd_create("graphize", MFD_CLOEXEC | MFD_ALLOW_SEALING));
}

bool ResizeMemoryFile(const Descriptor& file, std::size_t size) {
  return ftruncate(file.Get(), static_cast<off_t>(size)) == 0;
}

std::size_t SizeOfMemoryFile(const Descriptor& file) {
  struct stat status = {};
  return fstat(file.Get(), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

bool FixSize(const Descriptor& file) {
  return fcntl(file.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0;
}

bool FillMemoryFile(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file.Get(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void PreferLargePages(void* start, std::size_t size) {
  madvise(start, size, MADV_HUGEPAGE);  // else in small ones
}

Mapping::Mapping(const Descriptor& file, std::size_t size, Access access) {
  if (size == 0) return;
  const int protection = access == Access::Write ? PROT_READ | PROT_WRITE : PROT_READ;
  void* data = mmap(nullptr, size, protection, MAP_SHARED, file.Get(), 0);
  if (data == MAP_FAILED) return;
  data_ = data;
  size_ = size;
}

Mapping::~Mapping() {
  if (data_ != nullptr) munmap(data_, size_);
}

void* Mapping::Release() {
  return std::exchange(data_, nullptr);
}

Raster MapRaster(const Descriptor& file, int width, int height) {
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  Mapping mapping(file, count * sizeof(std::uint32_t), Mapping::Access::Write);
  if (mapping.Data() == nullptr) return {};
  return {width, height, static_cast<std::uint32_t*>(mapping.Release()),
          [](std::uint32_t* pixels, std::size_t pixelCount) {
            munmap(pixels, pixelCount * sizeof(std::uint32_t));
          }};
}

}  // namespace graphize
