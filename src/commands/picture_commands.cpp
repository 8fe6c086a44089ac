#include "commands/picture_commands.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/free_beside.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/translation.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "codecs/picture_probe.h"
#include "commands/capture_commands.h"
#include "commands/do.h"
#include "commands/ink_check_commands.h"
#include "commands/plot_mouse.h"
#include "commands/shown_picture.h"
#include "commands/toolbar.h"
#include "raster/black_white.h"
#include "raster/size_limits.h"
#include "settings/recent_files.h"
#include "workspace/picture_map.h"
#include "workspace/picture_part.h"

namespace graphize {

namespace {

constexpr const char* kAllImages = "*.bmp;*.pcx;*.tif;*.tga;*.gif;*.jpg";
constexpr const char* kOpenFilters = Marked(
    "All Images|*.bmp;*.pcx;*.tif;*.tga;*.gif;*.jpg|BMP Files (*.bmp)|*.bmp|PCX Files (*.pcx)|"
    "*.pcx|TIFF Files (*.tif)|*.tif|GIF Files (*.gif)|*.gif|TARGA Files (*.tga)|*.tga|JPEG Files "
    "(*.jpg)|*.jpg");
constexpr const char* kOtherFilters = Marked(
    "All Pictures|*.png;*.webp;*.bmp;*.dib;*.pcx;*.tif;*.tiff;*.tga;*.gif;*.jpg;*.jpeg|PNG Files "
    "(*.png)|*.png|WebP Files (*.webp)|*.webp|DIB Files (*.dib)|*.dib|All Files|*");
constexpr const char* kSaveFilters = Marked(
    "TIFF Files (*.tif)|*.tif|TARGA Files (*.tga)|*.tga|BMP Files (*.bmp)|*.bmp|GIF Files "
    "(*.gif)|*.gif|DIB Files (*.dib)|*.dib|PCX Files (*.pcx)|*.pcx|JPEG Files (*.jpg)|*.jpg|PNG "
    "Files (*.png)|*.png|");
constexpr const char* kLoading = Marked("GRAPHIZE is Loading the File");

/// A damaged picture takes the place of a good one only when the user wants it.
bool AcceptsDamage(const Desktop& desktop, const std::filesystem::path& path,
                   const std::string& damage) {
  return desktop.ShowMessage({.Text = "\"" + path.filename().string() + "\": " + damage +
                                      "\r\n\r\n" + Tr("Do you want to open it all the same ?"),
                              .Icon = MessageIcon::Exclamation,
                              .Buttons = MessageButtons::YesNo,
                              .DefaultIsNo = true}) == Answer::Yes;
}

/// Offers the reduction to black and white of a picture that has other colours, before it is shown;
/// the step has the answer, or gets it when it asks. False after Escape.
template <class Step>
bool OfferBlackAndWhite(Workspace& ws, const Desktop& desktop, Raster& picture, Step& step) {
  ws.status.ProgressVisible = false;
  if (IsBlackAndWhite(picture)) {
    step.BlackAndWhite = false;
    return true;
  }
  if (step.Ask) {
    step.BlackAndWhite = AskYesNo(desktop,
                                  "Image is not Black & White !\r\nAuto-Trace works best on BW "
                                  "images\r\n\r\nDo you want to reduce colors to BW ?");
    step.Threshold = ws.settings.Threshold;
  }
  desktop.ShowNow();
  if (!step.BlackAndWhite) return true;
  ws.status.Status = Tr("Reducing color depth...");
  desktop.ShowNow();
  return RunBeside(ShowProgress(ws, desktop), [&](PictureOperation& operation) {
    return ReduceToBlackAndWhite(picture, ThresholdOf(step.Threshold), operation);
  });
}

/// Of a picture that is too long, the part that the step names, or gets when it asks. False after
/// Cancel or Escape.
template <class Step>
bool FitToPositions(Workspace& ws, const Desktop& desktop, const std::filesystem::path& path,
                    Raster& picture, Step& step) {
  if (step.Part.empty() && !IsTooLong(picture.Width(), picture.Height())) return true;
  if (step.Ask && step.Part.empty())
    step.Part = AskForPart(desktop, path.filename().string(), picture.Width(), picture.Height());
  else if (step.Part.empty())
    throw RunTimeError(SizeRefusal(picture.Width(), picture.Height()));
  if (step.Part.empty()) return false;
  if (const std::string fault = PartFault(step.Part, picture.Width(), picture.Height());
      !fault.empty())
    throw RunTimeError(fault);
  ws.status.Status = Tr("Loading File ...");
  return TakePart(picture, step.Part, ShowProgress(ws, desktop));
}

/// The file's picture as an OpenStep or a ReloadStep wants it, which then says what was wrong with
/// the file and answered to the questions; decoded with progress in the status bar. Nothing after a
/// message (a file that cannot be read), a No to a damaged one, or Escape.
template <class Step>
std::optional<LoadedPicture> Decode(Workspace& ws, const Desktop& desktop,
                                    const std::filesystem::path& path, Step& step) {
  std::optional<LoadedPicture> loaded;
  std::string error;
  ws.window.Caption = Tr(kLoading);
  ws.window.Hourglass = true;
  desktop.ShowNow();
  try {
    std::error_code ignored;
    // What came in a project may have no file here.
    if (std::is_same_v<Step, ReloadStep> && ws.picture.Bytes != nullptr &&
        !std::filesystem::exists(path, ignored))
      loaded =
          DecodePicture(path.filename().string(), *ws.picture.Bytes, ShowProgress(ws, desktop));
    else
      loaded = LoadPicture(path, ShowProgress(ws, desktop));
  } catch (const RunTimeError& e) {
    error = e.what();
  }
  ws.status.ProgressVisible = false;
  ws.window.Hourglass = false;
  const bool isDamaged = loaded && !loaded->Warning.empty();
  if (isDamaged && !step.Ask && !step.Damaged)
    error = "\"" + path.filename().string() + "\": " + loaded->Warning;
  if (!loaded || !error.empty() ||
      (isDamaged && step.Ask && !AcceptsDamage(desktop, path, loaded->Warning))) {
    ws.status.Status = " ";
    ShowPictureCaption(ws);
    if (!error.empty()) Tell(desktop, error, MessageIcon::Exclamation);
    return {};
  }
  step.Damaged = isDamaged;
  const bool isWanted = FitToPositions(ws, desktop, path, loaded->Picture, step) &&
                        OfferBlackAndWhite(ws, desktop, loaded->Picture, step);
  ws.status.ProgressVisible = false;
  if (isWanted) return loaded;
  FreeBeside(std::exchange(loaded, std::nullopt));
  ws.status.Status = " ";
  ShowPictureCaption(ws);
  return {};
}

RecipePicture PictureOf(const Workspace& ws) {
  RecipePicture picture{.Width = ws.plot.Width(), .Height = ws.plot.Height()};
  if (!ws.picture.FromFile) return picture;
  picture.Path = ws.picture.ChosenPath;
  picture.FileSize = ws.picture.FileSize;
  picture.FileChecksum = ws.picture.FileChecksum;
  return picture;
}

/// The recipe's pictures get the one that was opened. A new recipe begins unless points or axes
/// stay.
void BeginRecipe(Workspace& ws, OpenStep& step) {
  const bool anew = !ws.calibration.AnyDefined() && !AnyPoints(ws.curves, ws.store);
  if (anew) {
    ForgetPlaces(ws);  // the steps name points by their ids
    ws.project = {};
    ws.recipe = {.Number = ws.recipe.Number + 1, .Replaced = std::move(ws.recipe.Steps)};
  }
  ws.recipe.Pictures.push_back(PictureOf(ws));
  step.Picture = static_cast<int>(ws.recipe.Pictures.size());
}

bool IsAddress(const std::filesystem::path& file) {
  return file.string().find("://") != std::string::npos;
}

/// A name of a type that cannot be written gets the first type's ending.
std::string ImageFileProposal(const std::string& name, std::int16_t format) {
  return format != kNoFormat ? name : std::filesystem::path(name).stem().string() + ".tif";
}

/// A project takes another way; its name or its first bytes tell.
bool IsProject(const std::filesystem::path& file) {
  if (LowerCase(file.extension().string()) == ".graphize") return true;
  constexpr std::size_t kHeader = 30;  // of the archive's first file
  std::string head;
  return !ReadFileStart(file, 128, head) && head.starts_with("PK") && head.size() > kHeader &&
         head.substr(kHeader).starts_with("mimetypeapplication/x-graphize");
}

void AskAndOpen(Workspace& ws, const Desktop& desktop, const char* title, const char* names,
                const char* filters) {
  OfferReset(ws, desktop);
  const auto path = desktop.ChooseFile(
      {.Title = Tr(title), .Folder = ws.picture.Folder, .FileName = names, .Filters = Tr(filters)});
  if (path && IsProject(*path))
    ws.projectAsked = *path;
  else if (path)
    Do(ws, desktop, OpenStep{.Path = *path, .Ask = true});
  KeepPictureUsable(ws);
}

}  // namespace

void OpenImage(Workspace& ws, const Desktop& desktop) {
  AskAndOpen(ws, desktop, Marked("Open Image File"), kAllImages, kOpenFilters);
}

void OpenOtherPicture(Workspace& ws, const Desktop& desktop) {
  AskAndOpen(ws, desktop, Marked("Open Other Picture"), "", kOtherFilters);
}

void OpenPicture(Workspace& ws, const Desktop& desktop, const std::filesystem::path& path) {
  if (IsProject(path)) return void(ws.projectAsked = path);
  OfferReset(ws, desktop);
  Do(ws, desktop, OpenStep{.Path = path, .Ask = true});
  KeepPictureUsable(ws);
}

Outcome Run(Workspace& ws, const Desktop& desktop, OpenStep& step) {
  if (step.InHand != nullptr) {
    LosePlaces(ws);
    LoadImage(ws, desktop, std::move(step.InHand->Picture), step.InHand->SourceName);
    step.InHand.reset();
    ws.picture = {.Name = "untitled.dat",
                  .Path = "",
                  .ChosenPath = {},
                  .Folder = ws.picture.Folder,
                  .FromFile = false,
                  .WithoutFile = true};
  } else {
    ws.status.Status = Tr("Loading File ...");
    std::optional<LoadedPicture> loaded = Decode(ws, desktop, step.Path, step);
    if (!loaded) return Nothing("the picture was not opened");
    const bool again =
        ws.picture.FileSize == loaded->FileSize && ws.picture.FileChecksum == loaded->FileChecksum;
    again ? CarryToOpened(ws, loaded->Picture.Height()) : LosePlaces(ws);
    ws.picture = {.Name = LowerCase(step.Path.filename().string()),
                  .Path = LowerCase(step.Path.string()),
                  .ChosenPath = step.Path,
                  .Folder = step.Path.parent_path(),
                  .FileSize = loaded->FileSize,
                  .FileChecksum = loaded->FileChecksum,
                  .FromFile = true,
                  .WithoutFile = false};
    LoadImage(ws, desktop, std::move(loaded->Picture), ws.picture.Name);
    ws.status.Status = " ";
    if (step.Ask) NoteOpened(ws.opened, step.Path);
  }
  BeginRecipe(ws, step);
  return {};
}

void OpenFiles(Workspace& ws, const Desktop& desktop,
               const std::vector<std::filesystem::path>& files) {
  const auto named = [](const std::filesystem::path& file) {
    const std::filesystem::path name = file.has_filename() ? file : file.parent_path();
    return '"' + (IsAddress(file) ? file : name.filename()).string() + '"';
  };
  const std::filesystem::path* chosen = nullptr;
  constexpr int kNamed = 10;
  int others = 0;
  std::string names, told;
  std::error_code ignored;
  for (const std::filesystem::path& file : files) {
    if (IsAddress(file))
      told +=
          Tr("%1 is not a file of this computer. Please save it here first.", named(file)) + "\r\n";
    else if (std::filesystem::is_directory(file, ignored))
      told += Tr("%1 is a folder. Please choose a picture in it.", named(file)) + "\r\n";
    else if (chosen == nullptr)
      chosen = &file;
    else if (++others <= kNamed)
      names += (others == 1 ? "" : ", ") + named(file);
  }
  if (chosen != nullptr) OpenPicture(ws, desktop, *chosen);
  if (others > kNamed) names = Tr("%1 and %2 more", names, others - kNamed);
  if (others > 0) told += Tr("One picture is worked on at a time. Not opened: %1.", names) + "\r\n";
  if (!told.empty()) Tell(desktop, TrimRight(told), MessageIcon::Exclamation);
}

bool CanReload(const Workspace& ws) {
  return ws.commands.Picture && ws.picture.FromFile && !ws.picture.ChosenPath.empty();
}

Outcome Run(Workspace& ws, const Desktop& desktop, ReloadStep& step) {
  if (!ws.picture.FromFile || ws.picture.ChosenPath.empty())
    return Refused("the picture has come from no file");
  std::optional<LoadedPicture> loaded = Decode(ws, desktop, ws.picture.ChosenPath, step);
  if (!loaded) return Nothing("the picture was not read again");
  SetPicture(ws.plot, std::move(loaded->Picture));
  ws.colours.reset();
  CarryToOpened(ws, ws.plot.Height());
  ws.window.Caption = Tr("GRAPHIZE is Resizing ....");
  desktop.ShowNow();
  ShowFromCorner(ws.view, ws.plot.Width(), ws.plot.Height());
  RedrawBlockers(ws.blockers, ws.plot, ws.settings);
  ShowPictureSize(ws);
  ShowPictureCaption(ws);
  ws.status.Status = " ";
  return {};
}

void TakeInHand(Workspace& ws, const Desktop& desktop, Raster picture, const char* sourceName) {
  const auto inHand = std::make_shared<PictureInHand>();
  inHand->Picture = std::move(picture);
  inHand->SourceName = sourceName;
  Do(ws, desktop, OpenStep{.InHand = inHand});
}

void PasteImage(Workspace& ws, const Desktop& desktop) {
  Raster picture = desktop.ClipboardPicture();
  const std::vector<std::filesystem::path> files = desktop.ClipboardFiles();
  if (picture.IsEmpty() && !files.empty()) return OpenFiles(ws, desktop, files);
  if (picture.IsEmpty()) {
    Tell(desktop, "No Bitmap in Clipboard");
  } else {
    if (const std::string refusal = SizeRefusal(picture.Width(), picture.Height());
        !refusal.empty())
      throw RunTimeError(refusal);
    if (ws.calibration.AnyDefined() && AskYesNo(desktop, "Reset Axis Definisions ?"))
      Do(ws, desktop, ResetStep{});
    ReleaseButtons(ws, desktop);
    ws.status.Status = Tr("Copying ClipBorad ...");
    ws.window.Caption = Tr("GRAPHIZE is Copying ClipBorad");
    ws.window.Hourglass = true;
    desktop.ShowNow();
    TakeInHand(ws, desktop, std::move(picture), Marked("Pasted Plot"));
  }
  ws.status.Status = " ";
  ws.window.Hourglass = false;
}

bool CanSaveImage(const Workspace& ws) {
  return ws.plot.IsPresent();
}

void SaveImageAs(Workspace& ws, const Desktop& desktop) {
  if (!CanSaveImage(ws)) return;
  std::int16_t format = 0, option = 0;
  GetFileFormat(ws.picture.Name, format, option);
  const bool untitled = ws.picture.WithoutFile;
  const auto path = desktop.ChooseFile(
      {.ForSaving = true,
       .Title = Tr("Save Image File"),
       .Folder = ws.picture.Folder,
       .FileName = untitled ? "untitled.tif" : ImageFileProposal(ws.picture.Name, format),
       .Filters = Tr(kSaveFilters),
       .FilterIndex = untitled || format == 0 ? 1 : format,
       .OnlyFilterTypes = true});
  if (!path) return;
  const std::string lowerPath = LowerCase(path->string());
  GetFileFormat(lowerPath, format, option);
  ws.status.Status = Tr("Saving Image to: %1", lowerPath);
  ws.window.Hourglass = true;
  desktop.ShowNow();
  std::string error;
  try {
    const BasePictureShown base(ws.plot);
    const bool saved =
        SavePicture(*path, format, option, ws.plot.Pixels, ShowProgress(ws, desktop));
    ws.status.Status = saved ? Tr("Image was successfully saved") : " ";
  } catch (const RunTimeError& e) {
    ws.status.Status = " ";
    error = e.what();
  }
  ws.status.ProgressVisible = false;
  ws.window.Hourglass = false;
  if (!error.empty()) Tell(desktop, error, MessageIcon::Critical);
}

void OfferReset(Workspace& ws, const Desktop& desktop) {
  if (ws.calibration.AnyDefined() && AskYesNo(desktop, "Clear data and reset axis definisions ?"))
    Do(ws, desktop, ResetStep{});
  ReleaseButtons(ws, desktop);
}

Outcome Run(Workspace& ws, const Desktop& desktop, const ResetStep&) {
  ResetCurves(ws.curves, ws.store);
  DeleteAllData(ws.store, ws.commands, desktop, false);
  ClearBlockers(ws.blockers, ws.plot, ws.commands);
  RefreshPlot(ws);
  InitAxisDefFrame(ws.calibration, ws.axisPanel);
  ChoosePixelDisplay(ws, desktop);
  ws.commands.Picture = false;
  ws.commands.Graphize = false;
  ws.commands.GridBuster = false;
  ws.mode = Mode::None;
  ClearReadOut(ws.readOut);
  ws.picture.FromFile = true;
  ws.picture.WithoutFile = false;
  RenewInkCheck(ws);  // questions may follow, over what is shown
  ShowFrame(ws, "Graphize");
  return {};
}

}  // namespace graphize
