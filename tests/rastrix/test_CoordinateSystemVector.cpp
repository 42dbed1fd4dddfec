// TCoordinateSystemVector: ownership, names, lookups, the ini store and its
// file next to the program, and the systems of planes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "CoordinateSystemTestUtil.h"
#include "RastrixTestUtil.h"
#include "file98/KxPath.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "file98/TKxStdIniFile.h"
#include "kxutils/KxUtilsErrors.h"
#include "kxutils/ulCoordinatesystem.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TCoordinateSystemKugel.h"
#include "rastrix/TPlane.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

using namespace Rastrix;
using rastrixtest::codeOf;

namespace {

// A vector with one system of each class 0 .. 5, names "S0" .. "S5".
void fillAllClasses(TCoordinateSystemVector& v) {
  for (int t = 0; t <= 5; ++t) v.pAppendNew(cstest::makeSample(t, ("S" + std::to_string(t)).c_str()).release());
}

std::string readFile(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  std::stringstream s;
  s << f.rdbuf();
  return s.str();
}

}  // namespace

TEST(CoordinateSystemVector, IsTheDefaultSystemAndIndexMinusOne) {
  TCoordinateSystemVector* global = pGetDefaultCoordinateSystemVector();
  EXPECT_EQ(pGetDefaultCoordinateSystem(), global);
  EXPECT_EQ((*global)[-1], global);
  EXPECT_EQ(global->eGetTyp(static_cast<const TCoordinateSystem*>(nullptr)), eKSDefault);

  TCoordinateSystemVector v;
  EXPECT_EQ(codeOf([&] { v[0]; }), Err::ulCoordinateSystemIndex);
  EXPECT_EQ(codeOf([&] { v.vDelete(-1); }), Err::ulCoordinateSystemIndex);
  fillAllClasses(v);
  for (int t = 0; t <= 5; ++t) EXPECT_TRUE(v.eGetTyp(t) == t && v.iIndexOf(v[t]) == t) << t;
  for (int bad : {6, -2}) EXPECT_EQ(codeOf([&] { v[bad]; }), Err::ulCoordinateSystemIndex) << bad;
  EXPECT_EQ(v.iIndexOf(&v), -1);
  TCoordinateSystem stranger;
  EXPECT_EQ(v.iIndexOf(&stranger), -2);
}

TEST(CoordinateSystemVector, AppendNamesUniquelyAndTakesEqualSystemsOnce) {
  TCoordinateSystemVector v;
  // An unnamed system is "Default~1": the vector is "Default".
  TCoordinateSystem* a = v.pAppendNew(new TSizeShiftCoordinateSystem);
  EXPECT_EQ(a->rStrGetNameKS(), "Default~1");
  EXPECT_EQ(v.pAppendNew(a), a) << "a held system is answered as it is";
  EXPECT_EQ(v.pAppendNew(nullptr), &v);
  EXPECT_EQ(v.size(), 1);

  // An equal system of the same stripped name replaces the offer.
  auto hall = cstest::makeSample(eKSSizeShift, "Hall");
  auto* copy = new TSizeShiftCoordinateSystem;
  copy->vCopy(hall.get());
  TCoordinateSystem* h = v.pAppendNew(hall.release());
  EXPECT_EQ(h->rStrGetNameKS(), "Hall");
  copy->vSetChangeable(true);
  const std::string sig = h->rGetSignatur().get();
  copy->setNameKS("Hall~7");  // a change: give it the signature back
  copy->vSetSignatur(sig.c_str());
  EXPECT_EQ(v.pAppendNew(copy), h);
  EXPECT_EQ(v.size(), 2);

  // Equal parameters under another stripped name: a system of its own.
  auto* other = new TSizeShiftCoordinateSystem;
  other->vCopy(h);
  other->vSetChangeable(true);
  other->setNameKS("Atelier");
  other->vSetSignatur(sig.c_str());
  EXPECT_EQ(v.pAppendNew(other), other);
  EXPECT_EQ(v.size(), 3);

  // Different systems of one name: "~1", "~2", and the gap is filled first.
  auto* h1 = v.pAppendNew(cstest::makeSample(eKSSizeShift, "Hall", 2).release());
  auto* h2 = v.pAppendNew(cstest::makeSample(eKSSizeShift, "Hall~1", 3).release());
  EXPECT_EQ(h1->rStrGetNameKS(), "Hall~1");
  EXPECT_EQ(h2->rStrGetNameKS(), "Hall~2");
  EXPECT_FALSE(h2->bIsChanged());
  v.vDelete(v.iIndexOf(h1));
  EXPECT_EQ(v.pAppendNew(cstest::makeSample(eKSLinear, "Hall~9", 4).release())->rStrGetNameKS(), "Hall~1");

  for (const auto& [in, out] : {std::pair<const char*, const char*>{"a~b~12", "a~b"}, {"plain", "plain"}, {"~", ""}, {nullptr, ""}})
    EXPECT_EQ(TCoordinateSystemVector::sGetStripName(in), out);
  EXPECT_EQ(v.sCreateUniqueName("Neu~3"), "Neu");
  EXPECT_EQ(v.sCreateUniqueName("Atelier"), "Atelier~1");
}

TEST(CoordinateSystemVector, FindExistingAnswersZeroOrOne) {
  TCoordinateSystemVector v;
  TCoordinateSystem* held = v.pAppendNew(cstest::makeSample(eKSKugel, "Dome").release());
  TCoordinateSystem* found = nullptr;
  EXPECT_EQ(v.iFindExistingCoordinateSystem(held, &found), 0);
  EXPECT_EQ(found, held);
  EXPECT_EQ(v.iFindExistingCoordinateSystem(&v, &found), 0);
  EXPECT_EQ(found, &v);

  auto* twin = new TCoordinateSystemKugel;
  twin->vCopy(held);
  found = nullptr;
  EXPECT_EQ(v.iFindExistingCoordinateSystem(twin, &found), 0);  // twin is deleted
  EXPECT_EQ(found, held);

  auto fresh = cstest::makeSample(eKSKugel, "Dome", 5);
  const TSignatur sig = fresh->rGetSignatur();
  found = nullptr;
  EXPECT_EQ(v.iFindExistingCoordinateSystem(fresh.get(), &found), 1);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(fresh->rStrGetNameKS(), "Dome~1");
  EXPECT_EQ(fresh->rGetSignatur(), sig);
  EXPECT_FALSE(fresh->bIsChanged());
  EXPECT_EQ(v.size(), 1) << "only pAppendNew appends";

  const std::pair<const TCoordinateSystem*, int> compared[] = {{held, 0}, {fresh.get(), 2}, {&v, 1}, {nullptr, 1}};
  for (const auto& [other, answer] : compared) EXPECT_EQ(TCoordinateSystemVector::iCompareKS12(held, other), answer);
}

TEST(CoordinateSystemVector, FindByNameOrSignature) {
  TCoordinateSystemVector v;
  fillAllClasses(v);
  TCoordinateSystem probe;
  probe.vSetSignatur(v[4]->rGetSignatur().get());
  EXPECT_EQ(v.pFindNameSignatur(&probe), v[4]);
  probe.vSetSignatur(v.rGetSignatur().get());
  EXPECT_EQ(v.pFindNameSignatur(&probe), &v);
  probe.vSetSignatur("none");
  probe.vSetChangeable(true);
  probe.setNameKS("S2");
  probe.vSetSignatur("none");
  EXPECT_EQ(v.pFindNameSignatur(&probe), v[2]);
  probe.setNameKS("nobody");
  probe.vSetSignatur("none");
  EXPECT_EQ(v.pFindNameSignatur(&probe), &v);
  EXPECT_EQ(v.pFindNameSignatur(nullptr), &v);
}

TEST(CoordinateSystemVector, UsedSystemsStayCompressRemovesTheRest) {
  TCoordinateSystemVector v;
  fillAllClasses(v);
  TCoordinateSystem* s1 = v[1];
  TCoordinateSystem* s4 = v[4];
  s1->vIncreaseUser();
  s4->vIncreaseUser();
  EXPECT_EQ(v.iCountNotUsed(), 4);
  EXPECT_EQ(codeOf([&] { v.vDelete(1); }), Err::ulCoordinateSystemInUse);
  v.vDelete(5);
  EXPECT_EQ(v.size(), 5);
  v.vCompress();
  ASSERT_EQ(v.size(), 2);
  EXPECT_EQ(v[0], s1);
  EXPECT_EQ(v[1], s4);
  EXPECT_EQ(v.iCountNotUsed(), 0);
  s1->vDecreaseUser();
  s4->vDecreaseUser();
  EXPECT_EQ(s1->iGetUser(), 0) << "losing its last user deletes nothing";
  v.vCompress();
  EXPECT_EQ(v.size(), 0);
}

TEST(CoordinateSystemVector, IniStoreWriteReadWriteGivesTheSameBytes) {
  TCoordinateSystemVector v;
  fillAllClasses(v);
  TKxMemIniFile ini;
  v.vWriteIni(&ini, "KoordSystem", false);
  for (int i = 0; i < v.size(); ++i) EXPECT_FALSE(v[i]->bIsChanged());
  const std::string text = ini.sWriteToString();
  EXPECT_EQ(ini.sReadString("KoordSystem", "Size", "") + ini.sReadString("KoordSystem", "Typ4", ""), "63");
  EXPECT_EQ(ini.sReadString("KoordSystem/Entry3", "NameKS", ""), "S2");
  EXPECT_EQ(ini.sReadString("KoordSystem/Entry3", "A12", ""), "1.000000e-02");
  EXPECT_FALSE(ini.bValueExists("KoordSystem/Entry3", "KoordTyp")) << "the ini form has no class key";

  TKxMemIniFile reread;
  reread.vReadFromString(text.c_str());
  TCoordinateSystemVector back;
  back.vReadIni(&reread, "KoordSystem");
  ASSERT_EQ(back.size(), 6);
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(back[i]->bEqualParam(v[i])) << i;
    EXPECT_EQ(back[i]->sWrite2String(), v[i]->sWrite2String()) << i;  // class, name, everything
  }
  TKxMemIniFile again;
  back.vWriteIni(&again, "KoordSystem", false);
  EXPECT_EQ(again.sWriteToString(), text);

  // Reading the same store twice adds nothing.
  back.vReadIni(&reread, "KoordSystem");
  EXPECT_EQ(back.size(), 6);
}

TEST(CoordinateSystemVector, OnlyUsedSystemsClosedUpAndLeftoversRemoved) {
  TCoordinateSystemVector v;
  fillAllClasses(v);
  TKxMemIniFile ini;
  ini.vWriteString("Other", "Keep", "1");
  v.vWriteIni(&ini, "KS", false);
  v[2]->vIncreaseUser();
  v[5]->vIncreaseUser();
  v.vWriteIni(&ini, "KS", true);
  EXPECT_EQ(ini.iReadInteger("KS", "Size", 0) * 100 + ini.iReadInteger("KS", "Typ1", -1) * 10 +
                ini.iReadInteger("KS", "Typ2", -1), 225);
  EXPECT_FALSE(ini.bValueExists("KS", "Typ3"));
  EXPECT_TRUE(ini.bSectionExists("KS/Entry2"));
  EXPECT_FALSE(ini.bSectionExists("KS/Entry3") || ini.bSectionExists("KS/Entry6"));
  // The linear entry 1 became the Lvk: none of the linear keys is left.
  EXPECT_EQ(ini.sReadString("KS/Entry2", "NameKS", ""), "S5");
  EXPECT_FALSE(ini.bValueExists("KS/Entry2", "A12"));
  EXPECT_EQ(ini.sReadString("Other", "Keep", ""), "1");
  v[2]->vDecreaseUser();
  v[5]->vDecreaseUser();
}

TEST(CoordinateSystemVector, ReadKeepsNamesAndRenamesOnlyWhatIsTaken) {
  TCoordinateSystemVector v;
  v.pAppendNew(cstest::makeSample(eKSSizeShift, "Hall").release());
  TKxMemIniFile ini;
  ini.vReadFromString(
      "[KS]\nSize=4\nTyp1=1\nTyp2=1\nTyp3=9\nTyp4=x\n"
      "[KS/Entry1]\nNameKS=Hall\nA11=2\n"
      "[KS/Entry2]\nNameKS=Hall~5\n"
      "[KS/Entry3]\nNameKS=Plain\n"
      "[KS/Entry4]\nNameKS=Default\n");
  v.vReadIni(&ini, "KS");
  ASSERT_EQ(v.size(), 5);
  EXPECT_EQ(v[1]->rStrGetNameKS(), "Hall~1") << "taken by the system held before";
  EXPECT_EQ(v.eGetTyp(1), eKSSizeShift);
  EXPECT_EQ(static_cast<TSizeShiftCoordinateSystem*>(v[1])->dGetA11(), 2.0);
  EXPECT_EQ(v[2]->rStrGetNameKS(), "Hall~5") << "a free name stays";
  EXPECT_EQ(v.eGetTyp(3), eKSDefault) << "an unknown class number is a base system";
  EXPECT_EQ(v.eGetTyp(4), eKSDefault);
  EXPECT_EQ(v[4]->rStrGetNameKS(), "Default~1");
  EXPECT_EQ(v.sGetIniFileName(), v.sGetProgramDir() + "Calibration/KoordSystem.ini") << "a memory ini has no file";
  EXPECT_EQ(v.sGetIniSection(), "KS");
}

TEST(CoordinateSystemVector, MalformedStoresKeepWhatWasRead) {
  const char* texts[] = {
      "",
      "[KS]\nSize=2000000000\n[KS/Entry1]\nNameKS=one\n",
      "[KS]\nSize=-5\n[KS/Entry1]\nNameKS=one\n",
      "[KS]\nSize=3\nTyp1=1\n[KS/Entry3]\nNameKS=three\nA11\n=\nA13=\n",
      "[KS]\nSize=2\nTyp1=2\n[KS/Entry1]\nA11=1e400\nA12=nan\niX0=4294967296\nPossiblities=-1\n",
      "[KS]\nSize=1\nTyp1=1\n[KS/Entry1]\nNameKS=" "\x01\x02\xff\xfe\x80" "\nSignatur=" "0123456789012345678901234567890123\n",
  };
  for (const char* text : texts) {
    TKxMemIniFile ini;
    ini.vReadFromString(text);
    TCoordinateSystemVector v;
    v.vReadIni(&ini, "KS");
    EXPECT_LE(v.size(), 1) << text;
    for (int i = 0; i < v.size(); ++i) {
      EXPECT_LE(std::string(v[i]->rGetSignatur().get()).size(), 23u);
      EXPECT_LE(v[i]->ulGetPossibilities(), 0xffffffffUL);
    }
    // Whatever was read writes and reads back the same.
    TKxMemIniFile out;
    v.vWriteIni(&out, "KS", false);
    TCoordinateSystemVector back;
    back.vReadIni(&out, "KS");
    TKxMemIniFile out2;
    back.vWriteIni(&out2, "KS", false);
    EXPECT_EQ(out2.sWriteToString(), out.sWriteToString()) << text;
  }
  // Random bytes in a store that was fine.
  TCoordinateSystemVector good;
  fillAllClasses(good);
  TKxMemIniFile ini;
  good.vWriteIni(&ini, "KS", false);
  const std::string clean = ini.sWriteToString();
  std::mt19937 rng(11);
  for (int round = 0; round < 40; ++round) {
    std::string noise = clean;
    for (int k = 0; k < 30; ++k) noise[static_cast<std::size_t>(rng()) % noise.size()] = static_cast<char>(rng() % 256);
    TKxMemIniFile broken;
    broken.vReadFromString(noise.c_str());
    TCoordinateSystemVector v;
    v.vReadIni(&broken, "KS");
    EXPECT_LE(v.size(), 6);
  }
  // No ini, no section: nothing.
  TCoordinateSystemVector none;
  none.vReadIni(static_cast<TKxIniFile*>(nullptr), "KS");
  none.vReadIni(&ini, nullptr);
  none.vWriteIni(nullptr, "KS", false);
  EXPECT_EQ(none.size(), 0);
}

TEST(CoordinateSystemVector, WritesNextToTheProgramOrWhereItWasRead) {
  cstest::TScratchDir dir;
  TCoordinateSystemVector v;
  v.vSetProgramDir(dir.str().c_str());
  EXPECT_EQ(v.sGetProgramDir(), dir.str() + "/");
  EXPECT_FALSE(v.bReadIni()) << "no file yet";
  fillAllClasses(v);
  EXPECT_TRUE(v.bWriteIni());
  const std::string file = dir / "Calibration/KoordSystem.ini";
  ASSERT_TRUE(std::filesystem::exists(file));
  const std::string bytes = readFile(file);
  EXPECT_EQ(bytes.substr(0, 21), "[KoordSystem]\r\nSize=6");

  TCoordinateSystemVector back;
  back.vSetProgramDir((dir.str() + "\\").c_str());
  EXPECT_TRUE(back.bReadIni());
  ASSERT_EQ(back.size(), 6);
  for (int i = 0; i < 6; ++i) EXPECT_TRUE(back[i]->bEqualParam(v[i])) << i;
  EXPECT_TRUE(back.bWriteIni());
  EXPECT_EQ(readFile(file), bytes) << "write, read, write again: the same bytes";

  // Read from another file: written back there, in its section.
  const std::string elsewhere = dir / "Setup.ini";
  {
    TKxStdIniFile setup{TIniFilename(elsewhere)};
    v.vWriteIni(&setup, "Systeme", false);
  }
  TCoordinateSystemVector third;
  third.vSetProgramDir(dir.str().c_str());
  third.vReadIni(TIniFilename(elsewhere), "Systeme");
  EXPECT_EQ(third.sGetIniFileName(), elsewhere);
  third.pAppendNew(cstest::makeSample(eKSSizeShift, "Neu", 9).release());
  EXPECT_TRUE(third.bWriteIni());
  EXPECT_EQ(TKxMemIniFile(elsewhere.c_str()).iReadInteger("Systeme", "Size", 0), 7);
  EXPECT_EQ(readFile(file), bytes) << "the program's store is untouched";

  // A place that cannot be written raises the ini's write error.
  TCoordinateSystemVector blocked;
  std::ofstream(dir / "NotADir") << "x";
  blocked.vSetProgramDir((dir / "NotADir").c_str());
  EXPECT_NE(codeOf([&] { blocked.bWriteIni(); }), 0UL);
}

TEST(CoordinateSystemVector, PlanesCountAsUsersAndShowTheWorld) {
  TCoordinateSystemVector& v = *pGetDefaultCoordinateSystemVector();
  auto* cs = new TSizeShiftCoordinateSystem;
  cs->vSetChangeable(true);
  cs->setNameKS("PlaneTestHall");
  cs->setNameUnitX("X", "mm");
  cs->setNameUnitY("Y", "mm");
  cs->vSetdA11(0.5);
  cs->vSetdA13(-100);
  cs->vSetdA22(-0.5);
  cs->vSetdA23(40);
  TCoordinateSystem* held = v.pAppendNew(cs);
  {
    TPlane<float> plane(4, 6);
    plane.SetCoordinateSystem(held);
    TPlane<float> view;
    view.beSubPicture(plane, CRectangle(1, 2, 1, 3));
    EXPECT_EQ(view.pGetCoordinateSystem(), held);
    EXPECT_EQ(held->iGetUser(), 1) << "one common, one user";
    TPlane<unsigned char> other(2, 2);
    other.SetCoordinateSystem(held);
    EXPECT_EQ(held->iGetUser(), 2);

    void* h = plane.vpCreateCOORDINATESYSTEM_HANDLE();
    kxutils::TCoordinatesystemInfo info;
    ASSERT_EQ(ulCoordinatesystem_GetInfo(h, &info), kxutils::ulOk);
    EXPECT_EQ(info.name + info.unitX, "PlaneTestHallmm");
    EXPECT_TRUE(info.offsetX == -100.0 && info.scaleX == 0.5 && info.offsetY == 40.0 && info.scaleY == -0.5);
    ulCoordinatesystem_DeleteHandle(&h);

    // A change of the system makes the plane newer.
    const Process::TTimeStamp before = plane.getTimeStamp();
    static_cast<TSizeShiftCoordinateSystem*>(held)->vSetdA11(0.25);
    EXPECT_GT(plane.getTimeStamp(), before);

    const int index = v.iIndexOf(held);
    EXPECT_EQ(codeOf([&] { v.vDelete(index); }), Err::ulCoordinateSystemInUse);
    v.vCompress();
    EXPECT_GE(v.iIndexOf(held), 0) << "a used system survives";
  }
  EXPECT_EQ(held->iGetUser(), 0);
  v.vCompress();
  EXPECT_EQ(v.iIndexOf(held), -2);
}
