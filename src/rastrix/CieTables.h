// Published colorimetric tables the colour spaces need.
#pragma once

namespace Rastrix::cie {

struct TCmfRow {
  int nm;
  double x, y, z;
};
// 360 nm to 800 nm at 5 nm.
inline constexpr int iCmfRows = 89;
extern const TCmfRow aCmf1931[iCmfRows];

struct TRobertsonRow {
  double mired, u, v, t;
};
inline constexpr int iRobertsonRows = 31;
extern const TRobertsonRow aRobertson[iRobertsonRows];

}  // namespace Rastrix::cie
