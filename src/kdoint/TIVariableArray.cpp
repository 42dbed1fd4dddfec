#include "kdoint/TIVariableArray.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>

#include "kdoint/KdoIntErrors.h"
#include "kdoint/TIClass.h"
#include "kdoint/TIMessage.h"
#include "kdoint/TIVariable.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

using namespace kdoint;

namespace {
constexpr TLanguage::TLanguageString sAlreadyAtLevel("Variable %s existiert bereits auf Level %d",
                                                     "Variable %s already exists at Level %d");

constexpr TLanguage::TLanguageString sIndexSize("Index=%d >= Size=%d", "Index=%d >= Size=%d");
constexpr TLanguage::TLanguageString sNoVector("Variable %s ist kein VECTOR", "Variable %s is no VECTOR");
constexpr TLanguage::TLanguageString sVectorLimit("Vektorgröße %d außerhalb 0 bis %d",
                                                  "Vector size %d outside 0 to %d");

std::atomic<TIVariableArray::TEventHook> eventHook{nullptr};

bool isVector(const TIVariable* v) { return v->getClass() && v->getClass()->getName() == "VECTOR"; }
unsigned vectorSize(const TIVariable* v) {
  const auto* r = static_cast<const TIVectorRecord*>(v->getPointer());
  return r ? r->size : 0;
}
}  // namespace

TIVariableArray::TIVariableArray() = default;

TIVariableArray::~TIVariableArray() {
  while (!levels_.empty()) {
    try {
      closeLevel(true);
    } catch (unsigned long) {
      kx::deleteError();
    }
  }
  for (TIVariableList* l : spare_) delete l;
}

void TIVariableArray::openLevel() {
  // Levels open and close with every call: their lists are kept for reuse.
  if (spare_.empty()) {
    levels_.push_back(new TIVariableList);
  } else {
    levels_.push_back(spare_.back());
    spare_.pop_back();
  }
}

void TIVariableArray::_vDestroy(TIVariable* v, bool mustHaveDestroy) {
  if (v->uGetReferenceNumber() == 1) {
    const TIRoutine destroy = v->getClass() ? v->getClass()->pGetDestroy() : nullptr;
    if (destroy) {
      TIVariable* callList[3] = {v, nullptr, nullptr};
      destroy(callList);
    } else if (mustHaveDestroy) {
      KX_THROW(ulNoDestroy, "%s", TIMessage::getString(0x503, v->getClass() ? v->getClass()->getName().c_str() : ""));
    }
  }
}

void TIVariableArray::closeLevel(bool bForce) {
  KX_TRY {
    if (levels_.empty()) KX_THROW(ulCloseNoLevel, "%s", TIMessage::getString(0x301));
    if (levels_.size() == 1 && !bForce) return;
    std::unique_ptr<TIVariableList> list(levels_.back());
    levels_.pop_back();
    size_ -= static_cast<int>(list->variables.size());
    // Reverse order of creation; a failing "destroy" does not keep the
    // others alive: the first failure goes on once all are gone.
    unsigned long failure = 0;
    for (auto it = list->variables.rbegin(); it != list->variables.rend(); ++it) {
      TIVariable* v = *it;
      _vIndexRemove(v);
      try {
        _vDestroy(v, false);
      } catch (unsigned long code) {
        if (!failure) failure = code;
      }
      delete v;
    }
    list->variables.clear();
    if (spare_.size() < 64) spare_.push_back(list.release());
    if (failure) throw failure;
  }
  KX_CATCH
}

TIVariableArray::TPlace TIVariableArray::_place(int flat) const {
  int rest = flat;
  for (unsigned l = 0; l < levels_.size(); ++l) {
    const int n = static_cast<int>(levels_[l]->variables.size());
    if (rest < n) return {l, static_cast<unsigned>(rest)};
    rest -= n;
  }
  return {0, 0};
}

int TIVariableArray::_flat(unsigned level, const TIVariable* v) const {
  int base = 0;
  for (unsigned l = 0; l < level; ++l) base += static_cast<int>(levels_[l]->variables.size());
  const auto& vars = levels_[level]->variables;
  const auto it = std::find(vars.begin(), vars.end(), v);
  return it == vars.end() ? -1 : base + static_cast<int>(it - vars.begin());
}

void TIVariableArray::_vIndexAdd(TIVariable* v, unsigned level) {
  auto& same = byName_[v->getName()];
  if (same.empty() && emptyNames_ > 0) --emptyNames_;
  // Outermost first; a variable joins behind the others of its level.
  auto pos = std::find_if(same.begin(), same.end(), [&](const TIVariable* o) { return o->level_ > level; });
  same.insert(pos, v);
  v->owner_ = this;
  v->level_ = level;
}

void TIVariableArray::_vIndexRemove(TIVariable* v) {
  auto it = byName_.find(v->getName());
  if (it != byName_.end()) {
    auto& same = it->second;
    same.erase(std::remove(same.begin(), same.end(), v), same.end());
    // Names that come back (the temporaries of calls) keep their entry; the
    // empty ones are swept when they pile up.
    if (same.empty() && ++emptyNames_ > 4096) {
      for (auto e = byName_.begin(); e != byName_.end();) e = e->second.empty() ? byName_.erase(e) : std::next(e);
      emptyNames_ = 0;
    }
  }
  v->owner_ = nullptr;
}

TIVariable* TIVariableArray::addressOf(const char* name) const {
  if (!name) return nullptr;
  const auto it = byName_.find(name);
  return it == byName_.end() || it->second.empty() ? nullptr : it->second.back();
}

int TIVariableArray::find(const char* name) const {
  const TIVariable* v = addressOf(name);
  return v ? _flat(v->level_, v) : -1;
}

int TIVariableArray::find1(const char* name) const {
  const TIVariable* v = addressOf(name);
  if (!v || levels_.empty() || v->level_ != levels_.size() - 1) return -1;
  return _flat(v->level_, v);
}

int TIVariableArray::find(const TIVariable* v) const {
  return v && v->owner_ == this ? _flat(v->level_, v) : -1;
}

int TIVariableArray::iGetLevel(const char* name) const {
  const TIVariable* v = addressOf(name);
  return v ? static_cast<int>(v->level_) : -1;
}

TIVariable* TIVariableArray::operator[](int flat) const {
  if (flat < 0 || flat >= size_)
    KX_THROW(ulFlatIndex, "%s", TIMessage::getString(0x100c, flat, size_));
  const TPlace p = _place(flat);
  return levels_[p.level]->variables[p.index];
}

void TIVariableArray::append(TIVariable* v) {
  if (!v) return;
  if (levels_.empty()) openLevel();
  levels_.back()->variables.push_back(v);
  ++size_;
  _vIndexAdd(v, static_cast<unsigned>(levels_.size() - 1));
}

void TIVariableArray::remove(int flat) {
  KX_TRY {
    if (flat < 0 || flat >= size_)
      KX_THROW(ulFlatIndexRemove, "%s", TIMessage::getString(0x100c, flat, size_));
    TIVariable* v = (*this)[flat];
    if (isVector(v)) {
      // The elements first, from the last one.
      for (unsigned i = vectorSize(v); i > 0; --i) {
        const std::string element = std::string(v->getName()) + "[" + std::to_string(i - 1) + "]";
        const int e = find(element.c_str());
        if (e >= 0) remove(e);
      }
      flat = find(v);
    }
    _vDestroy(v, true);
    if (const TEventHook hook = eventHook.load()) hook();
    const TPlace p = _place(flat);
    auto& vars = levels_[p.level]->variables;
    vars.erase(vars.begin() + p.index);
    --size_;
    _vIndexRemove(v);
    delete v;
  }
  KX_CATCH
}

void TIVariableArray::remove(const char* name) {
  KX_TRY {
    if (name && std::strchr(name, '[')) KX_THROW(ulRemoveElement, "%s", TIMessage::getString(0x312, name));
    const int flat = find(name);
    if (flat < 0) KX_THROW(ulRemoveUnknown, "%s", TIMessage::getString(0x302, name ? name : ""));
    remove(flat);
  }
  KX_CATCH
}

void TIVariableArray::_vMove(int flat, unsigned toLevel) {
  if (flat < 0 || flat >= size_) KX_THROW(ulFlatIndex, "%s", TIMessage::getString(0x100c, flat, size_));
  const TPlace p = _place(flat);
  if (p.level == 0 || toLevel >= p.level) return;
  TIVariable* v = levels_[p.level]->variables[p.index];
  for (const TIVariable* o : levels_[toLevel]->variables)
    if (std::strcmp(o->getName(), v->getName()) == 0)
      KX_THROW(ulMoveNameTaken, sAlreadyAtLevel(), v->getName(), static_cast<int>(toLevel));
  // The variable and, for a VECTOR, its elements right behind it.
  unsigned count = 1;
  if (isVector(v)) count += vectorSize(v);
  auto& from = levels_[p.level]->variables;
  count = std::min<unsigned>(count, static_cast<unsigned>(from.size() - p.index));
  std::vector<TIVariable*> moving(from.begin() + p.index, from.begin() + p.index + count);
  from.erase(from.begin() + p.index, from.begin() + p.index + count);
  auto& to = levels_[toLevel]->variables;
  for (TIVariable* m : moving) {
    to.push_back(m);
    _vIndexRemove(m);
    _vIndexAdd(m, toLevel);
  }
}

void TIVariableArray::global(int flat) {
  KX_TRY { _vMove(flat, 0); }
  KX_CATCH
}

void TIVariableArray::preserve(int flat) {
  KX_TRY {
    if (flat < 0 || flat >= size_) KX_THROW(ulFlatIndex, "%s", TIMessage::getString(0x100c, flat, size_));
    const TPlace p = _place(flat);
    if (p.level > 0) _vMove(flat, p.level - 1);
  }
  KX_CATCH
}

void TIVariableArray::vRename(TIVariable* v, const std::string& name) {
  if (v->owner_ != this) {
    v->setName(name);
    return;
  }
  const unsigned level = v->level_;
  _vIndexRemove(v);
  v->setName(name);
  _vIndexAdd(v, level);
}

void TIVariableArray::vDiscard(TIVariable* v) {
  if (v->owner_ != this) return;
  auto& vars = levels_[v->level_]->variables;
  vars.erase(std::remove(vars.begin(), vars.end(), v), vars.end());
  --size_;
  _vIndexRemove(v);
  delete v;
}

TIVariableArray* TIVariableArray::pOwnerOf(const TIVariable* v) { return v ? v->owner_ : nullptr; }

void TIVariableArray::vSetEventHook(TEventHook hook) { eventHook.store(hook); }

// ---------------------------------------------------------------- vectors

namespace {
std::string elementName(const TIVariable* vector, unsigned i) {
  return std::string(vector->getName()) + "[" + std::to_string(i) + "]";
}
}  // namespace

TIVectorRecord* TIVariableArray::pGetVectorRecord(const TIVariable* v) {
  return v && isVector(v) ? static_cast<TIVectorRecord*>(v->getPointer()) : nullptr;
}

TIVariable* TIVariableArray::pGetElement(const TIVariable* vector, unsigned index) const {
  if (!vector || vector->owner_ != this) return nullptr;
  const auto& vars = levels_[vector->level_]->variables;
  const auto pos = std::find(vars.begin(), vars.end(), vector);
  const std::size_t at = static_cast<std::size_t>(pos - vars.begin()) + 1 + index;
  return at < vars.size() ? vars[at] : nullptr;
}

int TIVariableArray::_vectorFlat(const char* name, TVectorCodes codes) const {
  const int flat = find(name);
  if (flat < 0) KX_THROW(codes.notVector, "%s", TIMessage::getString(0x302, name ? name : ""));
  return flat;
}

TIVectorRecord* TIVariableArray::_vectorAt(int flat, TVectorCodes codes, TPlace& place) const {
  if (flat < 0 || flat >= size_) KX_THROW(ulFlatIndex, "%s", TIMessage::getString(0x100c, flat, size_));
  place = _place(flat);
  const TIVariable* v = levels_[place.level]->variables[place.index];
  TIVectorRecord* r = pGetVectorRecord(v);
  if (!r) KX_THROW(codes.notVector, sNoVector(), v->getName());
  return r;
}

void TIVariableArray::_vCheckIndex(unsigned index, unsigned size, TVectorCodes codes) {
  if (index >= size) KX_THROW(codes.range, sIndexSize(), static_cast<int>(index), static_cast<int>(size));
}

void TIVariableArray::_vResize(int flat, unsigned size, TVectorCodes codes) {
  TPlace p{};
  TIVectorRecord* r = _vectorAt(flat, codes, p);
  if (size > uMaxVectorSize)
    KX_THROW(ulVectorSizeLimit, sVectorLimit(), static_cast<int>(size), static_cast<int>(uMaxVectorSize));
  TIVariable* vector = levels_[p.level]->variables[p.index];
  if (size > r->size) {
    TIClass* c = r->elementClass;
    const int create = c ? c->getFunctionList().find("create", static_cast<const TIClass*>(nullptr), {}) : -1;
    if (create < 0) KX_THROW(ulVectorNoCreate, "%s", TIMessage::getString(0x504, r->className));
    const TIRoutine routine = c->getFunctionList()[static_cast<unsigned>(create)]->getAddress();
    while (r->size < size) {
      auto* e = new TIVariable(elementName(vector, r->size).c_str(), c);
      auto& vars = levels_[p.level]->variables;
      vars.insert(vars.begin() + p.index + 1 + r->size, e);
      ++size_;
      _vIndexAdd(e, p.level);
      ++r->size;
      TIVariable* callList[3] = {e, nullptr, nullptr};
      routine(callList);
    }
  }
  while (r->size > size) {
    remove(_flat(p.level, levels_[p.level]->variables[p.index + r->size]));
    --r->size;
  }
}

void TIVariableArray::_vSwap(int flat, unsigned i, unsigned j, TVectorCodes codes) {
  TPlace p{};
  const TIVectorRecord* r = _vectorAt(flat, codes, p);
  _vCheckIndex(i, r->size, codes);
  _vCheckIndex(j, r->size, codes);
  const auto& vars = levels_[p.level]->variables;
  std::swap(vars[p.index + 1 + i]->getContentObject()->value, vars[p.index + 1 + j]->getContentObject()->value);
}

void TIVariableArray::_vRotate(int flat, unsigned from, unsigned to, TVectorCodes codes) {
  TPlace p{};
  const TIVectorRecord* r = _vectorAt(flat, codes, p);
  _vCheckIndex(from, r->size, codes);
  if (to > r->size) _vCheckIndex(to, r->size, codes);
  const auto& vars = levels_[p.level]->variables;
  auto value = [&](unsigned k) -> TIContentNumber::TValue& { return vars[p.index + 1 + k]->getContentObject()->value; };
  const TIContentNumber::TValue moving = value(from);
  if (from < to) {
    for (unsigned k = from; k + 1 < to; ++k) value(k) = value(k + 1);
    value(to - 1) = moving;
  } else if (from > to) {
    for (unsigned k = from; k > to; --k) value(k) = value(k - 1);
    value(to) = moving;
  }
}

void TIVariableArray::_vRemoveElement(int flat, unsigned index, TVectorCodes codes) {
  TPlace p{};
  TIVectorRecord* r = _vectorAt(flat, codes, p);
  _vCheckIndex(index, r->size, codes);
  TIVariable* vector = levels_[p.level]->variables[p.index];
  remove(_flat(p.level, levels_[p.level]->variables[p.index + 1 + index]));
  --r->size;
  for (unsigned k = index; k < r->size; ++k)
    vRename(levels_[p.level]->variables[p.index + 1 + k], elementName(vector, k));
}

void TIVariableArray::vResizeVector(int flat, unsigned size) {
  KX_TRY { _vResize(flat, size, kByFlat); }
  KX_CATCH
}
void TIVariableArray::vResizeVector(const char* name, unsigned size) {
  KX_TRY { _vResize(_vectorFlat(name, kByName), size, kByName); }
  KX_CATCH
}
void TIVariableArray::vSwapInVector(int flat, unsigned i, unsigned j) {
  KX_TRY { _vSwap(flat, i, j, kByFlat); }
  KX_CATCH
}
void TIVariableArray::vSwapInVector(const char* name, unsigned i, unsigned j) {
  KX_TRY { _vSwap(_vectorFlat(name, kByName), i, j, kByName); }
  KX_CATCH
}
void TIVariableArray::vToEndOfVector(int flat, unsigned index) {
  KX_TRY {
    TPlace p{};
    const TVectorCodes codes = kByFlat;
    _vRotate(flat, index, _vectorAt(flat, codes, p)->size, codes);
  }
  KX_CATCH
}
void TIVariableArray::vToEndOfVector(const char* name, unsigned index) {
  KX_TRY {
    TPlace p{};
    const TVectorCodes codes = kByName;
    const int flat = _vectorFlat(name, codes);
    _vRotate(flat, index, _vectorAt(flat, codes, p)->size, codes);
  }
  KX_CATCH
}
void TIVariableArray::vInsertBefore(int flat, unsigned from, unsigned to) {
  KX_TRY { _vRotate(flat, from, to, kByFlat); }
  KX_CATCH
}
void TIVariableArray::vInsertBefore(const char* name, unsigned from, unsigned to) {
  KX_TRY { _vRotate(_vectorFlat(name, kByName), from, to, kByName); }
  KX_CATCH
}
void TIVariableArray::vRemoveElement(int flat, unsigned index) {
  KX_TRY { _vRemoveElement(flat, index, kByFlat); }
  KX_CATCH
}
void TIVariableArray::vRemoveElement(const char* name, unsigned index) {
  KX_TRY { _vRemoveElement(_vectorFlat(name, kByName), index, kByName); }
  KX_CATCH
}
