#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "raster/picture_operation.h"
#include "session/kept_document.h"

namespace graphize {

// A project: one file with the picture, its edits, axes, curves, blockers, options and steps. It is
// a ZIP archive whose files are stored as they are: "mimetype", "project.json",
// "picture/original.EXT" (the picture's file as it was opened), "picture/base.png" where the
// picture is not that any more, "picture/colours.png" where an ink alone is shown and the picture
// with its colours is not the file either, "picture/faint.csv", "picture/last-edit.csv" and
// "picture/marks.csv" (session/kept_raster.h), and the parts of session/kept_text.h.

inline constexpr const char* kProjectEnding = ".graphize";
inline constexpr const char* kProjectType = "application/x-graphize";

/// The file's content; nothing when Escape stopped it. Equal documents give equal bytes.
/// RunTimeError with the reason.
std::optional<std::string> ProjectBytes(Workspace& ws, const Desktop& desktop);

/// A project as it was read.
struct ProjectContent {
  KeptDocument Kept;
  Raster Picture;  // without marks
  Raster Colours;  // Workspace::colours; empty: there are none
  OverdrawnPixels LastEdit, Marks;
  // Why there is a white page instead, a sentence; else empty. The picture's file as it was opened,
  // where that alone is sound, is kept.
  std::string PictureFault;
};

enum class ProjectPicture { Decoded, Blank };

/// Reads a project, its picture decoded or, where nobody looks at it, left without pixels. Nothing
/// when `progress` stopped it. RunTimeError with the reason for what is no project, damaged or
/// newer.
std::optional<ProjectContent> ReadProject(std::string_view bytes, ProjectPicture picture,
                                          const PictureProgress& progress = {});
/// It takes the place of the document in the workspace.
void PutProject(Workspace& ws, const Desktop& desktop, ProjectContent&& project);

/// The steps of a project as the text of a recipe, and the picture's file as it was opened, where
/// it is in the project. RunTimeError as above.
struct ProjectSteps {
  std::string Recipe, Picture;
};
ProjectSteps ReadProjectSteps(std::string_view bytes);

/// Whether the picture's file as it was opened is in this project.
bool HoldsPictureFile(std::string_view bytes);

/// The bytes of a project's file. RunTimeError with the system's reason.
std::string ReadProjectFile(const std::filesystem::path& path);

}  // namespace graphize
