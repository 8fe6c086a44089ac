#include "commands/help_commands.h"

#include "base/translation.h"
#include "base/version.h"
#include "base/whole_file.h"
#include "codecs/picbuf.h"

namespace graphize {

void ShowHelp(Workspace& ws, const Desktop& desktop, const std::string& chapter) {
  constexpr std::size_t kLargest = 64 << 20;
  if (const std::error_code error = ReadWholeFile(ws.help.File, kLargest, ws.help.Text)) {
    Tell(desktop,
         Tr("The help file %1 cannot be read: %2.\r\nInstalling Graphize again brings it back.",
            ws.help.File.string(), error.message()),
         MessageIcon::Exclamation);
    return;
  }
  ws.help.Chapter = chapter;
  ws.help.Asked = true;
}

void ShowAbout(Workspace& ws) {
  ws.about = {.Title = kTitle,
              .Version = Tr("Version %1", std::string(ProgramVersion())),
              .Libraries = std::string("GraphicsMagick ") + PictureLibraryVersion(),
              .Decoding = MissingDecodeProtection()};
  if (const std::string scanner = ScannerLibraryVersion(); !scanner.empty())
    ws.about.Libraries += ", SANE " + scanner;
  ws.form = Form::About;
}

}  // namespace graphize
