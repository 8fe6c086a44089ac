#include "batch/commands.h"

#include <initializer_list>

namespace graphize {

namespace {

using Options = std::initializer_list<OptionSpec>;

constexpr const char* kOutput = "Output";
constexpr Options kOutputOptions = {
    {"output", 'o', "FILE", kOutput,
     "where the points go; a folder (or a name that ends\n"
     "in a slash) for one file per picture, \"-\" for the\n"
     "standard output"},
    {"format", 0, "FORMAT", kOutput,
     "dat (the program's data file, of one curve), csv\n"
     "(RFC 4180, with a header), json (with axes, units\n"
     "and errors) or graphize (a project); else what the\n"
     "output's name ends in, and dat for other names"},
    {"errors", 0, nullptr, kOutput,
     "two more columns: standard uncertainties where the\n"
     "curve was read, else the size of a pixel; that\n"
     "everywhere with =pixel",
     false, "pixel"},
    {"strict", 0, nullptr, kOutput, "status 1 when points lie on no ink, or are doubtful else"},
    {"force", 'f', nullptr, kOutput, "replace files that exist"},
    {"jobs", 'j', "N", kOutput, "pictures in work at a time; one more than the cores it may use"},
    {"quiet", 'q', nullptr, kOutput, "no progress and no notes, errors only"},
    {"help", 'h', nullptr, kOutput, "this text"},
};

constexpr const char* kAlike = "Pages of one layout";
constexpr Options kAlikeOptions = {
    {"align", 0, nullptr, kAlike,
     "register each picture to the recipe's own by frame and\n"
     "grid: axes and cleaning move along with it, and curves\n"
     "are looked for in the column where they began. What\n"
     "does not fit is refused"},
    {"trace-column", 0, "COL[,TOP,BOTTOM]", kAlike,
     "begin the recipe's first trace or reading in this\n"
     "column of its own picture, between these rows; given\n"
     "again, the next one. What is more is traced, too",
     true},
    {"report", 0, "FILE.csv|FILE.json", kAlike,
     "a line for each picture: state, points, worst\n"
     "residual, shift, turn, scale, reason"},
};

constexpr Options kExportOptions = {
    {"output", 'o', "FILE", kOutput, "where the points go; \"-\" for the standard output"},
    {"format", 0, "FORMAT", kOutput, "csv or json, where FILE's ending does not tell it"},
    {"curve", 0, "NAME", kOutput, "this curve instead of the one that is worked on"},
    {"all-curves", 0, nullptr, kOutput, "all curves, the one that is worked on first"},
    {"common-x", 0, nullptr, kOutput, "one table over all X that there are"},
    {"x-grid", 0, "LIST", kOutput, "the same over these X: 0,0.5,1 or 0:0.5:10"},
    {"errors", 0, nullptr, kOutput,
     "two more columns: standard uncertainties where the\n"
     "curve was read, else the size of a pixel; that\n"
     "everywhere with =pixel",
     false, "pixel"},
    {"force", 'f', nullptr, kOutput, "replace a file that exists"},
    {"help", 'h', nullptr, kOutput, "this text"},
};

constexpr Options kAxesOptions = {
    {"format", 0, "FORMAT", kOutput, "text (the default) or json"},
    {"plot", 0, "N", kOutput, "of several plots on the picture, this one"},
    {"x-scale", 0, "N", kOutput, "of several scales of the X axis, this one"},
    {"y-scale", 0, "N", kOutput, "of several scales of the Y axis, this one"},
    {"help", 'h', nullptr, kOutput, "this text"},
};

constexpr const char* kAxes = "Axes (needed, or --propose-axes)";
constexpr Options kAxisOptions = {
    {"propose-axes", 0, nullptr, kAxes, "those that \"graphize axes\" finds, where it is sure"},
    {"plot", 0, "N", kAxes, "of several plots on the picture, this one"},
    {"x-scale", 0, "N", kAxes, "of several scales of the X axis, this one"},
    {"y-scale", 0, "N", kAxes, "of several scales of the Y axis, this one"},
    {"origin", 0, "COL,ROW:X,Y", kAxes, "the origin's place and its values"},
    {"x-axis", 0, "COL,ROW:X", kAxes, "a point on the X axis and its value"},
    {"y-axis", 0, "COL,ROW:Y", kAxes, "a point on the Y axis and its value"},
    {"x-log", 0, nullptr, kAxes, "a logarithmic X axis"},
    {"y-log", 0, nullptr, kAxes, "a logarithmic Y axis"},
};

constexpr const char* kTools = "Picture, changed in the order of the options";
constexpr Options kToolOptions = {
    {"damaged", 0, nullptr, kTools, "take what can be read of a damaged file"},
    {"part", 0, "half|quarter|L,T,W,H", kTools,
     "open the picture at half or a quarter of its size, or\n"
     "the part at column L, row T; positions are those on\n"
     "it. A side above 32767 pixels needs this"},
    {"black-white", 0, nullptr, kTools, "reduce to black and white: tracers see black only"},
    {"threshold", 0, "auto|local|N", kTools,
     "the same; black is what is darker than N, which is\n"
     "127.5 otherwise; white is 255. \"auto\": halfway\n"
     "between paper and ink; \"local\": halfway wherever\n"
     "it is, for uneven light, faded ink and colours"},
    {"ink", 0, "R,G,B[,TOLERANCE]", kTools,
     "the ink of this colour alone, as black on white:\n"
     "levels from 0 to 255; tolerance 0.5 to 2 (1)"},
    {"negate", 0, nullptr, kTools, "exchange light and dark: for light curves on dark", true},
    {"blur", 0, nullptr, kTools, "even out grain and dots", true},
    {"soften", 0, "N", kTools, "a gentle blur, 0 to 10", true},
    {"sharpen", 0, "N", kTools, "make soft edges steeper, 0 to 10", true},
    {"edge-detect", 0, "N", kTools, "show outlines bright on black, 0 to 10", true},
    {"resize", 0, "PERCENT", kTools, "scale smoothly, up to 300", true},
    {"stretch", 0, "PERCENT", kTools, "scale by repeating or leaving out pixels, to 300", true},
    {"rotate", 0, "DEGREES", kTools, "turn clockwise, -180 to 180", true},
    {"save-picture", 0, "FILE", kTools,
     "write the cleaned picture, in the type of FILE's\n"
     "ending; for several pictures a folder. Without\n"
     "--output it is all that is done"},
};

constexpr const char* kCleaning = "Cleaning, in the order of the options";
constexpr Options kCleaningOptions = {
    {"grid", 0, "x|y|both[:COL,ROW]", kCleaning,
     "remove all grid lines of constant X or Y; with a\n"
     "place on it the axes' frame, too",
     true},
    {"grid-line", 0, "x|y:COL,ROW", kCleaning, "remove the grid line nearest to the place", true},
    {"erase", 0, "COL,ROW[:SIZE]", kCleaning, "erase a square, 2 x SIZE + 3 pixels wide (4)", true},
    {"block", 0, "COL,ROW[:SIZE]", kCleaning, "a blocker SIZE pixels wide (4): no tracer passes",
     true},
};

constexpr const char* kPoints = "Points, captured in the order of the options";
constexpr Options kPointOptions = {
    {"trace", 0, "COL,ROW", kPoints, "follow the curve from there", true},
    {"algorithm", 0, "peaks|smooth", kPoints, "by its edges (default) or by its middle"},
    {"emit", 0, "LIST", kPoints,
     "what the tracer gives: center (default), above,\n"
     "below, with commas"},
    {"read", 0, "COL,ROW[:HOW]...", kPoints,
     "the curve there, of any colour, on the picture in\n"
     "colour: one point per column, and per row where it\n"
     "is steep, or one every so many PIXELS, where it\n"
     "\"bends\", or at \"x=X,X,...\";\n"
     "\"tolerance=T\" from 0.5 to 2 counts fewer or more\n"
     "pixels as its ink, \"through=COL,ROW\" names another\n"
     "place of it",
     true},
    {"symbols", 0, "COL,ROW[:mass|:box]", kPoints,
     "all symbols like the one there, of any colour; their\n"
     "points are the centres of mass (default) or of the\n"
     "box; \":tolerance=T\" (0.5 to 2) takes fewer or more",
     true},
    {"read-all", 0, nullptr, kPoints, "all curves of the plot, each as one of its own"},
    {"scan", 0, "LEFT,TOP,RIGHT,BOTTOM", kPoints, "all black pixels in the rectangle", true},
    {"x-increment", 0, "N", kPoints, "columns to look ahead, or of a scan's step (2)"},
    {"y-increment", 0, "N", kPoints, "rows to step over (3), or of a scan's step (2)"},
    {"inside-axes", 0, nullptr, kPoints, "traces and scans end at the frame, or at the axes"},
    {"point", 0, "COL,ROW", kPoints, "one point", true},
    {"curve", 0, "NAME", kPoints,
     "what is captured from here on is a curve of this\n"
     "name; the list's options are for each of them",
     true},
    {"snap", 0, "none|x|y|center", kPoints,
     "move points to the middle of the black around them;\n"
     "none is the default"},
    {"snap-distance", 0, "N", kPoints, "pixels to look at (10)"},
};

constexpr const char* kList = "List, in the order of the options";
constexpr Options kListOptions = {
    {"sort", 0, "ascending|descending", kList, "by X", true},
    {"swap", 0, nullptr, kList, "exchange X and Y", true},
    {"resample", 0, "COUNT[:FIRST,LAST]", kList, "COUNT points at even steps of X", true},
    {"resample-log", 0, "x|y|both", kList, "even steps of log X, interpolated log Y"},
    {"curve-length", 0, nullptr, kList, "lengths between the points, their sums as a note", true},
    {"integrate", 0, "all|LOW,HIGH", kList,
     "the area under all points, or from one to another,\n"
     "counted from 1, as a note",
     true},
};

constexpr const char* kNumbers = "Numbers of the data file (one value, or one for X and one for Y)";
constexpr Options kNumberOptions = {
    {"digits", 0, "N[,N]", kNumbers, "places before the point (1)"},
    {"decimals", 0, "N[,N]", kNumbers, "places behind it (5)"},
    {"exponent", 0, "on|off[,on|off]", kNumbers, "scientific notation (on)"},
    {"delimiter", 0, "tab|comma|space|semicolon", kNumbers, "between X and Y (tab)"},
    {"decimal-point", 0, "point|comma", kNumbers, "(point)"},
    {"title", 0, "TEXT", kNumbers, "a first line"},
};

constexpr const char* kStatus = R"(
Errors go to standard error, and the status is 1 when a picture could not be
done (the others are), 2 when the command line cannot be understood.

)";

}  // namespace

CommandSpec ProgramSpec() {
  return {.Usage = R"(Usage: graphize [PICTURE | PROJECT]
       graphize digitize PICTURE... OPTIONS -o FILE
       graphize replay RECIPE [PICTURE...] -o FILE
       graphize export PROJECT -o FILE
       graphize axes PICTURE
)",
          .About = R"(Reads numbers out of pictures of graphs. Without a command the window opens,
with PICTURE or PROJECT in it. The commands need no window and no display:

  digitize    points from pictures whose axes are told by options
  replay      the steps of a recipe saved from the window, on the same or on
              other pictures
  export      the points of a project as a table
  axes        the axes of a picture, found and read by the program

"graphize COMMAND --help" tells more; so does "man graphize".
)",
          .Options = {{"version", 0, nullptr, "Options", "the program's version"},
                      {"help", 'h', nullptr, "Options", "this text"}},
          .Footer = ""};
}

CommandSpec DigitizeSpec() {
  CommandSpec spec{
      .Usage = "Usage: graphize digitize PICTURE... OPTIONS -o FILE\n",
      .About = R"(Reads points out of pictures that have the same axes. PICTURE may be "-", the
standard input. Positions are columns and rows of pixels, rows counted downward
from the top, as picture viewers show them; on a picture that image tools change
they are those on the changed one, which --save-picture shows.
)",
      .Options = {},
      .Footer = std::string(kStatus) + R"(Examples
  A curve, followed from its left end:
    graphize digitize plot.png --black-white --origin 70,430:0,-1 \
      --x-axis 610,430:12 --y-axis 70,40:1 --trace 76,385 -o plot.dat

  A curve in colour, read to a part of a pixel, and the same at three X only:
    graphize digitize colour.png --origin 70,430:0,-1 --x-axis 610,430:12 \
      --y-axis 70,40:1 --read 240,214 --format csv -o curve.csv
    graphize digitize colour.png --origin 70,430:0,-1 --x-axis 610,430:12 \
      --y-axis 70,40:1 --read 240,214:x=2,4,8 --format csv -o three.csv

  A scan of points on log axes, without the grid, as CSV on standard output:
    graphize digitize page.tif --black-white --origin 90,600:1,0.1 \
      --x-axis 900,600:1000 --y-axis 90,60:100 --x-log --y-log --grid both \
      --scan 92,62,898,598 --format csv -o -

  A light curve on a dark ground in a page that lies askew: first the picture
  alone, to see where its axes are, then the curve, from one program to another:
    graphize digitize page.jpg --negate --rotate 2 --save-picture turned.tif
    convert page.jpg png:- | graphize digitize - --negate --rotate 2 \
      --threshold 100 --origin 70,430:0,-1 --x-axis 610,430:12 \
      --y-axis 70,40:1 --trace 76,385 -o - | gnuplot -p -e "plot '-'"

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
)"};
  for (const Options* group : {&kAxisOptions, &kToolOptions, &kCleaningOptions, &kPointOptions,
                               &kListOptions, &kNumberOptions, &kOutputOptions})
    spec.Options.insert(spec.Options.end(), group->begin(), group->end());
  return spec;
}

CommandSpec ReplaySpec() {
  CommandSpec spec{
      .Usage = "Usage: graphize replay RECIPE [PICTURE...] -o FILE\n",
      .About = R"(Does the steps again that the window has saved with "Save Recipe...", up to the
last data file that was saved. On the picture that the recipe names, which must
not have changed, the result is that file, byte for byte. On other pictures, of
which one may be "-", the standard input, the same axes and the same steps are
used; one that gives no points where the recipe's picture had some is an error.
RECIPE may be a project (.graphize): its steps are done on the picture in it.
)",
      .Options = {},
      .Footer = std::string(kStatus) + R"(Examples
  The same points again:
    graphize replay plot.recipe -o plot.dat

  The same steps on other pictures, one file each:
    graphize replay plot.recipe run*.png -o out/

  A thousand pages of a recorder, scanned one by one: each lies a little
  differently, and its curve begins somewhere else in column 76:
    graphize replay page1.recipe page*.png --align --trace-column 76 \
      --report pages.csv --format csv -o out/
)"};
  for (const Options* group : {&kAlikeOptions, &kOutputOptions})
    spec.Options.insert(spec.Options.end(), group->begin(), group->end());
  return spec;
}

CommandSpec ExportSpec() {
  return {
      .Usage = "Usage: graphize export PROJECT -o FILE [OPTIONS]\n",
      .About = R"(Writes the points of a project, which the window, digitize or replay has saved,
as CSV (RFC 4180, with a header) or JSON (with axes and units): the same bytes
as "Export..." in the window.
)",
      .Options = kExportOptions,
      .Footer = std::string(kStatus) + R"(Examples
  The curve that was worked on last:
    graphize export plot.graphize -o data.csv

  All curves in one table over the same X, with the size of a pixel:
    graphize export plot.graphize --all-curves --x-grid 0:0.5:10 --errors \
      -o curves.csv
)"};
}

CommandSpec AxesSpec() {
  return {
      .Usage =
          "Usage: graphize axes PICTURE [--plot N] [--x-scale N] [--y-scale N]\n"
          "                     [--format json]\n",
      .About = R"(Finds the axes of a plot by its frame, ticks and labels, and reads these. PICTURE
may be "-", the standard input. The verdict comes first:

  sure        two readers and the ticks agree, and nothing speaks against it
  proposal    each value is to be confirmed
  none        nothing was found that goes together

Then, for each axis, why; its labels with their values, the places of their
ticks and how far these lie off the scale, in pixels; and three places with
their values that define the axes. Rows count downward from the top, and whole
numbers are the middles of pixels. Of a picture with several plots only the
places of these are told, unless --plot says which of them is meant. Where an
axis has several scales, they are told, and --x-scale and --y-scale choose.
)",
      .Options = kAxesOptions,
      .Footer = std::string(R"(
Errors go to standard error, and the status is 1 when the picture cannot be
read, 2 when the command line cannot be understood.

)") + R"(Examples
  What the program makes of a picture:
    graphize axes plot.png

  A curve read with axes that nobody has clicked, where they are sure:
    graphize digitize plot.png --propose-axes --read 240,214 \
      --format csv -o curve.csv
)"};
}

}  // namespace graphize
