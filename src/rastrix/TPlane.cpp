#include "rastrix/TPlane.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "kxexception/KxError.h"
#include "platform/CLocale.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/RastrixTexts.h"

namespace Rastrix {

namespace {

// p + n elements, computed on the address: row entries and the shifted table
// base lie outside their arrays by design (absolute numbering), which plain
// pointer arithmetic may not express.
template <class P>
P* shifted(P* p, int64_t n) {
  return reinterpret_cast<P*>(reinterpret_cast<uintptr_t>(p) +
                              static_cast<uintptr_t>(n) * static_cast<uintptr_t>(sizeof(P)));
}

constexpr std::size_t uBlockAlign = 64;

}  // namespace

template <class T>
void TPlane<T>::TAlignedFree::operator()(T* p) const {
  ::operator delete(static_cast<void*>(p), std::align_val_t{uBlockAlign});
}

// ------------------------------------------------------------ lifecycle

template <class T>
TPlane<T>::TPlane() : TPlaneBasic() {
  attrib2Zero();
  setTimeStamp();
  vSetNotModified();
}

template <class T>
TPlane<T>::TPlane(int lines, int columns, const T* mem, const T* mem2) : TPlane() {
  alloc(lines, columns, 0, 0, columns, mem, mem2);
}

template <class T>
TPlane<T>::TPlane(int lines, int columns, int firstLine, int firstColumn, int lineDistance, const T* mem,
                  const T* mem2)
    : TPlane() {
  alloc(lines, columns, firstLine, firstColumn, lineDistance, mem, mem2);
}

template <class T>
TPlane<T>::TPlane(const CRectangle& r, const T* mem, const T* mem2) : TPlane() {
  alloc(r, mem, mem2);
}

template <class T>
TPlane<T>::TPlane(const CRectangle& r, int lineDistance, const T* mem, const T* mem2) : TPlane() {
  alloc(r, lineDistance, mem, mem2);
}

template <class T>
TPlane<T>::TPlane(const TPlane& o) : TPlaneBasic(o) {
  KX_TRY {
    if (o.bValid) {
      alloc(o.iLines, o.iColumns, o.iFirstLine, o.iFirstColumn, o.iColumns, nullptr, nullptr);
      const std::size_t bytes = static_cast<std::size_t>(iColumns) * sizeof(T);
      for (int l = iFirstLine; l <= getLastLine(); ++l)
        std::memcpy(ppRows[l] + iFirstColumn, o.ppRows[l] + o.iFirstColumn, bytes);
    }
    setTimeStamp();
  }
  KX_CATCH
}

template <class T>
TPlane<T>::~TPlane() {
  try {
    free();
  } catch (...) {
    // A receiver failed on the last messages; the memory is released anyway.
    kx::deleteError();
  }
}

template <class T>
TPlane<T>& TPlane<T>::operator=(const TPlane& o) {
  if (this == &o) return *this;
  KX_TRY {
    // A view onto this plane's own block would lose its pixels in the free
    // below: take them from a copy instead (same description, same result).
    if (o.bExtern && !bExtern && o.pCommon == &ownCommon && pCommon == &ownCommon) {
      const TPlane copy(o);
      return *this = copy;
    }
    // The description first, into the common in use: assigning to a view
    // renames its source before the view detaches. This order is required.
    TPlaneBasic::operator=(o);
    if (bExtern || iLines != o.iLines || iColumns != o.iColumns) {
      _vDetachToOwnCommon();
      vSendMessage(11, 0);
      TSendOff quiet(*this);
      free();
    }
    if (o.bValid) {
      alloc(o.iLines, o.iColumns, nullptr, nullptr);
      if (iFirstLine != o.iFirstLine || iFirstColumn != o.iFirstColumn) moveTo(o.iFirstLine, o.iFirstColumn);
      _vInsertAll(o);
    }
    setTimeStamp();
    vSetDateTime(nullptr);  // an assigned plane is dated now, not at the source's date
  }
  KX_CATCH
  return *this;
}

template <class T>
void TPlane<T>::attrib2Zero() {
  TPlaneBasic::attrib2Zero();
  ppRows = nullptr;
  pMemory = nullptr;
  rowStore.reset();
  block.reset();
  cpKeyTyp = "Typ=";
  cpKeyLines = "Lines=";
  cpKeyColumns = "Columns=";
  cpKeyFirstLine = "FirstLine=";
  cpKeyFirstColumn = "FirstColumn=";
  cpKeyColorSpace = "ColorSpace=";
  // The type's defaults go only into a common that never had a type, so the
  // description survives free() and alloc().
  if (iGetValuesPerPixel() == 0) {
    setValuesPerPixel(TTraits::iValuesPerPixel);
    setNamePic(TTraits::rName()());
    if constexpr (TTraits::bColor) {
      vSetValueUnitPicFromColorSpace();
    } else {
      const char* unit = TTraits::ePixelTyp == eF ? STR_PLANE_KORR()() : cpUnitLSB;
      setValueUnitPic(0, STR_PLANE_GREYPIC2()(), unit);
    }
  }
}

template <class T>
void TPlane<T>::alloc(int lines, int columns, const T* mem, const T* mem2) {
  alloc(lines, columns, 0, 0, columns, mem, mem2);
}

template <class T>
void TPlane<T>::alloc(const CRectangle& r, const T* mem, const T* mem2) {
  alloc(r.YSize(), r.XSize(), r.iFirstLine, r.iFirstColumn, r.XSize(), mem, mem2);
}

template <class T>
void TPlane<T>::alloc(const CRectangle& r, int lineDistance, const T* mem, const T* mem2) {
  alloc(r.YSize(), r.XSize(), r.iFirstLine, r.iFirstColumn, lineDistance, mem, mem2);
}

template <class T>
void TPlane<T>::alloc(int lines, int columns, int firstLine, int firstColumn, int lineDistance, const T* mem,
                      const T* mem2) {
  // The capture loop reallocates every frame: same geometry costs nothing.
  if (bValid && !mem && !mem2 && lines == iLines && columns == iColumns && firstLine == iFirstLine &&
      firstColumn == iFirstColumn && lineDistance == iLineDistance)
    return;
  KX_TRY {
    if (bValid) {
      _vDetachToOwnCommon();
      vSendMessage(11, 0);
      TSendOff quiet(*this);
      free();
    }
    if (lines < 1 || columns < 1) return;
    if (lineDistance < columns)
      KX_THROW(Err::ulLineDistanceTooSmall, "_LineDistance=%d < _Columns=%d", lineDistance, columns);
    // Every line and column number of the plane must be an int.
    if (static_cast<int64_t>(firstLine) + lines - 1 > INT32_MAX)
      KX_THROW(Err::ulPlaneBeyondIntRange, "FirstLine=%d Lines=%d", firstLine, lines);
    if (static_cast<int64_t>(firstColumn) + columns - 1 > INT32_MAX)
      KX_THROW(Err::ulPlaneBeyondIntRange, "FirstColumn=%d Columns=%d", firstColumn, columns);

    iLines = lines;
    iColumns = columns;
    iFirstLine = firstLine;
    iFirstColumn = firstColumn;
    iLineDistance = lineDistance;
    bExtern = mem != nullptr;
    bInterlaced = mem != nullptr && mem2 != nullptr;

    std::unique_ptr<T*[]> store(new T*[static_cast<std::size_t>(lines)]);
    const int64_t ld = lineDistance;
    if (!mem) {
      const std::size_t pixels = static_cast<std::size_t>(lines) * static_cast<std::size_t>(lineDistance);
      if (pixels > SIZE_MAX / sizeof(T)) throw std::bad_alloc();
      const std::size_t bytes = pixels * sizeof(T);
      std::unique_ptr<T, TAlignedFree> b(static_cast<T*>(::operator new(bytes, std::align_val_t{uBlockAlign})));
      std::memset(static_cast<void*>(b.get()), 0, bytes);
      for (int i = 0; i < lines; ++i) store[i] = shifted(b.get(), i * ld - firstColumn);
      block = std::move(b);
    } else if (!mem2) {
      T* m = const_cast<T*>(mem);
      for (int i = 0; i < lines; ++i) store[i] = shifted(m, (static_cast<int64_t>(firstLine) + i) * ld);
    } else {
      T* even = const_cast<T*>(mem);
      T* odd = const_cast<T*>(mem2);
      for (int i = 0; i < lines; ++i) {
        const int64_t n = static_cast<int64_t>(firstLine) + i;
        store[i] = shifted(n % 2 == 0 ? even : odd, (n / 2) * ld);
      }
    }
    rowStore = std::move(store);
    _vSetRows(rowStore.get());
    pMemory = bInterlaced ? const_cast<T*>(mem) : shifted(ppRows[iFirstLine], -static_cast<int64_t>(iFirstLine) * ld);
    bValid = true;
    setTimeStamp();
    vSendMessage(50, 0);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::_vSetRows(T** store) {
  ppRows = shifted(store, -static_cast<int64_t>(iFirstLine));
}

template <class T>
void TPlane<T>::free() {
  if (!bValid) return;
  KX_TRY {
    rowStore.reset();
    if (!bExtern) block.reset();
    attrib2Zero();
    setTimeStamp();
    vSendMessage(50, 0);
  }
  KX_CATCH
}

// ------------------------------------------------------------ views, moves

template <class T>
void TPlane<T>::beSubPicture(const TPlane& source, const CRectangle& r) {
  if (bValid && bExtern && pMemory == source.pMemory && getExtension() == r && &source != this) return;
  KX_TRY {
    // Not onto itself, nor onto a view of its own block, which its free would release.
    const bool ownView = source.bExtern && !bExtern && source.pCommon == &ownCommon;
    if (&source == this || ownView || r.YSize() < 1 || r.XSize() < 1 || !source.bValid ||
        !(r <= source.getExtension()))
      KX_THROW0(Err::ulSubPictureArea);
    {
      TSendOff quiet(*this);
      free();
    }
    vSetpCommon(source.pGetpCommon());
    iLines = r.YSize();
    iColumns = r.XSize();
    iFirstLine = r.iFirstLine;
    iFirstColumn = r.iFirstColumn;
    iLineDistance = source.iLineDistance;
    bInterlaced = source.bInterlaced;
    bExtern = true;
    pMemory = source.pMemory;
    std::unique_ptr<T*[]> store(new T*[static_cast<std::size_t>(iLines)]);
    for (int i = 0; i < iLines; ++i) store[i] = source.ppRows[iFirstLine + i];
    rowStore = std::move(store);
    _vSetRows(rowStore.get());
    double mi = 0, st = 0, ma = 0;
    source.getValueRangeMSM(&mi, &st, &ma);
    setValueRangeMSM(mi, st, ma);
    setTimeStamp();
    bValid = true;
    vSendMessage(50, 0);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::moveBy(int dLines, int dColumns) {
  KX_TRY { _vMoveTo(static_cast<int64_t>(iFirstLine) + dLines, static_cast<int64_t>(iFirstColumn) + dColumns); }
  KX_CATCH
}

template <class T>
void TPlane<T>::_vMoveTo(int64_t firstLine, int64_t firstColumn) {
  KX_TRY {
    if (!bValid) KX_THROW0(Err::ulPlaneNotValid);
    _vCheckRange(firstLine, firstColumn);
    const int64_t dColumns = firstColumn - iFirstColumn;
    const int64_t ld = iLineDistance;
    T** store = rowStore.get();
    const int newFirstLine = static_cast<int>(firstLine);
    if (!bExtern) {
      // The pixels stay; only their numbers change.
      for (int i = 0; i < iLines; ++i) store[i] = shifted(store[i], -dColumns);
    } else if (!bInterlaced) {
      // The memory's pixel (0, 0) stays: the window slides over the block.
      T* base = shifted(ppRows[iFirstLine], -static_cast<int64_t>(iFirstLine) * ld);
      for (int i = 0; i < iLines; ++i) store[i] = shifted(base, (static_cast<int64_t>(newFirstLine) + i) * ld);
      pMemory = base;
    } else {
      if (iLines < 2) KX_THROW0(Err::ulInterlacedTooFewLines);
      const int64_t a = iFirstLine, b = a + 1;
      const int64_t even = a % 2 == 0 ? a : b, odd = a % 2 == 0 ? b : a;
      T* baseEven = shifted(ppRows[even], -(even / 2) * ld);
      T* baseOdd = shifted(ppRows[odd], -(odd / 2) * ld);
      for (int i = 0; i < iLines; ++i) {
        const int64_t n = static_cast<int64_t>(newFirstLine) + i;
        store[i] = shifted(n % 2 == 0 ? baseEven : baseOdd, (n / 2) * ld);
      }
      pMemory = baseEven;
    }
    iFirstLine = newFirstLine;
    iFirstColumn = static_cast<int>(firstColumn);
    _vSetRows(store);
    if (!bInterlaced) pMemory = shifted(ppRows[iFirstLine], -static_cast<int64_t>(iFirstLine) * ld);
    setTimeStamp();
    vSendMessage(50, 0);
  }
  KX_CATCH
}

// Every line and column number of the plane, moved to these first numbers,
// must be an int.
template <class T>
void TPlane<T>::_vCheckRange(int64_t firstLine, int64_t firstColumn) const {
  if (firstLine < INT32_MIN || firstLine + iLines - 1 > INT32_MAX)
    KX_THROW(Err::ulPlaneBeyondIntRange, "FirstLine=%lld Lines=%d", static_cast<long long>(firstLine), iLines);
  if (firstColumn < INT32_MIN || firstColumn + iColumns - 1 > INT32_MAX)
    KX_THROW(Err::ulPlaneBeyondIntRange, "FirstColumn=%lld Columns=%d", static_cast<long long>(firstColumn), iColumns);
}

template <class T>
void TPlane<T>::moveTo(int firstLine, int firstColumn) {
  KX_TRY {
    _vMoveTo(firstLine, firstColumn);
  }
  KX_CATCH
}

// ------------------------------------------------------------ access

template <class T>
void TPlane<T>::_vBadLine(int line) const {
  if (!bValid) KX_THROW0(Err::ulPlaneNotValid);
  KX_THROW(Err::ulLineOutside, "Line=%d FirstLine=%d LastLine=%d", line, iFirstLine, getLastLine());
}

template <class T>
double TPlane<T>::getDoublePixelLC(int line, int column) const {
  KX_TRY {
    const T* row = (*this)[line];
    if (column < iFirstColumn)
      KX_THROW(Err::ulAreaFirstColumn, "_FirstColumn=%d < FirstColumn=%d", column, iFirstColumn);
    if (column > getLastColumn())
      KX_THROW(Err::ulAreaLastColumn, "_LastColumn=%d > LastColumn=%d", column, getLastColumn());
    return static_cast<double>(row[column]);
  }
  KX_CATCH
}

template <class T>
void TPlane<T>::vPixel2Str2(const T* p, char* out) const {
  if constexpr (TTraits::bColor) {
    KX_TRY {
      TRGBFloatPixel cie;
      cie.b = static_cast<float>(p->b);
      cie.g = static_cast<float>(p->g);
      cie.r = static_cast<float>(p->r);
      TPixelColorSpace& cs = const_cast<TCommon*>(pGetpCommon())->rGetPixelColorSpace();
      cs.vSetCIE_RGB(cie);
      const TRGBFloatPixel& c = cs.rGetColor(cs.uGetToFlag());
      const kx::platform::CNumericScope cLocale;
      std::snprintf(out, iPixelStrSize, "%f\t%f\t%f", static_cast<double>(c.r), static_cast<double>(c.g),
                    static_cast<double>(c.b));
    }
    KX_CATCH
  } else {
    (void)p;
    (void)out;
  }
}

template <class T>
void TPlane<T>::_vInsertAll(const TPlane& src) {
  KX_TRY {
    lock();
    const std::size_t bytes = static_cast<std::size_t>(iColumns) * sizeof(T);
    for (int i = 0; i < iLines; ++i)
      std::memmove(ppRows[iFirstLine + i] + iFirstColumn, src.ppRows[src.iFirstLine + i] + src.iFirstColumn, bytes);
    unlock();
    setTimeStamp();
    vSendCommonMessage(51, 0);
  }
  KX_CATCH
}

#define KX_INSTANTIATE_PLANE(T) template class TPlane<T>;
KX_FOR_EACH_PIXEL_TYPE(KX_INSTANTIATE_PLANE)
#undef KX_INSTANTIATE_PLANE

}  // namespace Rastrix
