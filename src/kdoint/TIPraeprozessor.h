// Cleans one script line in place before it is tokenised:
//  - a line whose first non-blank character is '#' becomes a comment: from
//    there on it is a single line feed;
//  - outside a string, "//" starts a comment the same way;
//  - '"' toggles the in-string flag, and so does every other '/' (also "//"
//    inside a string). Kept as it is: after a lone '/' outside a string a
//    later "//" is no comment and a later ';' is not replaced;
//  - ';' outside a string becomes a line feed, which the tokeniser takes as
//    blank: ';' ends nothing, "a=1; b=2" is one line of six tokens.
#pragma once

class TIPraeprozessor {
 public:
  void processLine(char* line);
};
