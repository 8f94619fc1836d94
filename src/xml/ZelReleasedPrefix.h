// The start of a document buffer whose pages a loader gave back to the system while the
// tokenizer was past them: its newlines were counted first, so that lines stay exact.
#ifndef ZELRELEASEDPREFIX_H
#define ZELRELEASEDPREFIX_H

struct TZelReleasedPrefix {
  const char* fStart;       // the buffer handed to Parse
  const char* fEnd;         // the prefix ends here; no page after it was given back
  unsigned int fNewlines;   // in [fStart, fEnd), counted before any page went
};

/// The prefix of the parse running on this thread, or null; GetCurLine() uses it for the
/// buffer it names only.
extern thread_local const TZelReleasedPrefix* gZelReleasedPrefix;

#endif
