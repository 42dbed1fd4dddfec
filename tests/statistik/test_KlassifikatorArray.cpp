#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TKxTable.h"
#include "rastrix/TPixelKlassifikatorTypThreshold.h"
#include "rastrix/TRGBPixel.h"
#include "statistik/TArcFilamentKlassifikator.h"
#include "statistik/TKlassifikatorArray.h"

#include "../rastrix/RastrixTestUtil.h"

using namespace Rastrix;

using rastrixtest::codeOf;

namespace {


std::vector<std::string> names(const TKlassifikatorArray& a) {
  std::vector<std::string> n;
  for (unsigned i = 0; i < a.size(); ++i)
    if (!a[i]->bIsErase()) n.push_back(a[i]->rStrGetKlassifikatorName());
  return n;
}

}  // namespace

TEST(KlassifikatorArray, DefaultsInOrder) {
  TKlassifikatorArray a;
  a.vAddDefaults();
  EXPECT_EQ(names(a), (std::vector<std::string>{"Standard", "Integral", "Leuchtdichte", "Symbol", "Bogen", "Wendel",
                                                "Integral RGBFloat", "Symbol RGBFloat", "Schwellen (UC)",
                                                "Schwellen (US)", "Schwellen (F)", "Schwellen (RGB)",
                                                "Schwellen (RGBF)"}));
  EXPECT_EQ(a[0], pGetDefaultPixelKlassifikator());
  for (unsigned i : {1u, 2u, 3u}) {
    EXPECT_EQ(a[i]->size(), 3u);
    EXPECT_EQ(a[i]->rStrGetClassName(0), "D");
    EXPECT_EQ(a[i]->rStrGetClassName(2), "H");
    EXPECT_TRUE(a[i]->bRejection(1));
    EXPECT_FALSE(a[i]->bRejection(0));
  }
  EXPECT_EQ(a[6]->rStrGetClassName(0), "-");
  EXPECT_TRUE(a[6]->bRejection(0));
  EXPECT_TRUE(a[7]->bRejection(1));
  EXPECT_TRUE(a.bIsNoDelete(12));
  a.vAddDefaults();
  EXPECT_EQ(a.size(), 13u);
  // A deleted default (no-delete cleared first) comes back fresh.
  a.vDelete(4);
  EXPECT_FALSE(a[4]->bIsErase());  // no-delete: nothing happens
  a.vSetNoDelete(4, false);
  a.vDelete(4);
  EXPECT_TRUE(a[4]->bIsErase());
  a.vAddDefaults();
  EXPECT_EQ(a.size(), 14u);
  EXPECT_NE(dynamic_cast<TArcKlassifikator*>(a[13]), nullptr);
  EXPECT_EQ(codeOf([&] { a.vDelete(14); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { a.vAdd(nullptr); }), 0x5100000UL);
}

TEST(KlassifikatorArray, LuminanceNamesAndCurrent) {
  TKlassifikatorArray a;
  TPixelKlassifikator* l1 = a.pAddLuminanceType(100, 200);
  EXPECT_EQ(a.pAddLuminanceType(100, 200), l1);
  EXPECT_EQ(a.pAddLuminanceType(100.05, 200), l1);  // ratio within 0.001
  EXPECT_NE(a.pAddLuminanceType(100.2, 200), l1);
  EXPECT_EQ(l1->rStrGetKlassifikatorName(), "Leuchtdichte[0]");
  EXPECT_FALSE(l1->bIsNoDelete());
  EXPECT_TRUE(l1->bRejection(1));
  TPixelKlassifikator* z = a.pAddLuminanceType(0, 0);
  EXPECT_EQ(a.pAddLuminanceType(0, 5e-6), z);  // absolute difference only
  EXPECT_NE(a.pAddLuminanceType(0, 2e-5), z);
  EXPECT_EQ(a.strGetNewClassName("Leuchtdichte[3]"), "Leuchtdichte[4]");
  EXPECT_EQ(a.strGetNewClassName("Integral"), "Integral[0]");

  // Deleting the current one moves to the first living entry of its type.
  const unsigned n = a.size();
  a.vAdd(new TPixelKlassifikatorTypThreshold<float>);
  a.vAdd(new TPixelKlassifikatorTypThreshold<float>);
  a.vSetAktKlassifikator(n + 1);
  a.vDelete(n + 1);
  EXPECT_EQ(a.uiGetAktKlassifikator(), n);
  a.vSetAktKlassifikator(1u);
  a.vDelete(1);
  EXPECT_EQ(a.uiGetAktKlassifikator(), 0u);  // another contrast lives at 0
  EXPECT_FALSE(a.bExistInList(a[1]));
  EXPECT_EQ(a.iGetIndex(a[2]), 2);
  EXPECT_EQ(codeOf([&] { a.vSetAktKlassifikator(99u); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { a.pGetKlassifikatorType(nullptr); }), 0x5100000UL);
  TPixelKlassifikatorTypThreshold<float> sample;
  EXPECT_EQ(a.pGetKlassifikatorType(&sample), a[n]);

  // vClear keeps the objects alive (statistics may point at them).
  TPixelKlassifikator* kept = a[n];
  a.vClear();
  EXPECT_EQ(a.size(), 0u);
  EXPECT_TRUE(kept->bIsErase());
  EXPECT_EQ(kept->size(), 1u);
  EXPECT_EQ(codeOf([&] { a.pGetAktKlassifikator(); }), 0x7000000UL);
}

TEST(KlassifikatorArray, IniRoundTripWithErasedEntries) {
  TKlassifikatorArray a;
  a.vAddDefaults();
  auto* t = new TPixelKlassifikatorTypThreshold<unsigned char>;
  t->resize(3);
  t->vSetThreshold(0, 50);
  t->vSetThreshold(1, 150);
  t->vSetKlassifikatorName("mine");
  a.vAdd(t);
  a.pAddLuminanceType(10, 20);
  a.vAdd(new TPixelKlassifikatorTypThreshold<float>);
  a.vDelete(15);  // erased entries are not written
  a.vSetAktKlassifikator(14u);
  auto* arc = dynamic_cast<TArcFilamentKlassifikatorBasic*>(a[4]);
  ASSERT_NE(arc, nullptr);
  arc->vSetThresholdNumber(4);
  arc->vSetThreshold(3, 0.75);
  arc->vSetStrSectionalView("Quer");
  TKxMemIniFile ini;
  ini.vWriteString("Klassifikatoren/Klassifikator99", "Type", "2");  // stale, erased by the write
  a.vWriteIni(&ini, "Klassifikatoren");
  EXPECT_FALSE(ini.bSectionExists("Klassifikatoren/Klassifikator99"));
  EXPECT_EQ(ini.iReadInteger("Klassifikatoren", "KlassifikatorNumber", -1), 15);

  TKlassifikatorArray b;
  b.vReadIni(&ini, "Klassifikatoren");
  ASSERT_EQ(b.size(), 15u);
  EXPECT_EQ(names(b), names(a));
  for (unsigned i = 0; i < 15; ++i) EXPECT_TRUE(b[i]->rGetSignatur() == a[i]->rGetSignatur()) << i;
  EXPECT_EQ(b.uiGetAktKlassifikator(), 14u);
  auto* rt = dynamic_cast<TPixelKlassifikatorTypThreshold<unsigned char>*>(b[13]);
  ASSERT_NE(rt, nullptr);
  EXPECT_EQ(rt->dGetThreshold(1), 150.0);
  EXPECT_NE(dynamic_cast<TPixelKlassifikatorTypThresholdContrast<float>*>(b[14]), nullptr);
  auto* rarc = dynamic_cast<TArcKlassifikator*>(b[4]);
  ASSERT_NE(rarc, nullptr);
  EXPECT_EQ(rarc->uiGetThresholdNumber(), 4u);
  EXPECT_EQ(rarc->dGetThreshold(3), 0.75);
  EXPECT_EQ(rarc->dGetThreshold(0), 0.2);
  EXPECT_EQ(rarc->strGetSectionalView(), "Quer");
}

TEST(KlassifikatorArray, MalformedIni) {
  TKlassifikatorArray a;
  TKxMemIniFile ini;
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(nullptr, "S"); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, nullptr); }), 0x5100000UL);
  ini.vWriteInteger("S", "KlassifikatorNumber", 3);
  TPixelKlassifikatorTypThreshold<float> good;
  good.vWriteIni(&ini, "S/Klassifikator0");
  ini.vWriteInteger("S/Klassifikator1", "Type", 42);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x5100000UL);
  EXPECT_EQ(a.size(), 1u);  // what was read stays
  ini.vWriteInteger("S/Klassifikator1", "Type", 2);
  ini.vWriteInteger("S/Klassifikator1", "PixelType", 5);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x5100000UL);
  ini.vWriteInteger("S/Klassifikator1", "PixelType", 0);
  ini.vWriteInteger("S/Klassifikator1", "Type", 3);  // an integral of bytes does not exist
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x7000000UL);
  ini.vWriteInteger("S", "KlassifikatorNumber", 10000);  // sections missing: stops at the first
  ini.vWriteInteger("S/Klassifikator1", "Type", 2);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x5100000UL);
  ini.vWriteInteger("S", "KlassifikatorNumber", -4);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x5100000UL);
  ini.vWriteInteger("S/Klassifikator0", "Size", -3);
  ini.vWriteInteger("S", "KlassifikatorNumber", 1);
  EXPECT_EQ(codeOf([&] { a.vReadIniAppend(&ini, "S"); }), 0x5100000UL);
}

TEST(KlassifikatorArray, ExportTables) {
  TKlassifikatorArray a;
  a.vAddDefaults();
  a.pAddLuminanceType(1, 2);
  std::vector<TKxTable> tables;
  a.vMakeTableArray(tables);
  EXPECT_EQ(tables.size(), 13u);  // one per dynamic type; the two contrasts share one
  EXPECT_EQ(tables[2].lines(), 2u);
  a.vExport(nullptr);
  const std::string text = TKxClipboard::sGetText();
  EXPECT_NE(text.find("Leuchtdichte[0]\tD\t-\tH\t1\t2\r\n"), std::string::npos) << text;
  const auto file = std::filesystem::temp_directory_path() / "kx_klass_export.txt";
  a.vExport(file.c_str());
  std::ifstream in(file, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  EXPECT_EQ(s.str(), text);
  std::filesystem::remove(file);
  EXPECT_EQ(codeOf([&] { a.vExport("/nonexistent-dir/x.txt"); }), 0x5100000UL);
  TKxTable first;
  a.vSetAktKlassifikator(2u);
  a.vFillFirstTable(first);
  EXPECT_EQ(first.lines(), 2u);
}
