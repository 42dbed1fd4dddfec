// Label pictures: for each picture and each object of a list a plane of
// class numbers, showing how the object's pixels were classified (255: not
// evaluated), and for each a table from class to display colour.
#pragma once

#include <cstdint>
#include <vector>

#include "file98/CRectangle.h"
#include "kxexception/TTimeStamp.h"
#include "rastrix/TPlane.h"

class TKxIniFile;

// A palette slot of the label display; 255 means none.
using TKColor = unsigned char;

class TKlassifikator2Color {
 public:
  TKlassifikator2Color() { vSetStandard(); }

  // 9 entries: 204, 205, 207, 210, 203, 202, 206, 208, then 255 from entry 8 on.
  void vSetStandard();
  // An index outside 0..255 raises 0xe7422043.
  void vSetColor(int i, TKColor c);
  TKColor operator[](int i) const;
  void vSetSize(int n);
  int iGetSize() const { return iSize; }
  // The library-wide table.
  static TKlassifikator2Color* pGetGlobal();
  // "iSize", "TableEntry%d".
  void vWriteIni(TKxIniFile* ini, const char* section) const;
  void vReadIni(TKxIniFile* ini, const char* section);
  bool bIsModified() const { return changed_ > saved_; }
  void vSetNotModified() { saved_ = changed_; }

 private:
  void _vCheck(int i) const;
  Process::TTimeStamp changed_, saved_;
  int iSize = 9;
  TKColor colors_[256];
};

class TLabelPicAssigner {
 public:
  struct TItem {
    unsigned long Picture = 0;  // the key: the picture's identity; 0 until one is attached
    std::vector<Rastrix::TPlane<unsigned char>> Planes;
    std::vector<TKlassifikator2Color> Colors;
  };

  TLabelPicAssigner() : Items(1) {}

  int size() const { return Items.empty() ? 0 : static_cast<int>(Items[0].Planes.size()); }
  // n regions in every item.
  void vResize(int n);
  void vAppendNewRegion();
  // 0xe7822046 beyond the count.
  void vDeleteRegion(int i);
  // The first item takes the key if it has none; else a new item sized like
  // the first, with the global colour tables.
  void vInsertPicture(unsigned long key);
  // Removes the item; the last one stays with its key cleared.
  void vDeletePicture(unsigned long key);
  bool bIsInsertPicture(unsigned long key) const;
  // The label plane of a region for a picture (added when `key` is a valid
  // plane; else 0xe7822045); with `alloc` allocated to the rectangle, with
  // `clear` filled with 255.
  Rastrix::TPlane<unsigned char>& rGetLabelPic(unsigned long key, int region, bool alloc, bool clear,
                                               const CRectangle& r);
  Rastrix::TPlane<unsigned char>& rGetLabelPic(unsigned long key, int region);
  Rastrix::TPlane<unsigned char>& rGetLabelPic(int region) { return rGetLabelPic(Items[0].Picture, region); }
  TKlassifikator2Color& rGetClassColor(unsigned long key, int region);
  TKlassifikator2Color& rGetClassColor(int region) { return rGetClassColor(Items[0].Picture, region); }
  // The regions of another assigner's first item appended (for joined lists).
  void vAppendFrom(const TLabelPicAssigner& o);
  // Moves region `from` to `to` in every item (to < from).
  void vReduceIndexFromTo(int from, int to);

 private:
  TItem* _pFind(unsigned long key);
  TItem& _rItem(unsigned long key);
  std::vector<TItem> Items;
};
