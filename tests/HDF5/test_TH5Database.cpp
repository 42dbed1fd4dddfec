#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <sys/wait.h>

#include <vector>

#include "H5TestUtil.h"
#include "HDF5/H5Errors.h"
#include "HDF5/TH5General.h"

using namespace h5test;
using namespace kx::h5;

class Database : public H5Test {
 protected:
  void compressBody();
  void compressFailureBody();
};

TEST_F(Database, IsOneCountedInstance) {
  TH5Database* second = TH5Database::pOpenHDF5();
  EXPECT_EQ(second, db);
  EXPECT_EQ(TH5Database::uGetReferences(), 2u);
  db->pCreateFile(path("x.h5").c_str(), "X");
  TH5Database::vCloseHDF5(&second);
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(TH5Database::uGetReferences(), 1u);
  EXPECT_NE((*db)["x"], nullptr) << "aliases compare without case";
  EXPECT_EQ((*db)[0u], (*db)["X"]);
  EXPECT_EQ((*db)[1u], nullptr);
  EXPECT_EQ((*db)["Y"], nullptr);
}

TEST_F(Database, CreateAndOpenChecksInBothLanguages) {
  const std::string a = path("a.h5"), b = path("b.h5");
  db->pCreateFile(a.c_str(), "A");
  // Creating over an existing file reports the text of a missing one.
  expectError(ulH5Database, "File " + a + " not exist", [&] { db->pCreateFile(a.c_str(), "Z"); });
  TLanguage::setDeutsch();
  expectError(ulH5Database, "Datei " + a + " existiert nicht", [&] { db->pCreateFile(a.c_str(), "Z"); });
  TLanguage::setEnglisch();
  expectError(ulH5Database, "Alias a already exist", [&] { db->pCreateFile(b.c_str(), "a"); });
  expectError(ulH5Database, "File " + a + " already opened", [&] { db->pOpenFile(a.c_str(), "Q", false, true); });
  expectError(ulH5Database, "/./a.h5 already opened",
              [&] { db->pOpenFile((dir + "/./a.h5").c_str(), "Q", false, true); });
  expectError(ulH5Database, "Alias Nope not exist", [&] { db->vCloseFile("Nope"); });
  TLanguage::setDeutsch();
  expectError(ulH5Database, "Alias Nope existiert nicht", [&] { db->vCloseFile("Nope"); });
  expectError(ulH5Database, "Datei " + b + " existiert nicht oder hat falsches Format",
              [&] { db->pOpenFile(b.c_str(), "B", false, false); });
  TLanguage::setEnglisch();
  EXPECT_EQ(db->uGetSize(), 1u);
  EXPECT_FALSE(TH5Database::bExistFile(b.c_str()));
  EXPECT_TRUE(TH5Database::bExistFile(a.c_str()));
}

TEST_F(Database, BadFilesRaiseWrongFormatAndNeverCrash) {
  // A valid file to cut short.
  const std::string good = path("good.h5");
  {
    TH5File* f = db->pCreateFile(good.c_str(), "G");
    TH5General g(f, false);
    std::vector<float> v(1000, 1.5f);
    g.vCreate1(1000, TH5Type::eFloat, "/d", false);
    g.vWrite(v.data(), "/d");
    db->vCloseFile("G");
  }
  const std::string whole = readBytes(good);
  ASSERT_GT(whole.size(), 1024u + 200u);

  struct Bad {
    const char* name;
    std::string bytes;
  };
  std::string magicWrongSize = whole;
  std::memcpy(magicWrongSize.data(), "KXHDF5 2048", 11);  // the user block is 1024
  std::string magicGarbage = std::string("KXHDF5 1024") + std::string(1, '\0') + std::string(3000, 'z');
  std::string binary;
  for (int i = 0; i < 5000; ++i) binary.push_back(static_cast<char>((i * 131) & 0xff));
  const std::vector<Bad> bad = {
      {"empty.h5", ""},
      {"truncated.h5", whole.substr(0, 1024 + 100)},
      {"truncated2.h5", whole.substr(0, whole.size() / 2)},
      {"text.h5", "[Section]\r\nKey=Value\r\nThis is no data base at all, only some text.\r\n"},
      {"magic-size.h5", magicWrongSize},
      {"magic-garbage.h5", magicGarbage},
      {"binary.h5", binary},
  };
  for (const auto& b : bad) {
    SCOPED_TRACE(b.name);
    writeBytes(path(b.name), b.bytes);
    for (bool readOnly : {true, false}) {
      expectError(ulH5Database, "File " + path(b.name) + " not exist or wrong format", [&] {
        TH5File* f = db->pOpenFile(path(b.name).c_str(), "Bad", true, readOnly);
        // A truncated file may open; then reading its data must fail cleanly.
        TH5General g(f, true);
        std::vector<float> v(1000);
        g.vRead("/d", v.data());
      });
      if (db->bExistAlias("Bad")) db->vCloseFile("Bad");
    }
  }
  EXPECT_EQ(db->uGetSize(), 0u);
}

TEST_F(Database, PlainHdf5FileOfAnotherProgramOpens) {
  const std::string name = path("plain.h5");
  {
    hid_t f = H5Fcreate(name.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    ASSERT_GE(f, 0);
    hid_t g = H5Gcreate2(f, "Messung", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    hsize_t dims[2] = {2, 3};
    hid_t s = H5Screate_simple(2, dims, nullptr);
    hid_t d = H5Dcreate2(g, "Werte", H5T_STD_I32BE, s, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    const int values[6] = {1, -2, 3, -4, 5, 600000};
    H5Dwrite(d, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values);
    H5Dclose(d);
    H5Sclose(s);
    H5Gclose(g);
    H5Fclose(f);
  }
  EXPECT_EQ(TH5Bootblock::igetBootblockSize(name.c_str()), 0);
  const std::string before = readBytes(name);
  TH5File* f = db->pOpenFile(name.c_str(), "P", true, false);
  EXPECT_EQ(f->pGetBootblock()->iGetSize(), 0);
  TH5General g(f, false);
  EXPECT_TRUE(g.bExistDir("/messung"));
  EXPECT_EQ(g.eGetSimpleDataTyp("/MESSUNG/werte"), TH5Type::eSignedLong);
  int back[6] = {};
  g.vRead("\\Messung\\Werte", back);  // big-endian in the file, native here
  EXPECT_EQ(back[1], -2);
  EXPECT_EQ(back[5], 600000);
  db->vCloseFile("P");
  EXPECT_EQ(readBytes(name).substr(0, 512), before.substr(0, 512)) << "a file without a block gets none written";
}

TEST_F(Database, HandlesCloseChildrenFirstWhateverOrderTheyAreDropped) {
  TH5File* f = db->pCreateFile(path("t.h5").c_str(), "T");
  TH5Directory* a = f->pCreateDir("A");
  TH5Directory* b = a->pCreateDir("B");
  TH5Atomic* t = b->pCreateAtomic(TH5Type::eDouble);
  const unsigned long long n = 4;
  TH5Space* s = b->pCreateSpace(1, &n);
  TH5Data* d = b->pCreateData("D", t, s);
  TH5Space* ds = d->pGetDataspace();
  TH5Type* dt = d->pGetDataType();
  TH5Attribute* at = d->pCreateAttr("Unit", t, s);
  EXPECT_EQ(ds->uGetVolume(), 4u);
  EXPECT_EQ(dt->eGetTyp(), TH5Type::eDouble);
  EXPECT_GE(openIds(), 6) << "file, root, A, B, data, attribute";

  // Drop the middle first: its children go with it, the rest stays usable.
  f->vDelete(a);  // not a child of the file's list? it is: A was created on f
  EXPECT_EQ(f->vGetOpenChilds().size(), 0u);
  EXPECT_EQ(openIds(), 1 + 1) << "only the file and its root group are left";
  (void)b, (void)t, (void)s, (void)d, (void)ds, (void)dt, (void)at;

  // Open again, drop in another order, close the file with handles open.
  TH5Data* d2 = f->pOpenDir("a")->pOpenDir("b")->pOpenData("d");
  TH5Attribute* at2 = d2->pOpenAttr("UNIT");
  TH5Space* sp2 = at2->pGetDataspace();
  d2->vDelete(at2);  // drops sp2 with it
  EXPECT_EQ(d2->vGetOpenChilds().size(), 0u);
  (void)sp2;
  TH5Attribute* at3 = d2->pOpenAttr("Unit");
  f->vClose();
  EXPECT_FALSE(at3->bIsOpen());
  EXPECT_FALSE(d2->bIsOpen());
  expectError(ulH5HandleClosed, "is closed", [&] { d2->uGetRank(); });
  EXPECT_EQ(openIds(), 0);
  db->vCloseFile("T");
}

TEST_F(Database, ReportListsTheTree) {
  TH5File* f = db->pCreateFile(path("r.h5").c_str(), "R");
  TH5General g(f, false);
  g.vCreate2(3, 4, TH5Type::eFloat, "/Plane/x.pf/Content", false);
  f->vOpenChilds(true);
  const std::string report = path("report.txt");
  db->vReport(report.c_str());
  const std::string text = readBytes(report);
  EXPECT_EQ(text.rfind("Database: 1\n", 0), 0u) << text;
  EXPECT_NE(text.find("alias R"), std::string::npos) << text;
  EXPECT_NE(text.find("Directory Plane"), std::string::npos) << text;
  EXPECT_NE(text.find("Data Content float [3 x 4]"), std::string::npos) << text;
}

TEST_F(Database, H5dumpListsOurFiles) {
  if (access("/usr/bin/h5dump", X_OK) != 0) GTEST_SKIP() << "h5dump (hdf5-tools) is not installed";
  const std::string name = path("dump.h5");
  TH5File* f = db->pCreateFile(name.c_str(), "D");
  TH5General g(f, false);
  g.vCreateDirectory("/Plane/Bild.pf");
  g.vCreate2(5, 7, TH5Type::eUnsignedShort, "/Plane/Bild.pf/Content", false);
  TH5General::TCompound c;
  c.vAdd(TH5Type::eSignedLong, "x");
  c.vAdd(TH5Type::eSignedLong, "y");
  c.vAdd(TH5Type::eSignedChar, "Name", 0, 1, 24);
  c.vCalculateOffsets();
  g.vCreate1(3, c, "/Objektlisten/o.oli/Points", false);
  db->vCloseFile("D");

  int status = 0;
  const std::string out = run("/usr/bin/h5dump -H -B " + name, &status);
  EXPECT_EQ(status, 0) << out;
  EXPECT_NE(out.find("USERBLOCK_SIZE 1024"), std::string::npos) << out;
  EXPECT_NE(out.find("GROUP \"Plane\""), std::string::npos) << out;
  EXPECT_NE(out.find("DATASET \"Content\""), std::string::npos) << out;
  EXPECT_NE(out.find("H5T_STD_U16LE"), std::string::npos) << out;
  EXPECT_NE(out.find("( 5, 7 )"), std::string::npos) << out;
  EXPECT_NE(out.find("H5T_ARRAY { [24] H5T_STD_I8LE } \"Name\""), std::string::npos) << out;
  EXPECT_EQ(readBytes(name, 12), std::string("KXHDF5 1024", 11) + '\0');
}

namespace {
// A child process that holds `name` open (read-only, no lock) until `release`
// is written to.
struct Holder {
  pid_t pid = -1;
  int release = -1;
  explicit Holder(const std::string& name) {
    int ready[2], rel[2];
    if (::pipe(ready) != 0 || ::pipe(rel) != 0) return;
    pid = ::fork();
    if (pid == 0) {
      // Only the pipes: inherited descriptors would share this process's locks.
      for (int fd = 3; fd < 1024; ++fd)
        if (fd != ready[1] && fd != rel[0]) ::close(fd);
      const int fd = ::open(name.c_str(), O_RDONLY);
      char c = fd >= 0 ? 'y' : 'n';
      (void)!::write(ready[1], &c, 1);
      (void)!::read(rel[0], &c, 1);
      ::_exit(0);
    }
    char c = 0;
    (void)!::read(ready[0], &c, 1);
    ::close(ready[0]);
    ::close(ready[1]);
    ::close(rel[0]);
    release = rel[1];
  }
  ~Holder() {
    if (release >= 0) ::close(release);
    if (pid > 0) ::waitpid(pid, nullptr, 0);
  }
};
}  // namespace

TEST_F(Database, CompressGivesBackDeletedSpaceUnlessTheFileIsHeld) {
  try {
    compressBody();
  } catch (unsigned long) {
    ADD_FAILURE() << kx::formatErrorChain();
  }
}
void Database::compressBody() {
  const std::string name = path("c.h5");
  TH5File* f = db->pCreateFile(name.c_str(), "C");
  TH5General g(f, false);
  std::vector<double> big(200000, 2.5), small(10, 7.0);
  g.vCreate1(big.size(), TH5Type::eDouble, "/Big", false);
  g.vWrite(big.data(), "/Big");
  g.vCreate1(small.size(), TH5Type::eDouble, "/Keep/Small", false);
  g.vWrite(small.data(), "/Keep/Small");
  g.vWriteAttribute("/", "Version", TH5Type::eSignedLong, 1, std::vector<int32_t>{7}.data());
  f->pGetBootblock()->vSetEntry("Projekt", "P1");
  g.vDeleteObject("/big");
  EXPECT_EQ(f->pGetBootblock()->sGetEntry("DeletedObjects"), "1");
  EXPECT_EQ(f->pGetBootblock()->sGetEntry("DeletedSize"), std::to_string(big.size() * 8));
  f->vFlush();
  const auto sizeBefore = std::filesystem::file_size(name);
  ASSERT_GT(sizeBefore, big.size() * 8);

  {
    Holder other(name);
    f->vCompress();
    EXPECT_TRUE(f->bIsOpen());
    EXPECT_EQ(f->pGetBootblock()->sGetEntry("DeletedObjects"), "1") << "held elsewhere: left as it was";
  }
  f->vCompress();
  EXPECT_EQ(db->uGetSize(), 1u);
  EXPECT_EQ(f, (*db)["C"]);
  EXPECT_LT(std::filesystem::file_size(name), sizeBefore / 10);
  EXPECT_EQ(f->pGetBootblock()->sGetEntry("DeletedObjects"), "0");
  EXPECT_EQ(f->pGetBootblock()->sGetEntry("DeletedSize"), "0");
  EXPECT_EQ(f->pGetBootblock()->sGetEntry("Projekt"), "P1");
  std::vector<double> back(10);
  g.vRead("/keep/small", back.data());
  EXPECT_EQ(back, small);
  int32_t version = 0;
  g.vReadAttribute("/", "version", TH5Type::eSignedLong, 1, &version);
  EXPECT_EQ(version, 7);
  EXPECT_EQ(readBytes(name, 12), std::string("KXHDF5 1024", 11) + '\0');
}

// Compress on a full disk (the copy hits the file-size limit): the error goes
// up, the original file is whole and open again; a good compress keeps the
// file's mode.
TEST_F(Database, CompressNeverDestroysTheFile) {
  try {
    compressFailureBody();
  } catch (unsigned long) {
    ADD_FAILURE() << kx::formatErrorChain();
  }
}
void Database::compressFailureBody() {
  const std::string name = path("full.h5");
  TH5File* f = db->pCreateFile(name.c_str(), "F");
  TH5General g(f, false);
  std::vector<double> big(100000, 1.5), keep(50000, 3.0);
  g.vCreate1(big.size(), TH5Type::eDouble, "/Big", false);
  g.vWrite(big.data(), "/Big");
  g.vCreate1(keep.size(), TH5Type::eDouble, "/Keep", false);
  g.vWrite(keep.data(), "/Keep");
  g.vDeleteObject("/Big");
  f->vFlush();
  ::chmod(name.c_str(), 0644);
  const auto size = std::filesystem::file_size(name);

  struct rlimit old{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  auto handler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = old;
  small.rlim_cur = 64 * 1024;  // the copy needs about 400 kB
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  bool raised = false;
  try {
    f->vCompress();
  } catch (unsigned long) {
    raised = true;
    kx::deleteError();
  }
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_TRUE(raised);
  EXPECT_EQ(std::filesystem::file_size(name), size);
  EXPECT_TRUE(f->bIsOpen());
  std::vector<double> back(keep.size());
  g.vRead("/Keep", back.data());
  EXPECT_EQ(back, keep);
  size_t entries = 0;
  for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(dir)) ++entries;
  EXPECT_EQ(entries, 1u) << "no copy left behind";

  f->vCompress();
  EXPECT_LT(std::filesystem::file_size(name), size);
  EXPECT_EQ(std::filesystem::status(name).permissions() & std::filesystem::perms::all, std::filesystem::perms(0644));
  g.vRead("/Keep", back.data());
  EXPECT_EQ(back, keep);
}
