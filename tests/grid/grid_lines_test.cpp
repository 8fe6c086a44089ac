#include "grid/grid_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "raster/black_white.h"
#include "support/picture_bytes.h"
#include "support/plot_drawing.h"
#include "support/scripted_desktop.h"

namespace graphize::test {
namespace {

using Function = std::function<double(double)>;
using Positions = std::vector<double>;

/// A plot with and without its grid lines.
struct Scene {
  std::string Name = "";
  Stroke Grid = {};
  Function Curve = [](double u) { return 0.5 + 0.4 * std::sin(9 * u); };
  double CurveThickness = 1;
  double Degrees = 0;
  Positions AtU = Linear(8), AtV = Linear(6);
  double Bend = 0;
  int Softened = 0;
  double Grain = 0;
};

struct Drawn {
  PlotImage Image;
  Raster WithoutGrid;
  AxisCalibration Calibration;
  std::vector<PixelPosition> Curve;
  PixelPosition TopLeft, BottomRight;  // of the frame
};

Drawn Draw(const Scene& scene) {
  Drawn drawn;
  for (const bool withGrid : {true, false}) {
    PlotDrawing drawing(570, 420, 60.3, 40.3, 540.3, 376.3, scene.Degrees, scene.Bend);
    if (withGrid) {
      drawing.LinesAtU(scene.AtU, scene.Grid);
      drawing.LinesAtV(scene.AtV, scene.Grid);
    }
    drawing.Frame({.Thickness = 2}, 10, 6);
    if (scene.Curve)
      drawn.Curve = drawing.Curve(scene.Curve, {.Thickness = scene.CurveThickness}, 0.03, 0.97);
    for (const double v : Linear(6))
      drawing.Digits({drawing.Place(0, v).X - 32, drawing.Place(0, v).Y - 3}, "-12");
    drawing.Scan(scene.Softened, scene.Grain, 11);
    if (withGrid)
      SetPicture(drawn.Image, drawing.Picture());
    else
      drawn.WithoutGrid = drawing.Picture();
    drawn.Calibration = drawing.Calibration();
    drawn.TopLeft = drawing.Place(0, 1);
    drawn.BottomRight = drawing.Place(1, 0);
  }
  return drawn;
}

GridRemoval Remove(Drawn& drawn, GridDirection direction, bool all = true, int x = 250, int y = 7) {
  ScriptedDesktop desktop;
  StatusBar status;
  const GridRemoval removal =
      RemoveGridLines(drawn.Image, drawn.Calibration, desktop, status, direction, all, x, y);
  EXPECT_FALSE(status.ProgressVisible);
  EXPECT_FALSE(removal.Stopped);
  return removal;
}

/// What the removals left of the grid and took from the rest, in pixels.
struct Damage {
  int Grid = 0, Left = 0, Lost = 0;
  double CoveredColumns = 1;  // part of the curve's columns still black within 2 pixels of it
  int LongestGap = 0;         // columns in a row that are not, behind the first that is
};

Damage Compare(const Drawn& drawn, const Raster& withGrid) {
  Damage damage;
  for (int y = 0; y < drawn.Image.Height(); ++y) {
    for (int x = 0; x < drawn.Image.Width(); ++x) {
      const bool is = IsBlack(drawn.Image, x, y);
      const bool was = IsBlackPixel(withGrid.Row(y)[x]);
      const bool shouldBe = IsBlackPixel(drawn.WithoutGrid.Row(y)[x]);
      EXPECT_FALSE(is && !was) << "blackened " << x << ' ' << y;
      if (was && !shouldBe) ++damage.Grid;
      if (is && !shouldBe) ++damage.Left;
      if (was && shouldBe && !is) ++damage.Lost;
    }
  }
  int columns = 0, covered = 0, gap = 0;
  for (std::size_t i = 0; i < drawn.Curve.size(); ++i) {
    const int x = static_cast<int>(std::lround(drawn.Curve[i].X));
    if (i > 0 && x == static_cast<int>(std::lround(drawn.Curve[i - 1].X))) continue;
    const int y = static_cast<int>(std::lround(drawn.Curve[i].Y));
    bool shouldBe = false, is = false;
    for (int aside = -2; aside <= 2; ++aside) {
      shouldBe = shouldBe || IsBlackPixel(drawn.WithoutGrid.Row(y + aside)[x]);
      is = is || IsBlack(drawn.Image, x, y + aside);
    }
    columns += shouldBe ? 1 : 0;
    covered += shouldBe && is ? 1 : 0;
    gap = shouldBe && !is && covered > 0 ? gap + 1 : 0;
    damage.LongestGap = std::max(damage.LongestGap, gap);
  }
  if (columns > 0) damage.CoveredColumns = static_cast<double>(covered) / columns;
  return damage;
}

/// Columns without ink that a tracer steps over as it is set at first.
constexpr int kBridged = 2;

/// Wipes both directions and checks that the grid has gone and the rest has not. The limits for
/// what is lost and left are parts of the grid's pixels.
void CheckWiped(const Scene& scene, double covered = 0.993, double lost = 0.012,
                double left = 0.03) {
  SCOPED_TRACE(scene.Name + ", turned by " + std::to_string(scene.Degrees));
  Drawn drawn = Draw(scene);
  const Raster before = drawn.Image.Pixels.Clone();
  EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, static_cast<int>(scene.AtV.size()));
  EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, static_cast<int>(scene.AtU.size()));
  const Damage damage = Compare(drawn, before);
  EXPECT_LE(damage.Left, left * damage.Grid + 8);
  EXPECT_LE(damage.Lost, lost * damage.Grid + 8);
  EXPECT_GE(damage.CoveredColumns, covered);
  EXPECT_LE(damage.LongestGap, kBridged);
}

TEST(GridLines, AllStylesOfLinesAreWipedAtAllTurns) {
  const Stroke styles[] = {{.Thickness = 1},
                           {.Thickness = 2},
                           {.Thickness = 3},
                           {.Thickness = 4},
                           {.Thickness = 1, .Dash = 7, .Gap = 4},
                           {.Thickness = 2, .Dash = 9, .Gap = 6},
                           {.Thickness = 1, .Dash = 1, .Gap = 3},
                           {.Thickness = 2, .Dash = 2, .Gap = 4}};
  for (const Stroke& style : styles)
    for (const double degrees : {0.0, 0.6, -3.0})
      for (const double thickness : {1.0, 3.0})
        CheckWiped({.Grid = style, .CurveThickness = thickness, .Degrees = degrees});
}

TEST(GridLines, CurvesThatMeetALineAtAnyAngleSurvive) {
  const std::pair<const char*, Function> curves[] = {
      {"steep", [](double u) { return 0.05 + 0.9 / (1 + std::exp(-40 * (u - 0.47))); }},
      {"shallow", [](double u) { return 0.46 + 0.08 * u; }},
      {"almost level", [](double u) { return 0.487 + 0.026 * u; }},
      {"maximum on a line", [](double u) { return 2 / 3.0 - 1.5 * (u - 0.46) * (u - 0.46); }},
      {"maximum just above", [](double u) { return 0.671 - 1.5 * (u - 0.46) * (u - 0.46); }},
      {"minimum on a line", [](double u) { return 1 / 3.0 + 1.1 * (u - 0.55) * (u - 0.55); }},
      {"saddle on a line", [](double u) { return 0.5 + 3 * std::pow(u - 0.45, 3); }},
      {"many waves", [](double u) { return 0.5 + 0.335 * std::sin(45 * u + 1); }},
      {"begins at its peak on a line", [](double u) { return 0.5 + 0.335 * std::sin(45 * u); }},
  };
  for (const auto& [name, curve] : curves)
    for (const double degrees : {0.0, -1.6})
      for (const double grid : {1.0, 2.0})
        for (const double thickness : {1.0, 2.0, 3.0})
          CheckWiped({name, {.Thickness = grid}, curve, thickness, degrees}, 0.98, 0.02);
}

TEST(GridLines, ACurveThatComesToRunAlongALineIsKept) {
  // Its last third lies within the line; a thick one hides most of the line.
  for (const double thickness : {1.0, 3.0})
    CheckWiped({.Name = "saturation",
                .Curve = [](double u) { return 5 / 6.0 * (1 - std::exp(-11 * u)); },
                .CurveThickness = thickness},
               1.0, 0.05, 0.05);
  // From one line to another; where it runs in the lines it may be kept a row aside.
  for (const double thickness : {1.0, 2.0})
    for (const double steepness : {60.0, 40.0}) {
      const auto step = [=](double u) {
        return 1 / 6.0 + 2 / 3.0 / (1 + std::exp(-steepness * (u - 0.47)));
      };
      CheckWiped({"step", {.Thickness = thickness}, step, thickness}, 1.0, 0.09, 0.09);
    }
}

TEST(GridLines, LongLevelPiecesOfACurveAreNotLines) {
  const auto step = [](double u, double at, double width) {
    const double t = std::clamp((u - at) / width, 0.0, 1.0);
    return t * t * (3 - 2 * t);
  };
  const std::pair<const char*, Function> curves[] = {
      {"plateau", [=](double u) { return 0.2 + 0.35 * step(u, 0.22, 0.1); }},
      {"step", [=](double u) { return 0.2 + 0.38 * step(u, 0.3, 0.002); }},
      {"pulse",
       [=](double u) { return 0.7 - 0.5 * step(u, 0.15, 0.02) + 0.5 * step(u, 0.9, 0.02); }},
      {"base line with peaks",
       [](double u) {
         double v = 0.08;
         for (const double at : {0.2, 0.35, 0.6, 0.8})
           v += 0.7 * at * std::exp(-std::pow((u - at) / 0.012, 2));
         return v;
       }},
  };
  for (const auto& [name, curve] : curves) {
    for (const double thickness : {1.0, 2.0, 3.0})
      CheckWiped({.Name = name, .Curve = curve, .CurveThickness = thickness}, 1.0, 0.01);
  }
}

TEST(GridLines, SticksOfTheDataThatEndBelowTheFrameAreKept) {
  const auto stick = [](PlotDrawing& drawing, const std::vector<PixelPosition>& way, double width) {
    std::vector<PixelPosition> points;
    for (const PixelPosition& at : way) points.push_back(drawing.Place(at.X, at.Y));
    drawing.Polyline(points, {.Thickness = width});
  };
  const std::pair<const char*, std::function<void(PlotDrawing&, double, double)>> sticks[] = {
      {"stems",
       [&](auto& to, double u, double v) {
         stick(to, {{u, 0}, {u, v}}, 2);
       }},
      {"hanging",
       [&](auto& to, double u, double v) {
         stick(to, {{u, 1 - v}, {u, 1}}, 1);
       }},
      {"bars",
       [&](auto& to, double u, double v) {
         stick(to, {{u, 0}, {u, v}, {u + 0.03, v}, {u + 0.03, 0}}, 1);
       }},
      {"lollipops",
       [&](auto& to, double u, double v) {
         stick(to, {{u, 0}, {u, v}}, 1);
         to.Disc(to.Place(u, v), 9);
       }},
      {"level",
       [&](auto& to, double u, double v) {
         stick(to, {{0, u}, {v, u}}, 2);
       }},
  };
  for (const auto& [name, drawStick] : sticks) {
    for (const bool hasGrid : {true, false}) {
      for (const bool hasFrame : {true, false}) {
        SCOPED_TRACE(std::string(name) + (hasGrid ? ", grid" : "") + (hasFrame ? ", frame" : ""));
        Drawn drawn;
        for (const bool withGrid : {true, false}) {
          PlotDrawing drawing(570, 420, 60, 40, 540, 376, hasFrame ? 0 : 0.8);
          if (withGrid && hasGrid) drawing.LinesAtU(Linear(8), {.Dash = 9, .Gap = 5});
          if (withGrid && hasGrid) drawing.LinesAtV(Linear(6), {});
          if (hasFrame) drawing.Frame({.Thickness = 2}, 10, 6);
          drawing.LinesAtU({0}, {.Thickness = 2});
          drawing.LinesAtV({0}, {.Thickness = 2});
          // 5 / 6: up to a line of the grid.
          const double lengths[] = {0.6, 0.92, 5 / 6.0, 0.75, 0.75, 0.9};
          for (int i = 0; i < 6; ++i) drawStick(drawing, (i + 0.55) / 6.5, lengths[i]);
          if (withGrid)
            SetPicture(drawn.Image, drawing.Picture());
          else
            drawn.WithoutGrid = drawing.Picture();
          drawn.Calibration = drawing.Calibration();
        }
        const Raster before = drawn.Image.Pixels.Clone();
        EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, hasGrid ? 7 : 0);
        EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, hasGrid ? 5 : 0);
        const Damage damage = Compare(drawn, before);
        EXPECT_LE(damage.Lost, 0.01 * damage.Grid);
        EXPECT_LE(damage.Left, 0.03 * damage.Grid);
      }
    }
  }
}

TEST(GridLines, LinesThatTheReductionBrokeIntoSpecksAreFoundInWhatWasGrey) {
  for (const double darkness : {0.5, 0.56}) {
    for (const double degrees : {0.0, 0.7, -2.0}) {
      SCOPED_TRACE(std::to_string(darkness) + ", " + std::to_string(degrees) + " degrees");
      Drawn drawn;
      for (const bool withGrid : {true, false}) {
        PlotDrawing drawing(570, 420, 60, 40, 540, 376, degrees);
        if (withGrid) drawing.LinesAtU(Linear(8), {.Darkness = darkness});
        if (withGrid) drawing.LinesAtV(Linear(6), {.Darkness = darkness});
        drawing.Frame({.Thickness = 2}, 10, 6);
        drawing.Curve([](double u) { return 0.5 + 0.4 * std::sin(9 * u); }, {.Thickness = 3});
        drawing.Scan(0, 0.15, 3);
        Raster picture = drawing.GreyPicture();
        ReduceToBlackAndWhite(picture);
        if (withGrid)
          SetPicture(drawn.Image, std::move(picture));
        else
          drawn.WithoutGrid = std::move(picture);
        drawn.Calibration = drawing.Calibration();
      }
      const Raster before = drawn.Image.Pixels.Clone();
      const PixelPosition onLine = PlotDrawing(570, 420, 60, 40, 540, 376, degrees).Place(0.4, 0.5);
      const GridRemoval one = Remove(drawn, GridDirection::Y, false, static_cast<int>(onLine.X),
                                     static_cast<int>(onLine.Y));
      EXPECT_EQ(one.Lines, 1);
      EXPECT_GT(one.Pixels, 60);
      EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, 4) << "the one that was removed is gone";
      EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, 7);
      EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, 0);
      const Damage damage = Compare(drawn, before);
      EXPECT_LE(damage.Left, 0.06 * damage.Grid);
      EXPECT_LE(damage.Lost, 0.03 * damage.Grid);
    }
  }
}

TEST(GridLines, LogarithmicAndPoorGridsAreWiped) {
  CheckWiped({.Name = "decades", .AtU = Decades(3), .AtV = Decades(2)});
  CheckWiped({.Name = "decades", .Degrees = -2.2, .AtU = Decades(3), .AtV = Decades(2)});
  CheckWiped({.Name = "grey",
              .Grid = {.Thickness = 2, .Darkness = 0.56},
              .CurveThickness = 2,
              .Degrees = 0.8,
              .Grain = 0.12});
  CheckWiped({.Name = "scanned",
              .Grid = {.Thickness = 2},
              .CurveThickness = 3,
              .Degrees = 0.8,
              .Bend = 1.5,
              .Softened = 1,
              .Grain = 0.2},
             0.99, 0.1);
  CheckWiped({.Name = "bent", .Grid = {.Thickness = 2}, .CurveThickness = 2, .Bend = 3});
}

TEST(GridLines, NothingOutsideThePlotIsTouched) {
  for (const double degrees : {0.0, 2.0}) {
    Drawn drawn = Draw({.Curve = nullptr, .Degrees = degrees});
    const Raster before = drawn.Image.Pixels.Clone();
    Remove(drawn, GridDirection::Y);
    Remove(drawn, GridDirection::X);
    // A turned frame leans into its upright hull.
    const double lean = std::abs(std::tan(degrees * 3.1416 / 180)) * 480;
    for (int y = 0; y < drawn.Image.Height(); ++y) {
      for (int x = 0; x < drawn.Image.Width(); ++x) {
        const bool inside = x > drawn.TopLeft.X - lean && x < drawn.BottomRight.X + lean &&
                            y > drawn.TopLeft.Y - lean && y < drawn.BottomRight.Y + lean;
        if (!inside) {
          ASSERT_EQ(drawn.Image.Pixels.Row(y)[x], before.Row(y)[x]) << x << ' ' << y;
        }
      }
    }
    const Damage damage = Compare(drawn, before);
    EXPECT_LE(damage.Lost, 4) << "of the frame, at " << degrees << " degrees";
  }
}

TEST(GridLines, TheFrameGoesOnlyWhenItWasClicked) {
  // Y lines: 5 and the two sides of the frame at rows 40 and 376.
  for (const auto& [x, y, lines] :
       {std::tuple{300, 200, 5}, {300, 48, 5}, {300, 378, 7}, {300, 38, 7}}) {
    Drawn drawn = Draw({.Grid = {.Thickness = 2}});
    EXPECT_EQ(Remove(drawn, GridDirection::Y, true, x, y).Lines, lines) << y;
  }
}

TEST(GridLines, WithASideOfTheFrameGoneTheNextLineIsStillGrid) {
  // The intervals; 29 and 23: their lines are no longer than ticks.
  const std::tuple<Stroke, int, int> grids[] = {
      {{}, 8, 6}, {{.Dash = 6, .Gap = 4}, 8, 6}, {{}, 29, 23}, {{.Thickness = 2}, 29, 23}};
  for (const auto& [line, atU, atV] : grids) {
    for (const double degrees : {0.0, 1.5}) {
      const Scene scene{.Grid = line,
                        .Curve = nullptr,
                        .Degrees = degrees,
                        .AtU = Linear(atU),
                        .AtV = Linear(atV)};
      for (const bool first : {true, false}) {
        SCOPED_TRACE(std::to_string(atU) + ", " + std::to_string(degrees) + " degrees");
        Drawn across = Draw(scene), upright = Draw(scene);
        const PixelPosition corner = first ? across.TopLeft : across.BottomRight;
        const auto column = static_cast<int>(corner.X), row = static_cast<int>(corner.Y);
        const int inward = first ? 5 : -5;
        EXPECT_EQ(Remove(across, GridDirection::Y, false, column + inward, row).Lines, 1);
        EXPECT_EQ(Remove(across, GridDirection::Y).Lines, atV - 1);
        EXPECT_EQ(Remove(upright, GridDirection::X, false, column, row + inward).Lines, 1);
        EXPECT_EQ(Remove(upright, GridDirection::X).Lines, atU - 1);
      }
    }
  }
}

TEST(GridLines, TwoAxesStayAlsoWhereTheReferencePointsLieInside) {
  for (const double degrees : {0.0, 1.5}) {
    PlotDrawing drawing(570, 420, 60, 40, 540, 376, degrees);
    drawing.LinesAtU(Linear(8), {});
    drawing.LinesAtV(Linear(6), {});
    drawing.LinesAtU({0}, {.Thickness = 2});
    drawing.LinesAtV({0}, {.Thickness = 2});
    Drawn drawn;
    SetPicture(drawn.Image, drawing.Picture());
    drawn.Calibration = PlotDrawing(570, 420, 135, 80, 450, 300, degrees).Calibration();
    EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, 5) << degrees;
    EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, 7) << degrees;
  }
}

TEST(GridLines, AClickRemovesTheNearestLineAlone) {
  // The click, and the line's row or column. Rows 96, 152, 208, 264, 320; columns 120, 180, 240,
  // 300, 360, 420, 480; the frame's 60.
  using enum GridDirection;
  const std::tuple<GridDirection, int, int, int> clicks[] = {
      {Y, 310, 152, 152}, {Y, 310, 147, 152}, {Y, 90, 167, 152},  {Y, 565, 210, 208},
      {Y, 310, 179, 152}, {Y, 310, 181, 208}, {X, 302, 111, 300}, {X, 255, 300, 240},
      {X, 60, 2000, 60},  {X, 333, 2, 360},   {X, 10, 10, 60},    {Y, 310, 419, 376},
      {Y, 3, 2, 40},
  };
  for (const auto& [direction, clickX, clickY, line] : clicks) {
    SCOPED_TRACE(std::to_string(clickX) + "," + std::to_string(clickY));
    Drawn drawn = Draw({});
    const Raster before = drawn.Image.Pixels.Clone();
    const GridRemoval removal = Remove(drawn, direction, false, clickX, clickY);
    EXPECT_EQ(removal.Lines, 1);
    EXPECT_GT(removal.Pixels, 250);
    for (int y = 0; y < drawn.Image.Height(); ++y)
      for (int x = 0; x < drawn.Image.Width(); ++x)
        if (drawn.Image.Pixels.Row(y)[x] != before.Row(y)[x]) {
          ASSERT_NEAR(direction == Y ? y : x, line, 2);
        }
  }
}

TEST(GridLines, DotsOfUnevenSizesGoUpToTheFrame) {
  PlotDrawing drawing(900, 700, 100, 120, 800, 600, 3);
  drawing.Frame({});
  Raster picture = drawing.Picture();
  const Positions atV = {1 / 6.0, 0.5, 5 / 6.0};
  // Every dot is stamped at three places a third of a pixel apart: it is 2 or 3 pixels wide and
  // high as the rounding wants it.
  constexpr int kSteps = 2100;
  for (const double v : atV) {
    for (int i = 0; i <= kSteps; ++i) {
      if (i / 3 % 6 != 0) continue;
      const PixelPosition at = drawing.Place(static_cast<double>(i) / kSteps, v);
      const int x = static_cast<int>(std::lround(at.X)), y = static_cast<int>(std::lround(at.Y));
      for (const int row : {y - 1, y})
        for (const int column : {x - 1, x}) picture.Row(row)[column] = kBlackPixel;
    }
  }
  Drawn drawn{.Calibration = drawing.Calibration()};
  SetPicture(drawn.Image, std::move(picture));
  for (const double v : atV) {
    const PixelPosition click = drawing.Place(0.4, v);
    EXPECT_EQ(
        Remove(drawn, GridDirection::Y, false, static_cast<int>(click.X), static_cast<int>(click.Y))
            .Lines,
        1);
    int left = 0;
    const PixelPosition first = drawing.Place(0, v), last = drawing.Place(1, v);
    for (int x = static_cast<int>(first.X) + 3; x <= static_cast<int>(last.X) - 3; ++x) {
      const double row = first.Y + (last.Y - first.Y) * (x - first.X) / (last.X - first.X);
      for (int aside = -4; aside <= 4; ++aside)
        left += IsBlack(drawn.Image, x, static_cast<int>(std::lround(row)) + aside) ? 1 : 0;
    }
    EXPECT_LE(left, 2) << v;
  }
}

TEST(GridLines, UndoBringsEverythingBackAndASecondRunFindsNothingMore) {
  Drawn drawn = Draw({.Grid = {.Thickness = 2}, .Degrees = 1});
  const auto before = PixelsOf(drawn.Image.Pixels);
  const GridRemoval first = Remove(drawn, GridDirection::Y);
  const auto after = PixelsOf(drawn.Image.Pixels);
  EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, 0);
  UndoEdit(drawn.Image);
  EXPECT_TRUE(PixelsOf(drawn.Image.Pixels) == before);
  EXPECT_EQ(Remove(drawn, GridDirection::Y).Pixels, first.Pixels);
  EXPECT_TRUE(PixelsOf(drawn.Image.Pixels) == after);
}

TEST(GridLines, FindingNothingKeepsTheLastUndoAndTheMarks) {
  for (const bool all : {true, false}) {
    PlotImage image;
    PlotDrawing drawing(300, 200, 40, 20, 280, 180);
    if (all) drawing.Frame({});  // the nearest line of all, to a click for one
    drawing.Curve([](double u) { return 0.2 + 0.6 * u * u; }, {.Thickness = 2});
    SetPicture(image, drawing.Picture());
    BeginEdit(image);
    EditPixel(image, 5, 5, kBlack);
    SetPixel(image, 100, 100, MakeColour(128, 0, 0));
    ScriptedDesktop desktop;
    for (const GridDirection direction : {GridDirection::X, GridDirection::Y}) {
      StatusBar status;
      const GridRemoval removal =
          RemoveGridLines(image, drawing.Calibration(), desktop, status, direction, all, 150, 60);
      EXPECT_EQ(removal.Lines, 0);
      EXPECT_EQ(status.Status,
                direction == GridDirection::X ? "No X grid lines found" : "No Y grid lines found");
    }
    EXPECT_EQ(GetPixel(image, 100, 100), MakeColour(128, 0, 0));
    UndoEdit(image);
    EXPECT_EQ(GetPixel(image, 5, 5), kWhite);
  }
}

TEST(GridLines, MarksNeitherHideALineNorCountAsOne) {
  Drawn marked = Draw({}), plain = Draw({});
  DrawLine(marked.Image, 0, 96, 569, 96, MakeColour(255, 255, 0));  // over a grid line
  DrawLine(marked.Image, 61, 120, 539, 120, kBlack);
  EXPECT_EQ(Remove(marked, GridDirection::Y).Lines, 5);
  EXPECT_EQ(Remove(plain, GridDirection::Y).Lines, 5);
  EXPECT_TRUE(marked.Image.Marks.empty());
  EXPECT_TRUE(PixelsOf(marked.Image.Pixels) == PixelsOf(plain.Image.Pixels));
}

TEST(GridLines, EscapeStopsAndWhatIsRemovedByThenIsOneUndoStep) {
  const Scene scene{.Grid = {.Thickness = 2}};
  int stopped = 0;
  bool partly = false;
  for (int questions = 0; questions < 400; questions += 3) {
    Drawn drawn = Draw(scene);
    const Raster before = drawn.Image.Pixels.Clone();
    ScriptedDesktop desktop;
    desktop.EscapeAfter = questions;
    desktop.OnPump = [&] { ASSERT_LE(drawn.Image.LastEdit.size(), before.PixelCount()); };
    StatusBar status;
    const GridRemoval removal = RemoveGridLines(drawn.Image, drawn.Calibration, desktop, status,
                                                GridDirection::Y, true, 250, 7);
    if (!removal.Stopped) {
      EXPECT_EQ(removal.Lines, 5);
      break;
    }
    ++stopped;
    partly = partly || (removal.Lines > 0 && removal.Lines < 5);
    EXPECT_EQ(status.Status.substr(0, 9), "Stopped: ");
    UndoEdit(drawn.Image);
    ASSERT_TRUE(PixelsOf(drawn.Image.Pixels) == PixelsOf(before)) << questions;
  }
  EXPECT_GT(stopped, 5);
  EXPECT_TRUE(partly);
}

TEST(GridLines, TellsWhatItDoesAndHowFarItIs) {
  Drawn drawn = Draw({});
  ScriptedDesktop desktop;
  StatusBar status;
  int last = 0;
  desktop.OnPump = [&] {
    EXPECT_EQ(status.Status, "Removing grid lines please wait...");
    EXPECT_TRUE(status.ProgressVisible);
    EXPECT_GE(status.ProgressValue, last);
    EXPECT_LE(status.ProgressValue, 100);
    last = status.ProgressValue;
  };
  RemoveGridLines(drawn.Image, drawn.Calibration, desktop, status, GridDirection::X, true, 250,
                  200);
  EXPECT_GT(desktop.Pumps, 20);
  EXPECT_GT(last, 60);
  EXPECT_EQ(status.Status, "7 X grid lines removed");
}

TEST(GridLines, OnlyExactlyBlackPixelsAreLines) {
  Drawn drawn = Draw({.Curve = nullptr});
  for (std::size_t i = 0; i < drawn.Image.Pixels.PixelCount(); ++i) {
    std::uint32_t& pixel = drawn.Image.Pixels.Pixels()[i];
    if (IsBlackPixel(pixel)) pixel = 0xff000001u;
  }
  EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, 0);
}

TEST(GridLines, SymbolsAndTextInRowsAreNotLines) {
  PlotDrawing drawing(560, 420, 60, 40, 530, 380);
  drawing.Frame({.Thickness = 2}, 10, 6);
  for (const double v : {0.2, 0.5, 0.8}) {
    for (int i = 1; i < 12; ++i) {
      const PixelPosition at = drawing.Place(i / 12.0, v);
      if (v < 0.3)
        drawing.Disc(at, 9);
      else if (v < 0.6)
        drawing.Box(at, 9, {});
      else
        drawing.Polyline({{at.X - 6, at.Y}, {at.X + 6, at.Y}}, {.Thickness = 2});
    }
  }
  for (const double row : {12.0, 25.0, 400.0})
    drawing.Digits({70, row}, std::string("2718281828459045235360287471352662497757").substr(0, 37),
                   2);
  Drawn drawn;
  SetPicture(drawn.Image, drawing.Picture());
  drawn.Calibration = drawing.Calibration();
  EXPECT_EQ(Remove(drawn, GridDirection::Y).Lines, 0);
  EXPECT_EQ(Remove(drawn, GridDirection::X).Lines, 0);
}

TEST(GridLines, UnsuitableInputIsRefusedInPlainWords) {
  ScriptedDesktop desktop;
  StatusBar status;
  status.Status = "before";
  PlotImage none;
  AxisCalibration complete = PlotDrawing(100, 80, 10, 10, 90, 70).Calibration();
  EXPECT_EQ(RemoveGridLines(none, complete, desktop, status, GridDirection::X, true, 0, 0).Lines,
            0);

  Drawn drawn = Draw({});
  AxisCalibration incomplete = drawn.Calibration;
  incomplete.Defined[2] = false;
  desktop.ExpectMessage("define the axes");
  EXPECT_EQ(
      RemoveGridLines(drawn.Image, incomplete, desktop, status, GridDirection::X, true, 0, 0).Lines,
      0);
  EXPECT_EQ(status.Status, "before");
  EXPECT_FALSE(drawn.Image.HasUndo);
}

TEST(GridLines, StrangePicturesAndCalibrationsDoNoHarm) {
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 300}, {300, 1}, {65, 64}, {2000, 3}}) {
    for (const std::uint32_t pixel : {kWhitePixel, kBlackPixel}) {
      for (const double degrees : {0.0, 44.0, -80.0}) {
        Drawn drawn;
        SetPicture(drawn.Image, Raster::Filled(width, height, pixel));
        // The reference points lie outside most of these pictures.
        drawn.Calibration = PlotDrawing(560, 420, 60, 40, 530, 380, degrees).Calibration();
        for (const GridDirection direction : {GridDirection::X, GridDirection::Y}) {
          for (const bool all : {true, false}) {
            Remove(drawn, direction, all, -5, 9000);
            UndoEdit(drawn.Image);
            EXPECT_EQ(drawn.Image.Pixels.Row(height - 1)[width - 1], pixel);
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace graphize::test
