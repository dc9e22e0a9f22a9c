#pragma once

#include "zolt/exchange/plain_text.h"
#include "zolt/field/input_options.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using oss::bytestring;
using oss::wstring;

/// One copied piece of formula in several forms, for whoever pastes it. Empty forms are not there.
struct ClipboardContentS {
  bytestring bytes;   ///< exactly the items that were selected, for other formula fields
  wstring prefix;     ///< the expression as an algebra engine reads it; not there when it is incomplete
  wstring plainText;  ///< as people type formulas; of an incomplete one whatever can be told

  bool isEmpty() const { return bytes.empty() && prefix.empty() && plainText.empty(); }
};

/// Where a field's copy and paste commands put and find what they move. A host with a clipboard of the
/// system's implements it; a field without one has its own memory.
class ClipboardABC : public oss::RefCountedBC {
 public:
  ~ClipboardABC() override;
  virtual void write(ClipboardContentS const& content) = 0;
  /// Empty when there is nothing that a field could paste.
  virtual ClipboardContentS read() const = 0;
  /// Whether `read` would give anything; cheap, asked whenever a menu is shown.
  virtual bool hasContent() const = 0;
};

/// Keeps what was written last.
class MemoryClipboardC final : public ClipboardABC {
 public:
  ~MemoryClipboardC() override;
  void write(ClipboardContentS const& content) override { content_ = ClipboardContentS(content); }
  ClipboardContentS read() const override { return content_; }
  bool hasContent() const override { return !content_.isEmpty(); }

 private:
  ClipboardContentS content_;
};

/// What is shown in `range`; empty when the range is. With a decimal comma the plain text has "," for the
/// decimal sign and ";" between arguments.
ClipboardContentS copyRange(math::ved::ViewZNT4C const& view, math::ved::SelectionS const& range,
                            InputOptionsS const& options);

enum PasteE {
  PASTE_DONE,
  PASTE_AS_CHARACTERS,  ///< the text is no formula and was typed in as it stands
  PASTE_REFUSED         ///< nothing is changed
};

/// The forms of what is pasted, in the order in which they are tried.
enum ClipboardFormE { CLIPBOARD_BYTES, CLIPBOARD_PREFIX, CLIPBOARD_PLAIN_TEXT };

/// Replaces the view's selection by the first form of `content` that reads, and sets `form` to it. Plain text
/// that is no formula is typed in when its characters can be; when they cannot, `error` (may be null) says
/// why it was refused. To be called in a group of the view's, which the caller cancels after a refusal.
PasteE pasteContent(math::ved::ViewZNT4C& view, ClipboardContentS const& content,
                    InputOptionsS const& options, exchange::PlainTextErrorS* error, ClipboardFormE& form);

}  // namespace zolt::field
