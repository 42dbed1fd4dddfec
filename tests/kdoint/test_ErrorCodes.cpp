// Every named error code of the interpreter against the number it must have.
#include <gtest/gtest.h>

#include "kdoint/KdoIntErrors.h"

TEST(ErrorCodes, kdointNamesHaveTheirNumbers) {
  using namespace kdoint;
  const struct {
    const char* name;
    unsigned long named, literal;
  } codes[] = {
      {"ulFileAlreadyOpen", ulFileAlreadyOpen, 0xe3720001UL}, {"ulFileCannotOpen", ulFileCannotOpen, 0xe3020002UL},
      {"ulFileNotEmpty", ulFileNotEmpty, 0xe3320002UL},       {"ulCloseClosed", ulCloseClosed, 0xe3020003UL},
      {"ulCloseFailed", ulCloseFailed, 0xe3020004UL},         {"ulIsLineClosed", ulIsLineClosed, 0xe3020005UL},
      {"ulReadFailed", ulReadFailed, 0xe3320006UL},           {"ulReadClosed", ulReadClosed, 0xe3020007UL},
      {"ulReadNoLine", ulReadNoLine, 0xe3020008UL},           {"ulWriteClosed", ulWriteClosed, 0xe3020009UL},
      {"ulWriteFailed", ulWriteFailed, 0xe302000aUL},         {"ulWriteShort", ulWriteShort, 0xe302000bUL},
      {"ulStackIsLineEmpty", ulStackIsLineEmpty, 0xe502000cUL}, {"ulStackReadEmpty", ulStackReadEmpty, 0xe502000dUL},
      {"ulOutputTwice", ulOutputTwice, 0xe3720038UL},         {"ulIsInputNoInput", ulIsInputNoInput, 0xe312003aUL},
      {"ulReadInputNoInput", ulReadInputNoInput, 0xe312003bUL},
      {"ulWriteOutputNoOutput", ulWriteOutputNoOutput, 0xe312003cUL},
      {"ulRecordingOn", ulRecordingOn, 0xe5020084UL},         {"ulRecordingOff", ulRecordingOff, 0xe5020085UL},
      {"ulRecordStartDepth", ulRecordStartDepth, 0xe762008cUL}, {"ulRecordEndDepth", ulRecordEndDepth, 0xe762008dUL},
      {"ulDeleteTokenIndex", ulDeleteTokenIndex, 0xe742000eUL}, {"ulChangeTokenIndex", ulChangeTokenIndex, 0xe7420076UL},
      {"ulTokenIndex", ulTokenIndex, 0xe742002bUL},           {"ulNotAFloat", ulNotAFloat, 0xe702002fUL},
      {"ulFloatUnreadable", ulFloatUnreadable, 0xe7320030UL}, {"ulNotAnInteger", ulNotAnInteger, 0xe7020033UL},
      {"ulIntegerUnreadable", ulIntegerUnreadable, 0xe7320031UL}, {"ulHexUnreadable", ulHexUnreadable, 0xe7320032UL},
      {"ulNumberSecondX", ulNumberSecondX, 0xe602000fUL},     {"ulNumberSecondPoint", ulNumberSecondPoint, 0xe6020010UL},
      {"ulLiteralOpen", ulLiteralOpen, 0xe7520013UL},
      {"ulFunctionIndex", ulFunctionIndex, 0xe7420049UL},     {"ulClassIndex", ulClassIndex, 0xe742001cUL},
      {"ulClassAddressIndex", ulClassAddressIndex, 0xe7420034UL}, {"ulClassAddressName", ulClassAddressName, 0xe7520035UL},
      {"ulClassRemoveIndex", ulClassRemoveIndex, 0xe742002cUL}, {"ulClassHasInstances", ulClassHasInstances, 0xe522002dUL},
      {"ulClassHasReferences", ulClassHasReferences, 0xe522002eUL},
      {"ulReferenceUnderflow", ulReferenceUnderflow, 0xe712009bUL}, {"ulListIndex", ulListIndex, 0xe7420015UL},
      {"ulCloseNoLevel", ulCloseNoLevel, 0xe7420018UL},       {"ulFlatIndex", ulFlatIndex, 0xe7420019UL},
      {"ulFlatIndexRemove", ulFlatIndexRemove, 0xe742001aUL}, {"ulRemoveUnknown", ulRemoveUnknown, 0xe0a2001aUL},
      {"ulRemoveElement", ulRemoveElement, 0xe7520082UL},     {"ulNoDestroy", ulNoDestroy, 0xe7020065UL},
      {"ulMoveNameTaken", ulMoveNameTaken, 0xe712009aUL},
      {"ulFormatUnusable", ulFormatUnusable, 0xe75200c1UL},  // our own
  };
  for (const auto& c : codes) EXPECT_EQ(c.named, c.literal) << c.name;
}
