#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "File98TestUtil.h"
#include "file98/File98Errors.h"
#include "file98/TIniFilename.h"
#include "file98/TKxMemIniFile.h"
#include "kxexception/KxError.h"
#include "kxexception/TLanguage.h"

namespace {

using namespace kxtest;

std::string text(TKxMemIniFile& ini) {
  std::string s(ini.uGetStringSize(), '?');
  ini.vWriteToString(s.data());
  EXPECT_EQ(s.back(), '\0');
  s.pop_back();
  EXPECT_EQ(s, ini.sWriteToString());
  return s;
}

TEST(MemIniRead, EntryRulesOfTheFormat) {
  // Blank and tab lines are skipped; any other line that is no entry ends the
  // section, and the lines up to the next head are lost.
  auto ini = parsed(
      "ignored=before any section\n[Camera]\na=b=c\n  \t \n\n[x]=y\nempty=\n key with blanks = value \n"
      "=x\nlost=after the end\n[Second] trailing text\nk=v\n; a comment ends the section too\ngone=1\n"
      "[Third\nalso=gone\n");
  ASSERT_EQ(ini.uGetSectionCount(), 2u);
  EXPECT_EQ(ini.sReadString("Camera", "a", "d"), "b=c");
  EXPECT_EQ(ini.sReadString("Camera", "[x]", "d"), "y");  // inside a section: an entry
  EXPECT_FALSE(ini.bSectionExists("x"));
  EXPECT_TRUE(ini.bValueExists("Camera", "empty"));
  EXPECT_EQ(ini.sReadString("Camera", "empty", "default"), "default");
  EXPECT_EQ(ini.sReadString("Camera", " key with blanks ", "d"), " value ");  // nothing trimmed
  EXPECT_FALSE(ini.bValueExists("Camera", "key with blanks"));
  EXPECT_FALSE(ini.bValueExists("Camera", "lost"));
  EXPECT_EQ(ini.sReadString("Second", "k", ""), "v");
  EXPECT_FALSE(ini.bValueExists("Second", "gone"));
  EXPECT_FALSE(ini.bSectionExists("Third"));
  EXPECT_EQ(ini.uGetEntryCount(0), 4u);
}

TEST(MemIniRead, SectionHeadsAndTheLineAfterASection) {
  // "=x" ends [a]; the line after it is read again as a head candidate.
  auto ini = parsed("[a]\nk=1\n=x\n[b]\nk=2\n[c][d]\nk=3\n  [ e ]  \nk=4\n[]\nk=5\n");
  std::vector<std::string> names;
  ini.vReadSections(names);
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c", " e ", ""}));
  EXPECT_EQ(ini.sReadString("c", "k", ""), "3");
  EXPECT_EQ(ini.sReadString("", "k", ""), "5");
  EXPECT_FALSE(ini.bSectionExists("C"));  // exact names
  EXPECT_FALSE(ini.bSectionExists(nullptr));
}

TEST(MemIniRead, CrLfAndLfReadAlike) {
  const std::string lf = "[S]\nA=1\nB=two words\n\n[T]\nC=3\n";
  std::string crlf;
  for (char c : lf) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  auto a = parsed(lf), b = parsed(crlf), c = parsed("[S]\r\r\nA=1\r\nB=two words\n\r\n[T]\nC=3");
  EXPECT_EQ(text(a), text(b));
  EXPECT_EQ(text(a), text(c));
  EXPECT_EQ(text(a), "[S]\r\nA=1\r\nB=two words\r\n\r\n[T]\r\nC=3\r\n\r\n");
}

TEST(MemIniRead, DuplicatesAreKeptAndTheFirstCounts) {
  auto ini = parsed("[s]\nk=1\nk=2\n[s]\nk=3\nm=4\n");
  EXPECT_EQ(ini.sReadString("s", "k", ""), "1");
  EXPECT_FALSE(ini.bValueExists("s", "m"));  // in the second [s]: never found
  ASSERT_EQ(ini.uGetSectionCount(), 2u);
  EXPECT_EQ(ini.sReadString(1, 1, ""), "4");
  EXPECT_EQ(ini.sReadString(7, 0, "out"), "out");
  EXPECT_STREQ(ini.cpGetEntryName(1, 9), "");
  EXPECT_STREQ(ini.cpGetSectionName(9), "");
  EXPECT_EQ(text(ini), "[s]\r\nk=1\r\nk=2\r\n\r\n[s]\r\nk=3\r\nm=4\r\n\r\n");
  ini.vWriteString("s", "k", "9");  // the first one changes
  EXPECT_EQ(ini.sReadString(0, 0, ""), "9");
  EXPECT_EQ(ini.sReadString(0, 1, ""), "2");
  ini.vDeleteEntry("s", "k");  // all of them in the first section
  EXPECT_EQ(ini.uGetEntryCount(0), 0u);
  EXPECT_EQ(ini.uGetEntryCount(1), 2u);
}

TEST(MemIniValues, FormsOfEveryType) {
  TKxMemIniFile ini;
  ini.vWriteBool("v", "b", true);
  ini.vWriteInteger("v", "i", -42);
  ini.vWriteLongLong("v", "ll", -9000000000LL);
  ini.vWriteFloat("v", "f", 1.5);
  ini.vWriteFloat("v", "small", -2.5e-300);
  ini.vWriteString("v", "s", "text with = and ; kept");
  EXPECT_EQ(text(ini),
            "[v]\r\nb=1\r\ni=-42\r\nll=-9000000000\r\nf=1.500000e+00\r\nsmall=-2.500000e-300\r\n"
            "s=text with = and ; kept\r\n\r\n");
  EXPECT_DOUBLE_EQ(ini.dReadFloat("v", "small", 0), -2.5e-300);
}

TEST(MemIniValues, ReadingFallsBackToTheDefault) {
  auto ini = parsed(
      "[n]\nb2=2\nbt=true\nbe=\ni1= +17xyz\ni2=abc\ni3=99999999999\ni4=-2147483648\n"
      "ll=9223372036854775808\nf1=1,5\nf2= -1,25e3\nf3=x1.5\nf4=1.\nf5=+-1\n");
  // Bools: a number other than 0 is true; no number gives the default.
  for (const auto& [key, dflt, want] : {std::tuple{"b2", false, true}, {"bt", true, true}, {"bt", false, false},
                                        {"be", true, true}, {"missing", true, true}})
    EXPECT_EQ(ini.bReadBool("n", key, dflt), want) << key << dflt;
  // Integers as scanf reads them (blanks, sign, trailing text), within range.
  for (const auto& [key, want] : {std::pair{"i1", 17}, {"i2", 5}, {"i3", 5}, {"i4", -2147483647 - 1}})
    EXPECT_EQ(ini.iReadInteger("n", key, 5), want) << key;
  EXPECT_EQ(ini.iReadLongLong("n", "ll", 7), 7);
  EXPECT_EQ(ini.iReadLongLong("n", "i3", 7), 99999999999LL);
  for (const auto& [key, want] : {std::pair{"f3", 0.25}, {"f4", 1.0}, {"f5", 0.25}})
    EXPECT_DOUBLE_EQ(ini.dReadFloat("n", key, 0.25), want) << key;
  EXPECT_DOUBLE_EQ(ini.dReadFloat("n", nullptr, 0.5), 0.5);
  EXPECT_EQ(ini.sReadString(nullptr, "f1", nullptr), "");
  // The decimal comma reads the same in both languages.
  for (auto lang : {TLanguage::eDeutsch, TLanguage::eEnglisch}) {
    TLanguage::vSetAktLanguage(lang);
    EXPECT_DOUBLE_EQ(ini.dReadFloat("n", "f1", 0), 1.5);
    EXPECT_DOUBLE_EQ(ini.dReadFloat("n", "f2", 0), -1250.0);
    ini.vWriteFloat("w", "x", 0.75);
    EXPECT_EQ(ini.sReadString("w", "x", ""), "7.500000e-01");
  }
  TLanguage::setDeutsch();
}

TEST(MemIniWrite, AppendsReplacesAndKeepsOneLinePerEntry) {
  TKxMemIniFile ini;
  ini.vWriteString("A", "k", "1");
  ini.vWriteString("B", "k", "2");
  ini.vWriteString("A", "m", "3");
  ini.vWriteString("A", "k", "4");
  ini.vWriteString("A", "", "ignored");
  ini.vWriteString(nullptr, "k", "ignored");
  ini.vWriteString("A", nullptr, "ignored");
  ini.vWriteString("A", "multi\nline", "first\r\nsecond");
  ini.vWriteString("A", "nullvalue", nullptr);
  EXPECT_EQ(text(ini), "[A]\r\nk=4\r\nm=3\r\nmulti line=first  second\r\nnullvalue=\r\n\r\n[B]\r\nk=2\r\n\r\n");
  EXPECT_EQ(ini.uGetSection("C"), 2u);  // made at the end
  EXPECT_EQ(ini.iGetSectionIndex("D"), -1);
  ini.vAppendString(0, "k", "dup");
  ini.vAppendString(9, "k", "nowhere");
  EXPECT_EQ(ini.sReadString(0, 4, ""), "dup");
}

TEST(MemIniWrite, WriteReadWriteGivesTheSameBytes) {
  for (const char* in : {"[a]\nk=v\n\n[b]\n", "junk\n[s]\r\na=b=c\r\n[x]=y\r\n \t\r\nempty=\r\n=x\r\nz=lost\r\n[t]\r\n",
                         "[dup]\nk=1\nk=2\n[dup]\nk=3\n", "[a]b]\nk=v\n", "[\xff\xfe]\n\x01\x02=\x80\x81\n"}) {
    auto first = parsed(in);
    const std::string once = text(first);
    auto second = parsed(once);
    EXPECT_EQ(text(second), once) << in;
  }
}

TEST(MemIniState, ChangedFlagAndDeepCopies) {
  auto ini = parsed("[s]\nk=1\n");
  ini.vWriteString("s", "k", "1");  // the same value: nothing changed
  EXPECT_FALSE(ini.bIsChanged());
  ini.vWriteString("s", "k", "2");
  EXPECT_TRUE(ini.bIsChanged());
  ini.vClearChange();
  ini.vDeleteEntry("s", "none");
  ini.vDeleteSection("none");
  ini.vRenameSection("none", "x");
  EXPECT_FALSE(ini.bIsChanged());
  ini.vRenameSection("s", "t");
  EXPECT_TRUE(ini.bIsChanged());

  TKxMemIniFile copy;
  copy = ini;
  copy.vClear();  // deep: the original keeps its entries
  EXPECT_EQ(ini.sReadString("t", "k", ""), "2");
  copy.vReadFromString("[r]\nk=v\n");
  EXPECT_FALSE(copy.bIsChanged());
}

TEST(MemIniSections, DeleteRenameCopyAndSubsections) {
  auto ini = parsed(
      "[Application]\nSize=2\n[Application/Entry1]\nPath=a\n[Other]\nk=1\n[Application/Entry2]\nPath=b\n"
      "[ApplicationX]\nk=2\n[Application/Entry1]\nPath=dup\n");
  ini.vRenameSection("Other", "Application/Entry2");  // the old one of that name goes
  std::vector<std::string> names;
  ini.vReadSections(names);
  EXPECT_EQ(names, (std::vector<std::string>{"Application", "Application/Entry1", "Application/Entry2",
                                             "ApplicationX", "Application/Entry1"}));

  TKxMemIniFile other = parsed("[Application/Entry1]\nPath=new\nPath=second\n[Unrelated]\nq=1\n");
  ini.vCopySection(&other, "Application/Entry1");
  ini.vCopySection(&other, "Unrelated");
  ini.vCopySection(&other, "Absent");
  ini.vCopySection(nullptr, "Unrelated");
  ini.vReadSections(names);
  EXPECT_EQ(names, (std::vector<std::string>{"Application", "Application/Entry1", "Application/Entry2",
                                             "ApplicationX", "Unrelated"}));
  EXPECT_EQ(ini.sReadString(1, 1, ""), "second");  // duplicates copied as they are

  ini.vDeleteSubsections("Application");  // a prefix, not a path: ApplicationX goes too
  ini.vReadSections(names);
  EXPECT_EQ(names, std::vector<std::string>{"Unrelated"});
  ini.vDeleteSubsections("");  // every name begins with ""
  EXPECT_EQ(ini.uGetSectionCount(), 0u);
}

TEST(MemIniFile, ReadsAndOverwritesFiles) {
  TempDir t;
  const std::string name = t / "x.ini";
  TKxMemIniFile missing(name.c_str());
  missing.vWriteString("s", "k", "v");
  missing.vOverwriteFile();
  EXPECT_FALSE(missing.bIsChanged());
  EXPECT_EQ(readFile(name), "[s]\r\nk=v\r\n\r\n");
  missing.vWriteString("s", "k", "w");
  missing.vOverwriteFile((t / "copy.ini").c_str());  // another file: still changed
  EXPECT_TRUE(missing.bIsChanged());
  TKxMemIniFile back(TIniFilename((t.path() + "\\copy.ini").c_str()));
  EXPECT_EQ(back.sReadString("s", "k", ""), "w");

  for (const std::string& bad : {t / "none/x.ini", t.path()})
    expectCode(kx::file98::ulIniWrite, [&] { missing.vOverwriteFile(bad.c_str()); });
  TKxMemIniFile unnamed;
  EXPECT_THROW(unnamed.vOverwriteFile(), unsigned long);
  kx::deleteError();
  // A directory or a device is no ini file: read as empty, never blocks.
  TKxMemIniFile dir(t.path().c_str()), dev("/dev/zero");
  EXPECT_EQ(dir.uGetSectionCount() + dev.uGetSectionCount(), 0u);
}

TEST(MemIniFile, OutsideReaderSeesWhatWasWritten) {
  TempDir t;
  TKxMemIniFile ini;
  ini.vWriteString("Camera", "Name", "Cam 1");
  ini.vWriteFloat("Camera", "Gain", 2.5);
  ini.vWriteInteger("Camera", "Binning", 2);
  ini.vWriteString("Application/Entry1", "Path", "c:/data/appl");
  ini.vOverwriteFile((t / "check.ini").c_str());
  const std::string cmd = std::string(KX_PYTHON3) +
                          " -c \"import configparser,sys\n"
                          "c=configparser.ConfigParser(strict=False,interpolation=None,delimiters=('=',))\n"
                          "c.optionxform=str\n"
                          "c.read(sys.argv[1])\n"
                          "print(';'.join(s+':'+','.join(k+'='+v for k,v in c[s].items()) for s in c.sections()))\" " +
                          t / "check.ini";
  std::FILE* p = ::popen(cmd.c_str(), "r");
  ASSERT_NE(p, nullptr);
  char buf[512] = {};
  const size_t n = std::fread(buf, 1, sizeof buf - 1, p);
  ASSERT_EQ(::pclose(p), 0);
  EXPECT_EQ(std::string(buf, n),
            "Camera:Name=Cam 1,Gain=2.500000e+00,Binning=2;Application/Entry1:Path=c:/data/appl\n");
}

// Malformed text never crashes, and what was read before the damage stays.
TEST(MemIniMalformed, TruncatedAtEveryByte) {
  const std::string full = "head\r\n[One]\r\nA=1\r\nB=two=2\r\n\r\n[Two]\r\nC=\r\nD=4\r\n\r\n[Three]\r\nE=5\r\n";
  const auto whole = parsed(full);
  for (size_t n = 0; n <= full.size(); ++n) {
    auto part = parsed(full.substr(0, n));
    ASSERT_LE(part.uGetSectionCount(), whole.uGetSectionCount());
    for (unsigned s = 0; s < part.uGetSectionCount(); ++s) {
      EXPECT_STREQ(part.cpGetSectionName(s), whole.cpGetSectionName(s)) << n;
      const unsigned entries = part.uGetEntryCount(s);
      ASSERT_LE(entries, whole.uGetEntryCount(s)) << n;
      const bool last = s + 1 == part.uGetSectionCount();
      for (unsigned e = 0; e < entries; ++e) {
        EXPECT_STREQ(part.cpGetEntryName(s, e), whole.cpGetEntryName(s, e)) << n;
        const std::string v = part.sReadString(int(s), int(e), ""), w = whole.sReadString(int(s), int(e), "");
        if (last && e + 1 == entries) {
          EXPECT_EQ(w.compare(0, v.size(), v), 0) << n;  // a cut value is a beginning of the value
        } else {
          EXPECT_EQ(v, w) << n;
        }
      }
      if (!last) {
        EXPECT_EQ(entries, whole.uGetEntryCount(s)) << n;
      }
    }
  }
}

TEST(MemIniMalformed, RandomBytesHugeLinesAndKeysWithoutValues) {
  std::mt19937 rng(1234);
  const std::string alphabet = "[]=\r\n\t ab;\xff";
  int checked = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string in(rng() % 200, ' ');
    for (auto& c : in) c = round % 2 ? alphabet[rng() % alphabet.size()] : static_cast<char>(rng());
    TKxMemIniFile ini;
    ini.vReadFromString(in.c_str());
    const std::string once = text(ini);
    // A section name with '=' behind another section reads back as an entry
    // of that section: the format has no way to write it.
    bool ambiguous = false;
    for (unsigned i = 1; i < ini.uGetSectionCount(); ++i)
      ambiguous |= std::string(ini.cpGetSectionName(i)).find('=') != std::string::npos;
    if (ambiguous) continue;
    ++checked;
    auto again = parsed(once);
    ASSERT_EQ(text(again), once) << round;
  }
  EXPECT_GT(checked, 2500);
  std::string huge = "[big]\nkey=" + std::string(8 << 20, 'v') + "\nnext=1\n[" + std::string(1 << 20, 's') + "]\nk=2\n";
  auto big = parsed(huge);
  EXPECT_EQ(big.sReadString("big", "key", "").size(), 8u << 20);
  EXPECT_EQ(big.sReadString("big", "next", ""), "1");
  EXPECT_EQ(big.sReadString(std::string(1 << 20, 's').c_str(), "k", ""), "2");
  auto noValues = parsed("[s]\nkey\nafter=1\n[t]\nk=\n=\n==\n");
  EXPECT_EQ(noValues.uGetEntryCount(0), 0u);  // "key" has no '=': it ends the section
  EXPECT_EQ(noValues.uGetEntryCount(1), 1u);
  TKxMemIniFile nul;
  nul.vReadFromString(nullptr);
  EXPECT_EQ(nul.uGetSectionCount(), 0u);

  TempDir t;
  static const char withNul[] = "[a]\nk=v\0w\n[b]\0\nm=1\n";
  writeFile(t / "nul.ini", std::string(withNul, sizeof withNul - 1));
  TKxMemIniFile fromFile((t / "nul.ini").c_str());
  EXPECT_EQ(fromFile.sReadString("a", "k", ""), "vw");  // NUL bytes dropped like CRs
  EXPECT_EQ(fromFile.sReadString("b", "m", ""), "1");
}

}  // namespace
