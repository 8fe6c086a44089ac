#include "base/translation.h"

#include <gtest/gtest.h>

#include "base/deferred_text.h"

namespace graphize {
namespace {

struct Translated {
  explicit Translated(Translator translator) { SetTranslator(translator); }
  ~Translated() { SetTranslator(nullptr); }
};

TEST(Translation, PutsValuesWhereTheTextHasThem) {
  EXPECT_EQ(Tr("%2 of %1, %3 and 5% of %12", "a", 7, std::string("%1")), "7 of a, %1 and 5% of a2")
      << "a value's own signs stay";
  EXPECT_EQ(Tr("%1 and %2", "x"), "x and %2") << "no value, no change";
  EXPECT_EQ(Tr("100%"), "100%");
  EXPECT_EQ(TrCount("%1 row of %2", "%1 rows of %2", 1, "a"), "1 row of a");
  EXPECT_EQ(TrCount("%1 row of %2", "%1 rows of %2", 0, "%1"), "0 rows of %1");
}

TEST(Translation, TakesTheLanguagesOrderAndCounts) {
  const Translated german([](const char* text, long long count) -> std::string {
    if (std::string_view(text) == "%1 of %2") return "von %2 %1";
    if (std::string_view(text) == "%1 row") return count == 1 ? "%1 Zeile" : "%1 Zeilen";
    return {};
  });
  EXPECT_EQ(Tr("%1 of %2", 3, 9), "von 9 3");
  EXPECT_EQ(TrCount("%1 row", "%1 rows", 1), "1 Zeile");
  EXPECT_EQ(TrCount("%1 row", "%1 rows", 2), "2 Zeilen");
  EXPECT_EQ(Tr("unknown %1", 3), "unknown 3");
}

TEST(Translation, DeferredTextsAreTranslatedWhereTheyArrive) {
  std::string inner, deferred;
  {
    const Translated later(DeferText);
    inner = Tr("%1 rows", 3);
    deferred = Tr("%2 of %1, 5%", inner, "%2") + " (plain %1)";
  }
  EXPECT_EQ(TranslateDeferred(deferred), "%2 of 3 rows, 5% (plain %1)");
  const Translated german([](const char* text, long long) -> std::string {
    if (std::string_view(text) == "%2 of %1, 5%") return "von %1 %2";
    return std::string_view(text) == "%1 rows" ? "%1 Zeilen" : "";
  });
  EXPECT_EQ(TranslateDeferred(deferred), "von 3 Zeilen %2 (plain %1)");
  for (std::size_t size = 0; size < deferred.size(); ++size)
    EXPECT_EQ(TranslateDeferred(deferred.substr(0, size)).find('\x02'), std::string::npos);
  EXPECT_EQ(TranslateDeferred(std::string(9, '\x02') + "a\x03\x04\n\x7f"), "a");
  // Places in values of places would grow by hundreds at each level.
  std::string grown(200, 'x');
  for (int level = 0; level < 3; ++level) {
    std::string places;
    for (int i = 0; i < 200; ++i) places += {'\x10', '1'};
    grown = '\x02' + places + '\x03' + grown + "\x1f\x04";
  }
  EXPECT_LE(TranslateDeferred(grown).size(), 2000u);
}

}  // namespace
}  // namespace graphize
