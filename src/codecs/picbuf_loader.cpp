// The functions of picbuf.h as the program sees them: pictures are decoded by a process of their
// own, all else by a module, which the first call loads. The module's own functions of these names
// are hidden in it.

#include <algorithm>
#include <atomic>
#include <deque>
#include <exception>
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
    if (std::optional<Ahead> ahead = TakeAhead()) worker = std::move(ahead->Get());
    // Who is short of memory may have ended it while it waited.
    if (worker && worker->HasEnded()) worker.reset();
    if (!worker && NewMemoryFile().IsOpen()) worker = DecodeWorker::Start(program_);
    layers_ = worker ? worker->Layers() : 0;
    if (layers_ == 0) worker.reset();
    return worker;
  }

  /// On threads beside: starting a process takes as long as a small picture.
  void StartNext() {
    const std::lock_guard lock(mutex_);
    try {
      while (ahead_.size() < std::min(atOnce_, toCome_)) ahead_.emplace_back(program_);
    } catch (const std::exception&) {
      // No memory or thread for it: the next picture waits for its process.
    }
  }
  void StartAhead(std::size_t atOnce, std::size_t toCome) {
    {
      const std::lock_guard lock(mutex_);
      atOnce_ = atOnce;
      toCome_ = toCome;
    }
    StartNext();
  }

  /// Of the latest process; nothing before the first.
  std::optional<unsigned> Layers() {
    const std::lock_guard lock(mutex_);
    if (!ahead_.empty() && ahead_.front().Get()) layers_ = ahead_.front().Get()->Layers();
    return layers_ == kUnknown ? std::nullopt : std::optional(layers_.load());
  }

 private:
  static constexpr unsigned kUnknown = 256;

  /// A process that is being started, or has been.
  class Ahead {
   public:
    explicit Ahead(const DecoderProgram& program)
        : starting_(std::async(std::launch::async, [&] { return DecodeWorker::Start(program); })) {}
    std::optional<DecodeWorker>& Get() {
      if (starting_.valid()) started_ = starting_.get();
      return started_;
    }

   private:
    std::future<std::optional<DecodeWorker>> starting_;
    std::optional<DecodeWorker> started_;
  };

  std::optional<Ahead> TakeAhead() {
    const std::lock_guard lock(mutex_);
    if (toCome_ > 0 && toCome_ != kManyPictures) --toCome_;
    if (ahead_.empty()) return {};
    std::optional<Ahead> first(std::move(ahead_.front()));
    ahead_.pop_front();
    return first;
  }

  const DecoderProgram program_{.Program = PathInProgram("libexec/graphize/graphize-decode"),
                                .Module = ModulePath(kModule)};
  std::mutex mutex_;
  std::deque<Ahead> ahead_;
  std::size_t atOnce_ = 0, toCome_ = 0;
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

void PrepareToDecode(std::size_t atOnce, std::size_t pictures) {
  try {
    AllDecoders().StartAhead(atOnce, pictures);
  } catch (const RunTimeError&) {
    // A program that is not complete says so when there is a picture.
  }
}

std::string MissingDecodeProtection() {
  const auto layers = AllDecoders().Layers();
  return layers ? MissingProtection(*layers) : std::string();
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
