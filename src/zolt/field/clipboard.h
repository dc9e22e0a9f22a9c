#pragma once

#include "zolt/common/read_error.h"
#include "zolt/field/input_options.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::common::ReadErrorS;
using oss::bytestring;
using oss::wstring;

/// One copied piece of a formula in several forms, of which the reader takes the best. An empty form is
/// absent.
struct ClipboardContentS {
  bytestring bytes;  ///< exactly the items that were selected, for other formula fields
  wstring prefix;    ///< the expression as an algebra engine reads it; absent when it is incomplete
  /// As people type formulas; an incomplete one is written as far as possible. A block of a table's cells is
  /// text with tabs, as in programs for tables.
  wstring plainText;
  /// Of another program. What is copied has none, since `exchange::toLatex` makes it of the prefix.
  wstring latex = {};

  bool isEmpty() const { return bytes.empty() && prefix.empty() && latex.empty() && plainText.empty(); }
};

/// The clipboard that a field's commands write and read. A host implements it over the system's clipboard;
/// without one a field uses a MemoryClipboardC.
class ClipboardABC : public oss::RefCountedBC {
 public:
  ~ClipboardABC() override;
  virtual void write(ClipboardContentS const& content) = 0;
  /// The content; empty when a field can paste none of it.
  virtual ClipboardContentS read() const = 0;
  /// Whether `read` would return any content. It must be cheap, since every menu asks it.
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

/// What is in `range`; empty when the range is empty. A decimal comma is one in the plain text, too.
ClipboardContentS copyRange(math::ved::ViewZNT4C const& view, math::ved::SelectionS const& range,
                            InputOptionsS const& options);

enum PasteE {
  PASTE_DONE,
  PASTE_AS_CHARACTERS,  ///< the text is not a formula and was typed character by character
  PASTE_REFUSED         ///< nothing was changed
};

/// Text with tabs goes into the cells of the table around the caret, or becomes a table; so does a block of
/// cells, of which a table keeps the exact form. Else: replaces the view's selection by the first form of
/// `content` that can be read, and clears the forms before it; LaTeX that was read is then the prefix. Plain
/// text that is LaTeX is read as that. Plain text that is not a formula is typed character by character if
/// that is possible; if not, `error` (may be null) says why the text was refused. Call it within a group of
/// the view, and cancel the group after a refusal.
PasteE pasteContent(math::ved::ViewZNT4C& view, ClipboardContentS& content, InputOptionsS const& options,
                    ReadErrorS* error);

}  // namespace zolt::field
