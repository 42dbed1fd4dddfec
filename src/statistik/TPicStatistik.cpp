#include "statistik/TPicStatistik.h"

#include <string>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "object98/TCircle.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlaneLoop.h"

using namespace Rastrix;

namespace {
constexpr unsigned long ulBadArgument = 0x5100000UL;
constexpr unsigned long ulInternal = 0x7000000UL;
}  // namespace

template <class T>
TPicStatistik<T>::TPicStatistik() : Klassifikator(nullptr) {
  vSetKlassifikator(pGetDefaultPixelKlassifikator());
  TResultStatistik plain;
  for (unsigned g = 0; g < uGroups; ++g) vSetResult(g, &plain);
}

template <class T>
TPicStatistik<T>::~TPicStatistik() = default;

template <class T>
double TPicStatistik<T>::dValue(const T& p, unsigned group) {
  if constexpr (bColour)
    return group == 0 ? p.r : group == 1 ? p.g : p.b;
  else
    return static_cast<double>(p);
}

template <class T>
void TPicStatistik<T>::_checkKlassifikator() const {
  if (Klassifikator != pGetDefaultPixelKlassifikator() && !watch_.bIsSender(Klassifikator))
    KX_THROW(ulInternal, "Klassifikator gelöscht / classifier deleted");
}

template <class T>
void TPicStatistik<T>::vSetKlassifikator(TPixelKlassifikator* p) {
  KX_TRY {
    if (!p) p = pGetDefaultPixelKlassifikator();
    std::vector<std::unique_ptr<TResultStatistik>> templates(uGroups);
    for (unsigned g = 0; g < uGroups && g < Results.size(); ++g)
      if (!Results[g].empty() && Results[g][0]) templates[g].reset(Results[g][0]->pVirtualClone());
    if (Klassifikator && Klassifikator != p && watch_.bIsSender(Klassifikator)) watch_.vDisconnectSender(Klassifikator);
    Klassifikator = p;
    if (!watch_.bIsSender(p)) watch_.vConnectSender(p);
    KlassifikatorTyp = dynamic_cast<const TPixelKlassifikatorTyp*>(p);
    Results.clear();
    Results.resize(uGroups);
    for (unsigned g = 0; g < uGroups; ++g)
      if (templates[g]) vSetResult(g, templates[g].get());
  }
  KX_CATCH
}

template <class T>
TPixelKlassifikator* TPicStatistik<T>::pGetKlassifikator() const {
  KX_TRY {
    _checkKlassifikator();
    return Klassifikator;
  }
  KX_CATCH
}

template <class T>
void TPicStatistik<T>::vSetResult(unsigned group, const TResultStatistik* r) {
  KX_TRY {
    if (!r) KX_THROW(ulInternal, "result null");
    _checkKlassifikator();
    const unsigned n = std::max(1u, Klassifikator->size());
    if (Results.size() != uGroups) Results.resize(uGroups);
    const unsigned g = group % uGroups;
    if (group == 0)
      for (auto& row : Results) row.resize(n);
    Results[g].resize(n);
    for (auto& slot : Results[g]) slot.reset(r->pVirtualClone());
    // Groups never given a result get a plain one, so that the matrix is whole.
    for (auto& row : Results)
      for (auto& slot : row)
        if (!slot) slot = std::make_unique<TResultStatistik>();
  }
  KX_CATCH
}

template <class T>
unsigned TPicStatistik<T>::uGetKlassifikatorSize() {
  KX_TRY {
    _checkKlassifikator();
    const unsigned n = std::max(1u, Klassifikator->size());
    if (Results.empty() || Results[0].size() != n) vSetKlassifikator(Klassifikator);
    return n;
  }
  KX_CATCH
}

template <class T>
TResultStatistik* TPicStatistik<T>::getResult(unsigned group, unsigned cls) {
  KX_TRY {
    if (group >= uGroups || group >= Results.size() || cls >= Results[group].size())
      KX_THROW(ulBadArgument, "Gruppe %u, Klasse %u ungültig / group %u, class %u not valid", group, cls, group, cls);
    return Results[group][cls].get();
  }
  KX_CATCH
}

template <class T>
void TPicStatistik<T>::start() {
  if (bLock) return;
  for (auto& row : Results)
    for (auto& r : row) r->start();
}

template <class T>
void TPicStatistik<T>::stop() {
  if (bLock) return;
  for (auto& row : Results)
    for (auto& r : row) r->stop();
}

template <class T>
void TPicStatistik<T>::vReset() {
  for (auto& row : Results)
    for (auto& r : row) r->vReset();
}

template <class T>
void TPicStatistik<T>::setReferenzCursorXY(double x, double y) {
  for (auto& row : Results)
    for (auto& r : row) r->setReferenzCursorXY(x, y);
}

template <class T>
unsigned TPicStatistik<T>::_class(const T& pixel, int line, int column, const TPlane<T>* plane) const {
  if (KlassifikatorTyp) return KlassifikatorTyp->getTyp(pixel, line, column, plane);
  return Klassifikator->getTyp(line, column);
}

template <class T>
void TPicStatistik<T>::_world(const TPlane<T>* plane, int line, int column, double& x, double& y, double& area) const {
  x = column, y = line, area = 1.0;
  if (const TCoordinateSystem* cs = plane ? plane->pGetCoordinateSystem() : nullptr) {
    cs->vGetWorldXY(&x, &y, column, line);
    cs->vGetWorldA(&area, column, line);
  }
}

template <class T>
void TPicStatistik<T>::addPixel(const T& pixel) {
  if (bLock) return;
  _checkKlassifikator();
  const unsigned c = KlassifikatorTyp ? KlassifikatorTyp->getTyp(pixel) : 0;
  if (c >= Results[0].size()) return;
  for (unsigned g = 0; g < uGroups; ++g) Results[g][c]->addValue(dValue(pixel, g), 1.0);
}

template <class T>
void TPicStatistik<T>::addPixelLC(const T& pixel, const TPlane<T>* plane, double line, double column) {
  if (bLock) return;
  _checkKlassifikator();
  const int l = static_cast<int>(line), k = static_cast<int>(column);
  const unsigned c = _class(pixel, l, k, nullptr);
  if (c >= Results[0].size()) return;
  double x, y, area;
  _world(plane, l, k, x, y, area);
  for (unsigned g = 0; g < uGroups; ++g) Results[g][c]->addValueLC(dValue(pixel, g), y, x, area, l, k);
}

template <class T>
void TPicStatistik<T>::addPixelLCLabel(const T& pixel, const TPlane<T>* plane, double line, double column,
                                       TPlane<unsigned char>* label) {
  if (bLock) return;
  _checkKlassifikator();
  const int l = static_cast<int>(line), k = static_cast<int>(column);
  const unsigned c = _class(pixel, l, k, plane);
  if (label && l >= label->getFirstLine() && l <= label->getLastLine() && k >= label->getFirstColumn() &&
      k <= label->getLastColumn())
    (*label)[l][k] = static_cast<unsigned char>(c);
  if (c >= Results[0].size()) return;
  double x, y, area;
  _world(plane, l, k, x, y, area);
  for (unsigned g = 0; g < uGroups; ++g) Results[g][c]->addValueLC(dValue(pixel, g), y, x, area, l, k);
}

template <class T>
void TPicStatistik<T>::addRunLC(const TPlane<T>& plane, int line, int column, int n, TPlane<unsigned char>* label) {
  if (bLock || n <= 0) return;
  _checkKlassifikator();
  const T* row = plane[line] + column;
  classes_.resize(static_cast<std::size_t>(n));
  const bool single = Klassifikator->size() <= 1;
  for (int i = 0; i < n; ++i) classes_[static_cast<std::size_t>(i)] = single ? 0 : _class(row[i], line, column + i, label ? &plane : nullptr);
  if (label && line >= label->getFirstLine() && line <= label->getLastLine()) {
    const int from = std::max(column, label->getFirstColumn()), to = std::min(column + n - 1, label->getLastColumn());
    unsigned char* out = (*label)[line];
    for (int k = from; k <= to; ++k) out[k] = static_cast<unsigned char>(classes_[static_cast<std::size_t>(k - column)]);
  }
  const unsigned size = static_cast<unsigned>(Results[0].size());
  // A system linear along the lines keeps the run's one call per class
  // stretch; others go pixel by pixel.
  const TCoordinateSystem* cs = plane.pGetCoordinateSystem();
  double x0 = column, dx = 1.0, y0 = line, area = 1.0;
  if (cs && cs->bIsLinearAlongLines()) {
    double x1;
    cs->vGetWorldXY(&x0, &y0, column, line);
    cs->vGetWorldXY(&x1, nullptr, column + 1, line);
    cs->vGetWorldA(&area, column, line);
    dx = x1 - x0;
    cs = nullptr;
  }
  if (cs) {
    // World positions and areas per pixel.
    for (int i = 0; i < n; ++i) {
      const unsigned c = classes_[static_cast<std::size_t>(i)];
      if (c >= size) continue;
      double x, y, area;
      _world(&plane, line, column + i, x, y, area);
      for (unsigned g = 0; g < uGroups; ++g) Results[g][c]->addValueLC(dValue(row[i], g), y, x, area, line, column + i);
    }
    return;
  }
  values_.resize(static_cast<std::size_t>(n));
  for (unsigned g = 0; g < uGroups; ++g) {
    for (int i = 0; i < n; ++i) values_[static_cast<std::size_t>(i)] = dValue(row[i], g);
    for (int s = 0; s < n;) {
      const unsigned c = classes_[static_cast<std::size_t>(s)];
      int e = s + 1;
      while (e < n && classes_[static_cast<std::size_t>(e)] == c) ++e;
      if (c < size)
        Results[g][c]->addValuesLC(values_.data() + s, e - s, y0, x0 + s * dx, dx, area, line, column + s);
      s = e;
    }
  }
}

template <class T>
void TPicStatistik<T>::addPixelAveraged(const TPlane<T>& plane, int line, int column, unsigned diameter) {
  if (bLock) return;
  TPicStatistik<T> local;
  local.vSetKlassifikator(Klassifikator);
  local.start();
  TPlaneLoopCircle2<T, T, TPlane<T>>(plane, TCircle<int>(column, line, static_cast<int>(diameter / 2))).loop(&local);
  local.stop();
  double x, y, area;
  _world(&plane, line, column, x, y, area);
  const unsigned size = std::min(static_cast<unsigned>(Results[0].size()), static_cast<unsigned>(local.Results[0].size()));
  for (unsigned g = 0; g < uGroups; ++g)
    for (unsigned c = 0; c < size; ++c) {
      const TResultBasicData& r = local.Results[g][c]->rRGetXResult();
      if (r.dGetCount() != 0) Results[g][c]->addValueLC(r.dGetMean(), y, x, area, line, column);
    }
}

template <class T>
void TPicStatistik<T>::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    for (unsigned g = 0; g < Results.size(); ++g)
      for (unsigned c = 0; c < Results[g].size(); ++c) {
        const std::string s = std::string(section) + "/Group" + std::to_string(g) + "/Class" + std::to_string(c);
        Results[g][c]->vWriteIni(ini, s.c_str());
      }
  }
  KX_CATCH
}

template <class T>
void TPicStatistik<T>::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    for (unsigned g = 0; g < Results.size(); ++g)
      for (unsigned c = 0; c < Results[g].size(); ++c) {
        const std::string s = std::string(section) + "/Group" + std::to_string(g) + "/Class" + std::to_string(c);
        Results[g][c]->vReadIni(ini, s.c_str());
      }
  }
  KX_CATCH
}

template class TPicStatistik<unsigned char>;
template class TPicStatistik<unsigned short>;
template class TPicStatistik<int>;
template class TPicStatistik<float>;
template class TPicStatistik<TRGBPixel>;
template class TPicStatistik<TRGBFloatPixel>;
