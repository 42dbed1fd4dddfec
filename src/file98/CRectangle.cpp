#include "file98/CRectangle.h"

#include <algorithm>
#include <utility>

CRectangle& CRectangle::operator&=(const CRectangle& r) {
  iFirstLine = std::max(iFirstLine, r.iFirstLine);
  iLastLine = std::min(iLastLine, r.iLastLine);
  iFirstColumn = std::max(iFirstColumn, r.iFirstColumn);
  iLastColumn = std::min(iLastColumn, r.iLastColumn);
  return *this;
}

bool CRectangle::AndRectangle(const CRectangle& r) {
  *this &= r;
  return IsCorrectRectangle();
}

bool CRectangle::OrRectangle(const CRectangle& r) {
  iFirstLine = std::min(iFirstLine, r.iFirstLine);
  iLastLine = std::max(iLastLine, r.iLastLine);
  iFirstColumn = std::min(iFirstColumn, r.iFirstColumn);
  iLastColumn = std::max(iLastColumn, r.iLastColumn);
  return IsCorrectRectangle();
}

bool CRectangle::ReArrange() {
  if (iFirstLine > iLastLine) std::swap(iFirstLine, iLastLine);
  if (iFirstColumn > iLastColumn) std::swap(iFirstColumn, iLastColumn);
  return IsCorrectRectangle();
}

bool CRectangle::IsSmallerAs(const CRectangle& r) const {
  return iFirstLine >= r.iFirstLine && iLastLine <= r.iLastLine && iFirstColumn >= r.iFirstColumn &&
         iLastColumn <= r.iLastColumn;
}
