#pragma once

#include <QPixmap>
#include <cstdint>

class QWidget;

namespace graphize {

/// A square of this colour (0xRRGGBB) with an edge, `side` logical pixels wide, as sharp as the
/// screen that shows `on`.
QPixmap Swatch(const QWidget& on, std::uint32_t pixel, int side);

}  // namespace graphize
