#include "tests/support/live_objects.h"

#include "zolt/algexpr/cas_session.h"
#include "zolt/oss/live_count.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/view/view.h"

namespace zolt::tests {

using namespace math::ved;
using oss::LiveCountTC;

namespace {

OperatorListC& processTable() {
  return *OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
}

std::string describe(char const* what, long count, long before) {
  if (count == before) return "";
  return std::string(what) + ": " + std::to_string(count) + " alive, " + std::to_string(before) + " before\n";
}

}  // namespace

LiveObjectsS LiveObjectsS::count() {
  processTable();
  return {LiveCountTC<oss::RefCountedBC>::get() - LiveCountTC<OperatorBC>::get(), LiveCountTC<Node4C>::get(),
          LiveCountTC<ViewZNT4C>::get()};
}

std::string LiveObjectsS::findDifference(LiveObjectsS const& before) const {
  return describe("shared objects", shared, before.shared) + describe("tree nodes", nodes, before.nodes) +
         describe("views", views, before.views);
}

long emptyOperatorTable() {
  processTable() = OperatorListC();
  return LiveCountTC<OperatorBC>::get();
}

}  // namespace zolt::tests
