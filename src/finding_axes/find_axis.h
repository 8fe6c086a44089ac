#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/translation.h"
#include "finding_axes/axis_law.h"
#include "finding_axes/label_page.h"
#include "finding_axes/ticks.h"

namespace graphize {

/// A label that was tied to its place.
struct TiedLabel {
  int Word = 0;  // on the page
  double Value = 0;
  double Position = 0;  // of its tick along the axis, or of its own middle
  double Residual = 0;  // from the law, pixels of the image
  bool OnTick = false;
  bool ReadTwice = false;  // alike by the second reader
};

/// A doubt that another look at the labels dispels only by reading as labels what it rests on.
struct LastingDoubt {
  std::string Text;
  std::vector<InkBox> Words;
};

/// The doubt of an axis that has several.
inline constexpr const char* kSecondScale = Marked("there is a second scale");

/// One axis as it was found on an upright page, in pixels of that image.
struct FoundAxis {
  AxisLaw Law;
  std::vector<TiedLabel> Labels;      // along the axis; empty: no axis was found
  double Across = 0;                  // its line: a row of a level axis
  double LineFrom = 0, LineTo = 0;    // along it
  double Height = 0;                  // of the labels' digits
  std::vector<int> Unexplained;       // words among the labels that the law does not explain
  std::vector<std::string> Doubts;    // why it is not sure, a sentence's part each
  std::vector<LastingDoubt> Lasting;  // some of them, and those of other looks
  // Where there are several scales: what each goes over, from the left or from above.
  std::vector<std::string> Scales;
  int Scale = 0;  // this one's number
};

/// How far a label's middle may lie from its tick, pixels, by its digits' height: one of an upright
/// axis stands more exactly.
double ToleranceOf(AxisCourse course, double height);
/// The coordinate of a word along the axis.
double AlongOf(const Word& word, AxisCourse course);

/// The labels along the rows or columns that lie on one scale, tied to ticks or grid lines; of
/// several scales the one that was chosen, else that with most labels.
FoundAxis FindAxis(const LabelPage& page, AxisCourse course, std::optional<int> chosen,
                   const PictureOperation& operation);

}  // namespace graphize
