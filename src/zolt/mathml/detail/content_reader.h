#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/mathml/detail/content_table.h"
#include "zolt/mathml/mathml.h"
#include "zolt/mathml/mathml_tree.h"

namespace zolt::mathml::detail {

using math::common::ReadErrorE;

/// Reads content MathML into expression nodes, with its own stack instead of recursion.
class ContentReaderC {
 public:
  using NodeT = PointerTC<math::algexpr::NodeABC>;

  /// `tree` must outlive the reader.
  explicit ContentReaderC(MathmlTreeC const& tree) : tree_(tree) {}

  /// Whether the element is of content MathML.
  static bool isContent(MathmlTreeC const& tree, MathmlIdT id);

  /// The node of the element. Null when something in it has no meaning; then the rest says what and why.
  NodeT read(MathmlIdT id);
  ReadErrorE getFault() const { return fault_; }
  MathmlIdT getFaultElement() const { return faultElement_; }

 private:
  /// What a part of an application is.
  enum RoleE : std::uint8_t {
    ROLE_OPERAND,
    ROLE_VARIABLE,
    ROLE_DEGREE,
    ROLE_BASE,
    ROLE_LOWER,
    ROLE_UPPER,
    ROLE_CONDITION
  };
  static constexpr std::size_t num_roles = ROLE_CONDITION + 1;

  struct PartS {
    NodeT node;
    RoleE role = ROLE_OPERAND;
    NodeT degree = {};  // of a variable
    int side = 0;       // of a condition: 1 from above, -1 from below
  };
  struct FrameS {
    MathmlIdT element;
    MathmlIdT child;  // the next one
    std::size_t firstPart;
  };
  /// The parts of an application by role.
  struct PartsS {
    PartS const* of[num_roles] = {};
    std::vector<NodeT> operands = {};
    std::vector<PartS const*> variables = {};
  };

  void begin(MathmlIdT id);
  void end(FrameS const& frame);
  bool readLeaf(MathmlIdT id);
  NodeT readNumber(MathmlIdT id);
  NodeT readPair(MathmlIdT id, std::u16string_view type, wstring const& first, wstring const& second);
  NodeT apply(MathmlIdT id, PartsS& parts);
  wstring nameOf(MathmlIdT id, std::size_t numOperands) const;
  NodeT applyNamed(wstring const& name, PartsS const& parts);
  NodeT applyRange(ContentRowS const& row, PartsS& parts);
  NodeT applyDerivative(ContentRowS const& row, PartsS const& parts);
  NodeT applyLimit(PartsS const& parts);
  NodeT makeContainer(MathmlIdT id, std::u16string_view name, std::vector<NodeT>&& operands);
  void put(NodeT node, RoleE role, MathmlIdT id);
  void fail(MathmlIdT id, ReadErrorE cause);

  MathmlTreeC const& tree_;
  std::vector<FrameS> frames_;
  std::vector<PartS> parts_;
  ReadErrorE fault_ = math::common::READ_ERROR_NONE;
  MathmlIdT faultElement_ = MathmlTreeC::root;
};

}  // namespace zolt::mathml::detail
