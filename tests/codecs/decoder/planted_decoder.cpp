// A decoder of pictures as a file might make one: it does what the file says in one word.

#include <fcntl.h>
#include <linux/sched.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/child_process.h"
#include "base/deferred_text.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "codecs/decode_protocol.h"
#include "codecs/decoder/confinement.h"
#include "codecs/decoder/serve.h"

namespace graphize {
namespace {

[[noreturn]] void ThrowLastError() {
  throw RunTimeError(std::strerror(errno));
}

constexpr int kPixels = kChannelOfChild + 1 + kPixelFile;

/// Ends with a picture of this size.
[[noreturn]] void Claim(PictureOperation& operation, int width, int height) {
  auto& report = reinterpret_cast<DecodeReport&>(operation);  // its first member
  report.Width = width;
  report.Height = height;
  report.Verdict = DecodeVerdict::Picture;
  _exit(0);
}

std::optional<LoadedPicture> DoAsTold(const std::string& name, std::string_view word,
                                      const MakeRaster& make, PictureOperation& operation) {
  LoadedPicture picture{.Picture = make(2, 1)};
  std::fill_n(picture.Picture.Pixels(), 2, kBlackPixel);
  if (word == "null") *static_cast<volatile int*>(nullptr) = 1;
  if (word == "abort") std::abort();
  if (word == "loop")
    while (true) operation.Percent = 1000;
  if (word == "sleep")
    while (true) pause();
  if (word == "memory") {
    std::vector<std::unique_ptr<char[]>> blocks;
    while (true) blocks.push_back(std::make_unique_for_overwrite<char[]>(1 << 30));
  }
  if (word == "exec") execl("/bin/true", "true", nullptr);
  if (word == "socket") socket(AF_INET, SOCK_STREAM, 0);
  if (word == "fork") fork();
  if (word == "clone3") {
    clone_args process = {.exit_signal = SIGCHLD};
    if (syscall(SYS_clone3, &process, sizeof process) < 0) ThrowLastError();
  }
  if (word == "kill") kill(getppid(), SIGTERM);
  if (word == "open" && open("/etc/passwd", O_RDONLY) < 0) ThrowLastError();
  if (word == "opened" && open(name.c_str(), O_WRONLY | O_CREAT, 0600) < 0) ThrowLastError();
  if (word == "protect" && mprotect(picture.Picture.Pixels(), 4096, PROT_READ | PROT_EXEC) != 0)
    ThrowLastError();
  if (word == "code" && mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC,
                             MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) == MAP_FAILED)
    ThrowLastError();
  if (word == "speak" && write(kChannelOfChild, "", 1) < 0) ThrowLastError();
  if (word == "lie") {
    const DecoderStart other{.Id = 1};
    if (write(kChannelOfChild + 1, &other, sizeof other) < 0) ThrowLastError();
  }
  if (word == "ignore") std::signal(SIGIO, SIG_IGN);
  if (word == "close") close(kChannelOfChild + 1);
  if (word == "ignore" || word == "close") {
    operation.Percent = 50;
    while (true) pause();
  }
  if (word == "cores") {
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) != 0) ThrowLastError();
    throw RunTimeError(Tr("%1 cores", CPU_COUNT(&cores)));
  }
  if (word == "leave") _exit(0);
  if (word == "left") return {};
  if (word == "small" && ftruncate(kPixels, 4) != 0) ThrowLastError();
  if (word == "large" && ftruncate(kPixels, 1 << 20) != 0) ThrowLastError();
  if (word == "sparse" && ftruncate(kPixels, 4 * 9000 * 9000) == 0) Claim(operation, 9000, 9000);
  if (word == "too large") Claim(operation, 1 << 30, 4);
  if (word == "wraps") Claim(operation, 1 << 16, 1 << 16);
  if (word == "negative") Claim(operation, -2, -1);
  if (word == "terminate" || word == "killed") raise(word == "killed" ? SIGKILL : SIGTERM);
  if (word == "text")
    throw RunTimeError(Tr("%1 x %2", 3, "\x1b[2J\r\n\x02" + std::string(9000, 'a')));
  if (word == "warn") picture.Warning = Tr("The file is damaged.");
  return picture;
}

}  // namespace
}  // namespace graphize

int main(int argc, char** argv) {
  using namespace graphize;
  SetTranslator(DeferText);
  if (argc != 4) return 1;
  const auto layers = IntegerText(argv[2], 0, kAllLayers), seconds = IntegerText(argv[3], 1, 100);
  const auto confine = [&](int channel) {
    return Confine(channel, *seconds, static_cast<unsigned>(*layers));
  };
  return ServeDecoders(confine, DoAsTold);
}
