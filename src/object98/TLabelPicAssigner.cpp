#include "object98/TLabelPicAssigner.h"

#include <algorithm>
#include <cstdio>

#include "file98/TKxIniFile.h"
#include "kxexception/KxError.h"
#include "object98/Object98Errors.h"
#include "rastrix/TPlaneBasic.h"

using Rastrix::TPlane;

// ---------------------------------------------------------------- colours

void TKlassifikator2Color::vSetStandard() {
  static const TKColor standard[8] = {204, 205, 207, 210, 203, 202, 206, 208};
  iSize = 9;
  std::fill(colors_, colors_ + 256, static_cast<TKColor>(255));
  std::copy(standard, standard + 8, colors_);
  changed_.set();
}

void TKlassifikator2Color::_vCheck(int i) const {
  if (i < 0 || i > 255) KX_THROW(object98::ulColorIndex, "Index=%d nicht in 0...255 / not in 0...255", i);
}

void TKlassifikator2Color::vSetColor(int i, TKColor c) {
  KX_TRY {
    _vCheck(i);
    colors_[i] = c;
    changed_.set();
  }
  KX_CATCH
}

TKColor TKlassifikator2Color::operator[](int i) const {
  KX_TRY {
    _vCheck(i);
    return colors_[i];
  }
  KX_CATCH
}

void TKlassifikator2Color::vSetSize(int n) {
  iSize = std::clamp(n, 0, 256);
  changed_.set();
}

TKlassifikator2Color* TKlassifikator2Color::pGetGlobal() {
  static TKlassifikator2Color global;
  return &global;
}

void TKlassifikator2Color::vWriteIni(TKxIniFile* ini, const char* section) const {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    ini->vWriteInteger(section, "iSize", iSize);
    char key[32];
    for (int i = 0; i < iSize && i < 256; ++i) {
      std::snprintf(key, sizeof key, "TableEntry%d", i);
      ini->vWriteInteger(section, key, colors_[i]);
    }
  }
  KX_CATCH
}

void TKlassifikator2Color::vReadIni(TKxIniFile* ini, const char* section) {
  KX_TRY {
    if (!ini || !section) KX_THROW(0x5100000UL, "ini file or section null");
    const int n = std::clamp(ini->iReadInteger(section, "iSize", iSize), 0, 256);
    char key[32];
    for (int i = 0; i < n; ++i) {
      std::snprintf(key, sizeof key, "TableEntry%d", i);
      colors_[i] = static_cast<TKColor>(std::clamp(ini->iReadInteger(section, key, colors_[i]), 0, 255));
    }
    iSize = n;
    changed_.set();
  }
  KX_CATCH
}

// ---------------------------------------------------------------- labels

void TLabelPicAssigner::vResize(int n) {
  n = std::max(n, 0);
  for (TItem& it : Items) {
    it.Planes.resize(static_cast<std::size_t>(n));
    it.Colors.resize(static_cast<std::size_t>(n), *TKlassifikator2Color::pGetGlobal());
  }
}

void TLabelPicAssigner::vAppendNewRegion() { vResize(size() + 1); }

void TLabelPicAssigner::vDeleteRegion(int i) {
  KX_TRY {
    if (i < 0 || i >= size()) KX_THROW(object98::ulLabelRegion, "Region %d >= %d", i, size());
    for (TItem& it : Items) {
      it.Planes.erase(it.Planes.begin() + i);
      it.Colors.erase(it.Colors.begin() + i);
    }
  }
  KX_CATCH
}

void TLabelPicAssigner::vReduceIndexFromTo(int from, int to) {
  for (TItem& it : Items) {
    if (from >= static_cast<int>(it.Planes.size()) || to < 0 || to >= from) continue;
    std::rotate(it.Planes.begin() + to, it.Planes.begin() + from, it.Planes.begin() + from + 1);
    std::rotate(it.Colors.begin() + to, it.Colors.begin() + from, it.Colors.begin() + from + 1);
  }
}

void TLabelPicAssigner::vAppendFrom(const TLabelPicAssigner& o) {
  const int add = o.size();
  for (TItem& it : Items)
    for (int i = 0; i < add; ++i) {
      it.Planes.emplace_back();
      it.Colors.push_back(o.Items[0].Colors[static_cast<std::size_t>(i)]);
    }
}

TLabelPicAssigner::TItem* TLabelPicAssigner::_pFind(unsigned long key) {
  for (TItem& it : Items)
    if (it.Picture == key) return &it;
  return nullptr;
}

void TLabelPicAssigner::vInsertPicture(unsigned long key) {
  if (_pFind(key)) return;
  if (Items[0].Picture == 0) {
    Items[0].Picture = key;
    return;
  }
  TItem it;
  it.Picture = key;
  it.Planes.resize(Items[0].Planes.size());
  it.Colors.assign(Items[0].Planes.size(), *TKlassifikator2Color::pGetGlobal());
  Items.push_back(std::move(it));
}

void TLabelPicAssigner::vDeletePicture(unsigned long key) {
  for (std::size_t i = 0; i < Items.size(); ++i)
    if (Items[i].Picture == key) {
      if (Items.size() == 1)
        Items[0].Picture = 0;
      else
        Items.erase(Items.begin() + static_cast<std::ptrdiff_t>(i));
      return;
    }
}

bool TLabelPicAssigner::bIsInsertPicture(unsigned long key) const {
  return std::any_of(Items.begin(), Items.end(), [&](const TItem& it) { return it.Picture == key; });
}

TLabelPicAssigner::TItem& TLabelPicAssigner::_rItem(unsigned long key) {
  TItem* it = _pFind(key);
  if (!it && key != 0 && Rastrix::TPlaneBasic::bIsValid(reinterpret_cast<const Rastrix::TPlaneBasic*>(key))) {
    vInsertPicture(key);
    it = _pFind(key);
  }
  if (!it) KX_THROW(object98::ulLabelPicture, "Bild %lu ohne Labelbilder / picture without label pictures", key);
  return *it;
}

TPlane<unsigned char>& TLabelPicAssigner::rGetLabelPic(unsigned long key, int region, bool alloc, bool clear,
                                                       const CRectangle& r) {
  KX_TRY {
    TItem& it = _rItem(key);
    if (region < 0 || region >= static_cast<int>(it.Planes.size()))
      KX_THROW(object98::ulLabelRegion, "Region %d >= %zu", region, it.Planes.size());
    TPlane<unsigned char>& p = it.Planes[static_cast<std::size_t>(region)];
    if (alloc) p.alloc(r);
    if (clear && p.getLines() > 0 && p.getColumns() > 0) p.setRectangle(255);
    return p;
  }
  KX_CATCH
}

TPlane<unsigned char>& TLabelPicAssigner::rGetLabelPic(unsigned long key, int region) {
  return rGetLabelPic(key, region, false, false, CRectangle());
}

TKlassifikator2Color& TLabelPicAssigner::rGetClassColor(unsigned long key, int region) {
  KX_TRY {
    TItem& it = _rItem(key);
    if (region < 0 || region >= static_cast<int>(it.Colors.size()))
      KX_THROW(object98::ulLabelRegion, "Region %d >= %zu", region, it.Colors.size());
    return it.Colors[static_cast<std::size_t>(region)];
  }
  KX_CATCH
}
