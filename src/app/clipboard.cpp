#include "app/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <cstring>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>

#include "base/run_time_error.h"
#include "base/translation.h"
#include "codecs/picbuf.h"
#include "raster/size_limits.h"
#include "raster/transparency.h"

namespace graphize {

namespace {

/// Whether it is this program's own: what comes from another one is of a class of the platform's.
bool IsOwn(const QMimeData& data) {
  return typeid(data) == typeid(QMimeData);
}

/// The picture in the clipboard as its owner offers it, decoded apart like a file; nothing where it
/// is offered in no such type, or `progress` has stopped it.
std::optional<LoadedPicture> OfferedPicture(const QMimeData& data,
                                            const PictureProgress& progress) {
  for (const char* type :
       {"image/png", "image/bmp", "image/x-bmp", "image/x-MS-bmp", "image/tiff", "image/gif",
        "image/webp", "image/jpeg", "image/x-portable-anymap", "image/x-portable-pixmap",
        "image/x-portable-graymap", "image/x-portable-bitmap"})
    if (const QByteArray bytes = data.data(QLatin1String(type)); !bytes.isEmpty())
      return DecodePicture("clipboard", bytes.toStdString(), progress);
  return {};
}

}  // namespace

std::vector<std::filesystem::path> FilesOf(const QMimeData& data) {
  QList<QUrl> urls = data.urls();
  if (urls.isEmpty()) {
    // What some file managers copy: "copy" or "cut" and an address a line, in the newest ones as
    // text behind a line that says so.
    QString list = QString::fromUtf8(data.data(QStringLiteral("x-special/gnome-copied-files")));
    if (list.isEmpty() && data.text().startsWith(QLatin1String("x-special/nautilus-clipboard")))
      list = data.text();
    for (const QString& line : list.split(u'\n'))
      if (const QUrl url(line.trimmed()); !url.scheme().isEmpty()) urls << url;
  }
  std::vector<std::filesystem::path> files;
  for (const QUrl& url : urls)
    files.emplace_back((url.isLocalFile() ? url.toLocalFile() : url.toString()).toStdString());
  return files;
}

Raster ClipboardRaster(const PictureProgress& progress) {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  if (data == nullptr || !data->hasImage()) return {};
  const RunTimeError damaged(Tr("The picture in the clipboard is damaged or too large.") + ' ' +
                             SizeRule());
  bool stopped = false;
  try {
    auto offered = OfferedPicture(*data, [&](int percent) {
      stopped = stopped || !progress(percent);
      return !stopped;
    });
    if (offered && !offered->Warning.empty()) throw damaged;
    if (offered) return std::move(offered->Picture);
  } catch (const RunTimeError&) {
    throw damaged;
  }
  if (stopped) throw RunTimeError("The picture was not pasted.");
  // The toolkit would decode it within the program.
  if (!IsOwn(*data))
    throw RunTimeError(
        "The picture in the clipboard is in no type that is pasted, such as PNG, TIFF, JPEG or "
        "BMP. Please save it as a file, and open that.");
  QImage image = QGuiApplication::clipboard()->image();
  if (image.isNull()) throw damaged;
  const bool clear = image.hasAlphaChannel();
  image.convertTo(clear ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  Raster raster(image.width(), image.height());
  for (int y = 0; y < raster.Height(); ++y)
    std::memcpy(raster.Row(y), image.constScanLine(y), sizeof(std::uint32_t) * raster.Width());
  if (clear) Flatten(raster);
  return raster;
}

bool ClipboardHasPicture() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data != nullptr && (data->hasImage() || !FilesOf(*data).empty());
}

std::vector<std::filesystem::path> ClipboardFiles() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data != nullptr ? FilesOf(*data) : std::vector<std::filesystem::path>();
}

}  // namespace graphize
