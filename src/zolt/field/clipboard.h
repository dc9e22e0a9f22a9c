#pragma once

#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
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
  // Of other programs. What is copied has none of these but HTML, since the notations' writers make them of
  // the prefix.
  wstring latex = {};
  wstring mathml = {};  ///< presentation or content
  /// A page with a formula as MathML, or with its LaTeX, or with a table; a copied block of cells as a table.
  wstring html = {};

  bool isEmpty() const {
    return bytes.empty() && prefix.empty() && latex.empty() && mathml.empty() && html.empty() &&
           plainText.empty();
  }
};

/// The form of what a clipboard has under a media type.
struct ClipboardTypeS {
  char const* type;
  wstring ClipboardContentS::*form;
};
/// The types of texts that a field can paste, the better ones of a form first.
std::vector<ClipboardTypeS> const& getClipboardTypes();

/// How a field reads MathML: `mathml::fromMathmlText` or, where programs have a reader of XML of their own, a
/// function that fills a `mathml::MathmlTreeC` with it. The text has a `math` element, perhaps in a page.
using MathmlReaderT = oss::PointerTC<math::algexpr::AlgebraicExpressionC> (*)(
    wstring const& text, oss::PointerTC<math::algexpr::CASSessionBC> session, ReadErrorS* error);

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

/// A longer text of another program is not looked through for formulas.
constexpr std::size_t max_pasted_markup = std::size_t(1) << 20;

/// Text with tabs goes into the cells of the table around the caret, or becomes a table; so does a block of
/// cells, of which a table keeps the exact form. Else: replaces the view's selection by the first form of
/// `content` that can be read, and clears the forms before it; what was read of MathML, LaTeX or a page is
/// then the prefix. Plain text that is MathML or LaTeX is read as that. Plain text that is not a formula is
/// typed character by character if that is possible; if not, `error` (may be null) says why the text was
/// refused. Without `readMathml` (null), nothing is read as MathML. Call it within a group of the view, and
/// cancel the group after a refusal.
PasteE pasteContent(math::ved::ViewZNT4C& view, ClipboardContentS& content, InputOptionsS const& options,
                    MathmlReaderT readMathml, ReadErrorS* error);

}  // namespace zolt::field
