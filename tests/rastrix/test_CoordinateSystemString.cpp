// The string form of the coordinate systems (file headers): its exact text,
// write-read-write stability for every class, the reading rules, malformed
// input, and iCreateFromString with its deduplication.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <utility>
#include <random>
#include <string>

#include "CoordinateSystemTestUtil.h"
#include "RastrixTestUtil.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TCoordinateSystemLvk.h"
#include "rastrix/TLinearCoordinateSystem.h"
#include "rastrix/TSizeShiftCoordinateSystem.h"

using namespace Rastrix;

namespace {

// Writes, reads into a fresh object of the same class, writes again.
std::string rewritten(const TCoordinateSystem& cs) {
  std::unique_ptr<TCoordinateSystem> back(TCoordinateSystemVector::pCreate(cs.eGetTypOfKS()));
  back->vReadFromString(cs.sWrite2String().c_str());
  return back->sWrite2String();
}

std::string withoutKey(std::string text, const std::string& key) {
  const std::size_t p = text.find("\r\n" + key + "=");
  const std::size_t e = text.find("\r\n", p + 2);
  return text.erase(p, e - p);
}

}  // namespace

TEST(CoordinateSystemString, ExactTextOfASizeShiftSystem) {
  TSizeShiftCoordinateSystem cs;
  cs.vSetChangeable(true);
  cs.setNameKS("Hall");
  cs.setNameUnitX("X", "m");
  cs.setNameUnitY("Y", "m");
  cs.setUnitL("m");
  cs.setUnitA("m\xB2");
  cs.vSetValueZ(1.5);
  cs.vSetdA11(0.5);
  cs.vSetdA13(-10);
  cs.vSetPoint(1, 2.5, 0, 7, -3);
  cs.vSetSignatur("20240102030405123456789");
  std::string expected =
      "KoordTyp=1\r\nSignatur=20240102030405123456789\r\nNameKS=Hall\r\nNameX=X\r\nUnitX=m\r\nNameY=Y\r\n"
      "UnitY=m\r\nUnitL=m\r\nUnitA=m\xB2\r\nChangeable=1\r\nFactorA=1.000000e+00\r\nNameZ=\r\nUnitZ=\r\n"
      "ValueZ=1.500000e+00\r\nPossiblities=0\r\nbSetValues=1\r\nA11=5.000000e-01\r\nA13=-1.000000e+01\r\n"
      "A22=1.000000e+00\r\nA23=0.000000e+00\r\nbSetLine=0\r\nbSetRect=0\r\n";
  for (int i = 0; i < 4; ++i) {
    const bool one = i == 1;
    expected += "dX" + std::to_string(i) + "=" + (one ? "2.500000e+00" : "0.000000e+00") + "\r\n";
    expected += "dY" + std::to_string(i) + "=0.000000e+00\r\n";
    expected += "iX" + std::to_string(i) + "=" + (one ? "7" : "0") + "\r\n";
    expected += "iY" + std::to_string(i) + "=" + (one ? "-3" : "0") + "\r\n";
  }
  EXPECT_EQ(cs.sWrite2String(), expected);

  // vWrite2String appends to what the buffer holds.
  std::string buffer = "Typ=float\r\n";
  buffer.resize(buffer.size() + cs.uGetStringSize() + 8, '\0');
  cs.vWrite2String(buffer.data());
  EXPECT_STREQ(buffer.c_str(), ("Typ=float\r\n" + expected).c_str());
  EXPECT_EQ(cs.uGetStringSize(), expected.size() + 1);

  // The linear class continues with its four values.
  TLinearCoordinateSystem lin;
  lin.vSetdA21(0.25);
  const std::string s = lin.sWrite2String();
  EXPECT_EQ(s.substr(0, 11), "KoordTyp=2\r");
  const std::string tail = "iY3=0\r\nA12=0.000000e+00\r\nA21=2.500000e-01\r\nA31=0.000000e+00\r\nA32=0.000000e+00\r\n";
  ASSERT_GT(s.size(), tail.size());
  EXPECT_EQ(s.substr(s.size() - tail.size()), tail);
}

TEST(CoordinateSystemString, WriteReadWriteGivesTheSameBytesForEveryClass) {
  for (int t = 0; t <= 5; ++t) {
    auto cs = cstest::makeSample(t, "Messplatz_3");
    const std::string first = cs->sWrite2String();
    EXPECT_EQ(rewritten(*cs), first) << "class " << t;
    // And the object read back is equal to the original in every parameter.
    std::unique_ptr<TCoordinateSystem> back(TCoordinateSystemVector::pCreate(t));
    back->vReadFromString(first.c_str());
    EXPECT_TRUE(back->bEqualParam(cs.get())) << "class " << t;
    EXPECT_EQ(back->rStrGetNameKS(), "Messplatz_3");
  }
  // Numbers that "%le" rounds are stable after the first rounding.
  TSizeShiftCoordinateSystem odd;
  odd.vSetdA11(1.0 / 3.0);
  odd.vSetdA23(-123456789.987654321);
  odd.vSetValueZ(6.02214076e23);
  const std::string once = rewritten(odd);
  TSizeShiftCoordinateSystem again;
  again.vReadFromString(once.c_str());
  EXPECT_EQ(again.sWrite2String(), once);
  EXPECT_NE(once.find("A11=3.333333e-01\r\n"), std::string::npos);
}

TEST(CoordinateSystemString, ReadingRules) {
  TSizeShiftCoordinateSystem source;
  source.vSetChangeable(true);
  source.setNameKS("Big hall");
  source.setNameUnitX("X", "\xC2\xB0");  // stored as the Latin-1 byte
  source.vSetUnitZ("\xC2\xB0K");         // stored as given
  const std::string text = source.sWrite2String();
  TSizeShiftCoordinateSystem cs;
  cs.vReadFromString(text.c_str());
  EXPECT_EQ(cs.rStrGetNameKS(), "Big") << "a blank ends the word";
  EXPECT_EQ(cs.rStrGetUnitX(), "\xB0");
  EXPECT_EQ(cs.rStrGetUnitZ(), "\xB0K") << "the reader repairs every unit";
  EXPECT_EQ(cs.rGetSignatur(), source.rGetSignatur());

  // An empty value is an empty text, never the next line; an empty signature
  // is a fresh one; an empty number keeps its value.
  TSizeShiftCoordinateSystem empty;
  empty.vSetdA11(4);
  std::string t = empty.sWrite2String();
  for (const char* key : {"NameX=X", "Signatur=", "A11=4.000000e+00"}) {
    const std::size_t p = t.find(key);
    const std::size_t eq = t.find('=', p);
    t.erase(eq + 1, t.find('\r', p) - eq - 1);
  }
  TSizeShiftCoordinateSystem e;
  e.vSetdA11(9);
  e.vReadFromString(t.c_str());
  EXPECT_EQ(e.rStrGetNameX(), "");
  EXPECT_EQ(e.rStrGetUnitX(), "Pixel");
  EXPECT_EQ(std::strlen(e.rGetSignatur().get()), 23u);
  EXPECT_NE(e.rGetSignatur(), empty.rGetSignatur());
  EXPECT_EQ(e.dGetA11(), 9.0);

  // Keys are found anywhere, in any order; a key at a line start wins over
  // the same text inside a value.
  TCoordinateSystem any;
  any.vReadFromString(
      "Possiblities=5\nNameZ=UnitX=wrong\nValueZ=2,5\nUnitZ=\nNameY=b\nUnitY=c\nUnitL=d\nUnitA=e\n"
      "Changeable=1\nFactorA=2\nSignatur=S1\nNameKS=n\nNameX=a\nUnitX=right");
  EXPECT_EQ(any.rStrGetUnitX(), "right");
  EXPECT_EQ(any.rStrGetNameZ(), "UnitX=wrong");
  EXPECT_EQ(any.dGetValueZ(), 2.5) << "a decimal comma is read";
  EXPECT_EQ(any.ulGetPossibilities(), 5UL);
  EXPECT_TRUE(any.bIsChangeable());
  EXPECT_STREQ(any.rGetSignatur().get(), "S1");
}

TEST(CoordinateSystemString, AMissingKeyEndsTheReadingKeepingWhatWasRead) {
  auto sample = cstest::makeSample(eKSLinear, "Sample");
  const std::string full = sample->sWrite2String();
  // Without "UnitY": the keys before it are read, those after it are not.
  TLinearCoordinateSystem cs;
  cs.vReadFromString(withoutKey(full, "UnitY").c_str());
  EXPECT_EQ(cs.rStrGetNameKS(), "Sample");
  EXPECT_EQ(cs.rStrGetNameY(), "H\xF6he");
  EXPECT_EQ(cs.rStrGetUnitL(), "Pixel");
  EXPECT_EQ(cs.dGetA11(), 1.0);
  // Without the last point: everything up to it, nothing of the linear part.
  TLinearCoordinateSystem points;
  points.vReadFromString(withoutKey(full, "iY3").c_str());
  EXPECT_EQ(points.rGetPoint(3).iX, 30);
  EXPECT_EQ(points.rGetPoint(3).iY, 0);
  EXPECT_EQ(points.dGetA12(), 0.0);
}

TEST(CoordinateSystemString, MalformedTextNeverBreaksTheReader) {
  auto sample = cstest::makeSample(eKSLinear, "Fuzz");
  const std::string full = sample->sWrite2String();
  // Every truncation: the reader stops where the text does; the result is
  // a fixed point of writing and reading.
  for (std::size_t n = 0; n <= full.size(); ++n) {
    TLinearCoordinateSystem cs;
    cs.vReadFromString(full.substr(0, n).c_str());
    EXPECT_EQ(rewritten(cs), cs.sWrite2String()) << n;
  }
  TLinearCoordinateSystem whole;
  whole.vReadFromString(full.c_str());
  EXPECT_EQ(whole.sWrite2String(), full);

  // Numbers that are none, or out of range, keep the value; lines without
  // '=' are no keys.
  std::string junkText = full;
  const std::pair<const char*, const char*> edits[] = {
      {"A11", "abc"}, {"FactorA", "1e999"}, {"iX1", "99999999999"}, {"ValueZ", "nan"}};
  for (const auto& [key, value] : edits) {
    const std::size_t p = junkText.find(std::string("\n") + key + "=") + std::strlen(key) + 2;
    junkText.replace(p, junkText.find('\r', p) - p, value);
  }
  TLinearCoordinateSystem junk;
  junk.vReadFromString(junkText.c_str());
  EXPECT_EQ(junk.dGetA11(), 1.0);
  EXPECT_EQ(junk.dGetFactorAUnit(), 1.0);
  EXPECT_EQ(junk.rGetPoint(1).iX, 0);
  EXPECT_EQ(junk.rGetPoint(1).iY, -7);
  EXPECT_TRUE(std::isnan(junk.dGetValueZ()));
  EXPECT_EQ(junk.dGetA32(), 7.0) << "reading went on";
  EXPECT_EQ(rewritten(junk), junk.sWrite2String());
  TLinearCoordinateSystem noEquals;
  noEquals.vReadFromString("Signatur\nNameKS\r\n=\n==\n");
  EXPECT_EQ(noEquals.rStrGetNameKS(), "Default");

  // Binary bytes and huge lines.
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> byte(1, 255);
  for (int round = 0; round < 50; ++round) {
    std::string noise = full;
    for (int k = 0; k < 40; ++k) noise[static_cast<std::size_t>(rng()) % noise.size()] = static_cast<char>(byte(rng));
    TLinearCoordinateSystem cs;
    cs.vReadFromString(noise.c_str());
    EXPECT_EQ(rewritten(cs), cs.sWrite2String()) << round;
  }
  const std::string huge = "KoordTyp=2\r\nSignatur=" + std::string(1 << 20, 'S') + "\r\nNameKS=" +
                           std::string(1 << 20, '\xE4') + "\r\nNameX=" + std::string(300000, '=');
  TLinearCoordinateSystem big;
  big.vReadFromString(huge.c_str());
  EXPECT_EQ(std::strlen(big.rGetSignatur().get()), 23u);
  EXPECT_EQ(big.rStrGetNameKS().size(), std::size_t{1} << 20);
  EXPECT_EQ(big.rStrGetNameX().size(), 300000u);
  EXPECT_EQ(rewritten(big), big.sWrite2String());
  big.vReadFromString(nullptr);  // nothing
  EXPECT_EQ(big.rStrGetNameKS().size(), std::size_t{1} << 20);
}

TEST(CoordinateSystemString, CreateFromStringFindsOrAddsOneSystem) {
  TCoordinateSystemVector v;
  auto hall = cstest::makeSample(eKSSizeShift, "Hall");
  const std::string header = "Name=picture\r\nTyp=float\r\n" + hall->sWrite2String();

  // The same picture twice: one system.
  const int first = v.iCreateFromString(header.c_str());
  ASSERT_EQ(first, 0);
  EXPECT_EQ(v.iCreateFromString(header.c_str()), 0);
  EXPECT_EQ(v.size(), 1);
  EXPECT_EQ(v[0]->rStrGetNameKS(), "Hall");
  EXPECT_TRUE(v[0]->bEqualParam(hall.get()));
  EXPECT_FALSE(v[0]->bIsChanged());
  EXPECT_EQ(v[0]->iGetUser(), 0);

  // A second picture whose system has another value Z: "Hall~1".
  hall->vSetValueZ(hall->dGetValueZ() + 1);
  const std::string changed = hall->sWrite2String();
  EXPECT_EQ(v.iCreateFromString(changed.c_str()), 1);
  EXPECT_EQ(v[1]->rStrGetNameKS(), "Hall~1");
  EXPECT_EQ(v[1]->rGetSignatur(), hall->rGetSignatur()) << "the signature is kept";
  EXPECT_EQ(v.iCreateFromString(changed.c_str()), 1);
  EXPECT_EQ(v.iCreateFromString(header.c_str()), 0);
  // Its own written form (now named "Hall~1") still finds it.
  EXPECT_EQ(v.iCreateFromString(v[1]->sWrite2String().c_str()), 1);
  EXPECT_EQ(v.size(), 2);

  // A third variant of the same name: "Hall~2"; another class with the same
  // values is another system.
  hall->vSetValueZ(0);
  EXPECT_EQ(v.iCreateFromString(hall->sWrite2String().c_str()), 2);
  EXPECT_EQ(v[2]->rStrGetNameKS(), "Hall~2");
  std::string asLvk = hall->sWrite2String();
  asLvk.replace(0, 10, "KoordTyp=5");
  EXPECT_EQ(v.iCreateFromString(asLvk.c_str()), 3);
  EXPECT_EQ(v.eGetTyp(3), eKSLvk);
  EXPECT_EQ(v[3]->rStrGetNameKS(), "Hall~3");

  // No system for the default class, unknown classes, no key, no text.
  const int before = v.size();
  for (const char* text : {"KoordTyp=0\r\nNameKS=x\r\n", "Name=plain picture\r\n", "KoordTyp=6\r\n",
                           "KoordTyp=-1\r\n", "KoordTyp=\r\nNameKS=x\r\n", "KoordTyp=eins\r\n", ""}) {
    EXPECT_EQ(v.iCreateFromString(text), -1) << text;
    EXPECT_EQ(v[v.iCreateFromString(text)], &v) << "-1 is the default system";
  }
  EXPECT_EQ(v.iCreateFromString(nullptr), -1);
  EXPECT_EQ(v.size(), before);

  // Fresh systems of the classes take the default name of the vector's
  // entries: "Default" belongs to the vector itself.
  TLinearCoordinateSystem fresh;
  EXPECT_EQ(v.iCreateFromString(fresh.sWrite2String().c_str()), before);
  EXPECT_EQ(v[before]->rStrGetNameKS(), "Default~1");
}
