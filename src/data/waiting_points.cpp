#include "data/waiting_points.h"

#include "base/translation.h"
#include "data/point_edit.h"

namespace graphize {

int CountWaiting(const PointStore& store) {
  int waiting = 0;
  for (int i = 1; i <= store.CaptureCount; ++i)
    waiting += IsWaiting(store.CaptureId[i], store.CaptureX[i], store.CaptureY[i]) ? 1 : 0;
  return waiting;
}

int CountWaiting(const CurveList& curves, const PointStore& active) {
  int waiting = 0;
  for (std::size_t i = 0; i < curves.Curves.size(); ++i)
    waiting += CountWaiting(PointsOf(curves, active, static_cast<int>(i)));
  return waiting;
}

std::string WaitingText(int points) {
  return TrCount("%1 point has no value yet: it comes when the axes are defined",
                 "%1 points have no values yet: they come when the axes are defined", points);
}

int GiveValues(PointStore& store, const AxisCalibration& calibration, int height) {
  NewValues values = ValuesOfPlaces(store, calibration, height);
  std::vector<bool> waiting(store.Places.size());
  for (int i = 1; i <= store.CaptureCount; ++i)
    waiting[store.CaptureId[i]] =
        IsWaiting(store.CaptureId[i], store.CaptureX[i], store.CaptureY[i]);
  int given = 0;
  for (std::size_t id = 0; id < values.size(); ++id) {
    if (!values[id]) continue;
    if (waiting[id] && std::isfinite(values[id]->X) && std::isfinite(values[id]->Y))
      ++given;
    else
      values[id].reset();
  }
  if (given > 0) TakeValues(store, values);
  return given;
}

}  // namespace graphize
