#include "commands/scan_commands.h"

#include <new>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "commands/forms.h"
#include "commands/picture_commands.h"
#include "commands/shown_picture.h"
#include "settings/scanner_source.h"
#include "settings/settings_file.h"

namespace graphize {

namespace {

constexpr const char* kNothingFound =
    Marked("No scanner was found. Is it switched on and connected?");

/// Waits for the scanner; Escape stops.
PictureProgress Wait(const Desktop& desktop) {
  return [&desktop](int) {
    desktop.Pump();
    return !desktop.EscapeHeld();
  };
}

PictureProgress ShowProgress(ScanForm& form, const Desktop& desktop) {
  return [&form, &desktop](int percent) {
    form.Percent = percent;
    desktop.Pump();
    return !desktop.EscapeHeld();
  };
}

void TellScanError(const Desktop& desktop, const std::string& description, bool tooLarge) {
  // The line ends with LF before CR, as in the message that the point store is full.
  desktop.ShowMessage(
      {.Text = Tr("Error while scanning: %1", description) +
               (tooLarge ? "\n\r" + Tr("Try to reduce image size or use lower dpi setting.") : ""),
       .Icon = MessageIcon::Critical,
       .Caption = Tr("%1 Error", kTitle)});
}

/// Runs a part of the acquisition. A failure is told and ends all of it.
template <class Work>
void Acquiring(Workspace& ws, const Desktop& desktop, const Work& work) {
  std::string error;
  bool tooLarge = false;
  try {
    work();
  } catch (const PictureTooLarge& e) {
    error = e.what();
    tooLarge = true;
  } catch (const RunTimeError& e) {
    error = e.what();
  } catch (const std::bad_alloc&) {
    error = Tr("There is not enough memory.");
    tooLarge = true;
  }
  ws.scan.Doing = ScanForm::Work::None;
  ws.window.Hourglass = false;
  ws.status.Status = " ";
  if (error.empty()) return;
  TellScanError(desktop, error, tooLarge);
  CloseForm(ws, desktop);
}

void TellSourceError(const Desktop& desktop, const std::string& description) {
  desktop.ShowMessage({.Text = Tr("Select Source Error: %1", description),
                       .Icon = MessageIcon::Critical,
                       .Caption = Tr("Select Source Error")});
}

/// The chosen source or, when none was chosen, the first at this computer; no name after Escape.
ScannerSource SourceToOpen(const Workspace& ws, const Desktop& desktop) {
  if (!ws.scanner.Source.Name.empty()) return ws.scanner.Source;
  const auto sources = ListScanners(false, Wait(desktop));
  if (!sources) return {};
  if (sources->empty()) throw RunTimeError(kNothingFound);
  return {sources->front().Name, SourceLabel(sources->front())};
}

void OpenScanWindow(Workspace& ws, const Desktop& desktop) {
  ws.status.Status = Tr("Waiting for the scanner ...");
  ws.window.Hourglass = true;
  desktop.ShowNow();
  const auto [name, label] = SourceToOpen(ws, desktop);
  if (name.empty()) return;
  const OpenScanner scanner = OpenScanSource(name, Wait(desktop));
  if (scanner == nullptr) return;
  // A page is often followed by the next one of the same kind.
  const bool again = ws.scanner.LastUsed == name;
  auto can = SetScan(scanner, again ? ws.scanner.LastSettings : ScanSettings(), Wait(desktop));
  if (can && !again) can = SetScan(scanner, FirstSettings(*can), Wait(desktop));
  if (!can) return;
  ws.scan = {};
  ws.scan.Device = label.empty() ? name : label;
  ShowAbilities(ws.scan, std::move(*can));
  ws.scanner.LastUsed = name;
  ws.scanner.Open = scanner;
  ws.form = Form::Scan;
}

void TakePage(Workspace& ws, const Desktop& desktop, PageRaster bitmap) {
  ws.window.Hourglass = true;
  TakeInHand(ws, desktop, std::move(*bitmap), Marked("Scanned Plot"));
}

}  // namespace

bool CanSelectSource(const Workspace& ws) {
  return ws.commands.SelectSource;
}

bool CanScan(const Workspace& ws) {
  return ws.commands.Scanner;
}

void SelectSource(Workspace& ws, const Desktop& desktop) {
  ws.source = {};
  ws.form = Form::SelectSource;
  LookForSources(ws, desktop, false);
}

void LookForSources(Workspace& ws, const Desktop& desktop, bool network) {
  ws.source.Network = network;
  BeginLooking(ws.source);
  desktop.ShowNow();
  std::string error;
  try {
    auto sources = ListScanners(network, Wait(desktop));
    if (sources)
      ShowSources(ws.source, std::move(*sources), ws.scanner.Source.Name);
    else
      ShowNoSources(ws.source, Tr("The search was stopped."));
  } catch (const RunTimeError& e) {
    error = e.what();
    ShowNoSources(ws.source, Tr(kNothingFound));
  }
  if (!error.empty()) TellSourceError(desktop, error);
}

void ChooseSource(Workspace& ws, const Desktop& desktop) {
  if (!CanChooseSource(ws.source)) return;
  const ScanSource& chosen = ws.source.Sources[ws.source.Selected];
  ws.scanner.Source = {chosen.Name, SourceLabel(chosen)};
  ws.commands.Scanner = true;
  std::string error;
  try {
    SettingsFile file = ReadSettingsFile(ws.settingsPath);
    WriteScannerSource(file, ws.scanner.Source);
    SaveSettingsFile(ws.settingsPath, file);
  } catch (const RunTimeError& e) {
    error = e.what();
  }
  // It is chosen all the same, until the program ends.
  if (!error.empty()) TellSourceError(desktop, error);
  CloseForm(ws, desktop);
}

void Aquire(Workspace& ws, const Desktop& desktop) {
  if (!CanScan(ws)) return;
  OfferReset(ws, desktop);
  KeepPictureUsable(ws);
  Acquiring(ws, desktop, [&] { OpenScanWindow(ws, desktop); });
}

void ChangeScan(Workspace& ws, const Desktop& desktop, const ScanSettings& settings) {
  if (ws.scanner.Open == nullptr) return;
  Acquiring(ws, desktop, [&] {
    if (auto can = SetScan(ws.scanner.Open, settings, Wait(desktop)))
      ShowAbilities(ws.scan, std::move(*can));
  });
}

void TypeResolution(Workspace& ws, const Desktop& desktop, const std::string& text) {
  const double resolution = LeadingNumber(text);
  ScanSettings settings = ws.scan.Can.Now;
  if (!(resolution > 0) || resolution == settings.Resolution) return;
  settings.Resolution = resolution;
  ChangeScan(ws, desktop, settings);
}

void PreviewScan(Workspace& ws, const Desktop& desktop) {
  if (ws.scanner.Open == nullptr) return;
  Acquiring(ws, desktop, [&] {
    ws.scan.Doing = ScanForm::Work::Preview;
    ws.scan.Percent = 0;
    const ScanSettings settings = ws.scan.Can.Now;
    const PageRaster bitmap = AcquirePage(ws.scanner.Open, PreviewSettings(ws.scan), true,
                                          ShowProgress(ws.scan, desktop));
    if (bitmap) {
      ws.scan.Preview = std::move(*bitmap);
      ++ws.scan.PreviewNumber;
    }
    if (auto can = SetScan(ws.scanner.Open, settings, Wait(desktop)))
      ShowAbilities(ws.scan, std::move(*can));
  });
}

void AcquireImage(Workspace& ws, const Desktop& desktop) {
  if (ws.scanner.Open == nullptr) return;
  Acquiring(ws, desktop, [&] {
    ws.scan.Doing = ScanForm::Work::Scan;
    ws.scan.Percent = 0;
    ws.scanner.LastSettings = ws.scan.Can.Now;
    PageRaster bitmap =
        AcquirePage(ws.scanner.Open, ws.scan.Can.Now, false, ShowProgress(ws.scan, desktop));
    CloseForm(ws, desktop);
    if (bitmap) TakePage(ws, desktop, std::move(bitmap));
  });
}

}  // namespace graphize
