#pragma once

#include <functional>
#include <random>

#include "commands/do.h"

namespace graphize::test {

/// A plot with a frame, grid lines, a curve and some grey.
Raster PictureForRandomUser();

/// A user who does the things that lead to points, in any order, and stops some in the middle.
class RandomUser {
 public:
  /// Opens the picture and defines its axes. Data files are saved at `saved`. `afterCommand` is
  /// called before the first command, and after every one as in the window.
  RandomUser(
      unsigned seed, const std::filesystem::path& picture, const std::filesystem::path& saved,
      std::function<void(Workspace&)> afterCommand = [](Workspace&) {});

  void DoSomething();
  void Do(const Step& step);
  /// With the pen, and without its release.
  void PressPen();
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  bool Chance(int of) { return Pick(of) == 0; }

  Workspace ws;

 private:
  float X() { return static_cast<float>(Pick(ws.plot.Width())); }
  float Y() { return static_cast<float>(Pick(ws.plot.Height())); }
  void Do(const std::function<void()>& command);
  void Key(const char* key);
  void Mode(const char* key) { Key(key); }
  void Press(int button, int shift, int drag);
  void ClickWithoutPress();
  void ChangeOptions();
  void ReSampleList();
  void IntegrateSome();
  void ClearSome();
  void ReadSomething();
  void ChangeReferences();
  void EditPoints();
  void Drag(float x, float y, int shift);
  void ChangeCurves();
  void UseImageTool();
  void Rarely();
  void Calibrate();

  std::mt19937 random_;
  std::filesystem::path picture_;
  std::function<void(Workspace&)> afterCommand_;
  Desktop desktop_;
  int escapeIn_ = -1;
};

}  // namespace graphize::test
