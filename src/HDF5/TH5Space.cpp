#include "HDF5/TH5Space.h"

#include <vector>

#include "HDF5/H5Api.h"
#include "kxexception/KxError.h"

using namespace kx::h5;

unsigned long long TH5Space::uGetVolume() const {
  KX_TRY { return static_cast<unsigned long long>(sgetVolume(iGetId())); }
  KX_CATCH
}

unsigned TH5Space::uGetDim() const {
  KX_TRY { return static_cast<unsigned>(sgetRank(iGetId())); }
  KX_CATCH
}

void TH5Space::vGetDims(unsigned long long* dims) const {
  KX_TRY { sgetDims(iGetId(), dims, nullptr); }
  KX_CATCH
}

void TH5Space::vGetMaxDims(unsigned long long* maxDims) const {
  KX_TRY { sgetDims(iGetId(), nullptr, maxDims); }
  KX_CATCH
}

bool TH5Space::bIsExtendible() const {
  KX_TRY {
    const unsigned rank = uGetDim();
    if (rank == 0) return false;
    std::vector<hsize_t> dims(rank), maxDims(rank);
    sgetDims(id_, dims.data(), maxDims.data());
    for (unsigned i = 0; i < rank; ++i)
      if (maxDims[i] != dims[i]) return true;
    return false;
  }
  KX_CATCH
}

unsigned long long TH5Space::uGetObjectSize() const { return 0; }

void TH5Space::_vReport(FILE* out, int indent) const {
  if (!bIsOpen()) return TH5Handle::_vReport(out, indent);
  const unsigned rank = uGetDim();
  std::vector<hsize_t> dims(rank > 0 ? rank : 1);
  if (rank > 0) sgetDims(id_, dims.data(), nullptr);
  std::fprintf(out, "%*sSpace [", indent, "");
  for (unsigned i = 0; i < rank; ++i) std::fprintf(out, "%s%llu", i ? " x " : "", dims[i]);
  std::fprintf(out, "]\n");
}
