#include "session/change.h"

#include <algorithm>
#include <typeinfo>

namespace graphize {

namespace {

bool HoldsCurves(const Change::Record& record) {
  return record.Other.type() == typeid(std::vector<Curve>);
}

std::size_t BytesOf(const PointStore& points) {
  std::size_t bytes = sizeof(PointStore);
  std::apply([&](const auto&... array) { ((bytes += array.capacity() * sizeof(array[0])), ...); },
             ArraysOf(points));
  return bytes;
}

}  // namespace

void DocumentDelta::Add(const Change& change) {
  Any = true;
  for (const Change::Record& record : change.Records)
    Records = Records || record.Number + kPointNumbers < std::tuple_size_v<RecordCopies>;
  // Outside of the widest middle nothing has changed, however many changes there were.
  ForEachIn<ArrayCopies>([&](auto number) {
    const auto& array = std::get<number>(change.Arrays);
    if (!array.Differs) return;
    Part& part = Arrays[number];
    part = {true, std::min(part.First, array.First), std::min(part.Behind, array.Behind)};
  });
  if (change.Points != nullptr) Arrays.fill({.Differs = true, .First = 0, .Behind = 0});
  StepsKept = std::min(StepsKept, change.StepsKept);
}

bool HasPicture(const Change& change) {
  return std::any_of(change.Raster.begin(), change.Raster.end(), [](const RasterEvent& event) {
    return event.Is == RasterEvent::Kind::Replaced;
  });
}

bool HasShared(const Change& change) {
  return HasPicture(change) ||
         std::any_of(change.Records.begin(), change.Records.end(), HoldsCurves);
}

std::size_t BytesOf(const Change& change) {
  std::size_t bytes =
      sizeof(Change) + change.Records.size() * 64 + change.Steps.size() * sizeof(Step);
  for (const Change::Record& record : change.Records)
    if (record.Other.type() == typeid(BlockerList)) bytes += sizeof(BlockerList);
  std::apply(
      [&](const auto&... array) {
        ((bytes += array.Other.capacity() * sizeof(*array.Other.data())), ...);
      },
      change.Arrays);
  for (const RasterEvent& event : change.Raster) bytes += event.Bytes();
  return bytes;
}

void SharedBytes::Add(const Change& change) {
  for (const RasterEvent& event : change.Raster) {
    AddPicture(event.Before);
    AddPicture(event.After);
  }
  AddPoints(change.Points);
  for (const Change::Record& record : change.Records)
    if (HoldsCurves(record))
      for (const Curve& curve : *std::any_cast<std::vector<Curve>>(&record.Other))
        AddPoints(curve.Points);
}

void SharedBytes::AddPicture(const PictureBox& box) {
  if (box == nullptr || !seen_.insert(box.get()).second) return;
  const std::size_t bytes = box->PixelCount() * sizeof(std::uint32_t);
  all_ += bytes;
  largest_ = std::max(largest_, bytes);
}

void SharedBytes::AddPoints(const std::shared_ptr<const PointStore>& points) {
  if (points != nullptr && seen_.insert(points.get()).second) all_ += BytesOf(*points);
}

}  // namespace graphize
