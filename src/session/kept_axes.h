#pragma once

#include "base/json.h"
#include "session/kept_document.h"

namespace graphize {

/// The members of "axes" in the small records: the definition's three rows, what follows from them,
/// references, and what the panel shows.
void AxesFields(JsonWriter& io, KeptDocument& kept);
/// RunTimeError for axes that no three clicks can have made.
void AxesFields(JsonReader& io, KeptDocument& kept);

}  // namespace graphize
