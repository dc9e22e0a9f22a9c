#include "zolt/catalogue_extended/plain_rows.h"

#include "zolt/exchange/plain_operator.h"

namespace zolt::catalogue_extended {

using exchange::registerPlainList;
using exchange::registerPlainOperator;
using oss::wstring;

namespace {

/// One construct, or one of its forms. `written` is the name of the call, perhaps with the form of its
/// arguments.
struct CallRowS {
  wstring name;
  unsigned long arity;
  wstring written;
  std::vector<wstring> read;
};

}  // namespace

void registerPlainRows() {
  // Of several rows with one name and arity the last one is written.
  CallRowS const calls[] = {{u"product", 4, u"prod(#1=#2,#3,#4)", {u"prod", u"product", u"∏"}},
                            {u"product", 4, u"prod", {u"prod", u"product", u"∏"}},
                            {u"limit", 3, u"lim(#2->#3,#1)", {u"lim"}},
                            {u"limit", 4, u"lim(#2->#3,#1,#4)", {u"lim"}},
                            {u"limit", 4, u"lim(#2->#3#4,#1)", {u"lim"}},
                            {u"index", 2, u"index", {u"index", u"_"}},
                            {u"index", 3, u"index", {u"index", u"_"}},
                            {u"antiderivative", 2, u"int", {u"int", u"primitive", u"∫"}},
                            {u"diffn", 3, u"diff", {u"diff"}},
                            {u"pdiff", 2, u"pdiff", {u"pdiff"}},
                            {u"pdiffn", 3, u"pdiff", {u"pdiff"}},
                            {u"binomial", 2, u"binomial", {u"binom", u"choose", u"binomial"}}};
  for (CallRowS const& row : calls) {
    registerPlainOperator({row.name, exchange::PLAIN_CALL, 0, row.written, row.read, false, row.arity});
  }
  exchange::registerPlainDoubleBars(u"norm");
  registerPlainList({u"set", u'{', u'}', 0, {}});
  registerPlainList({u"interval", u']', u'[', 2, {u"0", u"0"}});
  registerPlainList({u"interval", u']', u']', 2, {u"0", u"1"}});
  registerPlainList({u"interval", u'[', u'[', 2, {u"1", u"0"}});
  registerPlainList({u"interval", u'[', u']', 2, {u"1", u"1"}});
  registerPlainList({u"interval", u'[', u')', 2, {u"1", u"0"}});
  registerPlainList({u"interval", u'(', u']', 2, {u"0", u"1"}});
  registerPlainList({u"interval", u'(', u')', 2, {u"0", u"0"}});
}

}  // namespace zolt::catalogue_extended
