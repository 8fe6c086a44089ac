#pragma once

#include <cstddef>
#include <string_view>

#include "base/descriptor.h"
#include "base/raster.h"

namespace graphize {

// Files that lie in memory alone: another process can be given one, and what it writes there is
// here without a copy.

/// An empty one; closed where the system has none to give.
Descriptor NewMemoryFile();

/// Its size in bytes; what is beyond the former end is 0. False where there is no memory for it.
bool ResizeMemoryFile(const Descriptor& file, std::size_t size);
std::size_t SizeOfMemoryFile(const Descriptor& file);

/// From here on nobody can change its size, so that no access to what is mapped of it can fail.
bool FixSize(const Descriptor& file);

/// Writes `bytes` behind what was written before. False where there is no memory for them.
bool FillMemoryFile(const Descriptor& file, std::string_view bytes);

/// Asks the system for memory in large pages where they are to be had: half of the time that a page
/// of paper takes is spent on giving out small ones. The address is a multiple of 2 MB.
void PreferLargePages(void* start, std::size_t size);

/// Part of this process's memory that is a file's content.
class Mapping {
 public:
  enum class Access { Read, Write };

  /// The first `size` bytes, which the file must have; null where that cannot be.
  Mapping(const Descriptor& file, std::size_t size, Access access);
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;
  ~Mapping();

  void* Data() const { return data_; }
  std::string_view Bytes() const { return {static_cast<const char*>(data_), size_}; }
  /// Who calls this unmaps it.
  void* Release();

 private:
  void* data_ = nullptr;
  std::size_t size_ = 0;
};

/// A raster whose pixels are the file's content, which must be as large; empty where it cannot be
/// mapped.
Raster MapRaster(const Descriptor& file, int width, int height);

}  // namespace graphize
