#include <vector>

#include "H5TestUtil.h"
#include "HDF5/H5Errors.h"
#include "HDF5/TH5General.h"

using namespace h5test;
using namespace kx::h5;

class Handle : public H5Test {
 protected:
  void SetUp() override {
    H5Test::SetUp();
    file = db->pCreateFile(path("h.h5").c_str(), "H");
  }
  void renameBody();
  TH5File* file = nullptr;
};

TEST_F(Handle, TypesCompoundsAndTheirDescription) {
  TH5Compound* c = file->pCreateCompound(12);
  const unsigned dims[2] = {2, 3};
  c->vInsertMember("Count", 0, TH5Type::eUnsignedLong);
  c->vInsertMember("Bytes", 4, TH5Type::eUnsignedChar, 2, dims);
  c->vInsertMember("Flag", 10, TH5Type::eSignedShort);
  EXPECT_EQ(c->uGetMembers(), 3u);
  EXPECT_EQ(c->cpGetMemberName(1), "Bytes");
  EXPECT_EQ(c->uGetMemberOffset(2), 10u);
  EXPECT_EQ(c->uGetMemberDim(1), 2u);
  EXPECT_EQ(c->eGetMemberType(1), TH5Type::eUnsignedChar);
  EXPECT_EQ(c->uGetMemberVolume(1), 6u);
  EXPECT_EQ(c->uGetMemberVolume(0), 1u);
  EXPECT_FALSE(c->bIsAtomic());
  expectError(ulH5LibraryError, "H5Tinsert", [&] { c->vInsertMember("Over", 11, TH5Type::eDouble); });
  expectError(ulH5Database, "", [&] { c->vInsertMember("Bad", 0, TH5Type::eUnknownTyp); });

  c->vCommit("Record");
  EXPECT_TRUE(c->bCommitted());
  EXPECT_EQ(file->eGetObjectTyp("record"), TH5Handle::eH5Compound);
  const std::string text = path("record.txt");
  c->vWriteFile(text.c_str());
  EXPECT_EQ(readBytes(text),
            "Compound Record size 12 members 3\n0 Count unsigned long\n4 Bytes unsigned char[2][3]\n"
            "10 Flag signed short\n");
  TH5Compound* copy = file->pCreateCompound(1);
  copy->vTakeContentFrom(file->pOpenCompound("RECORD"));
  EXPECT_EQ(copy->uGetSize(), 12u);
  EXPECT_FALSE(copy->bCommitted());
  file->vCompoundCopy(copy, "Record2");
  EXPECT_EQ(file->pOpenCompound("record2")->uGetMembers(), 3u);

  TH5Atomic* a = file->pCreateAtomic(TH5Type::eSignedLong);
  EXPECT_EQ(a->uGetSize(), 4u) << "a long is 4 bytes in every file";
  EXPECT_EQ(a->eGetTyp(), TH5Type::eSignedLong);
  for (int t = 0; t <= 8; ++t) {
    const auto e = static_cast<TH5Type::TDataTyp>(t);
    EXPECT_EQ(TH5Type::eGetTypFromString(TH5Type::cpGetTypName(e)), e);
  }
  EXPECT_STREQ(TH5Type::cpGetTypName(TH5Type::eUnknownTyp), "unknown typ");
  EXPECT_EQ(TH5Type::eGetTypFromString("long"), TH5Type::eUnknownTyp);
  EXPECT_EQ(TH5Type::uGetTypSize(TH5Type::eUnsignedLong), 4u);
}

TEST_F(Handle, RenameCommentLinksAndCopies) { guarded([&] { renameBody(); }); }

void Handle::renameBody() {
  TH5General g(file, false);
  std::vector<double> v = {1, 2, 3};
  g.vCreate1(3, TH5Type::eDouble, "/Src/Data", false);
  g.vWrite(v.data(), "/Src/Data");
  TH5Directory* src = file->pOpenDir("src");
  src->vSetComment("Quelle");
  TH5Data* d = src->pOpenData("DATA");
  d->vSetComment("drei Werte");
  std::string comment;
  d->vGetComment(comment);
  EXPECT_EQ(comment, "drei Werte");
  d->vRename("Werte");
  EXPECT_STREQ(d->cpGetFullName(), "/Src/Werte");
  EXPECT_TRUE(g.bExistObject("/src/werte"));
  EXPECT_FALSE(g.bExistObject("/src/data"));
  expectError(ulH5ObjectInTheWay, "", [&] { file->pCreateDir("Other")->vRename("SRC"); });

  TH5Link* link = file->pCreateLink("/Src/Werte", "Kurz");
  EXPECT_EQ(link->sGetTarget(), "/Src/Werte");
  std::vector<double> back(3);
  g.vRead("/kurz", back.data());  // a link leads to its target
  EXPECT_EQ(back, v);
  EXPECT_EQ(std::string(file->cpGetNamedLinks()), "Kurz -> /Src/Werte\n");
  file->pCreateLink("/Nowhere", "Lost");
  EXPECT_EQ(g.eGetObjectTyp("/Lost"), TH5Handle::eH5Link);
  EXPECT_EQ(d->iCountLinks(), 1);

  TH5Directory* deep = file->pDeepCopy(src, "Kopie");
  EXPECT_EQ(deep->uGetNumberNamedChilds(), 1u);
  g.vRead("/Kopie/Werte", back.data());
  EXPECT_EQ(back, v);
  deep->vCopyCommentFrom(src);
  deep->vGetComment(comment);
  EXPECT_EQ(comment, "Quelle");
  TH5Data* dc = file->pDataCopy(d, "Einzeln");
  EXPECT_EQ(dc->vGetDims(), std::vector<unsigned long long>{3});
  const int32_t n = 5;
  g.vWriteAttribute("/Src/Werte", "N", TH5Type::eSignedLong, 1, &n);
  dc->vCopyAttributeFrom(d);
  int32_t m = 0;
  g.vReadAttribute("/Einzeln", "n", TH5Type::eSignedLong, 1, &m);
  EXPECT_EQ(m, 5);

  // The object under a handle someone holds is deleted: the handle stays, closed.
  file->vDeleteObject("Einzeln");
  EXPECT_FALSE(dc->bIsOpen());
  expectError(ulH5HandleClosed, "", [&] { dc->uGetRank(); });
  expectError(ulH5NotExist, "", [&] { file->vDeleteObject("Einzeln"); });
  g.vCreate1(2, TH5Type::eDouble, "/Einzeln", false);  // a new one of the name is a new handle
  EXPECT_EQ(g.uGetDimSize("/Einzeln", 0), 2u);
}

TEST_F(Handle, ExtendibleDataGrows) {
  const unsigned long long dims[2] = {2, 3}, maxDims[2] = {TH5Space::uUnlimited, 3};
  TH5Space* s = file->pCreateSpace(2, dims, maxDims);
  EXPECT_TRUE(s->bIsExtendible());
  TH5Data* d = file->pCreateData("Log", file->pCreateAtomic(TH5Type::eSignedShort), s);
  const int16_t first[6] = {1, 2, 3, 4, 5, 6};
  d->vWrite(first, TH5Type::eSignedShort);
  const unsigned long long grown[2] = {4, 3};
  d->vExtend(grown);
  const unsigned long long at[2] = {2, 0}, count[2] = {2, 3};
  const int16_t more[6] = {7, 8, 9, 10, 11, 12};
  d->vWriteBlock(at, count, more);
  std::vector<int32_t> all(12);
  d->vRead(all.data(), TH5Type::eSignedLong);  // converted on the way
  for (int i = 0; i < 12; ++i) EXPECT_EQ(all[i], i + 1);
  TH5Space* now = d->pGetDataspace();
  unsigned long long md[2];
  now->vGetMaxDims(md);
  EXPECT_EQ(md[0], TH5Space::uUnlimited);
  EXPECT_EQ(now->uGetVolume(), 12u);
  const unsigned long long tooWide[2] = {4, 4};
  expectError(ulH5LibraryError, "H5Dset_extent", [&] { d->vExtend(tooWide); });
  file->vOpenChilds(true);
  EXPECT_EQ(file->pOpenChild("log"), d) << "an open handle is found again, not opened twice";
}

// A group reached through a soft link and through its own name: what is made
// through one name is found through the other, and making it again through
// the other is the ordinary "in the way" error.
TEST_F(Handle, SoftLinkedGroupIsOneGroup) {
  guarded([&] {
    TH5General g(file, false);
    std::vector<double> v = {4, 5};
    g.vCreate1(2, TH5Type::eDouble, "/A/Before", false);
    TH5Directory* a = file->pOpenDir("A");
    EXPECT_TRUE(a->bExistChild("Before"));  // the names of /A are read now
    file->pCreateLink("/A", "L");
    g.vCreate1(2, TH5Type::eDouble, "/L/X", false);
    g.vWrite(v.data(), "/L/X");
    EXPECT_TRUE(a->bExistChild("X"));
    EXPECT_TRUE(g.bExistObject("/A/X"));
    std::vector<double> back(2);
    g.vRead("/A/X", back.data());
    EXPECT_EQ(back, v);
    g.vCreate1(2, TH5Type::eDouble, "/A/X", false);  // the same data set: it stays
    g.vRead("/L/X", back.data());
    EXPECT_EQ(back, v);
    expectError(ulH5ObjectInTheWay, "", [&] { g.vCreate1(3, TH5Type::eDouble, "/A/X", false); });
    g.vDeleteObject("/A/X");
    EXPECT_FALSE(g.bExistObject("/L/X"));
  });
}
