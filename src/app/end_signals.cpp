#include "app/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace graphize {

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// From the handler to the event loop.
std::array<int, 2> ends = {-1, -1};

void WakeUp(int) {
  const int before = errno;
  const char byte = 0;
  static_cast<void>(!write(ends[1], &byte, 1));
  errno = before;
}

}  // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent) {
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  auto* notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    std::array<char, 16> bytes{};
    while (read(ends[0], bytes.data(), bytes.size()) > 0) continue;
    emit EndAsked();
  });
  for (const int number : kSignals) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = WakeUp;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (const int number : kSignals) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == WakeUp) std::signal(number, SIG_DFL);
  }
  for (int& end : ends)
    if (end >= 0) close(std::exchange(end, -1));
}

}  // namespace graphize
