// The scanner in the main window: whether there is one, and the events of its two forms.

#include "app/main_window.h"
#include "commands/scan_commands.h"
#include "scanner/scan_dialog.h"
#include "scanner/select_source_dialog.h"

namespace graphize {

namespace {

bool IsAnyThere(const PictureProgress& progress) {
  try {
    const auto sources = ListScanners(false, progress);
    return sources && !sources->empty();
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace

void MainWindow::AskForScanner() {
  // An answer may take as long as a device likes: the window neither waits for it nor, when it
  // closes, goes on asking.
  scannerQuestion_ =
      std::jthread([this, chosen = !ws_.scanner.Source.Name.empty()](const std::stop_token& stop) {
        const auto answer = [this](bool CommandStates::*enabled) {
          QMetaObject::invokeMethod(
              this, [this, enabled] { Note([=](Workspace& ws) { ws.commands.*enabled = true; }); });
        };
        const PictureProgress goOn = [stop](int) { return !stop.stop_requested(); };
        if (ScannerIsAvailable(goOn) != 1) return;
        answer(&CommandStates::SelectSource);
        if (chosen || IsAnyThere(goOn)) answer(&CommandStates::Scanner);
      });
}

FormDialog* MainWindow::MakeSelectSourceForm() {
  auto* dialog = new SelectSourceDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.source); };
  connect(dialog, &SelectSourceDialog::SourceSelected, this, [this](int index) {
    Do([=](Workspace& ws, const Desktop&) { ws.source.Selected = index; }, false);
  });
  connect(dialog, &SelectSourceDialog::LookPressed, this, [this](bool network) {
    Do([=](Workspace& ws, const Desktop& d) { LookForSources(ws, d, network); }, false);
  });
  connect(dialog, &SelectSourceDialog::SelectPressed, this, [this] { Do(ChooseSource, false); });
  return dialog;
}

FormDialog* MainWindow::MakeScanForm() {
  auto* dialog = new ScanDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.scan); };
  connect(dialog, &ScanDialog::SettingsChosen, this, [this](const ScanSettings& settings) {
    Do([&](Workspace& ws, const Desktop& d) { ChangeScan(ws, d, settings); }, false);
  });
  connect(dialog, &ScanDialog::ResolutionTyped, this, [this](const std::string& text) {
    Do([&](Workspace& ws, const Desktop& d) { TypeResolution(ws, d, text); }, false);
  });
  connect(dialog, &ScanDialog::PreviewPressed, this, [this] { Do(PreviewScan, false); });
  connect(dialog, &ScanDialog::ScanPressed, this, [this] { Do(AcquireImage); });
  return dialog;
}

}  // namespace graphize
