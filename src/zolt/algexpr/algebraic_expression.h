#pragma once

#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/node.h"
#include "zolt/common/read_error.h"

namespace zolt::math::algexpr {

/// An expression and the session it belongs to. Nothing here recurses with the depth of the expression, and
/// everything is linear in its size (a shared part counts once for each place where it occurs).
class AlgebraicExpressionC : public oss::RefCountedBC {
 public:
  /// A null `node` is the empty expression; a null `session` means whichever is current.
  AlgebraicExpressionC(PointerTC<NodeABC> node, PointerTC<CASSessionBC> session);

  /// Reads prefix text: a name, a number, or `name(argument,argument,…)`; blanks (U+0020) around these are
  /// skipped. A name is any run of characters without "(", ")", ",", blank, grave accent and control
  /// characters; what starts with a digit, "." or a minus before one of these must be a number
  /// (`makeNumber`). Null when malformed, `*error` then saying where and why.
  [[nodiscard]] static PointerTC<AlgebraicExpressionC> fromPrefixString(wstring const& prefix,
                                                                        PointerTC<CASSessionBC> session,
                                                                        common::ReadErrorS* error = nullptr);
  /// The same in the current session.
  [[nodiscard]] static PointerTC<AlgebraicExpressionC> fromPrefixString(wstring const& prefix);

  /// The expression as prefix text without blanks, which reads back to an equal expression. Empty for the
  /// empty expression.
  wstring toPrefixString() const;

  PointerTC<NodeABC> getNode() const { return node_; }
  /// The session given to the constructor, perhaps null.
  PointerTC<CASSessionBC> getCASSession() const { return session_; }
  /// The session's engine, or the current session's when there is none.
  CASEngineABC const& getCASEngine() const;

  /// Calls `visitor` for every node in the visitor's order. The nodes stay alive during the walk whatever the
  /// visitor does.
  void accept(NodeVisitorABC& visitor) const;

  /// The same functions, names and digits in the same shape; sessions do not count.
  [[nodiscard]] bool equals(AlgebraicExpressionC const& other) const;

 private:
  PointerTC<NodeABC> node_;
  PointerTC<CASSessionBC> session_;
};

}  // namespace zolt::math::algexpr
