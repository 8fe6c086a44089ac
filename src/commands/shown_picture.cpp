#include "commands/shown_picture.h"

#include <memory>
#include <utility>

#include "base/numbers.h"
#include "base/translation.h"
#include "capture/cursor.h"
#include "tracing/blockers.h"

namespace graphize {

PictureBox LoadImage(Workspace& ws, const Desktop& desktop, Raster picture,
                     const std::string& sourceName) {
  return LoadImage(ws, desktop, std::make_shared<Raster>(std::move(picture)), sourceName);
}

PictureBox LoadImage(Workspace& ws, const Desktop& desktop, PictureBox picture,
                     const std::string& sourceName) {
  ws.plot.PersistentDrawing = false;
  ClearMarks(ws.plot);
  desktop.ShowNow();
  PictureBox replaced = SetPicture(ws.plot, std::move(picture));
  ws.imageTools.UndoCopy.reset();  // it was of the picture before
  ClearReadOut(ws.readOut);        // so was the pixel
  ws.colours.reset();
  ws.window.Caption = Tr("GRAPHIZE is Resizing ....");
  desktop.ShowNow();
  ShowFromCorner(ws.view, ws.plot.Width(), ws.plot.Height());
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
  ws.plot.PersistentDrawing = true;
  ws.plot.SourceName = sourceName;
  ShowPictureSize(ws);
  ShowPictureCaption(ws);
  ws.commands.Picture = true;
  return replaced;
}

PictureProgress ShowProgress(Workspace& ws, const Desktop& desktop, int from, int to) {
  return [&ws, &desktop, from, to](int percent) {
    ws.status.ProgressVisible = true;
    ws.status.ProgressValue = from + (to - from) * percent / 100;
    desktop.Pump();
    return !desktop.EscapeHeld();
  };
}

void ShowPictureSize(Workspace& ws) {
  ws.status.SizeX = "W=" + std::to_string(ws.plot.Width());
  ws.status.SizeY = "H=" + std::to_string(ws.plot.Height());
}

std::string PictureLabel(const std::string& sourceName, bool withoutFile) {
  const std::string name = TrimRight(sourceName);
  return withoutFile ? Tr(name.c_str()) : name;
}

void ShowPictureCaption(Workspace& ws) {
  ws.window.Caption = kTitle;
  if (!ws.plot.IsPresent()) return;
  ws.window.Caption += " - " + PictureLabel(ws.plot.SourceName, ws.picture.WithoutFile) + " (" +
                       std::to_string(ws.plot.Width()) + "x" + std::to_string(ws.plot.Height()) +
                       ")";
}

void KeepPictureUsable(Workspace& ws) {
  ws.commands.Picture = ws.plot.IsPresent();
}

}  // namespace graphize
