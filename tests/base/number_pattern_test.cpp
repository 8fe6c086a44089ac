#include "base/number_pattern.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

namespace graphize {
namespace {

TEST(NumberPattern, PlacesThatAreMissing) {
  const std::tuple<float, const char*, double, int> cases[] = {
      {2019.3f, "0.00000E+00", 0.5 / 538, 2},
      {2019.3f, "0.00000E+00", 0.01, 0},
      {2019.3f, "##0.000E+00", 0.01, 0},
      {-2019.3f, "##0.0E+00", 0.01, 2},
      {2019.3f, "0.00", 0.5 / 538, 2},
      {-5, "0.", 0.25, 1},
      {-5, "0.00", 0.01f, 0},
      {1e-20f, "0.0E+00", 1e-21, 0},
      {0, "0.00000E+00", 1e-9, 0},
      {0, "0.000", 1e-9, 6},
      {std::nanf(""), "0.00000E+00", 1e-9, 0},
  };
  for (const auto& [value, pattern, step, missing] : cases)
    EXPECT_EQ(MissingPlaces(value, pattern, step), missing) << value << " " << pattern;
}

TEST(NumberPattern, ValuesByPatterns) {
  const std::tuple<float, const char*, const char*> cases[] = {
      {0, "0.00000E+00", "0.00000E+00"},
      {1234.5f, "0.00000E+00", "1.23450E+03"},
      {-0.000125f, "0.00000E+00", "-1.25000E-04"},
      {9.999999f, "0.00E+00", "1.00E+01"},
      {1e-40f, "0.00E+00", "1.00E-40"},
      {3.4e38f, "0.0E+00", "3.4E+38"},
      {12.5f, "#.00000E+###", "1.25000E+1"},
      {0.03125f, "#.00000E+###", "3.12500E-2"},
      {0, "#.00000E+###", ".00000E+0"},
      {1, "#.00000E+###", "1.00000E+0"},
      {12.34567f, "0.000", "12.346"},
      {-0.0004f, "0.000", "-0.000"},
      {-0.0f, "0.000", "0.000"},
      {2.6f, "0.", "3."},
      {1234.5678f, "##0.00", "1234.57"},
      {0.5f, "##0.00", "0.50"},
      {5.71f, "#0.0", "5.7"},
      {0.5f, "###.##", ".5"},
      {0, "###.##", "."},
      {17, "###0", "17"},
      {0, "###0", "0"},
      {1234, "##0.0E+0", "123.4E+1"},
      {0.999f, "##0.0E+00", "999.0E-03"},
  };
  for (const auto& [value, pattern, expected] : cases)
    EXPECT_EQ(FormatNumber(value, pattern), expected) << value << " by " << pattern;
  for (const std::size_t places : {400, 510, 511, 600, 5000}) {
    const std::string zeros(places, '0');
    EXPECT_EQ(FormatNumber(0.5f, "0." + zeros), "0.5" + zeros.substr(1));
    EXPECT_EQ(FormatNumber(0.5f, "0." + zeros + "E+0"), "5." + zeros + "E-1");
    EXPECT_EQ(FormatNumber(2, zeros + "E+0"),
              "2" + zeros.substr(1) + "E-" + std::to_string(places - 1));
  }
  EXPECT_EQ(FormatNumber(NAN, "0.0"), "NaN");
  EXPECT_EQ(FormatNumber(-INFINITY, "0.0E+00"), "-Inf");
}

}  // namespace
}  // namespace graphize
