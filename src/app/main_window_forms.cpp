// The modal windows of the main window: which one is open, and what their events call.

#include <QScreen>
#include <algorithm>
#include <utility>

#include "app/main_window.h"
#include "commands/data_commands.h"
#include "commands/export_points.h"
#include "commands/forms.h"
#include "commands/help_commands.h"
#include "data/export_dialog.h"
#include "data/integrate_dialog.h"
#include "data/sample_dialog.h"

namespace graphize {

void MainWindow::RenderForm() {
  if (formShown_ != ws_.form) {
    // In this order: a control that loses the focus may run a command, which renders again.
    formShown_ = ws_.form;
    renderForm_ = nullptr;
    if (FormDialog* closed = std::exchange(form_, nullptr)) {
      if (closed->size() != formPlaced_) formSizes_[closed->objectName()] = closed->size();
      closed->hide();
      activateWindow();  // a box over the form may have gone with it, and with both the focus
      closed->deleteLater();
    }
    switch (formShown_) {
      case Form::None:
        break;
      case Form::Integrate:
        form_ = MakeIntegrateForm();
        break;
      case Form::Sample:
        form_ = MakeSampleForm();
        break;
      case Form::Options:
        form_ = MakeOptionsForm();
        break;
      case Form::About:
        form_ = MakeAboutForm();
        break;
      case Form::SelectSource:
        form_ = MakeSelectSourceForm();
        break;
      case Form::Scan:
        form_ = MakeScanForm();
        break;
      case Form::ImageTools:
        form_ = MakeImageToolsForm();
        break;
      case Form::Export:
        form_ = MakeExportForm();
        break;
      case Form::BlackWhite:
        form_ = MakeBlackWhiteForm();
        break;
      case Form::Ink:
        form_ = MakeInkForm();
        break;
      case Form::ReadAll:
        form_ = MakeReadAllForm();
        break;
      case Form::OtherPictures:
        form_ = MakeOtherPicturesForm();
        break;
    }
    if (form_ != nullptr) {
      renderForm_();
      connect(form_, &FormDialog::CloseAsked, this, [this] {
        if (!MustWaitToClose(form_)) Do(CloseForm);
      });
      // The help has a chapter of the window's name.
      connect(form_, &FormDialog::HelpAsked, this, [this] {
        Do([this](Workspace& ws, const Desktop& desktop) {
          ShowHelp(ws, desktop, form_->objectName().toStdString());
        });
      });
      PlaceForm();
      // Not run in a loop of its own: every event of the form is a command like any other. But for
      // the one whose eyedropper needs the picture, it locks the main window.
      formShown_ == Form::Ink ? form_->show() : form_->open();
    }
  }
  if (renderForm_) renderForm_();
}

void MainWindow::PlaceForm() {
  const QPoint corner = centralWidget()->mapToGlobal(centralWidget()->rect().bottomLeft());
  const int frame = frameGeometry().height() - height();
  const QRect screen = this->screen()->availableGeometry();
  const QSize wanted = formSizes_.value(form_->objectName(), form_->sizeHint());
  const QSize size = wanted.boundedTo(screen.size() - QSize(0, frame));
  form_->resize(size);
  formPlaced_ = form_->size();
  form_->move(
      std::clamp(corner.x(), screen.left(), std::max(screen.right() - size.width(), screen.left())),
      std::max(corner.y() - size.height() - frame, screen.top()));
}

FormDialog* MainWindow::MakeIntegrateForm() {
  auto* dialog = new IntegrateDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.integrate); };
  connect(dialog, &IntegrateDialog::LowLimitMoved, this, [this](int point) {
    Do([=](Workspace& ws, const Desktop&) { MoveLowLimit(ws.integrate, ws.store, point); }, false);
  });
  connect(dialog, &IntegrateDialog::HighLimitMoved, this, [this](int point) {
    Do([=](Workspace& ws, const Desktop&) { MoveHighLimit(ws.integrate, ws.store, point); }, false);
  });
  connect(dialog, &IntegrateDialog::IntegratePressed, this, [this] {
    const IntegrateForm& form = ws_.integrate;
    Do(IntegrateStep{IntegrateStep::Limits{form.LowLimit, form.HighLimit}, {}});
  });
  return dialog;
}

FormDialog* MainWindow::MakeSampleForm() {
  auto* dialog = new SampleDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.sample); };
  /// A text or a switch of the form has changed.
  const auto change = [this](auto setter) {
    return [this, setter](const auto& value) {
      Do([&](Workspace& ws, const Desktop&) { setter(ws, value); }, false);
    };
  };
  connect(dialog, &SampleDialog::StepsTyped, this,
          change([](Workspace& ws, const std::string& text) {
            ws.sample.Steps = text;
            StepsTyped(ws.sample);
          }));
  connect(dialog, &SampleDialog::StepsLeft, this, [this] {
    // Comes while the window closes, too.
    if (ws_.form != Form::Sample) return;
    Do([](Workspace& ws, const Desktop& desktop) { StepsChanged(ws.sample, desktop); }, false);
  });
  connect(dialog, &SampleDialog::dXTyped, this,
          change([](Workspace& ws, const std::string& text) { ws.sample.dXBox = text; }));
  connect(dialog, &SampleDialog::MinXTyped, this,
          change([](Workspace& ws, const std::string& text) {
            ws.sample.MinXBox = text;
            RangeChanged(ws.sample, ws.store);
          }));
  connect(dialog, &SampleDialog::MaxXTyped, this,
          change([](Workspace& ws, const std::string& text) {
            ws.sample.MaxXBox = text;
            RangeChanged(ws.sample, ws.store);
          }));
  connect(dialog, &SampleDialog::XLogSwitched, this, change([](Workspace& ws, bool on) {
            ws.sample.SampleXLog = on;
            RangeChanged(ws.sample, ws.store);
          }));
  connect(dialog, &SampleDialog::YLogSwitched, this, change([](Workspace& ws, bool on) {
            ws.sample.SampleYLog = on;
            RangeChanged(ws.sample, ws.store);
          }));
  connect(dialog, &SampleDialog::CalculatePressed, this, [this] {
    Do([](Workspace& ws, const Desktop& desktop) { CalculateStep(ws.sample, ws.store, desktop); },
       false);
  });
  connect(dialog, &SampleDialog::ReSamplePressed, this, [this] { Do(StepOfForm(ws_.sample)); });
  return dialog;
}

FormDialog* MainWindow::MakeExportForm() {
  auto* dialog = new ExportDialog(this);
  renderForm_ = [this, dialog] { dialog->Render(ws_.exportForm); };
  const auto change = [this](auto setter) {
    return [this, setter](const auto& value) {
      Do(
          [&](Workspace& ws, const Desktop&) {
            setter(ws.exportForm, value);
            ShowHint(ws.exportForm);
          },
          false);
    };
  };
  connect(dialog, &ExportDialog::FormatChosen, this, change([](ExportForm& form, int format) {
            form.Format = static_cast<ExportFormat>(format);
          }));
  connect(dialog, &ExportDialog::CommonXChosen, this,
          change([](ExportForm& form, bool on) { form.CommonX = on; }));
  connect(dialog, &ExportDialog::XGridTyped, this,
          change([](ExportForm& form, const std::string& text) { form.XGrid = text; }));
  connect(dialog, &ExportDialog::AllCurvesSwitched, this,
          change([](ExportForm& form, bool on) { form.AllCurves = on; }));
  connect(dialog, &ExportDialog::ErrorsSwitched, this,
          change([](ExportForm& form, bool on) { form.Errors = on; }));
  connect(dialog, &ExportDialog::PixelErrorsSwitched, this,
          change([](ExportForm& form, bool on) { form.PixelErrors = on; }));
  connect(dialog, &ExportDialog::ExportPressed, this, [this] { Do(ExportPoints, false); });
  return dialog;
}

}  // namespace graphize
