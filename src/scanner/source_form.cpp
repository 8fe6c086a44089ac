#include "scanner/source_form.h"

#include <utility>

#include "base/translation.h"

namespace graphize {

void BeginLooking(SourceForm& form) {
  form.Sources.clear();
  form.Selected = -1;
  form.Looking = true;
  form.Hint = form.Network ? Tr("Looking for scanners, in the network, too ...")
                           : Tr("Looking for scanners ...");
}

void ShowSources(SourceForm& form, std::vector<ScanSource> sources, const std::string& chosen) {
  ShowNoSources(form, "");
  form.Sources = std::move(sources);
  for (std::size_t i = 0; i < form.Sources.size(); ++i)
    if (form.Sources[i].Name == chosen) form.Selected = static_cast<int>(i);
  if (form.Sources.empty())
    form.Hint = Tr("No scanner was found. Is it switched on and connected?");
  else if (form.Selected < 0 && !chosen.empty())
    form.Hint = Tr("The scanner chosen before, %1, is not there now.", chosen);
  if (form.Selected < 0 && !form.Sources.empty()) form.Selected = 0;
}

void ShowNoSources(SourceForm& form, const std::string& hint) {
  form.Sources.clear();
  form.Selected = -1;
  form.Looking = false;
  form.Hint = hint;
}

bool CanChooseSource(const SourceForm& form) {
  return !form.Looking && form.Selected >= 0 &&
         form.Selected < static_cast<int>(form.Sources.size());
}

std::string SourceLabel(const ScanSource& source) {
  const bool both = !source.Vendor.empty() && !source.Model.empty();
  const std::string label = source.Vendor + (both ? " " : "") + source.Model;
  return label.empty() ? source.Name : label;
}

}  // namespace graphize
