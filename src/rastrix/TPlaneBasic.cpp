#include "rastrix/TPlaneBasic.h"

#include <algorithm>
#include <mutex>

#include "kxexception/KxError.h"
#include "platform/Clock.h"
#include "rastrix/PixelTraits.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPixelKlassifikator.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

namespace {
std::vector<TPlaneBasic*>& instances() {
  // Never destroyed: planes with static storage may die after it would.
  static auto* const v = new std::vector<TPlaneBasic*>;
  return *v;
}
// Planes are made and destroyed on any thread (the capture thread of live
// view makes its own): the list is kept under this mutex.
std::mutex& instancesMutex() {
  static auto* const m = new std::mutex;
  return *m;
}
const std::string sEmpty;
}  // namespace

// ---------------------------------------------------------------- TCommon

TPlaneBasic::TCommon::TCommon() : pCoordinateSystem(pGetDefaultCoordinateSystem()) {
  pCoordinateSystem->vIncreaseUser();
}

TPlaneBasic::TCommon::TCommon(const TCommon& o) : TCommon() { *this = o; }

TPlaneBasic::TCommon& TPlaneBasic::TCommon::operator=(const TCommon& o) {
  if (this == &o) return *this;
  KX_TRY {
    date = o.date;
    iValuesPerPixel = o.iValuesPerPixel;
    sName = o.sName;
    valueNames = o.valueNames;
    units = o.units;
    bRangeSet = o.bRangeSet;
    dMin = o.dMin;
    dStep = o.dStep;
    dMax = o.dMax;
    colorSpace = o.colorSpace;
    setTimeStamp();  // its own stamp, not the source's
    vSetCoordinateSystem(o.pCoordinateSystem);
  }
  KX_CATCH
  return *this;
}

TPlaneBasic::TCommon::~TCommon() { pCoordinateSystem->vDecreaseUser(); }

void TPlaneBasic::TCommon::vSetNamePic(const std::string& name) {
  if (name == sName) return;
  sName = name;
  setTimeStamp();
  vSendMessage(1, 0);
}

void TPlaneBasic::TCommon::vSetValuesPerPixel(int n) {
  if (n < 0 || n == iValuesPerPixel) return;
  iValuesPerPixel = n;
  valueNames.resize(static_cast<std::size_t>(n));
  units.resize(static_cast<std::size_t>(n));
}

const std::string& TPlaneBasic::TCommon::rStrGetValuePic(int index) const {
  return index >= 0 && index < iValuesPerPixel ? valueNames[static_cast<std::size_t>(index)] : sEmpty;
}

const std::string& TPlaneBasic::TCommon::rStrGetUnitPic(int index) const {
  return index >= 0 && index < iValuesPerPixel ? units[static_cast<std::size_t>(index)] : sEmpty;
}

void TPlaneBasic::TCommon::vSetValueUnitPic(int index, const std::string& value, const std::string& unit) {
  if (index < 0 || index >= iValuesPerPixel) return;
  const auto i = static_cast<std::size_t>(index);
  bool changed = false;
  // Compared in the form given, stored decoded: a UTF-8 text therefore counts
  // as changed again each time it is set. Kept as it is.
  if (value != valueNames[i]) {
    valueNames[i] = sUtf8ToLatin1(value);
    changed = true;
  }
  if (unit != units[i]) {
    units[i] = sUtf8ToLatin1(unit);
    changed = true;
  }
  if (!changed) return;
  setTimeStamp();
  vSendMessage(2, static_cast<unsigned long>(index));
}

std::string TPlaneBasic::TCommon::sUtf8ToLatin1(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  bool open = false;
  unsigned long cp = 0;
  auto finish = [&] {
    if (open && cp < 0x100) out += static_cast<char>(cp);
    open = false;
    cp = 0;
  };
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    if (c < 0x80) {
      finish();
      out += ch;
    } else if (!open && (c == 0xB0 || c == 0xB2)) {
      out += ch;  // degree and superscript two pass as Latin-1: units use them
    } else if ((c & 0xC0) == 0xC0) {
      finish();
      open = true;
      cp = c < 0xE0 ? (c & 0x1Fu) : c < 0xF0 ? (c & 0x0Fu) : (c & 0x07u);
    } else if (open) {
      cp = (cp << 6) | (c & 0x3Fu);
      if (cp > 0x10FFFF) cp = 0x110000;  // already too large to keep; stop growing
    }
  }
  finish();
  return out;
}

void TPlaneBasic::TCommon::vSetValueRangeMSM(eComparePixelTyp e, double min, double step, double max) {
  if (min == dMin && step == dStep && max == dMax) return;
  KX_TRY {
    double defMin = 0, defMax = 0;
    vGetDefaultValueRangeMSM(e, &defMin, nullptr, &defMax);
    if (!(max > min) || !(step > 0) || !(min >= defMin) || !(min <= defMax) || !(max <= defMax) || !(max >= defMin))
      KX_THROW0(Err::ulValueRange);
    dMin = min;
    dStep = step;
    dMax = max;
    bRangeSet = true;
    vSendMessage(4, 0);
  }
  KX_CATCH
}

void TPlaneBasic::TCommon::vSetCoordinateSystem(const TCoordinateSystem* p) {
  auto* next = const_cast<TCoordinateSystem*>(p ? p : pGetDefaultCoordinateSystem());
  if (next == pCoordinateSystem) return;
  pCoordinateSystem->vDecreaseUser();
  pCoordinateSystem = next;
  pCoordinateSystem->vIncreaseUser();
  setTimeStamp();
  vSendMessage(3, 0);
}

void TPlaneBasic::TCommon::vSetDateTime(const TDateTime* p) {
  date = p ? *p : TDateTime::now();
  vSendMessage(5, 0);
}

void TPlaneBasic::TCommon::lock() {
  // One atomic test-and-set: of two threads waiting for the flag only one
  // takes it. Polling, and not nesting, as the lock has always been.
  while (bLock.exchange(true, std::memory_order_acquire)) kx::platform::sleepMs(1);
}

void TPlaneBasic::TCommon::unlock() {
  bLock.store(false, std::memory_order_release);
  setTimeStamp();
}

// ------------------------------------------------------------ TPlaneBasic

TPlaneBasic::TPlaneBasic() : TDelivery(), pCommon(&ownCommon), pKlassifikator(pGetDefaultPixelKlassifikator()) {
  {
    std::lock_guard lock(instancesMutex());
    instances().push_back(this);
  }
  vConnectSender(pCommon);
  TPlaneBasic::attrib2Zero();
  bSendMessage = true;
  setTimeStamp();
  vSetDateTime(nullptr);
}

TPlaneBasic::TPlaneBasic(const TPlaneBasic& o) : TPlaneBasic() { TPlaneBasic::operator=(o); }

TPlaneBasic& TPlaneBasic::operator=(const TPlaneBasic& o) {
  if (this == &o) return *this;
  KX_TRY {
    *pCommon = *o.pCommon;
    pKlassifikator = o.pKlassifikator;
  }
  KX_CATCH
  return *this;
}

TPlaneBasic::~TPlaneBasic() {
  // A view whose source died already is no longer listed by the dead common:
  // bIsSender compares pointers only and never touches it.
  if (pCommon != &ownCommon && bIsSender(pCommon)) vDisconnectSender(pCommon);
  std::lock_guard lock(instancesMutex());
  auto& v = instances();
  auto it = std::find(v.begin(), v.end(), this);
  if (it != v.end()) v.erase(it);
}

void TPlaneBasic::vSendMessage(unsigned long a, unsigned long b) {
  if (bSendMessage) TDelivery::vSendMessage(a, b);
}

bool TPlaneBasic::bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) {
  if (sender != pCommon) return false;
  vSendMessage(a, b);
  return true;
}

void TPlaneBasic::vSendCommonMessage(unsigned long a, unsigned long b) {
  if (bSendMessage) pCommon->vSendMessage(a, b);
}

double TPlaneBasic::getDoublePixelLC(int, int) const { return 0.0; }

void TPlaneBasic::writeFile(const char*, bool) const { KX_THROW0(Err::ulNoFileOnBasicPlane); }
void TPlaneBasic::readFile(const char*, bool) { KX_THROW0(Err::ulNoFileOnBasicPlane); }
void TPlaneBasic::insertFile(const char*) { KX_THROW0(Err::ulNoFileOnBasicPlane); }
const char* TPlaneBasic::getFileExtension() { KX_THROW0(Err::ulNoFileOnBasicPlane); }
void TPlaneBasic::vGetFileExtension(char*) { KX_THROW0(Err::ulNoFileOnBasicPlane); }

void TPlaneBasic::_vDetachToOwnCommon() {
  if (pCommon != &ownCommon && bIsSender(pCommon)) vDisconnectSender(pCommon);
  pCommon = &ownCommon;
  vConnectSender(pCommon);
}

void TPlaneBasic::vSetpCommon(const TCommon* p) {
  auto* next = const_cast<TCommon*>(p ? p : &ownCommon);
  if (next == pCommon) return;
  if (bIsSender(pCommon)) vDisconnectSender(pCommon);
  pCommon = next;
  vConnectSender(pCommon);
}

void TPlaneBasic::attrib2Zero() {
  // The coordinate system's user is counted by the common that refers to it,
  // so going back to the own common leaves every count as it is.
  _vDetachToOwnCommon();
  vSendMessage(11, 0);
  bValid = false;
  iLines = iColumns = iFirstLine = iFirstColumn = iLineDistance = 0;
  bExtern = bInterlaced = false;
  pCommon->vClearLock();
  vSetNotModified();
}

void TPlaneBasic::proofArea(int l1, int l2, int c1, int c2) const {
  if (!bValid) KX_THROW0(Err::ulPlaneNotValid);
  if (l1 < iFirstLine) KX_THROW(Err::ulAreaFirstLine, "_FirstLine=%d < FirstLine=%d", l1, iFirstLine);
  if (l2 > getLastLine()) KX_THROW(Err::ulAreaLastLine, "_LastLine=%d > LastLine=%d", l2, getLastLine());
  if (l1 > l2) KX_THROW(Err::ulAreaLinesReversed, "_FirstLine=%d > _LastLine=%d", l1, l2);
  if (c1 < iFirstColumn) KX_THROW(Err::ulAreaFirstColumn, "_FirstColumn=%d < FirstColumn=%d", c1, iFirstColumn);
  if (c2 > getLastColumn()) KX_THROW(Err::ulAreaLastColumn, "_LastColumn=%d > LastColumn=%d", c2, getLastColumn());
  if (c1 > c2) KX_THROW(Err::ulAreaColumnsReversed, "_FirstColumn=%d > _LastColumn=%d", c1, c2);
}

// A bare TPlaneBasic has no pixel type; every TPlane<T> answers its own.
eComparePixelTyp TPlaneBasic::eGetPicturePT() const { KX_THROW0(Err::ulPixelTypNotIdentifiable); }

void TPlaneBasic::setValueRangeMSM(double min, double step, double max) {
  KX_TRY { pCommon->vSetValueRangeMSM(eGetPicturePT(), min, step, max); }
  KX_CATCH
}

bool TPlaneBasic::getValueRangeMSM(double* min, double* step, double* max) const {
  KX_TRY {
    if (pCommon->bIsValueRangeSet()) {
      if (min) *min = pCommon->dGetMin();
      if (step) *step = pCommon->dGetStep();
      if (max) *max = pCommon->dGetMax();
      return true;
    }
    vGetDefaultValueRangeMSM(eGetPicturePT(), min, step, max);
    return false;
  }
  KX_CATCH
}

void TPlaneBasic::vSetValueUnitPicFromColorSpace() {
  if (!bIsColorPic()) return;
  KX_TRY {
    const unsigned to = pCommon->rGetPixelColorSpace().uGetToFlag();
    for (int i = 0; i < 3; ++i)
      setValueUnitPic(i, TPixelColorSpace::cpGetIndexName(to, i), TPixelColorSpace::cpGetIndexUnit(to, i));
    setTimeStamp();
  }
  KX_CATCH
}

void TPlaneBasic::SetPixelKlassifikator(TPixelKlassifikator* p) {
  if (p == pKlassifikator) return;
  pKlassifikator = p;
  setTimeStamp();
  vSendMessage(10, 0);
}

Process::TTimeStamp TPlaneBasic::getTimeStamp() const {
  const Process::TTimeStamp& own = pCommon->rGetTimeStamp();
  const Process::TTimeStamp& cs = pCommon->pGetCoordinateSystem()->getTimeStamp();
  return own > cs ? own : cs;
}

namespace {
// The colour pixel whose every component is f of the components of a and b.
template <class P, class F>
P byComponent(const P& a, const P& b, F f) {
  P r;
  r.b = f(a.b, b.b);
  r.g = f(a.g, b.g);
  r.r = f(a.r, b.r);
  return r;
}
}  // namespace

// The components go through the scalar min/max of their type.
TRGBPixel TPlaneBasic::min(const TRGBPixel& a, const TRGBPixel& b) {
  return byComponent(a, b, [](auto x, auto y) { return min(x, y); });
}

TRGBFloatPixel TPlaneBasic::min(const TRGBFloatPixel& a, const TRGBFloatPixel& b) {
  return byComponent(a, b, [](auto x, auto y) { return min(x, y); });
}

TRGBPixel TPlaneBasic::max(const TRGBPixel& a, const TRGBPixel& b) {
  return byComponent(a, b, [](auto x, auto y) { return max(x, y); });
}

TRGBFloatPixel TPlaneBasic::max(const TRGBFloatPixel& a, const TRGBFloatPixel& b) {
  return byComponent(a, b, [](auto x, auto y) { return max(x, y); });
}

std::vector<TPlaneBasic*> TPlaneBasic::vpInstances() {
  std::lock_guard lock(instancesMutex());
  return instances();
}

bool TPlaneBasic::bIsValid(const TPlaneBasic* p) {
  std::lock_guard lock(instancesMutex());
  const auto& v = instances();
  return p && std::find(v.begin(), v.end(), p) != v.end();
}

}  // namespace Rastrix
