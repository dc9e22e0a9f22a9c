#include "zolt/field/input_options.h"

#include "zolt/common/signs.h"

namespace zolt::field {

namespace {

struct OptionS {
  char16_t const* name;
  bool InputOptionsS::*member;
};

constexpr OptionS table[] = {{u"constructs", &InputOptionsS::constructs},
                             {u"letters", &InputOptionsS::letters},
                             {u"leaving", &InputOptionsS::leaving},
                             {u"exponents", &InputOptionsS::exponents},
                             {u"fractions", &InputOptionsS::fractions},
                             {u"grouping", &InputOptionsS::grouping},
                             {u"single-letters", &InputOptionsS::singleLetters},
                             {u"separation", &InputOptionsS::separation},
                             {u"completion", &InputOptionsS::completion},
                             {u"suggestions", &InputOptionsS::suggestions},
                             {u"decimal-comma", &InputOptionsS::decimalComma},
                             {u"implied-products", &InputOptionsS::impliedProducts},
                             {u"implied-brackets", &InputOptionsS::impliedBrackets}};

}  // namespace

std::vector<wstring> const& getCommonNames() {
  static std::vector<wstring> const names{u"arccos", u"arcsin", u"arctan", u"arg", u"cot", u"csc",
                                          u"det",    u"gcd",    u"lcm",    u"lim", u"max", u"min",
                                          u"rank",   u"sec",    u"sgn",    u"sign"};
  return names;
}

char16_t foldTyped(char16_t c, InputOptionsS const& options) {
  c = math::common::foldLookAlike(c, math::common::LOOK_ALIKE_TYPED);
  if (options.decimalComma && c == u',') return u'.';
  return options.decimalComma && c == u';' ? u',' : c;
}

bool setOption(InputOptionsS& options, wstring const& name, bool on) {
  for (OptionS const& option : table) {
    if (name != option.name) continue;
    options.*option.member = on;
    return true;
  }
  return false;
}

std::vector<std::pair<wstring, bool>> listChanges(InputOptionsS const& from, InputOptionsS const& to) {
  std::vector<std::pair<wstring, bool>> changes;
  for (OptionS const& option : table) {
    if (from.*option.member != to.*option.member) changes.emplace_back(option.name, to.*option.member);
  }
  return changes;
}

}  // namespace zolt::field
