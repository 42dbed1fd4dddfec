#include "kdoint/TIVariableArray.h"

#include <algorithm>
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

bool isVector(const TIVariable* v) { return v->getClass() && v->getClass()->getName() == "VECTOR"; }
unsigned vectorSize(const TIVariable* v) {
  const auto* r = static_cast<const TIVectorRecord*>(v->getPointer());
  return r ? r->size : 0;
}
}  // namespace

TIVariableArray::~TIVariableArray() {
  while (!levels_.empty()) {
    try {
      closeLevel(true);
    } catch (unsigned long) {
      kx::deleteError();
    }
  }
}

void TIVariableArray::openLevel() { levels_.push_back(new TIVariableList); }

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
  // Outermost first; a variable joins behind the others of its level.
  auto pos = std::find_if(same.begin(), same.end(), [&](const TIVariable* o) { return levelOf_[o] > level; });
  same.insert(pos, v);
  levelOf_[v] = level;
}

void TIVariableArray::_vIndexRemove(TIVariable* v) {
  auto it = byName_.find(v->getName());
  if (it != byName_.end()) {
    auto& same = it->second;
    same.erase(std::remove(same.begin(), same.end(), v), same.end());
    if (same.empty()) byName_.erase(it);
  }
  levelOf_.erase(v);
}

TIVariable* TIVariableArray::addressOf(const char* name) const {
  if (!name) return nullptr;
  const auto it = byName_.find(name);
  return it == byName_.end() || it->second.empty() ? nullptr : it->second.back();
}

int TIVariableArray::find(const char* name) const {
  const TIVariable* v = addressOf(name);
  return v ? _flat(levelOf_.at(v), v) : -1;
}

int TIVariableArray::find1(const char* name) const {
  const TIVariable* v = addressOf(name);
  if (!v || levels_.empty() || levelOf_.at(v) != levels_.size() - 1) return -1;
  return _flat(levelOf_.at(v), v);
}

int TIVariableArray::find(const TIVariable* v) const {
  const auto it = levelOf_.find(v);
  return it == levelOf_.end() ? -1 : _flat(it->second, v);
}

int TIVariableArray::iGetLevel(const char* name) const {
  const TIVariable* v = addressOf(name);
  return v ? static_cast<int>(levelOf_.at(v)) : -1;
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
  const auto it = levelOf_.find(v);
  if (it == levelOf_.end()) {
    v->setName(name);
    return;
  }
  const unsigned level = it->second;
  _vIndexRemove(v);
  v->setName(name);
  _vIndexAdd(v, level);
}
