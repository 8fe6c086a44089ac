#include "session/kept_document.h"

#include "base/numbers.h"
#include "commands/capture_commands.h"
#include "commands/shown_picture.h"
#include "commands/toolbar.h"
#include "data/list_edit.h"
#include "workspace/recipe_options.h"

namespace graphize {

namespace {

void BringBackOptions(Workspace& ws, const KeptDocument::OptionValues& values) {
  const auto take = [&] {
    for (std::size_t i = 0; i < values.size(); ++i) RecipeOptions()[i].Take(ws, values[i]);
  };
  take();
  SetTraceType(ws.tracer, ws.settings.Trace);
  take();  // with the increments that the tracer's type has reset
  BuildFormats(ws.settings, ws.formats);
}

void BringBackCommands(Workspace& ws, bool gridBuster) {
  EnableDataCommands(ws.commands, ws.store.CaptureCount > 0);
  UpdateEditMenu(ws.store, ws.commands);
  EnableBlockerCommands(ws.commands, ws.blockers.Count > 0);
  ws.commands.Graphize = ws.calibration.IsComplete();
  ws.commands.GridBuster = gridBuster;
  KeepPictureUsable(ws);
}

}  // namespace

KeptDocument Keep(const Workspace& ws) {
  KeptDocument kept{.Picture = ws.picture,
                    .SourceName = ws.plot.SourceName,
                    .Width = ws.plot.Width(),
                    .Height = ws.plot.Height(),
                    .HasUndo = ws.plot.HasUndo,
                    .PersistentDrawing = ws.plot.PersistentDrawing,
                    .Axes = ws.calibration,
                    .AxisRows = ws.axisPanel.Rows,
                    .AxisAngle = ws.axisPanel.Angle,
                    .AxisTips = ws.axisPanel.Tips,
                    .AxisPanelShown = ws.window.AxisPanelShown,
                    .GridBuster = ws.commands.GridBuster,
                    .InMode = ws.mode,
                    .Blockers = ws.blockers,
                    .Map = ws.map,
                    .Curves = ws.curves.Curves,
                    .Active = ws.curves.Active,
                    .DataFileName = ws.dataFileName,
                    .DataFileTitle = ws.dataFileTitle,
                    .Options = OptionValues(ws),
                    .Steps = {.Steps = ws.recipe.Steps,
                              .Pictures = ws.recipe.Pictures,
                              .SavedPoints = ws.recipe.SavedPoints,
                              .Options = ws.recipe.Options,
                              .Replaced = {}}};
  kept.Curves[static_cast<std::size_t>(kept.Active)].Points =
      std::make_shared<const PointStore>(ws.store);
  return kept;
}

void BringBack(Workspace& ws, const Desktop& desktop, KeptDocument&& kept) {
  const std::filesystem::path folder = kept.Picture.FromFile && !kept.Picture.ChosenPath.empty()
                                           ? kept.Picture.ChosenPath.parent_path()
                                           : ws.picture.Folder;
  ws.picture = std::move(kept.Picture);
  ws.picture.Folder = folder;
  ws.plot.SourceName = std::move(kept.SourceName);
  ws.plot.HasUndo = kept.HasUndo;
  ws.plot.PersistentDrawing = kept.PersistentDrawing;
  ShowPictureSize(ws);
  ShowPictureCaption(ws);

  kept.Axes.ValueFormat = ws.calibration.ValueFormat;
  ws.calibration = kept.Axes;
  ws.axisPanel = {.Rows = std::move(kept.AxisRows),
                  .Angle = std::move(kept.AxisAngle),
                  .Tips = std::move(kept.AxisTips),
                  .LiveXPixel = {},
                  .LiveYPixel = {}};
  ws.window.AxisPanelShown = kept.AxisPanelShown;
  ws.blockers = kept.Blockers;
  ws.map = kept.Map;

  ReplaceCurves(ws.curves, ws.store, std::move(kept.Curves), kept.Active);
  ws.dataFileName = std::move(kept.DataFileName);
  ws.dataFileTitle = std::move(kept.DataFileTitle);
  BringBackOptions(ws, kept.Options);
  BringBackCommands(ws, kept.GridBuster);

  ws.project = {};
  kept.Steps.Number = ws.recipe.Number + 1;
  kept.Steps.Replaced = std::move(ws.recipe.Steps);
  ws.recipe = std::move(kept.Steps);
  ws.recipe.BroughtBack = true;

  ClearReadOut(ws.readOut);
  ws.mode = CanPress(ws, ModeKey(kept.InMode)) ? kept.InMode : Mode::None;
  if (ws.mode == Mode::Graphize) ChooseErrorDisplay(ws, desktop);
  ShowModeHint(ws);
}

}  // namespace graphize
