#include "app/storm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "app/main_window.h"
#include "base/whole_file.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"
#include "session/journal_reading.h"
#include "session/left_session.h"
#include "support/document_text.h"
#include "support/random_user.h"

namespace graphize::test {

namespace {

namespace fs = std::filesystem;

/// What leaves the program: other programs, scanners, the end.
const std::set<QString> kNever = {QStringLiteral("MNU_FILE_Exit"),
                                  QStringLiteral("MNU_FILE_Aquire"), QStringLiteral("aquire"),
                                  QStringLiteral("MNU_FILE_SelectSource")};

class Storm {
 public:
  Storm(const fs::path& folder, unsigned seed)
      : folder_(folder),
        random_(seed),
        window_({.Settings = folder / "graphize.ini",
                 .StartFolder = folder,
                 .Help = {},
                 .Sessions = folder / "sessions"}) {
    ServeNext();
    window_.Start();
    window_.resize(1000, 760);
    window_.show();
    begin_ = TextThatIsUndone();
    window_.OpenWhenShown({folder / "plot.bmp"});
    while (!State().plot.IsPresent() || State().commandRuns) QApplication::processEvents();
  }

  bool Run(int events) {
    Calibrate();
    int done = 0;
    for (; done < events && fault_.empty(); ++done) {
      QElapsedTimer timer;
      timer.start();
      servedInside_ = 0;
      last_.clear();
      Something(&window_);
      QApplication::processEvents();
      NoteAnswer(timer);
      if (!IsQuiet()) continue;
      CheckList();
      if (done % 20 == 0) CheckJournal();
      if (done % 300 == 299) CheckUndo();
    }
    if (!fault_.empty())
      std::fprintf(stderr, "event %d (%s): %s\n", done, last_.c_str(), fault_.c_str());
    for (const auto& [what, times] : done_) std::printf("%6d %s\n", times, what.c_str());
    std::printf("%d events, slowest %lld ms: %s\n", done, static_cast<long long>(slowest_.first),
                slowest_.second.c_str());
    return fault_.empty();
  }

 private:
  const Workspace& State() const { return window_.State(); }
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  bool Chance(int of) { return Pick(of) == 0; }
  template <class T>
  const T& OneOf(const std::vector<T>& list) {
    return list[static_cast<std::size_t>(Pick(static_cast<int>(list.size())))];
  }
  bool IsQuiet() const {
    return !State().commandRuns && !State().pen.Down &&
           QApplication::activeModalWidget() == nullptr;
  }
  void Note(const char* what, const QObject* on) {
    ++done_[std::string(what) + " " + on->objectName().toStdString()];
    last_ += std::string(last_.empty() ? "" : ", ") + what + " " + on->objectName().toStdString();
  }

  /// `timer` began with the event; what was served within it has been noted by itself.
  void NoteAnswer(const QElapsedTimer& timer) {
    slowest_ = std::max(slowest_, std::pair(timer.elapsed() - servedInside_, last_));
  }

  void Calibrate() {
    Trigger("axisdef");
    struct Row {
      QPoint At;
      const char *X, *Y;
    };
    const Row rows[] = {{{20, 130}, "0", "0"}, {{180, 130}, "10", ""}, {{20, 10}, "", "5"}};
    for (int row = 0; row < 3; ++row) {
      for (const auto& [array, text] : {std::pair(QStringLiteral("TXT_XPos_%1"), rows[row].X),
                                        {QStringLiteral("TXT_YPos_%1"), rows[row].Y}})
        if (*text != 0)
          Type(window_.findChild<QLineEdit*>(array.arg(row)), QString::fromLatin1(text));
      Click(Plot(), rows[row].At, Qt::LeftButton, Qt::NoModifier);
    }
    Trigger("graphize");
  }

  QWidget* Plot() const { return window_.findChild<QWidget*>(QStringLiteral("Plot")); }
  void Trigger(const char* name) {
    if (auto* action = window_.findChild<QAction*>(QLatin1String(name)))
      action->trigger();
    else
      Fault(std::string("no action ") + name);
  }
  /// The widget may be gone after any event.
  template <class Event>
  void Send(const QPointer<QWidget>& widget, Event&& event) {
    if (widget) QApplication::sendEvent(widget, &event);
  }
  void Mouse(const QPointer<QWidget>& widget, QEvent::Type type, QPoint at, Qt::MouseButton button,
             Qt::MouseButtons held, Qt::KeyboardModifiers keys) {
    if (!widget) return;
    Send(widget,
         QMouseEvent(type, QPointF(at), QPointF(widget->mapToGlobal(at)), button, held, keys));
  }
  void Drag(const QPointer<QWidget>& widget, QPoint from, QPoint to, Qt::MouseButton button,
            Qt::KeyboardModifiers keys) {
    Mouse(widget, QEvent::MouseMove, from, Qt::NoButton, Qt::NoButton, keys);
    Mouse(widget, QEvent::MouseButtonPress, from, button, button, keys);
    if (from != to) Mouse(widget, QEvent::MouseMove, to, Qt::NoButton, button, keys);
    if (Chance(15)) Key(widget, Qt::Key_Escape, Qt::NoModifier);
    Mouse(widget, QEvent::MouseButtonRelease, to, button, Qt::NoButton, keys);
  }
  void Click(const QPointer<QWidget>& widget, QPoint at, Qt::MouseButton button,
             Qt::KeyboardModifiers keys) {
    Drag(widget, at, at, button, keys);
  }
  void Key(const QPointer<QWidget>& widget, int key, Qt::KeyboardModifiers keys,
           const QString& text = {}) {
    Send(widget, QKeyEvent(QEvent::KeyPress, key, keys, text));
    Send(widget, QKeyEvent(QEvent::KeyRelease, key, keys, text));
  }
  void Type(const QPointer<QLineEdit>& box, const QString& text) {
    box->setFocus();
    box->selectAll();
    Key(box.data(), 0, Qt::NoModifier, text);
  }

  QString Number() {
    static const std::vector<QString> texts = {
        QStringLiteral("0"),    QStringLiteral("1"),     QStringLiteral("-3,5"),
        QStringLiteral("2.25"), QStringLiteral("100"),   QStringLiteral("1e-5"),
        QStringLiteral("1e39"), QStringLiteral("40000"), QStringLiteral(""),
        QStringLiteral("abc"),  QStringLiteral("12 m")};
    return OneOf(texts);
  }

  /// On the picture, mostly where its curve is.
  void OnPlot() {
    const QPointer<QWidget> plot = Plot();
    if (!plot || !plot->isVisible()) return;
    Note(("mouse in " + std::string(ModeKey(State().mode)) + " on").c_str(), plot);
    const auto place = [&] {
      return QPoint(Pick(std::max(1, plot->width())), Pick(std::max(1, plot->height())));
    };
    static const std::vector<Qt::KeyboardModifiers> keys = {
        Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier};
    static const std::vector<Qt::MouseButton> buttons = {
        Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    const QPoint at = place();
    switch (Pick(6)) {
      case 0: {
        QWheelEvent wheel(at, plot->mapToGlobal(at), {}, {0, Chance(2) ? 120 : -120}, Qt::NoButton,
                          OneOf(keys), Qt::NoScrollPhase, false);
        return Send(plot, std::move(wheel));
      }
      case 1:
      case 2:
        return Drag(plot, at, place(), OneOf(buttons), OneOf(keys));
      default:
        return Click(plot, at, OneOf(buttons), OneOf(keys));
    }
  }

  void OnControl(QWidget* in) {
    std::vector<QWidget*> controls;
    for (QWidget* each : in->findChildren<QWidget*>())
      if (each->window() == in && each->isVisible() && each->isEnabled() &&
          (qobject_cast<QAbstractButton*>(each) || qobject_cast<QLineEdit*>(each) ||
           qobject_cast<QComboBox*>(each) || qobject_cast<QAbstractSlider*>(each) ||
           qobject_cast<QAbstractItemView*>(each)) &&
          !kNever.contains(each->objectName()))
        controls.push_back(each);
    if (controls.empty()) return;
    const QPointer<QWidget> control = OneOf(controls);
    Note("control", control);
    if (auto* box = qobject_cast<QLineEdit*>(control.data())) {
      Type(box, Number());
      if (Chance(2)) Key(control, Chance(2) ? Qt::Key_Return : Qt::Key_Tab, Qt::NoModifier);
    } else if (auto* choice = qobject_cast<QComboBox*>(control.data())) {
      Key(choice, Chance(2) ? Qt::Key_Down : Qt::Key_Up, Qt::NoModifier);
    } else if (qobject_cast<QAbstractSlider*>(control.data()) != nullptr) {
      static const std::vector<int> keys = {Qt::Key_Left,     Qt::Key_Right, Qt::Key_PageUp,
                                            Qt::Key_PageDown, Qt::Key_Home,  Qt::Key_End};
      Key(control, OneOf(keys), Qt::NoModifier);
    } else {
      Click(control, {Pick(std::max(1, control->width())), Pick(std::max(1, control->height()))},
            Qt::LeftButton, Chance(6) ? Qt::ShiftModifier : Qt::NoModifier);
    }
  }

  void OnMenu() {
    std::vector<QAction*> actions;
    for (QAction* each : window_.findChildren<QAction*>())
      if (each->isEnabled() && each->isVisible() && each->menu() == nullptr &&
          !each->objectName().isEmpty() && !kNever.contains(each->objectName()) &&
          !each->objectName().startsWith(QLatin1String("MNU_SYSTEM")) &&
          !each->objectName().startsWith(QLatin1String("MNU_HELP")))
        actions.push_back(each);
    QAction* action = OneOf(actions);
    Note("menu", action);
    action->trigger();
  }

  void OnKey() {
    static const std::vector<std::pair<int, Qt::KeyboardModifiers>> keys = {
        {Qt::Key_Escape, Qt::NoModifier},  {Qt::Key_Tab, Qt::NoModifier},
        {Qt::Key_Return, Qt::NoModifier},  {Qt::Key_Delete, Qt::NoModifier},
        {Qt::Key_Left, Qt::NoModifier},    {Qt::Key_Right, Qt::ControlModifier},
        {Qt::Key_Up, Qt::NoModifier},      {Qt::Key_Down, Qt::ShiftModifier},
        {Qt::Key_Space, Qt::NoModifier},   {Qt::Key_Less, Qt::NoModifier},
        {Qt::Key_Greater, Qt::NoModifier}, {Qt::Key_Backtab, Qt::ShiftModifier}};
    QWidget* focus = QApplication::focusWidget();
    if (focus == nullptr) focus = &window_;
    const auto& [key, modifiers] = OneOf(keys);
    Note("key on", focus);
    Key(focus, key, modifiers);
  }

  void Something(QWidget* in) {
    if (in != &window_) {
      if (Chance(8)) return Key(in, Qt::Key_Escape, Qt::NoModifier);
      return OnControl(in);
    }
    switch (Pick(12)) {
      case 0:
      case 1:
        return OnMenu();
      case 2:
        return Trigger(OneOf(kUndo));
      case 3:
        return Trigger(OneOf(kModes));
      case 4:
      case 5:
        return OnControl(in);
      case 6:
        return OnKey();
      case 7:
        if (Chance(10)) window_.resize(700 + Pick(700), 500 + Pick(500));
        return;
      default:
        return OnPlot();
    }
  }

  /// Before anything is served, which may open the next window, its successor waits.
  void ServeNext() {
    QTimer::singleShot(1, &window_, [this] {
      ServeNext();
      ServeModal();
    });
  }
  /// Whatever keeps the window waiting gets an answer, or a few events and then its end.
  void ServeModal() {
    QElapsedTimer timer;
    timer.start();
    const qint64 servedBefore = std::exchange(servedInside_, 0);
    if (QWidget* popup = QApplication::activePopupWidget()) {
      popup->close();
    } else if (QWidget* modal = QApplication::activeModalWidget();
               modal != nullptr && modal != &window_) {
      Note("in", modal);
      if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        const auto buttons = box->buttons();
        buttons[Pick(static_cast<int>(buttons.size()))]->click();
      } else if (auto* files = qobject_cast<QFileDialog*>(modal)) {
        AnswerFile(*files);
      } else if (modal != served_ || ++servedTimes_ < 25) {
        if (modal != std::exchange(served_, modal)) servedTimes_ = 0;
        Something(modal);
      } else {
        servedTimes_ = 0;
        if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
      }
    }
    NoteAnswer(timer);
    servedInside_ = servedBefore + timer.elapsed();
  }
  void AnswerFile(QFileDialog& dialog) {
    static const std::vector<QString> names = {
        QStringLiteral("plot.bmp"),   QStringLiteral("page.png"), QStringLiteral("a.dat"),
        QStringLiteral("a.graphize"), QStringLiteral("b.csv"),    QStringLiteral("c.recipe"),
        QStringLiteral("none.tif"),   QStringLiteral("d.jpg")};
    auto* box = dialog.findChild<QLineEdit*>();
    if (box == nullptr || Chance(4) || ++files_ % 40 == 0) return dialog.reject();
    box->setText(QString::fromStdString((folder_ / OneOf(names).toStdString()).string()));
    Key(box, Qt::Key_Return, Qt::NoModifier);
    if (Chance(3)) dialog.reject();
  }

  std::string TextOf(KeptDocument kept) const {
    return DocumentText(std::move(kept), State().plot.IsPresent()
                                             ? std::optional(State().plot.Number)
                                             : std::nullopt);
  }
  std::string Text() const { return TextOf(Keep(State())); }
  /// Options and the mode pass: Undo goes through them.
  std::string TextThatIsUndone() const {
    KeptDocument kept = Keep(State());
    kept.Options = {};
    kept.InMode = Mode::None;
    return TextOf(std::move(kept));
  }
  void Fault(std::string what) {
    if (fault_.empty()) fault_ = std::move(what);
  }
  static std::string Difference(const std::string& a, const std::string& b) {
    const auto at = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    const std::size_t from = at < 80 ? 0 : at - 80;
    return a.substr(from, 160) + "\ninstead of\n" + b.substr(from, 160);
  }
  void CheckList() {
    const PointStore& store = State().store;
    if (!store.ListIsCaptured) return;
    // Rows that were cleared stay captured.
    const bool wereCleared = std::ranges::any_of(State().recipe.Steps, [](const Step& step) {
      return std::holds_alternative<ClearRowsStep>(step);
    });
    if (wereCleared ? store.ListCount > store.CaptureCount : store.ListCount != store.CaptureCount)
      Fault("a list that is the captured points has " + std::to_string(store.ListCount) + " of " +
            std::to_string(store.CaptureCount));
  }
  void CheckJournal() {
    bool isThere = false;
    for (const fs::path& session : SessionFolders(folder_ / "sessions")) {
      std::string bytes;
      if (ReadWholeFile(session / kNewJournalName, 1 << 30, bytes) &&
          ReadWholeFile(session / kJournalName, 1 << 30, bytes))
        continue;
      isThere = true;
      const JournalledDocument read = ReadJournal(bytes);
      const std::string told = DocumentText(read.Document, read.Picture), is = Text();
      if (told != is) Fault("the journal tells\n" + Difference(told, is));
    }
    if (!isThere) Fault("there is no journal");
  }
  /// Undo or redo as far as it goes.
  void All(const char* name) {
    auto* action = window_.findChild<QAction*>(QLatin1String(name));
    for (int i = 0; i < 100000 && action->isEnabled(); ++i) action->trigger();
  }
  void CheckUndo() {
    All("MNU_EDIT_Redo");
    const std::string end = Text();
    All("MNU_EDIT_Undo");
    const std::string start = Text(), begin = TextThatIsUndone();
    All("MNU_EDIT_Redo");
    if (begin != begin_) return Fault("all undone:\n" + Difference(begin, begin_));
    if (Text() != end) return Fault("undone and done again:\n" + Difference(Text(), end));
    All("MNU_EDIT_Undo");
    if (Text() != start) return Fault("undone once more:\n" + Difference(Text(), start));
    All("MNU_EDIT_Redo");
  }

  inline static const std::vector<const char*> kUndo = {"MNU_EDIT_Undo", "MNU_EDIT_Undo",
                                                        "MNU_EDIT_Redo"};
  inline static const std::vector<const char*> kModes = {"graphize",
                                                         "graphize",
                                                         "blocktest",
                                                         "drawerase",
                                                         "axisdef",
                                                         "MNU_MODE_readcurve",
                                                         "MNU_MODE_findsymbols",
                                                         "MNU_EDIT_EditPoints"};

  fs::path folder_;
  std::mt19937 random_;
  MainWindow window_;
  QWidget* served_ = nullptr;
  int servedTimes_ = 0, files_ = 0;
  qint64 servedInside_ = 0;
  std::string last_, fault_, begin_;
  std::map<std::string, int> done_;
  std::pair<qint64, std::string> slowest_;
};

}  // namespace

int DoStorm(const fs::path& folder, unsigned seed, int events) {
  const Raster picture = PictureForRandomUser();
  SavePicture(folder / "plot.bmp", kBmpFormat, 0, picture);
  SavePicture(folder / "page.png", kPngFormat, 0, picture);
  return Storm(folder, seed).Run(events) ? 0 : 1;
}

}  // namespace graphize::test
