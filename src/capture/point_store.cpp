#include "capture/point_store.h"

namespace graphize {

namespace {

constexpr int kStep = 500;

void Refill(std::vector<float>& array) {
  array.assign(kStep + 1, 0.0f);
  array.shrink_to_fit();
}

/// The upper bound that holds `captured` points, in whole steps with one step to spare.
std::size_t SizeFor(int captured) {
  return static_cast<std::size_t>(captured / kStep * kStep + kStep + 1);
}

bool Append(PointStore& store, CommandStates& commands, const Desktop& desktop, bool UpdateLabel,
            float X, float Y) {
  if (store.CaptureCount >= store.MaxPoints) {
    ShowNewest(store);
    Tell(desktop,
         "You reached the limit of data that can be stored.\n\r"
         "To continue save the data and clear the Graphized Points in the list box.",
         MessageIcon::Exclamation);
    return true;
  }
  ++store.CaptureCount;
  if (store.CaptureCount % kStep == 0) {
    store.CaptureX.resize(SizeFor(store.CaptureCount));
    store.CaptureY.resize(SizeFor(store.CaptureCount));
  }
  ++store.ListCount;
  if (store.ListCount % kStep == 0) {
    // From the captured count, which is never the smaller one.
    store.ListX.resize(SizeFor(store.CaptureCount));
    store.ListY.resize(SizeFor(store.CaptureCount));
  }
  store.CaptureX[store.CaptureCount] = X;
  store.CaptureY[store.CaptureCount] = Y;
  store.ListX[store.ListCount] = X;
  store.ListY[store.ListCount] = Y;
  store.LastPixelX = store.CurrentPixelX;
  store.LastPixelY = store.CurrentPixelY;
  if (UpdateLabel) ShowNewest(store);
  if (store.CaptureCount == 1) EnableDataCommands(commands, true);
  return false;
}

}  // namespace

bool AddPoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
              bool UpdateLabel) {
  return Append(store, commands, desktop, UpdateLabel, store.CurrentX, store.CurrentY);
}

bool AddValuePoint(PointStore& store, CommandStates& commands, const Desktop& desktop,
                   bool UpdateLabel, float X, float Y) {
  return Append(store, commands, desktop, UpdateLabel, X, Y);
}

bool DeleteAllData(PointStore& store, CommandStates& commands, const Desktop& desktop, bool Ask) {
  if (Ask && !AskYesNo(desktop, "Delete all graphized X,Y data ?")) return false;
  ClearList(store);
  store.CaptureCount = 0;
  store.ListCount = 0;
  store.NPoints = 0;
  store.ListIsCaptured = true;
  EnableDataCommands(commands, false);
  for (auto* array : {&store.CaptureX, &store.CaptureY, &store.ListX, &store.ListY}) Refill(*array);
  return true;
}

void EnableDataCommands(CommandStates& commands, bool State) {
  commands.Data = State;
  commands.ClearSelected = State;
}

void EnableBlockerCommands(CommandStates& commands, bool State) {
  commands.Blockers = State;
}

void ShowPage(PointStore& store) {
  store.NPoints = store.ListCount;
  ShowPage(store.Page, store.ListCount);
}

void ShowNewest(PointStore& store) {
  store.NPoints = store.ListCount;
  ShowNewest(store.Page, store.ListCount);
}

void ClearList(PointStore& store) {
  ClearList(store.Page);
}

}  // namespace graphize
