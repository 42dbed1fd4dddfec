// The handles of the image library onto a plane: image, coordinate system,
// colour. Each library call is checked once, here.
#include <cstring>

#include "kxexception/KxError.h"
#include "kxutils/ulColorSpace.h"
#include "kxutils/ulCoordinatesystem.h"
#include "kxutils/ulImage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlane.h"

namespace Rastrix {

namespace {

// Deletes a handle on the way out unless released.
template <unsigned long (*Delete)(void**)>
class THandleGuard {
 public:
  THandleGuard() = default;
  ~THandleGuard() {
    if (h_) Delete(&h_);
  }
  THandleGuard(const THandleGuard&) = delete;
  THandleGuard& operator=(const THandleGuard&) = delete;
  void** out() { return &h_; }
  void* get() const { return h_; }
  void* release() {
    void* h = h_;
    h_ = nullptr;
    return h;
  }

 private:
  void* h_ = nullptr;
};

using TImageGuard = THandleGuard<ulImage_DeleteHandle>;
using TCoordinateGuard = THandleGuard<ulCoordinatesystem_DeleteHandle>;
using TColorGuard = THandleGuard<ulColorSpace_DeleteHandle>;

void check(unsigned long rc, const char* call) {
  if (rc != 0) KX_THROW(Err::ulPixelTypNotIdentifiable, "Error on %s()", call);
}

// The address of the first pixel of a plane of any type.
void* firstPixel(const TPlaneBasic& p) {
  return dispatchPixelTyp(p.eGetPicturePT(), [&](auto t) -> void* {
    using T = typename decltype(t)::type;
    const auto& plane = static_cast<const TPlane<T>&>(p);
    return const_cast<T*>(plane[plane.getFirstLine()] + plane.getFirstColumn());
  });
}

}  // namespace

void* TPlaneBasic::vpCreateIMAGE_HANDLE() const {
  KX_TRY {
    const eComparePixelTyp type = eGetPicturePT();
    void* address = firstPixel(*this);  // invalid plane: 0xe7021004
    // Two blocks cannot be told to the library: it would read the wrong lines.
    if (bInterlaced) KX_THROW(Err::ulPixelTypNotIdentifiable, "interlaced memory has no image handle");
    TImageGuard first;
    check(ulImage_CreateHandle(type, first.out()), "ulImage_CreateHandle");
    check(ulImage_Alloc2(first.get(), iLines, iLineDistance, iFirstLine, iFirstColumn, address), "ulImage_Alloc2");
    if (iColumns == iLineDistance) return first.release();
    // The library saw line-distance columns: narrow a second image to the true width.
    TImageGuard second;
    check(ulImage_CreateHandle(type, second.out()), "ulImage_CreateHandle");
    check(ulImage_ConnectImage(second.get(), iLines, iColumns, iFirstLine, iFirstColumn, first.get()),
          "ulImage_ConnectImage");
    return second.release();
  }
  KX_CATCH
}

void* TPlaneBasic::vpCreateCOORDINATESYSTEM_HANDLE() const {
  KX_TRY {
    const TCoordinateSystem* cs = pGetCoordinateSystem();
    TCoordinateGuard h;
    check(ulCoordinatesystem_CreateHandle(h.out()), "ulCoordinatesystem_CreateHandle");
    check(ulCoordinatesystem_SetName(h.get(), cs->rStrGetNameKS().c_str()), "ulCoordinatesystem_SetName");
    const bool colour = bIsColorPic();
    auto value = [&](int i) { return colour || i == 0 ? rStrGetValuePic(i).c_str() : ""; };
    auto unit = [&](int i) { return colour || i == 0 ? rStrGetUnitPic(i).c_str() : ""; };
    check(ulCoordinatesystem_SetValueUnit(h.get(), value(0), unit(0), value(1), unit(1), value(2), unit(2)),
          "ulCoordinatesystem_SetValueUnit");
    check(ulCoordinatesystem_SetXYAxis(h.get(), cs->rStrGetNameX().c_str(), cs->rStrGetUnitX().c_str(),
                                       cs->rStrGetNameY().c_str(), cs->rStrGetUnitY().c_str(),
                                       cs->rStrGetUnitA().c_str()),
          "ulCoordinatesystem_SetXYAxis");
    check(ulCoordinatesystem_SetZAxis(h.get(), cs->rStrGetNameZ().c_str(), cs->rStrGetUnitZ().c_str(),
                                      cs->dGetValueZ()),
          "ulCoordinatesystem_SetZAxis");
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    cs->vGetWorldXY(&x0, &y0, 0, 0);
    cs->vGetWorldXY(&x1, &y1, 1, 1);
    check(ulCoordinatesystem_SetScalingParam(h.get(), x0, x1 - x0, y0, y1 - y0), "ulCoordinatesystem_SetScalingParam");
    return h.release();
  }
  KX_CATCH
}

void* TPlaneBasic::vpCreateCOLOR_HANDLE() const {
  if (!bIsColorPic()) return nullptr;
  KX_TRY {
    const TPixelColorSpace& cs = rGetPixelColorSpace();
    const TRGBFloatPixel& ref = cs.rGetRefInCIE_RGB();
    TColorGuard h;
    check(ulColorSpace_CreateHandle(h.out()), "ulColorSpace_CreateHandle");
    check(ulColorSpace_SetDestination(h.get(), cs.uGetToFlag(), ref.r, ref.g, ref.b), "ulColorSpace_SetDestination");
    return h.release();
  }
  KX_CATCH
}

}  // namespace Rastrix
