// Error codes of the command interpreter, one block per layer. Each is raised
// with the text of its message id (TIMessage), where it has one.
#pragma once

namespace kdoint {

// --- files, the input stack, the input/output manager
inline constexpr unsigned long ulFileAlreadyOpen = 0xe3720001UL;      // 107
inline constexpr unsigned long ulFileCannotOpen = 0xe3020002UL;       // 108
inline constexpr unsigned long ulFileNotEmpty = 0xe3320002UL;         // 109
inline constexpr unsigned long ulCloseClosed = 0xe3020003UL;          // 10a
inline constexpr unsigned long ulCloseFailed = 0xe3020004UL;          // 10b
inline constexpr unsigned long ulIsLineClosed = 0xe3020005UL;
inline constexpr unsigned long ulReadFailed = 0xe3320006UL;
inline constexpr unsigned long ulReadClosed = 0xe3020007UL;
inline constexpr unsigned long ulReadNoLine = 0xe3020008UL;
inline constexpr unsigned long ulWriteClosed = 0xe3020009UL;
inline constexpr unsigned long ulWriteFailed = 0xe302000aUL;
inline constexpr unsigned long ulWriteShort = 0xe302000bUL;
inline constexpr unsigned long ulStackIsLineEmpty = 0xe502000cUL;     // 10c
inline constexpr unsigned long ulStackReadEmpty = 0xe502000dUL;       // 10c
inline constexpr unsigned long ulOutputTwice = 0xe3720038UL;          // 105
inline constexpr unsigned long ulIsInputNoInput = 0xe312003aUL;       // 101
inline constexpr unsigned long ulReadInputNoInput = 0xe312003bUL;     // 101
inline constexpr unsigned long ulWriteOutputNoOutput = 0xe312003cUL;  // 102
inline constexpr unsigned long ulRecordingOn = 0xe5020084UL;          // 10d
inline constexpr unsigned long ulRecordingOff = 0xe5020085UL;         // 10e
inline constexpr unsigned long ulRecordStartDepth = 0xe762008cUL;     // 110
inline constexpr unsigned long ulRecordEndDepth = 0xe762008dUL;       // 111

// --- tokens
inline constexpr unsigned long ulDeleteTokenIndex = 0xe742000eUL;     // 100b
inline constexpr unsigned long ulChangeTokenIndex = 0xe7420076UL;     // 100b
inline constexpr unsigned long ulTokenIndex = 0xe742002bUL;           // 411; also a line of more than 100 tokens
inline constexpr unsigned long ulNotAFloat = 0xe702002fUL;            // 305
inline constexpr unsigned long ulFloatUnreadable = 0xe7320030UL;      // 306
inline constexpr unsigned long ulNotAnInteger = 0xe7020033UL;         // 307
inline constexpr unsigned long ulIntegerUnreadable = 0xe7320031UL;    // 308
inline constexpr unsigned long ulHexUnreadable = 0xe7320032UL;        // 309
inline constexpr unsigned long ulNumberSecondX = 0xe602000fUL;        // 'x' in a number that is no longer plain
inline constexpr unsigned long ulNumberSecondPoint = 0xe6020010UL;    // '.' in a number that is no longer plain
inline constexpr unsigned long ulLiteralOpen = 0xe7520013UL;          // a literal without its end

}  // namespace kdoint

namespace kdoint {

// --- classes and functions
inline constexpr unsigned long ulFunctionIndex = 0xe7420049UL;        // 1003
inline constexpr unsigned long ulClassIndex = 0xe742001cUL;           // 208
inline constexpr unsigned long ulClassAddressIndex = 0xe7420034UL;    // 208
inline constexpr unsigned long ulClassAddressName = 0xe7520035UL;     // 209
inline constexpr unsigned long ulClassRemoveIndex = 0xe742002cUL;     // 208
inline constexpr unsigned long ulClassHasInstances = 0xe522002dUL;    // 20a
inline constexpr unsigned long ulClassHasReferences = 0xe522002eUL;   // 20b

// --- values and variables
inline constexpr unsigned long ulReferenceUnderflow = 0xe712009bUL;   // "Unterlauf Referenzzähler"
inline constexpr unsigned long ulListIndex = 0xe7420015UL;            // 30a (also 0xe7420016, 0xe7420017)
inline constexpr unsigned long ulCloseNoLevel = 0xe7420018UL;         // 301
inline constexpr unsigned long ulFlatIndex = 0xe7420019UL;            // 100c
inline constexpr unsigned long ulFlatIndexRemove = 0xe742001aUL;      // 100c
inline constexpr unsigned long ulRemoveUnknown = 0xe0a2001aUL;        // 302
inline constexpr unsigned long ulRemoveElement = 0xe7520082UL;        // 312
inline constexpr unsigned long ulNoDestroy = 0xe7020065UL;            // 503
inline constexpr unsigned long ulMoveNameTaken = 0xe712009aUL;        // "Variable %s existiert bereits auf Level %d"

}  // namespace kdoint

namespace kdoint {
// A user's format that would read an argument it is not given (our own code).
inline constexpr unsigned long ulFormatUnusable = 0xe75200c1UL;
}  // namespace kdoint
