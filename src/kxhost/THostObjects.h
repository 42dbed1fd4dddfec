// The value of a host object variable: a pointer owned by the variable,
// made by "create" and freed by "destroy".
#pragma once

#include "kdoint/TIVariable.h"

namespace kxhost {
template <class T>
T& object(TIVariable* v) {
  if (!v->getPointer()) v->setContent(static_cast<void*>(new T));
  return *static_cast<T*>(v->getPointer());
}
template <class T>
void makeObject(TIVariable* v) {
  delete static_cast<T*>(v->getPointer());
  v->setContent(static_cast<void*>(nullptr));
  v->setContent(static_cast<void*>(new T));
}
template <class T>
void freeObject(TIVariable* v) {
  delete static_cast<T*>(v->getPointer());
  v->setContent(static_cast<void*>(nullptr));
}
}  // namespace kxhost
