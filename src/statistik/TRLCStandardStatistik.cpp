#include "statistik/TRLCStandardStatistik.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "kxexception/KxError.h"
#include "math98/TPicConvol.h"
#include "object98/TPicture2RLC.h"
#include "rastrix/TFloatPicture.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TPlaneLoop.h"
#include "rastrix/TRGBFloatPicture.h"

using namespace Rastrix;

namespace {

// A colour pixel's three values as CIE XYZ (X, Y, Z).
template <class T>
void toXYZ(const T& p, TPixelColorSpace& space, double out[3]) {
  TRGBFloatPixel rgb;
  rgb.r = static_cast<float>(p.r), rgb.g = static_cast<float>(p.g), rgb.b = static_cast<float>(p.b);
  space.vSetColor(rgb, TPixelColorSpace::CIE_RGB);
  const TRGBFloatPixel& xyz = space.rGetColor(TPixelColorSpace::XYZ);
  out[0] = xyz.r, out[1] = xyz.g, out[2] = xyz.b;
}

}  // namespace

TRLCStandardStatistik::TRLCStandardStatistik(unsigned colours, bool meanVar, bool minMax, bool geometric,
                                             bool photometric)
    : uiColors(colours == 0 ? 1 : colours), bMeanVar(meanVar), bMinMax(minMax), bGeometric(geometric),
      bPhotometric(photometric) {
  vClear();
}

void TRLCStandardStatistik::_vResize(unsigned colours) {
  uiColors = colours;
  for (auto* v : {&Mean, &Varianz, &MinV, &MaxV, &GeometricX, &GeometricY, &GeometricVx, &GeometricVy, &GeometricVxy,
                  &PhotometricX, &PhotometricY})
    v->assign(colours, 0.0);
  for (auto* v : {&MinX, &MinY, &MaxX, &MaxY}) v->assign(colours, 0);
}

void TRLCStandardStatistik::vClear() {
  _vResize(uiColors);
  // The largest float's value as a double (bits 0x47EFFFFFE0000000).
  std::fill(MinV.begin(), MinV.end(), static_cast<double>(FLT_MAX));
  std::fill(MaxV.begin(), MaxV.end(), -static_cast<double>(FLT_MAX));
  Number = 0;
}

void TRLCStandardStatistik::vUseValue(unsigned c, double v, int line, int column) {
  if (c >= uiColors) return;
  if (bMeanVar) Mean[c] += v, Varianz[c] += v * v;
  if (bPhotometric) PhotometricX[c] += column * v, PhotometricY[c] += line * v;
  if (bMinMax) {
    if (v < MinV[c]) MinV[c] = v, MinX[c] = column, MinY[c] = line;
    if (v > MaxV[c]) MaxV[c] = v, MaxX[c] = column, MaxY[c] = line;
  }
  if (bGeometric) {
    GeometricX[c] += column, GeometricVx[c] += static_cast<double>(column) * column;
    GeometricY[c] += line, GeometricVy[c] += static_cast<double>(line) * line;
    GeometricVxy[c] += static_cast<double>(line) * column;
  }
}

template <class T>
void TRLCStandardStatistik::_vCalculate(const TPlane<T>& plane, const TRLCArray& rlc) {
  constexpr bool colour = std::is_same_v<T, TRGBPixel> || std::is_same_v<T, TRGBFloatPixel>;
  if (rlc.size() <= 0 || plane.getLines() <= 0) return;
  TPixelColorSpace space;
  const int first = std::max(plane.getFirstLine(), rlc.getFirstLine());
  const int last = std::min(plane.getLastLine(), rlc.getLastLine());
  for (int l = first; l <= last; ++l)
    for (const TRLC& run : rlc[l]) {
      const int c0 = std::max(run.FirstColumn, plane.getFirstColumn());
      const int c1 = std::min(run.LastColumn, plane.getLastColumn());
      for (int c = c0; c <= c1; ++c) {
        ++Number;
        if constexpr (colour) {
          double xyz[3];
          toXYZ(plane[l][c], space, xyz);
          for (unsigned k = 0; k < 3; ++k) vUseValue(k, xyz[k], l, c);
        } else {
          vUseValue(0, static_cast<double>(plane[l][c]), l, c);
        }
      }
    }
}

void TRLCStandardStatistik::vStopCalculation(const TPlaneBasic* plane) {
  const double n = static_cast<double>(Number);
  for (unsigned c = 0; c < uiColors; ++c) {
    if (bMeanVar && Number != 0) {
      Mean[c] /= n;
      const double v = n < 2 ? 0.0 : (Varianz[c] - Mean[c] * Mean[c] * n) / (n - 1);
      Varianz[c] = v < 0 ? 0 : v;
    }
    if (bPhotometric && Number > 0) {
      if (Mean[c] == 0) {
        PhotometricX[c] = PhotometricY[c] = 0;
      } else {
        PhotometricX[c] = PhotometricX[c] / n / Mean[c];
        PhotometricY[c] = PhotometricY[c] / n / Mean[c];
      }
    }
    if (bGeometric && Number > 0) {
      const double mx = GeometricX[c] / n, my = GeometricY[c] / n;
      if (n < 2) {
        GeometricVx[c] = GeometricVy[c] = GeometricVxy[c] = 0;
      } else {
        GeometricVx[c] = std::max(0.0, (GeometricVx[c] - mx * mx * n) / (n - 1));
        GeometricVy[c] = std::max(0.0, (GeometricVy[c] - my * my * n) / (n - 1));
        GeometricVxy[c] = (GeometricVxy[c] - mx * my * n) / (n - 1);
      }
      GeometricX[c] = mx, GeometricY[c] = my;
    }
  }
  if (uiColors != 3 || !bMeanVar || Number <= 0 || !plane) return;
  // Colour triples from XYZ into the picture's display space.
  TPixelColorSpace space = plane->rGetPixelColorSpace();
  const unsigned to = space.uGetToFlag();
  auto convert = [&](std::vector<double>& v) {
    TRGBFloatPixel xyz;
    xyz.r = static_cast<float>(v[0]), xyz.g = static_cast<float>(v[1]), xyz.b = static_cast<float>(v[2]);
    space.vSetColor(xyz, TPixelColorSpace::XYZ);
    const TRGBFloatPixel& out = space.rGetColor(to);
    v[0] = out.r, v[1] = out.g, v[2] = out.b;
  };
  convert(Mean);
  convert(Varianz);
  if (bMinMax) convert(MinV), convert(MaxV);
  auto keepFirst = [](auto& v) {
    for (std::size_t k = 1; k < v.size(); ++k) v[k] = 0;
  };
  if (to == 32 || to == 64 || to == 128 || to == 32768 || to == 65536) {
    for (auto* v : {&Mean, &Varianz, &MinV, &MaxV, &GeometricX, &GeometricY, &GeometricVx, &GeometricVy, &GeometricVxy,
                    &PhotometricX, &PhotometricY})
      keepFirst(*v);
    for (auto* v : {&MinX, &MinY, &MaxX, &MaxY}) keepFirst(*v);
  } else if (to >= 1 && to <= 16 && (to & (to - 1)) == 0) {
    // Positions only of the luminance (colour 1).
    for (auto* v : {&MinX, &MinY, &MaxX, &MaxY}) (*v)[0] = (*v)[2] = 0;
  } else {
    for (auto* v : {&Varianz, &GeometricX, &GeometricY, &GeometricVx, &GeometricVy, &GeometricVxy, &PhotometricX,
                    &PhotometricY})
      (*v)[1] = (*v)[2] = 0;
    for (auto* v : {&MinX, &MinY, &MaxX, &MaxY}) (*v)[1] = (*v)[2] = 0;
  }
}

void TRLCStandardStatistik::vCalcReducedRLC(const TRLCArray& rlc, unsigned n, TRLCArray& out) {
  KX_TRY {
    out = TRLCArray();
    if (rlc.size() <= 0 || rlc.pixel() == 0) return;
    const int w = static_cast<int>(n);
    TFloatPicture f(rlc.size() + 2 * w, rlc.getLastColumn() - rlc.getFirstColumn() + 1 + 2 * w,
                    rlc.getFirstLine() - w, rlc.getFirstColumn() - w, rlc.getLastColumn() - rlc.getFirstColumn() + 1 + 2 * w);
    f.setRectangle(0.0f);
    TPicture2RLC::vRLC2FloatPicture(rlc, f, 1.0f, 0.0f);
    math98::TPicConvol<float>::vBox(f, 2 * w + 1, 2 * w + 1);
    const double side = 2.0 * w + 1;
    TPicture2RLC::vFloatPicture2RLC(f, out, static_cast<float>(1.0 - 0.5 / (side * side)), 1.01f);
  }
  KX_CATCH
}

std::unique_ptr<TPlaneBasic> TRLCStandardStatistik::vCalcSmoothedImage(const TPlaneBasic* plane, const TRLCArray& region,
                                                                      unsigned n) {
  KX_TRY {
    if (!plane) KX_THROW(0x7000000UL, "plane null");
    const int w = static_cast<int>(n);
    const int l0 = std::max(region.getFirstLine() - w, plane->getFirstLine());
    const int l1 = std::min(region.getLastLine() + w, plane->getLastLine());
    const int c0 = std::max(region.getFirstColumn() - w, plane->getFirstColumn());
    const int c1 = std::min(region.getLastColumn() + w, plane->getLastColumn());
    const bool colour = plane->eGetPicturePT() == eRGB || plane->eGetPicturePT() == eRGBF;
    std::unique_ptr<TPlaneBasic> out;
    if (colour)
      out = std::make_unique<TRGBFloatPicture>();
    else
      out = std::make_unique<TFloatPicture>();
    if (!(region.getFirstLine() < region.getLastLine()) || l1 < l0 || c1 < c0) return out;
    auto fill = [&](auto& dst, auto get) {
      dst.alloc(l1 - l0 + 1, c1 - c0 + 1, l0, c0, c1 - c0 + 1);
      for (int l = l0; l <= l1; ++l)
        for (int c = c0; c <= c1; ++c) dst[l][c] = get(l, c);
    };
    switch (plane->eGetPicturePT()) {
      case eUC: fill(static_cast<TFloatPicture&>(*out), [&](int l, int c) { return static_cast<float>(static_cast<const TPlane<unsigned char>*>(plane)->operator[](l)[c]); }); break;
      case eUS: fill(static_cast<TFloatPicture&>(*out), [&](int l, int c) { return static_cast<float>(static_cast<const TPlane<unsigned short>*>(plane)->operator[](l)[c]); }); break;
      case eI: fill(static_cast<TFloatPicture&>(*out), [&](int l, int c) { return static_cast<float>(static_cast<const TPlane<int>*>(plane)->operator[](l)[c]); }); break;
      case eF: fill(static_cast<TFloatPicture&>(*out), [&](int l, int c) { return static_cast<const TPlane<float>*>(plane)->operator[](l)[c]; }); break;
      case eRGB:
        fill(static_cast<TRGBFloatPicture&>(*out), [&](int l, int c) {
          const TRGBPixel& p = static_cast<const TPlane<TRGBPixel>*>(plane)->operator[](l)[c];
          TRGBFloatPixel f;
          f.r = p.r, f.g = p.g, f.b = p.b;
          return f;
        });
        break;
      case eRGBF: fill(static_cast<TRGBFloatPicture&>(*out), [&](int l, int c) { return static_cast<const TPlane<TRGBFloatPixel>*>(plane)->operator[](l)[c]; }); break;
    }
    if (colour) {
      static_cast<TRGBFloatPicture&>(*out).rGetPixelColorSpace() = plane->rGetPixelColorSpace();
      math98::TPicConvol<TRGBFloatPixel>::vBox(static_cast<TRGBFloatPicture&>(*out), 2 * w + 1, 2 * w + 1);
    } else {
      math98::TPicConvol<float>::vBox(static_cast<TFloatPicture&>(*out), 2 * w + 1, 2 * w + 1);
    }
    return out;
  }
  KX_CATCH
}

void TRLCStandardStatistik::vCalculate(const TPlaneBasic* plane, const TRLCArray& rlc, unsigned reduce,
                                       unsigned border) {
  KX_TRY {
    if (!plane) KX_THROW(0x7000000UL, "plane null");
    const eComparePixelTyp t = plane->eGetPicturePT();
    uiColors = (t == eRGB || t == eRGBF) ? 3 : 1;
    vClear();
    if (reduce + border == 0) {
      switch (t) {
        case eUC: _vCalculate(*static_cast<const TPlane<unsigned char>*>(plane), rlc); break;
        case eUS: _vCalculate(*static_cast<const TPlane<unsigned short>*>(plane), rlc); break;
        case eI: _vCalculate(*static_cast<const TPlane<int>*>(plane), rlc); break;
        case eF: _vCalculate(*static_cast<const TPlane<float>*>(plane), rlc); break;
        case eRGB: _vCalculate(*static_cast<const TPlane<TRGBPixel>*>(plane), rlc); break;
        case eRGBF: _vCalculate(*static_cast<const TPlane<TRGBFloatPixel>*>(plane), rlc); break;
      }
      vStopCalculation(plane);
      return;
    }
    TRLCArray reduced;
    vCalcReducedRLC(rlc, reduce + border, reduced);
    const std::unique_ptr<TPlaneBasic> smoothed = vCalcSmoothedImage(plane, reduced, reduce);
    vCalculate(smoothed.get(), reduced, 0, 0);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- one plain statistic

TStandardStatistik1::TStandardStatistik1(TPlaneBasic* plane) : plane_(plane) {
  KX_TRY {
    if (!plane) KX_THROW(0x7000000UL, "plane null");
    TResultStatistik r;
    stat_ = std::make_unique<TStatistikBasic>(plane->eGetPicturePT(), &r);
  }
  KX_CATCH
}

void TStandardStatistik1::calculate(const CRectangle& r) {
  calculate(TOPointList<int>(eRectangle, {{r.iFirstColumn, r.iFirstLine},
                                          {r.iLastColumn, r.iFirstLine},
                                          {r.iLastColumn, r.iLastLine},
                                          {r.iFirstColumn, r.iLastLine}}));
}

void TStandardStatistik1::calculate(const TOPointList<int>& list) {
  KX_TRY { _calculate(TRLCArray(list)); }
  KX_CATCH
}

void TStandardStatistik1::calculate(const TRLCArray* rlc) {
  KX_TRY {
    if (!rlc) KX_THROW(0x7000000UL, "region null");
    _calculate(*rlc);
  }
  KX_CATCH
}

void TStandardStatistik1::_calculate(const TRLCArray& rlc) {
  if (!TPlaneBasic::bIsValid(plane_)) KX_THROW(0x7000000UL, "Bild fehlt / picture missing");
  stat_->start();
  stat_->visit([&](auto& s) {
    using T = typename std::decay_t<decltype(s)>::TPixel;
    TPlaneLoopRLC<T>(*static_cast<const TPlane<T>*>(plane_), rlc, 1).loop(&s);
  });
  stat_->stop();
  stamp_.set();
}

double TStandardStatistik1::getData(int i) {
  KX_TRY {
    if (i < 0 || i > eYMax) KX_THROW(0x5100000UL, "Zahl %d nicht in 0...14 / number %d not in 0...14", i, i);
    return stat_->getResult(0, 0)->dGetNumber(i);
  }
  KX_CATCH
}
