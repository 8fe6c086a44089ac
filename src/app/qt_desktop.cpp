#include "app/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QFileDialog>
#include <QImageReader>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <optional>
#include <utility>

#include "app/clipboard.h"
#include "base/tokens.h"
#include "base/translation.h"
#include "raster/plot_view.h"
#include "raster/size_limits.h"
#include "widgets/form_dialog.h"
#include "widgets/show.h"

namespace graphize {

namespace {

/// Of Qt's own texts, those that must be there without its catalogues.
[[maybe_unused]] constexpr const char* kQtTexts[] = {Marked("&Yes"), Marked("&No"),
                                                     Marked("Cancel"), Marked("OK")};

constexpr qint64 kPumpEvery = 30;  // ms: often enough to look live, cheap enough for a tracer
constexpr qint64 kLongCommand =
    250;  // ms: input that comes later is meant for the window as it was

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Critical:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return QMessageBox::Ok;
    case MessageButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
  }
  return QMessageBox::Ok;
}

Answer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::No:
      return Answer::No;
    case QMessageBox::Cancel:
      return Answer::Cancel;
    default:
      return Answer::Ok;
  }
}

/// "BMP Files (*.bmp)|*.bmp|..." as the file dialog's list of filters.
QStringList FiltersOf(const std::string& filters) {
  QStringList result;
  const QStringList parts = ToQString(filters).split(u'|');
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString name = parts[i];
    if (const qsizetype bracket = name.indexOf(QLatin1String(" (")); bracket >= 0)
      name.truncate(bracket);
    QString patterns = parts[i + 1];
    result << name + QLatin1String(" (") + patterns.replace(u';', u' ') + u')';
  }
  return result;
}

/// A name typed without an ending gets that of the chosen type.
void FollowFilter(QFileDialog& dialog) {
  const auto follow = [&dialog](const QString& filter) {
    const qsizetype dot = filter.lastIndexOf(u'.');
    dialog.setDefaultSuffix(filter.mid(dot + 1).chopped(1));
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
  follow(dialog.selectedNameFilter());
}

/// Stays open over an answer that the question does not take, and says why.
class FileDialog : public QFileDialog {
 public:
  FileDialog(const FileQuestion& question, QWidget* owner)
      : QFileDialog(owner, ToQString(question.Title)), question_(question) {}

 protected:
  void accept() override {
    const QStringList files = selectedFiles();
    const std::string refusal =
        files.isEmpty() ? "" : Refusal(question_, files.constFirst().toStdString());
    if (refusal.empty()) return QFileDialog::accept();
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Graphize"), ToQString(refusal),
                    QMessageBox::Ok, this);
    box.setObjectName(QStringLiteral("MessageBox"));
    box.exec();
  }

 private:
  const FileQuestion& question_;
};

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TabletMove:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

/// Whether the input is for a button that stops the command which runs.
bool IsForStopButton(const QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) return watched->property(kStopsCommand).toBool();
  const QWidget* target = nullptr;
  if (const auto* mouse = dynamic_cast<QMouseEvent*>(event)) {
    target = QApplication::widgetAt(mouse->globalPosition().toPoint());
  } else if (const auto* key = dynamic_cast<QKeyEvent*>(event)) {
    const bool presses =
        key->key() == Qt::Key_Space || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    target = presses ? QApplication::focusWidget() : nullptr;
  }
  return target != nullptr && target->property(kStopsCommand).toBool();
}

bool StartFirstThere(const std::vector<OutsideProgram>& programs) {
  const std::string current = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString();
  for (const OutsideProgram& program : InOrderFor(current, programs)) {
    const QString path = QStandardPaths::findExecutable(ToQString(program.Name));
    if (path.isEmpty()) continue;
    QProcess process;
    process.setProgram(path);
    QStringList arguments;
    for (const std::string& argument : program.Arguments) arguments << ToQString(argument);
    process.setArguments(arguments);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (process.startDetached()) return true;
  }
  return false;
}

}  // namespace

QtDesktop::QtDesktop(QWidget* window, PlotView* plot, std::function<void()> render)
    : QObject(window), window_(window), plot_(plot), render_(std::move(render)), escape_(this) {
  desktop_.ShowMessage = [this](const Message& message) { return ShowMessage(message); };
  desktop_.Prompt = [this](const TextPrompt& prompt) { return Prompt(prompt); };
  desktop_.ChooseFile = [this](const FileQuestion& question) { return ChooseFile(question); };
  desktop_.ChooseFiles = [this](const FileQuestion& question) { return ChooseFiles(question); };
  desktop_.ClipboardHasPicture = ClipboardHasPicture;
  desktop_.ClipboardPicture = [this] {
    return ClipboardRaster([this](int) {
      Pump(false);
      return !desktop_.EscapeHeld();
    });
  };
  desktop_.ClipboardFiles = ClipboardFiles;
  desktop_.CopyText = [](const std::string& text) {
    QGuiApplication::clipboard()->setText(ToQString(text));
  };
  desktop_.ShowNow = [this] { Pump(true); };
  desktop_.Pump = [this] { Pump(false); };
  desktop_.EscapeHeld = [this] {
    const bool held = escape_.IsHeld();
    swallowEscape_ = swallowEscape_ || held;
    return stopAsked_ || held;
  };
  desktop_.MovePointer = [this](int dx, int dy) { return plot_->MovePointer(dx, dy); };
  desktop_.PointAt = [this](int x, int y) { return plot_->PointAt(x, y); };
  desktop_.PointerOverPlot = [this] {
    return plot_->isVisible() && QApplication::widgetAt(QCursor::pos()) == plot_;
  };
  desktop_.StartProgram = StartFirstThere;
  qApp->installEventFilter(this);
  // Of a picture that is pasted; samples of 16 bits take 8 bytes a pixel while it is read.
  QImageReader::setAllocationLimit(static_cast<int>(8 * kMaxPicturePixels >> 20));
}

void QtDesktop::BeginCommand() {
  stopAsked_ = false;
  stopKeyPressed_.reset();
  pumped_ = false;
  escape_.Forget();
  sinceBegin_.start();
  sincePump_.start();
}

void QtDesktop::EndCommand() {
  if (pumped_ && sinceBegin_.elapsed() > kLongCommand) Pump(true);
  TakeStopKey();
}

void QtDesktop::TakeStopKey() {
  // The server says that the key is down before its press is read here: left in the queue, it would
  // be for what comes next.
  if (swallowEscape_) Pump(true);
}

void QtDesktop::Pump(bool always) {
  if (!always && sincePump_.isValid() && sincePump_.elapsed() < kPumpEvery) return;
  if (pumping_) return;
  pumped_ = true;
  pumping_ = true;
  render_();
  QApplication::processEvents();
  pumping_ = false;
  sincePump_.start();
}

bool QtDesktop::eventFilter(QObject* watched, QEvent* event) {
  if (!pumping_ && !swallowEscape_ && !stopKeyReleased_) return false;
  const QEvent::Type type = event->type();
  const bool isKey =
      type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride;
  if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
    return DropsStopKey(*static_cast<QKeyEvent*>(event));
  return pumping_ && IsInput(type) && !IsForStopButton(watched, event);
}

bool QtDesktop::DropsStopKey(const QKeyEvent& key) {
  if (!pumping_) escape_.Forget();
  if (key.isAutoRepeat()) return pumping_ || swallowEscape_;  // presses and, between them, releases
  const quint64 at = key.timestamp();
  if (key.type() == QEvent::KeyRelease) {
    if (pumping_) escape_.Remember(false);
    stopKeyPressed_.reset();
    if (swallowEscape_) stopKeyReleased_ = at;
    return std::exchange(swallowEscape_, false) || pumping_;
  }
  if (pumping_) {
    escape_.Remember(true);
    stopKeyPressed_ = at;
    return true;
  }
  // On a busy machine a repeat may not say that it is one, and the press that stopped the command
  // may come after the command. A press is announced as a shortcut of the same time.
  constexpr quint64 kSameTime = 5;  // ms
  if (stopKeyReleased_ && at - *stopKeyReleased_ <= kSameTime) swallowEscape_ = true;
  if (swallowEscape_ && !stopKeyPressed_) stopKeyPressed_ = at;
  if (swallowEscape_ && stopKeyPressed_ == at) return true;
  swallowEscape_ = false;
  stopKeyReleased_.reset();
  return false;
}

QWidget* QtDesktop::Owner() const {
  QWidget* form = QApplication::activeModalWidget();
  return form != nullptr ? form : window_;
}

Answer QtDesktop::ShowMessage(const Message& message) {
  TakeStopKey();
  render_();
  QMessageBox box(IconOf(message.Icon), ToQString(message.Caption), ToQString(message.Text),
                  ButtonsOf(message.Buttons), Owner());
  box.setObjectName(QStringLiteral("MessageBox"));
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (message.Buttons == MessageButtons::YesNo) box.setEscapeButton(QMessageBox::No);
  if (message.DefaultIsNo) box.setDefaultButton(QMessageBox::No);
  // A busy pointer over a question would say "wait" where an answer is awaited.
  const bool busy = QApplication::overrideCursor() != nullptr;
  if (busy) QApplication::setOverrideCursor(Qt::ArrowCursor);
  const int button = box.exec();
  if (busy) QApplication::restoreOverrideCursor();
  return AnswerOf(button);
}

std::string QtDesktop::Prompt(const TextPrompt& prompt) {
  TakeStopKey();
  render_();
  QInputDialog dialog(Owner());
  dialog.setObjectName(QStringLiteral("TextPrompt"));
  dialog.setInputMode(QInputDialog::TextInput);
  dialog.setWindowTitle(ToQString(prompt.Caption));
  dialog.setLabelText(ToQString(prompt.Prompt));
  QStringList choices;
  for (const std::string& choice : prompt.Choices) choices << ToQString(choice);
  if (!choices.isEmpty()) {
    dialog.setComboBoxItems(choices);
    dialog.setComboBoxEditable(true);
  }
  dialog.setTextValue(ToQString(prompt.Default));
  dialog.resize(360, dialog.sizeHint().height());
  return dialog.exec() == QDialog::Accepted ? dialog.textValue().toStdString() : std::string();
}

std::optional<std::filesystem::path> QtDesktop::ChooseFile(const FileQuestion& question) {
  const auto files = AskForFiles(question, false);
  return files.empty() ? std::nullopt : std::optional(files.front());
}

std::vector<std::filesystem::path> QtDesktop::ChooseFiles(const FileQuestion& question) {
  auto files = AskForFiles(question, true);
  std::sort(files.begin(), files.end(),
            [](const auto& a, const auto& b) { return NumbersInOrder(a.string(), b.string()); });
  return files;
}

std::vector<std::filesystem::path> QtDesktop::AskForFiles(const FileQuestion& question,
                                                          bool several) {
  TakeStopKey();
  render_();
  FileDialog dialog(question, Owner());
  dialog.setObjectName(QStringLiteral("FileDialog"));
  dialog.setAcceptMode(question.ForSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(question.ForSaving ? QFileDialog::AnyFile
                     : several          ? QFileDialog::ExistingFiles
                                        : QFileDialog::ExistingFile);
  const QStringList filters = FiltersOf(question.Filters);
  dialog.setNameFilters(filters);
  if (question.FilterIndex >= 1 && question.FilterIndex <= filters.size())
    dialog.selectNameFilter(filters[question.FilterIndex - 1]);
  if (!question.DefaultExtension.empty())
    dialog.setDefaultSuffix(ToQString(question.DefaultExtension).toLower());
  else if (question.ForSaving)
    FollowFilter(dialog);
  if (!question.Folder.empty()) dialog.setDirectory(ToQString(question.Folder.string()));
  // Patterns are what the filters are for here.
  if (!question.FileName.empty() && question.FileName.find('*') == std::string::npos)
    dialog.selectFile(ToQString(question.FileName));
  std::vector<std::filesystem::path> files;
  if (dialog.exec() != QDialog::Accepted) return files;
  for (const QString& file : dialog.selectedFiles()) files.emplace_back(file.toStdString());
  return files;
}

}  // namespace graphize
