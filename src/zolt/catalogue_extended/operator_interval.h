#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// An interval, interval(a,b,left,right) with 1 for an end that belongs to it and 0 for one that does not.
/// The rows are a and b; the ends are a variant of two digits, and none when both belong to it. With any
/// other ends it stays a call.
class OperatorIntervalC : public math::ved::ConstructBC {
 public:
  /// Whether the ends belong to it.
  struct EndsS {
    bool left;
    bool right;
  };

  /// The registered one, which knows the others.
  OperatorIntervalC();
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  bool hasOwnRow(unsigned long index) const override { return index < 2; }
  bool fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const override;
  unsigned long getCallArity() const override { return 0; }
  math::ved::wstring arrangeArgumentList(std::vector<math::ved::wstring> const& rows) const override;
  math::ved::wstring getVariant() const override;
  math::ved::PointerTC<OperatorBC> findVariant(math::ved::wstring const& variant) const override;

  EndsS getEnds() const { return ends_; }
  static math::ved::wstring variantOf(EndsS ends);

 protected:
  RowT fromArguments(math::algexpr::NodeABC const& node, std::vector<RowT> arguments) const override;

 private:
  explicit OperatorIntervalC(EndsS ends);

  EndsS ends_;
  std::vector<math::ved::PointerTC<OperatorBC>> others_;
};

/// Ends the interval around the caret: "]", ")" or "[" typed at its end.
class OperatorIntervalEndC : public math::ved::OperatorBC {
 public:
  enum EndE { END_CLOSED, END_OPEN };

  explicit OperatorIntervalEndC(EndE end);
  static math::ved::wstring nameOf(EndE end);
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;

 private:
  EndE end_;
};

/// "]" or ")" typed elsewhere: it ends the interval that "(" began, as in "(a,b]"; "]" also begins one
/// without its left end, "]a,b[".
class OperatorIntervalFromBracketC : public math::ved::OperatorBC {
 public:
  explicit OperatorIntervalFromBracketC(char16_t sign);
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;

 private:
  bool isClosed_;
};

/// ";" typed in what "[" began: its formulas are the first row of a matrix, "[a,b;c,d]".
class OperatorMatrixFromIntervalC : public math::ved::OperatorBC {
 public:
  OperatorMatrixFromIntervalC();
  bool appliesAt(math::ved::PlaceS const& caret) const override;
  bool runOperator(math::ved::ViewZNT4C& view) const override;
};

}  // namespace zolt::catalogue_extended
