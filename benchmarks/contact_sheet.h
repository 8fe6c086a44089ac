#pragma once

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "base/run_time_error.h"

namespace graphize {

inline constexpr int kSheetColumns = 3, kTileWidth = 640, kTileHeight = 480;

/// Pictures side by side on one, large ones reduced. 0, or 1 where it could not be written.
inline int SaveContactSheet(const std::vector<QImage>& pictures, const QString& file) {
  const int count = static_cast<int>(pictures.size());
  QImage sheet(kSheetColumns * kTileWidth,
               (count + kSheetColumns - 1) / kSheetColumns * kTileHeight, QImage::Format_RGB32);
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  for (int i = 0; i < count; ++i) {
    QImage tile = pictures[static_cast<std::size_t>(i)];
    if (tile.width() > kTileWidth || tile.height() > kTileHeight)
      tile = tile.scaled(kTileWidth, kTileHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(i % kSheetColumns * kTileWidth + (kTileWidth - tile.width()) / 2,
                      i / kSheetColumns * kTileHeight + (kTileHeight - tile.height()) / 2, tile);
  }
  painter.end();
  if (sheet.save(file)) return 0;
  std::fprintf(stderr, "the sheet could not be written\n");
  return 1;
}

/// The main function of a program that draws the pictures in a folder for a sheet of them:
/// "PROGRAM FOLDER SHEET.png".
template <class Draw>
int MakeSheet(int argc, char** argv, const Draw& tilesOf) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s FOLDER SHEET.png\n", argv[0]);
    return 2;
  }
  try {
    return SaveContactSheet(tilesOf(std::filesystem::path(argv[1])),
                            QString::fromLocal8Bit(argv[2]));
  } catch (const RunTimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

}  // namespace graphize
