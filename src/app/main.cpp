#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "app/end_signals.h"
#include "app/fonts.h"
#include "app/language.h"
#include "app/main_window.h"
#include "app/program_style.h"
#include "base/child_process.h"
#include "batch/batch.h"
#include "codecs/picbuf.h"
#include "scanner/scanner.h"

namespace {

/// The settings file in the user's configuration folder.
std::filesystem::path SettingsPath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  return std::filesystem::path(folder.toStdString()) / "graphize" / "graphize.ini";
}

/// Where sessions are kept. The system's own default where the user has set none.
std::filesystem::path SessionsFolder() {
  // A relative path in the variable is to be ignored.
  std::filesystem::path state = qEnvironmentVariable("XDG_STATE_HOME").toStdString();
  if (!state.is_absolute())
    state = std::filesystem::path(QDir::homePath().toStdString()) / ".local/state";
  return state / "graphize/sessions";
}

/// The help and the translations stand beside the program, as they do where it was built, or where
/// an installed program has what it shares between machines.
std::filesystem::path Shared(const char* name) {
  const std::filesystem::path folder = QApplication::applicationDirPath().toStdString();
  std::filesystem::path beside = folder / name;
  std::error_code ignored;
  if (std::filesystem::exists(beside, ignored)) return beside;
  return (folder / "../share/graphize" / name).lexically_normal();
}

/// A picture as the command line names it: a path from where the user stands, or a file's URI.
std::filesystem::path PicturePath(const QString& word) {
  QString path = word;
  if (word.startsWith(QLatin1String("file://"), Qt::CaseInsensitive)) {
    QUrl url(word);
    if (url.host() == QLatin1String("localhost")) url.setHost({});
    path = url.toLocalFile();
  }
  std::error_code ignored;
  return std::filesystem::absolute(path.toStdString(), ignored);
}

/// Until the application stands: a display that cannot be opened is told in one line.
void TellOnlyTheEnd(QtMsgType type, const QMessageLogContext&, const QString&) {
  if (type != QtFatalMsg) return;
  std::fputs("Graphize cannot open a window on this display.\n", stderr);
  std::_Exit(1);
}

int RunWindow(int argc, char** argv) {
  const std::jthread fonts = graphize::ReadFonts();
  qInstallMessageHandler(TellOnlyTheEnd);
  QApplication application(argc, argv);
  qInstallMessageHandler(nullptr);
  graphize::SetLook();
  QApplication::setApplicationName(QStringLiteral("Graphize"));
  QApplication::setDesktopFileName(QStringLiteral("graphize"));

  // The picture is named from where the user stands; the program itself works in its own folder.
  std::vector<std::filesystem::path> pictures;
  for (const QString& word : QApplication::arguments().mid(1))
    pictures.push_back(PicturePath(word));
  if (!pictures.empty()) graphize::PrepareToDecode();  // while the window is being made
  std::error_code ignored;
  const std::filesystem::path startFolder = std::filesystem::current_path(ignored);
  std::filesystem::current_path(QApplication::applicationDirPath().toStdString(), ignored);

  graphize::SpeakLanguage(SettingsPath(), Shared("translations"));
  graphize::MainWindow window({.Settings = SettingsPath(),
                               .StartFolder = startFolder,
                               .Help = Shared("Graphize.hlp"),
                               .Sessions = SessionsFolder()});
  const graphize::EndSignals endSignals;
  QObject::connect(&endSignals, &graphize::EndSignals::EndAsked, &window,
                   &graphize::MainWindow::LeaveForLater);
  window.Start();
  window.show();
  if (!pictures.empty()) window.OpenWhenShown(pictures);
  return window.IsLeaving() ? 0 : QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is told like a full disk
  std::signal(SIGCHLD, SIG_DFL);  // whoever ignores it learns nothing of how a decoder has ended
  graphize::FillStandardStreams();
  // What needs no window starts without any of its libraries' work.
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (graphize::IsBatch(words))
    return graphize::RunBatch(words, {std::cout, std::cerr, isatty(STDERR_FILENO) == 1, &std::cin});

  const int status = RunWindow(argc, argv);
  graphize::EndScanning();
  // The exit handlers would take a hanging driver's libraries away from under it, or wait for a
  // lock of the C library that a driver's thread held when the driver cancelled it.
  std::cout.flush();
  std::fflush(nullptr);
  std::_Exit(status);
}
