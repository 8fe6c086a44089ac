#include "widgets/short_combo_box.h"

#include <QStyleOptionComboBox>
#include <algorithm>

namespace graphize {

QSize ShortComboBox::minimumSizeHint() const {
  constexpr int kIconGap = 4, kMargin = 2;  // pixels, as in the toolkit's own box
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QSize contents(
      letters_ * fontMetrics().horizontalAdvance(QLatin1Char('X')) + iconSize().width() + kIconGap,
      std::max(fontMetrics().height(), iconSize().height()) + kMargin);
  return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

}  // namespace graphize
