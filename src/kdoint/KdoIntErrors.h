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
// vector operations by name / by flat index: "Index=%d >= Size=%d", not a VECTOR
inline constexpr unsigned long ulVectorRangeByName = 0xe74200b0UL;
inline constexpr unsigned long ulVectorNotVectorByName = 0xe75200b1UL;
inline constexpr unsigned long ulVectorRange = 0xe74200b2UL;
inline constexpr unsigned long ulVectorNotVector = 0xe75200b3UL;

// --- variable definition
inline constexpr unsigned long ulDefineTooShort = 0xe612003eUL;       // 412
inline constexpr unsigned long ulDefineExists = 0xe772003fUL;         // 303
inline constexpr unsigned long ulDefineNoOpen = 0xe7320040UL;         // 30c
inline constexpr unsigned long ulDefineNoClose = 0xe7320041UL;        // 30b
inline constexpr unsigned long ulDefineBadArgument = 0xe7320042UL;    // 40a
inline constexpr unsigned long ulDefineNothingRight = 0xe742004aUL;   // 100d
inline constexpr unsigned long ulDefineTooMuchRight = 0xe742004bUL;   // 100e
inline constexpr unsigned long ulDefineNoCreate = 0xe7520048UL;       // 1017, completed
inline constexpr unsigned long ulVectorDefineTokens = 0xe7520066UL;   // 414
inline constexpr unsigned long ulVectorDefineNoClose = 0xe7520067UL;  // 311
inline constexpr unsigned long ulVectorSizeNotInt = 0xe7520068UL;     // 308
inline constexpr unsigned long ulVectorSizeUnknown = 0xe7520069UL;    // 302
inline constexpr unsigned long ulVectorSizeToken = 0xe732006aUL;      // 40a
inline constexpr unsigned long ulVectorNoCreate = 0xe072006bUL;       // 504

// --- call lists
inline constexpr unsigned long ulCallThisUnknown = 0xe0a20043UL;      // 302
inline constexpr unsigned long ulCallReturnUnknown = 0xe0a20044UL;    // 302
inline constexpr unsigned long ulCallVariableUnknown = 0xe0a20045UL;  // 302
inline constexpr unsigned long ulCallNoBuiltInClass = 0xe0a20046UL;   // 205, 206, 207

// --- casts (our own codes)
inline constexpr unsigned long ulCastExists = 0xe77200c3UL;
inline constexpr unsigned long ulCastMissing = 0xe75200c4UL;

}  // namespace kdoint

namespace kdoint {
// A user's format that would read an argument it is not given (our own code).
inline constexpr unsigned long ulFormatUnusable = 0xe75200c1UL;
// A handle in a class or method line that was never registered, or of the
// wrong kind (our own code).
inline constexpr unsigned long ulUnknownHandle = 0xe75200c2UL;
// A vector size below 0 or above the limit (our own code).
inline constexpr unsigned long ulVectorSizeLimit = 0xe74200c5UL;
}  // namespace kdoint

namespace kdoint {
// The codes of folding "name [ index ]" into one token, one set per parser
// that does it: too few tokens, no "]", index variable not INT, index
// variable unknown, index token of another kind.
struct TIIndexCodes {
  unsigned long tooFew, noClose, notInt, unknown, badToken;
};
inline constexpr TIIndexCodes ulIndexVariableParser{0xe7520077UL, 0xe7320078UL, 0xe7520079UL, 0xe752007aUL,
                                                   0xe732007bUL};
inline constexpr TIIndexCodes ulIndexLineParser{0xe752006cUL, 0xe732006dUL, 0xe752006eUL, 0xe752006fUL,
                                               0xe7320070UL};
inline constexpr TIIndexCodes ulIndexConditionParser{0xe752007cUL, 0xe732007dUL, 0xe752007eUL, 0xe752007fUL,
                                                    0xe7320080UL};
inline constexpr TIIndexCodes ulIndexProcedureCall{0xe74200a5UL, 0xe09200a6UL, 0xe04200a7UL, 0xe78200a8UL,
                                                  0xe09200a9UL};
}  // namespace kdoint

namespace kdoint {
// --- the line parser
inline constexpr unsigned long ulBlockExpected = 0xe7520036UL;        // 1007
inline constexpr unsigned long ulBlockCloseDepth = 0xe6120022UL;      // 1008
inline constexpr unsigned long ulBlockCloseStatus = 0xe7520023UL;     // 1009
inline constexpr unsigned long ulCloseNoChild = 0xe5020088UL;         // 1018
inline constexpr unsigned long ulRepeatNoChild = 0xe5020089UL;        // 1019
inline constexpr unsigned long ulRepeatNoCondition = 0xe502008aUL;    // 101a
inline constexpr unsigned long ulToolkitException = 0xe022008bUL;     // 101b
inline constexpr unsigned long ulExecTooShort = 0xe752005bUL;         // 100a
inline constexpr unsigned long ulExecUnknownForm = 0xe7520057UL;      // 501
inline constexpr unsigned long ulAssignUnknown = 0xe0a20063UL;        // 302
inline constexpr unsigned long ulAssignVarForm = 0xe7520064UL;        // 1006
// A line that starts with nothing the language knows (our own code).
inline constexpr unsigned long ulUnknownSyntax = 0xe75200c6UL;        // 1006

// --- conditions
inline constexpr unsigned long ulConditionTokens = 0xe752005cUL;      // 413
inline constexpr unsigned long ulConditionNoOpen = 0xe732005dUL;      // 408
inline constexpr unsigned long ulConditionNoClose = 0xe732005eUL;     // 407
inline constexpr unsigned long ulConditionLeft = 0xe752005fUL;        // 1001
inline constexpr unsigned long ulConditionRight = 0xe7520060UL;       // 1001
inline constexpr unsigned long ulConditionOperator = 0xe7520061UL;    // 502
inline constexpr unsigned long ulConditionNotFound = 0xe7520062UL;    // 1014

// --- method and built-in calls
inline constexpr unsigned long ulCallProcedurTokens = 0xe7520052UL;   // 40e
inline constexpr unsigned long ulCallFunctionTokens = 0xe7520051UL;   // 40e
inline constexpr unsigned long ulCallOperatorFew = 0xe7520058UL;      // 40e
inline constexpr unsigned long ulCallOperatorMany = 0xe7520059UL;     // 40f
inline constexpr unsigned long ulCallAssignTokens = 0xe752005aUL;     // 410
inline constexpr unsigned long ulCallNoOpen = 0xe7320053UL;           // 406
inline constexpr unsigned long ulCallNoClose = 0xe7320054UL;          // 407
inline constexpr unsigned long ulCallBadArgument = 0xe7520055UL;      // 1001
inline constexpr unsigned long ulCallNotFound = 0xe7520056UL;         // 1016, completed
inline constexpr unsigned long ulEmbeddedProcedurTokens = 0xe752004dUL;  // 200d
inline constexpr unsigned long ulEmbeddedFunctionTokens = 0xe752004cUL;  // 200c
inline constexpr unsigned long ulEmbeddedNoOpen = 0xe732004eUL;       // 406
inline constexpr unsigned long ulEmbeddedNoClose = 0xe732004fUL;      // 407
inline constexpr unsigned long ulEmbeddedNotFound = 0xe7520050UL;     // 1015, completed

// --- class declarations
inline constexpr unsigned long ulClassLineTokens = 0xe752001fUL;      // 40b
inline constexpr unsigned long ulClassLineToken = 0xe7320020UL;       // 40c, 415, 416
inline constexpr unsigned long ulClassExists = 0xe7720021UL;          // 20c; "Klasse %s existiert nicht"
inline constexpr unsigned long ulMethodTooShort = 0xe6120024UL;       // 40d
inline constexpr unsigned long ulMethodResult = 0xe7520025UL;         // 401
inline constexpr unsigned long ulMethodName = 0xe7520026UL;           // 402
inline constexpr unsigned long ulMethodOpen = 0xe7520027UL;           // 403
inline constexpr unsigned long ulMethodClose = 0xe7520028UL;          // 404
inline constexpr unsigned long ulMethodNumber = 0xe7520029UL;         // 405
inline constexpr unsigned long ulMethodArgument = 0xe752002aUL;       // 20d
inline constexpr unsigned long ulMethodExists = 0xe77200b6UL;

// --- procedures
inline constexpr unsigned long ulProcNotFound = 0xe09200a0UL;
inline constexpr unsigned long ulProcCallNoOpen = 0xe09200a1UL;
inline constexpr unsigned long ulProcCallNoClose = 0xe09200a2UL;
inline constexpr unsigned long ulProcCallFormat = 0xe09200a4UL;
inline constexpr unsigned long ulProcVariableUnknown = 0xe78200aaUL;
inline constexpr unsigned long ulProcDeclIncomplete = 0xe09200abUL;
inline constexpr unsigned long ulProcDeclNoName = 0xe09200acUL;
inline constexpr unsigned long ulProcDeclNoOpen = 0xe09200adUL;
inline constexpr unsigned long ulProcDeclNoClose = 0xe09200aeUL;
inline constexpr unsigned long ulProcDeclVector = 0xe08200afUL;
inline constexpr unsigned long ulProcExists = 0xe762009eUL;
inline constexpr unsigned long ulProcIndex = 0xe742009fUL;

// --- built-in functions
inline constexpr unsigned long ulReferenceUnknown = 0xe09200b4UL;
inline constexpr unsigned long ulDestroyUnknown = 0xe7520081UL;       // 302
inline constexpr unsigned long ulGlobalUnknown = 0xe7820099UL;        // 313
inline constexpr unsigned long ulExecFailed = 0xe7520083UL;           // 505
inline constexpr unsigned long ulMacroNotFound = 0xe312009cUL;
inline constexpr unsigned long ulMacroDirUnknown = 0xe7820086UL;      // 302
inline constexpr unsigned long ulMacroDirMissing = 0xe3c20087UL;      // 10f
inline constexpr unsigned long ulUseLoad = 0xe312008eUL;              // 112
inline constexpr unsigned long ulUsePackage = 0xe022009dUL;
inline constexpr unsigned long ulUseEntry = 0xe0920090UL;             // 113
// postCommand could not reach the pipe (our own code).
inline constexpr unsigned long ulPostCommand = 0xe30200c7UL;
}  // namespace kdoint
