#include "codecs/decoder/confinement.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

#include "raster/size_limits.h"

namespace graphize {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0;  // no filter
#endif

// A sanitizer's own memory, files and calls are not what a decoder needs.
#ifdef GRAPHIZE_SANITIZED
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// What was inherited may be less: that cannot be raised.
bool Limit(__rlimit_resource_t resource, rlim_t soft, rlim_t hard) {
  rlimit limit = {};
  if (getrlimit(resource, &limit) != 0) return false;
  limit.rlim_max = std::min(limit.rlim_max, hard);
  limit.rlim_cur = std::min(limit.rlim_max, soft);
  return setrlimit(resource, &limit) == 0;
}

bool LimitResources(int seconds) {
  constexpr rlim_t kMemory = rlim_t{6} << 30, kFiles = 8;
  constexpr rlim_t kLargestFile = sizeof(std::uint32_t) * kMaxPicturePixels;
  const auto time = static_cast<rlim_t>(seconds);
  std::signal(SIGXFSZ, SIG_IGN);  // an error of its own is enough
  const bool lasting[] = {Limit(RLIMIT_AS, kMemory, kMemory),
                          // The hard limit kills without a word.
                          Limit(RLIMIT_CPU, time, time + 1), Limit(RLIMIT_CORE, 0, 0),
                          Limit(RLIMIT_FSIZE, kLargestFile, kLargestFile),
                          Limit(RLIMIT_NOFILE, kFiles, kFiles)};
  for (const bool done : lasting)
    if (!done) return false;
  return true;
}

/// Landlock without any rule: no file below any folder.
bool CloseFiles() {
  const long version =
      syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return false;
  constexpr std::uint64_t kFirstRights = 13;  // what version 1 knows; 2 and 3 know one more each
  const std::uint64_t rights = kFirstRights + (version > 1 ? 1 : 0) + (version > 2 ? 1 : 0);
  const landlock_ruleset_attr rules = {.handled_access_fs = (std::uint64_t{1} << rights) - 1};
  const long file = syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0);
  if (file < 0) return false;
  const bool closed = syscall(SYS_landlock_restrict_self, file, 0) == 0;
  close(static_cast<int>(file));
  return closed;
}

// ---- The filter of system calls -----------------------------------------------------------------

constexpr long kAllowed[] = {
    SYS_read,
    SYS_write,
    SYS_pread64,
    SYS_lseek,
    SYS_fstat,
    SYS_munmap,
    SYS_mremap,
    SYS_madvise,
    SYS_brk,
    SYS_futex,
    SYS_exit,
    SYS_exit_group,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sigaltstack,
    SYS_sched_yield,
    SYS_sched_getaffinity,
    SYS_clock_gettime,
    SYS_clock_getres,
    SYS_clock_nanosleep,
    SYS_nanosleep,
    SYS_gettimeofday,
    SYS_set_robust_list,
    SYS_rseq,
    SYS_getpid,
    SYS_gettid,
    SYS_getrandom,
    SYS_sysinfo,
    SYS_getrusage,
    SYS_times,
    SYS_restart_syscall,
    SYS_ftruncate};  // the files that it may write are memory, and its channel

/// What nothing but a foreign will would do: it ends the process.
constexpr long kDeadly[] = {
    SYS_execve,
    SYS_execveat,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_accept,
    SYS_accept4,
    SYS_sendto,
    SYS_sendmsg,
    SYS_sendmmsg,
    SYS_kill,
    SYS_tkill,
    SYS_bpf,
    SYS_unshare,
    SYS_setns,
    SYS_mount,
    SYS_umount2,
    SYS_pivot_root,
    SYS_chroot,
    SYS_init_module,
    SYS_finit_module,
    SYS_delete_module,
    SYS_kexec_load,
    SYS_keyctl,
    SYS_add_key,
    SYS_request_key,
    SYS_perf_event_open,
    SYS_userfaultfd,
    SYS_io_uring_setup,
    SYS_io_uring_enter,
    SYS_io_uring_register,
    SYS_reboot,
    SYS_personality,
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
#endif
};

/// Refused as if there were no such file.
constexpr long kOpening[] = {
    SYS_openat,     SYS_openat2, SYS_newfstatat, SYS_statx, SYS_readlinkat, SYS_faccessat,
    SYS_faccessat2,
#ifdef SYS_open
    SYS_open,       SYS_creat,   SYS_stat,       SYS_lstat, SYS_readlink,   SYS_access,
#endif
};

/// A program for the kernel that looks at each system call. Where it is set up, the kernel runs it
/// once for each call that there is: it finds a call by halves.
class Filter {
 public:
  void On(long call, std::uint32_t verdict) { Add(call, {Return(verdict)}); }
  /// Allowed when none of `bits` is in the argument, else the verdict.
  void OnWithout(long call, unsigned argument, std::uint32_t bits, std::uint32_t verdict) {
    Add(call, {LoadLowHalf(argument), Step(BPF_JMP | BPF_JSET | BPF_K, bits, 0, 1), Return(verdict),
               Return(SECCOMP_RET_ALLOW)});
  }
  /// Allowed when all of `bits` are in the argument.
  void OnWith(long call, unsigned argument, std::uint32_t bits) {
    Add(call, {LoadLowHalf(argument), Step(BPF_ALU | BPF_AND | BPF_K, bits),
               Step(BPF_JMP | BPF_JEQ | BPF_K, bits, 1, 0), Return(SECCOMP_RET_KILL_PROCESS),
               Return(SECCOMP_RET_ALLOW)});
  }
  /// Allowed unless the argument is `value`.
  void OnUnequal(long call, unsigned argument, std::uint32_t value, std::uint32_t verdict) {
    Add(call, {LoadLowHalf(argument), Step(BPF_JMP | BPF_JEQ | BPF_K, value, 0, 1), Return(verdict),
               Return(SECCOMP_RET_ALLOW)});
  }
  /// Allowed when the argument is `value`.
  void OnEqual(long call, unsigned argument, std::uint32_t value) {
    Add(call, {LoadLowHalf(argument), Step(BPF_JMP | BPF_JEQ | BPF_K, value, 1, 0),
               Return(SECCOMP_RET_KILL_PROCESS), Return(SECCOMP_RET_ALLOW)});
  }

  /// Sets it up, with the verdict of every other call. False where the system refuses.
  bool Install(std::uint32_t ofOthers) const {
    std::vector<sock_filter> steps = {
        Load(offsetof(seccomp_data, arch)), Step(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0),
        Return(SECCOMP_RET_KILL_PROCESS), Load(offsetof(seccomp_data, nr))};
#ifdef __x86_64__
    constexpr std::uint32_t kOtherNumbers = 0x40000000;  // of calls with 32-bit addresses
    Append(steps, {Step(BPF_JMP | BPF_JGE | BPF_K, kOtherNumbers, 0, 1),
                   Return(SECCOMP_RET_KILL_PROCESS)});
#endif
    Append(steps, StepsFor(rules_.begin(), rules_.end(), ofOthers));
    sock_fprog program = {.len = static_cast<unsigned short>(steps.size()), .filter = steps.data()};
    return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
  }

 private:
  using Steps = std::vector<sock_filter>;
  using Rules = std::map<std::uint32_t, Steps>;  // by the call's number

  static sock_filter Step(int code, std::uint32_t value, std::size_t whenTrue = 0,
                          std::size_t whenFalse = 0) {
    return {static_cast<std::uint16_t>(code), static_cast<std::uint8_t>(whenTrue),
            static_cast<std::uint8_t>(whenFalse), value};
  }
  static sock_filter Load(std::size_t offset) {
    return Step(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
  }
  static sock_filter LoadLowHalf(unsigned argument) {
    return Load(offsetof(seccomp_data, args) + 8 * argument);  // low half first
  }
  static sock_filter Return(std::uint32_t verdict) {
    return Step(BPF_RET | BPF_K, verdict);
  }

  static void Append(Steps& steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
  }
  void Add(long call, Steps steps) {
    rules_.emplace(static_cast<std::uint32_t>(call), std::move(steps));
  }
  /// The steps that decide for a call by the rules from `first` to `last`, or for one of none of
  /// them; its number is loaded.
  static Steps StepsFor(Rules::const_iterator first, Rules::const_iterator last,
                        std::uint32_t ofOthers) {
    constexpr auto kFew = 4;
    Steps steps;
    if (const auto count = std::distance(first, last); count > kFew) {
      const auto middle = std::next(first, count / 2);
      const Steps below = StepsFor(first, middle, ofOthers);
      // A step with a condition goes 255 steps at most.
      steps = {Step(BPF_JMP | BPF_JGE | BPF_K, middle->first, 0, 1),
               Step(BPF_JMP | BPF_JA, static_cast<std::uint32_t>(below.size()))};
      Append(steps, below);
      Append(steps, StepsFor(middle, last, ofOthers));
      return steps;
    }
    for (; first != last; ++first) {
      steps.push_back(Step(BPF_JMP | BPF_JEQ | BPF_K, first->first, 0, first->second.size()));
      Append(steps, first->second);
    }
    steps.push_back(Return(ofOthers));
    return steps;
  }

  Rules rules_;
};

bool FilterCalls(int channel) {
  if (kArchitecture == 0) return false;
  const auto error = [](int number) {
    return SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(number);
  };
  Filter filter;
  for (const long call : kAllowed) filter.On(call, SECCOMP_RET_ALLOW);
  filter.OnWithout(SYS_mmap, 2, PROT_EXEC, error(EACCES));
  filter.OnWithout(SYS_mprotect, 2, PROT_EXEC, error(EACCES));
  filter.OnUnequal(SYS_close, 0, static_cast<std::uint32_t>(channel), error(EPERM));
  filter.OnWith(SYS_clone, 0, CLONE_THREAD);
  filter.On(SYS_clone3, error(ENOSYS));  // its flags cannot be looked at; then clone is asked
  filter.OnEqual(SYS_tgkill, 0, static_cast<std::uint32_t>(getpid()));
  for (const long call : kDeadly) filter.On(call, SECCOMP_RET_KILL_PROCESS);
  for (const long call : kOpening) filter.On(call, error(EACCES));
  return filter.Install(error(EPERM));
}

}  // namespace

unsigned Confine(int channel, int seconds, unsigned wanted) {
  if (kIsSanitized) return kApart;
  unsigned layers = kApart;
  prctl(PR_SET_DUMPABLE, 0);
  const bool isModest = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
  if ((wanted & kLimits) != 0 && LimitResources(seconds)) layers |= kLimits;
  if ((wanted & kNoFiles) != 0 && isModest && CloseFiles()) layers |= kNoFiles;
  if ((wanted & kFewCalls) != 0 && isModest && FilterCalls(channel)) layers |= kFewCalls;
  return layers;
}

}  // namespace graphize
