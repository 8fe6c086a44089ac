#pragma once

#include <QObject>

namespace graphize {

/// Tells when the system asks the program to end: SIGTERM, SIGINT, and SIGHUP where that is not
/// ignored from the start. At most one of these at a time.
class EndSignals : public QObject {
  Q_OBJECT
 public:
  explicit EndSignals(QObject* parent = nullptr);
  ~EndSignals() override;

 signals:
  void EndAsked();
};

}  // namespace graphize
