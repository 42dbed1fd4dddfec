// The value of a host object variable: a pointer owned by the variable,
// made by "create" and freed by "destroy".
#pragma once

#include <memory>

#include "kdoint/TIVariable.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"

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

// The classifier of a CLASSIFIER variable: a float threshold with two
// classes until another kind is chosen.
struct THostClassifier {
  std::unique_ptr<Rastrix::TPixelKlassifikatorTypThreshold<float>> k = make(2);
  static std::unique_ptr<Rastrix::TPixelKlassifikatorTypThreshold<float>> make(unsigned n) {
    auto p = std::make_unique<Rastrix::TPixelKlassifikatorTypThreshold<float>>();
    p->resize(n);
    return p;
  }
};
}  // namespace kxhost
