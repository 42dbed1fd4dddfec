#include "object98/TOldProtokoll.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/TObjectList98.h"

using object98::ulOldProtocol;

namespace {

const TLanguage::TLanguageString sNotImplemented("Nicht implementiertes altes Protokollformat",
                                                 "Old protocol format not implemented");
const TLanguage::TLanguageString sArrayFormat("Formatfehler in CPointArray-String", "Format error in CPointArray string");
const TLanguage::TLanguageString sListFormat("Formatfehler in CPointList-String", "Format error in CPointList string");

// The lines of a text, one at a time.
class TLines {
 public:
  explicit TLines(const std::string& text) : text_(text) {}
  // The next line (without CR/LF); false at the end.
  bool cpNextLine(std::string& line) {
    if (pos_ >= text_.size()) return false;
    std::size_t end = text_.find('\n', pos_);
    if (end == std::string::npos) end = text_.size();
    line = text_.substr(pos_, end - pos_);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    pos_ = end + 1;
    return true;
  }

 private:
  const std::string& text_;
  std::size_t pos_ = 0;
};

int number(TLines& in, const TLanguage::TLanguageString& error, int missing) {
  std::string line;
  if (!in.cpNextLine(line)) KX_THROW(ulOldProtocol, error());
  int v = missing;
  if (std::sscanf(line.c_str(), "%d", &v) != 1) KX_THROW(ulOldProtocol, error());
  return v;
}

// One CPointList; returns its group index.
int cpReadPointList(TLines& in, TObjectList98& list) {
  std::string line;
  if (!in.cpNextLine(line) || line.find("CPointList") == std::string::npos) KX_THROW(ulOldProtocol, sListFormat());
  for (int k = 0; k < 2; ++k)
    if (!in.cpNextLine(line)) KX_THROW(ulOldProtocol, sListFormat());
  const int code = number(in, sListFormat, 0);
  const int group = number(in, sListFormat, -2);
  if (group == -2 || group < -1) KX_THROW(ulOldProtocol, sListFormat());
  if (number(in, sListFormat, -1) == -1) KX_THROW(ulOldProtocol, sListFormat());
  const int n = number(in, sListFormat, -1);
  if (n < 0 || n > 1000000) KX_THROW(ulOldProtocol, sListFormat());
  TOPointList<int> p;
  for (int k = 0; k < n; ++k) {
    const int x = number(in, sListFormat, 0);
    const int y = number(in, sListFormat, 0);
    p.append(x, y);
  }
  if (!in.cpNextLine(line)) KX_THROW(ulOldProtocol, sListFormat());
  static const TOPL_Typ types[] = {ePoint, ePoint, eRectangle, eCircle, eLine, ePolyline, ePolygon, eHTrapezium};
  if (code < 1 || code > 7) KX_THROW(ulOldProtocol, sListFormat());
  TOPL_Typ t = types[code];
  if (code == 6 && n < 3) t = eLine;
  p.vSetTyp(t);
  list.append(p);
  return group;
}

// g = highest group index + 1 OR groups with the points (-1, -1), (0, 0);
// region i with index k becomes a son of group n + k.
void vCreateGroups(const std::vector<int>& indices, int n, TObjectList98& list) {
  int g = 0;
  for (int k : indices) g = std::max(g, k + 1);
  if (g <= 0) return;
  for (int k = 0; k < g; ++k) list.append(TOPointList<int>(eOrGroup, {TOPoint<int>(-1, -1), TOPoint<int>(0, 0)}));
  for (int i = 0; i < static_cast<int>(indices.size()); ++i)
    if (indices[static_cast<std::size_t>(i)] >= 0) {
      list.rGetRelationList().setVather(i, n + indices[static_cast<std::size_t>(i)]);
      list.move(i, 0, 0);
    }
}

}  // namespace

const CTag* TOldProtokoll::_pTag(short ifd, uint16_t tag) const {
  const CImageFileDir* d = pGetIFD(ifd);
  return d ? d->pGetTagTyp(tag) : nullptr;
}

std::string TOldProtokoll::_text(const CTag& t) { return std::string(t.data.begin(), t.data.end()); }

bool TOldProtokoll::bIsRegion() const {
  const CImageFileDir* d = pGetIFD(2);
  return d && !d->tags.empty();
}

bool TOldProtokoll::bIsPicture() const {
  long lines = 0, columns = 0;
  return CountIFD() > 0 && GetLines(lines, 0) == 0 && GetColumns(columns, 0) == 0 && lines > 0 && columns > 0;
}

void TOldProtokoll::vGetRegions(TObjectList98* list) {
  KX_TRY {
    if (!list) KX_THROW(0x5100000UL, "object list null");
    TObjectList98 got;
    groups_.clear();
    const CImageFileDir* d = pGetIFD(2);
    if (d && !d->tags.empty()) {
      switch (d->tags.front().tag) {
        case tagRectangles:
          for (const CTag& t : d->tags) {
            if (t.tag != tagRectangles) continue;
            const std::string all = _text(t);
            // Several texts in one tag are separated by their terminators.
            for (std::size_t at = 0; at < all.size();) {
              std::size_t end = all.find('\0', at);
              if (end == std::string::npos) end = all.size();
              const std::string one = all.substr(at, end - at);
              at = end + 1;
              int x0, y0, x1, y1;
              if (std::sscanf(one.c_str(), "%d%d%d%d", &x0, &y0, &x1, &y1) != 4) continue;
              if (one.find("(RECT)") != std::string::npos) {
                const CRectangle r(std::min(y0, y1), std::max(y0, y1), std::min(x0, x1), std::max(x0, x1));
                got.append(TOPointList<int>(eRectangle, {TOPoint<int>(r.iFirstColumn, r.iFirstLine),
                                                         TOPoint<int>(r.iLastColumn, r.iFirstLine),
                                                         TOPoint<int>(r.iLastColumn, r.iLastLine),
                                                         TOPoint<int>(r.iFirstColumn, r.iLastLine)}));
              } else {
                got.append(TOPointList<int>(eLine, {TOPoint<int>(x0, y0), TOPoint<int>(x1, y1)}));
              }
              groups_.push_back(-1);
            }
          }
          break;
        case tagPointLists:
          KX_THROW(ulOldProtocol, sNotImplemented());
        case tagPointArray: {
          const std::string text = _text(d->tags.front());
          TLines in(text);
          std::string line;
          bool found = false;
          while (in.cpNextLine(line))
            if (line.find("CPointArray") != std::string::npos) {
              found = true;
              break;
            }
          if (!found || !in.cpNextLine(line) || !in.cpNextLine(line)) KX_THROW(ulOldProtocol, sArrayFormat());
          const int n = number(in, sArrayFormat, -1);
          if (n < 0 || static_cast<std::size_t>(n) > text.size()) KX_THROW(ulOldProtocol, sArrayFormat());
          std::vector<int> indices(static_cast<std::size_t>(n), -1);
          for (int i = 0; i < n; ++i) indices[static_cast<std::size_t>(i)] = cpReadPointList(in, got);
          // Group objects follow the regions; more groups than the text has
          // bytes cannot be meant.
          for (int k : indices)
            if (k >= static_cast<int>(text.size())) KX_THROW(ulOldProtocol, sListFormat());
          vCreateGroups(indices, n, got);
          groups_ = indices;
          break;
        }
        default:
          break;
      }
    }
    list->clear();
    *list += got;
  }
  KX_CATCH
}

void TOldProtokoll::vGetCaptureTyp(char* out, std::size_t size) const {
  if (!out || size == 0) return;
  out[0] = 0;
  const CTag* t = _pTag(0, tagCaptureTyp);
  if (!t) return;
  std::string s = _text(*t);
  s = s.substr(0, std::min(s.find(','), s.find('\0')));
  std::snprintf(out, size, "%s -F +D +DL +L +S +GN", s.c_str());
}

void TOldProtokoll::vGetCaptureParam(char* out, std::size_t size) const {
  if (!out || size == 0) return;
  out[0] = 0;
  const CTag* t = _pTag(0, tagCaptureTyp);
  if (!t) return;
  std::string s = _text(*t);
  s = s.substr(0, s.find('\0'));
  const std::size_t comma = s.find(',');
  std::snprintf(out, size, "%s", comma == std::string::npos ? "" : s.c_str() + comma + 1);
}

void TOldProtokoll::vGetPictureSize(long& lines, long& columns) const {
  lines = columns = 0;
  if (GetLines(lines, 0) != 0) lines = 0;
  if (GetColumns(columns, 0) != 0) columns = 0;
}

void TOldProtokoll::vGetDataSize(CRectangle& r) const {
  const CTag* offset = _pTag(0, tagDataOffset);
  const CTag* extent = _pTag(0, tagDataExtent);
  if (!offset) {
    long lines, columns;
    vGetPictureSize(lines, columns);
    r = CRectangle(0, static_cast<int>(lines) - 1, 0, static_cast<int>(columns) - 1);
    return;
  }
  const int l0 = static_cast<int16_t>(offset->uGetValue(0)), c0 = static_cast<int16_t>(offset->uGetValue(1));
  const int nl = extent ? static_cast<int16_t>(extent->uGetValue(0)) : 0;
  const int nc = extent ? static_cast<int16_t>(extent->uGetValue(1)) : 0;
  r = CRectangle(l0, l0 + nl - 1, c0, c0 + nc - 1);
}

const char* TOldProtokoll::cpGetComment() {
  const CTag* t = _pTag(1, tagComment);
  comment_ = t ? _text(*t) : "";
  comment_ = comment_.substr(0, comment_.find('\0'));
  return comment_.c_str();
}

void TOldProtokoll::vReadLuminanceLevel() {
  levels_.clear();
  const CTag* t = _pTag(0, tagLevels);
  if (!t) return;
  const std::string s = _text(*t);
  const char* p = s.c_str();
  for (char* end = nullptr;; p = end) {
    const double v = std::strtod(p, &end);
    if (end == p) break;
    levels_.push_back(v);
  }
}

double TOldProtokoll::dGetLevel(int i, bool log) const {
  if (i < 0 || static_cast<std::size_t>(i) >= levels_.size()) return 0;
  const double v = levels_[static_cast<std::size_t>(i)];
  return log ? (v > 0 ? std::log10(v) : 0) : v;
}

int TOldProtokoll::iGetObject(int i) const {
  return i >= 0 && static_cast<std::size_t>(i) < groups_.size() ? groups_[static_cast<std::size_t>(i)] : -1;
}

void TObjectList98::vReadPRT(const char* file, bool bAppend) {
  KX_TRY {
    TOldProtokoll prt;
    if (!file || prt.OpenFile(file) != 0)
      KX_THROW(object98::ulObjectFileRead, "Datei %s kann nicht gelesen werden", file ? file : "(null)");
    TObjectList98 got;
    prt.vGetRegions(&got);
    prt.CloseFile();
    if (bAppend) {
      *this += got;
    } else {
      const bool saved = bMessagesEnabled();
      *this = got;
      vEnableMessages(saved);
      setAllTimeStamp();
      vSendMessage(1, 0);
    }
  }
  KX_CATCH
}
