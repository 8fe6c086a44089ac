#include "batch/help.h"

#include "base/version.h"

namespace graphize {

namespace {

constexpr const char* kOutputHelp = R"(
Output
  -o, --output=FILE      where the points go; a folder (or a name that ends in a
                         slash) for one file per picture, "-" for standard output
      --format=FORMAT    dat (the program's data file), csv (RFC 4180, with a
                         header) or json (with axes, units and errors)
      --errors           two more columns: the size of one pixel in X and in Y
  -f, --force            replace files that exist
  -j, --jobs=N           pictures in work at a time; as many as there are cores
  -q, --quiet            no progress and no notes, errors only
  -h, --help             this text

Errors go to standard error, and the status is 1 when a picture could not be
done (the others are), 2 when the command line cannot be understood.
)";

}  // namespace

std::string VersionText() {
  return std::string("graphize ") + ProgramVersion() + "\n";
}

std::string ProgramHelp() {
  return R"(Usage: graphize [PICTURE]
       graphize digitize PICTURE... OPTIONS -o FILE
       graphize replay RECIPE [PICTURE...] -o FILE

Reads numbers out of pictures of graphs. Without a command the window opens,
with PICTURE in it. The commands need no window and no display:

  digitize    points from pictures whose axes are told by options
  replay      the steps of a recipe saved from the window, on the same or on
              other pictures

"graphize COMMAND --help" tells more; so does "man graphize".

      --version          the program's version
  -h, --help             this text
)";
}

std::string DigitizeHelp() {
  return std::string(R"(Usage: graphize digitize PICTURE... OPTIONS -o FILE

Reads points out of pictures that have the same axes. Positions are columns and
rows of pixels, rows counted downward from the top, as picture viewers show them.

Axes (needed)
      --origin=COL,ROW:X,Y   the origin's place and its values
      --x-axis=COL,ROW:X     a point on the X axis and its value
      --y-axis=COL,ROW:Y     a point on the Y axis and its value
      --x-log, --y-log       logarithmic axes

Picture, cleaned in the order of the options
      --black-white          reduce to black and white: tracers see black only
      --damaged              take what can be read of a damaged file
      --grid=x|y|both[:COL,ROW]
                             remove all grid lines of constant X or Y; with a
                             place on it the axes' frame, too
      --grid-line=x|y:COL,ROW
                             remove the grid line nearest to the place
      --erase=COL,ROW[:SIZE] erase a square, 2 x SIZE + 3 pixels wide (SIZE is 4)
      --block=COL,ROW[:SIZE] a blocker SIZE pixels wide (4) that no tracer passes

Points, captured in the order of the options
      --trace=COL,ROW        follow the curve from there
      --algorithm=peaks|smooth
                             by its edges (default) or by its middle
      --emit=LIST            what the tracer gives: center (default),above,below
      --scan=LEFT,TOP,RIGHT,BOTTOM
                             all black pixels in the rectangle
      --x-increment=N        columns to look ahead, or of a scan's step (2)
      --y-increment=N        rows to step over (3), or of a scan's step (2)
      --point=COL,ROW        one point
      --snap=none|x|y|center move points to the middle of the black around them;
                             none is the default
      --snap-distance=N      pixels to look at (10)

List, in the order of the options
      --sort=ascending|descending
      --swap                 exchange X and Y
      --resample=COUNT[:FIRST,LAST]
                             COUNT points at even steps of X
      --resample-log=x|y|both
                             even steps of log X, interpolated log Y
      --curve-length         lengths between the points, their sums as a note
      --integrate=all|LOW,HIGH
                             the area under all points, or from one to another,
                             counted from 1, as a note

Numbers of the data file (one value, or one for X and one for Y)
      --digits=N[,N]         places before the point (1)
      --decimals=N[,N]       places behind it (5)
      --exponent=on|off[,on|off]
      --delimiter=tab|comma|space|semicolon
                             between X and Y (tab)
      --decimal-point=point|comma
                             (point)
      --title=TEXT           a first line
)") + kOutputHelp +
         R"(
Examples
  A curve, followed from its left end:
    graphize digitize plot.png --black-white --origin 70,430:0,-1 \
      --x-axis 610,430:12 --y-axis 70,40:1 --trace 76,385 -o plot.dat

  A scan of points on log axes, without the grid, as CSV on standard output:
    graphize digitize page.tif --black-white --origin 90,600:1,0.1 \
      --x-axis 900,600:1000 --y-axis 90,60:100 --x-log --y-log --grid both \
      --scan 92,62,898,598 --format csv -o -

  Single points, moved to the middle of their ink, with two more columns of the
  size of one pixel, fixed to three decimals:
    graphize digitize plot.png --origin 70,430:0,-1 --x-axis 610,430:12 \
      --y-axis 70,40:1 --point 120,214 --point 240,388 --snap center \
      --snap-distance 6 --errors --decimals 3 --exponent off -o points.dat

  A curve of several that cross: a blocker on the other one, an erased label, a
  single grid line taken out:
    graphize digitize plot.png --black-white --origin 70,430:0,-1 \
      --x-axis 610,430:12 --y-axis 70,40:1 --block 300,200:8 --erase 512,88:12 \
      --grid-line y:340,235 --trace 76,385 --algorithm smooth -o curve.dat

  A trace made into fifty points at even steps, with X and Y exchanged and the
  area told:
    graphize digitize plot.png --black-white --origin 70,430:0,-1 \
      --x-axis 610,430:12 --y-axis 70,40:1 --trace 76,385 --sort ascending \
      --integrate all --resample 50:0,12 --swap --title "run 7" -o even.dat

  The same axes on many pictures, one file each in the folder out:
    graphize digitize run*.png --origin 70,430:0,0 --x-axis 610,430:10 \
      --y-axis 70,40:5 --trace 76,385 --format json -o out/
)";
}

std::string ReplayHelp() {
  return std::string(R"(Usage: graphize replay RECIPE [PICTURE...] -o FILE

Does the steps again that the window has saved with "Save Recipe...", up to the
last data file that was saved. On the picture that the recipe names, which must
not have changed, the result is that file, byte for byte. On other pictures the
same axes and the same steps are used.
)") + kOutputHelp +
         R"(
Examples
  The same points again:
    graphize replay plot.recipe -o plot.dat

  The same steps on other pictures, one file each:
    graphize replay plot.recipe run*.png -o out/
)";
}

}  // namespace graphize
