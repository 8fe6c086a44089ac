#pragma once

#include <string>
#include <vector>

#include "plot_style.h"

namespace graphize::axes {

/// A kind of plots that the report has a line for.
struct Family {
  std::string Name;
  int Weight = 1;  // how many of them there are, in parts
  std::function<Plot(Random&)> Make;
};

std::vector<Family> Families();

/// The families of font that the plots are written in.
void LoadFonts();

}  // namespace graphize::axes
