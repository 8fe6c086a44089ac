#pragma once

#include <string>

namespace graphize {

/// The frame "Tracer Control" of the side panel.
struct TracerControl {
  struct CheckBox {
    std::string Caption;  // in English
    bool Checked = false;
  };
  std::string Xrange = "2";  // "X increment", pixels
  std::string Yrange = "3";  // "Y increment", pixels
  bool IncrementsEnabled = true;
  bool PointsEnabled = true;            // the scan has no use for the three check boxes
  CheckBox Center{"Center", true};      // CHK_Center
  CheckBox Above{"Edge Above", false};  // CHK_Above
  CheckBox Below{"Edge Below", false};  // CHK_Below
  bool InsideAxes = false;              // tracers and scan end at the frame: CHK_InsideAxes
};

/// Captions and increments for the trace type of the settings: 0 edges, 1 smooth, 2 scan.
void SetTraceType(TracerControl& control, int trace);

/// The number that the text of an increment box starts with, rounded, at least `least`. The text
/// becomes just this number. Run-time error "Overflow" beyond 16 bits.
int IncrementAtLeast(std::string& text, int least);

}  // namespace graphize
