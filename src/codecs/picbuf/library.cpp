#include "codecs/picbuf/library.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "raster/size_limits.h"

namespace graphize {

namespace {

/// The operation that this thread works on. The library's own helper threads have none.
thread_local PictureOperation* currentOperation = nullptr;

unsigned OnProgress(const char*, lib::magick_int64_t done, lib::magick_uint64_t all,
                    lib::ExceptionInfo*) {
  if (currentOperation == nullptr) return MagickPass;
  currentOperation->Advance(static_cast<double>(done) / static_cast<double>(std::max(all, 1UL)));
  return currentOperation->Stopped ? MagickFail : MagickPass;
}

unsigned RefuseAccess(lib::ConfirmAccessMode, const char*, lib::ExceptionInfo*) {
  errno = EPERM;
  return MagickFail;
}

/// Only the picture types themselves stay: what reads scripts, other files or the network goes.
void KeepPictureTypesOnly() {
  static constexpr std::string_view kKept[] = {"TIFF", "TIF", "BIGTIFF", "JPEG", "JPG", "BMP",
                                               "BMP3", "GIF", "PCX",     "TGA",  "PNG", "WEBP"};
  Report report;
  lib::MagickInfo** all = lib::GetMagickInfoArray(report);
  std::vector<std::string> unwanted;
  for (lib::MagickInfo** entry = all; entry != nullptr && *entry != nullptr; ++entry)
    if (std::ranges::find(kKept, (*entry)->name) == std::end(kKept))
      unwanted.emplace_back((*entry)->name);
  lib::MagickFree(all);
  for (const std::string& name : unwanted) lib::UnregisterMagickInfo(name.c_str());
}

// What the library leaves unwritten, such as the byte before a directory of TIFF, is 0 and not what
// was in memory before.
void* CleanMemory(std::size_t size) {
  return std::calloc(1, size);
}
void* MoreCleanMemory(void* memory, std::size_t size) {
  const std::size_t before = memory != nullptr ? malloc_usable_size(memory) : 0;
  void* more = std::realloc(memory, size);
  if (more == nullptr) return nullptr;
  // There may be more than was asked for, of which the next call takes all as clean.
  const std::size_t whole = malloc_usable_size(more);
  if (whole <= before) return more;
  more = std::realloc(more, whole);
  if (more != nullptr) std::memset(static_cast<char*>(more) + before, 0, whole - before);
  return more;
}

/// The library's own threads end the process where the system gives none.
bool HasThreads() {
  try {
    std::thread([] {}).join();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace

CurrentOperation::CurrentOperation(PictureOperation& operation) {
  currentOperation = &operation;
}

CurrentOperation::~CurrentOperation() {
  currentOperation = nullptr;
}

// Everything stays within this process and its memory: no file is read or written by the library,
// no program started.
void StartLibrary() {
  static std::once_flag started;
  std::call_once(started, [] {
    lib::MagickAllocFunctions(std::free, CleanMemory, MoreCleanMemory);
    Report report;
    lib::InitializeMagickEx(nullptr, MAGICK_OPT_NO_SIGNAL_HANDER, report);
    KeepPictureTypesOnly();
    lib::MagickSetConfirmAccessHandler(RefuseAccess);
    lib::SetMonitorHandler(OnProgress);
    if (!HasThreads()) lib::SetMagickResourceLimit(lib::ThreadsResource, 1);
    constexpr lib::magick_int64_t kGiB = 1 << 30;
    lib::SetMagickResourceLimit(lib::PixelsResource, kMaxPicturePixels);
    lib::SetMagickResourceLimit(lib::WidthResource, kMaxDecodedSide);
    lib::SetMagickResourceLimit(lib::HeightResource, kMaxDecodedSide);
    // The largest picture's pixels and indexes take 10 bytes, its samples in the decoder up to 8.
    lib::SetMagickResourceLimit(lib::MemoryResource, 18 * kMaxPicturePixels);
    lib::SetMagickResourceLimit(lib::MapResource, 0);
    lib::SetMagickResourceLimit(lib::DiskResource, 0);
    lib::SetMagickResourceLimit(lib::ReadResource, 2 * kGiB);
  });
}

ImageInfoPtr InfoFor(const char* coder) {
  ImageInfoPtr info(lib::CloneImageInfo(nullptr));
  lib::MagickStrlCpy(info->magick, coder, MaxTextExtent);
  return info;
}

}  // namespace graphize
