// The host class SEARCHPATH: an ordered list of directories in which macros
// and ini files are looked for (the value of a variable is a TSearchPath*).
// It is also the worked example of a host class.
#pragma once

#include <memory>

class TIUserBasic;
class TIVariable;
class TSearchPath;

std::unique_ptr<TIUserBasic> pSearchPathClassProvider();
// The search path of a SEARCHPATH variable, null for another class.
TSearchPath* pGetSearchPath(const TIVariable* v);
