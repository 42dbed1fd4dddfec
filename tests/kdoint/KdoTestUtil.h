// What the interpreter's tests share: the code (and first text) an action
// raises, with the chain cleared afterwards.
#pragma once

#include <string>
#include <utility>

#include "kxexception/KxError.h"

namespace kdotest {

template <class F>
std::pair<unsigned long, std::string> errorOf(F f) {
  try {
    f();
  } catch (unsigned long c) {
    const auto chain = kx::getErrorChain();
    std::string text = chain.empty() ? "" : chain.front().text;
    kx::deleteError();
    return {c, text};
  }
  return {0, ""};
}

template <class F>
unsigned long codeOf(F f) {
  return errorOf(f).first;
}

}  // namespace kdotest
