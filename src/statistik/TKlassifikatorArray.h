// The catalogue of the classifiers of a running application: the list the
// user picks from, the current classifier, and the persistence of the set.
//
// The array owns what it holds, except the library's default classifier,
// which it holds by pointer and never deletes. Statistics keep raw pointers
// into the catalogue, so deletion only marks an entry (bIsErase); marked
// entries stay in the vector, are counted by size() and skipped by every
// search for a living entry. vClear empties the vector but keeps the
// objects alive: everything the array ever owned is freed when it dies.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kxexception/TTimeStamp.h"
#include "rastrix/TPixelKlassifikator.h"

class TKxIniFile;
class TKxTable;

class TKlassifikatorArray {
 public:
  using TPixelKlassifikator = Rastrix::TPixelKlassifikator;

  TKlassifikatorArray();
  ~TKlassifikatorArray();
  TKlassifikatorArray(const TKlassifikatorArray&) = delete;
  TKlassifikatorArray& operator=(const TKlassifikatorArray&) = delete;

  // Takes ownership (never of the default classifier); null raises 0x5100000.
  void vAdd(TPixelKlassifikator* p);
  // Marks the entry erased unless it is no-delete; the current one moves to
  // uiGetNewAkt(). A bad index raises 0x5100000.
  void vDelete(unsigned index);
  // The first living entry of the current one's dynamic type; 0 if none.
  unsigned uiGetNewAkt() const;
  // Unless vSetNoDeleteArray(true): marks every entry but the default erased.
  // Then the vector is emptied and the current index is 0.
  void vClear();
  void vSetNoDeleteArray(bool b) { bNoDeleteArray = b; }

  TPixelKlassifikator* operator[](unsigned index) const;
  unsigned size() const { return static_cast<unsigned>(items.size()); }
  unsigned uiGetAktKlassifikator() const { return uiAkt; }
  // An index outside the vector raises 0x7000000.
  TPixelKlassifikator* pGetAktKlassifikator() const;
  // A bad index raises 0x5100000.
  void vSetAktKlassifikator(unsigned index);
  // By pointer; a pointer not in the array leaves the current one.
  void vSetAktKlassifikator(const TPixelKlassifikator* p);
  // The first living entry of the sample's dynamic type, null if none; a null
  // sample raises 0x5100000.
  TPixelKlassifikator* pGetKlassifikatorType(const TPixelKlassifikator* sample) const;
  // By signature, among the living entries; iGetIndex gives -1 if none.
  bool bExistInList(const TPixelKlassifikator* p) const { return iGetIndex(p) >= 0; }
  int iGetIndex(const TPixelKlassifikator* p) const;
  bool bIsClassificatorName(const char* name) const;
  // `base` up to its first "[", then "%s[%d]" with 0, 1, 2 ... until no
  // living entry has the name.
  std::string strGetNewClassName(const std::string& base) const;
  void vSetNoDelete(unsigned index, bool b);
  bool bIsNoDelete(unsigned index) const;
  // A living contrast classifier with these thresholds (ratios within 0.001,
  // or differences below 1e-5 where a divisor is about 0), else a new one.
  TPixelKlassifikator* pAddLuminanceType(double lower, double upper);

  bool bIsModified() const { return stamp != notModified; }
  void vSetNotModified() { notModified = stamp; }
  const Process::TTimeStamp& getTimeStamp() const { return stamp; }

  // Each default kind (the default classifier, integral, luminance, symbol,
  // arc, filament, the colour integral and symbol, the five thresholds) of
  // which no living entry exists is made, named and marked no-delete.
  void vAddDefaults();
  // vClear, vReadIniAppend, vAddDefaults.
  void vReadIni(TKxIniFile* ini, const char* section);
  // Appends the classifiers stored in the section ("AktKlassifikator",
  // "KlassifikatorNumber", "<section>/Klassifikator<i>").
  void vReadIniAppend(TKxIniFile* ini, const char* section);
  // Erases the section and its subsections, then writes the living entries,
  // numbered as written; "AktKlassifikator" is the current one's number
  // among them.
  void vWriteIni(TKxIniFile* ini, const char* section) const;
  // One table per dynamic type, their texts one after the other, to the file
  // or, with a null name, to the clipboard.
  void vExport(const char* fileName) const;
  // The tables of vExport.
  void vMakeTableArray(std::vector<TKxTable>& tables) const;
  // The table of the living classifiers of the current one's type.
  void vFillFirstTable(TKxTable& table) const;

 private:
  TPixelKlassifikator* _pExistInListThreshold(double lower, double upper) const;
  void _vCheck(unsigned index) const;
  void _vChanged() { stamp.set(); }

  Process::TTimeStamp stamp;
  unsigned uiAkt = 0;
  std::vector<TPixelKlassifikator*> items;
  bool bNoDeleteArray = false;
  Process::TTimeStamp notModified;
  std::vector<std::unique_ptr<TPixelKlassifikator>> owned;  // also what vClear removed
};
