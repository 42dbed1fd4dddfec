// The tree of groups of an object list: one record per object with its
// father (Vather), its next brother and its first son, each an object index
// or -1. The sons of a father form a list through Brother, in the order they
// were added. Every change checks all its indices and conditions first, so
// an error leaves the tree as it was.
//
// Messages (TDelivery): 1 with (son, father) when a son is attached, 2 with
// (father, son) when one is detached; the pair is packed as
// (first << 32) | second.
#pragma once

#include <memory>
#include <vector>

#include "kxexception/TDelivery.h"

class TRelationList : public TDelivery {
 public:
  struct TRelation {
    int Vather = -1;
    int Brother = -1;
    int Son = -1;
  };

  explicit TRelationList(int initialCapacity = 10) : Capacity(initialCapacity < 0 ? 0 : initialCapacity) {}
  TRelationList(const TRelationList& o) : TDelivery(o), Capacity(o.Capacity), Items(o.Items) {}
  TRelationList& operator=(const TRelationList& o) {
    TDelivery::operator=(o);
    Capacity = o.Capacity;
    Items = o.Items;
    return *this;
  }

  int size() const { return static_cast<int>(Items.size()); }
  int getCapacity() const { return Capacity; }
  const TRelation& operator[](int i) const;

  // A record with the given father (-1: none), attached at the end of the
  // father's sons.
  void append(int father);
  int getVather(int i) const { return rec(i, 1).Vather; }
  int getSon(int i) const { return rec(i, 1).Son; }
  int getBrother(int i) const { return rec(i, 1).Brother; }
  bool hasVather(int i) const { return getVather(i) >= 0; }
  bool hasSon(int i) const { return getSon(i) >= 0; }
  bool hasBrother(int i) const { return getBrother(i) >= 0; }
  // The number of sons of i.
  int numberOfSon(int i) const;
  // a is the father of b.
  bool isVather(int a, int b) const;
  bool isSon(int a, int b) const { return isVather(b, a); }
  // a and b have the same father (and are not the same).
  bool isBrother(int a, int b) const;
  // a lies on the way from b to its root.
  bool isAncestor(int a, int b) const;
  bool isDescendant(int a, int b) const { return isAncestor(b, a); }
  // The root of i's tree (i itself without father).
  int getOrigin(int i) const;
  bool hasCommonOrigin(int a, int b) const { return getOrigin(a) == getOrigin(b); }
  // Size entries, true for every descendant of i (i itself not).
  std::unique_ptr<bool[]> getDescendants(int i) const;
  // The descendants of i in index order.
  std::vector<int> vGetDescendants(int i) const;
  // The sons of i in their order.
  std::vector<int> vGetSons(int i) const;

  void setVather(int son, int father);
  void setSon(int father, int son);
  void setBrother(int a, int b);
  void deleteSon(int father, int son);
  void deleteVather(int son);
  // Detaches the sons and i, removes record i and lowers the references
  // above it.
  void erase(int i);
  // Moves record `from` to `to` (to < from), shifting to .. from - 1 up.
  void vReduceIndexFromTo(int from, int to);
  // New records have no relations; surplus ones are dropped (references to
  // them become -1).
  void resize(int n);
  void clear() { Items.clear(); }
  // The other tree appended, its indices raised by this size.
  TRelationList& operator+=(const TRelationList& o);

  // Replaces the records as read from a file: every reference must lie in
  // 0 .. n - 1 or be -1, and the tree must be consistent (sons point back to
  // their father, no cycles); else 0xe3222065 and nothing changes.
  void vSetRecords(std::vector<TRelation> records, int capacity);
  const std::vector<TRelation>& rGetRecords() const { return Items; }

 private:
  // Record i; `which` 1 or 2 picks the error of the first or second index.
  const TRelation& rec(int i, int which) const;
  void check(int i, int which) const;
  // The checks common to setVather, setSon and setBrother.
  void checkPair(int a, int b) const;
  void detach(int father, int son);
  void attach(int father, int son);

  int Capacity;
  std::vector<TRelation> Items;
};
