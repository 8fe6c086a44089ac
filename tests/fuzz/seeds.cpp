// Sound inputs: what the program itself writes, and pictures as the tests of decoders make them.

#include <filesystem>

#include "base/deferred_text.h"
#include "base/translation.h"
#include "batch/other_pictures_list.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/recipe_file.h"
#include "fuzz/targets.h"
#include "session/history.h"
#include "session/journal_frame.h"
#include "session/journal_text.h"
#include "session/kept_text.h"
#include "session/project_file.h"
#include "settings/settings_file.h"
#include "settings/settings_store.h"
#include "settings/window_placement.h"
#include "support/picture_bytes.h"
#include "support/plot_drawing.h"
#include "support/quiet_desktop.h"
#include "support/random_user.h"
#include "support/temporary_folder.h"
#include "workspace/step_text.h"

namespace graphize::test {

namespace {

std::vector<std::string> PicturesOf(const std::string& type) {
  PlotDrawing drawing(40, 30, 4, 4, 36, 26);
  drawing.Frame({});
  Raster pictures[] = {drawing.Picture(), drawing.GreyPicture(), Raster(20, 12)};
  const Raster& plot = pictures[0];
  Raster& gamut = pictures[2];
  for (std::size_t i = 0; i < gamut.PixelCount(); ++i)
    gamut.Pixels()[i] = static_cast<std::uint32_t>(i) * 0x9e3779u & 0xffffff;
  std::int16_t format = 0, option = 0;
  GetFileFormat("a." + type, format, option);
  std::vector<std::string> seeds;
  if (format != kNoFormat)
    for (const Raster& picture : pictures)
      seeds.push_back(EncodePicture(format, option, picture).value());
  if (type == "tif") {
    seeds.push_back(MakeTif(2, 2, 2, 6, std::string(12, '\x40')));
    seeds.push_back(MakeTif(2, 2, 5, 1, std::string(16, '\x40')));
    seeds.push_back(MakeTif(4, 2, 3, 1, std::string(8, '\x03'), std::string(1536, '\x55')));
    seeds.push_back(BigTif());
  } else if (type == "tga") {
    for (const int bits : {24, 32})
      for (const int descriptor : {0, 0x30}) seeds.push_back(MakeTga(gamut, bits, descriptor, 128));
  } else if (type == "bmp" || type == "dib") {
    for (const BitmapKind& kind :
         {BitmapKind{12, 24}, BitmapKind{40, 1}, BitmapKind{40, 4}, BitmapKind{40, 8},
          BitmapKind{40, 16, 3}, BitmapKind{108, 32, 3}, BitmapKind{40, 32, 0, true}})
      seeds.push_back(type == "bmp" ? MakeBmp(kind, plot) : MakeDib(kind, plot));
  } else if (type == "gif") {
    seeds.push_back(GifOnScreen());
  } else if (type == "jpg") {
    seeds.push_back(CmykJpg());
  } else if (type == "png") {
    for (const std::string& png : {PngWithOpacity(), PngWithClearColour(), PngOf16Bits()})
      seeds.push_back(png);
    seeds.push_back(WithChunk(PngOf16Bits(), "eXIf", Exif(6)));
  } else if (type == "webp") {
    seeds = {WebP(), AnimatedWebP()};
  }
  return seeds;
}

/// What a random user's sessions come to: a project, a journal, a recipe.
struct Sessions {
  std::vector<std::string> Projects, Parts, Journals, Recipes, Steps;

  Sessions() {
    const TemporaryFolder folder;
    const auto picture = folder / "plot.bmp";
    SavePicture(picture, kBmpFormat, 0, PictureForRandomUser());
    for (unsigned seed = 1; seed <= 6; ++seed) {
      History history;
      std::string journal;
      ToldCurves told;
      int events = 0;
      RandomUser user(seed, picture, folder / "saved.dat", [&](Workspace& ws) {
        if (events == 0) history.Begin(ws);
        history.Commit(ws);
        if (!journal.empty()) journal += kPartEnd;
        const JournalEntry entry{.Number = ++events, .Time = 1'700'000'000, .Whole = events == 1};
        journal += EventText(ws, history.TakeDelta(), entry, told);
      });
      for (int i = 0; i < 12; ++i) user.DoSomething();
      Journals.push_back(journal);
      Projects.push_back(ProjectBytes(user.ws, QuietDesktop()).value());
      std::string parts;
      for (const KeptPart& part : PartsOf(Keep(user.ws)))
        parts += (parts.empty() ? "" : std::string(1, kPartEnd)) + part.Name + "\n" + part.Text;
      Parts.push_back(parts);
      Recipes.push_back(RecipeText(user.ws, {}));
      for (const Step& step : user.ws.recipe.Steps) Steps.push_back(TextOf(step));
    }
  }
};

const Sessions& Done() {
  static const Sessions sessions;
  return sessions;
}

std::string WrittenSettings() {
  SettingsFile file;
  WriteSettings(file, {}, true, true, DefaultPlacement(1366, 768));
  std::string text = "\xef\xbb\xbf; by hand\r\n";
  for (const std::string& line : file.Lines) text += line;
  return text;
}

}  // namespace

std::vector<std::string> SeedsOf(const FuzzTarget& target) {
  const std::string& name = target.Name;
  if (name.starts_with("picture-")) return PicturesOf(name.substr(name.find('-') + 1));
  if (name == "settings") return {WrittenSettings(), "[a]\nb = c # d\n"};
  if (name == "recipe") return Done().Recipes;
  if (name == "step") return Done().Steps;
  if (name == "parts") return Done().Parts;
  if (name == "project") return Done().Projects;
  if (name == "journal") return Done().Journals;
  if (name == "number")
    return {"1,5",
            "-2.5e-07 m",
            "1,000.5",
            "\xe2\x88\x92"
            "3",
            " .5e+400",
            "1e-46"};
  if (name == "pattern") {
    std::vector<std::string> seeds;
    for (const char* pattern :
         {"#,##0.00", "0.000E+00", "General Number", "$0.0;(0.0);\"zero\"", "0%", "\\x@@.##"})
      seeds.push_back(std::string("\x12\x34\x56\x41") + pattern);
    return seeds;
  }
  if (name == "command-line")
    return {std::string("\x01") +
                "--origin=10,20:1,2\n--x-axis=90,20:5\n--y-axis=10,4:8\n--trace\n70,430\n--x-log\n"
                "-o\nout.csv\nplot.png",
            std::string("\x01") +
                "--propose-axes\n--threshold=local\n--read=10,20\n--read-all\n--ink=1,2,3,4\n"
                "--errors=pixel\n-o\nout.csv\n-",
            std::string("\x02") + "--align\n--report\na.csv\nrecipe.txt\n--\na.png",
            std::string("\x04") + "a.png\n--format\njson"};
  if (name == "decoder-text") {
    const std::string rows = Fill(DeferText("%1 rows", -1), {"3"});
    return {Fill(DeferText("%2 of %1, 5%", -1), {rows, "%2"}) + " (plain %1)"};
  }
  if (name == "list")
    return {OtherPicturesText({{.File = "/pages/a.tif",
                                .Is = OtherPicture::State::Doubtful,
                                .Points = 12,
                                .Worst = 0.25,
                                .Reason = "several curves",
                                .Thumbnail = {},
                                .Checksum = 77},
                               {.File = "/else/b.tif"}},
                              "/pages")};
  std::string curve = std::string("\x30\x20\x18\x40", 4);
  for (int i = 0; i < 24 * 48; ++i) curve += i / 24 == 24 ? '\0' : '\x77';
  return {curve};
}

}  // namespace graphize::test
