#include "nokia3210/cnokia.h"

namespace tonadex::nokia3210 {

void CNokia::Clear() {
  originalText_.clear();
  notes_.Clear();
  converted_.clear();
  log_.Clear();
}

void CNokia::Convert() {
  notes_.Clear();
  log_.Clear();
  const NoteKind given = ShowType == NoteKind::kRTTTL ? NoteKind::kComposer : NoteKind::kRTTTL;
  notes_.GetNotes(originalText_, given, Defaults, log_);
  converted_ = cNote::NoteBatch(notes_, ShowType, Defaults);
}

}  // namespace tonadex::nokia3210
