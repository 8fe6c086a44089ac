#include "codecs/decoder/serve.h"

#include <fcntl.h>
#include <linux/sched.h>
#include <poll.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <stop_token>
#include <system_error>
#include <thread>

#include "base/child_process.h"
#include "base/memory_file.h"
#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "codecs/decode_protocol.h"

namespace graphize {

namespace {

/// The file's bytes: mapped, or read where its file system cannot map it.
class FileBytes {
 public:
  FileBytes(const Descriptor& file, std::size_t size) : mapped_(file, size, Mapping::Access::Read) {
    if (mapped_.Data() != nullptr || size == 0) return;
    read_.resize(size);
    if (ReadAt(file.Get(), 0, read_)) read_.clear();
  }
  std::string_view Get() const { return mapped_.Data() != nullptr ? mapped_.Bytes() : read_; }

 private:
  Mapping mapped_;
  std::string read_;
};

/// Takes the memory of large rasters from the system before the decoder writes there, on a thread
/// of its own: page by page, as it is written, that takes a third of the whole time. Not far ahead
/// of the decoder, because most of a damaged picture is never written.
class MemoryAhead {
 public:
  MemoryAhead(Raster& raster, const PictureOperation& operation)
      : thread_([start = reinterpret_cast<char*>(raster.Pixels()),
                 size = raster.PixelCount() * sizeof(std::uint32_t),
                 &operation](const std::stop_token& stop) {
          constexpr std::size_t kBlock = 4 << 20;
          for (std::size_t at = 0; at < size && !stop.stop_requested();) {
            if (at > size / 100 * (static_cast<std::size_t>(operation.Percent) + kPercentAhead)) {
              std::this_thread::sleep_for(std::chrono::microseconds(500));
              continue;
            }
            const std::size_t count = std::min(kBlock, size - at);
            if (madvise(start + at, count, MADV_POPULATE_WRITE) != 0)
              return;  // an older system; or somebody else lies there by now
            at += count;
          }
        }) {}

 private:
  static constexpr std::size_t kPercentAhead = 15;

  std::jthread thread_;
};

/// The picture in the memory that the parent has, too.
class SharedPixels {
 public:
  SharedPixels(const Descriptor& file, const PictureOperation& operation)
      : file_(file), operation_(operation) {}

  Raster Make(int width, int height) {
    constexpr std::size_t kLarge = 4'000'000;
    ahead_.reset();
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (!ResizeMemoryFile(file_, count * sizeof(std::uint32_t))) throw std::bad_alloc();
    Raster raster = MapRaster(file_, width, height);
    if (raster.IsEmpty()) throw std::bad_alloc();
    place_ = raster.Pixels();
    if (count < kLarge) {
      madvise(place_, count * sizeof(std::uint32_t), MADV_POPULATE_WRITE);  // else page by page
      return raster;
    }
    try {
      ahead_.emplace(raster, operation_);
    } catch (const std::system_error&) {
      // No thread: the memory comes page by page.
    }
    return raster;
  }
  void Keep(const Raster& picture) {
    if (picture.Pixels() == place_) return;
    Raster raster = Make(picture.Width(), picture.Height());
    std::copy_n(picture.Pixels(), picture.PixelCount(), raster.Pixels());
  }

 private:
  const Descriptor& file_;
  const PictureOperation& operation_;
  std::uint32_t* place_ = nullptr;
  std::optional<MemoryAhead> ahead_;
};

void Put(const std::string& text, DecodeReport& report) {
  report.TextSize = static_cast<std::uint32_t>(std::min(text.size(), report.Text.size()));
  std::copy_n(text.begin(), report.TextSize, report.Text.begin());
}

void Decode(const DecodeRequest& request, const Descriptor& file, const Descriptor& pixelFile,
            const Decoding& decode, DecodeReport& report) {
  const FileBytes bytes(file, static_cast<std::size_t>(request.FileSize));
  SharedPixels pixels(pixelFile, report.Operation);
  const auto loaded = decode(
      request.Name.data(), bytes.Get(),
      [&](int width, int height) { return pixels.Make(width, height); }, report.Operation);
  if (!loaded) {
    report.Verdict = DecodeVerdict::Left;
    return;
  }
  pixels.Keep(loaded->Picture);
  report.Width = loaded->Picture.Width();
  report.Height = loaded->Picture.Height();
  Put(loaded->Warning, report);
  report.Verdict = DecodeVerdict::Picture;
}

/// Has the system kill this process when nobody has the other end of the channel any more: by the
/// signal that something has happened to it, because nothing is sent there.
void EndWith(const Descriptor& channel) {
  const int file = channel.Get();
  if (fcntl(file, F_SETOWN, getpid()) != 0 || fcntl(file, F_SETSIG, SIGKILL) != 0 ||
      fcntl(file, F_SETFL, O_ASYNC) != 0)
    _exit(1);
  pollfd closed = {.fd = file, .events = 0, .revents = 0};
  if (poll(&closed, 1, 0) > 0) _exit(0);
}

/// On all cores that the program may use (its main thread, which others are made like): the server
/// has been called to one of them.
void RunOnAllCores() {
  cpu_set_t cores;
  if (sched_getaffinity(getppid(), sizeof cores, &cores) == 0)
    sched_setaffinity(0, sizeof cores, &cores);
}

[[noreturn]] void ServeOnePicture(const DecodeRequest& request, std::span<const Descriptor> files,
                                  const Confining& confine, const Decoding& decode) {
  RunOnAllCores();
  setpgid(0, 0);  // whatever it does to its group, it does not do to the server
  EndWith(files[kChannelFile]);
  const DecoderStart start{.Id = getpid(), .Layers = confine(files[kChannelFile].Get())};
  if (write(files[kChannelFile].Get(), &start, sizeof start) != sizeof start) _exit(1);
  const Mapping shared(files[kReportFile], sizeof(DecodeReport), Mapping::Access::Write);
  if (shared.Data() == nullptr) _exit(kNoReport);
  auto& report = *static_cast<DecodeReport*>(shared.Data());
  try {
    Decode(request, files[kPictureFile], files[kPixelFile], decode, report);
  } catch (const RunTimeError& error) {
    Put(error.what(), report);
    report.Verdict = DecodeVerdict::Refused;
  } catch (const std::bad_alloc&) {
    report.Verdict = DecodeVerdict::NoMemory;
  } catch (const std::exception&) {
    _exit(1);
  }
  // Without the libraries' work at the end of a process.
  _exit(0);
}

/// As fork(), but the new process is the parent's child, as this one is: the parent waits for it
/// and ends it. The C library is not told, which is for those who have threads or handlers of
/// fork().
pid_t ForkForParent() {
  return static_cast<pid_t>(syscall(SYS_clone, CLONE_PARENT | SIGCHLD, 0, 0, 0, 0));
}

/// What a decoder will be confined by; 0 where the system gives no process.
unsigned TryToConfine(const Confining& confine) {
  const pid_t id = fork();
  if (id == 0) _exit(static_cast<int>(confine(kChannelOfChild)));
  int status = 0;
  while (id > 0 && waitpid(id, &status, 0) < 0)
    if (errno != EINTR) return 0;
  return id > 0 && WIFEXITED(status) ? static_cast<unsigned>(WEXITSTATUS(status)) : 0;
}

}  // namespace

int ServeDecoders(const Confining& confine, const Decoding& decode) {
  Descriptor channel(kChannelOfChild);
  const char ready = static_cast<char>(TryToConfine(confine));
  if (!Send(channel, {&ready, 1}, {})) return 0;
  while (true) {
    DecodeRequest request;
    std::array<Descriptor, kRequestFiles> files;
    if (!Receive(channel, {reinterpret_cast<char*>(&request), sizeof request}, files)) return 0;
    request.Name.back() = '\0';
    const pid_t id = ForkForParent();
    if (id == 0) {
      channel = {};
      ServeOnePicture(request, files, confine, decode);
    }
    const DecoderStart none;
    if (id < 0) Send(files[kChannelFile], {reinterpret_cast<const char*>(&none), sizeof none}, {});
  }
}

}  // namespace graphize
