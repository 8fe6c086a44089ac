#include "base/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

namespace graphize {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostFiles = 4;

/// What a child may know of this process's environment: where libraries lie, and what a build that
/// looks for faults is told.
std::vector<std::string> EnvironmentOfChild() {
  std::vector<std::string> kept;
  for (const char* name : {"LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
    if (const char* value = std::getenv(name)) kept.push_back(std::string(name) + '=' + value);
  return kept;
}

std::vector<char*> Pointers(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

struct SpawnSettings {
  posix_spawn_file_actions_t Files;
  posix_spawnattr_t Attributes;

  SpawnSettings(int channel, int nowhere) {
    posix_spawn_file_actions_init(&Files);
    posix_spawnattr_init(&Attributes);
    for (int stream : {STDIN_FILENO, STDOUT_FILENO})
      posix_spawn_file_actions_adddup2(&Files, nowhere, stream);
#ifndef GRAPHIZE_SANITIZED
    posix_spawn_file_actions_adddup2(&Files, nowhere, STDERR_FILENO);
#endif
    posix_spawn_file_actions_adddup2(&Files, channel, kChannelOfChild);
    posix_spawn_file_actions_addclosefrom_np(&Files, kChannelOfChild + 1);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&Attributes, &none);
    posix_spawnattr_setsigdefault(&Attributes, &all);
    posix_spawnattr_setpgroup(&Attributes, 0);
    posix_spawnattr_setflags(
        &Attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&Files);
    posix_spawnattr_destroy(&Attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
};

/// The same open file with a number that a child does not give to its standard streams and channel:
/// where this process has its own streams closed, everything that it opens gets these.
Descriptor AboveTheChilds(Descriptor file) {
  return Descriptor(fcntl(file.Get(), F_DUPFD_CLOEXEC, kChannelOfChild + 1));
}

/// The end of a pipe that nobody writes to: nothing can be read from it or written there. Unlike
/// the null device, everybody has it.
Descriptor Nowhere() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return Descriptor();
  const Descriptor closed(ends[1]);
  return AboveTheChilds(Descriptor(ends[0]));
}

}  // namespace

ChannelEnds NewChannel() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return {};
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

std::optional<ChildProcess> ChildProcess::Start(const std::filesystem::path& program,
                                                const std::vector<std::string>& arguments) {
  ChannelEnds channel = NewChannel();
  const Descriptor theirs = AboveTheChilds(std::move(channel.Theirs)), nowhere = Nowhere();
  if (!theirs.IsOpen() || !nowhere.IsOpen()) return {};
  std::vector<std::string> words = arguments, environment = EnvironmentOfChild();
  words.insert(words.begin(), program.string());
  const SpawnSettings settings(theirs.Get(), nowhere.Get());
  pid_t id = 0;
  if (posix_spawn(&id, program.c_str(), &settings.Files, &settings.Attributes,
                  Pointers(words).data(), Pointers(environment).data()) != 0)
    return {};
  return ChildProcess(id, std::move(channel.Ours));
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : id_(std::exchange(other.id_, 0)), end_(other.end_), channel_(std::move(other.channel_)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  std::swap(id_, other.id_);
  std::swap(end_, other.end_);
  std::swap(channel_, other.channel_);
  return *this;
}

ChildProcess::~ChildProcess() {
  Kill();
}

std::optional<ProcessEnd> ChildProcess::WaitForEnd(std::chrono::milliseconds atMost) {
  const auto last = std::chrono::steady_clock::now() + atMost;
  for (auto pause = 20us; id_ != 0; pause = std::min<std::chrono::microseconds>(2 * pause, 1ms)) {
    int status = 0;
    const pid_t ended = waitpid(id_, &status, WNOHANG);
    if (ended != 0 && !(ended < 0 && errno == EINTR)) {
      id_ = 0;
      // Where the ends of children are ignored, or another waited for it, there is no status.
      if (ended > 0 && WIFSIGNALED(status)) end_.Signal = WTERMSIG(status);
      if (ended > 0 && WIFEXITED(status)) end_.Code = WEXITSTATUS(status);
      break;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        last - std::chrono::steady_clock::now());
    if (left <= 0ms) return {};
    // Its end closes the channel; between the two lie moments.
    pollfd channel = {.fd = channel_.Get(), .events = 0, .revents = 0};
    if (poll(&channel, 1, static_cast<int>(left.count())) > 0) std::this_thread::sleep_for(pause);
  }
  return end_;
}

void ChildProcess::Kill() {
  if (id_ == 0) return;
  kill(id_, SIGKILL);
  while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) continue;
  id_ = 0;
  end_ = {.Signal = SIGKILL};
}

void ChildProcess::CallToThisCore() const {
  cpu_set_t cores;
  const int core = sched_getcpu();
  // Not where there are more than a set can tell: the child would not find out which it may use.
  if (id_ == 0 || core < 0 || sched_getaffinity(id_, sizeof cores, &cores) != 0) return;
  CPU_ZERO(&cores);
  CPU_SET(core, &cores);
  sched_setaffinity(id_, sizeof cores, &cores);
}

void FillStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
    if (fcntl(stream, F_GETFD) < 0) static_cast<void>(open("/", O_RDONLY | O_DIRECTORY));
}

bool Send(const Descriptor& channel, std::string_view bytes,
          std::initializer_list<const Descriptor*> files) {
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostFiles * sizeof(int))> control{};
  iovec part = {const_cast<char*>(bytes.data()), bytes.size()};
  msghdr message = {};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (files.size() > 0) {
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(files.size() * sizeof(int));
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(files.size() * sizeof(int));
    auto* place = reinterpret_cast<char*>(CMSG_DATA(header));
    for (const Descriptor* file : files) {
      const int number = file->Get();
      std::memcpy(place, &number, sizeof number);
      place += sizeof number;
    }
  }
  ssize_t sent = 0;
  do sent = sendmsg(channel.Get(), &message, MSG_NOSIGNAL);
  while (sent < 0 && errno == EINTR);
  return sent == static_cast<ssize_t>(bytes.size());
}

bool Receive(const Descriptor& channel, std::span<char> bytes, std::span<Descriptor> files) {
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMostFiles * sizeof(int))> control{};
  iovec part = {bytes.data(), bytes.size()};
  msghdr message = {};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  ssize_t got = 0;
  do got = recvmsg(channel.Get(), &message, MSG_CMSG_CLOEXEC);
  while (got < 0 && errno == EINTR);
  const cmsghdr* header = got > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
  std::size_t count = 0;
  if (header != nullptr && header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_RIGHTS) {
    const auto* place = reinterpret_cast<const char*>(CMSG_DATA(header));
    for (std::size_t length = header->cmsg_len - CMSG_LEN(0); length >= sizeof(int);
         length -= sizeof(int), place += sizeof(int)) {
      int number = -1;
      std::memcpy(&number, place, sizeof number);
      Descriptor file(number);
      if (count < files.size()) files[count] = std::move(file);
      ++count;
    }
  }
  return got == static_cast<ssize_t>(bytes.size()) && count == files.size();
}

bool IsReadable(const Descriptor& channel, std::chrono::milliseconds atMost) {
  const auto last = std::chrono::steady_clock::now() + atMost;
  pollfd waited = {.fd = channel.Get(), .events = POLLIN, .revents = 0};
  while (true) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        last - std::chrono::steady_clock::now());
    const int came = poll(&waited, 1, static_cast<int>(std::max(left, 0ms).count()));
    if (came >= 0 || errno != EINTR) return came > 0;
  }
}

}  // namespace graphize
