// The command line without a window: what is refused and how it is told, and the points it gives.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <tuple>

#include "base/checksum.h"
#include "batch/batch.h"
#include "batch/commands.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/export_points.h"
#include "commands/replay.h"
#include "raster/black_white.h"
#include "reading/ink_threshold.h"
#include "session/project_file.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"
#include "support/temporary_folder.h"
#include "support/true_data.h"

namespace graphize {
namespace {

using Words = std::vector<std::string>;

const std::filesystem::path kSamples =
    std::filesystem::path(GRAPHIZE_SOURCE_DIR) / "tests" / "samples";

class Batch : public ::testing::Test {
 protected:
  int Run(const Words& words) {
    out.str("");
    err.str("");
    const int status = RunBatch(words, {out, err, false, &in});
    // What the kernel of this machine has not is no affair of these tests.
    const std::string fence = "graphize: " + DecodedWithinProgram() + "\n";
    if (const auto at = err.str().find(fence); at != std::string::npos)
      err.str(std::string(err.str()).erase(at, fence.size())), isFenceTold = true;
    return status;
  }
  std::string Pendulum() const { return (kSamples / "pendulum.bmp").string(); }
  /// A digitize command on the pendulum with these options beside the axes.
  Words OnPendulum(const Words& options) {
    Words words = {"digitize", Pendulum(), "--origin", "70,430:0,-1", "--x-axis=610,430:12",
                   "--y-axis", "70,40:1"};
    words.insert(words.end(), options.begin(), options.end());
    return words;
  }
  bool IsTold(const std::string& words) const {
    const bool isTold = err.str().find(words) != std::string::npos;
    return isTold || (ADD_FAILURE() << err.str(), false);
  }
  std::string At(const char* name) const { return (folder / name).string(); }

  test::TemporaryFolder folder;
  std::istringstream in;
  std::ostringstream out, err;
  bool isFenceTold = false;
};

TEST_F(Batch, TellThatPicturesAreDecodedWithoutAProcess) {
  PrepareToDecode(DecodersReady::None);  // nor has there been any
  const test::FullDisk none(0);          // nor a file in memory, which a process needs
  for (const Words& words : {Words{"axes", Pendulum()}, OnPendulum({"--trace=76,58", "-o", "-"})}) {
    isFenceTold = false;
    EXPECT_EQ(Run(words), 0) << err.str();
    EXPECT_TRUE(isFenceTold) << words.front();
  }
}

TEST_F(Batch, BadInvocationsAreToldInOneLineAndWriteNothing) {
  test::WriteBytes(folder / "text.png", "no picture");
  const Words axes = {"--origin", "70,430:0,-1", "--x-axis", "610,430:12", "--y-axis", "70,40:1"};
  const auto digitize = [&](Words words, bool withAxes = true) {
    words.insert(words.begin(), "digitize");
    if (withAxes) words.insert(words.end(), axes.begin(), axes.end());
    return words;
  };
  const std::string p = Pendulum(), o = At("out.dat");
  /// A trace, with these options before it.
  const auto traced = [&](Words options) {
    options.insert(options.begin(), {p, "-o", o});
    options.insert(options.end(), {"--trace", "76,58"});
    return digitize(options);
  };
  const auto withAxes = [&](const char* origin, const char* xAxis, const char* option = "-q") {
    return Words{"digitize", p,      "-o",       o,         "--origin", origin, "--x-axis",
                 xAxis,      option, "--y-axis", "70,40:1", "--trace",  "76,58"};
  };
  const std::tuple<Words, int, std::string> cases[] = {
      {digitize({"-o", o, "--trace", "76,58"}), 2, "a picture is missing"},
      {digitize({p, "--trace", "76,58"}), 2, "--output is missing"},
      {digitize({p, "-o", o}), 2,
       "nothing is captured: --point, --trace, --read, --symbols, --read-all or "
       "--scan is missing"},
      {digitize({p, "-o", o, "--trace", "76,58"}, false), 2, "--origin is missing"},
      {traced({"--origin", "1,1:0,0"}), 2, "--origin is given twice"},
      {traced({"--read=76,58:half"}), 2, "--read \"76,58:half\": COLUMN,ROW is expected, or with"},
      {traced({"--read=76,58:bends:7"}), 2, "one choice of points is expected, not two"},
      {traced({"--symbols=76,58:mass:box"}), 2, "one of mass and box is expected, not two"},
      {digitize({p, "-o", o, "--read", "3,3"}), 1,
       "--read 3,3: near 3,3 there is only paper, no curve"},
      {{"digitize", (kSamples / "temperature_colour.jpg").string(), "-o", o, "--origin=70,470:0,-6",
        "--x-axis=720,470:24", "--y-axis=70,40:24", "--read=60,300"},
       1,
       "60,300 lies outside the axes"},
      {traced({"--trace=76"}), 2, "--trace \"76\": COLUMN,ROW in whole pixels is expected"},
      {traced({"--trace=7x,8"}), 2, "--trace \"7x,8\""},
      {traced({"--trace=39950,8"}), 2, "--trace \"39950,8\": \"39950\" is not from 0 to 32766"},
      {traced({"--part=third"}), 2, "--part \"third\": half, quarter or LEFT,TOP,WIDTH,HEIGHT"},
      {digitize({p, "-o", o, "--trace"}, false), 2, "--trace needs a value"},
      {traced({"--tra=1"}), 2, "--trace \"1\""},
      {traced({"--grid", "z"}), 2, "x, y or both is expected"},
      {traced({"--nonsense"}), 2, "there is no option --nonsense"},
      {traced({"-z"}), 2, "there is no option -z"},
      {traced({"--s", "1"}), 2, "--s may mean --soften or --sharpen"},
      {traced({"--swap=1"}), 2, "--swap takes no value"},
      {traced({"--x-log"}), 2, "--origin \"70,430:0,-1\": with --x-log the value must be above 0"},
      {traced({"--decimals=16"}), 2, "--decimals \"16\": a whole number from 0 to 15 is expected"},
      {traced({"--format", "xls"}), 2, "--format \"xls\": dat, csv, json or graphize is expected"},
      {digitize({p, p, "-o", "-", "--trace", "76,58"}), 2, "several pictures need a folder"},
      {digitize({p, p, "-o", At("sub"), "--trace", "76,58"}), 2,
       "two pictures would be written to"},
      {withAxes("70,430:0,-1", "70,430:12"), 2,
       "--x-axis \"70,430:12\": it lies in the origin's column"},
      {withAxes("70,430:0,-1", "610,430:0"), 2,
       "--x-axis \"610,430:0\": it has the origin's value"},
      {withAxes("70,430:0,nan", "610,430:9"), 2, "\"nan\" is no number"},
      {withAxes("70,430:0,-1", "610,430:1,5"), 2, "the decimal sign is a point"},
      {withAxes("70,430:1,1e-60", "610,430:9", "--y-log"), 2,
       "with --y-log the value must be above 0"},
      {traced({"--trace", "700,58"}), 1,
       "--trace 700,58: the position 700,58 lies outside of the picture (640x480)"},
      {traced({"--block", "9,480"}), 1, "--block 9,480: the pos"},
      {traced({"--trace", "1.5,58"}), 2, "--trace \"1.5,58\""},
      {traced({"--integrate", "5"}), 2, "--integrate \"5\""},
      {traced({"--resample-log", "x"}), 2, "--resample-log needs --resample"},
      {traced({"--format", "csv", "--digits", "2"}), 2, "--digits is for --format dat only"},
      {digitize({p, "-f", "-o", p, "--trace", "76,58"}), 2, "--output would replace the input"},
      {{"digitise", p}, 2, "there is no command, option or picture \"digitise\""},
      {{"--vers"}, 2, "there is no command, option or picture \"--vers\""},
      {digitize({p, "-o", o, "--trace", "300,300", "--title", "t"}), 1,
       "no points were captured; --trace 300,300: no ink at 300,300 within the increments\n"},
      {digitize({p, "-o", o, "--scan", "300,300,320,320", "--sort", "ascending"}), 1,
       "--sort ascending: there are not enough captured points; --scan 300,300,320,320: no ink "
       "in "},
      {digitize({(kSamples / "temperature_colour.jpg").string(), "-o", o, "--trace", "300,300"}), 1,
       "the picture has other colours, and only black is ink: see --black-white"},
      {traced({"--threshold", "0"}), 2, "--threshold \"0\""},
      {traced({"--rotate=181"}), 2,
       "--rotate \"181\": a whole number from -180 to 180 is expected"},
      {traced({"--resize", "0"}), 1, "--resize 0: the picture is too small for that"},
      {traced({"--save-picture", At("p.webp")}), 2,
       "--save-picture \"" + At("p.webp") + "\": a name is expected"},
      {digitize({p, "-f", "--save-picture", p}), 2, "--save-picture would replace the input"},
      {digitize({p, "--save-picture", At("x.bmp"), "--grid", "x"}, false), 2,
       "--origin is missing"},
      {digitize({"-", "-", "-o", At("sub/"), "--trace", "76,58"}), 2, "two pictures would be"},
      {digitize({At("text.png"), "-o", o, "--trace", "76,58"}), 1, "text.png"},
      {digitize({At("none.png"), "-o", o, "--trace", "76,58"}), 1, "No such file"},
      {digitize({p, "-o", p + "/x.dat", "--trace", "76,58"}), 1, "cannot be written"},
      {digitize({p, "-o", o, "--point", "76,58", "--resample", "5"}), 1,
       "--resample 5: there are not enough captured points"},
      {{"replay", "-o", o}, 2, "a recipe is missing"},
      {{"replay", At("none"), "-o", o}, 1, "No such file"},
  };
  for (const auto& [command, status, words] : cases) {
    SCOPED_TRACE(words);
    EXPECT_EQ(Run(command), status) << err.str();
    const std::string told = err.str();
    EXPECT_NE(told.find(words), std::string::npos) << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
    EXPECT_EQ(out.str(), "");
    EXPECT_FALSE(std::filesystem::exists(o));
  }
}

TEST_F(Batch, AxesAreFoundAndTakenWhereTheyAreSure) {
  ASSERT_EQ(Run({"axes", Pendulum(), "--format=json"}), 0) << err.str();
  const auto axes = nlohmann::json::parse(out.str());
  EXPECT_EQ(axes["verdict"], "sure") << out.str();
  EXPECT_EQ(axes["x"]["log"], false);
  ASSERT_EQ(axes["rows"].size(), 3u);
  const auto& label = axes["x"]["labels"].back();
  EXPECT_EQ(label["text"], "12");
  EXPECT_EQ(label["value"], 12);
  EXPECT_NEAR(label["column"].get<double>(), 610, 0.6);
  EXPECT_NEAR(label["row"].get<double>(), 430, 0.6);

  // The same points as with axes that are told, to less than a pixel.
  const Words capture = {"--black-white", "--trace=76,58", "--format=csv", "-o", "-"};
  const auto points = [&](Words words) {
    words.insert(words.end(), capture.begin(), capture.end());
    EXPECT_EQ(Run(words), 0) << err.str();
    std::istringstream lines(out.str());
    std::vector<std::pair<double, double>> read;
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line);)
      read.emplace_back(std::stod(line), std::stod(line.substr(line.find(',') + 1)));
    return read;
  };
  const auto told = points(OnPendulum({}));
  const auto found = points({"digitize", Pendulum(), "--propose-axes"});
  ASSERT_EQ(found.size(), told.size());
  for (std::size_t i = 0; i < told.size(); ++i) {
    EXPECT_NEAR(found[i].first, told[i].first, 12.0 / 540);
    EXPECT_NEAR(found[i].second, told[i].second, 2.0 / 390);
  }

  ASSERT_TRUE(SavePicture(At("blank.bmp"), kBmpFormat, 0, Raster::Filled(200, 100, kWhitePixel)));
  EXPECT_EQ(Run({"axes", At("blank.bmp")}), 0);
  EXPECT_TRUE(out.str().starts_with("none\n")) << out.str();
  EXPECT_EQ(Run({"digitize", At("blank.bmp"), "--propose-axes", "--point=2,2", "-o", "-"}), 1);
  IsTold("the axes are not sure: X: fewer than three labels");
  EXPECT_EQ(Run({"axes"}), 2);
  EXPECT_EQ(Run({"axes", Pendulum(), "--format=csv"}), 2);
  EXPECT_EQ(Run({"axes", Pendulum(), "--plot=left"}), 2);
  EXPECT_EQ(Run({"axes", Pendulum(), "--plot=2"}), 1);
  EXPECT_EQ(Run(OnPendulum({"--propose-axes", "--point=2,2", "-o", "-"})), 2);
  IsTold("--propose-axes finds the axes itself");

  // Of two plots the one that is asked for.
  const Raster one = LoadPicture(Pendulum())->Picture.Clone();
  Raster two = Raster::Filled(2 * one.Width(), one.Height(), kWhitePixel);
  for (int y = 0; y < one.Height(); ++y)
    for (int x = 0; x < two.Width(); ++x) two.Row(y)[x] = one.Row(y)[x % one.Width()];
  ASSERT_TRUE(SavePicture(At("two.bmp"), kBmpFormat, 0, two));
  const auto onRight = [&](const Words& words) {
    Words all = {"digitize", At("two.bmp"), "--propose-axes",
                 "-o",       "-",           "--point=" + std::to_string(one.Width() + 70) + ",40"};
    all.insert(all.end(), words.begin(), words.end());
    return Run(all);
  };
  EXPECT_EQ(onRight({"--plot=2"}), 0) << err.str();
  double x = 9, y = 9;
  std::istringstream(out.str()) >> x >> y;
  EXPECT_NEAR(x, 0, 0.01) << out.str();
  EXPECT_NEAR(y, 1, 0.01);
  EXPECT_EQ(onRight({}), 1);
  IsTold("the axes are not sure: there are several plots: --plot chooses one");
  EXPECT_EQ(onRight({"--plot=3"}), 1);
  for (const char* choice : {"--plot=1", "--x-scale=1", "--y-scale=1"})
    EXPECT_EQ(Run(OnPendulum({choice, "--point=2,2", "-o", "-"})), 2) << choice;

  // Of two scales, too.
  ASSERT_TRUE(SavePicture(At("scales.bmp"), kBmpFormat, 0, test::WithSecondScale(one)));
  const auto onScales = [&](const Words& words) {
    Words all = {"digitize", At("scales.bmp"), "--propose-axes", "-o", "-", "--point=70,430"};
    all.insert(all.end(), words.begin(), words.end());
    return Run(all);
  };
  ASSERT_EQ(Run({"axes", At("scales.bmp"), "--y-scale=2", "--format=json"}), 0) << err.str();
  const nlohmann::json chosen = nlohmann::json::parse(out.str());
  EXPECT_EQ(chosen["verdict"], "proposal");
  EXPECT_EQ(chosen["y"]["scales"].size(), 2u);
  EXPECT_EQ(chosen["y"]["scale"], 2);
  EXPECT_TRUE(chosen["x"]["scales"].empty());
  EXPECT_EQ(onScales({}), 1);
  IsTold("Y: there is a second scale");
  // What stands at the end of X remains; nothing else is in question then.
  EXPECT_EQ(onScales({"--y-scale=1"}), 1);
  IsTold("the axes are not sure: X: at the axis's end stands");
  EXPECT_EQ(err.str().find("; Y: "), std::string::npos) << err.str();
  EXPECT_EQ(onScales({"--y-scale=3"}), 1);
  IsTold("--y-scale: there is no such scale");
}

TEST_F(Batch, EveryOptionIsInTheHelpTheManPageAndTheCompletion) {
  const std::filesystem::path packaging = std::filesystem::path(GRAPHIZE_SOURCE_DIR) / "packaging";
  std::string man = test::BytesOf(packaging / "graphize.1.in");
  for (std::size_t at; (at = man.find("\\-")) != man.npos;) man.erase(at, 1);
  const std::string completion = test::BytesOf(packaging / "graphize.bash-completion");
  const auto has = [](const std::string& text, const std::string& option) {
    const auto goesOn = [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; };
    for (std::size_t at = text.find(option); at != text.npos; at = text.find(option, at + 1))
      if (!goesOn(text[at + option.size()])) return true;
    return false;
  };
  const std::pair<const char*, CommandSpec> commands[] = {
      {"digitize", DigitizeSpec()}, {"export", ExportSpec()}, {"axes", AxesSpec()}};
  for (const auto& [name, command] : commands) {
    ASSERT_EQ(Run({name, "--help"}), 0);
    for (const OptionSpec& option : command.Options)
      for (const std::string& text : {out.str(), man, completion})
        EXPECT_TRUE(has(text, std::string("--") + option.Long)) << option.Long;
  }
}

TEST_F(Batch, ATraceAgreesWithTheTrueDataInEveryFormat) {
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "-o", At("p.csv"), "--format=csv", "--errors"})), 0)
      << err.str();
  const auto truth = test::ReadPoints(kSamples / "pendulum.csv", ',', 1);
  std::vector<double> errors;
  std::istringstream csv(test::BytesOf(folder / "p.csv"));
  std::string line;
  std::getline(csv, line);
  EXPECT_EQ(line, "x,y,x_error,y_error\r");
  while (std::getline(csv, line)) {
    double x = 0, y = 0, xError = 0, yError = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf", &x, &y, &xError, &yError), 4) << line;
    errors.push_back(std::abs(y - test::TrueY(truth, x)) / yError);
    EXPECT_NEAR(xError, 12.0 / 540, 1e-6);
  }
  ASSERT_GT(errors.size(), 500u);
  EXPECT_LT(test::Median(errors), 1) << "pixels";

  EXPECT_EQ(Run(OnPendulum({"--trace", "76,58", "-o", At("p.csv")})), 1);
  EXPECT_TRUE(IsTold("exists already"));
  ASSERT_EQ(Run(OnPendulum({"--point", "76,58", "--point", "610,430", "-o", "-", "--title=A b",
                            "--decimals", "2,1", "--exponent", "off,on", "--delimiter", "semicolon",
                            "--decimal-point=comma", "--errors"})),
            0);
  EXPECT_TRUE(IsTold("3 decimals for Y would show them"));
  EXPECT_EQ(out.str(), "A b\r\n0,13;9,1E-01;0,02;5,1E-03\r\n12,00;-1,0E+00;0,02;5,1E-03\r\n");
  ASSERT_EQ(Run(OnPendulum({"--point", "340,235", "--swap", "--format", "json", "-o", "-"})), 0);
  EXPECT_NE(out.str().find("{\"x\": 0, \"y\": 6, \"x_error\": 0.0051282053, \"y_error\": 0.022"),
            std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("\"x\": \"value on the y axis\""), std::string::npos);
  ASSERT_EQ(Run(OnPendulum({"--point=9,9", "--title", "\1\"\\\xff\xc3\xa9\xed\xa0\x80", "--format",
                            "json", "-o-"})),
            0);
  const nlohmann::json json = nlohmann::json::parse(out.str());
  EXPECT_EQ(json["title"], "\1\"\\\uFFFD\u00e9\uFFFD\uFFFD\uFFFD") << "bytes that are no UTF-8";
  EXPECT_EQ(json["axes"]["x"]["origin"],
            nlohmann::json({{"column", 70}, {"row", 430}, {"value", 0}}));
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "--resample", "3:1,2", "--curve-length",
                            "--integrate=all", "--errors", "-q", "-o", "-"})),
            0);
  EXPECT_EQ(err.str(), "");
}

TEST_F(Batch, AProjectIsWrittenReplayedAndExported) {
  const std::string project = At("p.graphize");
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "-o", project})), 0) << err.str();
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "-o", At("p.dat")})), 0);
  ASSERT_EQ(Run({"replay", project, "-o", At("again.dat")}), 0) << err.str();
  EXPECT_EQ(test::BytesOf(folder / "again.dat"), test::BytesOf(folder / "p.dat"));
  ASSERT_EQ(Run({"replay", project, "-o", At("again.graphize")}), 0) << err.str();
  ASSERT_EQ(Run({"replay", At("again.graphize"), "-o", At("thrice.graphize")}), 0) << err.str();
  EXPECT_EQ(test::BytesOf(folder / "thrice.graphize"), test::BytesOf(folder / "again.graphize"));

  // The same as the window's form.
  Workspace ws;
  StartReplay(ws);
  PutProject(ws, test::QuietDesktop(),
             *ReadProject(ReadProjectFile(project), ProjectPicture::Decoded));
  ws.exportForm = {.Format = ExportFormat::Json,
                   .CommonX = true,
                   .XGrid = "0:0.5:10",
                   .Errors = true,
                   .Curves = {},
                   .Hint = {}};
  ShowExport(ws, test::QuietDesktop());
  ASSERT_EQ(Run({"export", project, "--x-grid=0:0.5:10", "--errors", "-o", At("p.json")}), 0)
      << err.str();
  EXPECT_EQ(test::BytesOf(folder / "p.json"), ExportText(ws, test::QuietDesktop()));
  ASSERT_EQ(Run({"export", project, "--format", "csv", "--curve", "curve 1", "-o", "-"}), 0);
  EXPECT_TRUE(out.str().starts_with("x,y\r\n"));
  for (const auto& [words, status, reason] :
       std::initializer_list<std::tuple<Words, int, const char*>>{
           {{project, "-o", At("p.dat")}, 2, "neither in .csv nor in .json"},
           {{project, "-o", At("p.json")}, 1, "exists already"},
           {{project, "--curve=x", "-fo", At("p.json")}, 1, "there is no curve"},
           {{project, "--x-grid=?", "-fo", At("p.json")}, 1, "X grid"},
           {{At("p.dat"), "-fo", At("p.json")}, 1, "no project"}}) {
    Words all = {"export"};
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(Run(all), status);
    EXPECT_TRUE(IsTold(reason));
  }
}

TEST_F(Batch, StepsOnThePictureAreDoneInTheirOrder) {
  // The blocker stops the trace only when it stands before it.
  ASSERT_EQ(Run(OnPendulum({"--trace=76,58", "-o", "-"})), 0);
  const std::size_t whole = out.str().size();
  ASSERT_EQ(Run(OnPendulum({"--erase=200,235:199", "--trace=76,58", "-o", "-"})), 1);
  ASSERT_EQ(Run(OnPendulum({"--trace=76,58", "--erase=200,235:199", "-o", "-"})), 0);
  EXPECT_EQ(out.str().size(), whole);
  ASSERT_EQ(Run(OnPendulum({"--trace=76,58", "--trace=200,20", "-o", "-"})), 0);
  EXPECT_TRUE(IsTold("--trace 200,20: no ink at 200,20 within the increments"));
  ASSERT_EQ(Run(OnPendulum({"--trace=295,307", "--trace=76,58", "-o", "-"})), 0);
  EXPECT_TRUE(IsTold("--trace 76,58: marks of an earlier trace cover"));
  ASSERT_EQ(Run(OnPendulum({"--point=100,100", "--sort=ascending", "--point=90,100", "-o", "-"})),
            0);
  EXPECT_LT(out.str().find("4.44444E-01"), out.str().find("6.66667E-01"));
}

TEST_F(Batch, SeveralCurvesAreOneTable) {
  const Words three = {"--curve=A, a", "--point=430,40", "--point=250,235",
                       "--curve=b",    "--point=70,430", "--sort=ascending"};
  const auto with = [&](const Words& more) {
    Words words = OnPendulum(three);
    words.insert(words.end(), more.begin(), more.end());
    return words;
  };
  const std::string table = "curve,x,y\r\n\"A, a\",4,0\r\n\"A, a\",8,1\r\nb,0,-1\r\n";
  ASSERT_EQ(Run(with({"-o", "-", "--format=csv"})), 0);
  EXPECT_EQ(out.str(), table);
  ASSERT_EQ(Run(with({"-o", At("three.graphize")})), 0);
  ASSERT_EQ(Run({"replay", At("three.graphize"), "-o", "-", "--format=csv"}), 0);
  EXPECT_EQ(out.str(), table);
  ASSERT_EQ(Run(with({"-o", At("named.csv")})), 0);
  EXPECT_EQ(test::BytesOf(folder / "named.csv"), table) << "its ending tells the format";
  ASSERT_EQ(Run({"export", At("three.graphize"), "--all-curves", "-o", At("exported.csv")}), 0);
  EXPECT_EQ(test::BytesOf(folder / "exported.csv"), table);
  ASSERT_EQ(Run({"export", At("three.graphize"), "-o", "-", "--format=csv"}), 0);
  EXPECT_TRUE(IsTold("of 2 curves this is \"A, a\" alone"));
  // A data file holds one: none is left out without a word.
  EXPECT_EQ(Run(with({"-o", At("one.dat")})), 2);
  EXPECT_TRUE(IsTold("a data file holds one curve"));
  EXPECT_EQ(Run({"replay", At("three.graphize"), "-o", At("one.dat")}), 1);
  EXPECT_TRUE(IsTold("three.graphize: there are 2 curves, and a data file holds one"));
  EXPECT_FALSE(std::filesystem::exists(folder / "one.dat"));
  ASSERT_EQ(
      Run(OnPendulum({"--point=70,40", "--curve=b", "--point=610,40", "-o", "-", "--format=csv"})),
      0);
  EXPECT_EQ(out.str(), "curve,x,y\r\ncurve 1,0,1\r\nb,12,1\r\n");
  for (const char* name : {"--curve=b", "--curve= "})
    EXPECT_EQ(Run(with({name, "-o", "-"})), 2) << name;
  EXPECT_TRUE(IsTold("--curve \" \": a curve needs a name; see"));
}

TEST_F(Batch, WordsAreReadByTheHabitsOfCommandLines) {
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "--title=", "-o", "-"})), 0) << err.str();
  const std::string whole = out.str();
  test::WriteBytes(folder / "[a,b].bmp", test::BytesOf(Pendulum()));
  const std::string odd = At("[a,b].bmp"), axes = "--origin=70,430:0,-1";
  const std::vector<Words> same = {
      OnPendulum({"--tra=76,58", "-o-"}),
      OnPendulum({"-qo", "-", "-j4", "--title", "", "--trace", "76,58"}),
      {"digitize", axes, "--trace=76,58", "--x-axis=610,430:12", "-fo", "-", "--y-a", "70,40:1",
       "--", odd}};
  for (const Words& words : same) {
    EXPECT_EQ(Run(words), 0) << err.str();
    EXPECT_EQ(out.str(), whole) << words.back();
  }
  // A value may look like an option, a list or a separator.
  for (const std::string title : {"--trace=1", "[1,2]", "--", "-o", "{}"}) {
    ASSERT_EQ(Run(OnPendulum({"--title", title, "--trace=76,58", "-o", "-"})), 0) << err.str();
    EXPECT_TRUE(out.str().starts_with(title + "\r\n")) << title;
  }
}

TEST_F(Batch, PicturesAreChangedFirstAndCanBeWritten) {
  ASSERT_EQ(Run(OnPendulum({"--trace", "76,58", "-o", "-"})), 0);
  const std::string table = out.str();
  // Alone without axes; it comes back upside down and light on dark, through the standard input.
  ASSERT_EQ(
      Run({"digitize", Pendulum(), "--rotate=180", "--negate", "--save-picture", At("n.tif")}), 0)
      << err.str();
  in.str(test::BytesOf(folder / "n.tif"));
  Words words = OnPendulum({"--trace", "76,58", "--neg", "--rotate", "-180", "-o", At("out/")});
  words[1] = "-";
  ASSERT_EQ(Run(words), 0) << err.str();
  EXPECT_EQ(test::BytesOf(folder / "out/stdin.dat"), table);

  const std::string page = (kSamples / "temperature_colour.jpg").string();
  const auto changed = [&](Words options) {
    options.insert(options.end(), {"-f", "--save-picture", At("c.bmp")});
    options.insert(options.begin(), {"digitize", page});
    EXPECT_EQ(Run(options), 0) << err.str();
    return std::move(LoadPicture(folder / "c.bmp")->Picture);
  };
  Raster expected = std::move(LoadPicture(page)->Picture);
  ReduceToBlackAndWhite(expected, 90.5);
  const auto same = [](const Raster& a, const Raster& b) {
    return std::equal(a.Pixels(), a.Pixels() + a.PixelCount(), b.Pixels(),
                      b.Pixels() + b.PixelCount());
  };
  EXPECT_TRUE(same(changed({"--threshold", "90.5"}), expected));
  EXPECT_FALSE(same(changed({"--black-white"}), expected));
  for (const auto& [word, kind] :
       {std::pair("auto", InkThreshold::Kind::Auto), {"local", InkThreshold::Kind::Local}}) {
    expected = std::move(LoadPicture(page)->Picture);
    Reduce(expected, {.Is = kind});
    EXPECT_TRUE(same(changed({"--threshold", word}), expected)) << word;
  }
  const Raster after = changed({"--blur", "--threshold", "90.5"});
  EXPECT_TRUE(IsBlackAndWhite(after));
  EXPECT_FALSE(same(changed({"--black-white", "--blur", "--threshold", "90.5"}), after));

  // The cleaned picture has no marks of the trace, and is there only when there are points.
  ASSERT_EQ(Run(OnPendulum({"--trace=76,58", "--erase=5,5:2", "-o", At("p.dat"), "--save-picture",
                            At("p.bmp")})),
            0);
  EXPECT_TRUE(IsBlackAndWhite(LoadPicture(folder / "p.bmp")->Picture));
  EXPECT_EQ(Run(OnPendulum({"--trace=300,300", "-o", At("q.dat"), "--save-picture", At("q.bmp")})),
            1);
  EXPECT_FALSE(std::filesystem::exists(folder / "q.bmp"));
}

TEST_F(Batch, SymbolsInksAndAllCurvesAreReadFromColours) {
  /// The points of each curve in the table.
  const auto read = [&](const char* picture, Words options) {
    options.insert(options.begin(), {"digitize", (kSamples / picture).string()});
    options.insert(options.end(), {"-o", "-", "--format", "json"});
    EXPECT_EQ(Run(options), 0) << err.str();
    const nlohmann::json table = nlohmann::json::parse(out.str());
    std::vector<std::vector<test::TruePoint>> curves;
    const auto add = [&](const nlohmann::json& points) {
      std::vector<test::TruePoint>& curve = curves.emplace_back();
      for (const auto& point : points) curve.push_back({point["x"], point["y"]});
    };
    if (table.contains("curves"))
      for (const auto& curve : table["curves"]) add(curve["points"]);
    else
      add(table["points"]);
    return curves;
  };
  const Words scatter = {"--origin=70,430:0,0", "--x-axis=610,430:90", "--y-axis=70,40:65"};
  const auto with = [](Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
  };
  const auto found = read("groups_scatter.tga", with(scatter, {"--symbols=548,163"})).at(0);
  std::ifstream truth(kSamples / "groups_scatter.csv");
  int filled = 0, missed = 0;
  for (std::string line; std::getline(truth, line);) {
    double x = 0, y = 0;
    if (std::sscanf(line.c_str(), "filled,%lf,%lf", &x, &y) != 2) continue;
    ++filled;
    missed += std::ranges::none_of(found, [&](const test::TruePoint& point) {
      return std::hypot((point.X - x) * 6, (point.Y - y) * 6) < 0.5;  // pixels
    });
  }
  EXPECT_EQ(found.size(), filled);
  EXPECT_EQ(missed, 0);

  const Words day = {"--origin=70,470:0,-6", "--x-axis=720,470:24", "--y-axis=70,40:24"};
  const auto curves = read("temperature_colour.jpg", with(day, {"--read-all"}));
  EXPECT_EQ(curves.size(), 3u);
  for (const auto& curve : curves) EXPECT_GT(curve.size(), 600u);
  // Of the red ink alone, all that is black is one curve.
  std::vector<test::TruePoint> inland;
  std::ifstream file(kSamples / "temperature_colour.csv");
  for (std::string line; std::getline(file, line);)
    if (double x = 0, y = 0; std::sscanf(line.c_str(), "%lf,%*f,%lf", &x, &y) == 2)
      inland.push_back({x, y});
  const auto black =
      read("temperature_colour.jpg", with(day, {"--ink=160,32,42", "--scan=80,160,710,460"})).at(0);
  EXPECT_GT(black.size(), 300u);
  for (const test::TruePoint& point : black)
    EXPECT_LT(std::abs(test::TrueY(inland, point.X) - point.Y), 0.3) << point.X << " " << point.Y;
}

TEST_F(Batch, PointsThatThePictureDoesNotBearOutAreTold) {
  const Words good = OnPendulum({"--trace", "76,58", "-o", "-", "--format", "json", "--strict"});
  ASSERT_EQ(Run(good), 0) << err.str();
  EXPECT_EQ(err.str(), "");
  const nlohmann::json clean = nlohmann::json::parse(out.str());
  for (const auto& point : clean["points"]) EXPECT_EQ(point["ink"], "ink") << point;
  // The rows that are stepped over reach the frame.
  Words bad = OnPendulum({"--trace", "76,58", "--y-increment", "300", "-o", "-", "--format=json"});
  ASSERT_EQ(Run(bad), 0);
  EXPECT_TRUE(IsTold(" not on ink"));
  int doubtful = 0;
  const nlohmann::json table = nlohmann::json::parse(out.str());
  for (const auto& point : table["points"]) doubtful += point["ink"] == "none" ? 1 : 0;
  EXPECT_GT(doubtful, 400);
  EXPECT_TRUE(IsTold(": " + std::to_string(doubtful) + " not on ink"));
  bad.emplace_back("--strict");
  EXPECT_EQ(Run(bad), 1);
  EXPECT_TRUE(IsTold("some are doubtful: "));
  EXPECT_NE(out.str(), "") << "they are written all the same";
  // Each curve is judged by its own points, and by what is written; those of a hand alone where
  // it is asked for.
  bad.pop_back();
  bad.insert(bad.end(), {"--curve", "by hand", "--point", "300,200"});
  ASSERT_EQ(Run(bad), 0);
  EXPECT_TRUE(IsTold("curve \"curve 1\": "));
  EXPECT_EQ(err.str().find("by hand"), std::string::npos) << err.str();
  bad.emplace_back("--strict");
  EXPECT_EQ(Run(bad), 1);
  EXPECT_TRUE(IsTold("curve \"by hand\": 1 point: 1 not on ink"));

  // The curve alone, from axis to axis.
  const auto rows = [&](Words options) {
    EXPECT_EQ(Run(OnPendulum(std::move(options))), 0) << err.str();
    return std::ranges::count(out.str(), '\n');
  };
  const auto all = rows({"--scan=30,20,630,470", "-o-"});
  EXPECT_LT(rows({"--scan=30,20,630,470", "--inside-axes", "-o-"}), all);
}

TEST_F(Batch, APictureThatIsTooLongIsOpenedInPart) {
  Raster strip = Raster::Filled(40000, 24, kWhitePixel);
  for (int x = 0; x < strip.Width(); ++x) strip.Row(12)[x] = strip.Row(13)[x] = kBlackPixel;
  std::int16_t format = 0, option = 0;
  GetFileFormat("strip.png", format, option);
  SavePicture(folder / "strip.png", format, option, strip);
  const auto size = [&](Words options) {
    options.insert(options.begin(), {"digitize", At("strip.png")});
    options.insert(options.end(), {"-f", "--save-picture", At("part.bmp")});
    if (Run(options) != 0) return std::pair(0, 0);
    const Raster part = std::move(LoadPicture(folder / "part.bmp")->Picture);
    EXPECT_TRUE(IsBlackPixel(part.Row(part.Height() / 2)[part.Width() / 2]));
    return std::pair(part.Width(), part.Height());
  };
  EXPECT_EQ(size({}), std::pair(0, 0));
  EXPECT_TRUE(IsTold("40000 x 24 pixels, and neither width nor height may be more than 32767"));
  EXPECT_TRUE(IsTold("--part"));
  EXPECT_EQ(size({"--part=half"}), std::pair(20000, 12));
  EXPECT_EQ(size({"--part", "quarter"}), std::pair(10000, 6));
  EXPECT_EQ(size({"--part=39000,2,1000,22"}), std::pair(1000, 22));
  const std::pair<const char*, const char*> faults[] = {
      {"third", "--part \"third\": half, quarter or LEFT,TOP,WIDTH,HEIGHT"},
      {"39001,0,1000,24", "does not lie on the picture, which is 40000 x 24 pixels"},
      {"0,0,0,24", "does not lie on the picture"},
      {"0,0,33000,24", "neither width nor height may be more than 32767"}};
  for (const auto& [part, told] : faults) {
    EXPECT_EQ(size({"--part", part}), std::pair(0, 0)) << part;
    EXPECT_TRUE(IsTold(told));
  }
}

TEST_F(Batch, ManyPicturesAreDoneSideBySideAndBadOnesAreCounted) {
  Words words = OnPendulum({"--trace", "76,58", "-o", At("out/"), "-j4"});
  constexpr int kPictures = 12;
  const std::string bytes = test::BytesOf(Pendulum());
  for (int i = 0; i < kPictures; ++i) {
    const std::string name = "p" + std::to_string(i) + ".bmp";
    if (i != 5) test::WriteBytes(folder / name, i == 7 ? bytes.substr(0, 5000) : bytes);
    words.insert(words.begin() + 1, At(name.c_str()));
  }
  EXPECT_EQ(Run(words), 1);
  EXPECT_TRUE(IsTold("graphize: 2 of 13 pictures could not be done\n"));
  EXPECT_TRUE(IsTold("p5.bmp: Cannot open"));
  EXPECT_TRUE(IsTold("p7.bmp: "));
  const std::string first = test::BytesOf(folder / "out/p0.dat");
  EXPECT_GT(first.size(), 10000u);
  for (int i = 1; i < kPictures; ++i) {
    const std::string name = "out/p" + std::to_string(i) + ".dat";
    if (i == 5 || i == 7)
      EXPECT_FALSE(std::filesystem::exists(folder / name));
    else
      EXPECT_EQ(test::BytesOf(folder / name), first);
  }
}

TEST_F(Batch, ARecipeThatHadPointsGivesThemOnEveryPicture) {
  SavePicture(folder / "blank.bmp", kBmpFormat, 0, Raster::Filled(640, 480, kWhitePixel));
  std::filesystem::copy_file(Pendulum(), folder / "good.bmp");
  const std::string start = "graphize recipe 1\npicture 1 \"good.bmp\" 640x480 " +
                            std::to_string(std::filesystem::file_size(Pendulum())) +
                            " bytes crc32 " + HexText(Crc32(test::BytesOf(Pendulum()))) +
                            "\nopen 1\nmode axisdef\naxis 0 70 430 0 -1\naxis 1 610 430 12 -1\n"
                            "axis 2 70 40 0 1\nmode graphize\n";
  // Steps, whether a blank picture and their own one succeed.
  const std::tuple<std::string, bool, bool> cases[] = {
      {"trace 76 58\nsave \"\"\npoints 525\n", false, true},
      {"trace 76 58\nsave \"\"\n", false, true},
      {"trace 300 300\nsave \"\"\npoints 0\n", true, true},
      {"trace 300 300\nsave \"\"\n", false, true},
      {"save \"\"\n", true, true},
      {"trace 300 300\npoints 0\n", false, false}};
  for (const auto& [steps, onBlank, onOwn] : cases) {
    test::WriteBytes(folder / "a.recipe", start + steps + "end\n");
    EXPECT_EQ(Run({"replay", At("a.recipe"), "-qo", "-"}), onOwn ? 0 : 1) << steps << err.str();
    std::filesystem::remove_all(folder / "out");
    const Words onOthers = {"replay", At("a.recipe"), At("blank.bmp"), At("good.bmp"),
                            "-q",     "-o",           At("out/")};
    EXPECT_EQ(Run(onOthers), onBlank ? 0 : 1) << steps << err.str();
    EXPECT_EQ(std::filesystem::exists(folder / "out/blank.dat"), onBlank) << steps;
    if (onBlank) continue;
    EXPECT_TRUE(IsTold("blank.bmp: no points were captured; "));
    EXPECT_EQ(std::filesystem::exists(folder / "out/good.dat"), steps[6] == '7') << steps;
  }
}

TEST_F(Batch, RecipesThatAreCutOffEditedOrNewerAreRefusedByTheirLine) {
  const std::string good =
      "graphize recipe 1\npicture 1 \"" + Pendulum() +
      "\" 640x480 38462 bytes crc32 00000000\nopen 1\nmode axisdef\naxis 0 70 430 0 -1\n"
      "axis 1 610 430 12 -1\naxis 2 70 40 0 1\nmode graphize\ntrace 76 58\nend\n";
  const auto with = [&](const std::string& what, const std::string& by) {
    std::string text = good;
    text.replace(text.find(what), what.size(), by);
    return text;
  };
  const std::pair<std::string, std::string> cases[] = {
      {"", "line 1: the file is empty"},
      {"P6\n", "line 1: this is no recipe"},
      {with("recipe 1", "recipe 2"), "line 1: the recipe is of version 2, from a newer program"},
      {good.substr(0, good.size() - 4), "line 9: the recipe was cut off"},
      {good.substr(0, good.find("76 58")), "line 9: the recipe was cut off"},
      {with("640x480", "640"), "line 2: this line does not describe picture 1"},
      {with("38462 bytes", "1.5e32 bytes"), "line 2: this line does not describe picture 1"},
      {with("open 1", "open 2"), "line 3: \"open\" needs the number of one of the pictures"},
      {with("mode axisdef", "mode sleep"), "line 4: there is no mode \"sleep\""},
      {with("axis 0 70 430", "axis 0 seventy 430"), "line 5: \"seventy\" is no number"},
      {with("axis 1 610 430 12", "axis 1 610 430 twelve"), "line 6: \"twelve\" is no number"},
      {with("axis 1 610", "axis 1 6100"), "line 6: the position 6100,430 lies outside"},
      {with("axis 1", "axis 2"), "line 6: this axis point is not the next one"},
      {with("axis 1 610", "axis 1 70"), "line 6: Origin and axis point can't be same"},
      {with("trace 76 58", "trace 76"), "line 9: something is missing at the end"},
      {with("trace 76 58", "trace 76 58 90"), "line 9: \"90\" is too much"},
      {with("trace 76 58", "trance 76 58"), "line 9: there is no step \"trance\""},
      {with("trace 76 58", "set speed 9"), "line 9: there is no option \"speed\""},
      {with("trace 76 58", "set snap \"up"), "line 9: a quotation mark is missing"},
      {with("trace 76 58", "sort ascending"), "line 9: there are not enough captured points"},
      {with("mode graphize\n", "mode blocktest\ncapture 9 9\n"), "line 9: points need the mode"},
      {with("end\n", "points many\nend\n"), "line 10: this line does not tell the number"},
      {with("end\n", "end\ntrace 1 1\n"), "line 11: there is more behind the line \"end\""},
  };
  for (const auto& [recipe, told] : cases) {
    test::WriteBytes(folder / "a.recipe", recipe);
    EXPECT_EQ(Run({"replay", At("a.recipe"), Pendulum(), "-o", At("out.dat")}), 1) << told;
    EXPECT_TRUE(IsTold("a.recipe: " + told)) << told;
    EXPECT_FALSE(std::filesystem::exists(folder / "out.dat"));
  }
  test::WriteBytes(folder / "a.recipe", with("open 1\n", "\t\t\n \t\nopen 1\n") + "\t\n");
  EXPECT_EQ(Run({"replay", At("a.recipe"), Pendulum(), "-o", "-"}), 0) << err.str();
  test::WriteBytes(folder / "a.recipe", good);
  EXPECT_EQ(Run({"replay", At("a.recipe"), "-o", "-"}), 1);
  EXPECT_TRUE(IsTold("is not the one that the recipe was made on (38462 bytes"));
  EXPECT_EQ(Run({"replay", At("a.recipe"), Pendulum(), "-o", "-"}), 0) << err.str();
  const std::string replayed = out.str();
  test::WriteBytes(folder / "b.recipe", with("640x480", "600x480"));
  EXPECT_EQ(Run({"replay", At("b.recipe"), Pendulum(), "-o", "-"}), 0);
  EXPECT_TRUE(IsTold("the picture has 640x480 pixels instead of 600x480"));
  test::WriteBytes(folder / "b.recipe",
                   with("end\n", "save \"a\\nb\"\npoint 90 90\nsave 2\npoint 1 1\nend\n"));
  EXPECT_EQ(Run({"replay", At("b.recipe"), Pendulum(), "-o", "-"}), 0);
  EXPECT_EQ(out.str().size(), replayed.size() + 3 + 25) << "the last saved file, with its title";
  EXPECT_TRUE(IsTold("of 2 saved data files this is the last"));
  ASSERT_EQ(Run(OnPendulum({"--trace=76,58", "-o", "-"})), 0);
  EXPECT_EQ(out.str(), replayed);
}

}  // namespace
}  // namespace graphize
