#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/include_levels.h"
#include "support/temporary_folder.h"

namespace graphize {
namespace {

using test::BrokenIncludes;
using test::TemporaryFolder;
using test::WriteBytes;
using testing::Contains;
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
          "src/image/a.h", "src/image/a_view.h", "src/image/picbuf/a.h", "src/calibration/a.h",
          "src/capture/a.h", "src/data/a.h", "src/extraction/a.h", "src/workspace/a.h",
          "src/batch/a.h", "src/widgets/a.h", "src/app/a.h", "tests/support/a.h", "tests/data/b.h"})
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

TEST(IncludeLevels, AllowedIncludesPass) {
  const Include cases[] = {
      {"src/base/b.cpp", "\"base/a.h\""},
      {"src/image/b.cpp", "\"settings/a.h\""},
      {"src/workspace/b.cpp", "\"extraction/a.h\""},
      {"src/batch/b.cpp", "\"workspace/a.h\""},
      {"src/base/b.cpp", "<string_view>"},
      {"src/image/picbuf/b.cpp", "<Magick++.h>"},
      {"src/image/picbuf/b.h", "<magick/api.h>"},
      {"src/image/picbuf/b.cpp", "\"image/picbuf/a.h\""},
      {"src/image/picbuf/b.cpp", "\"image/a.h\""},
      {"src/image/scanner/options.cpp", "<sane/sane.h>"},
      {"src/settings/b_dialog.cpp", "\"workspace/a.h\""},
      {"src/settings/b_dialog.cpp", "\"image/a_view.h\""},
      {"src/settings/b_dialog.cpp", "\"widgets/a.h\""},
      {"src/settings/b_dialog.cpp", "<QDialog>"},
      {"src/widgets/b.cpp", "<QtWidgets/QLabel>"},
      {"src/app/b.cpp", "\"settings/a_dialog.h\""},
      {"src/app/b.cpp", "\"batch/a.h\""},
      {"src/app/b.cpp", "<xcb/xcb.h>"},
      {"src/app/b_view.cpp", "\"app/a.h\""},
      {"tests/data/a_test.cpp", "\"support/a.h\""},
      {"tests/data/a_test.cpp", "\"data/a.h\""},
      {"tests/data/a_test.cpp", "\"data/b.h\""},
      {"tests/data/a_test.cpp", "<sys/stat.h>"},
      {"tests/support/b.h", "\"workspace/a.h\""},
      {"tests/settings/a_dialog_test.cpp", "\"settings/a_dialog.h\""},
      {"tests/settings/a_dialog_test.cpp", "<QApplication>"},
      {"tests/app/a_test.cpp", "<QTest>"},
  };
  for (const auto& [file, header] : cases) {
    MadeUpTree tree;
    tree.Write(file, std::string("#include ") + header + "\n");
    EXPECT_THAT(tree.Broken(), IsEmpty()) << file << " " << header;
  }
}

TEST(IncludeLevels, BrokenIncludesAreFound) {
  const Include cases[] = {
      // Upward, sideways, through another folder's widget.
      {"src/base/b.cpp", "\"desktop/a.h\""},
      {"src/base/deep/b.h", "\"image/a.h\""},
      {"src/desktop/b.cpp", "\"settings/a.h\""},
      {"src/image/b.h", "\"calibration/a.h\""},
      {"src/data/b.cpp", "\"extraction/a.h\""},
      {"src/extraction/b.cpp", "\"workspace/a.h\""},
      {"src/batch/b.cpp", "\"app/a.h\""},
      {"src/settings/b.cpp", "\"settings/a_dialog.h\""},
      {"src/workspace/b.cpp", "\"image/a_view.h\""},
      {"src/workspace/b.cpp", "\"widgets/a.h\""},
      {"src/batch/b.cpp", "\"image/a_view.h\""},
      {"src/settings/b_dialog.cpp", "\"app/a.h\""},
      {"src/settings/b_dialog.cpp", "\"batch/a.h\""},
      // Paths that hide where they lead.
      {"src/base/b.cpp", "\"a.h\""},
      {"src/base/b.cpp", "\"../image/a.h\""},
      {"src/image/b.cpp", "\"image/../workspace/a.h\""},
      {"src/base/b.cpp", "\"absent/a.h\""},
      {"src/image/b.cpp", "\"support/a.h\""},
      {"src/image/b.cpp", "HEADER"},
      // Libraries.
      {"src/image/b.cpp", "<QImage>"},
      {"src/workspace/b.h", "<QtCore/QString>"},
      {"src/desktop/b.h", "<qglobal.h>"},
      {"src/image/picbuf/b.cpp", "<QImage>"},
      {"src/image/picbuf/b.cpp", "\"workspace/a.h\""},
      {"src/image/b.cpp", "\"image/picbuf/a.h\""},
      {"src/image/picbuf.h", "<Magick++.h>"},
      {"src/image/picbuf_tools.cpp", "<magick/api.h>"},
      {"src/app/b.cpp", "<Magick++/Image.h>"},
      {"src/image/a_view.cpp", "<sane/sane.h>"},
      {"src/image/picbuf/b.cpp", "<sane/sane.h>"},
      {"src/base/b.cpp", "<unistd.h>"},
      {"src/desktop/b.cpp", "<xcb/xcb.h>"},
      // Tests.
      {"tests/base/a_test.cpp", "\"image/a.h\""},
      {"tests/extraction/a_test.cpp", "\"data/b.h\""},
      {"tests/settings/a_test.cpp", "\"settings/a_dialog.h\""},
      {"tests/data/a_test.cpp", "<QTest>"},
      {"tests/support/b.cpp", "\"widgets/a.h\""},
      {"tests/support/b.cpp", "\"batch/a.h\""},
      {"tests/support/b.cpp", "<QString>"},
      // Files outside the table's folders.
      {"src/b.cpp", "<string>"},
      {"src/helpers/b.cpp", "<string>"},
      {"src/support/b.cpp", "<string>"},
      {"tests/helpers/b.cpp", "<string>"},
  };
  for (const auto& [file, header] : cases) {
    MadeUpTree tree;
    tree.Write(file, std::string("#include ") + header + "\n");
    EXPECT_THAT(tree.Broken(), ElementsAre(HasSubstr(file))) << file << " " << header;
  }
}

TEST(IncludeLevels, EveryWayToWriteAnIncludeIsSeen) {
  MadeUpTree tree;
  tree.Write("src/base/b.cpp",
             "// #include \"app/a.h\"\n"
             "#include<vector>\n"
             "  #  include\t\"app/a.h\"  // why\r\n"
             "#ifdef X\n#include\"image/a.h\"\n#endif\n"
             "const char* text = \"#include <QImage>\";\n"
             "#include <QImage>");
  EXPECT_THAT(tree.Broken(), ElementsAre(HasSubstr("src/base/b.cpp:3: \"app/a.h\""),
                                         HasSubstr("src/base/b.cpp:5: \"image/a.h\""),
                                         HasSubstr("src/base/b.cpp:8: <QImage>")));
}

TEST(IncludeLevels, AnUnusableTableIsAFailure) {
  for (const char* table : {"", "| level | folder |\n|---|---|\n", "| 0 | `base/` | numbers |\n",
                            "| 0 | `base/` | |\n| 1 | `base/` | |\n| 2 | `widgets/` | |\n"
                            "| 3 | `app/` | |\n"}) {
    MadeUpTree tree;
    tree.Write("src/README.md", table);
    EXPECT_THAT(tree.Broken(), Contains(HasSubstr("src/README.md"))) << table;
  }
}

}  // namespace
}  // namespace graphize
