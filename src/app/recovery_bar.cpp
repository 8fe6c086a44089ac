#include "app/recovery_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "widgets/show.h"

namespace graphize {

RecoveryBar::RecoveryBar(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("RecoveryBar"));
  setAccessibleName(tr("Work that was not closed"));
  setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 2, 4, 2);
  text_ = Named(new QLabel, "LBL_Session");
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  text_->setForegroundRole(QPalette::ToolTipText);
  row->addWidget(text_, 1);
  const auto button = [&](const char* name, const QString& text, const QString& tip) {
    auto* made = Named(new QPushButton(text), name, tip);
    made->setToolTip(tip);
    made->setAutoDefault(false);
    row->addWidget(made);
    return made;
  };
  recover_ = button("BTN_Recover", tr("Recover"), tr("Bring back what was done then"));
  connect(recover_, &QPushButton::clicked, this, &RecoveryBar::RecoverPressed);
  connect(button("BTN_DeleteSession", tr("Delete"), tr("Delete what was done then for good")),
          &QPushButton::clicked, this, &RecoveryBar::DeletePressed);
  connect(button("BTN_LaterSession", tr("Later"), tr("Ask again at the next start")),
          &QPushButton::clicked, this, &RecoveryBar::LaterPressed);
  hide();
}

void RecoveryBar::Offer(const std::string& session, bool canRecover) {
  Show(text_, session);
  Enable(recover_, canRecover);
}

}  // namespace graphize
