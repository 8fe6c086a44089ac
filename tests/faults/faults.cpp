// The program's calls of the system and its operator new pass here: what a program defines itself
// is called in the place of what a library has.

#include "faults/faults.h"

#include <fcntl.h>
#include <malloc.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <new>

namespace graphize::test {

namespace {

constexpr int kNone = -1;
std::atomic<int> faulty = kNone, left = 0, untilDeath = 0;
std::atomic<std::int64_t> allocations = 0, allocatedBytes = 0;

bool Fails(Call call) {
  return faulty.load(std::memory_order_relaxed) == static_cast<int>(call) && --left == 0;
}

bool Dies() {
  return untilDeath.load(std::memory_order_relaxed) > 0 && --untilDeath == 0;
}

[[noreturn]] void Die() {
  kill(getpid(), SIGKILL);
  std::abort();
}

/// One of the calls that nothing stands behind but the system's own.
int Pass(Call call, long number, long a, long b = 0, long c = 0, long d = 0) {
  if (Dies()) Die();
  if (Fails(call)) {
    errno = ENOSPC;
    return -1;
  }
  return static_cast<int>(syscall(number, a, b, c, d));
}

long Word(const void* pointer) {
  return reinterpret_cast<long>(pointer);
}

void* Allocate(std::size_t size, std::size_t alignment) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  void* block = nullptr;
  if (!Fails(Call::Allocate))
    block = alignment == 0
                ? std::malloc(size > 0 ? size : 1)
                : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  if (block == nullptr) throw std::bad_alloc();
  allocatedBytes.fetch_add(static_cast<std::int64_t>(malloc_usable_size(block)),
                           std::memory_order_relaxed);
  return block;
}

void GiveBack(void* block) {
  if (block != nullptr)
    allocatedBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(block)),
                             std::memory_order_relaxed);
  std::free(block);
}

}  // namespace

Fault::Fault(Call call, int number) {
  left = number;
  faulty = static_cast<int>(call);
}

Fault::~Fault() {
  faulty = kNone;
}

bool Fault::Happened() const {
  return left <= 0;
}

void DieAtCall(int number) {
  untilDeath = number;
}

std::int64_t Allocations() {
  return allocations;
}

std::int64_t AllocatedBytes() {
  return allocatedBytes;
}

}  // namespace graphize::test

using graphize::test::Call;

extern "C" {

ssize_t write(int file, const void* bytes, size_t size) {
  if (graphize::test::Dies()) {
    syscall(SYS_write, file, bytes, size / 2);
    graphize::test::Die();
  }
  if (graphize::test::Fails(Call::Write)) {
    errno = ENOSPC;
    return -1;
  }
  return syscall(SYS_write, file, bytes, size);
}

int fsync(int file) {
  return graphize::test::Pass(Call::Sync, SYS_fsync, file);
}

int fdatasync(int file) {
  return graphize::test::Pass(Call::Sync, SYS_fdatasync, file);
}

int rename(const char* from, const char* to) noexcept {
  return graphize::test::Pass(Call::Rename, SYS_rename, graphize::test::Word(from),
                              graphize::test::Word(to));
}

int mkdir(const char* path, mode_t mode) noexcept {
  return graphize::test::Pass(Call::Create, SYS_mkdir, graphize::test::Word(path), mode);
}

int open(const char* path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if ((flags & O_CREAT) == 0)
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  return graphize::test::Pass(Call::Create, SYS_openat, AT_FDCWD, graphize::test::Word(path), flags,
                              mode);
}

}  // extern "C"

// GCC takes malloc and free for a pair that operator new and delete are none of.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
  return graphize::test::Allocate(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return graphize::test::Allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
  graphize::test::GiveBack(block);
}
void operator delete(void* block, std::size_t) noexcept {
  graphize::test::GiveBack(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  graphize::test::GiveBack(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  graphize::test::GiveBack(block);
}
