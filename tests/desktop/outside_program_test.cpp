#include "desktop/outside_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace graphize {
namespace {

using testing::ElementsAreArray;

std::vector<std::string> OrderUnder(std::string_view current) {
  const std::vector<OutsideProgram> programs = {{"KDE", "k1", {}},   {"GNOME", "g1", {}},
                                                {"", "any", {}},     {"Budgie", "b", {}},
                                                {"GNOME", "g2", {}}, {"KDE", "k2", {}}};
  std::vector<std::string> names;
  for (const OutsideProgram& program : InOrderFor(current, programs)) names.push_back(program.Name);
  return names;
}

TEST(InOrderFor, PutsTheRunningDesktopFirstAndKeepsTheOrderOtherwise) {
  using Names = std::vector<std::string>;
  const Names unchanged = {"k1", "g1", "any", "b", "g2", "k2"},
              gnomeFirst = {"g1", "g2", "k1", "any", "b", "k2"};
  const std::pair<const char*, Names> cases[] = {
      {"", unchanged},
      {":", unchanged},
      {"XFCE", unchanged},
      {"KD", unchanged},
      {"GNOME", gnomeFirst},
      {"gnome", gnomeFirst},
      {"ubuntu:GNOME", gnomeFirst},
      {"Budgie:GNOME", {"b", "g1", "g2", "k1", "any", "k2"}}};
  for (const auto& [current, names] : cases)
    EXPECT_THAT(OrderUnder(current), ElementsAreArray(names)) << current;
}

}  // namespace
}  // namespace graphize
