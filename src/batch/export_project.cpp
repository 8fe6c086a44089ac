#include "batch/export_project.h"

#include <filesystem>
#include <ostream>

#include "base/run_time_error.h"
#include "base/whole_file.h"
#include "batch/console.h"
#include "batch/option_values.h"
#include "commands/export_points.h"
#include "commands/replay.h"
#include "session/project_file.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

ExportFormat FormatOf(const CommandLine& line) {
  const GivenOption* given = line.Find("format");
  if (given != nullptr && given->Value != "csv" && given->Value != "json")
    Refuse(*given, "csv or json is expected");
  const auto format = TableFormatOf(line);
  if (format == TableFormat::Csv) return ExportFormat::Csv;
  if (format == TableFormat::Json) return ExportFormat::Json;
  throw UsageError("--format is missing: the output's name ends neither in .csv nor in .json");
}

void ReadInto(Workspace& ws, const Desktop& desktop, const std::string& file) {
  try {
    auto project = ReadProject(ReadProjectFile(file), ProjectPicture::Blank);
    PutProject(ws, desktop, std::move(*project));
  } catch (const RunTimeError& error) {
    throw RunTimeError(file + ": " + OneLine(error.what()));
  }
}

void ChooseCurve(Workspace& ws, const std::string& name) {
  const int curve = FindCurve(ws.curves, name);
  if (curve < 0) throw RunTimeError("there is no curve \"" + name + "\"");
  SelectCurve(ws.curves, ws.store, curve);
}

std::string TableOf(Workspace& ws) {
  Console console;
  ShowExport(ws, console.Callbacks());
  std::optional<std::string> text;
  if (ws.form == Form::Export) text = ExportText(ws, console.Callbacks());
  if (!text) throw RunTimeError(console.Problems.empty() ? "" : console.Problems.front());
  return *text;
}

}  // namespace

bool ExportProject(const CommandLine& line, const BatchStreams& streams) {
  if (line.Operands.size() != 1) throw UsageError("one project is expected");
  const std::string& file = line.Operands.front();
  const GivenOption* given = line.Find("output");
  if (given == nullptr || given->Value.empty()) throw UsageError("--output is missing");
  const std::string& output = given->Value;
  const GivenOption* grid = line.Find("x-grid");

  Workspace ws;
  StartReplay(ws);
  ws.exportForm.Format = FormatOf(line);
  ws.exportForm.AllCurves = line.Has("all-curves");
  ws.exportForm.CommonX = line.Has("common-x") || grid != nullptr;
  ws.exportForm.XGrid = grid != nullptr ? grid->Value : "";
  const GivenOption* errors = line.Find("errors");
  ws.exportForm.Errors = errors != nullptr;
  ws.exportForm.PixelErrors = errors != nullptr && !errors->Value.empty();
  ReadInto(ws, Console().Callbacks(), file);
  if (const GivenOption* curve = line.Find("curve"))
    ChooseCurve(ws, curve->Value);
  else if (ws.curves.Curves.size() > 1 && !ws.exportForm.AllCurves)
    streams.Err << "graphize: " << file << ": of " << ws.curves.Curves.size()
                << " curves this is \"" << ActiveCurve(ws.curves).Name
                << "\" alone; --all-curves writes all\n";
  const std::string table = TableOf(ws);
  if (output == "-") {
    streams.Out << table << std::flush;
    return !streams.Out.fail();
  }
  std::error_code ignored;
  if (fs::equivalent(file, output, ignored)) throw UsageError("--output would replace the project");
  if (!line.Has("force") && fs::exists(output, ignored))
    throw RunTimeError("\"" + output + "\" exists already; see --force");
  if (const std::error_code failure = ReplaceWholeFile(output, table))
    throw RunTimeError("\"" + output + "\" cannot be written: " + failure.message());
  return true;
}

}  // namespace graphize
