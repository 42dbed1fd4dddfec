#include "platform/AtomicFile.h"
#include "object98/TRLCArray.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "object98/RLCKernels.h"
#include "object98/TRLCBuilder.h"
#include "object98/TCircle.h"
#include "platform/Clock.h"

using namespace object98;

namespace {

const TLanguage::TLanguageString sPointCount("TRLCArray::calcRLCPoint() nur fuer Count=1 implementiert",
                                             "TRLCArray::calcRLCPoint() only for Count=1 implemented");
const TLanguage::TLanguageString sTypeNotImplemented("TRLCArray::calcRLC() fuer diesen Typ nicht implementiert",
                                                     "TRLCArray::calcRLC() not implemented for this type");
const TLanguage::TLanguageString sCannotWrite("Datei %s nicht schreibbar", "Can not write file %s");
const TLanguage::TLanguageString sCannotRead("Datei %s nicht lesbar", "Can not read file %s");
const TLanguage::TLanguageString sBadFile("Datei %s ist keine Lauflaengen-Datei: %s",
                                          "File %s is no run-length file: %s");
const TLanguage::TLanguageString sTooFewPoints("Punktliste vom Typ %d hat %d Punkte, noetig sind %d",
                                               "Point list of type %d has %d points, %d are needed");
const TLanguage::TLanguageString sCoordinateRange("Punkt %d (%d, %d) ausserhalb des Bereichs +-%d",
                                                  "Point %d (%d, %d) out of the range +-%d");

// Coordinates beyond this would overflow the differences the rasterisers
// form (a circle's x distance, an edge's dx).
constexpr int kMaxCoordinate = 1 << 29;

// Float to int the way the line rasteriser cuts: plus 0.5, toward zero.
inline int cut(double v) { return static_cast<int>(static_cast<int64_t>(v + 0.5)); }

void checkPoints(const TOPointList<int>& list, int needed) {
  if (list.size() < needed)
    KX_THROW(ulRLCTooFewPoints, sTooFewPoints(), static_cast<int>(list.eGetTyp()), list.size(), needed);
  for (int i = 0; i < list.size(); ++i) {
    const TOPoint<int>& p = list[i];
    if (p.x < -kMaxCoordinate || p.x > kMaxCoordinate || p.y < -kMaxCoordinate || p.y > kMaxCoordinate)
      KX_THROW(ulRLCCoordinateRange, sCoordinateRange(), i, p.x, p.y, kMaxCoordinate);
  }
}

// Linux file names never hold a '\' as a separator.
std::string systemPath(const char* file) {
  std::string s(file ? file : "");
  std::replace(s.begin(), s.end(), '\\', '/');
  return s;
}

struct FileCloser {
  void operator()(std::FILE* f) const {
    if (f) std::fclose(f);
  }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

const TLanguage::TLanguageString sMissing("%s fehlt", "%s missing");
const TLanguage::TLanguageString sNotANumber("%s ist keine ganze Zahl", "%s is no integer");
const TLanguage::TLanguageString sTooLarge("%s zu gross", "%s too large");
const TLanguage::TLanguageString sDoesNotFit("%s passt nicht zur Dateigroesse", "%s does not fit the file size");
const TLanguage::TLanguageString sBackwards("Lauf endet vor seinem Anfang", "run ends before it starts");
const TLanguage::TLanguageString sTrailing("Daten nach dem Ende", "data after the end");

// Reads decimal integers separated by white space; anything else is an error
// 0xe3222064 that names the file, the reason and the byte offset.
class TNumberReader {
 public:
  TNumberReader(const std::string& text, const char* file) : s_(text), file_(file) {}

  // The next number, which must fit an int.
  int next(const char* what) {
    skipSpace();
    if (pos_ >= s_.size()) fail(sMissing, what);
    std::size_t p = pos_;
    bool neg = false;
    if (s_[p] == '-' || s_[p] == '+') neg = s_[p++] == '-';
    const std::size_t digits = p;
    long long v = 0;
    while (p < s_.size() && s_[p] >= '0' && s_[p] <= '9') {
      v = v * 10 + (s_[p] - '0');
      if (v > 2147483648LL) fail(sTooLarge, what);
      ++p;
    }
    if (p == digits || (p < s_.size() && !isSpace(s_[p]))) fail(sNotANumber, what);
    if (neg) v = -v;
    if (v > 2147483647LL) fail(sTooLarge, what);
    pos_ = p;
    return static_cast<int>(v);
  }
  // Bytes not read yet: every further number needs at least one of them.
  std::size_t remaining() const { return s_.size() - pos_; }
  void expectEnd() {
    skipSpace();
    if (pos_ < s_.size()) fail(sTrailing, "");
  }
  [[noreturn]] void fail(const TLanguage::TLanguageString& reason, const char* what) {
    char text[200];
    std::snprintf(text, sizeof text, reason(), what);
    char where[240];
    std::snprintf(where, sizeof where, "%s (Byte %zu)", text, pos_);
    KX_THROW(ulRLCFileFormat, sBadFile(), file_, where);
  }

 private:
  static bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
  void skipSpace() {
    while (pos_ < s_.size() && isSpace(s_[pos_])) ++pos_;
  }
  const std::string& s_;
  const char* file_;
  std::size_t pos_ = 0;
};

const TRLCLine& emptyLine() {
  static const TRLCLine empty;  // shared by every array without line objects
  return empty;
}

}  // namespace

// ---- run blocks ------------------------------------------------------------

namespace {

// The standard blocks a thread freed, kept for its next regions: up to 2 MB,
// enough for the lines of a picture full of objects, and given back when the
// thread ends. Trivially destructible, so that it can still be asked while
// the thread's destructors run; `closed` is set when the spares are gone.
struct TSpareBlocks {
  static constexpr int kMax = 32;
  TRLC* block[kMax];
  int count;
  bool closed;
};
thread_local TSpareBlocks tSpares{};

struct TSpareBlocksCloser {
  ~TSpareBlocksCloser() {
    while (tSpares.count > 0) std::free(tSpares.block[--tSpares.count]);
    tSpares.closed = true;  // blocks freed later (static regions) go to the allocator
  }
};

}  // namespace

TRLCArray::TRunBlock TRLCArray::_NewBlock(std::size_t runs) {
  if (runs == kBlockRuns && tSpares.count > 0) return TRunBlock(tSpares.block[--tSpares.count], TFreeRuns{true});
  void* p = std::malloc(runs * sizeof(TRLC));
  if (!p) throw std::bad_alloc();
  return TRunBlock(static_cast<TRLC*>(p), TFreeRuns{runs == kBlockRuns});
}

void TRLCArray::TFreeRuns::operator()(TRLC* p) const noexcept {
  if (bStandard && !tSpares.closed && tSpares.count < TSpareBlocks::kMax) {
    thread_local TSpareBlocksCloser closer;  // frees the spares at the thread's end
    (void)closer;
    tSpares.block[tSpares.count++] = p;
    return;
  }
  std::free(p);
}

// ---- construction ----------------------------------------------------------

TRLCArray::TRLCArray() { resetVar(); }

TRLCArray::TRLCArray(const TOPointList<int>& list) {
  resetVar();
  KX_TRY { calcRLC(list); }
  KX_CATCH
}

TRLCArray::TRLCArray(const TRLCArray& o)
    : FirstLine(o.FirstLine), LastLine(o.LastLine), FirstColumn(o.FirstColumn), LastColumn(o.LastColumn) {
  if (size() <= 0) return;
  if (o.Lines.empty()) {  // every line of the box becomes a line object
    Lines.resize(static_cast<std::size_t>(size()));
    return;
  }
  std::size_t total = 0;
  for (const TRLCLine& l : o.Lines) total += static_cast<std::size_t>(l.Size);
  TBuilder b(size(), total);
  for (const TRLCLine& l : o.Lines) {
    if (l.Size > 0) std::memcpy(b.pRoom(static_cast<std::size_t>(l.Size)), l.Begin, static_cast<std::size_t>(l.Size) * sizeof(TRLC));
    b.vEndLine(l.Size, l.State);
  }
  b.vFinish(*this, 0, size() - 1);
}

TRLCArray::TRLCArray(TRLCArray&& o) noexcept
    : FirstLine(o.FirstLine), LastLine(o.LastLine), FirstColumn(o.FirstColumn), LastColumn(o.LastColumn),
      Pool(std::move(o.Pool)), Lines(std::move(o.Lines)) {
  o.Lines.clear();
  o.Pool.clear();
  o.resetVar();
}

TRLCArray& TRLCArray::operator=(const TRLCArray& o) {
  if (this != &o) {
    TRLCArray copy(o);
    *this = std::move(copy);
  }
  return *this;
}

TRLCArray& TRLCArray::operator=(TRLCArray&& o) noexcept {
  if (this != &o) {
    FirstLine = o.FirstLine;
    LastLine = o.LastLine;
    FirstColumn = o.FirstColumn;
    LastColumn = o.LastColumn;
    Lines = std::move(o.Lines);  // the lines first: they may point into the old blocks
    Pool = std::move(o.Pool);
    o.Lines.clear();
    o.Pool.clear();
    o.resetVar();
    TimeStamp.set();
  }
  return *this;
}

TRLCArray& TRLCArray::operator=(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    calcRLC(list);
  }
  KX_CATCH
  return *this;
}

void TRLCArray::resetVar() {
  FirstLine = 0;
  LastLine = -1;
  FirstColumn = 0;
  LastColumn = -1;
}

void TRLCArray::freeVar() {
  std::vector<TRLCLine>().swap(Lines);
  std::vector<TRunBlock>().swap(Pool);
  resetVar();
}

void TRLCArray::vClear() {
  freeVar();
  TimeStamp.set();
}

void TRLCArray::_vMakeLines() {
  if (Lines.empty() && size() > 0) Lines.resize(static_cast<std::size_t>(size()));
}

// ---- access ----------------------------------------------------------------

TRLCLine& TRLCArray::operator[](int line) {
  if (size() <= 0 || line < FirstLine || line > LastLine)
    KX_THROW(ulRLCLineIndex, "Line=%d FirstLine=%d LastLine=%d", line, FirstLine, LastLine);
  _vMakeLines();
  return Lines[static_cast<std::size_t>(line - FirstLine)];
}

const TRLCLine& TRLCArray::operator[](int line) const {
  if (size() <= 0 || line < FirstLine || line > LastLine)
    KX_THROW(ulRLCLineIndexConst, "Line=%d FirstLine=%d LastLine=%d", line, FirstLine, LastLine);
  if (Lines.empty()) return emptyLine();
  return Lines[static_cast<std::size_t>(line - FirstLine)];
}

long TRLCArray::pixel() const {
  long n = 0;
  for (const TRLCLine& l : Lines) n += l.pixel();
  return n;
}

void TRLCArray::offset(int dx, int dy) {
  if (dx != 0)
    for (TRLCLine& l : Lines) l.offsetX(dx);
  FirstLine += dy;
  LastLine += dy;
  // FirstColumn and LastColumn stay: callers and-ing a moved mask rely on it.
  TimeStamp.set();
}

// ---- set operators ---------------------------------------------------------

void TRLCArray::_vCombine(const TRLCArray& other, bool bXor) {
  if (&other == this) {
    const TRLCArray copy(other);
    _vCombine(copy, bXor);
    return;
  }
  const int nFirst = std::min(FirstLine, other.FirstLine);
  const int nLast = std::max(LastLine, other.LastLine);
  const int nFirstColumn = std::min(FirstColumn, other.FirstColumn);
  const int nLastColumn = std::max(LastColumn, other.LastColumn);
  const int n = nLast - nFirst + 1;

  // No line gets more runs than its two operands have.
  std::size_t room = 0;
  for (const TRLCLine& l : Lines) room += static_cast<std::size_t>(l.getSize());
  for (const TRLCLine& l : other.Lines) room += static_cast<std::size_t>(l.getSize());
  TBuilder builder(n, room);
  auto& tmp = rlc::rScratch();
  auto op = [bXor](const TRLC* a, int na, bool an, const TRLC* b, int nb, bool bn, TRLC* o) {
    return bXor ? rlc::combineXor(a, na, an, b, nb, bn, o) : rlc::combineOr(a, na, an, b, nb, bn, o);
  };
  for (int y = nFirst; y <= nLast; ++y) {
    // The new line starts empty; the operator is applied with this array's
    // line, then with the other's, each where the line lies in its box.
    const TRLC* lb = nullptr;
    int ln = 0;
    bool lNormal = true;
    int mineSize = 0;
    if (y >= FirstLine && y <= LastLine && !Lines.empty()) {
      const TRLCLine& mine = Lines[static_cast<std::size_t>(y - FirstLine)];
      mineSize = mine.getSize();
      if (mine.bIsNormal()) {  // empty (op) a normal line is that line
        lb = mine.begin();
        ln = mineSize;
      } else {
        const auto r = op(nullptr, 0, true, mine.begin(), mineSize, false,
                          rlc::pRoom(tmp, static_cast<std::size_t>(mineSize)));
        lb = tmp.data();
        ln = r.count;
        lNormal = r.normal;
      }
    }
    const bool inOther = y >= other.FirstLine && y <= other.LastLine;
    const TRLCLine* theirs = inOther ? other._pLine(y) : nullptr;
    const int tn = theirs ? theirs->getSize() : 0;
    TRLC* o = builder.pRoom(static_cast<std::size_t>(mineSize + tn));
    rlc::TResult r{ln, lNormal};
    if (inOther && (tn > 0 || !lNormal)) {
      // (A normal line combined with an empty one would stay as it is.)
      r = op(lb, ln, lNormal, theirs ? theirs->begin() : nullptr, tn, theirs ? theirs->bIsNormal() : true, o);
    } else if (ln > 0) {
      std::memcpy(o, lb, static_cast<std::size_t>(ln) * sizeof(TRLC));
    }
    builder.vEndLine(r.count, r.normal ? TRLCLine::eNormal : TRLCLine::eUnknown);
  }
  // The lines read above belong to the old blocks: they go only now.
  builder.vFinish(*this, 0, n - 1);
  FirstLine = nFirst;
  LastLine = nLast;
  FirstColumn = nFirstColumn;
  LastColumn = nLastColumn;
  TimeStamp.set();
}

TRLCArray& TRLCArray::operator|=(const TRLCArray& other) {
  KX_TRY { _vCombine(other, false); }
  KX_CATCH
  return *this;
}

TRLCArray& TRLCArray::operator^=(const TRLCArray& other) {
  KX_TRY { _vCombine(other, true); }
  KX_CATCH
  return *this;
}

TRLCArray& TRLCArray::operator&=(const TRLCArray& other) {
  KX_TRY {
    if (&other == this) {
      const TRLCArray copy(other);
      return *this &= copy;
    }
    const int first = std::max(FirstLine, other.FirstLine);
    const int last = std::min(LastLine, other.LastLine);
    if (first > last) {
      freeVar();
      TimeStamp.set();
      return *this;
    }
    std::size_t room = 0;
    for (int y = first; y <= last; ++y) {
      const TRLCLine* mine = _pLine(y);
      const TRLCLine* theirs = other._pLine(y);
      if (mine && theirs)
        room += rlc::uIntersectRoom(mine->getSize(), mine->bIsNormal(), theirs->getSize(), theirs->bIsNormal());
    }
    TBuilder builder(last - first + 1, room);
    int top = -1, bottom = -1;  // first and last index with runs
    for (int y = first; y <= last; ++y) {
      const TRLCLine* mine = _pLine(y);
      const TRLCLine* theirs = other._pLine(y);
      rlc::TResult r{0, true};
      if (mine && theirs && mine->getSize() > 0 && theirs->getSize() > 0) {
        TRLC* o = builder.pRoom(
            rlc::uIntersectRoom(mine->getSize(), mine->bIsNormal(), theirs->getSize(), theirs->bIsNormal()));
        r = rlc::intersect(mine->begin(), mine->getSize(), mine->bIsNormal(), theirs->begin(), theirs->getSize(),
                           theirs->bIsNormal(), o);
      }
      if (r.count > 0) {
        if (top < 0) top = y - first;
        bottom = y - first;
      }
      builder.vEndLine(r.count, r.normal ? TRLCLine::eNormal : TRLCLine::eUnknown);
    }
    if (top < 0) {
      freeVar();
      TimeStamp.set();
      return *this;
    }
    // Empty lines go at the top and the bottom; those inside stay.
    builder.vFinish(*this, top, bottom);
    FirstLine = first + top;
    LastLine = first + bottom;
    // Starting from +-32767 as this system always has: boxes of columns
    // beyond that are not tight. Kept as it is.
    int fc = 32767, lc = -32767;
    for (const TRLCLine& l : Lines) {
      if (l.getSize() == 0) continue;
      fc = std::min(fc, l.begin()[0].FirstColumn);
      lc = std::max(lc, l.end()[-1].LastColumn);
    }
    FirstColumn = fc;
    LastColumn = lc;
    TimeStamp.set();
  }
  KX_CATCH
  return *this;
}

// ---- rasterisers -----------------------------------------------------------

void TRLCArray::calcRLC(const TOPointList<int>& list) {
  KX_TRY {
    switch (list.eGetTyp()) {
      case ePoint:
        calcRLCPoint(list);
        break;
      case eSquare:
      case eRectangle:
        calcRLCRect(list);
        break;
      case eParallelogram:
      case eHTrapezium:
      case eVTrapezium:
      case ePolygon:
        calcRLCPolygon(list);
        break;
      case eCircle:
        calcRLCCircle(list);
        break;
      case eLine:
        calcRLCLine(list);
        break;
      case ePolyline:
        calcRLCPolyline(list);
        break;
      default:  // ellipse, groups, unknown numbers
        freeVar();
        TimeStamp.set();
        KX_THROW(ulRLCTypeNotImplemented, "%s", sTypeNotImplemented());
    }
  }
  KX_CATCH
}

// The box is set: gives each line of it the one run `runOf(y)` (first <= last).
template <class F>
void TRLCArray::_vOneRunPerLine(F&& runOf) {
  const int n = size();
  TBuilder b(n, static_cast<std::size_t>(n));
  for (int y = FirstLine; y <= LastLine; ++y) {
    *b.pRoom(1) = runOf(y);
    b.vEndLine(1, TRLCLine::eNormal);
  }
  b.vFinish(*this, 0, n - 1);
}

void TRLCArray::calcRLCPoint(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    if (list.size() != 1) KX_THROW(ulRLCPointCount, "%s", sPointCount());
    checkPoints(list, 1);
    const TOPoint<int>& p = list[0];
    FirstLine = LastLine = p.y;
    FirstColumn = LastColumn = p.x;
    _vOneRunPerLine([&](int) { return TRLC(p.x, p.x); });
  }
  KX_CATCH
}

void TRLCArray::calcRLCRect(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    checkPoints(list, 4);
    int y0 = list[0].y, y1 = list[3].y, x0 = list[0].x, x1 = list[1].x;
    // A rectangle is stored normalised; one that is not is taken as if it were.
    if (y1 < y0) std::swap(y0, y1);
    if (x1 < x0) std::swap(x0, x1);
    FirstLine = y0;
    LastLine = y1;
    FirstColumn = x0;
    LastColumn = x1;
    _vOneRunPerLine([&](int) { return TRLC(x0, x1); });
  }
  KX_CATCH
}

void TRLCArray::calcRLCCircle(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    checkPoints(list, 2);
    const TOPoint<int>& c = list[0];
    // The radius is the x distance only, whatever the y distance is.
    const TCircle<int> circle(c.x, c.y, std::abs(list[1].x - c.x));
    FirstLine = circle.getMinY();
    LastLine = circle.getMaxY();
    FirstColumn = circle.getMinX();
    LastColumn = circle.getMaxX();
    _vOneRunPerLine([&](int y) { return TRLC(circle.getLeftBorder(y), circle.getRightBorder(y)); });
  }
  KX_CATCH
}

void TRLCArray::calcRLCLine(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    checkPoints(list, 2);
    TOPoint<int> p0 = list[0], p1 = list[1];
    if (p0.y > p1.y) std::swap(p0, p1);
    FirstLine = p0.y;
    LastLine = p1.y;
    FirstColumn = std::min(p0.x, p1.x);
    LastColumn = std::max(p0.x, p1.x);
    const int n = size();
    const int dx = p1.x - p0.x, dy = p1.y - p0.y;
    if (n == 1) {
      _vOneRunPerLine([&](int) { return TRLC(FirstColumn, LastColumn); });
    } else if (dx == 0) {
      _vOneRunPerLine([&](int) { return TRLC(p0.x, p0.x); });
    } else if (std::abs(dx) < dy) {  // steep: one pixel per line
      _vOneRunPerLine([&](int y) {
        const int x = kx::platform::MulDiv(y - FirstLine, dx, dy) + p0.x;
        return TRLC(x, x);
      });
    } else {  // flat: each line gets the columns of its step
      const double step = static_cast<double>(std::abs(dx)) / static_cast<double>(dy);
      const double slope = static_cast<double>(p0.x - p1.x) / static_cast<double>(p0.y - p1.y);
      _vOneRunPerLine([&](int y) {
        const int i = y - FirstLine;
        if (i == 0) return p0.x >= p1.x ? TRLC(cut(p0.x - step / 2), p0.x) : TRLC(p0.x, cut(p0.x + step / 2));
        if (i == n - 1) return p0.x >= p1.x ? TRLC(p1.x, cut(p1.x + step / 2)) : TRLC(cut(p1.x - step / 2), p1.x);
        const double xm = i * slope + p0.x;
        return TRLC(cut(xm - step / 2), cut(xm + step / 2));
      });
    }
  }
  KX_CATCH
}

void TRLCArray::calcRLCPolyline(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    checkPoints(list, 2);
    for (int i = 0; i + 1 < list.size(); ++i) {
      const TOPointList<int> segment(eLine, {list[i], list[i + 1]});
      TRLCArray part;
      part.calcRLCLine(segment);
      if (i == 0) {
        *this = std::move(part);
      } else {
        *this |= part;
      }
    }
  }
  KX_CATCH
}

void TRLCArray::calcRLCPolygon(const TOPointList<int>& list) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    checkPoints(list, 1);
    int minX = list[0].x, maxX = minX, minY = list[0].y, maxY = minY;
    for (int i = 1; i < list.size(); ++i) {
      minX = std::min(minX, list[i].x);
      maxX = std::max(maxX, list[i].x);
      minY = std::min(minY, list[i].y);
      maxY = std::max(maxY, list[i].y);
    }
    FirstLine = minY;
    LastLine = maxY;
    FirstColumn = minX;
    LastColumn = maxX;
    std::vector<TLinePoint> points;
    std::vector<int> lineStart;
    getLinePoints(list, points, lineStart);
    if (points.empty()) return;  // the box stays, with no line objects
    sortLinePoints(points, lineStart);
    calcRuns(points, lineStart);
  }
  KX_CATCH
}

// An edge crosses line y when upper.y + 1 <= y <= lower.y: it owns its lower
// end and not its upper one, and a horizontal edge crosses nothing. The
// crossings of line y are those of the edges in their order; lineStart[i] is
// the index of the first crossing of line FirstLine + i (one entry more than
// lines).
void TRLCArray::getLinePoints(const TOPointList<int>& list, std::vector<TLinePoint>& points,
                              std::vector<int>& lineStart) const {
  const int nPoints = list.size();
  const int nLines = size();
  struct TEdge {
    TOPoint<int> upper, lower;
  };
  std::vector<TEdge> edges;
  edges.reserve(static_cast<std::size_t>(nPoints));
  int64_t maxSize = 0;
  for (int i = 0; i < nPoints; ++i) {
    TOPoint<int> a = list[i], b = list[(i + 1) % nPoints];
    maxSize += std::max(std::abs(b.x - a.x), std::abs(b.y - a.y)) + 1;
    if (b.y < a.y) std::swap(a, b);  // at equal y the edge's own order stays
    edges.push_back({a, b});
  }
  // Crossings per line, by a difference array over the lines.
  std::vector<int64_t> count(static_cast<std::size_t>(nLines) + 1, 0);
  for (const TEdge& e : edges) {
    if (e.lower.y <= e.upper.y) continue;
    count[static_cast<std::size_t>(e.upper.y + 1 - FirstLine)] += 1;
    count[static_cast<std::size_t>(e.lower.y + 1 - FirstLine)] -= 1;
  }
  lineStart.assign(static_cast<std::size_t>(nLines) + 1, 0);
  int64_t running = 0, total = 0;
  for (int i = 0; i < nLines; ++i) {
    running += count[static_cast<std::size_t>(i)];
    lineStart[static_cast<std::size_t>(i)] = static_cast<int>(total);
    total += running;
    if (total > maxSize || total > INT32_MAX)
      KX_THROW(ulRLCPolygonCheck, "Size<=MaxSize (Size=%lld MaxSize=%lld)", static_cast<long long>(total),
               static_cast<long long>(maxSize));
  }
  lineStart[static_cast<std::size_t>(nLines)] = static_cast<int>(total);
  points.resize(static_cast<std::size_t>(total));
  std::vector<int> fill(lineStart.begin(), lineStart.end() - 1);
  for (const TEdge& e : edges) {
    const int dy = e.lower.y - e.upper.y;
    if (dy <= 0) continue;
    const int dx = e.lower.x - e.upper.x;
    for (int y = e.upper.y + 1; y <= e.lower.y; ++y) {
      const int x = kx::platform::MulDiv(y - e.upper.y, dx, dy) + e.upper.x;
      if (y < FirstLine || y > LastLine || x < FirstColumn || x > LastColumn)
        KX_THROW(ulRLCPolygonCheck, "y>=FirstLine, y<=LastLine, x>=FirstColumn, x<=LastColumn (x=%d y=%d)", x,
                 y);
      points[static_cast<std::size_t>(fill[static_cast<std::size_t>(y - FirstLine)]++)] = {x, y};
    }
  }
}

void TRLCArray::sortLinePoints(std::vector<TLinePoint>& points, const std::vector<int>& lineStart) {
  for (std::size_t i = 0; i + 1 < lineStart.size(); ++i) {
    TLinePoint* b = points.data() + lineStart[i];
    TLinePoint* e = points.data() + lineStart[i + 1];
    std::sort(b, e, [](const TLinePoint& p, const TLinePoint& q) { return p.x < q.x; });
  }
}

// Pairs the sorted crossings of each line into runs (even-odd filling: an odd
// last crossing is dropped) and merges them. Every line gets a line object.
void TRLCArray::calcRuns(const std::vector<TLinePoint>& points, const std::vector<int>& lineStart) {
  TBuilder b(size(), points.size() / 2);
  for (int i = 0; i < size(); ++i) {
    const int first = lineStart[static_cast<std::size_t>(i)];
    const int k = (lineStart[static_cast<std::size_t>(i) + 1] - first) / 2;
    TRLC* o = b.pRoom(static_cast<std::size_t>(k));
    for (int j = 0; j < k; ++j)
      o[j] = TRLC(points[static_cast<std::size_t>(first + 2 * j)].x, points[static_cast<std::size_t>(first + 2 * j + 1)].x);
    // Sorted crossings make well-formed sorted pairs: merged, they are normal.
    b.vEndLine(TRLCLine::merge_OR_RLC(k, o), TRLCLine::eNormal);
  }
  b.vFinish(*this, 0, size() - 1);
}

// ---- text file -------------------------------------------------------------

void TRLCArray::write(const char* file) const {
  KX_TRY {
    std::string text;
    text.reserve(64 + Lines.size() * 16);
    char buf[24];
    auto put = [&](long long v) {
      const int n = std::snprintf(buf, sizeof buf, "%lld\r\n", v);
      text.append(buf, static_cast<std::size_t>(n));
    };
    put(FirstLine);
    put(LastLine);
    put(FirstColumn);
    put(LastColumn);
    for (int y = FirstLine; y <= LastLine; ++y) {
      const TRLCLine* l = _pLine(y);
      put(l ? l->getSize() : 0);
      if (!l) continue;
      for (const TRLC& r : *l) {
        put(r.FirstColumn);
        put(r.LastColumn);
      }
    }
    const std::string path = systemPath(file);
    std::string why;
    if (!kx::platform::writeFileAtomic(path, text, &why)) {
      const unsigned long code = KX_ERROR(ulRLCWrite, sCannotWrite(), path.c_str());
      kx::trace(KX_FILE, __LINE__, "%s", why.c_str());
      throw code;
    }
  }
  KX_CATCH
}

void TRLCArray::read(const char* file) {
  KX_TRY {
    freeVar();
    TimeStamp.set();
    const std::string path = systemPath(file);
    std::string text;
    {
      FilePtr f(std::fopen(path.c_str(), "rb"));
      if (!f) KX_THROW(ulRLCRead, sCannotRead(), path.c_str());
      char buf[65536];
      std::size_t n;
      while ((n = std::fread(buf, 1, sizeof buf, f.get())) > 0) text.append(buf, n);
      if (std::ferror(f.get())) KX_THROW(ulRLCRead, sCannotRead(), path.c_str());
    }
    TNumberReader in(text, path.c_str());
    const int fl = in.next("FirstLine");
    const int ll = in.next("LastLine");
    const int fc = in.next("FirstColumn");
    const int lc = in.next("LastColumn");
    const int64_t nLines = static_cast<int64_t>(ll) - fl + 1;
    // Each line needs at least its count and a separator.
    if (nLines < 0 || static_cast<uint64_t>(nLines) > in.remaining() / 2 + 1)
      in.fail(sDoesNotFit, "LastLine");
    TBuilder b(static_cast<int>(nLines), in.remaining() / 4 + 1);
    for (int64_t i = 0; i < nLines; ++i) {
      const int count = in.next("Count");
      // Each run needs two numbers and two separators.
      if (count < 0 || static_cast<uint64_t>(count) > in.remaining() / 4 + 1)
        in.fail(sDoesNotFit, "Count");
      TRLC* r = b.pRoom(static_cast<std::size_t>(count));
      for (int k = 0; k < count; ++k) {
        r[k].FirstColumn = in.next("Column");
        r[k].LastColumn = in.next("Column");
        if (r[k].LastColumn < r[k].FirstColumn) in.fail(sBackwards, "");
      }
      b.vEndLine(count, TRLCLine::eUnknown);
    }
    in.expectEnd();
    if (nLines > 0) b.vFinish(*this, 0, static_cast<int>(nLines) - 1);
    FirstLine = fl;
    LastLine = ll;
    FirstColumn = fc;
    LastColumn = lc;
    TimeStamp.set();
  }
  KX_CATCH
}
