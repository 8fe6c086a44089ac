#include "session/journal_text.h"

#include <algorithm>
#include <type_traits>

#include "base/tokens.h"
#include "base/translation.h"
#include "raster/plot_image.h"
#include "session/journal_frame.h"
#include "session/kept_text.h"
#include "workspace/step_text.h"

namespace graphize {

namespace {

/// The words of one line, which ends after every one of them: a destructor that ends it would need
/// memory.
class Line {
 public:
  Line(std::string& text, const char* name) : text_(text) { (text_ += name) += '\n'; }

  template <class Number>
  requires std::is_integral_v<Number> Line& operator<<(Number number) {
    return Add(std::to_string(number));
  }
  Line& operator<<(const std::string& word) { return Add(Quote(word)); }

 private:
  Line& Add(const std::string& word) {
    text_.back() = ' ';
    (text_ += word) += '\n';
    return *this;
  }

  std::string& text_;
};

template <class T>
void WriteArray(std::string& text, std::size_t number, const std::vector<T>& array,
                std::size_t first, std::size_t behind) {
  static_assert(std::is_trivially_copyable_v<T>);
  const std::size_t count = array.size() - first - behind;
  Line(text, "array") << number << first << behind << count;
  text.append(reinterpret_cast<const char*>(array.data() + first), count * sizeof(T));
}

/// And whether a file holds the points as they are.
void WriteNumbers(std::string& text, const PointStore& store) {
  Line(text, "points") << store.CaptureCount << store.ListCount << int{store.ListIsCaptured}
                       << static_cast<int>(store.ListRows) << store.LastPixelX << store.LastPixelY
                       << store.NPoints << int{!HasUnsaved(store)};
}

/// All of them, of any curve.
void WritePoints(std::string& text, const PointStore& store) {
  WriteNumbers(text, store);
  const auto arrays = ArraysOf(store);
  ForEachIn<ArrayCopies>(
      [&](auto number) { WriteArray(text, number, std::get<number>(arrays), 0, 0); });
}

/// The curves that are not active; those which the journal does not have yet in full.
void WriteCurves(std::string& text, const Workspace& ws, ToldCurves& told) {
  std::erase_if(told, [](const auto& curve) { return curve.first.expired(); });
  std::vector<int> numbers;
  for (const Curve& curve : ws.curves.Curves) {
    if (curve.Points == nullptr) {
      numbers.push_back(0);
      continue;
    }
    const auto known = std::find_if(told.begin(), told.end(), [&](const auto& other) {
      return other.first.lock() == curve.Points;
    });
    numbers.push_back(known != told.end() ? known->second
                      : told.empty()      ? 1
                                          : told.back().second + 1);
    if (known != told.end()) continue;
    told.emplace_back(curve.Points, numbers.back());
    Line(text, "curve") << numbers.back();
    WritePoints(text, *curve.Points);
    text += "end\n";
  }
  {
    Line line(text, "curves");
    for (const int number : numbers) line << number;
  }
  Line saved(text, "saved");
  for (const Curve& curve : ws.curves.Curves)
    saved << int{curve.Points != nullptr && !HasUnsaved(*curve.Points)};
}

/// The small records, as a project has them, without what is told beside.
void WriteRecords(std::string& text, const Workspace& ws) {
  KeptDocument kept = Keep(ws);
  const auto none = std::make_shared<const PointStore>();
  for (Curve& curve : kept.Curves) curve.Points = none;
  kept.Steps.Steps.clear();
  const auto pictures = std::exchange(kept.Steps.Pictures, {});
  const std::vector<KeptPart> parts = PartsOf(std::move(kept));
  Line(text, "records") << parts.size();
  for (const KeptPart& part : parts) {
    Line(text, "part") << part.Name << part.Text.size();
    text += part.Text;
  }
  Line(text, "pictures") << pictures.size();
  for (const RecipePicture& picture : pictures)
    Line(text, "picture") << picture.Path.string() << picture.Width << picture.Height
                          << picture.FileSize << picture.FileChecksum;
  Line(text, "copy") << ws.picture.KeptCopy << ws.picture.KeptSteps;
}

std::string EventStart(const JournalEntry& entry) {
  std::string text;
  Line(text, "number") << entry.Number << entry.Time;
  return text;
}

}  // namespace

std::string EventText(Workspace& ws, const DocumentDelta& delta, const JournalEntry& entry,
                      ToldCurves& told) {
  std::string text = EventStart(entry);
  if (entry.Whole) text += "state\n";
  const std::vector<Step>& steps = ws.recipe.Steps;
  const std::size_t kept = entry.Whole ? 0 : std::min(delta.StepsKept, steps.size());
  if (entry.Whole || delta.StepsKept != SIZE_MAX) {
    Line(text, "steps") << kept << steps.size() - kept;
    for (std::size_t i = kept; i < steps.size(); ++i) text += TextOf(steps[i]) + "\n";
  }
  if (entry.Whole) {
    WritePoints(text, ws.store);
  } else {
    WriteNumbers(text, ws.store);
    const auto arrays = ArraysOf(ws.store);
    ForEachIn<ArrayCopies>([&](auto number) {
      const DocumentDelta::Part& part = delta.Arrays[number];
      if (part.Differs) WriteArray(text, number, std::get<number>(arrays), part.First, part.Behind);
    });
  }
  if (entry.Whole || delta.Records) {
    WriteCurves(text, ws, told);
    WriteRecords(text, ws);
  }
  if (ws.plot.IsPresent())
    Line(text, "raster") << PictureNumber(ws.plot);
  else
    Line(text, "raster");
  return Framed(text);
}

std::string ClosedEvent(const JournalEntry& entry) {
  return Framed(EventStart(entry) + "closed\n");
}

}  // namespace graphize
