#include "data/list_text.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/points.h"

namespace graphize {
namespace {

TEST(ListText, ShowsATabAsTwoSpacesAndOtherDelimitersAsTheyAre) {
  const std::tuple<const char*, bool, const char*, const char*> cases[] = {
      {"\t", true, "12.46\t5.E+01", "12.46  5.E+01"},
      {"\t", false, "12,46\t5,E+01", "12,46  5,E+01"},
      {",", false, "12,46,5,E+01", "12,46,5,E+01"},
      {";", true, "12.46;5.E+01", "12.46;5.E+01"}};
  for (const auto& [delimiter, decimalPoint, inFile, inPanel] : cases) {
    const NumberFormats formats{"0.00", "0.E+00", delimiter};
    EXPECT_EQ(PointLine(12.4567f, 54.9876f, formats, decimalPoint), inFile);
    EXPECT_EQ(ListText(12.4567f, 54.9876f, formats, decimalPoint), inPanel);
  }
}

TEST(ListText, LinesAreRowsOfTheListAndEmptyOutsideIt) {
  PointStore store = test::MakeStore({{1, 2}, {3, 4}, {5, 6}});
  store.ListCount = 2;
  const NumberFormats formats{"0.0", "0.0", " "};
  const std::pair<int, const char*> cases[] = {{-1, ""},       {0, ""}, {1, "1.0 2.0"},
                                               {2, "3.0 4.0"}, {3, ""}, {100000, ""}};
  for (const auto& [point, text] : cases) EXPECT_EQ(LineText(store, point, formats, true), text);
}

}  // namespace
}  // namespace graphize
