#include "batch/other_pictures_list.h"

#include <cstdint>
#include <limits>

#include "base/json.h"
#include "base/number_pattern.h"
#include "base/run_time_error.h"
#include "base/tokens.h"
#include "base/translation.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;
using State = OtherPicture::State;

constexpr std::size_t kMostPictures = 1u << 20;

/// The list, as it is written.
struct List {
  std::vector<OtherPicture> Pictures;
  fs::path Folder;
  std::string Format = "graphize list of pictures";
  int Version = 1;
};

// The fields of each record, for writing and reading alike.

template <class Io>
void Fields(Io& io, OtherPicture& picture, const fs::path& folder) {
  std::string file =
      (picture.File.parent_path() == folder ? picture.File.filename() : picture.File).string();
  io.Text("picture", file);
  io.template Choice<State>("state", picture.Is,
                            {{State::Waiting, "waiting"},
                             {State::Done, "done"},
                             {State::Doubtful, "doubtful"},
                             {State::Refused, "refused"},
                             {State::Failed, "failed"},
                             {State::Mended, "mended"},
                             {State::There, "there before"}});
  io.Integer("points", picture.Points, 0, std::numeric_limits<int>::max());
  std::string worst = picture.Worst ? RoundedText(*picture.Worst, 1000) : std::string();
  io.Text("worst_residual", worst);
  io.Text("remark", picture.Reason);
  io.Integer("project_checksum", picture.Checksum, 0, std::numeric_limits<std::uint32_t>::max());
  std::int64_t time = picture.Written.time_since_epoch().count();
  io.Integer("project_time", time, std::numeric_limits<std::int64_t>::min(),
             std::numeric_limits<std::int64_t>::max());
  if constexpr (requires { io.Has("picture"); }) {
    picture.File = folder / file;
    picture.Worst = WholeNumberText(worst);
    constexpr double kMost = 1e6;  // pixels
    if (!worst.empty() && !(picture.Worst && *picture.Worst >= 0 && *picture.Worst < kMost))
      io.Fail("worst_residual", "is no residual");
    picture.Written = fs::file_time_type(fs::file_time_type::duration(time));
  }
}

template <class Io>
void Fields(Io& io, List& list) {
  std::string format = list.Format;
  io.Text("format", format);
  if constexpr (requires { io.Has("format"); })
    if (format != list.Format) io.Fail("format", "is none of a list of pictures");
  int version = list.Version;
  io.Integer("version", version, 1, std::numeric_limits<int>::max());
  if (version > list.Version)
    throw RunTimeError(Tr("it is of version %1, from a newer program; this one reads version %2",
                          version, list.Version));
  io.List("pictures", list.Pictures, kMostPictures,
          [&](OtherPicture& picture) { Fields(io, picture, list.Folder); });
}

}  // namespace

std::string OtherPicturesText(std::vector<OtherPicture> pictures, const fs::path& folder) {
  List list{.Pictures = std::move(pictures), .Folder = folder};
  JsonWriter writer;
  Fields(writer, list);
  return writer.Take();
}

std::vector<OtherPicture> ReadOtherPictures(std::string_view text, const fs::path& folder) {
  List list{.Pictures = {}, .Folder = folder};
  JsonReader reader(text);
  Fields(reader, list);
  return std::move(list.Pictures);
}

}  // namespace graphize
