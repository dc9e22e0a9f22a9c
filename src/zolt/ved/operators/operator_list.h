#pragma once

#include <atomic>
#include <map>
#include <utility>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

/// The operators that the editor knows, by name (from expressions, the clipboard and typed names), by text
/// (from infix text) and by key code (from key events). The host fills it; the editor only reads it.
///
/// Any number of threads may read a list at once, and none may change it meanwhile: a host fills it before it
/// starts other threads. A list that another thread than its maker has looked into is frozen.
class OperatorListC : public oss::RefCountedBC {
 public:
  OperatorListC();
  /// Copies the tables into a list of its own. As with every counted object, the copy also copies the count.
  OperatorListC(OperatorListC const&);
  /// Copies the tables.
  OperatorListC& operator=(OperatorListC const&);
  ~OperatorListC() override;

  /// Whether registrations are refused: `add`, `addKey` and `remove` then do nothing.
  [[nodiscard]] bool isFrozen() const { return frozen_.load(std::memory_order_relaxed); }
  /// Registers by name and by text; in each table the last registration of a key wins.
  void add(PointerTC<OperatorBC> op);
  /// Binds a key code; the last binding wins.
  void addKey(unsigned long key, PointerTC<OperatorBC> op);
  /// Forgets only the name: the operator remains known by its text and key, so that typed text is still read.
  void remove(wstring const& name);

  /// The operator, or null.
  PointerTC<OperatorBC> lookup(wstring const& name) const;
  PointerTC<OperatorBC> lookupText(wstring const& text) const;
  PointerTC<OperatorBC> lookupKey(unsigned long key) const;

  /// The operator of a name as bytes and tree notation hold it (`OperatorBC::getStoredName`): a variant where
  /// the name has one. Null when there is none.
  PointerTC<OperatorBC> lookupStored(wstring const& name) const;
  /// The operator with this text in this place, where one text has several places: a sign before its operand
  /// and between two. Null when there is none. Not for OPERATOR_BY_NAME.
  PointerTC<OperatorBC> lookupText(wstring const& text, OperatorPlaceE place) const;
  /// Whether the character is the whole text of an operator with a place, other than an ASCII letter or
  /// digit. Such a character ends names.
  bool isSign(char16_t c) const;

  /// All operators by name, for completeness checks.
  std::map<wstring, PointerTC<OperatorBC>> const& crefByName() const { return noteReader(), byName_; }
  /// The same operators in the order in which their names were first registered, for palettes. The list keeps
  /// them alive.
  std::vector<OperatorBC*> const& crefInOrder() const { return noteReader(), inOrder_; }

 private:
  void noteReader() const;

  void const* maker_;  // what only this thread has the address of
  mutable std::atomic<bool> frozen_ = false;
  std::map<wstring, PointerTC<OperatorBC>> byName_;
  std::vector<OperatorBC*> inOrder_;  // those of byName_, which keeps them alive
  std::map<wstring, PointerTC<OperatorBC>> byText_;
  std::map<std::pair<OperatorPlaceE, wstring>, PointerTC<OperatorBC>> byPlace_;
  wstring signs_;  // sorted
  std::map<unsigned long, PointerTC<OperatorBC>> byKey_;
};

}  // namespace zolt::math::ved
