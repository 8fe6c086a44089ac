#pragma once

#include <string>
#include <vector>

#include "session/kept_document.h"

namespace graphize {

/// A part of the text of what is kept: a name such as "curves/1.csv", and its content.
struct KeptPart {
  std::string Name;
  std::string Text;
};

/// The document as text: "project.json" with the small records, "curves/N.csv" with the points of
/// each curve, "curves/N.list.csv" where its list is another, "curves/N.behind.csv" with what may
/// come back into the list, and "steps.txt", a recipe, when there are steps. Equal documents give
/// equal texts.
std::vector<KeptPart> PartsOf(KeptDocument kept);

/// Reads them. What is missing, no number, out of its range or at odds with the rest is a
/// RunTimeError that names the part and the place in it, and so is a version that is newer than
/// this program's. Parts of other names are passed over.
KeptDocument ReadParts(const std::vector<KeptPart>& parts);

}  // namespace graphize
