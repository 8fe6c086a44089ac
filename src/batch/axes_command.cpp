#include "batch/axes_command.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <vector>

#include "base/joined.h"
#include "base/json.h"
#include "base/number_pattern.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "batch/console.h"
#include "batch/job.h"
#include "batch/option_values.h"
#include "batch/standard_input.h"
#include "codecs/picbuf.h"

namespace graphize {

namespace {

/// Places to a thousandth of a pixel.
std::string Pixels(double value) {
  return RoundedText(value, 1000);
}

std::string AxisJson(const ProposedAxis& axis) {
  std::vector<std::string> scales;
  for (const std::string& scale : axis.Scales) scales.push_back(JsonString(scale));
  std::string text = "{\"verdict\": " + JsonString(NameOf(axis.Verdict)) +
                     ", \"log\": " + (axis.Log ? "true" : "false") +
                     ", \"reason\": " + JsonString(axis.Reason) + ",\n    \"scales\": [" +
                     Joined(scales, ", ") + "]";
  if (!axis.Scales.empty()) text += ", \"scale\": " + std::to_string(axis.Scale + 1);
  text += ",\n    \"labels\": [";
  const char* separator = "\n";
  for (const ProposedLabel& label : axis.Labels) {
    text += separator;
    text += "      {\"text\": " + JsonString(label.Text) +
            ", \"value\": " + ShortestText(label.Value) + ", \"column\": " + Pixels(label.Column) +
            ", \"row\": " + Pixels(label.Row) + ", \"residual\": " + Pixels(label.Residual) + "}";
    separator = ",\n";
  }
  return text + (axis.Labels.empty() ? "]}" : "\n    ]}");
}

std::string AxisLines(const char* name, const ProposedAxis& axis) {
  std::string text = std::string(name) + ": " + NameOf(axis.Verdict) +
                     (axis.Log ? ", logarithmic" : "") + ": " + axis.Reason + "\n";
  for (const ProposedLabel& label : axis.Labels)
    text += "  " + label.Text + " = " + ShortestText(label.Value) + " at " + Pixels(label.Column) +
            "," + Pixels(label.Row) + ", " + Pixels(label.Residual) + " pixels off\n";
  for (std::size_t i = 0; i < axis.Scales.size(); ++i)
    text += "  scale " + std::to_string(i + 1) + ": " + axis.Scales[i] +
            (static_cast<int>(i) == axis.Scale ? ", this one\n" : "\n");
  return text;
}

/// What is chosen by its number from 1, counted from 0.
std::optional<int> ChosenOf(const CommandLine& line, const char* name, const char* expected) {
  const GivenOption* option = line.Find(name);
  if (option == nullptr) return std::nullopt;
  const auto number = IntegerText(option->Value, 1, 1000);
  if (!number) Refuse(*option, expected);
  return *number - 1;
}

bool IsSettled(const ProposedAxis& axis) {
  return axis.Verdict == AxesVerdict::Sure || axis.IsChosen;
}

/// Of one thing alone, the first can be chosen, too.
void CheckChoice(const std::optional<int>& chosen, std::size_t count, const char* fault) {
  if (chosen && *chosen > 0 && static_cast<std::size_t>(*chosen) >= count)
    throw RunTimeError(fault);
}

}  // namespace

std::string ProposalJson(const AxesProposal& proposal) {
  std::string text = "{\n  \"verdict\": " + JsonString(NameOf(proposal.Verdict)) +
                     ",\n  \"x\": " + AxisJson(proposal.X) + ",\n  \"y\": " + AxisJson(proposal.Y) +
                     ",\n  \"rows\": [";
  const char* separator = "\n";
  for (const ProposedRow& row : proposal.Rows) {
    text += separator;
    text += "    {\"column\": " + Pixels(row.Column) + ", \"row\": " + Pixels(row.Row) +
            ", \"x\": " + ShortestText(row.X) + ", \"y\": " + ShortestText(row.Y) + "}";
    separator = ",\n";
  }
  text += proposal.Rows.empty() ? "]" : "\n  ]";
  separator = ",\n  \"plots\": [\n";
  for (const PlotArea& plot : proposal.Plots) {
    text += separator;
    text += "    {\"left\": " + std::to_string(plot.Left) +
            ", \"top\": " + std::to_string(plot.Top) +
            ", \"right\": " + std::to_string(plot.Right) +
            ", \"bottom\": " + std::to_string(plot.Bottom) + "}";
    separator = ",\n";
  }
  return text + (proposal.Plots.empty() ? "\n}\n" : "\n  ]\n}\n");
}

std::string ProposalText(const AxesProposal& proposal) {
  std::string text = std::string(NameOf(proposal.Verdict)) + "\n" + AxisLines("X", proposal.X) +
                     AxisLines("Y", proposal.Y);
  static constexpr const char* kNames[] = {"origin", "X axis", "Y axis"};
  for (std::size_t i = 0; i < proposal.Rows.size(); ++i) {
    const ProposedRow& row = proposal.Rows[i];
    text += std::string(kNames[i]) + ": " + Pixels(row.Column) + "," + Pixels(row.Row) + " is " +
            ShortestText(row.X) + "," + ShortestText(row.Y) + "\n";
  }
  int number = 0;
  for (const PlotArea& plot : proposal.Plots)
    text += "plot " + std::to_string(++number) + ": from " + std::to_string(plot.Left) + "," +
            std::to_string(plot.Top) + " to " + std::to_string(plot.Right) + "," +
            std::to_string(plot.Bottom) + "\n";
  return text;
}

bool IsSettled(const AxesProposal& proposal) {
  return IsSettled(proposal.X) && IsSettled(proposal.Y);
}

std::string WhyNotSettled(const AxesProposal& proposal) {
  if (proposal.Plots.size() > 1 && !proposal.Choice.Plot)
    return "there are several plots: --plot chooses one, and \"graphize axes\" tells where they "
           "are";
  std::vector<std::string> reasons;
  if (!IsSettled(proposal.X)) reasons.push_back("X: " + proposal.X.Reason);
  if (!IsSettled(proposal.Y)) reasons.push_back("Y: " + proposal.Y.Reason);
  return Joined(reasons, "; ");
}

AxesChoice AxesChoiceOf(const CommandLine& line) {
  return {.Plot = ChosenOf(line, "plot", "the number of a plot is expected"),
          .XScale = ChosenOf(line, "x-scale", "the number of a scale is expected"),
          .YScale = ChosenOf(line, "y-scale", "the number of a scale is expected")};
}

AxesProposal ProposeChosenAxes(const Raster& picture, const AxesChoice& choice) {
  PictureOperation operation;
  AxesProposal proposal = ProposeAxes(picture, operation, ReadTextLine, choice);
  CheckChoice(choice.Plot, proposal.Plots.size(), "--plot: the picture has no such plot");
  CheckChoice(choice.XScale, proposal.X.Scales.size(), "--x-scale: there is no such scale");
  CheckChoice(choice.YScale, proposal.Y.Scales.size(), "--y-scale: there is no such scale");
  return proposal;
}

bool PrintAxes(const CommandLine& line, const BatchStreams& streams) {
  if (line.Operands.size() != 1) throw UsageError("one picture is expected");
  const GivenOption* format = line.Find("format");
  if (format != nullptr && format->Value != "json" && format->Value != "text")
    throw UsageError("--format \"" + format->Value + "\": text or json is expected");
  const AxesChoice choice = AxesChoiceOf(line);
  std::vector<Job> jobs(1);
  jobs.front().Pictures = {line.Operands.front()};
  const StandardInput input(jobs, streams.In);
  std::optional<LoadedPicture> picture;
  try {
    picture = LoadPicture(jobs.front().Pictures.front());
  } catch (const RunTimeError& error) {
    throw RunTimeError(OneLine(error.what()));
  }
  if (const std::string unfenced = DecodedWithinProgram(); !unfenced.empty())
    streams.Err << "graphize: " << unfenced << "\n";
  if (!picture->Warning.empty()) streams.Err << OneLine(picture->Warning) << "\n";
  const AxesProposal proposal = ProposeChosenAxes(picture->Picture, choice);
  streams.Out << (format != nullptr && format->Value == "json" ? ProposalJson(proposal)
                                                               : ProposalText(proposal))
              << std::flush;
  return !streams.Out.fail();
}

}  // namespace graphize
