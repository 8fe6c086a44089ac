#include "workspace/about_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/translation.h"
#include "widgets/show.h"

namespace graphize {

namespace {

constexpr int kIconSize = 64;

/// A text that can be selected, to be copied into a report.
QLabel* Text(const char* name, const QString& accessibleName, const QString& text = {}) {
  auto* label = Named(new QLabel(text), name, accessibleName);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

AboutDialog::AboutDialog(const QIcon& icon, QWidget* parent)
    : FormDialog("frmAbout", tr("About Graphize"), parent) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  auto* picture = Named(new QLabel, "Icon", tr("The program's icon"));
  picture->setPixmap(icon.pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));

  title_ = Text("lblTitle", tr("Program"));
  QFont large = title_->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  title_->setFont(large);
  version_ = Text("lblVersion", tr("Version"));
  libraries_ = Text("lblLibraries", tr("Libraries"));
  decoding_ = Text("lblDecoding", tr("Limits of the decoder of pictures"));
  decoding_->setWordWrap(true);

  auto* texts = new QVBoxLayout;
  texts->setSpacing(4);
  texts->addWidget(title_);
  texts->addWidget(version_);
  texts->addSpacing(8);
  texts->addWidget(
      Text("lblDescription", tr("What it is for"), tr("Reads numbers out of pictures of graphs")));
  texts->addSpacing(8);
  texts->addWidget(Text("lblLicence", tr("Licence"),
                        tr("Copyright \u00a9 2026 The Graphize authors\n"
                           "Free software under the MIT licence: use, change and share it;\n"
                           "it comes without any warranty.")));
  texts->addSpacing(8);
  texts->addWidget(libraries_);
  texts->addWidget(decoding_);
  texts->addSpacing(10);

  auto* row = new QHBoxLayout;
  row->setSpacing(18);
  row->addWidget(picture, 0, Qt::AlignTop);
  row->addLayout(texts, 1);
  column->setContentsMargins(16, 16, 16, 12);
  column->addLayout(row);

  auto* information = Named(new QPushButton(tr("&System Info...")), "cmdSysInfo");
  information->setToolTip(tr("Start the desktop's tool that tells about this computer"));
  auto* ok = Named(new QPushButton(tr("OK")), "cmdOK");
  ok->setToolTip(tr("Close this window"));
  AddButtons({information, ok});
  ok->setDefault(true);
  ok->setFocus();
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  connect(information, &QPushButton::clicked, this, &AboutDialog::SystemInformationPressed);
}

void AboutDialog::Render(const AboutForm& form) {
  Show(title_, form.Title);
  Show(version_, form.Version);
  Show(libraries_, Tr("Stands on Qt %1, %2", std::string(qVersion()), form.Libraries));
  Show(decoding_, form.Decoding);
  decoding_->setVisible(!form.Decoding.empty());
}

}  // namespace graphize
