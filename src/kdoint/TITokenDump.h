// Plays the files of an input stack line by line through the line cleaner
// and the tokeniser and describes what comes out, one line per input line:
//   <file>:<line>: <CODE>(<code>) 'text' ...
// or, for a line that fails, the error code and the first text of its chain.
// The tool `tokdump` and the tests print with it.
#pragma once

#include <string>

class TIFileReadStack;

std::string sDumpTokens(TIFileReadStack& stack);
