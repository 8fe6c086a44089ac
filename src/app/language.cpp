#include "app/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <string>

#include "base/translation.h"
#include "settings/language.h"
#include "widgets/show.h"

namespace graphize {

namespace {

/// Our texts mean the same wherever they stand: no classes, no contexts.
class Catalogue : public QTranslator {
 public:
  using QTranslator::QTranslator;

  QString translate(const char*, const char* text, const char* remark, int count) const override {
    return QTranslator::translate("", text, remark, count);
  }
};

/// Names of keys that menus show, also where Qt's own catalogue is not installed.
[[maybe_unused]] constexpr const char* kKeyNames[] = {Marked("Ctrl"), Marked("Shift"),
                                                      Marked("Alt"), Marked("Del")};

std::string Translated(const char* english, long long count) {
  const QString text = QCoreApplication::translate("", english, nullptr, static_cast<int>(count));
  return text == QLatin1String(english) ? std::string() : text.toStdString();
}

void Install(QTranslator* translator, const QString& file, const QString& folder) {
  if (translator->load(file, folder)) QCoreApplication::installTranslator(translator);
}

}  // namespace

void SpeakLanguage(const std::filesystem::path& settings,
                   const std::filesystem::path& translations) {
  const std::string code = ReadLanguage(ReadSettingsFile(settings));
  if (code == kLanguages[0].Code) return;
  auto* application = QCoreApplication::instance();
  const QString language = ToQString(code);
  Install(new QTranslator(application), QLatin1String("qtbase_") + language,
          QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  Install(new Catalogue(application), language, ToQString(translations.string()));
  SetTranslator(Translated);
}

}  // namespace graphize
