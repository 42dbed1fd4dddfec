#include "statistik/TPicStatistikPlaneBasic.h"

#include <algorithm>
#include <cfloat>
#include <functional>

#include "file98/IniHelpers.h"
#include "kxexception/KxError.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlane.h"
#include "object98/TPicture2RLC.h"
#include "rastrix/TPixelColorSpace.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "rastrix/TPlaneLoop.h"
#include "statistik/TRLCStandardStatistik.h"
#include "statistik/TResultHist.h"
#include "statistik/TResultProjection.h"

using namespace Rastrix;

namespace {

constexpr unsigned long ulBadArgument = 0x5100000UL;

template <class Stat>
using PixelOf = typename std::decay_t<Stat>::TPixel;

// Minimum and maximum of a channel of a plane (NaN skipped).
template <class T>
void channelRange(const TPlane<T>& p, unsigned group, double& lo, double& hi) {
  lo = DBL_MAX, hi = -DBL_MAX;
  for (int l = p.getFirstLine(); l <= p.getLastLine(); ++l)
    for (int c = p.getFirstColumn(); c <= p.getLastColumn(); ++c) {
      const double v = TPicStatistik<T>::dValue(p[l][c], group);
      if (v < lo) lo = v;
      if (v > hi) hi = v;
    }
  if (lo > hi) lo = hi = 0;
}

}  // namespace

TPicStatistikPlaneBasic::TPicStatistikPlaneBasic(int index, TPlaneBasic* picture, const TResultStatistik* result)
    : TStatistikBasic(picture ? picture->eGetPicturePT() : eF, result ? result : nullptr), Picture(picture) {
  KX_TRY {
    if (!picture || !result) KX_THROW(ulBadArgument, "Bild oder Ergebnis fehlt / picture or result missing");
    uiFirstIndex = index < 0 ? 0 : static_cast<unsigned>(index);
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::setPicture(TPlaneBasic* plane) {
  KX_TRY {
    if (!plane) KX_THROW(ulBadArgument, "Bild fehlt / picture missing");
    if (plane->eGetPicturePT() != ePixelTyp)
      KX_THROW(ulBadArgument, "Pixeltyp %d statt %d / pixel type %d instead of %d", plane->eGetPicturePT(), ePixelTyp,
               plane->eGetPicturePT(), ePixelTyp);
    Picture = plane;
    bNewCalc = true;
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::_vFetchObject(int index) {
  Object = (*ObjectList)[index];
  ObjectName = ObjectList->sGetFullObjectName(index);
  bIsCircle = Object.eGetTyp() == eCircle;
  Signatur = ObjectList->rGetSignatur(index);
  if (bIsBorderObject)
    ObjectBorder.assign(ObjectList, static_cast<unsigned>(index));
  else
    ObjectRLC = ObjectList->rGetRegion(index);
  objectStamp_ = ObjectList->getTimeStamp(index);
}

void TPicStatistikPlaneBasic::setObject(int index, TObjectList98* list, bool asBorder) {
  KX_TRY {
    if (!TObjectList98::bIsValid(list)) KX_THROW(ulBadArgument, "Objektliste ungültig / object list not valid");
    ObjectList = list;
    uiFirstIndex = static_cast<unsigned>(index);
    bIsBorderObject = asBorder;
    _vFetchObject(index);
    if (asBorder)
      bDirectBorder = false;
    else
      bDirectRLC = false;
    bNewCalc = true;
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::setRLC(const TRLCArray& rlc) {
  DirectRLC = rlc;
  bDirectRLC = true;
  bIsBorderObject = false;
  bNewCalc = true;
}

void TPicStatistikPlaneBasic::setBorder(const TBorderLine& line) {
  DirectBorder = line;
  bDirectBorder = true;
  bIsBorderObject = true;
  bNewCalc = true;
}

int TPicStatistikPlaneBasic::_iGetObjectIndex() {
  if (!ObjectList) return static_cast<int>(uiFirstIndex);  // a region of the caller's
  if (!TObjectList98::bIsValid(ObjectList)) return -1;
  const int n = ObjectList->size();
  if (static_cast<int>(uiFirstIndex) < n && ObjectList->rGetSignatur(static_cast<int>(uiFirstIndex)) == Signatur)
    return static_cast<int>(uiFirstIndex);
  for (int i = 0; i < n; ++i)
    if (ObjectList->rGetSignatur(i) == Signatur) {
      uiFirstIndex = static_cast<unsigned>(i);
      Object = (*ObjectList)[i];
      ObjectName = ObjectList->sGetFullObjectName(i);
      return i;
    }
  return -1;
}

bool TPicStatistikPlaneBasic::bUpdateObject() {
  KX_TRY {
    if (!bExistObject()) return false;
    if (ObjectList) _vFetchObject(static_cast<int>(uiFirstIndex));
    vUpdateNames();
    return true;
  }
  KX_CATCH
}

bool TPicStatistikPlaneBasic::bNeedUpdate(bool& newCalc) {
  bool need = TStatistikBasic::bNeedUpdate(newCalc);
  if (Picture && TPlaneBasic::bIsValid(Picture)) {
    if (stamp_ < Picture->getTimeStamp()) need = true;  // a new picture accumulates
    if (const TCoordinateSystem* cs = Picture->pGetCoordinateSystem(); cs && stamp_ < cs->getTimeStamp())
      need = newCalc = true;
  }
  // Objects change only with the list's stamp: while it is older than this
  // statistic, nothing of the object can be new.
  if (ObjectList && TObjectList98::bIsValid(ObjectList) && stamp_ < ObjectList->getAllTimeStamp()) {
    const int i = _iGetObjectIndex();
    if (i >= 0) {
      const TOPointList<int>& now = (*ObjectList)[i];
      bool samePoints = now.eGetTyp() == Object.eGetTyp() && now.size() == Object.size();
      for (int k = 0; samePoints && k < now.size(); ++k) samePoints = now[k] == Object[k];
      if (stamp_ < ObjectList->getTimeStamp(i) || !samePoints || ObjectList->sGetFullObjectName(i) != ObjectName)
        need = newCalc = true;
    }
  }
  return need;
}

void TPicStatistikPlaneBasic::loopRLC(TPlaneBasic* plane, const TRLCArray* rlc) {
  KX_TRY {
    if (!plane) plane = Picture;
    const int index = _iGetObjectIndex();
    const bool listValid = ObjectList && TObjectList98::bIsValid(ObjectList) && index >= 0;
    if (!rlc) {
      if (bDirectRLC) {
        rlc = &DirectRLC;
      } else if (listValid) {
        rlc = &ObjectList->rGetRegion(index);  // through the list's cache, not copied
      }
    }
    if (!plane || !TPlaneBasic::bIsValid(plane) || !rlc)
      KX_THROW(ulBadArgument, "Bild oder Gebiet fehlt / picture or region missing");
    vSetNewCalc(false);
    vSetFirst(false);
    TPlane<unsigned char>* label = nullptr;
    if (!bDirectRLC && uGetKlassifikatorSize() > 1 && listValid && ObjectList->rGetFlagList().bGetDrawArea(index))
      label = &ObjectList->rGetLabelPic(plane, index, true, true);
    // Automatic threshold of an integral or symbol classifier left at 0:
    // a tenth of the way from the region's minimum to its maximum (colour
    // pictures: of the luminance), for this run only.
    std::function<void(double)> automatic;  // sets thresholds 0 and 1
    const EPicStatistikType kind = eGetPicStatistikType();
    if (label && (kind == eStatIntegral || kind == eStatSymbol)) {
      double lo = 0, hi = 0;
      bool found = false;
      if (auto* k = dynamic_cast<TPixelKlassifikatorTypThresholdIntegral<float>*>(pGetKlassifikator());
          k && ePixelTyp == eF && k->dGetThreshold(0) < 1e-10) {
        TResultStatistik plain;
        TPicStatistikPlaneBasic range(0, plane, &plain);
        range.setRLC(*rlc);
        range.loopRLC(plane, rlc);
        range.stop();
        const TResultBasicData& r = range.getResult(0, 0)->rRGetXResult();
        lo = r.dGetMin(), hi = r.dGetMax(), found = r.dGetCount() > 0;
        automatic = [k](double t) { k->vSetThreshold(0, t), k->vSetThreshold(1, t); };
      } else if (auto* kc = dynamic_cast<TPixelKlassifikatorTypThresholdIntegral<TRGBFloatPixel>*>(pGetKlassifikator());
                 kc && ePixelTyp == eRGBF && kc->dGetThreshold(0) < 1e-10) {
        const auto& pc = static_cast<const TPlane<TRGBFloatPixel>&>(*plane);
        TPixelColorSpace cs;
        lo = DBL_MAX, hi = -DBL_MAX;
        const int l0 = std::max(pc.getFirstLine(), rlc->getFirstLine()), l1 = std::min(pc.getLastLine(), rlc->getLastLine());
        for (int l = l0; l <= l1 && rlc->size() > 0; ++l)
          for (const TRLC& run : (*rlc)[l])
            for (int c = std::max(run.FirstColumn, pc.getFirstColumn()); c <= std::min(run.LastColumn, pc.getLastColumn());
                 ++c) {
              cs.vSetColor(pc[l][c], TPixelColorSpace::CIE_RGB);
              const double y = cs.rGetColor(TPixelColorSpace::XYZ).g;
              lo = std::min(lo, y), hi = std::max(hi, y), found = true;
            }
        automatic = [kc](double t) { kc->vSetThreshold(0, t), kc->vSetThreshold(1, t); };
      }
      if (automatic && found)
        automatic(lo + 0.1 * (hi - lo));
      else
        automatic = nullptr;
    }
    visit([&](auto& s) {
      using T = PixelOf<decltype(s)>;
      const auto* p = dynamic_cast<const TPlane<T>*>(plane);
      if (!p) KX_THROW(ulBadArgument, "Bild vom falschen Pixeltyp / picture of the wrong pixel type");
      TPlaneLoopRLC<T> loop(*p, *rlc, uiDiameter);
      if (label)
        loop.loop(&s, label);
      else
        loop.loop(&s);
    });
    if (automatic) automatic(0.0);
    if (label) {
      // The object's colours: the global table, rejected classes not shown.
      TKlassifikator2Color& colours = ObjectList->rGetClassColor(plane, index);
      colours = *TKlassifikator2Color::pGetGlobal();
      const TPixelKlassifikator* k = pGetKlassifikator();
      for (unsigned c = 0; c < k->size() && c < 256; ++c)
        if (k->bRejection(c)) colours.vSetColor(static_cast<int>(c), 255);
      label->setTimeStamp();
    }
    vSetTimeStamp();
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::loopBorder(TPlaneBasic* plane, const TBorderLine* line) {
  KX_TRY {
    if (!plane) plane = Picture;
    const int index = _iGetObjectIndex();
    const bool listValid = ObjectList && TObjectList98::bIsValid(ObjectList) && index >= 0;
    if (!line) {
      if (bDirectBorder) {
        line = &DirectBorder;
      } else if (listValid) {
        ObjectBorder.assign(ObjectList, static_cast<unsigned>(index));
        line = &ObjectBorder;
      }
    }
    if (!plane || !TPlaneBasic::bIsValid(plane) || !line)
      KX_THROW(ulBadArgument, "Bild oder Randlinie fehlt / picture or border missing");
    vSetNewCalc(false);
    vSetFirst(false);
    TPlane<unsigned char>* label = nullptr;
    if (!bDirectBorder && uGetKlassifikatorSize() > 1 && listValid && ObjectList->rGetFlagList().bGetDrawArea(index))
      label = &ObjectList->rGetLabelPic(plane, index, true, true);
    visit([&](auto& s) {
      using T = PixelOf<decltype(s)>;
      const auto* p = dynamic_cast<const TPlane<T>*>(plane);
      if (!p) KX_THROW(ulBadArgument, "Bild vom falschen Pixeltyp / picture of the wrong pixel type");
      TPlaneLoopBorder<T>(*p, *line, uiDiameter).loop(&s, label);
    });
    vSetTimeStamp();
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::loopLC() { loopLC(Picture); }

void TPicStatistikPlaneBasic::loopLC(TPlaneBasic* plane) {
  KX_TRY {
    if (bIsBorderObject) {
      loopBorder(plane, nullptr);
    } else {
      loopRLC(plane, nullptr);
    }
    if (bIsCircle) {
      correctReferenzOffset(true);
    } else if (bIsBorderObject) {
      const TBorderLine& b = bDirectBorder ? DirectBorder : ObjectBorder;
      if (b.size() > 0) {
        double x = b[0].x, y = b[0].y;
        TPlaneBasic* p = plane ? plane : Picture;
        if (const TCoordinateSystem* cs = p ? p->pGetCoordinateSystem() : nullptr) cs->vGetWorldXY(&x, &y, b[0].x, b[0].y);
        correctReferenzOffset(x, y);
      }
    }
    vUpdateNames();
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::correctReferenzOffset(bool circle) {
  const unsigned groups = uGetGroupCount(), classes = uGetKlassifikatorSize();
  for (unsigned g = 0; g < groups; ++g)
    for (unsigned c = 0; c < classes; ++c)
      if (auto* xy = dynamic_cast<TResultCutXY*>(getResult(g, c)); xy && circle) xy->vCorrectReferenzToCircle();
}

void TPicStatistikPlaneBasic::correctReferenzOffset(double x, double y) {
  const unsigned groups = uGetGroupCount(), classes = uGetKlassifikatorSize();
  for (unsigned g = 0; g < groups; ++g)
    for (unsigned c = 0; c < classes; ++c)
      if (auto* xy = dynamic_cast<TResultCutXY*>(getResult(g, c))) xy->vCorrectReferenzOffset(x, y);
}

void TPicStatistikPlaneBasic::setPictureProperties(TPlaneBasic* plane) {
  KX_TRY {
    if (!plane) plane = Picture;
    if (!plane) KX_THROW(ulBadArgument, "Bild fehlt / picture missing");
    const unsigned groups = uGetGroupCount(), classes = uGetKlassifikatorSize();
    for (unsigned g = 0; g < groups; ++g) {
      double lo = 0, hi = 0;
      bool range = false;
      for (unsigned c = 0; c < classes; ++c) {
        TResultStatistik* r = getResult(g, c);
        auto* h = dynamic_cast<TResultHist*>(r);
        if (!h) {
          r->setPictureProperties(plane, static_cast<int>(g));
          continue;
        }
        if (!range) {
          visit([&](auto& s) {
            using T = PixelOf<decltype(s)>;
            if (const auto* p = dynamic_cast<const TPlane<T>*>(plane)) channelRange(*p, g, lo, hi);
          });
          range = true;
        }
        h->setPictureProperties(plane, static_cast<int>(g), lo, hi);
      }
    }
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::vUpdateNames() {
  if (ObjectList && TObjectList98::bIsValid(ObjectList)) OwnObjectName = ObjectName;
  if (Picture && TPlaneBasic::bIsValid(Picture)) {
    OwnSourceName = PicName;
    if (const TCoordinateSystem* cs = Picture->pGetCoordinateSystem()) {
      OwnSourceXName = cs->rStrGetNameX();
      OwnSourceYName = cs->rStrGetNameY();
      OwnSourceAreaName = cs->rStrGetUnitA();
    }
  }
}

void TPicStatistikPlaneBasic::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(ulBadArgument, "ini file or section null");
    const std::string s = std::string(section) + "/PicStatistik";
    WriteIniInteger(*ini, s.c_str(), "Diameter", static_cast<int>(uiDiameter));
    WriteIniString(*ini, s.c_str(), "PicName", PicName);
    WriteIniString(*ini, s.c_str(), "Signatur", Signatur.get());
    WriteIniBool(*ini, s.c_str(), "bDirectBorder", bDirectBorder);
    WriteIniBool(*ini, s.c_str(), "bDirectRLC", bDirectRLC);
    WriteIniBool(*ini, s.c_str(), "bIsCircle", bIsCircle);
    TStatistikBasic::vWriteIni(ini, section);
  }
  KX_CATCH
}

void TPicStatistikPlaneBasic::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(ulBadArgument, "ini file or section null");
    const std::string s = std::string(section) + "/PicStatistik";
    int d = static_cast<int>(uiDiameter);
    ReadIniInteger(*ini, s.c_str(), "Diameter", d);
    if (d < 0 || d > 4096) KX_THROW(ulBadArgument, "Durchmesser %d / diameter %d", d, d);
    std::string sig = Signatur.get();
    ReadIniString(*ini, s.c_str(), "PicName", PicName);
    ReadIniString(*ini, s.c_str(), "Signatur", sig);
    ReadIniBool(*ini, s.c_str(), "bDirectBorder", bDirectBorder);
    ReadIniBool(*ini, s.c_str(), "bDirectRLC", bDirectRLC);
    ReadIniBool(*ini, s.c_str(), "bIsCircle", bIsCircle);
    uiDiameter = static_cast<unsigned>(d);
    Signatur.set(sig.c_str());
    TStatistikBasic::vReadIni(ini, section);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- symbol

void TPicStatistikSymbol::stop() {
  KX_TRY {
    TPicStatistikIntegral::stop();
    const int index = _iGetObjectIndex();
    if (!ObjectList || !TObjectList98::bIsValid(ObjectList) || index < 0 || !Picture) return;
    if (uGetKlassifikatorSize() <= 2) return;
    // The region of class 2 from the label plane.
    const TPlane<unsigned char>& label = ObjectList->rGetLabelPic(Picture, index, false, false);
    std::vector<TRLCArray> byClass;
    if (label.getLines() > 0) TPicture2RLC::vTransform256(label, byClass, 2, 2);
    unsigned diameter = 0, border = 0;
    if (const auto* sym = dynamic_cast<const TPixelKlassifikatorTypThresholdSymbol<float>*>(pGetKlassifikator()))
      sym->vGetSymbolData(&diameter, &border);
    else if (const auto* symc = dynamic_cast<const TPixelKlassifikatorTypThresholdSymbol<TRGBFloatPixel>*>(pGetKlassifikator()))
      symc->vGetSymbolData(&diameter, &border);
    const bool colour = ePixelTyp == eRGBF;
    TRLCStandardStatistik calc(colour ? 3 : 1, true, true, false, true);
    const bool exists = byClass.size() > 2 && byClass[2].size() > 0 && byClass[2].pixel() > 0;
    if (exists) calc.vCalculate(Picture, byClass[2], diameter / 2, border);
    const TCoordinateSystem* cs = Picture->pGetCoordinateSystem();
    for (unsigned c = 0; c < uGetGroupCount(); ++c) {
      TResultStatistik* r = getResult(c, 2);
      if (!(r->rRGetXResult().dGetArea() > 0)) {
        r->rRGetXResult().vSetMean(exists && c < calc.uiGetColors() ? calc.dGetMean(c) : 0.0);
        continue;
      }
      if (!exists || c >= calc.uiGetColors() || calc.lGetNumber() == 0) continue;
      double* e = r->rRGetXResult().dpGetErg();
      e[eMin] = calc.dGetMinV(c);
      e[eMax] = calc.dGetMaxV(c);
      double x0 = calc.iGetMinX(c), y0 = calc.iGetMinY(c), x1 = calc.iGetMaxX(c), y1 = calc.iGetMaxY(c);
      r->vSetIMinPosition({x0, y0});
      r->vSetIMaxPosition({x1, y1});
      if (cs) {
        cs->vGetWorldXY(&x0, &y0, calc.iGetMinX(c), calc.iGetMinY(c));
        cs->vGetWorldXY(&x1, &y1, calc.iGetMaxX(c), calc.iGetMaxY(c));
      }
      r->vSetDMinPosition({x0, y0});
      r->vSetDMaxPosition({x1, y1});
    }
  }
  KX_CATCH
}

// ---------------------------------------------------------------- vector

TStatistikBasic& TStatistikBasicVector::operator[](int i) {
  KX_TRY {
    if (i < 0 || i >= size()) KX_THROW(ulBadArgument, "Index=%d >= Size=%d", i, size());
    return *Items[static_cast<std::size_t>(i)];
  }
  KX_CATCH
}

void TStatistikBasicVector::erase(int i) {
  KX_TRY {
    if (i < 0 || i >= size()) KX_THROW(ulBadArgument, "Index=%d >= Size=%d", i, size());
    Items.erase(Items.begin() + i);
  }
  KX_CATCH
}

bool TStatistikBasicVector::bUpdateObjects(bool force, bool newCalc, EStatistikType type) {
  KX_TRY {
    bool changed = false;
    for (int i = size() - 1; i >= 0; --i)
      if (!Items[static_cast<std::size_t>(i)]->bExistObject()) {
        Items.erase(Items.begin() + i);
        changed = true;
      }
    for (auto& s : Items) {
      const bool firstLock = s->bIsFirstLock();
      if (s->bIsLock() && !firstLock) continue;
      if (force && !firstLock) {
        if (changed) s->bUpdateObject();
        if (type != eStatTypReferenzschnitt && s->bConditionalUpdate(newCalc)) {
          s->vSetTimeStamp();
          changed = true;
        }
        continue;
      }
      if (newCalc || firstLock) s->vReset();
      s->loopLC();
      s->stop();
      if (firstLock) {
        s->vFirstLock(false);
        s->vLock(true);
      }
      changed = true;
    }
    if (changed) stamp_.set();
    return changed;
  }
  KX_CATCH
}
