// The normal law: density, distribution function and its inverse.
#pragma once

class Tlnormal {
 public:
  Tlnormal(double mean = 0.0, double sigma = 1.0) : dMean(mean), dSigma(sigma) {}
  double density(double x) const;
  // P(X <= x).
  double distribution(double x) const;
  // The x with distribution(x) = p, for 0 < p < 1 (NaN outside).
  double quantile(double p) const;
  double mean() const { return dMean; }
  double sigma() const { return dSigma; }

 private:
  double dMean, dSigma;
};
