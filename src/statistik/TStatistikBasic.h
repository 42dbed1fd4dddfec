// A statistic whatever its pixel type: TStatistikBasic holds the one typed
// statistic of its plane's pixel type and the names of groups, object and
// source. TDoubleStatistikBasic takes values that come from no picture.
// EStatistikType names the kinds of result, and pGetStatPtr makes one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kxexception/TTimeStamp.h"
#include "rastrix/epixeltyp.h"
#include "statistik/TPicStatistik.h"

enum EStatistikType : int {
  eStatTypStandard = 0,
  eStatTypAuswertung = 1,
  eStatTypSchnitt = 2,
  eStatTypHistogramm = 3,
  eStatTypZeit = 4,
  eStatTypBitHistogramm = 5,
  eStatTypProjektion = 6,
  eStatTypIndexschnitt = 7,
  eStatTypReferenzschnitt = 8,
  eStatTypIntegral = 9,
  eStatTypLeuchtdichte = 10,
  eStatTypKurzzeit = 11,
  eStatTypSymbol = 12,
  eStatTypMotor = 13,
  eStatTypBogen = 14,
  eStatTypWendel = 15,
  eStatTypFocus = 16,
};

// The name of a kind in the current language; "" for an unknown one.
const char* strGetStatistikName(int type);
// The double the reference series (kind 8) read at each stop.
double& rGetReferenzValue();

class TStatistikBasic {
 public:
  // A result of the kind; an unknown one raises 0x5100000
  // "Statistik vom Typ %d nicht bekannt.".
  static TResultStatistik* pGetStatPtr(int type);

  // The typed statistic of the pixel type, with `result` as the template of
  // every group; a null result raises 0x7000000, an unknown type 0x5100000.
  TStatistikBasic(eComparePixelTyp type, const TResultStatistik* result);
  virtual ~TStatistikBasic();

  eComparePixelTyp eGetPixelTyp() const { return ePixelTyp; }
  // Minimum, step and maximum of the pixel type's value range.
  virtual void vGetValueRangeMSM(double* min, double* step, double* max) const;
  virtual const std::string& strGetGroupName(unsigned i) const;
  virtual void vSetGroupName(unsigned i, const std::string& s);
  virtual const std::string& strGetObjectName() const { return OwnObjectName; }
  virtual void vSetObjectName(const std::string& s) { OwnObjectName = s; }
  virtual const std::string& strGetSourceName() const { return OwnSourceName; }
  virtual void vGetSourceKSName(std::string& x, std::string& y, std::string& area) const;
  virtual void vSetSourceName(const std::string& s) { OwnSourceName = s; }
  virtual Rastrix::TPixelKlassifikator* pGetKlassifikator() const;
  virtual void vSetKlassifikator(Rastrix::TPixelKlassifikator* p);
  virtual void start();
  virtual void vReset();
  virtual void stop();
  virtual void loopLC() {}
  // Runs the statistic when bNeedUpdate says so (clearing first with
  // `force`); answers bNeedUpdate.
  virtual bool bConditionalUpdate(bool force);
  // The first run, a changed classifier or bNewCalc: update, newCalc set.
  virtual bool bNeedUpdate(bool& newCalc);
  virtual bool bUpdateObject() { return true; }
  virtual bool bExistObject() { return true; }
  virtual TResultStatistik* getResult(unsigned group, unsigned cls);
  unsigned uGetGroupCount() const;
  unsigned uGetKlassifikatorSize();
  virtual void vLock(bool b);
  virtual bool bIsLock() const;
  virtual void vFirstLock(bool b);
  virtual bool bIsFirstLock() const;
  // "ePixelTyp", "GroupNameSize", "GroupName%d", the own names, and the
  // results in sections of their group and class.
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  virtual void vReadIni(TKxIniFile* ini, const char* section);

  void vSetNewCalc(bool b) { bNewCalc = b; }
  void vSetFirst(bool b) { bFirst = b; }
  const Process::TTimeStamp& getTimeStamp() const { return stamp_; }
  void vSetTimeStamp() { stamp_.set(); }
  void setReferenzCursorXY(double x, double y);
  // The integral step at stop: class 1's light moves into class 2.
  void vIntegralStop();

  EPicStatistikType eGetPicStatistikType() const;
  void setPicStatistikType(EPicStatistikType t);

  // Calls f with the typed statistic that is set.
  template <class F>
  void visit(F&& f) {
    if (pUC) f(*pUC);
    if (pUS) f(*pUS);
    if (pF) f(*pF);
    if (pRGB) f(*pRGB);
    if (pRGBF) f(*pRGBF);
    if (pI) f(*pI);
  }
  template <class F>
  void visit(F&& f) const {
    const_cast<TStatistikBasic*>(this)->visit(std::forward<F>(f));
  }

 protected:
  std::unique_ptr<TPicStatistik1UC> pUC;
  std::unique_ptr<TPicStatistik1US> pUS;
  std::unique_ptr<TPicStatistik1F> pF;
  std::unique_ptr<TPicStatistikRGB> pRGB;
  std::unique_ptr<TPicStatistikRGBFloat> pRGBF;
  std::unique_ptr<TPicStatistik1I> pI;
  eComparePixelTyp ePixelTyp;
  Process::TTimeStamp stamp_{0};
  bool bNewCalc = true;
  bool bFirst = true;
  std::vector<std::string> GroupNames;
  std::string OwnObjectName, OwnSourceName, OwnSourceXName, OwnSourceYName, OwnSourceAreaName;
};

// Values that come from no picture: a float statistic fed directly.
class TDoubleStatistikBasic : public TStatistikBasic {
 public:
  explicit TDoubleStatistikBasic(const TResultStatistik* result) : TStatistikBasic(eF, result) {}
  // One value into class 0 (the vector is the profile of a cut result:
  // taken over when the sizes fit).
  void vSetSingle(double value, const std::vector<double>& profile);
  // The pairs (x[i], y[i]) as values y at positions x, one run.
  void vSetVector(const std::vector<double>& x, const std::vector<double>& y);
  bool bNeedUpdate(bool&) override { return false; }
  bool bUpdateObject() override { return true; }
};
