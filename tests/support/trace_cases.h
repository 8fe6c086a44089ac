#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/extraction_records.h"
#include "support/scripted_desktop.h"

namespace graphize::test {

using Tracer = TraceEnd (*)(const ExtractionContext&, float, float);

/// A picture, where the trace starts in it, and the points it captures.
struct TraceCase {
  const char* Name;
  std::string Picture;  // its rows, blanks between
  float X, Y;
  const char* XIncrement;
  const char* YIncrement;
  const char* Expected;  // centres, or with Edges centre, below and above
  bool Edges = false;
};

inline void ExpectTraces(Tracer tracer, const std::vector<TraceCase>& cases) {
  for (const TraceCase& c : cases) {
    const ScriptedDesktop desktop;
    ExtractionRecords records(RowsOf(c.Picture));
    records.Control.Xrange = c.XIncrement;
    records.Control.Yrange = c.YIncrement;
    records.Check(true, c.Edges, c.Edges);
    tracer(records.With(desktop), c.X, c.Y);
    EXPECT_EQ(records.Captured(), c.Expected) << c.Name;
  }
}

}  // namespace graphize::test
