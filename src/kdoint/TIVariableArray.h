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
  TIVariableArray() = default;
  // Closes every level by force, the innermost first.
  ~TIVariableArray();
  TIVariableArray(const TIVariableArray&) = delete;
  TIVariableArray& operator=(const TIVariableArray&) = delete;

  void openLevel();
  // Destroys the innermost level, its variables in reverse order of creation:
  // "destroy" is called for those whose content nobody else shares. Without
  // `bForce` the last remaining level is kept (silently).
  void closeLevel(bool bForce);
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

  std::vector<TIVariableList*> levels_;
  int size_ = 0;
  // Each name's variables, outermost level first, and each variable's level.
  std::unordered_map<std::string, std::vector<TIVariable*>> byName_;
  std::unordered_map<const TIVariable*, unsigned> levelOf_;
};
