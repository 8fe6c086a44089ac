// The program that libFuzzer drives. The variable FUZZ_TARGET says with what; FUZZ_SEEDS is a
// folder to which the target's seeds are written before.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "fuzz/targets.h"

namespace {

const graphize::test::FuzzTarget* target = nullptr;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  using namespace graphize::test;
  const std::string wanted = Variable("FUZZ_TARGET");
  for (const FuzzTarget& each : FuzzTargets()) {
    if (wanted.empty()) std::printf("%s\n", each.Name.c_str());
    if (each.Name == wanted) target = &each;
  }
  if (wanted.empty()) std::exit(0);
  if (target == nullptr) {
    std::fprintf(stderr, "there is no target \"%s\"\n", wanted.c_str());
    std::exit(2);
  }
  if (const std::filesystem::path folder = Variable("FUZZ_SEEDS"); !folder.empty()) {
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const std::string& seed : SeedsOf(*target))
      std::ofstream(folder / std::to_string(number++), std::ios::binary) << seed;
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  return target->Read(*target, {reinterpret_cast<const char*>(bytes), size}) ? 0 : -1;
}
