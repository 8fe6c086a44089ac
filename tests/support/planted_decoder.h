#pragma once

#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "codecs/decode_server.h"
#include "support/temporary_folder.h"

// Decoders of pictures that do as they are told. Who includes this is told PLANTED_DECODER.

namespace graphize::test {

/// What of the fence the kernel has.
inline unsigned LayersOfTheKernel() {
#ifdef GRAPHIZE_SANITIZED
  return kApart;
#else
  const std::uint32_t kill = SECCOMP_RET_KILL_PROCESS;
  unsigned layers = kApart | kLimits;
  if (syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) >= 1)
    layers |= kNoFiles;
  if (syscall(SYS_seccomp, SECCOMP_GET_ACTION_AVAIL, 0, &kill) == 0) layers |= kFewCalls;
  return layers;
#endif
}

inline DecoderProgram Planted(unsigned layers = kAllLayers) {
  return {.Program = PLANTED_DECODER, .Module = std::to_string(layers), .Seconds = 1};
}

/// A program of the shell's.
inline DecoderProgram Script(const TemporaryFolder& folder, const std::string& lines) {
  DecoderProgram program = Planted();
  program.Program = folder / "decode";
  WriteBytes(program.Program, "#!/bin/sh\n" + lines + "\n");
  std::filesystem::permissions(program.Program, std::filesystem::perms::owner_all);
  return program;
}

}  // namespace graphize::test
