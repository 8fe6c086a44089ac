#include "commands/read_all_preview.h"

#include <algorithm>
#include <utility>

#include "base/translation.h"
#include "commands/do.h"
#include "commands/find_commands.h"
#include "commands/forms.h"
#include "commands/preview_commands.h"
#include "commands/reading_commands.h"

namespace graphize {

bool CanReadAll(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void ShowReadAll(Workspace& ws, const Desktop& desktop) {
  if (const auto refused = ReadAllRefused(ws)) return Tell(desktop, refused->Reason);
  PlotReading found = ReadAllAt(ws, desktop);
  if (found.IsStopped) {
    ws.status.Status = Tr("Stopped: nothing was read");
    return;
  }
  if (found.Curves.empty())
    return Tell(desktop, Tr("No curves were found"), MessageIcon::Exclamation);
  ws.readAll = {.Hint = Tr("The ticked curves are drawn over the picture.") + NoteOnAxes(ws),
                .From = ReadFromNow(ws)};
  const std::vector<NewName> names = NamesFor(ws, desktop, found.Curves);
  for (std::size_t i = 0; i < found.Curves.size(); ++i) {
    std::string sure = HowSure(found.Curves[i].Reading);
    if (!names[i].Doubt.empty()) sure += "; " + names[i].Doubt;
    ws.readAll.Items.push_back(
        {.Curve = std::move(found.Curves[i]), .Name = names[i].Text, .Sure = std::move(sure)});
  }
  ws.form = Form::ReadAll;
}

void TickCurve(ReadAllForm& form, int row, bool taken) {
  if (row < static_cast<int>(form.Items.size()))
    form.Items[static_cast<std::size_t>(row)].IsTaken = taken;
}

void NameCurve(ReadAllForm& form, int row, const std::string& name) {
  if (row < static_cast<int>(form.Items.size()))
    form.Items[static_cast<std::size_t>(row)].Name = name;
}

bool CanTakeAll(const ReadAllForm& form) {
  return std::ranges::any_of(form.Items, &ReadAllForm::Item::IsTaken);
}

void TakeAll(Workspace& ws, const Desktop& desktop) {
  ReadAllStep step;
  for (std::size_t i = 0; i < ws.readAll.Items.size(); ++i)
    if (const ReadAllForm::Item& item = ws.readAll.Items[i]; item.IsTaken)
      step.Taken.push_back({static_cast<int>(i) + 1, item.Name});
  if (step.Taken.empty()) return;
  const Outcome outcome = Do(ws, desktop, std::move(step));
  if (outcome.IsDone()) return CloseForm(ws, desktop);
  ws.readAll.Hint = outcome.Reason;
}

}  // namespace graphize
