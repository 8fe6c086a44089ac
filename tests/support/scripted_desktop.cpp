#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

namespace graphize::test {

namespace {

template <typename T>
T TakeFirst(std::deque<T>& queue) {
  T first = std::move(queue.front());
  queue.pop_front();
  return first;
}

}  // namespace

ScriptedDesktop::ScriptedDesktop() {
  desktop_.ShowMessage = [this](const Message& message) {
    Messages.push_back(message);
    if (messages_.empty()) {
      ADD_FAILURE() << "unexpected message: " << message.Text;
      return Answer::Cancel;
    }
    const auto [text, answer] = TakeFirst(messages_);
    EXPECT_NE(message.Text.find(text), std::string::npos)
        << "expected a message with \"" << text << "\", got \"" << message.Text << '"';
    return answer;
  };
  desktop_.Prompt = [this](const TextPrompt& prompt) {
    Prompts.push_back(prompt);
    if (prompts_.empty()) {
      ADD_FAILURE() << "unexpected prompt: " << prompt.Prompt;
      return std::string();
    }
    return TakeFirst(prompts_);
  };
  desktop_.ChooseFile =
      [this](const FileQuestion& question) -> std::optional<std::filesystem::path> {
    FileQuestions.push_back(question);
    if (files_.empty()) {
      ADD_FAILURE() << "unexpected file question: " << question.Title;
      return std::nullopt;
    }
    const auto path = TakeFirst(files_);
    if (path.empty()) return std::nullopt;
    return path;
  };
  desktop_.ChooseFiles = [this](const FileQuestion& question) {
    const auto file = desktop_.ChooseFile(question);
    return file ? std::vector{*file} : std::vector<std::filesystem::path>();
  };
  desktop_.ClipboardHasPicture = [this] { return !Clipboard.IsEmpty() || !ClipboardFiles.empty(); };
  desktop_.ClipboardPicture = [this] { return Clipboard.Clone(); };
  desktop_.ClipboardFiles = [this] { return ClipboardFiles; };
  desktop_.CopyText = [this](const std::string& text) { CopiedText = text; };
  desktop_.ShowNow = desktop_.Pump = [this] {
    ++Pumps;
    if (OnPump) OnPump();
  };
  desktop_.EscapeHeld = [this] { return EscapeAfter >= 0 && escapeQuestions_++ >= EscapeAfter; };
  desktop_.MovePointer = [this](int dx, int dy) {
    if (!PointerMoves) return false;
    PointerX += dx;
    PointerY += dy;
    return true;
  };
  desktop_.PointAt = [this](int x, int y) {
    if (!PointerMoves) return false;
    PointerX = x;
    PointerY = y;
    return true;
  };
  desktop_.PointerOverPlot = [this] { return PointerOver; };
  desktop_.StartProgram = [this](const std::vector<OutsideProgram>& programs) {
    for (const OutsideProgram& program : InOrderFor(CurrentDesktop, programs)) {
      if (!Installed.contains(program.Name)) continue;
      Started.push_back(program);
      return true;
    }
    return false;
  };
}

ScriptedDesktop::~ScriptedDesktop() {
  for (const auto& [text, answer] : messages_) ADD_FAILURE() << "no message came: " << text;
  for (const auto& prompt : prompts_) ADD_FAILURE() << "no prompt came for: " << prompt;
  for (const auto& file : files_) ADD_FAILURE() << "no file question came for: " << file;
}

void ScriptedDesktop::ExpectMessage(const std::string& text, Answer answer) {
  messages_.emplace_back(text, answer);
}

void ScriptedDesktop::ExpectPrompt(const std::string& answer) {
  prompts_.push_back(answer);
}

void ScriptedDesktop::ExpectFile(const std::filesystem::path& path) {
  files_.push_back(path);
}

}  // namespace graphize::test
