// Values and variables. Every value of the language is a named variable of a
// class; its content is shared by reference, so that a reference parameter
// and its actual variable are one value.
//
// The content is one 8-byte word read as the class says: INT as a 32-bit
// integer (the script language's "long" is 4 bytes), FLOAT as double, LITERAL
// as char*, host classes as void*. A pointer is stored whole, never through
// 32 bits.
#pragma once

#include <cstdint>
#include <string>

class TIClass;

class TIContentNumber {
 public:
  union TValue {
    int32_t l;
    double d;
    char* s;
    void* p;
  };
  TValue value{};
  unsigned uReference = 0;

  void vIncreaseReference() { ++uReference; }
  // At count 0: 0xe712009b ("Unterlauf Referenzzähler").
  void vDecreaseReference();
  void vClear() { value.d = 0; value.p = nullptr; }
};

class TIVariable {
 public:
  // Counts an instance of the class; a fresh content with count 1, zeroed.
  TIVariable(const char* name, TIClass* c);
  // Drops the content (deleted at count 0) and the instance.
  ~TIVariable();
  TIVariable(const TIVariable&) = delete;
  TIVariable& operator=(const TIVariable&) = delete;

  const char* getName() const { return name_.c_str(); }
  void setName(const std::string& name) { name_ = name; }
  TIClass* getClass() const { return class_; }
  // From now on this variable is `other`'s value.
  void vSetReference(TIVariable* other);
  unsigned uGetReferenceNumber() const { return content_->uReference; }
  TIContentNumber* getContentObject() const { return content_; }

  int32_t getLong() const { return content_->value.l; }
  double getDouble() const { return content_->value.d; }
  const char* getString() const { return content_->value.s; }
  void* getPointer() const { return content_->value.p; }
  void setContent(int32_t v) { content_->value.p = nullptr; content_->value.l = v; }
  void setContent(double v) { content_->value.d = v; }
  void setContent(void* p) { content_->value.p = p; }
  // Frees the old text, stores a copy and turns every "\n" (two characters)
  // into CR LF, in place. Null stores null.
  void setContent(const char* text);
  // The status text of the class for the inspection pages, behind
  // "Klasse: %s\r\n" and "Referenzen: %d\r\n".
  void vGetStatus(char* buffer, int size) const;

 private:
  friend class TIVariableArray;
  // Where the variable stands: kept by the variable array that holds it.
  class TIVariableArray* owner_ = nullptr;
  unsigned level_ = 0;

  std::string name_;
  TIClass* class_;
  TIContentNumber* content_;
};

// Turns every two-character "\n" of a text into CR LF, in place.
void vExpandLineFeeds(char* text);
