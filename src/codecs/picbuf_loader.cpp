// The functions of picbuf.h as the program sees them: pictures are decoded by a process of their
// own, all else by a module, which the first call loads. The module's own functions of these names
// are hidden in it.

#include <atomic>
#include <future>
#include <mutex>
#include <optional>
#include <utility>

#include "base/checksum.h"
#include "base/memory_file.h"
#include "base/module.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/decode_worker.h"
#include "codecs/picbuf_module.h"

namespace graphize {

namespace {

constexpr const char* kModule = "graphize_picbuf.so";

const PicbufModule& Module() {
  static const auto* module =
      static_cast<const PicbufModule*>(LoadModule(ModulePath(kModule), "GraphizePicbuf"));
  return *module;
}

/// The processes for the pictures to come, for all threads.
class Decoders {
 public:
  /// One that is ready; nothing where the system allows none.
  std::optional<DecodeWorker> Take() {
    std::optional<DecodeWorker> worker;
    {
      const std::lock_guard lock(mutex_);
      worker = std::exchange(Next(), std::nullopt);
    }
    // Who is short of memory may have ended it while it waited.
    if (worker && worker->HasEnded()) worker.reset();
    if (!worker && NewMemoryFile().IsOpen()) worker = DecodeWorker::Start(program_);
    layers_ = worker ? worker->Layers() : 0;
    if (layers_ == 0) worker.reset();
    return worker;
  }

  /// On a thread beside: starting a process takes as long as a small picture.
  void StartNext() {
    const std::lock_guard lock(mutex_);
    if (!ahead_ || next_ || starting_.valid()) return;
    try {
      starting_ = std::async(std::launch::async, [this] { return DecodeWorker::Start(program_); });
    } catch (const std::exception&) {
      // No memory or thread for it: the next picture waits for its process.
    }
  }
  void StartAhead() {
    ahead_ = true;
    StartNext();
  }

  /// Of the latest process; nothing before the first.
  std::optional<unsigned> Layers() {
    const std::lock_guard lock(mutex_);
    if (Next()) layers_ = Next()->Layers();
    return layers_ == kUnknown ? std::nullopt : std::optional(layers_.load());
  }

 private:
  static constexpr unsigned kUnknown = 256;

  std::optional<DecodeWorker>& Next() {
    if (starting_.valid()) next_ = starting_.get();
    return next_;
  }

  const DecoderProgram program_{.Program = PathInProgram("libexec/graphize/graphize-decode"),
                                .Module = ModulePath(kModule)};
  std::mutex mutex_;
  std::optional<DecodeWorker> next_;
  std::future<std::optional<DecodeWorker>> starting_;
  std::atomic<bool> ahead_ = false;
  std::atomic<unsigned> layers_ = kUnknown;
};

Decoders& AllDecoders() {
  static Decoders decoders;
  return decoders;
}

/// The checksum of an open file, on a thread beside: large files would open a third slower.
class FileChecksum {
 public:
  explicit FileChecksum(const Descriptor& file)
      : result_(std::async(std::launch::async, [this, &file] { return Read(file.Get()); })) {}
  ~FileChecksum() { stopped_ = true; }
  FileChecksum(const FileChecksum&) = delete;
  FileChecksum& operator=(const FileChecksum&) = delete;

  std::uint32_t Get() { return result_.get(); }

 private:
  std::uint32_t Read(int file) const {
    constexpr std::size_t kBlock = 1 << 20;
    std::uint32_t checksum = 0;
    std::uintmax_t offset = 0;
    for (std::string block(kBlock, '\0'); block.size() == kBlock && !stopped_;) {
      ThrowSystemError(ReadAt(file, offset, block));
      checksum = Crc32(checksum, block);
      offset += block.size();
    }
    return checksum;
  }

  std::atomic<bool> stopped_ = false;
  std::future<std::uint32_t> result_;  // the last member: its thread ends before the rest goes
};

std::optional<LoadedPicture> DecodeHere(const std::string& name, const std::string& bytes,
                                        const PictureProgress& progress, DecodeBy by) {
  return RunBeside(progress, [&](PictureOperation& operation) {
    return Module().Decode(name, bytes, RasterOnHeap, operation, by);
  });
}

std::optional<LoadedPicture> WithNumbersOf(const std::string& bytes,
                                           std::optional<LoadedPicture> loaded) {
  if (!loaded) return loaded;
  loaded->FileSize = bytes.size();
  loaded->FileChecksum = Crc32(bytes);
  return loaded;
}

/// What came of it where the system allows a process for it.
struct Apart {
  bool WasPossible = false;
  std::optional<LoadedPicture> Loaded;
};
Apart DecodeApart(const std::string& name, const Descriptor& file, std::uintmax_t size,
                  const PictureProgress& progress) {
  struct StartNextThen {
    ~StartNextThen() { AllDecoders().StartNext(); }
  };
  auto worker = AllDecoders().Take();
  if (!worker) return {};
  const StartNextThen then;
  return {true, worker->Decode(name, file, size, progress)};
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
    FileChecksum checksum(file);
    Apart apart = DecodeApart(name, file, size, progress);
    if (!apart.WasPossible) {
      std::string bytes(size, '\0');
      ThrowSystemError(ReadAt(file.Get(), 0, bytes));
      apart.Loaded = DecodeHere(name, bytes, progress, DecodeBy::Fastest);
    }
    if (apart.Loaded) {
      apart.Loaded->FileSize = size;
      apart.Loaded->FileChecksum = checksum.Get();
    }
    return std::move(apart.Loaded);
  });
}

std::optional<LoadedPicture> DecodePicture(const std::string& name, const std::string& bytes,
                                           const PictureProgress& progress) {
  return NamingTheFile("Cannot open the picture \"%1\".", name, [&] {
    const Descriptor file = NewMemoryFile();
    Apart apart;
    if (file.IsOpen() && FillMemoryFile(file, bytes))
      apart = DecodeApart(name, file, bytes.size(), progress);
    if (!apart.WasPossible) apart.Loaded = DecodeHere(name, bytes, progress, DecodeBy::Fastest);
    return WithNumbersOf(bytes, std::move(apart.Loaded));
  });
}

std::optional<LoadedPicture> DecodePictureHere(const std::string& name, const std::string& bytes,
                                               const PictureProgress& progress, DecodeBy by) {
  return NamingTheFile("Cannot open the picture \"%1\".", name,
                       [&] { return WithNumbersOf(bytes, DecodeHere(name, bytes, progress, by)); });
}

void PrepareToDecode() {
  try {
    AllDecoders().StartAhead();
  } catch (const RunTimeError&) {
    // A program that is not complete says so when there is a picture.
  }
}

std::string MissingDecodeProtection() {
  const auto layers = AllDecoders().Layers();
  if (!layers || *layers == kAllLayers) return {};
  if (*layers == 0)
    return Tr(
        "Pictures are decoded within this program: the system allows no process of their own for "
        "it.");
  std::string missing;
  const auto name = [&](DecodeLayer layer, const char* words) {
    if ((*layers & layer) == 0) missing += (missing.empty() ? "" : ", ") + Tr(words);
  };
  name(kFewCalls, Marked("its calls (seccomp)"));
  name(kNoFiles, Marked("its files (Landlock)"));
  name(kLimits, Marked("its memory and time"));
  return Tr("Pictures are decoded in a process of their own, but the system does not limit %1.",
            missing);
}

bool SavePicture(const std::filesystem::path& path, int format, int option, const Raster& picture,
                 const PictureProgress& progress) {
  return Module().Save(path, format, option, picture, progress);
}

std::optional<std::string> EncodePicture(int format, int option, const Raster& picture,
                                         const PictureProgress& progress) {
  return Module().Encode(format, option, picture, progress);
}

}  // namespace graphize
