// The entry the interpreter's use() calls: registers every host class.
#include "kxhost/KxHost.h"

#include "kdoint/TIInterpreter.h"

extern "C" __attribute__((visibility("default"))) void useDll(void* execLine) {
  auto exec = reinterpret_cast<TIUserBasic::TExecLine>(execLine);
  kxhost::pPictureClass()->registerClass(exec);
  kxhost::pRegionClass()->registerClass(exec);
  kxhost::pColorPictureClass()->registerClass(exec);
  kxhost::pClassifierClass()->registerClass(exec);
  kxhost::pClassListClass()->registerClass(exec);
  kxhost::pResultClass()->registerClass(exec);
  kxhost::pObjectListClass()->registerClass(exec);
  kxhost::pStatisticClass()->registerClass(exec);
  kxhost::pIntTimeClass()->registerClass(exec);
}
