#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "capture/point_store.h"
#include "data/number_format.h"
#include "data/row_errors.h"

namespace graphize {

/// The data list's point lines from the first row to the last, joined by CR LF: the clipboard text.
/// `errors` has one element a row, whose two numbers stand behind the point; or none.
std::string PointLines(const PointStore& store, const NumberFormats& formats, bool decimalPoint,
                       std::span<const RowError> errors = {});

/// The data file: the title unless it is empty, then the point lines, each line ending in CR LF.
std::string DataFileText(const std::string& title, const PointStore& store,
                         const NumberFormats& formats, bool decimalPoint,
                         std::span<const RowError> errors = {});

/// Writes the data file at `path`, replacing what is there (base/whole_file.h). Every failure is a
/// RunTimeError with the system's description, and the old file is as it was.
void WriteDataFile(const std::filesystem::path& path, const std::string& text);

/// The file name proposed for data of an image: "Fig3.TIF" gives "fig3.dat", "p1" gives "p1.dat".
/// An empty name is a RunTimeError.
std::string DataFileProposal(const std::string& imageFileName,
                             const std::string& extension = ".dat");

}  // namespace graphize
