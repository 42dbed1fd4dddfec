#include "object98/TRelationList.h"

#include <algorithm>

#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"
#include "object98/Object98Errors.h"

namespace {

using object98::ulObjectFileFormat;
const TLanguage::TLanguageString sIndex("Index=%d Size=%d", "Index=%d Size=%d");
const TLanguage::TLanguageString sEqual("%d und %d sind gleich", "%d and %d are equal");
const TLanguage::TLanguageString sAncestor("%d ist Vorfahr von %d", "%d is ancestor of %d");
const TLanguage::TLanguageString sDescendant("%d ist Nachfahr von %d", "%d is descendant of %d");
const TLanguage::TLanguageString sBrother("%d ist Bruder von %d", "%d is brother of %d");
const TLanguage::TLanguageString sHasVather("%d hat bereits Vater", "%d has a father already");
const TLanguage::TLanguageString sBothNone("%d und %d haben beide keinen Vater", "%d and %d both have no father");
const TLanguage::TLanguageString sDifferent("%d und %d haben unterschiedliche Väter", "%d and %d have different fathers");
const TLanguage::TLanguageString sNoSon("%d ist kein Sohn von %d", "%d is no son of %d");
const TLanguage::TLanguageString sNoVather("%d hat keinen Vater", "%d has no father");

unsigned long pair(int a, int b) {
  return (static_cast<unsigned long>(static_cast<unsigned>(a)) << 32) | static_cast<unsigned>(b);
}

}  // namespace

void TRelationList::check(int i, int which) const {
  if (i < 0 || i >= size())
    KX_THROW(which == 1 ? object98::ulRelIndex1 : object98::ulRelIndex2, sIndex(), i, size());
}

const TRelationList::TRelation& TRelationList::rec(int i, int which) const {
  check(i, which);
  return Items[static_cast<std::size_t>(i)];
}

const TRelationList::TRelation& TRelationList::operator[](int i) const {
  KX_TRY { return rec(i, 1); }
  KX_CATCH
}

void TRelationList::append(int father) {
  KX_TRY {
    if (father >= 0) check(father, 2);
    if (size() >= Capacity) Capacity = size() + 10;
    Items.push_back({});
    if (father >= 0) attach(father, size() - 1);
  }
  KX_CATCH
}

int TRelationList::numberOfSon(int i) const {
  KX_TRY { return static_cast<int>(vGetSons(i).size()); }
  KX_CATCH
}

std::vector<int> TRelationList::vGetSons(int i) const {
  std::vector<int> out;
  // At most size() steps: a broken chain cannot loop.
  for (int s = rec(i, 1).Son; s >= 0 && s < size() && static_cast<int>(out.size()) < size();
       s = Items[static_cast<std::size_t>(s)].Brother)
    out.push_back(s);
  return out;
}

bool TRelationList::isVather(int a, int b) const {
  KX_TRY {
    check(a, 1);
    return rec(b, 2).Vather == a;
  }
  KX_CATCH
}

bool TRelationList::isBrother(int a, int b) const {
  KX_TRY {
    const int fa = rec(a, 1).Vather, fb = rec(b, 2).Vather;
    return a != b && fa >= 0 && fa == fb;
  }
  KX_CATCH
}

bool TRelationList::isAncestor(int a, int b) const {
  KX_TRY {
    check(a, 1);
    int f = rec(b, 2).Vather;
    for (int steps = 0; f >= 0 && f < size() && steps < size(); ++steps) {
      if (f == a) return true;
      f = Items[static_cast<std::size_t>(f)].Vather;
    }
    return false;
  }
  KX_CATCH
}

int TRelationList::getOrigin(int i) const {
  KX_TRY {
    check(i, 1);
    for (int steps = 0; steps < size(); ++steps) {
      const int f = Items[static_cast<std::size_t>(i)].Vather;
      if (f < 0 || f >= size()) break;
      i = f;
    }
    return i;
  }
  KX_CATCH
}

std::vector<int> TRelationList::vGetDescendants(int i) const {
  KX_TRY {
    check(i, 1);
    std::vector<char> mark(Items.size(), 0);
    std::vector<int> stack{i};
    while (!stack.empty()) {
      const int f = stack.back();
      stack.pop_back();
      for (int s : vGetSons(f))
        if (!mark[static_cast<std::size_t>(s)] && s != i) {
          mark[static_cast<std::size_t>(s)] = 1;
          stack.push_back(s);
        }
    }
    std::vector<int> out;
    for (int k = 0; k < size(); ++k)
      if (mark[static_cast<std::size_t>(k)]) out.push_back(k);
    return out;
  }
  KX_CATCH
}

std::unique_ptr<bool[]> TRelationList::getDescendants(int i) const {
  KX_TRY {
    std::unique_ptr<bool[]> out(new bool[Items.size()]());
    for (int d : vGetDescendants(i)) out[static_cast<std::size_t>(d)] = true;
    return out;
  }
  KX_CATCH
}

void TRelationList::attach(int father, int son) {
  TRelation& s = Items[static_cast<std::size_t>(son)];
  s.Vather = father;
  s.Brother = -1;
  TRelation& f = Items[static_cast<std::size_t>(father)];
  if (f.Son < 0) {
    f.Son = son;
  } else {
    int last = f.Son;
    for (int steps = 0; Items[static_cast<std::size_t>(last)].Brother >= 0 && steps < size(); ++steps)
      last = Items[static_cast<std::size_t>(last)].Brother;
    Items[static_cast<std::size_t>(last)].Brother = son;
  }
}

void TRelationList::detach(int father, int son) {
  TRelation& f = Items[static_cast<std::size_t>(father)];
  TRelation& s = Items[static_cast<std::size_t>(son)];
  if (f.Son == son) {
    f.Son = s.Brother;
  } else {
    int prev = f.Son;
    for (int steps = 0; prev >= 0 && steps < size(); ++steps) {
      TRelation& p = Items[static_cast<std::size_t>(prev)];
      if (p.Brother == son) {
        p.Brother = s.Brother;
        break;
      }
      prev = p.Brother;
    }
  }
  s.Vather = s.Brother = -1;
}

void TRelationList::checkPair(int a, int b) const {
  check(a, 1);
  check(b, 2);
  if (a == b) KX_THROW(object98::ulRelEqual, sEqual(), a, b);
  if (isAncestor(a, b)) KX_THROW(object98::ulRelAncestor, sAncestor(), a, b);
  if (isDescendant(a, b)) KX_THROW(object98::ulRelDescendant, sDescendant(), a, b);
  if (isBrother(a, b)) KX_THROW(object98::ulRelBrother, sBrother(), a, b);
}

void TRelationList::setVather(int son, int father) {
  KX_TRY {
    checkPair(son, father);
    const int old = Items[static_cast<std::size_t>(son)].Vather;
    if (old >= 0) deleteSon(old, son);
    attach(father, son);
    vSendMessage(1, pair(son, father));
  }
  KX_CATCH
}

void TRelationList::setSon(int father, int son) {
  KX_TRY {
    checkPair(father, son);
    if (Items[static_cast<std::size_t>(son)].Vather >= 0) KX_THROW(object98::ulRelHasVather, sHasVather(), son);
    attach(father, son);
    vSendMessage(1, pair(son, father));
  }
  KX_CATCH
}

void TRelationList::setBrother(int a, int b) {
  KX_TRY {
    checkPair(a, b);
    const int fa = Items[static_cast<std::size_t>(a)].Vather, fb = Items[static_cast<std::size_t>(b)].Vather;
    if (fa < 0 && fb < 0) KX_THROW(object98::ulRelBothNone, sBothNone(), a, b);
    if (fa >= 0 && fb >= 0) KX_THROW(object98::ulRelDifferent, sDifferent(), a, b);
    if (fa < 0)
      setVather(a, fb);
    else
      setVather(b, fa);
  }
  KX_CATCH
}

void TRelationList::deleteSon(int father, int son) {
  KX_TRY {
    check(father, 1);
    check(son, 2);
    if (Items[static_cast<std::size_t>(son)].Vather != father) KX_THROW(object98::ulRelNoSon, sNoSon(), son, father);
    detach(father, son);
    vSendMessage(2, pair(father, son));
  }
  KX_CATCH
}

void TRelationList::deleteVather(int son) {
  KX_TRY {
    const int f = rec(son, 1).Vather;
    if (f < 0) KX_THROW(object98::ulRelNoVather, sNoVather(), son);
    deleteSon(f, son);
  }
  KX_CATCH
}

void TRelationList::erase(int i) {
  KX_TRY {
    check(i, 1);
    for (int s : vGetSons(i)) detach(i, s);
    const int f = Items[static_cast<std::size_t>(i)].Vather;
    if (f >= 0 && f < size()) detach(f, i);
    Items.erase(Items.begin() + i);
    for (TRelation& r : Items)
      for (int* p : {&r.Vather, &r.Brother, &r.Son}) {
        if (*p == i) *p = -1;  // only in a broken tree
        if (*p > i) --*p;
      }
  }
  KX_CATCH
}

void TRelationList::vReduceIndexFromTo(int from, int to) {
  KX_TRY {
    check(from, 1);
    check(to, 2);
    if (!(to < from)) KX_THROW(object98::ulRelIndex2, sIndex(), to, from);
    std::rotate(Items.begin() + to, Items.begin() + from, Items.begin() + from + 1);
    for (TRelation& r : Items)
      for (int* p : {&r.Vather, &r.Brother, &r.Son}) {
        if (*p == from)
          *p = to;
        else if (*p >= to && *p < from)
          ++*p;
      }
  }
  KX_CATCH
}

void TRelationList::resize(int n) {
  if (n < 0) n = 0;
  if (n < size()) {
    Items.resize(static_cast<std::size_t>(n));
    for (TRelation& r : Items)
      for (int* p : {&r.Vather, &r.Brother, &r.Son})
        if (*p >= n) *p = -1;
  } else {
    Items.resize(static_cast<std::size_t>(n));
  }
  if (Capacity < n) Capacity = n;
}

TRelationList& TRelationList::operator+=(const TRelationList& o) {
  const int base = size();
  const std::vector<TRelation> add = o.Items;  // o may be this list
  for (TRelation r : add) {
    for (int* p : {&r.Vather, &r.Brother, &r.Son})
      if (*p >= 0) *p += base;
    Items.push_back(r);
  }
  if (Capacity < size()) Capacity = size();
  return *this;
}

void TRelationList::vSetRecords(std::vector<TRelation> records, int capacity) {
  KX_TRY {
    const int n = static_cast<int>(records.size());
    auto bad = [&](const char* what, int i) {
      KX_THROW(ulObjectFileFormat, "Relation %d: %s", i, what);
    };
    for (int i = 0; i < n; ++i)
      for (int v : {records[static_cast<std::size_t>(i)].Vather, records[static_cast<std::size_t>(i)].Brother,
                    records[static_cast<std::size_t>(i)].Son})
        if (v < -1 || v >= n || v == i) bad("Verweis ausserhalb / reference out of range", i);
    // Each son chain must hold exactly the records that name the father, once.
    std::vector<int> seen(static_cast<std::size_t>(n), 0);
    for (int f = 0; f < n; ++f) {
      int steps = 0;
      for (int s = records[static_cast<std::size_t>(f)].Son; s >= 0; s = records[static_cast<std::size_t>(s)].Brother) {
        if (++steps > n || records[static_cast<std::size_t>(s)].Vather != f || seen[static_cast<std::size_t>(s)]++)
          bad("Sohnkette fehlerhaft / broken chain of sons", f);
      }
    }
    for (int i = 0; i < n; ++i) {
      const TRelation& r = records[static_cast<std::size_t>(i)];
      if ((r.Vather >= 0) != (seen[static_cast<std::size_t>(i)] == 1)) bad("Vater ohne Sohn / father without son", i);
      if (r.Vather < 0 && r.Brother >= 0) bad("Bruder ohne Vater / brother without father", i);
      int f = r.Vather;
      for (int steps = 0; f >= 0; f = records[static_cast<std::size_t>(f)].Vather)
        if (++steps > n) bad("Zyklus / cycle", i);
    }
    Items = std::move(records);
    Capacity = std::max(capacity, n);
  }
  KX_CATCH
}
