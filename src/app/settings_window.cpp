// The window frmOptions: what its events call.

#include "app/main_window.h"
#include "commands/options_commands.h"
#include "settings/settings_dialog.h"

namespace graphize {

FormDialog* MainWindow::MakeOptionsForm() {
  auto* dialog = new SettingsDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.options, ws_.settings); };

  /// A control of the form was changed.
  const auto change = [this](auto setter) {
    return [this, setter](auto... value) {
      Do([&](Workspace& ws, const Desktop&) { setter(ws, value...); }, false);
    };
  };
  connect(dialog, &SettingsDialog::TraceChosen, this,
          change([](Workspace& ws, int trace) { ws.options.Trace = trace; }));
  connect(dialog, &SettingsDialog::SnapModeChosen, this,
          change([](Workspace& ws, int mode) { ws.options.SnapMode = mode; }));
  connect(
      dialog, &SettingsDialog::SnapDistanceTyped, this,
      change([](Workspace& ws, const std::string& text) { TypeSnapDistance(ws.options, text); }));
  connect(dialog, &SettingsDialog::SnapDistanceStepped, this,
          change([](Workspace& ws, int step) { StepSnapDistance(ws.options, step); }));
  connect(dialog, &SettingsDialog::XJumpStepped, this,
          change([](Workspace& ws, int step) { StepXJump(ws.options, step); }));
  connect(dialog, &SettingsDialog::YJumpStepped, this,
          change([](Workspace& ws, int step) { StepYJump(ws.options, step); }));
  connect(dialog, &SettingsDialog::RefreshListSwitched, this,
          change([](Workspace& ws, bool on) { ws.options.RefreshList = on; }));
  connect(dialog, &SettingsDialog::ZoomWindowSwitched, this,
          change([](Workspace& ws, bool on) { ws.options.ZoomWindow = on; }));
  connect(dialog, &SettingsDialog::SubPixelClicksSwitched, this,
          change([](Workspace& ws, bool on) { ws.options.SubPixelClicks = on; }));

  connect(dialog, &SettingsDialog::ColourOfChosen, this, change([](Workspace& ws, int which) {
            ws.options.Colour = static_cast<OptionsForm::ColourOf>(which);
          }));
  connect(dialog, &SettingsDialog::CursorChosen, this, change([](Workspace& ws, int type) {
            ws.settings.CursorType = static_cast<std::int16_t>(type);
          }));

  /// A control that acts on the settings, and what follows from it.
  const auto act = [this](auto setter, void (*follow)(Workspace&)) {
    return [this, setter, follow](auto... value) {
      Do([&](Workspace& ws, const Desktop&) {
        setter(ws, value...);
        follow(ws);
      });
    };
  };
  connect(dialog, &SettingsDialog::ColourChosen, this,
          act([](Workspace& ws, int index) { ChooseColour(ws.options, ws.settings, index); },
              ColoursChanged));
  connect(dialog, &SettingsDialog::DefaultColoursPressed, this,
          act([](Workspace& ws) { DefaultColours(ws.settings); }, ColoursChanged));
  connect(dialog, &SettingsDialog::PlacesStepped, this,
          act([](Workspace& ws, int index, int step) { StepPlaces(ws.settings, index, step); },
              FormatChanged));
  connect(dialog, &SettingsDialog::XExpSwitched, this,
          act([](Workspace& ws, bool on) { ws.settings.XExp = on; }, FormatChanged));
  connect(dialog, &SettingsDialog::YExpSwitched, this,
          act([](Workspace& ws, bool on) { ws.settings.YExp = on; }, FormatChanged));
  connect(dialog, &SettingsDialog::DecimalPointChosen, this,
          act([](Workspace& ws, bool point) { ws.settings.DecimalPoint = point; }, FormatChanged));
  connect(dialog, &SettingsDialog::DelimiterChosen, this,
          act([](Workspace& ws,
                 int delimiter) { ws.settings.Delimiter = static_cast<std::int16_t>(delimiter); },
              FormatChanged));

  connect(dialog, &SettingsDialog::OkPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { AcceptOptions(ws); }); });
  connect(dialog, &SettingsDialog::ApplyPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { ApplyOptions(ws); }); });
  connect(dialog, &SettingsDialog::SavePressed, this, [this] { Do(SaveOptions); });
  connect(dialog, &SettingsDialog::LoadPressed, this, [this] { Do(LoadOptions); });
  connect(dialog, &SettingsDialog::DefaultPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { DefaultOptions(ws); }); });
  return dialog;
}

}  // namespace graphize
