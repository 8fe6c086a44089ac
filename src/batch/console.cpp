#include "batch/console.h"

namespace graphize {

std::string OneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
    if (c != '\r' && c != '\n')
      line += isControl ? '?' : c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

Console::Console() {
  callbacks_.ShowMessage = [this](const Message& message) {
    // The list box that one message begins with is not here.
    const std::size_t sums = message.Text.find("Total curve length");
    const std::string text = OneLine(message.Text.substr(sums == std::string::npos ? 0 : sums));
    const bool note =
        message.Icon == MessageIcon::Information && message.Buttons == MessageButtons::Ok;
    (note ? Notes : Problems).push_back(text);
    return message.Buttons == MessageButtons::Ok ? Answer::Ok : Answer::No;
  };
  callbacks_.Prompt = [](const TextPrompt&) { return std::string(); };
  callbacks_.ChooseFile = [](const FileQuestion&) { return std::nullopt; };
  callbacks_.ChooseFiles = [](const FileQuestion&) { return std::vector<std::filesystem::path>(); };
  callbacks_.ClipboardHasPicture = [] { return false; };
  callbacks_.ClipboardPicture = [] { return Raster(); };
  callbacks_.ClipboardFiles = [] { return std::vector<std::filesystem::path>(); };
  callbacks_.CopyText = [](const std::string&) {};
  callbacks_.ShowNow = callbacks_.Pump = [] {};
  callbacks_.EscapeHeld = [] { return false; };
  callbacks_.MovePointer = callbacks_.PointAt = [](int, int) { return false; };
  callbacks_.PointerOverPlot = [] { return false; };
  callbacks_.StartProgram = [](const auto&) { return false; };
}

}  // namespace graphize
