#pragma once

#include <chrono>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/descriptor.h"

namespace graphize {

/// The child's end of the channel to its parent.
inline constexpr int kChannelOfChild = 3;

/// How a process ended: by itself with a code, or by a signal.
struct ProcessEnd {
  int Code = 0;
  int Signal = 0;  // 0: by itself
};

/// The ends of a socket through which bytes and open files go, message by message; closed where the
/// system has none to give.
struct ChannelEnds {
  Descriptor Ours, Theirs;
};
ChannelEnds NewChannel();

/// A child of this process, with which it has a channel, and which ends with this record at the
/// latest.
class ChildProcess {
 public:
  /// It has nothing else of this process, its standard streams lead nowhere, and a Ctrl+C in the
  /// terminal is not for it. Nothing where the system refuses or there is no such program.
  static std::optional<ChildProcess> Start(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments);
  /// One that another child has made, of this process (CLONE_PARENT). Only such an `id` will do: it
  /// is waited for, and killed.
  ChildProcess(int id, Descriptor channel) : id_(id), channel_(std::move(channel)) {}
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ~ChildProcess();

  const Descriptor& Channel() const { return channel_; }
  /// How it ended; nothing while it runs. Waits for that at most this long.
  std::optional<ProcessEnd> WaitForEnd(std::chrono::milliseconds atMost);
  /// At once, whatever it does.
  void Kill();
  /// Has it go on on the core that this thread is on, and on no other until it chooses so itself.
  /// For a thread that waits for it then: it goes on at once, with what the cache holds, and does
  /// not wait for a core that is busy while this one is free.
  void CallToThisCore() const;

 private:
  int id_ = 0;      // 0: it has ended
  ProcessEnd end_;  // how
  Descriptor channel_;
};

/// Puts what nobody can read from or write to in the place of standard streams that are closed. The
/// next file that is opened would get such a number, and what is said there would be written to it.
void FillStandardStreams();

/// Sends bytes and copies of open files through a channel. False when nobody reads there.
bool Send(const Descriptor& channel, std::string_view bytes,
          std::initializer_list<const Descriptor*> files);
/// Waits for a message of as many bytes as `bytes` has and as many files as `files`. False when the
/// channel was closed or brought something else.
bool Receive(const Descriptor& channel, std::span<char> bytes, std::span<Descriptor> files);
/// Whether there is something to be received, or the channel was closed, within this time.
bool IsReadable(const Descriptor& channel, std::chrono::milliseconds atMost);

}  // namespace graphize
