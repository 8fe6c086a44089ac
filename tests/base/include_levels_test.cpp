#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/include_levels.h"
#include "support/temporary_folder.h"

namespace graphize::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(IncludeLevels, ThisProgramKeepsThem) {
  EXPECT_THAT(BrokenIncludes(GRAPHIZE_SOURCE_DIR), IsEmpty());
}

/// A small tree with the table of this program and one header in each folder.
class MadeUpTree {
 public:
  MadeUpTree() {
    namespace fs = std::filesystem;
    fs::create_directories(folder_ / "src");
    fs::copy_file(fs::path(GRAPHIZE_SOURCE_DIR) / "src/README.md", folder_ / "src/README.md");
    for (const char* file :
         {"src/base/a.h", "src/desktop/a.h", "src/settings/a.h", "src/settings/a_dialog.h",
          "src/raster/a.h", "src/raster/a_view.h", "src/codecs/picbuf/a.h", "src/codecs/direct/a.h",
          "src/data/a.h", "src/workspace/a.h", "src/widgets/a.h", "src/app/a.h",
          "tests/support/a.h"})
      WriteBytes(folder_ / file, "#pragma once\n");
  }
  void Write(const std::string& file, const std::string& bytes) {
    WriteBytes(folder_ / file, bytes);
  }
  std::vector<std::string> Broken() const { return BrokenIncludes(folder_.Path()); }

 private:
  TemporaryFolder folder_;
};

struct Include {
  const char* File;
  const char* Header;
};

TEST(IncludeLevels, EachRuleIsKept) {
  const Include allowed[] = {
      {"src/raster/b.cpp", "\"settings/a.h\""},
      {"src/base/b.cpp", "<string_view>"},
      {"src/codecs/picbuf/b.cpp", "<Magick++.h>"},
      {"src/codecs/direct/b.cpp", "<png.h>"},
      {"src/settings/b_dialog.cpp", "\"raster/a_view.h\""},
      {"src/app/b.cpp", "\"settings/a_dialog.h\""},
      {"tests/data/a_test.cpp", "\"support/a.h\""},
      {"tests/settings/a_dialog_test.cpp", "<QApplication>"},
  };
  const Include broken[] = {
      {"src/base/b.cpp", "\"desktop/a.h\""},           // upward
      {"src/desktop/b.cpp", "\"settings/a.h\""},       // sideways
      {"src/workspace/b.cpp", "\"raster/a_view.h\""},  // a widget
      {"src/base/b.cpp", "\"../raster/a.h\""},         // hides where it leads
      {"src/workspace/b.h", "<QtCore/QString>"},
      {"src/codecs/b.cpp", "\"codecs/picbuf/a.h\""},
      {"src/codecs/direct/b.cpp", "<Magick++.h>"},
      {"src/codecs/picbuf/b.cpp", "\"codecs/direct/a.h\""},
      {"src/app/b.cpp", "<Magick++/Image.h>"},
      {"src/base/b.cpp", "<unistd.h>"},
      {"tests/base/a_test.cpp", "\"raster/a.h\""},
      {"src/helpers/b.cpp", "<string>"},  // not in the table
  };
  const auto check = [](const Include& include, const auto& matcher) {
    MadeUpTree tree;
    tree.Write(include.File, std::string("#include ") + include.Header + "\n");
    EXPECT_THAT(tree.Broken(), matcher) << include.File << " " << include.Header;
  };
  for (const Include& include : allowed) check(include, IsEmpty());
  for (const Include& include : broken) check(include, ElementsAre(HasSubstr(include.File)));
}

}  // namespace
}  // namespace graphize::test
