// Axes in the main window: their panel, and the frame that proposes them.

#include <QKeyEvent>
#include <QScrollArea>
#include <QTimer>
#include <utility>

#include "app/main_window.h"
#include "calibration/axis_panel.h"
#include "commands/capture_commands.h"
#include "commands/propose_axes_commands.h"
#include "commands/reference_commands.h"
#include "raster/plot_view.h"
#include "workspace/propose_axes_panel.h"

namespace graphize {

void MainWindow::ConnectAxes() {
  connect(axisPanel_, &AxisPanelWidget::ReDefinePressed, this,
          [this](int row) { Do(RedefineStep{row}); });
  connect(axisPanel_, &AxisPanelWidget::XTyped, this, [this](int row, const std::string& text) {
    Do([&](Workspace& ws, const Desktop&) { ws.axisPanel.Rows[row].XText = text; }, false);
  });
  connect(axisPanel_, &AxisPanelWidget::YTyped, this, [this](int row, const std::string& text) {
    Do([&](Workspace& ws, const Desktop&) { ws.axisPanel.Rows[row].YText = text; }, false);
  });
  connect(axisPanel_, &AxisPanelWidget::XLogSwitched, this,
          [this](bool on) { Do([=](Workspace& ws, const Desktop& d) { SwitchXLog(ws, d, on); }); });
  connect(axisPanel_, &AxisPanelWidget::YLogSwitched, this,
          [this](bool on) { Do([=](Workspace& ws, const Desktop& d) { SwitchYLog(ws, d, on); }); });
  connect(axisPanel_, &AxisPanelWidget::OriginYFocused, this, [this] {
    // Comes while the focus is set by a command's rendering, too.
    ws_.calibration.FocusOriginPending = false;
  });
  connect(axisPanel_, &AxisPanelWidget::ProposePressed, this,
          [this] { Do([](Workspace& ws, const Desktop& d) { ShowProposedAxes(ws, d); }); });
  connect(axisPanel_, &AxisPanelWidget::AddReferencePressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { SwitchAddReference(ws); }); });
  const auto change = [this](auto setter) {
    return [this, setter](const auto&... value) {
      Do([&](Workspace& ws, const Desktop&) { setter(ws, value...); });
    };
  };
  connect(axisPanel_, &AxisPanelWidget::ReferenceXTyped, this,
          change([](Workspace& ws, const std::string& text) { ws.reference.X = text; }));
  connect(axisPanel_, &AxisPanelWidget::ReferenceYTyped, this,
          change([](Workspace& ws, const std::string& text) { ws.reference.Y = text; }));
  connect(axisPanel_, &AxisPanelWidget::ReferenceChosen, this, change(ChooseReference));
  connect(axisPanel_, &AxisPanelWidget::RemoveReferencePressed, this,
          [this] { Do(RemoveChosenReference); });
  connect(axisPanel_, &AxisPanelWidget::RefinedSwitched, this,
          [this](bool on) { Do(RefineStep{on}); });

  using Panel = ProposeAxesPanel;
  connect(proposePanel_, &Panel::XTyped, this, change(TypeProposedX));
  connect(proposePanel_, &Panel::YTyped, this, change(TypeProposedY));
  connect(proposePanel_, &Panel::XConfirmed, this, change(ConfirmProposedX));
  connect(proposePanel_, &Panel::YConfirmed, this, change(ConfirmProposedY));
  connect(proposePanel_, &Panel::RowFocused, this, change(LookAtProposedRow));
  connect(proposePanel_, &Panel::XLogSwitched, this,
          change([](Workspace& ws, bool on) { ws.proposedAxes.XLog = on; }));
  connect(proposePanel_, &Panel::YLogSwitched, this,
          change([](Workspace& ws, bool on) { ws.proposedAxes.YLog = on; }));
  const auto choose = [this](auto chooser) {
    return [this, chooser](int number) {
      Do([=](Workspace& ws, const Desktop& d) { chooser(ws, d, number); });
    };
  };
  connect(proposePanel_, &Panel::PlotChosen, this, choose(ChooseProposedPlot));
  connect(proposePanel_, &Panel::XScaleChosen, this, choose(ChooseProposedXScale));
  connect(proposePanel_, &Panel::YScaleChosen, this, choose(ChooseProposedYScale));
  connect(proposePanel_, &Panel::AcceptPressed, this, [this] { Do(TakeProposedAxes); });
  connect(proposePanel_, &Panel::CancelPressed, this,
          [this] { Do([](Workspace& ws, const Desktop&) { DropProposedAxes(ws); }); });
}

void MainWindow::RenderAxes() {
  const QWidget* focused = axisPanel_->isAncestorOf(focusWidget()) ? focusWidget() : nullptr;
  axisPanel_->Render(ws_.axisPanel, ws_.calibration);
  axisPanel_->RenderReferences(ReferencesOf(ws_), ws_.reference, ws_.calibration.Refined.On,
                               CanProposeAxes(ws_));
  // The next control would get it: a log switch, and the space bar would turn that.
  if (focused != nullptr && !focused->isEnabled()) plot_->setFocus();
  proposePanel_->Render(ws_.proposedAxes, VerdictText(ws_.proposedAxes), CanTakeProposedAxes(ws_));
  // Later: what gets the focus may ask for a command, and the frame may not be shown yet.
  if (std::exchange(ws_.proposedAxes.FocusAsked, false))
    QTimer::singleShot(0, proposePanel_, &ProposeAxesPanel::FocusNext);
  if (std::exchange(ws_.reference.FocusAsked, false))
    QTimer::singleShot(0, axisPanel_, [this] {
      axisPanel_->FocusReference();
      // On a small screen the panel scrolls.
      sidePanel_->ensureWidgetVisible(axisPanel_->ReferencePart());
      if (focusWidget() != nullptr) sidePanel_->ensureWidgetVisible(focusWidget());
    });
}

bool MainWindow::TakeProposalKey(const QKeyEvent& key) {
  // After a click on the picture the keys are not the frame's.
  const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  if (isReturn && ws_.proposedAxes.Shown && KeysAreForPicture() &&
      !proposePanel_->isAncestorOf(focusWidget())) {
    if (CanTakeProposedAxes(ws_))
      Do(TakeProposedAxes);
    else
      proposePanel_->FocusNext();
    return true;
  }
  if (key.key() != Qt::Key_Escape) return false;
  if (ws_.proposedAxes.Shown)
    Do([](Workspace& ws, const Desktop&) { DropProposedAxes(ws); });
  else if (ws_.reference.Armed)
    Do([](Workspace& ws, const Desktop&) { SwitchAddReference(ws); });
  else
    return false;
  return true;
}

}  // namespace graphize
