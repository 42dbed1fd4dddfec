#include <cstring>

#include "H5TestUtil.h"
#include "HDF5/H5Errors.h"
#include "HDF5/TH5Bootblock.h"

using namespace h5test;

namespace {
// The strings of a block image, from the magic to the empty string.
std::vector<std::string> strings(const std::string& block) {
  std::vector<std::string> out;
  size_t pos = 0;
  while (pos < block.size()) {
    const size_t end = block.find('\0', pos);
    if (end == std::string::npos) break;
    out.push_back(block.substr(pos, end - pos));
    if (end == pos) break;
    pos = end + 1;
  }
  return out;
}
// "%04d-%02d-%02d %02d:%02d:%02d"
bool isStamp(const std::string& s) {
  const std::string form = "dddd-dd-dd dd:dd:dd";
  if (s.size() != form.size()) return false;
  for (size_t i = 0; i < s.size(); ++i)
    if (form[i] == 'd' ? !std::isdigit(static_cast<unsigned char>(s[i])) : s[i] != form[i]) return false;
  return true;
}
}  // namespace

class Bootblock : public H5Test {};

TEST_F(Bootblock, NewFileStartsWithMagicAndDefaultKeysInOrder) {
  const std::string name = path("a.h5");
  TH5File* f = db->pCreateFile(name.c_str(), "A");
  const std::string head = readBytes(name, 1024);
  ASSERT_EQ(head.size(), 1024u);
  const auto s = strings(head);
  ASSERT_GE(s.size(), 9u);
  EXPECT_EQ(s[0], "KXHDF5 1024");
  EXPECT_EQ(s[1], "Firma=Kelvarix");
  EXPECT_EQ(s[2], std::string("FileVersion=") + TH5Bootblock::cpGetVersion());
  EXPECT_EQ(s[3].rfind("DateCreated=", 0), 0u);
  EXPECT_TRUE(isStamp(s[3].substr(12))) << s[3];
  EXPECT_TRUE(isStamp(s[4].substr(10))) << s[4];
  EXPECT_EQ(s[4].rfind("LastWrite=", 0), 0u);
  EXPECT_EQ(s[5], "DeletedObjects=0");
  EXPECT_EQ(s[6], "DeletedSize=0");
  EXPECT_EQ(s[7].rfind("LastWorker=", 0), 0u);
  EXPECT_GT(s[7].size(), std::strlen("LastWorker="));
  EXPECT_EQ(s[8], "");  // the empty string ends the list
  EXPECT_STREQ(f->pGetBootblock()->cpGetDateCreated(), s[3].substr(12).c_str());
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(name.c_str()), 1024);
  EXPECT_EQ(TH5Bootblock::igetBootblockSize((dir + "\\a.h5").c_str()), 1024) << "backslash counts as slash";
}

TEST_F(Bootblock, EntriesAreWrittenAtOnceAndSurviveReopening) {
  const std::string name = path("b.h5");
  TH5File* f = db->pCreateFile(name.c_str(), "B");
  TH5Bootblock* b = f->pGetBootblock();
  b->vSetEntry("Projekt", "Halle 3");
  b->vSetLastWorker("Meier");
  b->vSetEntry("Firma", "Other");  // replaced in place, order kept
  auto s = strings(readBytes(name, 1024));
  EXPECT_EQ(s[1], "Firma=Other");
  EXPECT_NE(std::find(s.begin(), s.end(), "Projekt=Halle 3"), s.end());
  EXPECT_NE(std::find(s.begin(), s.end(), "LastWorker=Meier"), s.end());

  b->vObjectDeleted(100);
  b->vObjectDeleted(23);
  EXPECT_EQ(b->sGetEntry("DeletedObjects"), "2");
  EXPECT_EQ(b->sGetEntry("DeletedSize"), "123");
  b->vDeleteEntry("Projekt");
  expectError(kx::h5::ulH5BootblockKey, "Key Projekt not exist", [&] { b->vDeleteEntry("Projekt"); });
  expectError(kx::h5::ulH5BootblockKey, "", [&] { b->sGetEntry("Projekt"); });

  db->vCloseFile("B");
  f = db->pOpenFile(name.c_str(), "B", false, true);
  b = f->pGetBootblock();
  EXPECT_EQ(b->iGetSize(), 1024);
  EXPECT_EQ(b->sGetEntry("DeletedSize"), "123");
  EXPECT_STREQ(b->cpGetLastWorker(), "Meier");
  EXPECT_FALSE(b->bExistEntry("Projekt"));
  b->vNoDeletedObjects();  // read-only: in memory only
  db->vCloseFile("B");
  s = strings(readBytes(name, 1024));
  EXPECT_NE(std::find(s.begin(), s.end(), "DeletedObjects=2"), s.end()) << "read-only: not written";
}

TEST_F(Bootblock, UnknownKeysStayAndTheBlockIsCutAtSizeLessTwo) {
  const std::string name = path("raw.bin");
  // A hand-made block of 64 bytes with a key the system does not know.
  std::string block(64, '\0');
  const char text[] = "KXHDF5 64\0Own=1\0";
  std::memcpy(block.data(), text, sizeof text - 1);
  writeBytes(name, block + std::string(100, 'x'));
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(name.c_str()), 64);
  {
    TH5Bootblock b(name.c_str(), 64, false);
    EXPECT_EQ(b.sGetEntry("Own"), "1");
    // The defaults do not fit into 62 bytes: whole entries only, never a cut one.
    const std::string image = readBytes(name, 64);
    const auto s = strings(image);
    EXPECT_EQ(s[0], "KXHDF5 64");
    EXPECT_EQ(s[1], "Own=1");
    EXPECT_EQ(s.back(), "");
    EXPECT_EQ(image[62], '\0');
    EXPECT_EQ(image[63], '\0');
    size_t used = 0;
    for (const auto& e : s) used += e.size() + 1;
    EXPECT_LE(used, 62u);
  }
  EXPECT_EQ(readBytes(name).substr(64), std::string(100, 'x')) << "nothing past the block is touched";

  // An entry set by hand that does not fit is refused, and nothing changes.
  TH5Bootblock b(name.c_str(), 64, false);
  const std::string before = readBytes(name, 64);
  expectError(kx::h5::ulH5Database, "Projekt",
              [&] { b.vSetEntry("Projekt", std::string(40, 'p')); });
  EXPECT_FALSE(b.bExistEntry("Projekt"));
  EXPECT_EQ(readBytes(name, 64), before);
}

TEST_F(Bootblock, SizeIsZeroForShortOrForeignFiles) {
  writeBytes(path("short"), "KXHDF5 1024");
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("short").c_str()), 0);
  writeBytes(path("empty"), "");
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("empty").c_str()), 0);
  writeBytes(path("text"), std::string("This is a plain text file of more than 32 bytes.\n"));
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("text").c_str()), 0);
  writeBytes(path("nomagic"), std::string("KXHDF51024") + std::string(40, '\0'));
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("nomagic").c_str()), 0);
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("missing").c_str()), 0);
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(nullptr), 0);
  writeBytes(path("odd"), std::string("KXHDF5 512") + std::string(40, '\0'));
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(path("odd").c_str()), 512);
}

TEST_F(Bootblock, MalformedBlocksReadWithoutOverrun) {
  // No terminating null anywhere, an entry without '=', binary bytes.
  const std::string name = path("junk");
  std::string block = "KXHDF5 128";
  block += '\0';
  block += "novalue";
  block += '\0';
  block += "k=v";
  block += '\0';
  block += std::string(200, '\xff');
  writeBytes(name, block);
  TH5Bootblock b(name.c_str(), 128, true);
  EXPECT_TRUE(b.bExistEntry("novalue"));
  EXPECT_EQ(b.sGetEntry("novalue"), "");
  EXPECT_EQ(b.sGetEntry("k"), "v");
  EXPECT_EQ(readBytes(name), block) << "a read-only block is never written";
}
