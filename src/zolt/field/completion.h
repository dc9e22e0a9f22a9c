#pragma once

#include <cstddef>
#include <vector>

#include "zolt/field/palette_model.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class OperatorListC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field {

using oss::wstring;

enum CompletionE {
  COMPLETION_CLOSED = 0,
  COMPLETION_OF_COMMAND =
      1,                  ///< of what is typed after a backslash, which is composed and not in the formula
  COMPLETION_OF_NAME = 2  ///< of the letters just typed, which are in the formula
};

/// The list in which a person finds what to insert by the beginning of its name: constructs, functions, signs
/// and Greek letters, from the same table as palettes. A field keeps one (`FormulaFieldC::crefCompletion`); a
/// host shows it at `FormulaFieldC::getCompletionRectangle`.
class CompletionC {
 public:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);
  static constexpr std::size_t max_query = 40;

  CompletionE getKind() const { return kind_; }
  bool isOpen() const { return kind_ != COMPLETION_CLOSED; }
  /// What has been typed of the name, without the backslash.
  wstring const& crefQuery() const { return query_; }
  /// What may be meant, the best first; empty when nothing of that name is known. They live until the list is
  /// opened again.
  std::vector<PaletteEntryS const*> const& crefEntries() const { return entries_; }
  /// The number of the entry that is going to be accepted; `none`: none yet.
  std::size_t getCurrent() const { return current_; }

  // The rest is for the field.

  void open(CompletionE kind, math::ved::ViewZNT4C const& view);
  void close() { kind_ = COMPLETION_CLOSED; }
  /// As before it was closed.
  void reopen(CompletionE kind) { kind_ = kind; }
  /// Finds the entries anew. In a list of names nothing is current, since the keys that accept an entry have
  /// another meaning while a name is typed.
  void setQuery(wstring query);
  /// To the next or the previous entry, from the last to the first. A list of names also has a state before
  /// the first entry, in which nothing is current.
  void moveCurrent(bool forwards);
  /// Whether a character can belong to a name that begins with the query.
  bool isContinuedBy(char16_t c) const;
  /// The number of the entry whose full name has been typed.
  std::size_t findExact() const;
  /// The same, or the current one when its name begins with what has been typed.
  std::size_t findMeant() const;
  void noteUse(std::size_t number);

 private:
  struct CandidateS {
    PaletteEntryS const* entry;
    std::vector<wstring> names;  // what is typed comes first
    unsigned long used = 0;      // greater: more recently; 0: never
  };
  struct RankS {
    unsigned tier;       // smaller is better
    std::size_t length;  // of the name that matches
  };

  void collect(math::ved::OperatorListC const& operators, math::ved::ViewZNT4C const& view);
  static RankS rank(CandidateS const& candidate, wstring const& query);

  CompletionE kind_ = COMPLETION_CLOSED;
  wstring query_;
  std::vector<PaletteEntryS const*> entries_;
  std::vector<unsigned> tiers_;  // of the entries
  std::size_t current_ = none;
  std::vector<PaletteGroupS> groups_;
  std::vector<CandidateS> candidates_;
  math::ved::OperatorListC const* operators_ = nullptr;  // those of the candidates
  std::size_t operatorCount_ = 0;
  unsigned long uses_ = 0;
};

}  // namespace zolt::field
