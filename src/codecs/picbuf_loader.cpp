// The functions of picbuf.h as the program sees them: pictures are decoded by processes of their
// own, all else by modules, each of which the first call loads. A module's own functions of these
// names are hidden in it.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <string_view>
#include <utility>

#include "base/checksum.h"
#include "base/memory_file.h"
#include "base/module.h"
#include "base/numbers.h"
#include "base/start_beside.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/decode_server.h"
#include "codecs/decoders.h"
#include "codecs/picture_modules.h"

namespace graphize {

namespace {

constexpr const char* kDecoder = "libexec/graphize/graphize-decode";
constexpr const char* kDirectModule = "graphize_direct.so";
constexpr const char* kLibraryModule = "graphize_picbuf.so";

const ReaderModule& DirectReader() {
  static const auto* module =
      static_cast<const ReaderModule*>(LoadModule(ModulePath(kDirectModule), "GraphizeReader"));
  return *module;
}

const ReaderModule& LibraryReader() {
  static const auto* module =
      static_cast<const ReaderModule*>(LoadModule(ModulePath(kLibraryModule), "GraphizeReader"));
  return *module;
}

const WriterModule& Writer() {
  static const auto* module =
      static_cast<const WriterModule*>(LoadModule(ModulePath(kLibraryModule), "GraphizeWriter"));
  return *module;
}

Decoders& AllDecoders() {
  const auto program = [](const char* module, bool leavesFiles) {
    return DecoderProgram{.Program = PathInProgram(kDecoder),
                          .Module = ModulePath(module),
                          .LeavesFiles = leavesFiles};
  };
  static Decoders decoders(program(kDirectModule, true), program(kLibraryModule, false));
  return decoders;
}

/// The checksum of an open file. Of a large one on a thread beside: it would open a third slower.
class FileChecksum {
 public:
  FileChecksum(const Descriptor& file, std::uintmax_t size) {
    const auto read = [this, &file] { return Read(file.Get()); };
    result_ = size > kAtOnce ? StartBeside(read) : std::async(std::launch::deferred, read);
  }
  ~FileChecksum() { stopped_ = true; }
  FileChecksum(const FileChecksum&) = delete;
  FileChecksum& operator=(const FileChecksum&) = delete;

  /// Nothing when `progress` stopped it.
  std::optional<std::uint32_t> Get(const PictureProgress& progress) {
    while (progress && result_.wait_for(kBetweenProgress) == std::future_status::timeout)
      if (!progress(100)) return {};
    return result_.get();
  }

 private:
  std::uint32_t Read(int file) const {
    std::uint32_t checksum = 0;
    std::uintmax_t offset = 0;
    for (std::string block(kAtOnce, '\0'); block.size() == kAtOnce && !stopped_;) {
      ThrowSystemError(ReadAt(file, offset, block));
      checksum = Crc32(checksum, block);
      offset += block.size();
    }
    return checksum;
  }

  static constexpr std::size_t kAtOnce = 1 << 20;  // bytes that stay in the processor's cache

  std::atomic<bool> stopped_ = false;
  std::future<std::uint32_t> result_;  // the last member: its thread ends before the rest goes
};

constexpr std::size_t kBetweenLooks = 16 << 20;  // bytes, for Escape

/// Gives `bytes` to `work(block)` until that says no. Whether all were taken; false also when the
/// operation was stopped.
template <class Work>
bool InBlocks(std::string_view bytes, const PictureOperation& operation, const Work& work) {
  for (; !bytes.empty(); bytes.remove_prefix(std::min(kBetweenLooks, bytes.size())))
    if (operation.Stopped || !work(bytes.substr(0, kBetweenLooks))) return false;
  return true;
}

/// The bytes of an open file; nothing when it was stopped.
std::optional<std::string> BytesOf(const Descriptor& file, std::uintmax_t size,
                                   const PictureOperation& operation) {
  std::string bytes, block;
  bytes.reserve(size);
  do {
    if (operation.Stopped) return {};
    block.resize(std::min<std::uintmax_t>(kBetweenLooks, size - bytes.size()));
    ThrowSystemError(ReadAt(file.Get(), bytes.size(), block));
    bytes += block;
  } while (!block.empty() && bytes.size() < size);
  return bytes;
}

std::optional<LoadedPicture> DecodeHere(const std::string& name, std::string_view bytes,
                                        PictureOperation& operation, DecodeBy by) {
  const auto read = [by](PictureFile& picture, const MakeRaster& make, std::string& warning,
                         PictureOperation& reading) {
    std::optional<StoredPicture> stored;
    if (by == DecodeBy::Fastest) stored = DirectReader().Read(picture, make, warning, reading);
    if (!stored && !reading.Stopped) stored = LibraryReader().Read(picture, make, warning, reading);
    return stored;
  };
  return DecodeFile(name, bytes, RasterOnHeap, operation, read);
}

/// For lack of a process. A program that is not complete says so, and has decoded nothing.
std::optional<LoadedPicture> DecodeWithin(const std::string& name, std::string_view bytes,
                                          PictureOperation& operation) {
  DirectReader();
  AllDecoders().NoteDecodedWithin();
  return DecodeHere(name, bytes, operation, DecodeBy::Fastest);
}

std::optional<LoadedPicture> WithNumbersOf(const std::string& bytes,
                                           std::optional<LoadedPicture> loaded,
                                           const PictureProgress& progress) {
  if (!loaded) return loaded;
  loaded->FileSize = bytes.size();
  const bool isDone = RunBeside(progress, [&](PictureOperation& operation) {
    operation.Percent = 100;
    return InBlocks(bytes, operation, [&](std::string_view block) {
      loaded->FileChecksum = Crc32(loaded->FileChecksum, block);
      return true;
    });
  });
  return isDone ? std::move(loaded) : std::nullopt;
}

/// A guess by the name, for the time that it saves: either kind comes to the same picture, which
/// decode_server_test and direct_readers_test compare.
DecoderKind FirstDecoder(const std::string& name) {
  constexpr std::string_view kOfLibrary[] = {".gif", ".pcx", ".tga", ".webp"};
  const std::string small = LowerCase(name);
  const auto ends = [&](std::string_view ending) { return small.ends_with(ending); };
  return std::ranges::any_of(kOfLibrary, ends) ? DecoderKind::Library : DecoderKind::Direct;
}

/// By processes of its own, or, where the system allows none, within this one `otherwise`.
template <class Otherwise>
std::optional<LoadedPicture> DecodeApart(const std::string& name, const Descriptor& file,
                                         std::uintmax_t size, const PictureProgress& progress,
                                         const Otherwise& otherwise) {
  // A second decoder begins anew.
  PictureProgress onwards;
  if (progress)
    onwards = [&progress, most = 0](int percent) mutable {
      most = std::max(most, percent);
      return progress(most);
    };
  const DecoderKind first = FirstDecoder(name);
  Decoded decoded = AllDecoders().Decode(first, name, file, size, onwards);
  if (decoded.End == DecodeEnd::Left)
    decoded = AllDecoders().Decode(DecoderKind::Library, name, file, size, onwards);
  switch (decoded.End) {
    case DecodeEnd::Picture:
      return std::move(decoded.Picture);
    case DecodeEnd::NoProcess:
      return RunBeside(onwards, otherwise);
    case DecodeEnd::Left:
    case DecodeEnd::Stopped:
      break;
  }
  return {};
}

std::optional<LoadedPicture> DecodeOpened(const std::string& name, const Descriptor& file,
                                          std::uintmax_t size, const PictureProgress& progress) {
  FileChecksum checksum(file, size);
  auto loaded = DecodeApart(name, file, size, progress,
                            [&](PictureOperation& operation) -> std::optional<LoadedPicture> {
                              const auto bytes = BytesOf(file, size, operation);
                              return bytes ? DecodeWithin(name, *bytes, operation) : std::nullopt;
                            });
  if (!loaded) return {};
  const auto number = checksum.Get(progress);
  if (!number) return {};
  loaded->FileSize = size;
  loaded->FileChecksum = *number;
  return loaded;
}

std::string WithinThisProgram() {
  const std::filesystem::path decoder = PathInProgram(kDecoder);
  std::error_code failure;
  if (std::filesystem::exists(decoder, failure) || failure) return MissingProtection(0);
  return Tr("Pictures are decoded within this program, which is not complete: it lacks %1.",
            decoder.string());
}

}  // namespace

std::optional<LoadedPicture> LoadPicture(const std::filesystem::path& path,
                                         const PictureProgress& progress) {
  constexpr std::uintmax_t kLargestFile = std::uintmax_t{2} << 30;
  return NamingTheFile("Cannot open the picture \"%1\".", path, [&] {
    const std::string name = path.filename().string();
    std::uintmax_t size = 0;
    std::error_code failure;
    const Descriptor file = OpenToRead(path, size, failure);
    if (!failure && size > kLargestFile) failure = std::make_error_code(std::errc::file_too_large);
    ThrowSystemError(failure);
    const FileState before = StateOf(file);
    // Pixels and checksum would be of different bytes, and a sound file would be called damaged.
    const auto throwIfChanged = [&] {
      if (StateOf(file) != before)
        throw RunTimeError(
            "The file was changed while it was being opened. Please open it again when it is "
            "complete.");
    };
    try {
      auto loaded = DecodeOpened(name, file, before.Size, progress);
      if (loaded) throwIfChanged();
      return loaded;
    } catch (const RunTimeError&) {
      throwIfChanged();
      throw;
    }
  });
}

std::optional<LoadedPicture> DecodePicture(const std::string& name, const std::string& bytes,
                                           const PictureProgress& progress) {
  return NamingTheFile("Cannot open the picture \"%1\".", name, [&] {
    const auto decode = [&](PictureOperation& operation) {
      return DecodeWithin(name, bytes, operation);
    };
    const Descriptor file = NewMemoryFile();
    bool isStopped = false;
    const bool isFilled = file.IsOpen() && RunBeside(progress, [&](PictureOperation& operation) {
                            const bool isWhole =
                                InBlocks(bytes, operation, [&](std::string_view block) {
                                  return FillMemoryFile(file, block);
                                });
                            isStopped = operation.Stopped;
                            return isWhole;
                          });
    if (isStopped) return std::optional<LoadedPicture>();
    if (!isFilled) AllDecoders().NoteNone(DecoderKind::Direct);
    return WithNumbersOf(bytes,
                         isFilled ? DecodeApart(name, file, bytes.size(), progress, decode)
                                  : RunBeside(progress, decode),
                         progress);
  });
}

std::optional<LoadedPicture> DecodePictureHere(const std::string& name, const std::string& bytes,
                                               const PictureProgress& progress, DecodeBy by) {
  return NamingTheFile("Cannot open the picture \"%1\".", name, [&] {
    return WithNumbersOf(bytes,
                         RunBeside(progress,
                                   [&](PictureOperation& operation) {
                                     return DecodeHere(name, bytes, operation, by);
                                   }),
                         progress);
  });
}

void PrepareToDecode(DecodersReady which) {
  try {
    switch (which) {
      case DecodersReady::None:
        AllDecoders().EndAll();
        break;
      case DecodersReady::All:
        AllDecoders().StartAhead(DecoderKind::Library);
        [[fallthrough]];
      case DecodersReady::Usual:
        AllDecoders().StartAhead(DecoderKind::Direct);
    }
  } catch (const std::exception&) {
    // A program that is not complete says so when there is a picture.
  }
}

std::string MissingDecodeProtection() {
  const auto layers = AllDecoders().Layers();
  if (!layers) return {};
  return *layers == 0 ? WithinThisProgram() : MissingProtection(*layers);
}

std::string DecodedWithinProgram() {
  return AllDecoders().WasDecodedWithin() ? WithinThisProgram() : std::string();
}

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return Writer().Save(path, format, option, picture, progress);
}

std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress) {
  return Writer().Encode(format, option, picture, progress);
}

}  // namespace graphize
