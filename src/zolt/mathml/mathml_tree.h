#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::mathml {

using oss::wstring;

/// The elements of MathML that readers tell apart.
enum MathmlTagE : std::uint8_t {
  MATHML_OTHER,    ///< an operator of content MathML, or no element of MathML
  MATHML_FOREIGN,  ///< of another vocabulary
  // Tokens, whose content is text.
  MATHML_MI,
  MATHML_MN,
  MATHML_MO,
  MATHML_MTEXT,
  MATHML_MS,
  MATHML_CI,
  MATHML_CN,
  MATHML_CSYMBOL,
  MATHML_CS,
  // All others of the presentation.
  MATHML_MATH,
  MATHML_MACTION,
  MATHML_MENCLOSE,
  MATHML_MERROR,
  MATHML_MFENCED,
  MATHML_MFRAC,
  MATHML_MMULTISCRIPTS,
  MATHML_MOVER,
  MATHML_MPADDED,
  MATHML_MROOT,
  MATHML_MROW,
  MATHML_MSQRT,
  MATHML_MSTYLE,
  MATHML_MSUB,
  MATHML_MSUBSUP,
  MATHML_MSUP,
  MATHML_MTABLE,
  MATHML_MTD,
  MATHML_MTR,
  MATHML_MLABELEDTR,
  MATHML_MUNDER,
  MATHML_MUNDEROVER,
  MATHML_PRESCRIPTS,
  MATHML_SEMANTICS,
  MATHML_SPACE  ///< shows nothing: "mspace", "mphantom", "none"
};

/// An element, or its place in the tree.
using MathmlIdT = std::uint32_t;
constexpr MathmlIdT no_element = 0xFFFFFFFF;

/// What is known of an element beside its name and text.
struct MathmlElementS {
  MathmlTagE tag = MATHML_OTHER;
  MathmlIdT parent = no_element;
  MathmlIdT first = no_element;  ///< child
  MathmlIdT next = no_element;   ///< sibling
  std::size_t begin = 0;         ///< in the text that was read
  std::size_t end = 0;
};

/// Stands in the text of a token for the element "sep".
constexpr char16_t number_separator = u'\x1F';

/// A formula in MathML as elements, which whoever reads XML fills: the reader of this project, a browser's
/// own. Prefixes of namespaces, annotations, and what is inside of tokens beside text are left out. Memory is
/// in proportion to the input, and nothing recurses with its depth.
class MathmlTreeC {
 public:
  // ---- Filling, in the order of the text ----

  /// Opens an element; `begin` is its place in the text. The first one is the root.
  void open(std::u16string_view name, std::size_t begin);
  /// Adds an attribute to the element that was opened last.
  void addAttribute(std::u16string_view name, std::u16string_view value);
  void addText(std::u16string_view text);
  /// Closes the innermost open element. False when none is open.
  bool close(std::size_t end);
  /// Whether every element is closed and there is one.
  [[nodiscard]] bool isComplete() const { return !elements_.empty() && open_ == no_element; }

  // ---- Reading ----

  static constexpr MathmlIdT root = 0;

  MathmlElementS const& cref(MathmlIdT id) const { return elements_[id].element; }
  /// Its name without a prefix.
  std::u16string_view name(MathmlIdT id) const { return part(elements_[id].name); }
  /// The text of a token, blanks at its ends cut off and those inside joined; of other elements what is
  /// between their children, which should be nothing.
  std::u16string_view text(MathmlIdT id) const { return part(elements_[id].text); }
  /// The value of an attribute; empty when it is not there.
  std::u16string_view attribute(MathmlIdT id, std::u16string_view name) const;
  bool hasAttribute(MathmlIdT id, std::u16string_view name) const;

  /// Whether its rows group what somebody typed side by side, and not what belongs together: an annotation
  /// says that the formula was typed in StarMath, whose rows of "a - 2b" are those of "(a - 2) b".
  bool hasTypedRows() const { return typedRows_; }

  /// Where the element is, for people: "math/mrow[2]/mfrac". Of very deep ones only the last elements.
  wstring path(MathmlIdT id) const;

 private:
  struct PartS {
    std::size_t begin = 0;
    std::size_t size = 0;
  };
  struct AttributeS {
    PartS name;
    PartS value;
  };
  struct RecordS {
    MathmlElementS element;
    MathmlIdT last = no_element;  // child
    PartS name;
    PartS text;
    std::size_t firstAttribute = 0;
    std::size_t numAttributes = 0;
  };

  std::u16string_view part(PartS const& part) const {
    return std::u16string_view(pool_).substr(part.begin, part.size);
  }
  PartS keep(std::u16string_view text);
  void trim(RecordS& record);
  AttributeS const* findAttribute(MathmlIdT id, std::u16string_view name) const;

  std::vector<RecordS> elements_;
  std::vector<AttributeS> attributes_;
  wstring pool_;  // all texts
  MathmlIdT open_ = no_element;
  std::size_t skipped_ = 0;  // so many open elements are not in the tree
  bool keepsText_ = true;    // of those
  wstring prefix_;           // of the root
  bool typedRows_ = false;
};

/// Whether the element holds text instead of elements.
constexpr bool isToken(MathmlTagE tag) { return tag >= MATHML_MI && tag <= MATHML_CS; }

}  // namespace zolt::mathml
