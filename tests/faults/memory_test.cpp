// Whatever allocation fails in a command, it is done or as if it had not been asked for, and then
// told; Undo, the journal and the next command know no difference.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "commands/export_points.h"
#include "commands/picture_commands.h"
#include "commands/recipe_file.h"
#include "commands/save_points.h"
#include "faults/faults.h"
#include "faults/worked_document.h"
#include "session/project_commands.h"
#include "support/random_user.h"
#include "workspace/step_text.h"

namespace graphize::test {
namespace {

/// A picture, and a project with it; and what the commands write.
std::filesystem::path Files() {
  static const TemporaryFolder folder;
  if (std::filesystem::exists(folder / "work.graphize")) return folder.Path();
  SavePicture(folder / "plot.bmp", kBmpFormat, 0, PictureForRandomUser());
  WorkedDocument doc;
  doc.Begin();
  doc.chosen = folder / "work.graphize";
  SaveProject(doc.ws, doc.desktop);
  return folder.Path();
}

constexpr const char* kUndo = "undo";

struct MemoryCase {
  std::string Name;
  std::function<void(WorkedDocument&)> Command;
  std::vector<std::string> Before = {};
};

void PrintTo(const MemoryCase& each, std::ostream* out) {
  *out << each.Name;
}

MemoryCase StepCase(const std::string& line, std::vector<std::string> before = {}) {
  return {line,
          [line](WorkedDocument& doc) { Do(doc.ws, doc.desktop, std::get<Step>(StepOf(line))); },
          std::move(before)};
}

std::vector<MemoryCase> MemoryCases() {
  std::vector<MemoryCase> cases = {
      StepCase("trace 21 70"),
      StepCase("read 43 55 each"),
      StepCase("symbols 43 21 mass 1"),
      StepCase("scan 30 20 170 120"),
      StepCase("grid x all 100 60", {"mode gridbuster"}),
      StepCase("draw 4 40,40 60,70 80,40", {"mode drawerase"}),
      StepCase("undo-edit", {"mode drawerase"}),
      StepCase("ink 0 0 0 1"),
      StepCase("black-white 128"),
      StepCase("new-curve second"),
      StepCase("select-curve \"curve 1\"", {"new-curve second", "point 60 60"}),
      StepCase("delete-curve", {"new-curve second", "point 60 60"}),
      StepCase("sort ascending"),
      StepCase("resample 9 auto auto", {"sort ascending"}),
      StepCase("clear-data"),
      StepCase("redefine 1"),
      StepCase("reset"),
      StepCase("undo-image-tool", {"image-tool negate 0"}),
  };
  for (const char* tool : {"blur 0", "edge-detect 7", "negate 0", "sharpen 3", "soften 9",
                           "resize 120", "stretch 115", "rotate -3"})
    cases.push_back(StepCase(std::string("image-tool ") + tool));
  const auto add = [&](const char* name, std::function<void(WorkedDocument&)> command,
                       std::vector<std::string> before = {}) {
    cases.push_back({name, std::move(command), std::move(before)});
  };
  add("open", [](WorkedDocument& doc) { OpenPicture(doc.ws, doc.desktop, Files() / "plot.bmp"); },
      {"mode none"});
  add("undo", [](WorkedDocument& doc) { doc.history.Undo(doc.ws); },
      {"trace 21 70", "new-curve second"});
  add("undo marks", [](WorkedDocument& doc) { doc.history.Undo(doc.ws); },
      {"trace 21 70", "image-tool resize 120"});
  add("redo", [](WorkedDocument& doc) { doc.history.Redo(doc.ws); },
      {"draw 4 40,40 60,70", "trace 21 70", kUndo});
  add("save points", [](WorkedDocument& doc) { SavePoints(doc.ws, doc.desktop); });
  add("save recipe", [](WorkedDocument& doc) { SaveRecipe(doc.ws, doc.desktop); });
  add("save picture", [](WorkedDocument& doc) {
    doc.chosen = Files() / "saved.png";
    SaveImageAs(doc.ws, doc.desktop);
  });
  add("export", [](WorkedDocument& doc) {
    ShowExport(doc.ws, doc.desktop);
    ExportPoints(doc.ws, doc.desktop);
  });
  add("save project", [](WorkedDocument& doc) { SaveProject(doc.ws, doc.desktop); });
  add("open project",
      [](WorkedDocument& doc) { OpenProject(doc.ws, doc.desktop, Files() / "work.graphize"); });
  return cases;
}

/// Without the note that a file holds the points: that stays once the file is on the disk, whatever
/// becomes of the rest of the command.
std::string Unsaved(std::string text) {
  constexpr std::string_view kSaved = R"("saved": true)";
  for (std::size_t at; (at = text.find(kSaved)) != text.npos;)
    text.replace(at, kSaved.size(), R"("saved": false)");
  return text;
}

class Memory : public ::testing::TestWithParam<MemoryCase> {
 protected:
  /// As it is before the command.
  void Begin() {
    doc = std::make_unique<WorkedDocument>();
    doc->Begin();
    for (const std::string& step : GetParam().Before) {
      if (step == kUndo)
        doc->Do([this] { doc->history.Undo(doc->ws); });
      else
        doc->DoSteps({step});
    }
    doc->chosen = Files() / "saved";
    doc->told.clear();
    before = doc->Text();
  }
  void Do() {
    doc->Do([&] { GetParam().Command(*doc); });
  }

  std::unique_ptr<WorkedDocument> doc;
  std::string before;
};

TEST_P(Memory, NothingIsLostWithIt) {
  Begin();
  std::int64_t allocations = Allocations();
  Do();
  allocations = Allocations() - allocations;
  const std::string done = doc->Text(), told = doc->told;
  // GRAPHIZE_FAULTS: so many of the command's allocations, or all.
  const char* asked = std::getenv("GRAPHIZE_FAULTS");
  const std::int64_t runs =
      std::min<std::int64_t>(asked != nullptr ? std::atoll(asked) : 20, allocations);
  int refused = 0;
  for (std::int64_t i = 0; i < runs; ++i) {
    const auto number = static_cast<int>(1 + i * allocations / runs);
    SCOPED_TRACE("allocation " + std::to_string(number) + " of " + std::to_string(allocations));
    Begin();
    const std::int64_t bytes = AllocatedBytes();
    bool happened = false;
    {
      const Fault fault(Call::Allocate, number);
      Do();
      happened = fault.Happened();
    }
    const std::string text = doc->Text();
    if (happened && (text == before || (text != done && Unsaved(text) == before))) {
      ++refused;
      EXPECT_TRUE(done == before || !doc->told.empty());
      // What a buffer may have grown by, and a quarter of a picture.
      EXPECT_LT(AllocatedBytes() - bytes, 30'000) << "memory that was not given back";
    } else {
      ASSERT_EQ(text, done);
    }
    EXPECT_FALSE(doc->ws.commandRuns || doc->ws.window.Hourglass || doc->ws.status.ProgressVisible);
    // The next command, whatever it is, makes up for what could not be kept.
    doc->DoSteps({"block 70 70 5"});
    const std::string blocked = doc->Text();
    EXPECT_EQ(doc->JournalText(), blocked.substr(0, blocked.rfind("\nshown "))) << "the journal";
    EXPECT_TRUE(doc->history.Undo(doc->ws));
    const std::string undone = doc->Text();
    EXPECT_TRUE(Unsaved(undone) == Unsaved(text) || Unsaved(undone) == Unsaved(before));
    EXPECT_TRUE(doc->history.Redo(doc->ws));
    EXPECT_EQ(doc->Text(), blocked);
    if (HasFailure()) break;
  }
  EXPECT_GT(refused, 0);
}

INSTANTIATE_TEST_SUITE_P(Commands, Memory, ::testing::ValuesIn(MemoryCases()),
                         [](const auto& each) {
                           std::string name;
                           for (const char c : each.param.Name)
                             if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
                           return name;
                         });

}  // namespace
}  // namespace graphize::test
