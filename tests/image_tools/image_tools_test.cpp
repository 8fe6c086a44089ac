#include "image_tools/image_tools.h"

#include <gtest/gtest.h>

#include <tuple>

namespace graphize {
namespace {

TEST(ImageToolsForm, EachToolHasItsCaptionRangeAndAmount) {
  using enum PictureTool;
  // In this order: amounts of 0 to 10 go on from tool to tool.
  const std::tuple<PictureTool, const char*, int, int, int, bool> cases[] = {
      {Sharpen, "Amount", 0, 10, 5, true},           {Blur, "Amount", 0, 10, 5, false},
      {Resize, "Amount (%)", 0, 300, 150, true},     {EdgeDetect, "Amount", 0, 10, 10, true},
      {Rotate, "Amount (Deg)", -180, 180, 90, true}, {Stretch, "Amount (%)", 0, 300, 150, true},
      {Negate, "Amount", 0, 10, 10, false},          {Soften, "Amount", 0, 10, 10, true},
  };
  ImageToolsForm form;
  OpenImageTools(form, 640, 480);
  EXPECT_EQ(form.AmountCaption, "Amount");
  EXPECT_EQ(form.Minimum, 0);
  EXPECT_EQ(form.Maximum, 10);
  EXPECT_FALSE(form.AmountEnabled) << "the first tool has no amount";
  for (const auto& [tool, caption, minimum, maximum, amount, enabled] : cases) {
    ChooseTool(form, tool);
    SCOPED_TRACE(TextsOf(tool).Caption);
    EXPECT_EQ(form.Tool, tool);
    EXPECT_EQ(form.AmountCaption, caption);
    EXPECT_EQ(form.Minimum, minimum);
    EXPECT_EQ(form.Maximum, maximum);
    EXPECT_EQ(form.Amount, amount);
    EXPECT_EQ(form.AmountEnabled, enabled);
  }
}

TEST(ImageToolsForm, AmountsStayInTheirRangeAndARotationIsKept) {
  ImageToolsForm form;
  OpenImageTools(form, 640, 480);
  ChooseTool(form, PictureTool::Rotate);
  for (const auto& [asked, held] : {std::pair{-181, -180}, {181, 180}, {-7, -7}}) {
    SetAmount(form, asked);
    EXPECT_EQ(form.Amount, held);
  }
  form.KeptRotation = -7;
  ChooseTool(form, PictureTool::Negate);
  EXPECT_EQ(form.Amount, 0);
  form.UndoCopy = std::make_shared<Raster>(Raster::Filled(1, 1, kWhitePixel));
  OpenImageTools(form, 200, 100);
  EXPECT_EQ(form.WidthAtOpening, 200);
  EXPECT_FALSE(form.UndoCopy);
  EXPECT_EQ(form.Tool, PictureTool::Blur);
  ChooseTool(form, PictureTool::Rotate);
  EXPECT_EQ(form.Amount, -7);
}

}  // namespace
}  // namespace graphize
