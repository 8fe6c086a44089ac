// Trains the reader of glyphs on rendered words: train_glyphs FOLDER FONT... -check FONT...
// The fonts behind -check are kept for the figures alone. The same fonts give the same weights.

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "finding_axes/glyph_reader.h"
#include "finding_axes/words.h"

namespace graphize {
namespace {

struct Sample {
  std::array<std::uint8_t, kGlyphInputs> Input;
  int Class;
};

class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  double Part() { return static_cast<double>(engine_()) / 4294967296.0; }
  double Between(double a, double b) { return a + (b - a) * Part(); }
  int Below(int n) { return static_cast<int>(Part() * n); }
  bool Chance(double p) { return Part() < p; }

 private:
  std::mt19937 engine_;
};

std::string NumberText(Random& random) {
  const auto digits = [&](int least, int most) {
    std::string text;
    for (int i = least + random.Below(most - least + 1); i > 0; --i)
      text += static_cast<char>('0' + random.Below(10));
    return text;
  };
  std::string text = random.Chance(0.3) ? "-" : random.Chance(0.05) ? "+" : "";
  switch (random.Below(8)) {
    case 0:
    case 1:
      return text + digits(1, 4);
    case 2:
    case 3:
      return text + digits(1, 2) + "." + digits(1, 3);
    case 4:
      return text + digits(1, 2) + "," + digits(1, 3);
    case 5:
      return text + digits(1, 1) + (random.Chance(0.5) ? "e" : "E") +
             (random.Chance(0.5)   ? "-"
              : random.Chance(0.5) ? "+"
                                   : "") +
             digits(1, 2);
    case 6:
      return text + digits(1, 1) + "x10";
    default:
      return text + digits(2, 3) + (random.Chance(0.3) ? "%" : "");
  }
}

/// Words of letters and signs, which are to be refused.
std::string OtherText(Random& random) {
  static const std::string kLetters =
      "abcdfghijklmnopqrstuvwyzABCDFGHIJKLMNPQRSTUVWXYZ()/:;=<>*'\"&#@[]{}!?|_~";
  std::string text;
  const bool mixed = random.Chance(0.5);
  for (int i = 1 + random.Below(5); i >= 0; --i)
    text += mixed && random.Chance(0.5) ? static_cast<char>('0' + random.Below(10))
                                        : kLetters[random.Below(static_cast<int>(kLetters.size()))];
  return text;
}

int ClassOf(char sign) {
  if (sign == 'E') sign = 'e';
  const std::string signs = kGlyphSigns;
  const auto at = signs.find(sign);
  return at == std::string::npos ? kGlyphClasses - 1 : static_cast<int>(at);
}

InkImage Rendered(const QString& family, const QString& style, const QString& text,
                  Random& random) {
  const double height = random.Chance(0.65) ? random.Between(5.5, 14) : random.Between(12, 44);
  QFont font = QFontDatabase::font(family, style, 12);
  font.setPixelSize(std::max(static_cast<int>(std::lround(height / 0.7)), 7));
  const bool smooth = random.Chance(0.85);
  font.setStyleStrategy(smooth ? QFont::PreferAntialias : QFont::NoAntialias);
  font.setHintingPreference(random.Chance(0.5) ? QFont::PreferNoHinting : QFont::PreferFullHinting);
  const QFontMetricsF metrics(font);
  const int width = static_cast<int>(metrics.horizontalAdvance(text)) + 40;
  const int tall = static_cast<int>(metrics.height()) + 40;
  QImage image(width, tall, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::TextAntialiasing, smooth);
  painter.setFont(font);
  const int grey = random.Chance(0.6) ? 0 : random.Below(110);
  painter.setPen(QColor(grey, grey, grey));
  painter.translate(20 + random.Part(), tall - 22 + random.Part());
  if (random.Chance(0.3)) painter.rotate(random.Between(-1.2, 1.2));
  if (random.Chance(0.1)) painter.shear(random.Between(-0.12, 0.12), 0);
  painter.drawText(QPointF(0, 0), text);
  painter.end();
  // What scanners and compression do: softness, grain, a hard edge.
  const double softness = random.Chance(0.35) ? random.Between(0.2, 0.02 * height + 0.5) : 0;
  const double grain = random.Chance(0.35) ? random.Between(2, 22) : 0;
  std::vector<double> values(static_cast<std::size_t>(width) * tall);
  for (int y = 0; y < tall; ++y)
    for (int x = 0; x < width; ++x)
      values[static_cast<std::size_t>(y) * width + x] = 255 - qGray(image.pixel(x, y));
  if (softness > 0) {
    const double side = std::exp(-0.5 / (softness * softness));
    const double norm = 1 / (1 + 2 * side);
    for (const int stride : {1, width}) {
      std::vector<double> from = values;
      for (std::size_t i = width; i + width < values.size(); ++i)
        values[i] = norm * (from[i] + side * (from[i - stride] + from[i + stride]));
    }
  }
  const bool hard = random.Chance(0.12);
  InkImage ink;
  ink.Width = width;
  ink.Height = tall;
  ink.Weak = std::clamp(static_cast<int>(5 * grain), 20, 80);
  for (double value : values) {
    if (grain > 0) value += grain * (random.Part() + random.Part() + random.Part() - 1.5) * 2;
    if (hard) value = value > 127 ? 255 : 0;
    ink.Values.push_back(static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L)));
  }
  return ink;
}

void AddSamples(const QString& family, const QString& style, Random& random,
                std::vector<Sample>& samples) {
  const bool number = random.Chance(0.75);
  const std::string text = number ? NumberText(random) : OtherText(random);
  QString shown = QString::fromStdString(text);
  if (random.Chance(0.5)) shown.replace('-', QChar(0x2212));
  if (random.Chance(0.7)) shown.replace('x', QChar(0xd7));
  const InkImage ink = Rendered(family, style, shown, random);
  const InkPieces pieces = FindPieces(ink, random.Chance(0.6) ? 0.45 : 0.28);
  const std::vector<Word> words = FindWords(ink, pieces);
  // Only what came out letter by letter says which glyph is which.
  if (words.size() != 1 || !words.front().Exponent.empty() ||
      words.front().Glyphs.size() != text.size())
    return;
  const Word& word = words.front();
  for (std::size_t i = 0; i < text.size(); ++i) {
    const GlyphInput input =
        NormaliseGlyph(ink, pieces, word.Glyphs[i], {word.Baseline, word.Height});
    Sample sample;
    for (int j = 0; j < kGlyphInputs; ++j)
      sample.Input[j] = static_cast<std::uint8_t>(std::lround(255 * input[j]));
    // Letters that look like a digit are one: no reader can tell them apart.
    static const std::string kAlike = "OolI|";
    if (kAlike.find(text[i]) != std::string::npos) continue;
    sample.Class = ClassOf(text[i]);
    samples.push_back(sample);
  }
}

class Perceptron {
 public:
  explicit Perceptron(Random& random)
      : hidden_(kGlyphHidden * (kGlyphInputs + 1)), out_(kGlyphClasses * (kGlyphHidden + 1)) {
    for (float& w : hidden_) w = static_cast<float>(random.Between(-0.08, 0.08));
    for (float& w : out_) w = static_cast<float>(random.Between(-0.2, 0.2));
  }

  int Run(const Sample& sample) {
    for (int j = 0; j < kGlyphInputs; ++j) input_[j] = static_cast<float>(sample.Input[j]) / 255.0f;
    for (int i = 0; i < kGlyphHidden; ++i) {
      const float* w = hidden_.data() + i * (kGlyphInputs + 1);
      float parts[8] = {};
      for (int j = 0; j < kGlyphInputs; j += 8)
        for (int k = 0; k < 8; ++k) parts[k] += w[j + k] * input_[j + k];
      float sum = w[kGlyphInputs];
      for (const float part : parts) sum += part;
      middle_[i] = std::max(sum, 0.0f);
    }
    for (int i = 0; i < kGlyphClasses; ++i) {
      const float* w = out_.data() + i * (kGlyphHidden + 1);
      result_[i] = w[kGlyphHidden];
      for (int j = 0; j < kGlyphHidden; ++j) result_[i] += w[j] * middle_[j];
    }
    return static_cast<int>(std::max_element(result_, result_ + kGlyphClasses) - result_);
  }

  /// One step of stochastic gradient descent on the cross entropy.
  void Learn(const Sample& sample, float rate) {
    Run(sample);
    const float most = *std::max_element(result_, result_ + kGlyphClasses);
    float sum = 0;
    for (float& value : result_) sum += value = std::exp(value - most);
    float back[kGlyphHidden] = {};
    for (int i = 0; i < kGlyphClasses; ++i) {
      const float slope = result_[i] / sum - (i == sample.Class ? 1.0f : 0.0f);
      if (std::fabs(slope) < 1e-4f) continue;
      float* w = out_.data() + i * (kGlyphHidden + 1);
      for (int j = 0; j < kGlyphHidden; ++j) {
        back[j] += slope * w[j];
        w[j] -= rate * slope * middle_[j];
      }
      w[kGlyphHidden] -= rate * slope;
    }
    for (int i = 0; i < kGlyphHidden; ++i) {
      if (middle_[i] <= 0 || back[i] == 0) continue;
      float* w = hidden_.data() + i * (kGlyphInputs + 1);
      const float step = rate * back[i];
      for (int j = 0; j < kGlyphInputs; ++j) w[j] -= step * input_[j];
      w[kGlyphInputs] -= step;
    }
  }

  void Write(const std::string& folder) const {
    std::string text;
    float factors[2];
    int layer = 0;
    for (const auto* weights : {&hidden_, &out_}) {
      float largest = 0;
      for (const float w : *weights) largest = std::max(largest, std::fabs(w));
      const float factor = factors[layer++] = largest / 127;
      for (const float w : *weights) {
        const int byte = 128 + static_cast<int>(std::lround(w / factor));
        text += static_cast<char>('a' + byte / 16);
        text += static_cast<char>('a' + byte % 16);
      }
    }
    std::ofstream file(folder + "/glyph_weights.inc");
    for (std::size_t i = 0; i < text.size(); i += 160) file << '"' << text.substr(i, 160) << "\"\n";
    std::ofstream scale(folder + "/glyph_factors.inc");
    char line[80];
    std::snprintf(line, sizeof line, "%.9gf, %.9gf\n", static_cast<double>(factors[0]),
                  static_cast<double>(factors[1]));
    scale << line;
  }

 private:
  std::vector<float> hidden_, out_;
  float input_[kGlyphInputs], middle_[kGlyphHidden], result_[kGlyphClasses];
};

std::vector<Sample> SamplesOf(const std::vector<std::string>& files, int words, Random& random) {
  struct Face {
    QString Family, Style;
  };
  std::vector<Face> faces;
  for (const std::string& file : files) {
    const int id = QFontDatabase::addApplicationFont(QString::fromStdString(file));
    for (const QString& family : QFontDatabase::applicationFontFamilies(id)) {
      const QStringList styles = QFontDatabase::styles(family);
      for (const QString& style : styles) faces.push_back({family, style});
    }
  }
  std::sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) {
    return a.Family != b.Family ? a.Family < b.Family : a.Style < b.Style;
  });
  faces.erase(std::unique(faces.begin(), faces.end(),
                          [](const Face& a, const Face& b) {
                            return a.Family == b.Family && a.Style == b.Style;
                          }),
              faces.end());
  std::fprintf(stderr, "%zu faces\n", faces.size());
  std::vector<Sample> samples;
  for (int i = 0; i < words && !faces.empty(); ++i) {
    const Face& face = faces[random.Below(static_cast<int>(faces.size()))];
    AddSamples(face.Family, face.Style, random, samples);
  }
  return samples;
}

void Shuffle(std::vector<Sample>& samples, Random& random) {
  for (std::size_t i = samples.size(); i > 1; --i)
    std::swap(samples[i - 1], samples[random.Below(static_cast<int>(i))]);
}

int Train(const std::string& folder, const std::vector<std::string>& train,
          const std::vector<std::string>& check) {
  Random random(20240601);
  std::vector<Sample> samples = SamplesOf(train, 110000, random);
  Random other(7);
  const std::vector<Sample> checks = SamplesOf(check, 4000, other);
  std::fprintf(stderr, "%zu glyphs to learn, %zu to check\n", samples.size(), checks.size());
  Perceptron perceptron(random);
  constexpr int kRounds = 10;
  for (int round = 0; round < kRounds; ++round) {
    Shuffle(samples, random);
    const float rate = 0.02f * std::pow(0.68f, static_cast<float>(round));
    for (const Sample& sample : samples) perceptron.Learn(sample, rate);
    int wrong = 0, falseNumber = 0;
    for (const Sample& sample : checks) {
      const int read = perceptron.Run(sample);
      wrong += read != sample.Class;
      falseNumber += read != sample.Class && read != kGlyphClasses - 1;
    }
    std::fprintf(stderr,
                 "round %d: of %zu glyphs of other fonts %.2f %% wrong, %.2f %% unnoticed\n",
                 round + 1, checks.size(), 100.0 * wrong / static_cast<double>(checks.size()),
                 100.0 * falseNumber / static_cast<double>(checks.size()));
  }
  perceptron.Write(folder);
  return 0;
}

}  // namespace
}  // namespace graphize

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  std::vector<std::string> train, check;
  bool checks = false;
  for (int i = 2; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "-check")
      checks = true;
    else
      (checks ? check : train).push_back(word);
  }
  if (train.empty() || check.empty()) {
    std::fprintf(stderr, "train_glyphs FOLDER FONT... -check FONT...\n");
    return 2;
  }
  return graphize::Train(argv[1], train, check);
}
