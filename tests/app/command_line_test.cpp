// The program itself on a machine without a display: the sample pictures against their true data.

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "app/window_driver.h"
#include "support/temporary_folder.h"
#include "support/true_data.h"

namespace graphize::test {
namespace {

struct Row {
  double X, Y, XError, YError;
};

std::vector<Row> ReadTable(const std::filesystem::path& path) {
  std::istringstream file(BytesOf(path));
  std::string line;
  std::getline(file, line);
  std::vector<Row> rows;
  while (std::getline(file, line)) {
    Row& row = rows.emplace_back();
    EXPECT_EQ(
        std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf", &row.X, &row.Y, &row.XError, &row.YError), 4)
        << line;
  }
  return rows;
}

/// Column `column` of the true data over its first one.
std::vector<TruePoint> ReadTruth(const std::string& name, int column) {
  std::istringstream file(BytesOf(kSamples / (name + ".csv")));
  std::string line;
  std::getline(file, line);
  std::vector<TruePoint> points;
  while (std::getline(file, line)) {
    std::istringstream cells(line);
    std::string cell, x;
    std::getline(cells, x, ',');
    for (int i = 0; i < column; ++i) std::getline(cells, cell, ',');
    points.push_back({std::atof(x.c_str()), std::atof(cell.c_str())});
  }
  return points;
}

/// How far the row lies from the line through the true points, in pixels.
double DistanceOf(const Row& row, const std::vector<TruePoint>& truth) {
  double nearest = HUGE_VAL;
  for (std::size_t i = 1; i < truth.size(); ++i) {
    const double ax = (truth[i - 1].X - row.X) / row.XError,
                 ay = (truth[i - 1].Y - row.Y) / row.YError;
    const double dx = (truth[i].X - row.X) / row.XError - ax,
                 dy = (truth[i].Y - row.Y) / row.YError - ay;
    const double length = dx * dx + dy * dy;
    const double t = length > 0 ? std::clamp(-(ax * dx + ay * dy) / length, 0.0, 1.0) : 0;
    nearest = std::min(nearest, std::hypot(ax + t * dx, ay + t * dy));
  }
  return nearest;
}

TEST(CommandLine, AllSamplesAgreeWithTheirTrueData) {
  const TemporaryFolder folder;
  const std::string command = "unset DISPLAY WAYLAND_DISPLAY; GRAPHIZE='" GRAPHIZE_PROGRAM "' '" +
                              (kSamples / "digitize").string() + "' '" + folder.Path().string() +
                              "' --format csv --errors";
  ASSERT_EQ(std::system(command.c_str()), 0);
  const struct {
    const char* Name;
    int Column;
    double Points;  // at least
  } curves[] = {{"pendulum", 1, 525},           {"melting_grid", 1, 590},
                {"temperature_colour", 2, 640}, {"filter_loglog", 1, 515},
                {"response_rotated", 1, 585},   {"record_scanned", 1, 620},
                {"decay_dashed", 1, 350}};
  for (const auto& curve : curves) {
    SCOPED_TRACE(curve.Name);
    const auto truth = ReadTruth(curve.Name, curve.Column);
    std::vector<double> distances;
    for (const Row& row : ReadTable(folder / (curve.Name + std::string(".csv"))))
      distances.push_back(DistanceOf(row, truth));
    ASSERT_GE(distances.size(), curve.Points);
    EXPECT_LT(Median(distances), 0.5);
    EXPECT_LT(*std::max_element(distances.begin(), distances.end()), 2.5) << "nothing false";
  }
  // Every symbol was found, and nothing but symbols.
  const auto symbols = ReadPoints(kSamples / "groups_scatter.csv", ',', 1);
  const std::vector<Row> rows = ReadTable(folder / "groups_scatter.csv");
  const auto near = [](const Row& row, const TruePoint& symbol) {
    return std::hypot((row.X - symbol.X) / row.XError, (row.Y - symbol.Y) / row.YError) < 8;
  };
  for (const TruePoint& symbol : symbols)
    EXPECT_TRUE(
        std::any_of(rows.begin(), rows.end(), [&](auto& row) { return near(row, symbol); }));
  for (const Row& row : rows)
    ASSERT_TRUE(std::any_of(symbols.begin(), symbols.end(), [&](auto& s) { return near(row, s); }));
}

}  // namespace
}  // namespace graphize::test
