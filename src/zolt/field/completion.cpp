#include "zolt/field/completion.h"

#include <algorithm>
#include <tuple>

#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace math::common;
using namespace math::ved;

namespace {

// How well a name or title fits what has been typed.
constexpr unsigned tier_typed = 0;      // the name that is typed for it
constexpr unsigned tier_name = 1;       // another of its names
constexpr unsigned tier_same = 2;       // one of them in other letters, large or small
constexpr unsigned tier_beginning = 3;  // the beginning of one
constexpr unsigned tier_begins = 4;     // the same in other letters
constexpr unsigned tier_word = 5;       // the beginning of a word of the title
constexpr unsigned tier_part = 6;       // a part of a name or title
constexpr unsigned tier_letters = 7;    // letters of a name in their order, among them the first
constexpr unsigned tier_not = 8;

bool beginsWith(wstring const& text, wstring const& beginning, std::size_t at = 0) {
  return text.compare(at, beginning.size(), beginning) == 0;
}

/// Whether the letters are in the text in their order, the first of them at its start.
bool hasLetters(wstring const& text, wstring const& letters) {
  if (letters.size() < 2 || text.empty() || text[0] != letters[0]) return false;
  std::size_t at = 0;
  for (char16_t const letter : letters) {
    at = text.find(letter, at);
    if (at == wstring::npos) return false;
    ++at;
  }
  return true;
}

unsigned tierOfName(wstring const& name, wstring const& query, bool isTyped) {
  if (name == query) return isTyped ? tier_typed : tier_name;
  if (beginsWith(name, query)) return tier_beginning;
  wstring const small = toAsciiLower(name);
  wstring const wanted = toAsciiLower(query);
  if (small == wanted) return tier_same;
  if (beginsWith(small, wanted)) return tier_begins;
  if (small.find(wanted) != wstring::npos) return tier_part;
  return hasLetters(small, wanted) ? tier_letters : tier_not;
}

unsigned tierOfTitle(wstring const& title, wstring const& query) {
  wstring const small = toAsciiLower(title);
  wstring const wanted = toAsciiLower(query);
  unsigned tier = tier_not;
  for (std::size_t at = small.find(wanted); at != wstring::npos; at = small.find(wanted, at + 1)) {
    if (at == 0 || !isAsciiLetter(small[at - 1])) return tier_word;
    tier = tier_part;
  }
  return tier;
}

/// Whether a word can be typed after a backslash.
bool isCommandName(wstring const& name) {
  return !name.empty() && isAsciiLetter(name[0]) &&
         std::all_of(name.begin(), name.end(), [](char16_t c) { return isAsciiLetter(c) || isDigit(c); });
}

/// The names of an entry that can be typed after a backslash; first the one that is typed without one.
std::vector<wstring> namesOf(PaletteEntryS const& entry) {
  wstring typed = entry.shortcut;
  if (!typed.empty() && typed.back() == u'(') typed.pop_back();
  std::vector<wstring> names{isCommandName(typed) ? typed : wstring()};
  for (wstring const& keyword : entry.keywords) {
    if (isCommandName(keyword) && keyword != typed) names.push_back(keyword);
  }
  wstring const title = toAsciiLower(entry.title);
  if (isCommandName(title) && title != typed) names.push_back(title);
  return names;
}

}  // namespace

void CompletionC::open(CompletionE kind, ViewZNT4C const& view) {
  OperatorListC const& operators = view.crefOperatorList();
  if (&operators != operators_ || operators.crefInOrder().size() != operatorCount_) collect(operators, view);
  kind_ = kind;
  setQuery({});
}

void CompletionC::collect(OperatorListC const& operators, ViewZNT4C const& view) {
  operators_ = nullptr;
  entries_.clear();
  tiers_.clear();
  candidates_.clear();
  groups_ = makePalette(view);
  for (PaletteGroupS const& group : groups_) {
    for (PaletteEntryS const& entry : group.entries) candidates_.push_back({&entry, namesOf(entry)});
  }
  operators_ = &operators;
  operatorCount_ = operators.crefInOrder().size();
}

CompletionC::RankS CompletionC::rank(CandidateS const& candidate, wstring const& query) {
  RankS best{query.empty() ? tier_beginning : tier_not, 0};
  if (query.empty()) return best;
  for (std::size_t i = 0; i < candidate.names.size(); ++i) {
    wstring const& name = candidate.names[i];
    unsigned const tier = tierOfName(name, query, i == 0);
    if (std::tuple(tier, name.size()) < std::tuple(best.tier, best.length)) best = {tier, name.size()};
  }
  unsigned const tier = tierOfTitle(candidate.entry->title, query);
  if (tier < best.tier) best = {tier, candidate.entry->title.size()};
  return best;
}

void CompletionC::setQuery(wstring query) {
  struct FoundS {
    RankS rank;
    CandidateS const* candidate;
  };
  std::vector<FoundS> found;
  unsigned const worst = kind_ == COMPLETION_OF_NAME ? tier_begins : tier_letters;
  for (CandidateS const& candidate : candidates_) {
    RankS const ranked = rank(candidate, query);
    if (ranked.tier <= worst) found.push_back({ranked, &candidate});
  }
  // Of several with the same name, what was registered last has it, as everywhere.
  auto const other = std::stable_partition(found.begin(), found.end(),
                                           [](FoundS const& one) { return one.rank.tier <= tier_same; });
  std::reverse(found.begin(), other);
  std::stable_sort(found.begin(), found.end(), [](FoundS const& a, FoundS const& b) {
    return std::tuple(a.rank.tier, b.candidate->used, a.rank.length) <
           std::tuple(b.rank.tier, a.candidate->used, b.rank.length);
  });
  std::vector<PaletteEntryS const*> entries;
  std::vector<unsigned> tiers;
  for (FoundS const& one : found) {
    entries.push_back(one.candidate->entry);
    tiers.push_back(one.rank.tier);
  }
  // Nothing fails from here on.
  entries_.swap(entries);
  tiers_.swap(tiers);
  query_.swap(query);
  current_ = kind_ == COMPLETION_OF_COMMAND && !entries_.empty() ? 0 : none;
}

void CompletionC::moveCurrent(bool forwards) {
  std::size_t const count = entries_.size();
  if (count == 0) return;
  bool const mayBeNone = kind_ == COMPLETION_OF_NAME;
  if (current_ == none) {
    current_ = forwards ? 0 : count - 1;
  } else if (forwards) {
    current_ = current_ + 1 < count ? current_ + 1 : mayBeNone ? none : 0;
  } else {
    current_ = current_ > 0 ? current_ - 1 : mayBeNone ? none : count - 1;
  }
}

bool CompletionC::isContinuedBy(char16_t c) const {
  if (query_.size() >= max_query) return false;
  if (isAsciiLetter(c)) return true;
  if (!isDigit(c)) return false;
  wstring const longer = query_ + c;
  return std::any_of(candidates_.begin(), candidates_.end(), [&](CandidateS const& candidate) {
    return std::any_of(candidate.names.begin(), candidate.names.end(),
                       [&](wstring const& name) { return beginsWith(name, longer); });
  });
}

std::size_t CompletionC::findExact() const {
  return !query_.empty() && !entries_.empty() && tiers_[0] <= tier_same ? 0 : none;
}

std::size_t CompletionC::findMeant() const {
  std::size_t const exact = findExact();
  if (exact != none || query_.empty() || current_ == none) return exact;
  return tiers_[current_] <= tier_begins ? current_ : none;
}

void CompletionC::noteUse(std::size_t number) {
  for (CandidateS& candidate : candidates_) {
    if (candidate.entry == entries_[number]) candidate.used = ++uses_;
  }
}

}  // namespace zolt::field
