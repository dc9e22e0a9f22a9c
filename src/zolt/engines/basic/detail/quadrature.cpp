#include "zolt/engines/basic/detail/quadrature.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>
#include <vector>

namespace zolt::engine_basic::detail {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double half_pi = 1.57079632679489662;
// Where the double exponential changes of variable end: what is further out counts less than rounding.
constexpr double outermost = 4.5;

// The rules of Gauss with 7 points and of Kronrod with 15, on -1 to 1: the points from the outermost one on.
constexpr double points[] = {0.991455371120812639206854697526329, 0.949107912342758524526189684047851,
                             0.864864423359769072789712788640926, 0.741531185599394439863864773280788,
                             0.586087235467691130294144691693013, 0.405845151377397166906606412076961,
                             0.207784955007898467600689403773245, 0.0};
constexpr double kronrod_weights[] = {
    0.022935322010529224963732008058970, 0.063092092629978553290700663189204,
    0.104790010322250183839876322541518, 0.140653259715525918745189590510238,
    0.169004726639267902826583426598550, 0.190350578064785409913256402421014,
    0.204432940075298892414161999234649, 0.209482141084727828012999174891714};
constexpr double gauss_weights[] = {
    0, 0.129484966168869693270611432679082, 0, 0.279705391489276667901467771423780,
    0, 0.381830050505118944950369775488975, 0, 0.417959183673469387755102040816327};

// How the integration variable depends on the one in whose panels the integral is taken.
enum MapE {
  MAP_NONE,
  MAP_FINITE,  // both ends may be singular
  MAP_RAY,     // from one end to infinity
  MAP_LINE
};

class IntegratorC {
 public:
  IntegratorC(IntegrandT const& function, MapE map, double lower, double upper, WatchC& watch)
      : function_(function), map_(map), lower_(lower), upper_(upper), watch_(watch) {}

  /// False, with a fault, when a value is missing or the integral does not settle.
  bool run(BallS* result) {
    double const first = map_ == MAP_NONE ? lower_ : -outermost;
    double const last = map_ == MAP_NONE ? upper_ : outermost;
    if (!add(first, (first + last) / 2) || !add((first + last) / 2, last)) return false;
    for (unsigned count = 0; count < max_panels; ++count) {
      PanelS const worst = panels_.top();
      if (worst.isTrusted && isSettled()) break;
      double const middle = (worst.begin + worst.end) / 2;
      if (worst.end - worst.begin < (last - first) * 1e-13) break;
      panels_.pop();
      if (!watch_.goOn(15) || !add(worst.begin, middle) || !add(middle, worst.end)) return false;
    }
    return sumUp(result, map_ == MAP_NONE ? 0 : tailAt(first) + tailAt(last));
  }

 private:
  static constexpr unsigned max_panels = 4000;

  struct PanelS {
    double begin = 0;
    double end = 0;
    double integral = 0;
    double difference = infinity;  // of the two rules
    double rounding = 0;           // of the function's values
    bool isTrusted = false;
    bool operator<(PanelS const& other) const {
      return isTrusted != other.isTrusted ? isTrusted : difference < other.difference;
    }
  };

  // The integration variable and its derivative.
  double variable(double t, double* derivative) const {
    if (map_ == MAP_NONE) {
      *derivative = 1;
      return t;
    }
    double const inner = half_pi * std::sinh(t);
    double const rate = half_pi * std::cosh(t);
    if (map_ == MAP_LINE) {
      *derivative = rate * std::cosh(inner);
      return std::sinh(inner);
    }
    if (map_ == MAP_RAY) {
      double const distance = std::exp(inner);
      *derivative = rate * distance;
      return std::isinf(upper_) ? lower_ + distance : upper_ - distance;
    }
    // Measured from the nearer end, so that small distances keep their digits.
    double const distance = 1 / (1 + std::exp(2 * std::fabs(inner)));
    *derivative = (upper_ - lower_) * 2 * rate * distance * (1 - distance);
    return t < 0 ? lower_ + (upper_ - lower_) * distance : upper_ - (upper_ - lower_) * distance;
  }

  bool value(double t, BallS* result) {
    double derivative = 0;
    double const x = variable(t, &derivative);
    BallS y;
    if (!valueNear(x, &y)) return false;
    *result = multiplyBalls(y, {derivative, 0});
    if (map_ != MAP_NONE) result->error += std::fabs(result->middle) * 1e-15;
    return std::isfinite(result->middle) || watch_.fail(CAS_CAUSE_TOO_LARGE);
  }

  // After a change of variable the ends come so near that the variable is rounded to them, where the function
  // may not be defined. What it is beside them stands in, with an error that is enough for all singularities
  // that can be integrated at all.
  bool valueNear(double x, BallS* y) {
    constexpr double rounding = 0x1p-53, doubt = 1000;
    if (function_(x, map_ == MAP_NONE ? 0 : std::fabs(x) * rounding, y)) return true;
    if (map_ == MAP_NONE || watch_.isOver()) return false;
    watch_.takeFault();
    bool const isAbove = std::isinf(lower_) || (!std::isinf(upper_) && x > (lower_ + upper_) / 2);
    double const inward = isAbove ? -infinity : infinity;
    double beside = x;
    for (int i = 0; i < 4; ++i) beside = std::nextafter(beside, inward);
    if (!function_(beside, 0, y)) return false;
    y->error = doubt * (std::fabs(y->middle) + y->error);
    return true;
  }

  // A bound of the function on a whole panel. A peak between the points of the rules would be missed
  // otherwise. Infinite where there is none.
  double bound(double begin, double end) {
    double first = 0, last = 0;
    double const a = variable(begin, &first), b = variable(end, &last);
    // So near to an end there is nothing between the points, and their errors tell how much is missing.
    bool const isAtEnd = map_ != MAP_NONE && std::fabs(b - a) <= 0x1p-47 * std::fabs(a + b);
    if (isAtEnd) return 0;
    BallS y;
    bool const isKnown = function_((a + b) / 2, std::fabs(b - a) / 2 * (1 + 1e-15), &y);
    if (!isKnown) {
      if (!watch_.isOver()) watch_.takeFault();
      return infinity;
    }
    double const middle = map_ == MAP_NONE ? 1 : derivativeAt((begin + end) / 2);
    return (std::fabs(y.middle) + y.error) * std::max({first, last, middle});
  }
  double derivativeAt(double t) const {
    double derivative = 0;
    static_cast<void>(variable(t, &derivative));
    return derivative;
  }

  bool add(double begin, double end) {
    PanelS panel;
    panel.begin = begin;
    panel.end = end;
    double const half = (end - begin) / 2, center = (begin + end) / 2;
    double kronrod = 0, gauss = 0, rounding = 0, largest = 0;
    for (std::size_t i = 0; i < 8; ++i) {
      for (int side = -1; side <= (i == 7 ? -1 : 1); side += 2) {
        BallS y;
        if (!value(center + side * half * points[i], &y)) return false;
        kronrod += kronrod_weights[i] * y.middle;
        gauss += gauss_weights[i] * y.middle;
        rounding += kronrod_weights[i] * (y.error + std::fabs(y.middle) * 1e-15);
        largest = std::max(largest, std::fabs(y.middle) + y.error);
      }
    }
    panel.integral = half * kronrod;
    panel.difference = half * std::fabs(kronrod - gauss);
    panel.rounding = half * rounding;
    double const most = bound(begin, end);
    if (watch_.isOver()) return false;
    panel.isTrusted = most <= 8 * largest;
    if (!panel.isTrusted && most * (end - begin) < 1e-17 * std::fabs(total_)) {
      panel.isTrusted = true;
      panel.difference = most * (end - begin);
    }
    total_ += panel.integral;
    panels_.push(panel);
    return true;
  }

  // The sums change with every panel; they are made anew now and then.
  bool isSettled() {
    if (++looks_ > 16 && looks_ % 16 != 0) return false;
    double difference = 0, rounding = 0;
    total_ = 0;
    auto rest = panels_;
    for (; !rest.empty(); rest.pop()) {
      difference += rest.top().difference;
      rounding += rest.top().rounding;
      total_ += rest.top().integral;
    }
    return difference <= std::max(rounding / 4, 1e-16 * std::fabs(total_));
  }

  // What is cut off beyond an end that a change of variable has moved to infinity.
  double tailAt(double t) {
    BallS y;
    if (value(t, &y)) return 10 * (std::fabs(y.middle) + y.error);
    return infinity;
  }

  bool sumUp(BallS* result, double tails) {
    if (watch_.hasFailed()) return false;
    double error = tails;
    BallS sum;
    for (; !panels_.empty(); panels_.pop()) {
      PanelS const& panel = panels_.top();
      if (!panel.isTrusted) return watch_.fail(CAS_CAUSE_NOT_CERTAIN);
      sum = addBalls(sum, {panel.integral, 0});
      error += 2 * panel.difference + panel.rounding;
    }
    result->middle = sum.middle;
    result->error = sum.error + error;
    bool const isKnown = std::isfinite(error) && (result->error < std::fabs(sum.middle) || error < 1e-9);
    return isKnown || watch_.fail(CAS_CAUSE_NOT_CERTAIN);
  }

  IntegrandT const& function_;
  MapE const map_;
  double const lower_;
  double const upper_;
  WatchC& watch_;
  std::priority_queue<PanelS> panels_;
  double total_ = 0;
  unsigned looks_ = 0;
};

// How much a bound that is not known exactly may change the integral.
bool addBoundError(IntegrandT const& function, BallS bound, BallS* result) {
  if (bound.isExact()) return true;
  BallS y;
  if (!function(bound.middle, bound.error, &y)) return false;
  result->error += bound.error * (std::fabs(y.middle) + y.error);
  return true;
}

}  // namespace

bool integrateBall(IntegrandT const& function, BallS lower, BallS upper, WatchC& watch, unsigned long part,
                   BallS* result) {
  watch.setPart(part);
  bool const isTurned = lower.middle > upper.middle;
  if (isTurned) std::swap(lower, upper);
  bool const isOpenBelow = std::isinf(lower.middle), isOpenAbove = std::isinf(upper.middle);
  if (lower.middle == upper.middle) {
    if (isOpenBelow) return watch.fail(CAS_CAUSE_UNDEFINED);
    *result = {};
    return addBoundError(function, lower, result) && addBoundError(function, upper, result);
  }
  bool done = false;
  if (isOpenBelow || isOpenAbove) {
    MapE const map = isOpenBelow && isOpenAbove ? MAP_LINE : MAP_RAY;
    done = IntegratorC(function, map, lower.middle, upper.middle, watch).run(result);
  } else {
    done = IntegratorC(function, MAP_NONE, lower.middle, upper.middle, watch).run(result);
    bool const mayBeSingular = !done && !watch.isOver() && watch.crefFault().cause != CAS_CAUSE_NO_VALUE;
    if (mayBeSingular) {
      FaultS const first = watch.takeFault();
      done = IntegratorC(function, MAP_FINITE, lower.middle, upper.middle, watch).run(result);
      // The reason on the plain way belongs to a part of the integrand.
      if (!done && !watch.isOver() && watch.crefFault().cause == CAS_CAUSE_NOT_CERTAIN) {
        watch.takeFault();
        watch.fail(first.cause, first.part, first.subject);
      }
    }
  }
  if (!done) {
    // That the integrand is not defined at some number does not tell that there is no integral.
    CASCauseE const cause = watch.crefFault().cause;
    bool const isAtPoint = cause == CAS_CAUSE_DIVISION_BY_ZERO || cause == CAS_CAUSE_UNDEFINED;
    if (!isAtPoint) return false;
    watch.takeFault();
    return watch.fail(CAS_CAUSE_NOT_CERTAIN, part, {});
  }
  if (isTurned) result->middle = -result->middle;
  if (addBoundError(function, lower, result) && addBoundError(function, upper, result)) return true;
  if (!watch.isOver()) watch.takeFault();
  return watch.fail(CAS_CAUSE_NOT_CERTAIN, part, {});
}

}  // namespace zolt::engine_basic::detail
