#pragma once

#include <QComboBox>

namespace graphize {

/// A box as wide as a number of letters, however long its choices are. The toolkit's policy for
/// that makes the list that opens, a window of its own, as soon as it is set.
class ShortComboBox : public QComboBox {
 public:
  explicit ShortComboBox(int letters) : letters_(letters) {}
  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 private:
  int letters_;
};

}  // namespace graphize
