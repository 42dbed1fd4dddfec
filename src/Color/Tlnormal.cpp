#include "Color/Tlnormal.h"

#include <cmath>
#include <limits>

double Tlnormal::density(double x) const {
  const double z = (x - dMean) / dSigma;
  return std::exp(-0.5 * z * z) / (dSigma * std::sqrt(2.0 * 3.14159265358979323846));
}

double Tlnormal::distribution(double x) const { return 0.5 * std::erfc(-(x - dMean) / (dSigma * std::sqrt(2.0))); }

double Tlnormal::quantile(double p) const {
  if (!(p > 0 && p < 1)) return std::numeric_limits<double>::quiet_NaN();
  // Bisection on the distribution function of the standard law: it is
  // monotone, and 100 halvings of [-40, 40] leave no representable gap.
  const Tlnormal standard;
  double lo = -40.0, hi = 40.0;
  for (int i = 0; i < 100 && hi - lo > 0; ++i) {
    const double m = 0.5 * (lo + hi);
    if (standard.distribution(m) < p)
      lo = m;
    else
      hi = m;
  }
  const double z = 0.5 * (lo + hi);
  return dMean + dSigma * z;
}
