#include "zolt/field/input_options.h"

namespace zolt::field {

bool setOption(InputOptionsS& options, wstring const& name, bool on) {
  struct OptionS {
    char16_t const* name;
    bool InputOptionsS::*member;
  };
  static constexpr OptionS table[] = {{u"constructs", &InputOptionsS::constructs},
                                      {u"letters", &InputOptionsS::letters},
                                      {u"leaving", &InputOptionsS::leaving},
                                      {u"decimal-comma", &InputOptionsS::decimalComma},
                                      {u"implied-products", &InputOptionsS::impliedProducts}};
  for (OptionS const& option : table) {
    if (name != option.name) continue;
    options.*option.member = on;
    return true;
  }
  return false;
}

}  // namespace zolt::field
