// The focus measurement: the mean width of the edges in a rectangle of an
// 8- or 16-bit picture, from 20 % to 80 % of each edge's height, along the
// lines and along the columns; a sharper picture has narrower edges.
#pragma once

#include "statistik/TPicStatistikPlaneBasic.h"

// The mean 20-80 % width of the alternating rising and falling edges that
// cross `level` (cut to the pixel type) along the lines (direction 0) or
// the columns (1) of the rectangle, shifted into the picture. `result`
// keeps its value when no edge is found. Planes of other types raise
// 0x5100000 "ImageType %d not implemented!". Answers the number of edges.
int iCalculateFocusEdge(const Rastrix::TPlaneBasic* plane, CRectangle r, int direction, double level,
                        double& result);

class TPicStatistikFocus : public TPicStatistikPlaneBasic {
 public:
  TPicStatistikFocus(int index, Rastrix::TPlaneBasic* picture, const TResultStatistik* result)
      : TPicStatistikPlaneBasic(index, picture, result) {
    setPicStatistikType(eStatFocus);
  }
  // After the base: the edge width of both directions (the larger when
  // both are found) goes into every focus curve as its next point.
  void stop() override;
};
