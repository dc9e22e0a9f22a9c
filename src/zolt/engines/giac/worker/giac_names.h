// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <giac/config.h>
// Its configuration comes first.
#include <giac/giac.h>

#include <map>
#include <string>

#include "zolt/oss/wstring.h"

namespace zolt::giac_worker {

using giac::gen;
using oss::wstring;

/// Identifiers for the names of a request. None is a name that the algebra system knows: whatever a person
/// calls a variable, it is a variable.
class GiacNamesC {
 public:
  /// The same identifier each time.
  gen find(wstring const& name);
  /// One that is no other's, for a variable that a construct binds; it is written as `name`.
  gen makeBound(wstring const& name);
  /// What an identifier is written as; false when it is none of these.
  bool findName(gen const& identifier, wstring& name) const;

 private:
  std::map<wstring, gen> identifiers_;
  std::map<std::string, wstring> names_;
  unsigned long bound_ = 0;
};

/// A function that the algebra system has under another name, or the same; null when it has none. Only what
/// is in this table is ever called.
giac::unary_function_ptr const* findFunction(wstring const& name, unsigned long arity);
/// The name of a function, null when the table has none.
char16_t const* findName(giac::unary_function_ptr const& function);

/// What the arithmetic of the algebra system has no function for, or not the same one.
extern giac::unary_function_ptr const mod_function;
extern giac::unary_function_ptr const div_function;

gen makeTruth(bool isTrue);
bool isTruth(gen const& value, bool isTrue);
/// Whether it is true, false, or an open relation or a combination of such.
bool isTruthValued(gen const& value);

bool isReal(gen const& value);  ///< an exact or rounded real number
bool isExactReal(gen const& value);

}  // namespace zolt::giac_worker
