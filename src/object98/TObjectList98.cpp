#include "object98/TObjectList98.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <mutex>
#include <set>
#include <sstream>

#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"
#include "platform/AtomicFile.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPlaneBasic.h"

using namespace object98;

namespace {

const TLanguage::TLanguageString sIndex("Index=%d >= Size=%d", "Index=%d >= Size=%d");
const TLanguage::TLanguageString sWrongType("Falscher Dateityp: %s", "Wrong file type: %s");
const TLanguage::TLanguageString sCannotRead("Datei %s kann nicht gelesen werden", "Can not read file %s");
const TLanguage::TLanguageString sCannotWrite("Datei %s kann nicht geschrieben werden", "Can not write file %s");
const TLanguage::TLanguageString sTableHead(
    "Nr\t\"Name\"\tTyp\tVater\tZahl der Punkte oder Söhne\tPunkte x y oder Söhne\r\n",
    "No\t\"Name\"\tType\tVather\tNumber of points or sons\tPoints x y or sons\r\n");

std::mutex& registryMutex() {
  static std::mutex m;
  return m;
}
std::set<const TObjectList98*>& registry() {
  static std::set<const TObjectList98*> s;
  return s;
}

const char* cpClipboardFormat = "TObjectList98";

}  // namespace

// ---------------------------------------------------------------- flags

bool TOFlagList::selectObject(int i) {
  if (Words[i] & 0x2000440u) return false;
  vSetFlags(i, Words[i] | fSelected);
  return true;
}
void TOFlagList::unselectObject(int i) { vSetFlags(i, Words[i] & ~static_cast<unsigned>(fSelected)); }
void TOFlagList::selectAll() {
  for (int i = 0; i < size(); ++i) selectObject(i);
}
void TOFlagList::unselectAll() {
  for (int i = 0; i < size(); ++i) unselectObject(i);
}
int TOFlagList::countSelObjects() const {
  int n = 0;
  for (int i = 0; i < size(); ++i) n += isSelected(i);
  return n;
}
int TOFlagList::iGetFirstSelected() const { return iGetNextSelected(-1); }
int TOFlagList::iGetNextSelected(int after) const {
  for (int i = std::max(after + 1, 0); i < size(); ++i)
    if (isSelected(i)) return i;
  return -1;
}
void TOFlagList::vSetDrawLines(int, bool) {
  KX_TRY { KX_THROW(ulFlagNotImplemented, "vSetDrawLines nicht implementiert / not implemented"); }
  KX_CATCH
}
bool TOFlagList::bGetDrawLines(int) const {
  KX_TRY { KX_THROW(ulFlagNotImplemented, "bGetDrawLines nicht implementiert / not implemented"); }
  KX_CATCH
}
void TOFlagList::vSetDrawCorners(int, bool) {
  KX_TRY { KX_THROW(ulFlagNotImplemented, "vSetDrawCorners nicht implementiert / not implemented"); }
  KX_CATCH
}
bool TOFlagList::bGetDrawCorners(int) const {
  KX_TRY { KX_THROW(ulFlagNotImplemented, "bGetDrawCorners nicht implementiert / not implemented"); }
  KX_CATCH
}
void TOFlagList::vSetFlags(int i, unsigned word) {
  KX_TRY {
    const unsigned old = Words[i];
    Words[i] = word;
    const unsigned changed = old ^ word;
    if (changed & 0xff000000u) vSendMessage(2, static_cast<unsigned long>(i));
    if (changed & 0x00fffffeu) vSendMessage(1, static_cast<unsigned long>(i));
    if (changed & 1u) vSendMessage(3, static_cast<unsigned long>(i));
  }
  KX_CATCH
}

// ---------------------------------------------------------------- life

TObjectList98::TObjectList98(int initialCapacity)
    : Points(initialCapacity), Relations(initialCapacity), Flags(initialCapacity), Signatures(initialCapacity),
      Regions(initialCapacity) {
  _connect();
}

TObjectList98::TObjectList98(const TObjectList98& o)
    : TDelivery(o), Points(o.Points), Relations(o.Relations), Flags(o.Flags), Signatures(o.Signatures),
      Names(o.Names), Labels(o.Labels), Regions(o.Regions), Format(o.Format), bMessages(o.bMessages),
      saved_(o.saved_) {
  Flags.StandardFlag = o.Flags.StandardFlag;
  _connect();
}

TObjectList98& TObjectList98::operator=(const TObjectList98& o) {
  if (this == &o) return *this;
  TDelivery::operator=(o);
  Points.rGetLists() = o.Points.rGetLists();
  Relations = o.Relations;
  Flags.rGetWords() = o.Flags.rGetWords();
  Flags.StandardFlag = o.Flags.StandardFlag;
  Signatures = o.Signatures;
  Names = o.Names;
  Labels = o.Labels;
  Regions = o.Regions;
  saved_ = o.saved_;
  return *this;
}

TObjectList98::~TObjectList98() {
  std::lock_guard<std::mutex> g(registryMutex());
  registry().erase(this);
}

void TObjectList98::_connect() {
  vConnectSender(&Points);
  vConnectSender(&Relations);
  vConnectSender(&Flags);
  std::lock_guard<std::mutex> g(registryMutex());
  registry().insert(this);
}

bool TObjectList98::bIsValid(const TObjectList98* list) {
  std::lock_guard<std::mutex> g(registryMutex());
  return list && registry().count(list) != 0;
}

bool TObjectList98::bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) {
  if (sender == &Points || sender == &Relations || sender == &Flags) {
    TDelivery::vSetTimeStamp();  // the tree or the flags changed
    if (bMessages) vSendMessage(a, b);
    return true;
  }
  return TDelivery::bReceiveMessage(sender, a, b);
}

void TObjectList98::_send(unsigned long code, unsigned long arg) {
  if (bMessages) vSendMessage(code, arg);
}

void TObjectList98::_check(int i) const {
  if (i < 0 || i >= size()) KX_THROW(ulObjectIndex, sIndex(), i, size());
}

// ---------------------------------------------------------------- access

TOPointList<int>& TObjectList98::operator[](int i) {
  KX_TRY {
    _check(i);
    return Points[i];
  }
  KX_CATCH
}
const TOPointList<int>& TObjectList98::operator[](int i) const {
  KX_TRY {
    _check(i);
    return Points[i];
  }
  KX_CATCH
}
TRLCArray& TObjectList98::rGetRLCArray(int i) {
  KX_TRY {
    _check(i);
    return Regions[i];
  }
  KX_CATCH
}
TSignatur& TObjectList98::rGetSignatur(int i) {
  KX_TRY {
    _check(i);
    return Signatures[i];
  }
  KX_CATCH
}
bool TObjectList98::bIsGroup(int i) const {
  KX_TRY {
    _check(i);
    const TOPL_Typ t = Points[i].eGetTyp();
    return t == eOrGroup || t == eXorGroup || t == eAndGroup;
  }
  KX_CATCH
}
std::unique_ptr<bool[]> TObjectList98::getDescendants(int i) const {
  KX_TRY {
    _check(i);
    return Relations.getDescendants(i);
  }
  KX_CATCH
}

Rastrix::TPlane<unsigned char>& TObjectList98::rGetLabelPic(const Rastrix::TPlaneBasic* picture, int i, bool alloc,
                                                            bool clear) {
  KX_TRY {
    _check(i);
    int x0, x1, y0, y1;
    Points[i].Extent(x0, x1, y0, y1);
    return Labels.rGetLabelPic(reinterpret_cast<unsigned long>(picture), i, alloc, clear, CRectangle(y0, y1, x0, x1));
  }
  KX_CATCH
}

TKlassifikator2Color& TObjectList98::rGetClassColor(const Rastrix::TPlaneBasic* picture, int i) {
  return Labels.rGetClassColor(reinterpret_cast<unsigned long>(picture), i);
}

// ---------------------------------------------------------------- insert, erase

int TObjectList98::append(const TOPointList<int>& list) {
  KX_TRY {
    Points.rGetLists().append(list);
    Relations.append(-1);
    Signatures.append(TSignatur());
    Regions.append(TRLCArray());
    Flags.rGetWords().append(Flags.StandardFlag);
    Names.emplace_back();
    Labels.vAppendNewRegion();
    const int n = size() - 1;
    setTimeStamp(n);
    _send(4, static_cast<unsigned long>(n));
    return n;
  }
  KX_CATCH
}

void TObjectList98::_eraseOne(int i) {
  Relations.erase(i);
  Points.rGetLists().erase(i);
  Signatures.erase(i);
  Regions.erase(i);
  Flags.rGetWords().erase(i);
  Names.erase(Names.begin() + i);
  Labels.vDeleteRegion(i);
}

void TObjectList98::erase(int i, bool withDescendants) {
  KX_TRY {
    _check(i);
    int father = Relations.getVather(i);
    const bool saved = bMessages;
    if (withDescendants) {
      std::vector<int> gone = Relations.vGetDescendants(i);
      gone.push_back(i);
      std::sort(gone.rbegin(), gone.rend());
      bMessages = false;
      for (int k : gone) {
        _eraseOne(k);
        if (father > k) --father;
      }
      bMessages = saved;
      if (father >= 0 && father < size()) childHasMoved(father);
      setAllTimeStamp();
      _send(6, 0);
      return;
    }
    const bool sons = Relations.hasSon(i);
    if (sons) vSetSonsTimeStamp(i);
    bMessages = false;
    _eraseOne(i);
    bMessages = saved;
    _send(5, static_cast<unsigned long>(i));
    if (father > i) --father;
    if (father >= 0) childHasMoved(father);
    if (sons) _send(6, 0);
    TDelivery::vSetTimeStamp();
  }
  KX_CATCH
}

void TObjectList98::clear() {
  if (size() == 0) return;
  Points.rGetLists().clear();
  Relations.clear();
  Flags.rGetWords().clear();
  Signatures.clear();
  Names.clear();
  Regions.clear();
  Labels.vResize(0);
  TDelivery::vSetTimeStamp();
  _send(1, 0);
}

// ---------------------------------------------------------------- time stamps

const Process::TTimeStamp& TObjectList98::getTimeStamp(int i) const {
  KX_TRY {
    _check(i);
    return Points[i].rGetTimeStamp();
  }
  KX_CATCH
}

void TObjectList98::setTimeStamp(int i) {
  KX_TRY {
    _check(i);
    Points[i].vSetTimeStamp();
    for (int f = Relations.getVather(i), steps = 0; f >= 0 && steps < size(); f = Relations.getVather(f), ++steps)
      Points[f].vSetTimeStamp();
    TDelivery::vSetTimeStamp();
  }
  KX_CATCH
}

void TObjectList98::setAllTimeStamp() {
  for (int i = 0; i < size(); ++i) Points[i].vSetTimeStamp();
  TDelivery::vSetTimeStamp();
}

Process::TTimeStamp TObjectList98::getAllPicTimeStamp(const Rastrix::TPlaneBasic* picture) const {
  Process::TTimeStamp t = rGetTimeStamp();
  if (picture && picture->rGetTimeStamp() > t) t = picture->rGetTimeStamp();
  return t;
}

void TObjectList98::vSetSonsTimeStamp(int i) {
  KX_TRY {
    for (int s : Relations.vGetSons(i)) Points[s].vSetTimeStamp();
    TDelivery::vSetTimeStamp();
  }
  KX_CATCH
}

// ---------------------------------------------------------------- regions

const TRLCArray& TObjectList98::rGetRegion(int i) {
  KX_TRY {
    _check(i);
    TRLCArray& cached = Regions[i];
    if (!(cached.rGetTimeStamp() < getTimeStamp(i))) return cached;
    TRLCArray fresh;
    if (bIsGroup(i))
      _calcGroup(i, fresh);
    else
      fresh.calcRLC(Points[i]);
    cached = std::move(fresh);
    cached.vSetTimeStamp();
    return cached;
  }
  KX_CATCH
}

void TObjectList98::_calcGroup(int i, TRLCArray& out) {
  const TOPL_Typ t = Points[i].eGetTyp();
  bool first = true;
  for (int s : Relations.vGetSons(i)) {
    if (Flags[s] & TOFlagList::fNotInGroup) continue;
    const TRLCArray& r = rGetRegion(s);
    if (first)
      out = r;
    else if (t == eOrGroup)
      out |= r;
    else if (t == eXorGroup)
      out ^= r;
    else
      out &= r;
    first = false;
  }
}

void TRLCArray::assign(const TObjectList98* list, unsigned index) {
  KX_TRY {
    if (!TObjectList98::bIsValid(list)) KX_THROW(ulObjectIndex, "Objektliste ungültig / object list not valid");
    *this = const_cast<TObjectList98*>(list)->rGetRegion(static_cast<int>(index));
  }
  KX_CATCH
}

void TRLCArray::calcRLC_OR_Group(const TObjectList98* list, unsigned index) { assign(list, index); }
void TRLCArray::calcRLC_XOR_Group(const TObjectList98* list, unsigned index) { assign(list, index); }
void TRLCArray::calcRLC_AND_Group(const TObjectList98* list, unsigned index) { assign(list, index); }

void TObjectList98::vGetSelectedRLC(TRLCArray& out) {
  KX_TRY {
    TRLCArray acc;
    for (int i = Flags.iGetFirstSelected(); i >= 0; i = Flags.iGetNextSelected(i)) acc |= rGetRegion(i);
    out = std::move(acc);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- groups

TOPointList<int> TObjectList98::borderSelected() const {
  int x0 = INT_MAX, x1 = INT_MIN, y0 = INT_MAX, y1 = INT_MIN;
  for (int i = Flags.iGetFirstSelected(); i >= 0; i = Flags.iGetNextSelected(i)) {
    int a, b, c, d;
    Points[i].Extent(a, b, c, d);
    if (b < a || d < c) continue;
    x0 = std::min(x0, a), x1 = std::max(x1, b), y0 = std::min(y0, c), y1 = std::max(y1, d);
  }
  TOPointList<int> out(eRectangle);
  if (x0 > x1) return out;
  out.append(x0, y0), out.append(x1, y0), out.append(x1, y1), out.append(x0, y1);
  return out;
}

void TObjectList98::childHasMoved(int group) {
  KX_TRY {
    for (int g = group, steps = 0; g >= 0 && steps <= size(); g = Relations.getVather(g), ++steps) {
      _check(g);
      if (!bIsGroup(g)) continue;
      int x0 = INT_MAX, x1 = INT_MIN, y0 = INT_MAX, y1 = INT_MIN;
      for (int s : Relations.vGetSons(g)) {
        int a, b, c, d;
        Points[s].Extent(a, b, c, d);
        if (b < a || d < c) continue;
        x0 = std::min(x0, a), x1 = std::max(x1, b), y0 = std::min(y0, c), y1 = std::max(y1, d);
      }
      if (x0 > x1) continue;  // no sons: the border stays
      TOPointList<int>& p = Points[g];
      p.clear();
      p.append(x0, y0), p.append(x1, y0), p.append(x1, y1), p.append(x0, y1);
      setTimeStamp(g);
      _send(4, static_cast<unsigned long>(g));
    }
  }
  KX_CATCH
}

void TObjectList98::vCreateGroup(TOPL_Typ typ) {
  KX_TRY {
    if (typ != eOrGroup && typ != eXorGroup && typ != eAndGroup)
      KX_THROW(ulObjectSetTyp, "Typ %d kann nicht gesetzt werden / Can not set type %d", typ, typ);
    std::vector<int> selected;
    for (int i = Flags.iGetFirstSelected(); i >= 0; i = Flags.iGetNextSelected(i)) selected.push_back(i);
    if (selected.empty()) return;
    const bool saved = bMessages;
    bMessages = false;
    TOPointList<int> border = borderSelected();
    border.vSetTyp(typ);
    const int g = append(border);
    for (int s : selected) {
      const int f = Relations.getVather(s);
      if (f >= 0 && Flags.isSelected(f)) continue;  // goes with its selected father
      Relations.setVather(s, g);
      Flags.unselectObject(s);
    }
    for (int s : selected) Flags.unselectObject(s);
    Flags.selectObject(g);
    bMessages = saved;
    setAllTimeStamp();
    _send(4, static_cast<unsigned long>(g));
    for (int s : selected) _send(4, static_cast<unsigned long>(s));
    _send(6, 0);
  }
  KX_CATCH
}

int TObjectList98::vCopyTree(int i, TObjectList98& other) const {
  KX_TRY {
    _check(i);
    std::vector<int> tree = Relations.vGetDescendants(i);
    tree.push_back(i);
    std::sort(tree.begin(), tree.end());
    // Copy first (the source may be the target), then append.
    std::vector<TOPointList<int>> lists;
    std::vector<unsigned> flags;
    std::vector<std::string> names;
    std::vector<int> fathers;
    for (int k : tree) {
      lists.push_back(Points[k]);
      flags.push_back(Flags[k] & ~static_cast<unsigned>(TOFlagList::fSelected));
      names.push_back(Names[static_cast<std::size_t>(k)]);
      const int f = Relations.getVather(k);
      const auto at = std::find(tree.begin(), tree.end(), f);
      fathers.push_back(k == i || at == tree.end() ? -1 : static_cast<int>(at - tree.begin()));
    }
    const bool saved = other.bMessages;
    other.bMessages = false;
    const int base = other.size();
    for (std::size_t k = 0; k < tree.size(); ++k) {
      other.append(lists[k]);
      other.Flags.rGetWords()[base + static_cast<int>(k)] = flags[k];
      other.Names[static_cast<std::size_t>(base) + k] = names[k];
    }
    for (std::size_t k = 0; k < tree.size(); ++k)
      if (fathers[k] >= 0) other.Relations.setVather(base + static_cast<int>(k), base + fathers[k]);
    other.bMessages = saved;
    other.setAllTimeStamp();
    other._send(6, 0);
    return base + static_cast<int>(std::find(tree.begin(), tree.end(), i) - tree.begin());
  }
  KX_CATCH
}

void TObjectList98::vCopySelected2Other(TObjectList98& other) const {
  KX_TRY {
    std::vector<int> roots;
    for (int i = Flags.iGetFirstSelected(); i >= 0; i = Flags.iGetNextSelected(i)) {
      bool ancestorSelected = false;
      for (int f = Relations.getVather(i), steps = 0; f >= 0 && steps < size(); f = Relations.getVather(f), ++steps)
        ancestorSelected = ancestorSelected || Flags.isSelected(f);
      if (!ancestorSelected) roots.push_back(i);
    }
    if (&other == this) {
      const TObjectList98 copy(*this);
      for (int r : roots) copy.vCopyTree(r, other);
    } else {
      for (int r : roots) vCopyTree(r, other);
    }
  }
  KX_CATCH
}

TObjectList98& TObjectList98::operator+=(const TObjectList98& o) {
  KX_TRY {
    const TObjectList98 add(o);  // o may be this list
    const int base = size();
    for (int k = 0; k < add.size(); ++k) {
      Points.rGetLists().append(add.Points[k]);
      Signatures.append(add.Signatures[k]);
      Regions.append(TRLCArray());
      Flags.rGetWords().append(add.Flags[k]);
      Names.push_back(add.Names[static_cast<std::size_t>(k)]);
    }
    Relations += add.Relations;
    Labels.vAppendFrom(add.Labels);
    for (int k = base; k < size(); ++k) Points[k].vSetTimeStamp();
    TDelivery::vSetTimeStamp();
    _send(1, 0);
    return *this;
  }
  KX_CATCH
}

void TObjectList98::vReduceIndexFromTo(int from, int to) {
  KX_TRY {
    _check(from);
    _check(to);
    Relations.vReduceIndexFromTo(from, to);
    Points.rGetLists().vMove(from, to);
    Signatures.vMove(from, to);
    Regions.vMove(from, to);
    Flags.rGetWords().vMove(from, to);
    std::rotate(Names.begin() + to, Names.begin() + from, Names.begin() + from + 1);
    Labels.vReduceIndexFromTo(from, to);
    TDelivery::vSetTimeStamp();
    _send(6, 0);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- transformations

void TObjectList98::_moveTree(int i, int dx, int dy) {
  if (bIsGroup(i)) {
    for (int s : Relations.vGetSons(i)) _moveTree(s, dx, dy);
    return;
  }
  TOPointList<int>& p = Points[i];
  for (int k = 0; k < p.size(); ++k) p[k] = TOPoint<int>(p[k].x + dx, p[k].y + dy);
  setTimeStamp(i);
  _send(4, static_cast<unsigned long>(i));
}

void TObjectList98::_vBordersAfter(int i) {
  // Groups inside the tree, deepest first, then upwards from i.
  std::vector<int> inner = Relations.vGetDescendants(i);
  std::sort(inner.begin(), inner.end(), [&](int a, int b) { return Relations.isAncestor(b, a); });
  for (int g : inner)
    if (bIsGroup(g)) childHasMoved(g);
  if (bIsGroup(i))
    childHasMoved(i);
  else if (Relations.hasVather(i))
    childHasMoved(Relations.getVather(i));
}

void TObjectList98::move(int i, int dx, int dy) {
  KX_TRY {
    _check(i);
    _moveTree(i, dx, dy);
    _vBordersAfter(i);
  }
  KX_CATCH
}

void TObjectList98::vMoveSelected(int dx, int dy) {
  KX_TRY {
    for (int i = Flags.iGetFirstSelected(); i >= 0; i = Flags.iGetNextSelected(i)) move(i, dx, dy);
  }
  KX_CATCH
}

void TObjectList98::_rotateOne(int i, int x, int y, double c, double s) {
  if (bIsGroup(i)) {
    for (int son : Relations.vGetSons(i)) _rotateOne(son, x, y, c, s);
    return;
  }
  TOPointList<int>& p = Points[i];
  for (int k = 0; k < p.size(); ++k) {
    const double dx = p[k].x - x, dy = p[k].y - y;
    const int rx = static_cast<int>(s * dy + c * dx), ry = static_cast<int>(s * dx - c * dy);
    p[k] = TOPoint<int>(x + rx, y - ry);
  }
  const TOPL_Typ t = p.eGetTyp();
  auto axisRectangle = [&] {
    if (p.size() != 4) return false;
    int xs[4], ys[4];
    for (int k = 0; k < 4; ++k) xs[k] = p[k].x, ys[k] = p[k].y;
    for (int k = 0; k < 4; ++k) {
      const int n = (k + 1) % 4;
      if (xs[k] != xs[n] && ys[k] != ys[n]) return false;
    }
    return true;
  };
  auto normalise = [&] {
    int x0, x1, y0, y1;
    p.Extent(x0, x1, y0, y1);
    p.clear();
    p.append(x0, y0), p.append(x1, y0), p.append(x1, y1), p.append(x0, y1);
  };
  if ((t == eRectangle || t == eSquare) && !axisRectangle()) {
    p.vSetTyp(ePolygon);
  } else if (t == ePolygon && axisRectangle()) {
    p.vSetTyp(eRectangle);
    normalise();
  } else if (t == eRectangle || t == eSquare) {
    normalise();
  } else if (t == eCircle && p.size() >= 2) {
    const double r = (p[1] - p[0]).magnitude();
    p[1] = TOPoint<int>(p[0].x + static_cast<int>(r + 0.5), p[0].y);
  }
  setTimeStamp(i);
  _send(4, static_cast<unsigned long>(i));
}

void TObjectList98::rotate(int i, int x, int y, double angle) {
  KX_TRY {
    _check(i);
    const double a = angle * M_PI / 180.0;
    _rotateOne(i, x, y, std::cos(a), std::sin(a));
    _vBordersAfter(i);
  }
  KX_CATCH
}

int TObjectList98::copy(int i, int dx, int dy) {
  KX_TRY {
    const int n = vCopyTree(i, *this);
    move(n, dx, dy);
    return n;
  }
  KX_CATCH
}

// ---------------------------------------------------------------- names

std::string TObjectList98::sGetSingleObjectName(int i) const {
  KX_TRY {
    _check(i);
    if (!Flags.bIsAutoName(i)) return Names[static_cast<std::size_t>(i)];
    int number = 0;
    const int f = Relations.getVather(i);
    if (f < 0) {
      for (int k = 0; k < i; ++k) number += !Relations.hasVather(k);
    } else {
      const std::vector<int> sons = Relations.vGetSons(f);
      number = static_cast<int>(std::find(sons.begin(), sons.end(), i) - sons.begin());
    }
    return std::to_string(number + 1);
  }
  KX_CATCH
}

std::string TObjectList98::sGetFullObjectName(int i) const {
  KX_TRY {
    std::string name = sGetSingleObjectName(i);
    for (int f = Relations.getVather(i), steps = 0; f >= 0 && steps < size(); f = Relations.getVather(f), ++steps)
      name = sGetSingleObjectName(f) + "." + name;
    return name;
  }
  KX_CATCH
}

void TObjectList98::vSetObjectName(int i, const char* name) {
  KX_TRY {
    _check(i);
    const bool automatic = !name || !*name;
    Names[static_cast<std::size_t>(i)] = automatic ? "" : name;
    Flags.vSetAutoName(i, automatic);
    TDelivery::vSetTimeStamp();
    _send(4, static_cast<unsigned long>(i));
  }
  KX_CATCH
}

bool TObjectList98::bIsAutoName(int i) const {
  KX_TRY {
    _check(i);
    return Flags.bIsAutoName(i);
  }
  KX_CATCH
}

void TObjectList98::vSetAllAutoName() {
  for (int i = 0; i < size(); ++i) {
    Names[static_cast<std::size_t>(i)].clear();
    Flags.vSetAutoName(i, true);
  }
  TDelivery::vSetTimeStamp();
}

// ---------------------------------------------------------------- special objects, files

std::vector<bool> TObjectList98::vFindSpecialObjects() const {
  std::vector<bool> mark(static_cast<std::size_t>(size()), false);
  for (int i = 0; i < size(); ++i) {
    const int f = Relations.getVather(i);
    mark[static_cast<std::size_t>(i)] = (f >= 0 && !bIsGroup(f)) || (Flags[i] & TOFlagList::fSpecial);
  }
  return mark;
}

std::string TObjectList98::sWriteOA() const {
  std::ostringstream o;
  o << cpObjectList << "\n";
  const auto& lists = Points.rGetLists();
  o << lists.size() << "\n" << lists.getCapacity() << "\n";
  for (int i = 0; i < lists.size(); ++i) {
    const TOPointList<int>& p = lists[i];
    o << static_cast<int>(p.eGetTyp()) << "\n" << p.size() << "\n" << p.rGetPoints().getCapacity() << "\n";
    for (int k = 0; k < p.size(); ++k) o << p[k].x << "\n" << p[k].y << "\n";
  }
  o << Relations.size() << "\n" << Relations.getCapacity() << "\n";
  for (const auto& r : Relations.rGetRecords()) o << r.Vather << "\n" << r.Brother << "\n" << r.Son << "\n";
  const auto& words = Flags.rGetWords();
  o << words.size() << "\n" << words.getCapacity() << "\n";
  for (int i = 0; i < words.size(); ++i) o << words[i] << "\n";
  for (int i = 0; i < Signatures.size(); ++i) o << Signatures[i].get() << "\n";
  o << Flags.StandardFlag << "\n";
  for (const std::string& n : Names) o << n << "\n";
  return o.str();
}

void TObjectList98::write(const char* file) const {
  KX_TRY {
    if (!file) KX_THROW(ulObjectFileWrite, sCannotWrite(), "(null)");
    TObjectList98 copy(*this);
    copy.bMessages = false;
    const std::vector<bool> special = copy.vFindSpecialObjects();
    for (int i = copy.size() - 1; i >= 0; --i)
      if (special[static_cast<std::size_t>(i)] && i < copy.size()) copy.erase(i, false);
    const std::string text = copy.sWriteOA();
    kx::platform::AtomicFile f;
    if (!f.open(file) || !f.write(text) || !f.commit()) KX_THROW(ulObjectFileWrite, sCannotWrite(), file);
  }
  KX_CATCH
}

namespace {

// The lines of an ".oa" text, each at most 128 characters, numbers checked.
struct TOALines {
  std::istringstream in;
  int line = 0;
  explicit TOALines(const std::string& text) : in(text) {}
  std::string next() {
    std::string s;
    if (!std::getline(in, s)) KX_THROW(ulObjectFileFormat, "Zeile %d fehlt / line %d missing", line + 1, line + 1);
    ++line;
    if (!s.empty() && s.back() == '\r') s.pop_back();
    if (s.size() > 128) KX_THROW(ulObjectFileFormat, "Zeile %d zu lang / line %d too long", line, line);
    return s;
  }
  long long number(long long lo, long long hi) {
    const std::string s = next();
    char* end = nullptr;
    errno = 0;
    const long long v = std::strtoll(s.c_str(), &end, 10);
    while (end && (*end == ' ' || *end == '\t')) ++end;
    if (s.empty() || errno || !end || *end || v < lo || v > hi)
      KX_THROW(ulObjectFileFormat, "Zeile %d: \"%.40s\" keine Zahl in %lld...%lld / no number in range", line,
               s.c_str(), lo, hi);
    return v;
  }
  // A count of items that each take at least `linesEach` more lines.
  int count(int linesEach) {
    const long long rest = static_cast<long long>(in.str().size());  // no more lines than bytes
    return static_cast<int>(number(0, std::min<long long>(INT_MAX, rest / std::max(linesEach, 1) + 1)));
  }
};

}  // namespace

void TObjectList98::vReadOAText(const std::string& text, bool bAppend) {
  KX_TRY {
    TOALines in(text);
    std::string first = in.next();
    if (first != cpObjectList) KX_THROW(ulObjectFileType, sWrongType(), first.substr(0, 40).c_str());
    TObjectList98 got;
    got.bMessages = false;
    const int n = in.count(2);
    const int cap = static_cast<int>(in.number(n, INT_MAX));
    for (int i = 0; i < n; ++i) {
      const int typ = static_cast<int>(in.number(0, iTOPL_TypCount - 1));
      TOPointList<int> p(static_cast<TOPL_Typ>(typ));
      const int np = in.count(2);
      const int pcap = static_cast<int>(in.number(np, INT_MAX));
      for (int k = 0; k < np; ++k) {
        const int x = static_cast<int>(in.number(INT_MIN, INT_MAX));
        const int y = static_cast<int>(in.number(INT_MIN, INT_MAX));
        p.append(x, y);
      }
      p.rGetPoints().vSetCapacity(pcap);
      got.Points.rGetLists().append(p);
    }
    got.Points.rGetLists().vSetCapacity(cap);
    const int nr = static_cast<int>(in.number(n, n));
    const int rcap = static_cast<int>(in.number(nr, INT_MAX));
    std::vector<TRelationList::TRelation> rel(static_cast<std::size_t>(nr));
    for (auto& r : rel) {
      r.Vather = static_cast<int>(in.number(-1, n - 1));
      r.Brother = static_cast<int>(in.number(-1, n - 1));
      r.Son = static_cast<int>(in.number(-1, n - 1));
    }
    got.Relations.vSetRecords(std::move(rel), rcap);
    const int nf = static_cast<int>(in.number(n, n));
    const int fcap = static_cast<int>(in.number(nf, INT_MAX));
    for (int i = 0; i < nf; ++i) got.Flags.rGetWords().append(static_cast<unsigned>(in.number(0, UINT_MAX)));
    got.Flags.rGetWords().vSetCapacity(fcap);
    for (int i = 0; i < n; ++i) {
      TSignatur s;
      s.set(in.next().c_str());  // cut to 23 characters
      got.Signatures.append(s);
    }
    got.Flags.StandardFlag = static_cast<unsigned>(in.number(0, UINT_MAX));
    for (int i = 0; i < n; ++i) got.Names.push_back(in.next());
    got.Regions.resize(n);
    got.Labels.vResize(n);
    if (bAppend) {
      *this += got;
      return;
    }
    const bool saved = bMessages;
    *this = got;
    bMessages = saved;
    setAllTimeStamp();
    _send(1, 0);
  }
  KX_CATCH
}

void TObjectList98::vReadOA(const char* file, bool bAppend) {
  KX_TRY {
    std::ifstream f(file ? file : "", std::ios::binary);
    if (!file || !f) KX_THROW(ulObjectFileRead, sCannotRead(), file ? file : "(null)");
    std::ostringstream s;
    s << f.rdbuf();
    vReadOAText(s.str(), bAppend);
  }
  KX_CATCH
}

void TObjectList98::read(const char* file, bool bAppend) {
  KX_TRY {
    const std::string name = file ? file : "";
    const std::size_t dot = name.find_last_of('.');
    std::string ext = dot == std::string::npos ? "" : name.substr(dot);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (ext == ".oa")
      vReadOA(file, bAppend);
    else if (ext == ".prt")
      vReadPRT(file, bAppend);
    else
      KX_THROW(ulObjectFileType, sWrongType(), name.c_str());
  }
  KX_CATCH
}

// ---------------------------------------------------------------- clipboard, table

void TObjectList98::vCopyAll2Clipboard() const {
  const std::string text = sWriteOA();
  TKxClipboard::vSetData(TKxClipboard::uRegisterFormat(cpClipboardFormat), text.data(), text.size());
}

void TObjectList98::vCopySelected2Clipboard() const {
  TObjectList98 part;
  vCopySelected2Other(part);
  part.vCopyAll2Clipboard();
}

bool TObjectList98::bHaveClipboardData() {
  return TKxClipboard::bHasFormat(TKxClipboard::uRegisterFormat(cpClipboardFormat));
}

void TObjectList98::vCopyAllFromClipboard() {
  KX_TRY {
    const std::vector<char> data = TKxClipboard::vGetData(TKxClipboard::uRegisterFormat(cpClipboardFormat));
    if (data.empty()) return;
    vReadOAText(std::string(data.begin(), data.end()), true);
  }
  KX_CATCH
}

std::string TObjectList98::vContent2Table() const {
  std::string out = sTableHead();
  for (int i = 0; i < size(); ++i) {
    const TOPointList<int>& p = Points[i];
    out += std::to_string(i + 1) + "\t\"" + sGetFullObjectName(i) + "\"\t" + cpGetTOPL_TypName(p.eGetTyp()) + "\t" +
           std::to_string(Relations.getVather(i) + 1) + "\t";
    if (bIsGroup(i)) {
      const std::vector<int> sons = Relations.vGetSons(i);
      out += std::to_string(sons.size());
      for (int s : sons) out += "\t" + std::to_string(s + 1);
    } else {
      out += std::to_string(p.size());
      for (int k = 0; k < p.size(); ++k) out += "\t" + std::to_string(p[k].x) + "\t" + std::to_string(p[k].y);
    }
    out += "\r\n";
  }
  return out;
}

void TObjectList98::vExport(const char* name) const {
  KX_TRY {
    const std::string text = vContent2Table();
    if (!name) {
      TKxClipboard::vSetText(text);
      return;
    }
    kx::platform::AtomicFile f;
    if (!f.open(name) || !f.write(text) || !f.commit()) KX_THROW(ulObjectFileWrite, sCannotWrite(), name);
  }
  KX_CATCH
}

// ---------------------------------------------------------------- information texts

namespace {

const TLanguage::TLanguageString sInfoArea("Region=%s  Typ=%s  Fläche=%s%s  Umfang=%s%s",
                                           "region=%s  type=%s  area=%s%s  circumference=%s%s");
const TLanguage::TLanguageString sInfoLine("Region=%s  Typ=%s  Länge=%s%s  Höhe=%s%s  Breite=%s%s",
                                           "region=%s  type=%s  length=%s%s  height=%s%s  width=%s%s");
const TLanguage::TLanguageString sInfoRect("Region=%s  Typ=%s  Breite=%s%s  Höhe=%s%s  Fläche=%s%s  Umfang=%s%s",
                                           "region=%s  type=%s  width=%s%s  height=%s%s  area=%s%s  circumference=%s%s");
const TLanguage::TLanguageString sInfoCircle("Region=%s  Typ=%s  Durchmesser=%s%s  Fläche=%s%s  Umfang=%s%s",
                                             "region=%s  type=%s  diameter=%s%s  area=%s%s  circumference=%s%s");
const TLanguage::TLanguageString sInfoGroup("Region=%s  Typ=%s  Mitglieder=%d", "region=%s  type=%s  members=%d");
const TLanguage::TLanguageString sInfoPoint("Region=%s  Punkt=%d  %s=%s%s  %s=%s%s", "region=%s  point=%d  %s=%s%s  %s=%s%s");
const TLanguage::TLanguageString sInfoEdge("Region=%s  Linie=%d  Länge=%s%s", "region=%s  line=%d  length=%s%s");

double length(const Rastrix::TCoordinateSystem* cs, const TOPoint<int>& a, const TOPoint<int>& b) {
  return cs ? cs->dGetLineLength(a.x, a.y, b.x, b.y) : (b - a).magnitude();
}
// The signed trapezoid of an edge, summed along a closed contour.
double trapezoid(const Rastrix::TCoordinateSystem* cs, const TOPoint<int>& a, const TOPoint<int>& b) {
  return cs ? cs->dGetLineArea(a.x, a.y, b.x, b.y) : (b.x - a.x) * (a.y + b.y) / 2.0;
}
thread_local char infoText[512];

}  // namespace

void TObjectList98::vCalculateLine(int i, const Rastrix::TCoordinateSystem* cs, double& len, double& h,
                                   double& w) const {
  KX_TRY {
    _check(i);
    const TOPointList<int>& p = Points[i];
    len = 0;
    for (int k = 1; k < p.size(); ++k) len += length(cs, p[k - 1], p[k]);
    vCalculateWidthAndHeight(i, cs, w, h);
  }
  KX_CATCH
}

void TObjectList98::vCalculateLineAndArea(int i, const Rastrix::TCoordinateSystem* cs, double& circ,
                                          double& area) const {
  KX_TRY {
    _check(i);
    const TOPointList<int>& p = Points[i];
    area = circ = 0;
    for (int k = 0; k < p.size(); ++k) {
      const TOPoint<int>& a = p[k];
      const TOPoint<int>& b = p[(k + 1) % p.size()];
      area += trapezoid(cs, a, b);
      circ += length(cs, a, b);
    }
    area = std::fabs(area);
  }
  KX_CATCH
}

void TObjectList98::vCalculateWidthAndHeight(int i, const Rastrix::TCoordinateSystem* cs, double& w,
                                             double& h) const {
  KX_TRY {
    _check(i);
    int x0, x1, y0, y1;
    Points[i].Extent(x0, x1, y0, y1);
    h = length(cs, TOPoint<int>(x0, y0), TOPoint<int>(x0, y1));
    w = length(cs, TOPoint<int>(x0, y0), TOPoint<int>(x1, y0));
  }
  KX_CATCH
}

void TObjectList98::vCalculateCircle(int i, const Rastrix::TCoordinateSystem* cs, double& d, double& area,
                                     double& circ) const {
  KX_TRY {
    _check(i);
    const TOPointList<int>& p = Points[i];
    d = area = circ = 0;
    if (p.size() < 2) return;
    const double r = length(cs, p[0], p[1]);
    d = 2 * r;
    area = cs ? cs->dGetCircleArea(p[0].x, p[0].y, p[1].x, p[1].y) : M_PI * r * r;
    circ = cs ? cs->dGetCircleLength(p[0].x, p[0].y, p[1].x, p[1].y) : 2 * M_PI * r;
  }
  KX_CATCH
}

const char* TObjectList98::cpGetObjectInfo(int i, const Rastrix::TCoordinateSystem* cs) const {
  KX_TRY {
    _check(i);
    const TOPointList<int>& p = Points[i];
    const std::string name = sGetFullObjectName(i);
    const char* typ = cpGetTOPL_TypName(p.eGetTyp());
    const std::string uL = cs ? cs->rStrGetUnitL() : "", uA = cs ? cs->rStrGetUnitA() : "";
    const TOPL_Typ t = p.eGetTyp();
    auto f = [&](double v) { return Format.format(v); };
    if (bIsGroup(i)) {
      std::snprintf(infoText, sizeof infoText, sInfoGroup(), name.c_str(), typ, Relations.numberOfSon(i));
    } else if (t == eCircle) {
      double d, area, circ;
      vCalculateCircle(i, cs, d, area, circ);
      std::snprintf(infoText, sizeof infoText, sInfoCircle(), name.c_str(), typ, f(d).c_str(), uL.c_str(),
                    f(area).c_str(), uA.c_str(), f(circ).c_str(), uL.c_str());
    } else if (t == eLine || t == ePolyline || t == ePoint) {
      double len, h, w;
      vCalculateLine(i, cs, len, h, w);
      std::snprintf(infoText, sizeof infoText, sInfoLine(), name.c_str(), typ, f(len).c_str(), uL.c_str(),
                    f(h).c_str(), uL.c_str(), f(w).c_str(), uL.c_str());
    } else {
      double area, circ;
      vCalculateLineAndArea(i, cs, circ, area);
      if (t == eRectangle || t == eSquare) {
        double w, h;
        vCalculateWidthAndHeight(i, cs, w, h);
        std::snprintf(infoText, sizeof infoText, sInfoRect(), name.c_str(), typ, f(w).c_str(), uL.c_str(),
                      f(h).c_str(), uL.c_str(), f(area).c_str(), uA.c_str(), f(circ).c_str(), uL.c_str());
      } else {
        std::snprintf(infoText, sizeof infoText, sInfoArea(), name.c_str(), typ, f(area).c_str(), uA.c_str(),
                      f(circ).c_str(), uL.c_str());
      }
    }
    return infoText;
  }
  KX_CATCH
}

const char* TObjectList98::cpGetObjectInfo2(const TOPointList<int>& now, const TOPointList<int>& before,
                                           const Rastrix::TCoordinateSystem* cs) const {
  KX_TRY {
    TObjectList98 one;
    one.bMessages = false;
    one.append(now);
    std::string text = one.cpGetObjectInfo(0, cs);
    if (now.size() > 0 && before.size() > 0) {
      double x0 = before[0].x, y0 = before[0].y, x1 = now[0].x, y1 = now[0].y;
      if (cs) cs->vGetWorldXY(&x0, &y0, before[0].x, before[0].y), cs->vGetWorldXY(&x1, &y1, now[0].x, now[0].y);
      const std::string u = cs ? cs->rStrGetUnitX() : "";
      text += "  dx=" + Format.format(x1 - x0) + u + "  dy=" + Format.format(y1 - y0) + (cs ? cs->rStrGetUnitY() : "");
    }
    std::snprintf(infoText, sizeof infoText, "%s", text.c_str());
    return infoText;
  }
  KX_CATCH
}

const char* TObjectList98::cpGetPointInfo(int i, int point, const Rastrix::TCoordinateSystem* cs) const {
  KX_TRY {
    _check(i);
    const TOPoint<int>& q = Points[i][point];
    double x = q.x, y = q.y;
    if (cs) cs->vGetWorldXY(&x, &y, q.x, q.y);
    const std::string nx = cs ? cs->rStrGetNameX() : "x", ny = cs ? cs->rStrGetNameY() : "y";
    const std::string ux = cs ? cs->rStrGetUnitX() : "", uy = cs ? cs->rStrGetUnitY() : "";
    std::snprintf(infoText, sizeof infoText, sInfoPoint(), sGetFullObjectName(i).c_str(), point + 1, nx.c_str(),
                  Format.format(x).c_str(), ux.c_str(), ny.c_str(), Format.format(y).c_str(), uy.c_str());
    return infoText;
  }
  KX_CATCH
}

const char* TObjectList98::cpGetLineInfo(int i, int line, const Rastrix::TCoordinateSystem* cs) const {
  KX_TRY {
    _check(i);
    const TOPointList<int>& p = Points[i];
    const TOPoint<int>& a = p[line];
    const TOPoint<int>& b = p[(line + 1) % p.size()];
    std::snprintf(infoText, sizeof infoText, sInfoEdge(), sGetFullObjectName(i).c_str(), line + 1,
                  Format.format(length(cs, a, b)).c_str(), cs ? cs->rStrGetUnitL().c_str() : "");
    return infoText;
  }
  KX_CATCH
}
