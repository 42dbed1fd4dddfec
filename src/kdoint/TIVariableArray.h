// The scopes of the interpreter: a stack of variable lists, level 0 the
// global one, the last the innermost. A variable also has a flat index, its
// position counted through all lists from level 0 upward.
//
// Lookup by name runs from the innermost level outward, exact and
// case-sensitive; an inner name hides an outer one. It goes through an index
// by name (no scan over all variables): addressOf is constant time, find
// scans only the one level the variable is in.
//
// Errors: 0xe7420018 (301) closeLevel with no level; 0xe7420019 /
// 0xe742001a (100c) a flat index out of range; 0xe0a2001a (302) remove of an
// unknown name; 0xe7520082 (312) remove of a vector element's name;
// 0xe7020065 (503) remove of a variable whose class has no "destroy";
// 0xe712009a a move onto a level that has the name already.
#pragma once

#include "kdoint/KdoIntErrors.h"

#include <string>
#include <unordered_map>
#include <vector>

class TIVariable;

// The value of a VECTOR variable: the element class and the size. The
// elements are ordinary variables "name[0]", "name[1]", ... standing right
// behind the vector in its list.
struct TIVectorRecord {
  char className[128]{};
  unsigned size = 0;
  class TIClass* elementClass = nullptr;
};

class TIVariableList {
 public:
  std::vector<TIVariable*> variables;
};

class TIVariableArray {
 public:
  TIVariableArray();
  // Closes every level by force, the innermost first.
  ~TIVariableArray();
  TIVariableArray(const TIVariableArray&) = delete;
  TIVariableArray& operator=(const TIVariableArray&) = delete;

  void openLevel();
  // Destroys the innermost level, its variables in reverse order of creation:
  // "destroy" is called for those whose content nobody else shares. Without
  // `bForce` the last remaining level is kept (silently).
  void closeLevel(bool bForce);
  // Runs `body` in a level of its own (the temporaries of a call), closed
  // afterwards, also when the body fails.
  template <class F>
  void vInLevel(F&& body) {
    openLevel();
    try {
      body();
    } catch (...) {
      try {
        closeLevel(true);
      } catch (unsigned long) {
      }
      throw;
    }
    closeLevel(true);
  }
  unsigned uGetLevels() const { return static_cast<unsigned>(levels_.size()); }

  int find(const char* name) const;
  // The innermost level only.
  int find1(const char* name) const;
  int find(const TIVariable* v) const;
  // The level of the variable the name finds, -1 if none.
  int iGetLevel(const char* name) const;
  TIVariable* addressOf(const char* name) const;
  TIVariable* operator[](int flat) const;
  int getSize() const { return size_; }

  // Into the innermost level (level 0 is opened if there is none). Takes
  // ownership.
  void append(TIVariable* v);
  // Removes one variable (the elements of a VECTOR first), calling its
  // "destroy" when nobody else shares its content.
  void remove(int flat);
  void remove(const char* name);
  // Moves a variable to level 0, or one level outward; a VECTOR takes its
  // elements along. Nothing happens at level 0.
  void global(int flat);
  void preserve(int flat);
  // Renames a variable (vector elements are renamed to stay dense).
  void vRename(TIVariable* v, const std::string& name);
  // Takes a variable out of its level and deletes it without calling its
  // "destroy" (a definition that failed before the value was made).
  void vDiscard(TIVariable* v);

  // Vector operations, on a VECTOR variable given by flat index or by name.
  // Ranges are checked ("Index=%d >= Size=%d": 0xe74200b2, by name
  // 0xe74200b0), and that the variable is a VECTOR (0xe75200b3, by name
  // 0xe75200b1).
  //
  // Resizing creates new elements behind the last one, initialised by the
  // element class's create(), or removes elements from the last one down.
  void vResizeVector(int flat, unsigned size);
  void vResizeVector(const char* name, unsigned size);
  // Exchanges the value words of two elements (not their names).
  void vSwapInVector(int flat, unsigned i, unsigned j);
  void vSwapInVector(const char* name, unsigned i, unsigned j);
  // Moves the value word of element `index` to the last element, the later
  // ones one down.
  void vToEndOfVector(int flat, unsigned index);
  void vToEndOfVector(const char* name, unsigned index);
  // Moves the value word of element `from` in front of element `to` (`to`
  // may be the size: to the end), the ones between shifting by one.
  void vInsertBefore(int flat, unsigned from, unsigned to);
  void vInsertBefore(const char* name, unsigned from, unsigned to);
  // Removes one element; the later ones take over the names, so that the
  // names stay dense.
  void vRemoveElement(int flat, unsigned index);
  void vRemoveElement(const char* name, unsigned index);
  // The element `index` of a vector (no range check), and the vector's
  // record.
  TIVariable* pGetElement(const TIVariable* vector, unsigned index) const;
  static TIVectorRecord* pGetVectorRecord(const TIVariable* v);
  // The most elements a vector may have.
  static constexpr unsigned uMaxVectorSize = 1u << 24;

  // The variable array that holds `v`, or null: how a routine of a built-in
  // class reaches the scopes of its variable.
  static TIVariableArray* pOwnerOf(const TIVariable* v);
  // Called once after a "destroy" of remove(): the front end processes its
  // event queue there. Null for none.
  using TEventHook = void (*)();
  static void vSetEventHook(TEventHook hook);

 private:
  struct TPlace {
    unsigned level;
    unsigned index;
  };
  TPlace _place(int flat) const;
  int _flat(unsigned level, const TIVariable* v) const;
  void _vIndexAdd(TIVariable* v, unsigned level);
  void _vIndexRemove(TIVariable* v);
  void _vMove(int flat, unsigned toLevel);
  static void _vDestroy(TIVariable* v, bool mustHaveDestroy);
  struct TVectorCodes {
    unsigned long range, notVector;
  };
  static constexpr TVectorCodes kByFlat{kdoint::ulVectorRange, kdoint::ulVectorNotVector};
  static constexpr TVectorCodes kByName{kdoint::ulVectorRangeByName, kdoint::ulVectorNotVectorByName};
  int _vectorFlat(const char* name, TVectorCodes codes) const;
  TIVectorRecord* _vectorAt(int flat, TVectorCodes codes, TPlace& place) const;
  static void _vCheckIndex(unsigned index, unsigned size, TVectorCodes codes);
  void _vResize(int flat, unsigned size, TVectorCodes codes);
  void _vSwap(int flat, unsigned i, unsigned j, TVectorCodes codes);
  void _vRotate(int flat, unsigned from, unsigned to, TVectorCodes codes);
  void _vRemoveElement(int flat, unsigned index, TVectorCodes codes);

  std::vector<TIVariableList*> levels_;
  std::vector<TIVariableList*> spare_;
  int size_ = 0;
  // Each name's variables, outermost level first (each variable knows its
  // own level); entries left empty, and how many.
  std::unordered_map<std::string, std::vector<TIVariable*>> byName_;
  unsigned emptyNames_ = 0;
};
