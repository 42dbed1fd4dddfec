// World coordinate systems of planes: how a line and column number become X
// and Y in some unit, what a length and an area are, and what the third
// coordinate means.
//
// Systems are shared objects, referred to by the descriptions (commons) of
// planes, each of which counts as one user (vIncreaseUser/vDecreaseUser). The
// process-wide TCoordinateSystemVector is the owner of all of them and is
// itself the default system: reach it by pGetDefaultCoordinateSystem(). It is
// created on first use and never destroyed, so it outlives every plane.
//
// The classes, numbered by ETypOfKS (the number files store as "KoordTyp"):
//   0 TCoordinateSystem                  this header: the identity
//   1 TSizeShiftCoordinateSystem         TSizeShiftCoordinateSystem.h
//   2 TLinearCoordinateSystem            TLinearCoordinateSystem.h
//   3 TCoordinateSystemProjektionswand   TCoordinateSystemProjektionswand.h
//   4 TCoordinateSystemKugel             TCoordinateSystemKugel.h
//   5 TCoordinateSystemLvk               TCoordinateSystemLvk.h
//
// Two text forms. The string form (file headers of planes and TIFF files) is
// one "key=value\r\n" line per field, "KoordTyp" first; the ini form has the
// same keys without "KoordTyp", in a section of its own. Numbers are written
// with the point whatever the locale ("%le" has six digits after it).
//
// Units: world X and Y in the units of the axes; lengths in the length unit;
// areas in the area unit, scaled by the area factor. Texts are Latin-1
// ("Pixel\xB2", "\xB0").
//
// Nothing here is locked: the systems and the vector belong to the thread
// that loads pictures.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "kxexception/TTimeStamp.h"
#include "kxexception/TSignatur.h"

class TKxIniFile;
class TIniFilename;

namespace Rastrix {

// The class of a system; the number is what ini files and file headers store
// under "KoordTyp".
enum ETypOfKS : unsigned char {
  eKSDefault = 0,          // TCoordinateSystem
  eKSSizeShift = 1,        // TSizeShiftCoordinateSystem
  eKSLinear = 2,           // TLinearCoordinateSystem
  eKSProjektionswand = 3,  // TCoordinateSystemProjektionswand
  eKSKugel = 4,            // TCoordinateSystemKugel
  eKSLvk = 5               // TCoordinateSystemLvk
};

// The base system: the identity. Column and line are X and Y in pixels.
class TCoordinateSystem {
 public:
  TCoordinateSystem();
  // Systems are shared by pointer and counted: they are not copied as objects
  // (vCopy copies the parameters of one system into another).
  TCoordinateSystem(const TCoordinateSystem&) = delete;
  TCoordinateSystem& operator=(const TCoordinateSystem&) = delete;
  virtual ~TCoordinateSystem();

  // The ini form: every key of the class in `section`; the present values
  // are the defaults of missing keys. Writing clears the changed flag.
  virtual void vReadIni(TKxIniFile* ini, const char* section);
  virtual void vWriteIni(TKxIniFile* ini, const char* section) const;
  // The stored area factor.
  virtual double dGetFactorAUnit() const { return dFactorA; }
  // Area of one pixel in the area unit (the stored factor here).
  virtual double dGetFactorA() const { return dFactorA; }
  // The name of the class in the current language.
  virtual const char* cpGetTypName() const;
  // World X and Y of pixel (column, line); null pointers are skipped.
  virtual void vGetWorldXY(double* x, double* y, int column, int line) const;
  virtual void vGetWorldXY2(double* x, double* y, double column, double line) const;
  // World area of the pixel (column, line): dGetFactorA().
  virtual void vGetWorldA(double* a, int column, int line) const;
  // True when world x follows from the column alone and linearly, world y
  // from the line alone, and the pixel area is the same everywhere: then a
  // run of a line is a start, a step and one area.
  virtual bool bIsLinearAlongLines() const { return true; }
  // Pixel of world (x, y), truncated toward zero; null pointers are skipped.
  virtual void vGetOrgXY(int* column, int* line, double x, double y) const;
  // The same without truncation.
  virtual void vGetOrgXY2(double* column, double* line, double x, double y) const;
  // Measures of the line from pixel (c1, l1) to (c2, l2), both ends through
  // vGetWorldXY. Length: Euclidean, in the length unit. Line area: the
  // trapezoid between the line and the X axis, factor * (X2 - X1) *
  // (Y1 + Y2) / 2, with its sign, for summing along a contour. Circle: the
  // line is the radius; circumference 2 pi r, area factor * pi r². The
  // factor is dGetFactorAUnit(): the world coordinates carry the scale.
  virtual double dGetLineLength(int c1, int l1, int c2, int l2) const;
  virtual double dGetLineArea(int c1, int l1, int c2, int l2) const;
  virtual double dGetCircleLength(int c1, int l1, int c2, int l2) const;
  virtual double dGetCircleArea(int c1, int l1, int c2, int l2) const;
  // Equal parameters: every text but the system's name, the signature, the
  // changeable flag and the possibilities are equal; value Z differs by less
  // than 0.0001 and the area factors (dGetFactorA) by less than 0.0001
  // relative. The classes compare their own parameters on top. Null: false.
  virtual bool bEqualParam(const TCoordinateSystem* other) const;
  // Appends the string form to the zero-terminated `text`, which must have
  // room for uGetStringSize() more bytes.
  virtual void vWrite2String(char* text) const;
  // Reads the string form (without "KoordTyp", which chose the class). Each
  // key is looked for anywhere in the text, preferring one at the start of a
  // line; its value is the first word after '=' (a blank ends it, so
  // "NameKS=Big hall" reads "Big"). An empty value gives an empty text (a
  // fresh signature for "Signatur") and keeps a number as it is. The first
  // missing key ends the reading, keeping what was read. A unit starting
  // with the UTF-8 degree sign gets the Latin-1 byte. Null reads nothing.
  virtual void vReadFromString(const char* text);
  // Takes every parameter of `other` (name and signature included) that this
  // class has; the user count and the class stay. Stamps now. Null: nothing.
  virtual void vCopy(const TCoordinateSystem* other);

  // The string form as a text; vWrite2String appends this.
  std::string sWrite2String() const;
  // Bytes vWrite2String appends, its terminating zero included.
  std::size_t uGetStringSize() const { return sWrite2String().size() + 1; }

  // Users: the plane descriptions that refer to this system. A system with
  // no users is not deleted by that (only TCoordinateSystemVector deletes).
  void vIncreaseUser() { ++iUser; }
  void vDecreaseUser() { --iUser; }
  int iGetUser() const { return iUser; }
  bool bIsUser() const { return iUser > 0; }

  ETypOfKS eGetTypOfKS() const { return eTyp; }
  const TSignatur& rGetSignatur() const { return signatur; }
  // Sets the signature alone (a system rebuilt from a stored name and
  // signature); no change is recorded.
  void vSetSignatur(const char* text) { signatur.set(text); }
  const Process::TTimeStamp& getTimeStamp() const { return timeStamp; }
  bool bIsChanged() const { return bChanged; }
  bool bIsChangeable() const { return bChangeable; }
  void vSetChangeable(bool b) { bChangeable = b; }
  // The changed flag alone.
  void vSetChanged(bool b) { bChanged = b; }
  // A change: the changed flag, a fresh signature and the time stamp.
  void vSetChanged();

  const std::string& rStrGetNameKS() const { return sName; }
  const std::string& rStrGetNameX() const { return sNameX; }
  const std::string& rStrGetUnitX() const { return sUnitX; }
  const std::string& rStrGetNameY() const { return sNameY; }
  const std::string& rStrGetUnitY() const { return sUnitY; }
  const std::string& rStrGetUnitL() const { return sUnitL; }
  const std::string& rStrGetUnitA() const { return sUnitA; }
  const std::string& rStrGetNameZ() const { return sNameZ; }
  const std::string& rStrGetUnitZ() const { return sUnitZ; }
  double dGetValueZ() const { return dValueZ; }
  unsigned long ulGetPossibilities() const { return ulPossibilities; }

  // Each does nothing unless the system is changeable and the value differs;
  // then it stores and calls vSetChanged(). A unit X given as the UTF-8 degree
  // sign is stored as the Latin-1 byte.
  void setNameKS(const std::string& name);
  void setNameUnitX(const std::string& name, const std::string& unit);
  void setNameUnitY(const std::string& name, const std::string& unit);
  void setUnitL(const std::string& unit);
  void setUnitA(const std::string& unit);
  void setFactorA(double factor);
  // These go through whether changeable or not. The possibilities keep their
  // low 32 bits (a long of the files).
  void vSetNameZ(const std::string& name);
  void vSetUnitZ(const std::string& unit);
  void vSetValueZ(double value);
  void vSetPossibilities(unsigned long bits);

 protected:
  explicit TCoordinateSystem(ETypOfKS typ);

  // The keys of the class appended to the string form (the base writes
  // "KoordTyp" first) and read back; false: a key was missing, stop.
  virtual void _vAppendKeys(std::string& text) const;
  virtual bool _bReadKeys(const char* text);
  // Replaces the stored name alone: no signature, no changed flag.
  void _vSetNameOnly(const std::string& name) { sName = name; }

  // The fixed axes of the 3-D classes (vInitOwn): each value that differs is
  // stored, and any difference is a change (vSetChanged). Null texts and an
  // absent value Z are left as they are.
  struct TOwnValues {
    const char* nameX;
    const char* unitX;
    const char* nameY;
    const char* unitY;
    const char* nameZ;
    const char* unitZ;
    const char* unitL;
    const char* unitA;
    double factorA;
    bool bValueZ;
    double valueZ;
    unsigned long possibilities;
  };
  void _vInitOwn(const TOwnValues& v);

  // Helpers of the string form for the derived classes: one line, and one
  // value read (false: the key is missing).
  static void _vAppendLine(std::string& text, const char* key, const std::string& value);
  static void _vAppendLine(std::string& text, const char* key, unsigned long value);
  static void _vAppendLine(std::string& text, const char* key, long value);
  static void _vAppendLine(std::string& text, const char* key, double value);
  static bool _bReadWord(const char* text, const char* key, std::string& word, bool& empty);
  static bool _bReadValue(const char* text, const char* key, std::string& value);
  static bool _bReadValue(const char* text, const char* key, double& value);
  static bool _bReadValue(const char* text, const char* key, int& value);
  static bool _bReadValue(const char* text, const char* key, bool& value);

  ETypOfKS eTyp = eKSDefault;
  std::atomic<int> iUser{0};  // planes of any thread count themselves
  std::string sName = "Default";
  std::string sNameX = "X";
  std::string sUnitX = "Pixel";
  std::string sNameY = "Y";
  std::string sUnitY = "Pixel";
  std::string sUnitL = "Pixel";
  std::string sUnitA = "Pixel\xB2";
  bool bChangeable = false;
  double dFactorA = 1.0;
  std::string sNameZ;
  std::string sUnitZ;
  double dValueZ = 0.0;
  unsigned long ulPossibilities = 0;
  mutable bool bChanged = false;  // cleared by the const vWriteIni
  TSignatur signatur;
  Process::TTimeStamp timeStamp;

  friend class TCoordinateSystemVector;
};

// The owner of every coordinate system of the process, and itself the default
// system: index -1 in its loops, and in operator[], is the vector itself.
//
// Systems enter only as objects made by new, through pAppendNew or
// iCreateFromString, and are deleted only by vDelete, vCompress and the
// vector's destructor (the process-wide vector is never destroyed). A system
// still used by a plane is never deleted.
//
// The store of the systems is the ini form:
//   [<section>]             Size=<n>, Typ1=<class> ... Typ<n>=<class>
//   [<section>/Entry1] ...  each system's ini form
// bWriteIni() writes it to the file it was read from, or else to
// "Calibration/KoordSystem.ini" in the directory of the running program
// (section "KoordSystem"); the program directory can be set per vector.
//
// Errors: an index outside -1 .. size()-1 raises 0xe74210c5, deleting a
// system with users 0xe53210c6 (RastrixErrors.h).
class TCoordinateSystemVector : public TCoordinateSystem {
 public:
  TCoordinateSystemVector();
  ~TCoordinateSystemVector() override;

  // The section bWriteIni uses when nothing was read, and the file below the
  // program directory.
  static constexpr const char* cpDefaultSection = "KoordSystem";
  static constexpr const char* cpDefaultFile = "Calibration/KoordSystem.ini";

  int size() const { return static_cast<int>(systems_.size()); }
  TCoordinateSystem* operator[](int index) const;
  ETypOfKS eGetTyp(int index) const { return (*this)[index]->eGetTypOfKS(); }
  // Null gives eKSDefault (null stands for the default system).
  ETypOfKS eGetTyp(const TCoordinateSystem* system) const;
  // Index of the system in the vector: -1 for the vector itself, -2 if absent.
  int iIndexOf(const TCoordinateSystem* system) const;

  // Takes a system made by new. When the vector holds an equal one (see
  // iFindExistingCoordinateSystem) that one is answered and `system` is
  // deleted; otherwise `system`, now with a name unique in the vector, is
  // appended and answered. Use the answer, never `system` again. Null
  // answers the vector itself.
  TCoordinateSystem* pAppendNew(TCoordinateSystem* system);
  // Deletes the system at the index (0 .. size()-1).
  void vDelete(int index);
  // Deletes every system without users, from the end.
  void vCompress();
  int iCountNotUsed() const;

  // Reads the store: remembers the ini's file name (a disk or memory ini
  // with a name) and the section, then appends each stored system: a class
  // number outside 1 .. 5 gives a base system; a system equal in name and
  // parameters to one held already is not appended twice; a name held by
  // another system gets the "~<n>" of sCreateUniqueName.
  void vReadIni(TKxIniFile* ini, const char* section) override;
  void vReadIni(const TIniFilename& file, const char* section);
  // Writes the store (all systems); clears their changed flags.
  void vWriteIni(TKxIniFile* ini, const char* section) const override;
  // With onlyUsed only the systems with users, numbered without gaps.
  // Entries and "Typ%d" keys of an earlier, longer store are removed.
  void vWriteIni(TKxIniFile* ini, const char* section, bool onlyUsed) const;
  // Writes the store to sGetIniFileName() in the remembered section (creating
  // the directory); true when written, a failure raises.
  bool bWriteIni();
  // Reads the store from sGetIniFileName(); false when the file is absent.
  bool bReadIni();
  // The file of bWriteIni and bReadIni: the remembered one, else
  // "Calibration/KoordSystem.ini" in the program directory.
  std::string sGetIniFileName() const;
  const std::string& sGetIniSection() const { return sIniSection_; }
  // The directory in place of the running program's (hosts, tests); empty
  // goes back to the program's.
  void vSetProgramDir(const char* dir);
  std::string sGetProgramDir() const;

  // The system a header describes: finds "KoordTyp"; classes 1 .. 5 make a
  // system read by vReadFromString; one equal (iCompareKS12) to a held one
  // is deleted and the index of the held one answered; otherwise it is
  // appended (pAppendNew) and its index answered. -1 (the default system) for
  // no "KoordTyp", another class, or a null text.
  int iCreateFromString(const char* text);
  // A held system: by signature (the vector first, then its entries), else
  // by name, else the default system.
  TCoordinateSystem* pFindNameSignatur(const TCoordinateSystem* system) const;
  // 0: `system` is the vector or in it (found = system), or a system with
  // the same stripped name is equal to it (found = that one, `system` is
  // deleted). 1: none; `system` got a unique name (its signature kept) and
  // its changed flag cleared, ready to append; found is not changed.
  int iFindExistingCoordinateSystem(TCoordinateSystem* system, TCoordinateSystem** found);
  // The name without its "~<n>": cut at the last '~'.
  static std::string sGetStripName(const char* name);
  // The stripped name when no system's stripped name is that; else the first
  // "<stripped>~<n>", n = 1, 2, ..., that no system has as its name.
  std::string sCreateUniqueName(const char* name) const;
  // 0 when both are of one class and bEqualParam holds; 1 for other classes
  // (or a null system), 2 for other parameters.
  static int iCompareKS12(const TCoordinateSystem* a, const TCoordinateSystem* b);

  // A system of the class numbered `typ` (a number outside 1 .. 5 gives the
  // base class), made by new.
  static TCoordinateSystem* pCreate(int typ);

 private:
  // Index check of operator[] and vDelete.
  void _vCheckIndex(int index, int first) const;
  // Appends a system read from a store (see vReadIni).
  void _vAdoptRead(std::unique_ptr<TCoordinateSystem> system);
  // Every held system, the vector first.
  template <class F>
  void _forAll(F&& f) const;

  std::vector<std::unique_ptr<TCoordinateSystem>> systems_;
  std::string sIniFile_;     // where the store was read from, if a file
  std::string sIniSection_;  // its section
  std::string sProgramDir_;  // empty: the running program's directory
};

// The process-wide vector, created on first use and never destroyed.
TCoordinateSystemVector* pGetDefaultCoordinateSystemVector();
// The default system: the vector itself.
TCoordinateSystem* pGetDefaultCoordinateSystem();

}  // namespace Rastrix
