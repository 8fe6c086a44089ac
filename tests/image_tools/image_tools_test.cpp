#include "image_tools/image_tools.h"

#include <gtest/gtest.h>

namespace graphize {
namespace {

TEST(ImageToolsForm, EachToolHasItsCaptionRangeAndAmount) {
  struct Case {
    PictureTool Tool;
    const char* Caption;
    int Minimum, Maximum, Amount;
    bool Enabled;
  };
  using enum PictureTool;
  // In this order: amounts of 0 to 10 go on from tool to tool.
  const Case cases[] = {
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
  for (const Case& c : cases) {
    ChooseTool(form, c.Tool);
    SCOPED_TRACE(TextsOf(c.Tool).Caption);
    EXPECT_EQ(form.Tool, c.Tool);
    EXPECT_EQ(form.AmountCaption, c.Caption);
    EXPECT_EQ(form.Minimum, c.Minimum);
    EXPECT_EQ(form.Maximum, c.Maximum);
    EXPECT_EQ(form.Amount, c.Amount);
    EXPECT_EQ(form.AmountEnabled, c.Enabled);
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
