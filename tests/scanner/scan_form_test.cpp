#include "scanner/scan_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scanner/source_form.h"

namespace graphize {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ScanAbilities Flatbed() {
  return {.ResolutionRange = {50, 600, 1},
          .Across = {0, 215.9, 0},
          .Down = {0, 297, 0},
          .Now = {.Mode = "Color", .Resolution = 90, .Area = {0, 0, 100, 50}},
          .Width = 354,
          .Height = 177};
}

ScanForm Shown(const ScanAbilities& can) {
  ScanForm form;
  ShowAbilities(form, can);
  return form;
}

TEST(ScanForm, ResolutionsAreTheDevicesListOrTheUsualOnesInItsRange) {
  ScanAbilities can = Flatbed();
  EXPECT_THAT(Shown(can).Resolutions, ElementsAre(75, 90, 100, 150, 200, 300, 400, 600));
  EXPECT_TRUE(MayTypeResolution(Shown(can)));
  can.ResolutionRange = {};
  can.Resolutions = {150, 300};
  can.Now.Resolution = 300;
  EXPECT_THAT(Shown(can).Resolutions, ElementsAre(150, 300));
  EXPECT_FALSE(MayTypeResolution(Shown(can)));
  can.Resolutions = {};
  can.Now.Resolution = 0;
  EXPECT_THAT(Shown(can).Resolutions, IsEmpty());
  EXPECT_FALSE(MayTypeResolution(Shown(can)));
}

TEST(ScanForm, TheSizeOfThePictureToCome) {
  ScanAbilities can = Flatbed();
  EXPECT_EQ(Shown(can).Size, "354 x 177 pixels");
  EXPECT_EQ(Shown(can).Hint, "");
  can.Height = -1;
  EXPECT_EQ(Shown(can).Size, "354 pixels wide, as long as you scan");
  can.Width = 40000;
  EXPECT_THAT(Shown(can).Hint, HasSubstr("too large"));
  can.Width = can.Height = 0;
  EXPECT_EQ(Shown(can).Size + Shown(can).Hint, "");
}

TEST(ScanForm, TheAreaStaysOnTheGlass) {
  const ScanAbilities can = Flatbed();
  const PageArea whole = {0, 0, 215.9, 297};
  EXPECT_EQ(WholeArea(can), whole);
  const std::pair<PageArea, PageArea> cases[] = {{{10, 20, 30, 40}, {10, 20, 30, 40}},
                                                 {{-5, -5, 20, 20}, {0, 0, 15, 15}},
                                                 {{200, 290, 50, 50}, {200, 290, 215.9 - 200, 7}},
                                                 {{300, 0, 10, 10}, whole},
                                                 {{10, 10, 0, 5}, whole},
                                                 {{0, 0, 1000, 1000}, whole}};
  for (const auto& [area, inside] : cases) EXPECT_EQ(WithinReach(area, can), inside);
  EXPECT_TRUE(HasArea(can));
  EXPECT_FALSE(HasArea({}));
}

TEST(ScanForm, APreviewIsCoarseAndWhole) {
  ScanForm form = Shown(Flatbed());
  const ScanSettings preview = PreviewSettings(form);
  EXPECT_EQ(preview.Area, WholeArea(form.Can));
  EXPECT_LE(preview.Resolution, 100);
  EXPECT_EQ(preview.Mode, "Color");
  form.Can.Across = {};
  EXPECT_EQ(PreviewSettings(form).Area, form.Can.Now.Area);
}

TEST(ScanForm, ADeviceStartsWithGreysOfItsOwnWords) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"Lineart", "Gray", "Color"}, "Gray"},
      {{"Black & White", "Gray[Error Diffusion]", "True Gray", "24bit Color"}, "True Gray"},
      {{"Color", "Grayscale"}, "Grayscale"},
      {{"Lineart", "Color"}, ""},
      {{}, ""}};
  for (const auto& [modes, grey] : cases) {
    const ScanSettings first = FirstSettings({.Modes = modes});
    EXPECT_EQ(first.Mode, grey);
    EXPECT_EQ(first.Resolution, 300);
  }
}

TEST(SourceForm, TheOneChosenBeforeIsSelected) {
  const std::vector<ScanSource> two = {{"a:0", "Vendor", "Model", "flatbed"}, {"b:1", "", "", ""}};
  struct Case {
    std::vector<ScanSource> sources;
    const char* chosen;
    int selected;
    const char* hint;
  };
  const Case cases[] = {{two, "b:1", 1, ""},
                        {two, "", 0, ""},
                        {two, "c:2", 0, "c:2, is not there now"},
                        {{}, "a:0", -1, "No scanner was found"},
                        {{}, "", -1, "No scanner was found"}};
  for (const Case& c : cases) {
    SourceForm form;
    BeginLooking(form);
    EXPECT_FALSE(CanChooseSource(form));
    ShowSources(form, c.sources, c.chosen);
    EXPECT_EQ(form.Selected, c.selected);
    EXPECT_THAT(form.Hint, HasSubstr(c.hint));
    EXPECT_EQ(form.Hint.empty(), *c.hint == '\0');
    EXPECT_EQ(CanChooseSource(form), c.selected >= 0);
    BeginLooking(form);
    EXPECT_TRUE(form.Sources.empty() && form.Looking);
    ShowNoSources(form, "stopped");
    EXPECT_FALSE(form.Looking || CanChooseSource(form));
  }
  EXPECT_EQ(SourceLabel(two[0]), "Vendor Model");
  EXPECT_EQ(SourceLabel(two[1]), "b:1");
  EXPECT_EQ(SourceLabel({"a:0", "", "Model", ""}), "Model");
}

}  // namespace
}  // namespace graphize
