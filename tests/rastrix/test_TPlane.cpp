#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "RastrixTestUtil.h"
#include "kxexception/TLanguage.h"
#include "rastrix/RastrixErrors.h"
#include "rastrix/TCoordinateSystem.h"
#include "rastrix/TPixelKlassifikator.h"
#include "rastrix/TPlane.h"

using namespace Rastrix;
using rastrixtest::codeOf;
using rastrixtest::errorOf;
using rastrixtest::same;
using rastrixtest::TRecorder;
using Codes = std::vector<unsigned long>;

namespace {

// A pixel of type T made from a small number, distinct for distinct numbers.
template <class T>
T px(int v) {
  if constexpr (std::is_same_v<T, TRGBPixel>) {
    TRGBPixel p;
    p.set(v, v + 1, v + 2);
    return p;
  } else if constexpr (std::is_same_v<T, TRGBFloatPixel>) {
    TRGBFloatPixel p;
    p.set(static_cast<float>(v), v + 0.5f, -static_cast<float>(v));
    return p;
  } else {
    return static_cast<T>(v);
  }
}

// Fills every pixel with a number from its absolute position.
template <class T>
void fill(TPlane<T>& p) {
  for (int l = p.getFirstLine(); l <= p.getLastLine(); ++l)
    for (int c = p.getFirstColumn(); c <= p.getLastColumn(); ++c) p[l][c] = px<T>((l * 7 + c * 3) & 0x3f);
}

template <class T>
class PlaneTyped : public ::testing::Test {};
using PixelTypes = ::testing::Types<unsigned char, unsigned short, float, TRGBPixel, TRGBFloatPixel, int>;
TYPED_TEST_SUITE(PlaneTyped, PixelTypes);

TYPED_TEST(PlaneTyped, FreshPlaneIsInvalidWithTheDefaultsOfItsType) {
  using T = TypeParam;
  TPlane<T> p;
  EXPECT_FALSE(p.isValid());
  EXPECT_EQ(p.getLines() | p.getColumns() | p.getFirstLine() | p.getFirstColumn() | p.getLineDistance(), 0);
  EXPECT_EQ(p.getExtension(), CRectangle(0, -1, 0, -1));
  EXPECT_EQ(p.eGetPicturePT(), TPixelTraits<T>::ePixelTyp);
  double mi = 1, st = 1, ma = 1, dmi = 0, dst = 0, dma = 0;
  EXPECT_FALSE(p.getValueRangeMSM(&mi, &st, &ma));
  vGetDefaultValueRangeMSM(TPixelTraits<T>::ePixelTyp, &dmi, &dst, &dma);
  EXPECT_TRUE(mi == dmi && st == dst && ma == dma);
  EXPECT_EQ(codeOf([&] { p[0]; }), Err::ulPlaneNotValid);
  EXPECT_EQ(codeOf([&] { p.moveBy(1, 1); }), Err::ulPlaneNotValid);
}

TYPED_TEST(PlaneTyped, OwnMemoryIsZeroedAndReachedByAbsoluteNumbers) {
  using T = TypeParam;
  TPlane<T> p(3, 4, 100, 50, 6);
  ASSERT_TRUE(p.isValid());
  EXPECT_EQ(p.getExtension(), CRectangle(100, 102, 50, 53));
  for (int l = 100; l <= 102; ++l)
    for (int c = 50; c <= 53; ++c) EXPECT_TRUE(same(p[l][c], T{})) << l << "," << c;
  EXPECT_EQ(codeOf([&] { p[99]; }), Err::ulLineOutside);
  EXPECT_EQ(codeOf([&] { p[103]; }), Err::ulLineOutside);
  // The row table and the memory pointer describe the same pixels.
  for (int l = 100; l <= 102; ++l) {
    EXPECT_EQ(p.getLinePtr()[l], p[l]);
    for (int c = 50; c <= 53; ++c) EXPECT_EQ(&p[l][c], p.getMemory() + l * 6 + c);
  }
}

TYPED_TEST(PlaneTyped, CopyAndAssignmentAreDeepAndCompact) {
  using T = TypeParam;
  TPlane<T> src(5, 1000, -2, 7, 1024);
  fill(src);
  src.setNamePic("source");
  TPlane<T> copy(src), assigned(2, 2);
  assigned = src;
  for (TPlane<T>* d : {&copy, &assigned}) {
    EXPECT_EQ(d->getLineDistance(), 1000);
    EXPECT_EQ(d->getExtension(), src.getExtension());
    EXPECT_EQ(d->rStrGetNamePic(), "source");
    EXPECT_NE(d->pGetpCommon(), src.pGetpCommon());
    for (int l = -2; l <= 2; ++l) EXPECT_EQ(std::memcmp((*d)[l] + 7, src[l] + 7, 1000 * sizeof(T)), 0);
  }
  copy[0][7] = px<T>(99);
  EXPECT_FALSE(same(src[0][7], px<T>(99)));
  const TPlane<T> empty;
  EXPECT_FALSE(TPlane<T>(empty).isValid());
  assigned = empty;
  EXPECT_FALSE(assigned.isValid());
  assigned = assigned;
  EXPECT_FALSE(assigned.isValid());
}

TYPED_TEST(PlaneTyped, ViewSharesPixelsCommonAndNumbers) {
  using T = TypeParam;
  TPlane<T> src(10, 12, 5, -3, 16);
  fill(src);
  TPlane<T> view;
  view.beSubPicture(src, CRectangle(7, 9, 0, 4));
  ASSERT_TRUE(view.isValid());
  EXPECT_TRUE(view.bIsExtern());
  EXPECT_EQ(view.getExtension(), CRectangle(7, 9, 0, 4));
  EXPECT_EQ(view.getLineDistance(), 16);
  EXPECT_EQ(view.pGetpCommon(), src.pGetpCommon());
  src[8][2] = px<T>(42);
  EXPECT_TRUE(same(view[8][2], px<T>(42)));
  view[9][4] = px<T>(43);
  EXPECT_TRUE(same(src[9][4], px<T>(43)));
  EXPECT_EQ(codeOf([&] { view[6]; }), Err::ulLineOutside);
  view.free();
  EXPECT_FALSE(view.isValid());
  EXPECT_TRUE(same(src[9][4], px<T>(43)));
  // Degenerate shapes: 1x1 far out, a view of the last line of a column.
  TPlane<T> one(1, 1, -5, -5, 1);
  one[-5][-5] = px<T>(3);
  EXPECT_TRUE(same(TPlane<T>(one)[-5][-5], px<T>(3)));
  TPlane<T> col(300, 1), edge;
  edge.beSubPicture(col, CRectangle(299, 299, 0, 0));
  EXPECT_EQ(edge[299], col[299]);
  EXPECT_EQ(codeOf([&] { edge.beSubPicture(col, CRectangle(299, 300, 0, 0)); }), Err::ulSubPictureArea);
  EXPECT_FALSE(TPlane<T>(0, 5).isValid());
}

// ------------------------------------------------------------ alloc

TEST(PlaneAlloc, SameGeometryReturnsEarlyExternMemoryDoesNot) {
  TPlane<float> p(480, 640);
  p[5][6] = 7.f;
  TRecorder r(&p);
  const Process::TTimeStamp before = p.getTimeStamp();
  float* row = p[5];
  p.alloc(480, 640);
  p.alloc(480, 640, 0, 0, 640);  // the same five numbers in the long form
  EXPECT_TRUE(r.codes.empty());
  EXPECT_EQ(p.getTimeStamp(), before);
  EXPECT_EQ(p[5], row);
  EXPECT_EQ(p[5][6], 7.f);
  std::vector<float> mem(480 * 640, 1.f);
  for (int round = 0; round < 2; ++round) {  // a pointer never returns early
    r.clear();
    p.alloc(480, 640, 0, 0, 640, mem.data(), nullptr);
    EXPECT_EQ(r.codes, (Codes{11, 50}));
    EXPECT_EQ(p[5], mem.data() + 5 * 640);
  }
  r.clear();
  p.alloc(480, 640);  // same numbers, no pointers: keeps the extern memory
  EXPECT_TRUE(r.codes.empty());
  EXPECT_TRUE(p.bIsExtern());
}

TEST(PlaneAlloc, EmptySizeEmptiesSilentlyAndShortLineDistanceFails) {
  TPlane<unsigned char> p(10, 10);
  TRecorder r(&p);
  p.alloc(0, 5);
  EXPECT_FALSE(p.isValid());
  EXPECT_TRUE(p.getExtension().IsCorrectRectangle());  // inverted: true means empty
  EXPECT_EQ(p.getExtension(), CRectangle(0, -1, 0, -1));
  EXPECT_EQ(r.codes, (Codes{11}));  // the free itself is quiet
  p.alloc(10, 10);
  EXPECT_EQ(errorOf([&] { p.alloc(5, 10, 0, 0, 9); }),
            std::make_pair(Err::ulLineDistanceTooSmall, std::string("_LineDistance=9 < _Columns=10")));
  EXPECT_FALSE(p.isValid());
  EXPECT_EQ(codeOf([&] { TPlane<int> q(2, 3, 0, 0, 2); }), Err::ulLineDistanceTooSmall);
  p.alloc(CRectangle(-3, 3, 10, 12));
  EXPECT_EQ(p.getExtension(), CRectangle(-3, 3, 10, 12));
  EXPECT_EQ(p.getLineDistance(), 3);
  p.alloc(CRectangle(0, 1, 0, 1), 5);
  EXPECT_EQ(p.getLineDistance(), 5);
  EXPECT_EQ(errorOf([&] { p[2]; }), std::make_pair(Err::ulLineOutside, std::string("Line=2 FirstLine=0 LastLine=1")));
}

// Line and column numbers stay ints: a plane whose last line or column would
// lie beyond them is refused, at alloc and when moved.
TEST(PlaneAlloc, NumbersBeyondTheIntRangeAreRefused) {
  TPlane<float> p;
  EXPECT_EQ(errorOf([&] { p.alloc(10, 4, INT_MAX - 5, 0, 4); }),
            std::make_pair(0xe71210c8UL, std::string("FirstLine=2147483642 Lines=10")));
  EXPECT_EQ(codeOf([&] { p.alloc(4, 10, 0, INT_MAX - 2, 10); }), 0xe71210c8UL);
  EXPECT_FALSE(p.isValid());
  p.alloc(4, 4, INT_MAX - 3, INT_MIN, 4);  // exactly up to the last int
  ASSERT_TRUE(p.isValid());
  EXPECT_EQ(p.getLastLine(), INT_MAX);
  EXPECT_EQ(codeOf([&] { p.moveBy(1, 0); }), 0xe71210c8UL);
  EXPECT_EQ(codeOf([&] { p.moveBy(0, -1); }), 0xe71210c8UL);
  EXPECT_EQ(codeOf([&] { p.moveTo(INT_MAX, 0); }), 0xe71210c8UL);
  EXPECT_EQ(p.getFirstLine(), INT_MAX - 3);  // unchanged
  p.moveTo(INT_MIN, 0);
  EXPECT_EQ(p.getFirstLine(), INT_MIN);
}

TEST(PlaneAlloc, HugeSizeFailsCleanly) {
  TPlane<TRGBFloatPixel> p(2, 2);
  // Beyond the address space: refused before asking for memory.
  EXPECT_EQ(codeOf([&] { p.alloc(INT_MAX, INT_MAX); }), kx::ulForeignError);
  EXPECT_FALSE(p.isValid());
#if !defined(__SANITIZE_ADDRESS__)
  // 12 EiB: the run time's allocation failure passes through (the address
  // sanitizer aborts on such a request instead of failing it).
  EXPECT_EQ(codeOf([&] { p.alloc(1 << 30, 1 << 30); }), kx::ulForeignError);
  EXPECT_FALSE(p.isValid());
#endif
  p.alloc(1, 1);
  EXPECT_TRUE(p.isValid());
}

// ------------------------------------------------------------ extern memory and moves

TEST(PlaneExtern, OneBlockIsAbsoluteFromPixelZeroZeroAndSlides) {
  std::vector<int> mem(20 * 8);
  for (int i = 0; i < 20 * 8; ++i) mem[i] = i;
  TPlane<int> p(3, 4, 2, 1, 8, mem.data());
  EXPECT_FALSE(p.bIsInterlaced());
  EXPECT_EQ(p[2][1], 2 * 8 + 1);  // the first column is not subtracted
  EXPECT_EQ(p[4][4], 4 * 8 + 4);
  TRecorder r(&p);
  p.moveBy(10, 0);  // the window slides: ten lines further on in the memory
  EXPECT_EQ(p.getFirstLine(), 12);
  EXPECT_EQ(p[12][1], 12 * 8 + 1);
  p.moveBy(0, 2);
  EXPECT_EQ(p[12][3], 12 * 8 + 3);
  p.moveTo(0, 0);
  EXPECT_EQ(p[0][0], 0);
  EXPECT_EQ(r.codes, (Codes{50, 50, 50}));
  p.free();
  EXPECT_EQ(mem[5], 5);  // extern memory is never released nor touched

  // Own memory keeps its pixels under the new numbers.
  TPlane<float> own(3, 3);
  fill(own);
  const float before = own[1][2];
  float* block = own[0];
  own.moveTo(-4, -7);
  EXPECT_EQ(own[-3][-5], before);
  EXPECT_EQ(&own[-4][-7], block);
}

TEST(PlaneExtern, TwoBlocksTakeLinesByParity) {
  std::vector<unsigned char> even(4 * 5), odd(4 * 5);
  for (int i = 0; i < 20; ++i) {
    even[i] = static_cast<unsigned char>(i);
    odd[i] = static_cast<unsigned char>(100 + i);
  }
  TPlane<unsigned char> p(6, 5, 0, 0, 5, even.data(), odd.data());
  EXPECT_TRUE(p.bIsInterlaced());
  EXPECT_EQ(p[1][0], 100);
  EXPECT_EQ(p[2][3], 5 + 3);
  EXPECT_EQ(p[5][4], 100 + 2 * 5 + 4);
  p.moveBy(2, 0);
  EXPECT_EQ(p[2][0], 5);
  EXPECT_EQ(p[7][1], 100 + 3 * 5 + 1);
  // Negative lines halve toward zero: lines -1 and 1 both are the odd block's row 0.
  TPlane<unsigned char> neg(3, 5, -1, 0, 5, even.data() + 5, odd.data());
  EXPECT_EQ(neg[-1], neg[1]);
  EXPECT_EQ(neg[0][0], 5);
  TPlane<unsigned char> single(1, 5, 0, 0, 5, even.data(), odd.data());
  EXPECT_EQ(codeOf([&] { single.moveBy(1, 0); }), Err::ulInterlacedTooFewLines);
}

TEST(PlaneView, ViewOfInterlacedSourceAndViewsSlide) {
  std::vector<float> even(10 * 4), odd(10 * 4);
  for (int i = 0; i < 40; ++i) {
    even[i] = static_cast<float>(i);
    odd[i] = static_cast<float>(1000 + i);
  }
  TPlane<float> src(20, 4, 0, 0, 4, even.data(), odd.data());
  TPlane<float> view;
  view.beSubPicture(src, CRectangle(3, 6, 1, 2));
  EXPECT_TRUE(view.bIsInterlaced());
  view.moveBy(2, 0);
  EXPECT_EQ(view[5][1], src[5][1]);
  EXPECT_EQ(view[8][2], src[8][2]);
  TPlane<float> own(10, 10), w;
  w.beSubPicture(own, CRectangle(2, 3, 2, 3));
  w.moveBy(1, 1);  // a view slides over its source
  EXPECT_EQ(w.getExtension(), CRectangle(3, 4, 3, 4));
  EXPECT_EQ(&w[4][4], &own[4][4]);
}

TEST(PlaneView, ChecksAndEarlyReturn) {
  TPlane<int> src(10, 10), v, invalid;
  const struct {
    TPlane<int>* target;
    TPlane<int>* source;
    CRectangle r;
  } bad[] = {{&v, &src, CRectangle()},
             {&v, &src, CRectangle(0, 10, 0, 0)},
             {&v, &src, CRectangle(-1, 0, 0, 0)},
             {&src, &src, CRectangle(0, 1, 0, 1)},
             {&v, &invalid, CRectangle(0, 0, 0, 0)}};
  for (const auto& b : bad) EXPECT_EQ(codeOf([&] { b.target->beSubPicture(*b.source, b.r); }), Err::ulSubPictureArea);
  EXPECT_TRUE(src.isValid());
  v.beSubPicture(src, CRectangle(1, 2, 3, 4));
  TRecorder r(&v);
  v.beSubPicture(src, CRectangle(1, 2, 3, 4));
  EXPECT_TRUE(r.codes.empty());
  v.beSubPicture(src, CRectangle(1, 3, 3, 4));
  EXPECT_EQ(r.codes, (Codes{50}));
  // A view of a view looks onto the first source.
  TPlane<int> vv;
  vv.beSubPicture(v, CRectangle(2, 3, 4, 4));
  src[3][4] = 9;
  EXPECT_EQ(vv[3][4], 9);
  EXPECT_EQ(vv.pGetpCommon(), src.pGetpCommon());
}

TEST(PlaneView, AViewAssignedToItsSourceOrMadeItsSource) {
  TPlane<float> src(6, 6);
  fill(src);
  TPlane<float> view;
  view.beSubPicture(src, CRectangle(2, 3, 1, 4));
  const float expected = view[3][4];
  src = view;  // frees the block the view looks onto: the pixels must survive
  EXPECT_EQ(src.getExtension(), CRectangle(2, 3, 1, 4));
  EXPECT_EQ(src[3][4], expected);
  EXPECT_FALSE(src.bIsExtern());
  TPlane<float> owner(4, 4), part;
  part.beSubPicture(owner, CRectangle(0, 1, 0, 1));
  EXPECT_EQ(codeOf([&] { owner.beSubPicture(part, CRectangle(0, 0, 0, 0)); }), Err::ulSubPictureArea);
  EXPECT_TRUE(owner.isValid());
}

TEST(PlaneView, DestroyedInEitherOrder) {
  {
    auto src = std::make_unique<TPlane<TRGBPixel>>(8, 8);
    auto view = std::make_unique<TPlane<TRGBPixel>>();
    view->beSubPicture(*src, CRectangle(1, 2, 1, 2));
    TRecorder r(view.get());
    view.reset();  // the view first: only its row table goes
    (*src)[1][1].set(1, 2, 3);
    EXPECT_EQ((*src)[1][1].r, 1);
    EXPECT_EQ(src->pGetpCommon()->uGetReceiverCount(), 1u);  // only the source listens
  }
  {
    auto src = std::make_unique<TPlane<TRGBPixel>>(8, 8);
    auto view = std::make_unique<TPlane<TRGBPixel>>();
    view->beSubPicture(*src, CRectangle(1, 2, 1, 2));
    src.reset();   // breaks the documented rule; the view may only be destroyed now
    view.reset();  // and that must not touch the dead source (the sanitizer build watches)
  }
}

// ------------------------------------------------------------ messages

TEST(PlaneMessages, ViewAndSourceSeeDescriptionAndPixelsButOnlyTheirOwnGeometry) {
  TPlane<float> src(10, 10), view;
  view.beSubPicture(src, CRectangle(0, 4, 0, 4));
  TRecorder rs(&src), rv(&view);
  view.setNamePic("renamed");
  EXPECT_EQ(src.rStrGetNamePic(), "renamed");
  view.setValueUnitPic(0, "L", "cd/m\xB2");
  EXPECT_EQ(src.rStrGetUnitPic(0), "cd/m\xB2");
  view.vSendCommonMessage(51, 0);
  view.moveBy(1, 1);
  EXPECT_EQ(rs.codes, (Codes{1, 2, 51}));
  EXPECT_EQ(rv.codes, (Codes{1, 2, 51, 50}));
  // A plane with its send flag off passes nothing on, also not the common's.
  rs.clear();
  rv.clear();
  view.vSetSendMessage(false);
  src.setNamePic("again");
  view.vSendCommonMessage(51, 0);
  view.moveBy(-1, -1);
  EXPECT_EQ(rs.codes, (Codes{1}));
  EXPECT_TRUE(rv.codes.empty());
}

TEST(PlaneMessages, AssignmentToAViewRenamesTheSourceAndSays11BeforeFreeing) {
  TPlane<unsigned short> src(10, 10), view, other(3, 3);
  src.setNamePic("source");
  view.beSubPicture(src, CRectangle(0, 4, 0, 4));
  other.setNamePic("other");
  other[1][1] = 77;
  TRecorder r(&view);
  bool validAt11 = false;
  r.onMessage = [&](unsigned long code) {
    if (code == 11) validAt11 = view.isValid();
  };
  view = other;
  EXPECT_TRUE(validAt11);  // 11 comes before the free
  EXPECT_EQ(r.codes, (Codes{11, 50, 51, 5}));
  EXPECT_EQ(src.rStrGetNamePic(), "other");  // the description went into the shared common first
  EXPECT_NE(view.pGetpCommon(), src.pGetpCommon());
  EXPECT_EQ(view[1][1], 77);
  EXPECT_EQ(src[1][1], 0);
}

TEST(PlaneMessages, FreeAndAllocOnOwnCommon) {
  TPlane<int> p(2, 2);
  TRecorder r(&p);
  p.alloc(3, 3);
  p.free();
  p.free();  // invalid: nothing
  EXPECT_EQ(r.codes, (Codes{11, 50, 11, 50}));
  p.setNamePic("kept");
  p.alloc(1, 1);
  p.free();
  EXPECT_EQ(p.rStrGetNamePic(), "kept");  // the defaults are set only once
}

TEST(PlaneMessages, DateAlwaysSendsAndNeverStamps) {
  TPlane<float> p(1, 1);
  TRecorder r(&p);
  const TDateTime d(45000.25);
  const Process::TTimeStamp before = p.getTimeStamp();
  p.vSetDateTime(&d);
  p.vSetDateTime(&d);  // unchanged: sent again all the same
  EXPECT_EQ(r.codes, (Codes{5, 5}));
  EXPECT_EQ(p.getTimeStamp(), before);
  EXPECT_EQ(p.GetDateTime().val, 45000.25);
  const double now = TDateTime::now().val;
  p.vSetDateTime(nullptr);
  EXPECT_NEAR(p.GetDateTime().val, now, 1.0 / 24 / 60);
}

TEST(PlaneMessages, ClassifierAndCoordinateSystem) {
  TPlane<float> p;
  TRecorder r(&p);
  TPixelKlassifikator k;
  const Process::TTimeStamp t0 = p.getTimeStamp();
  p.SetPixelKlassifikator(&k);
  p.SetPixelKlassifikator(&k);
  EXPECT_EQ(r.codes, (Codes{10}));
  EXPECT_GT(p.getTimeStamp(), t0);
  p.SetPixelKlassifikator(pGetDefaultPixelKlassifikator());
  r.clear();

  TCoordinateSystem* def = pGetDefaultCoordinateSystem();
  EXPECT_EQ(p.pGetCoordinateSystem(), def);
  TCoordinateSystem cs;
  const int defUsers = def->iGetUser();
  {
    TPlane<float> q;
    EXPECT_EQ(def->iGetUser(), defUsers + 1);
    q.SetCoordinateSystem(&cs);
    EXPECT_EQ(def->iGetUser(), defUsers);
    TPlane<float> copy(q);
    EXPECT_EQ(copy.pGetCoordinateSystem(), &cs);
    EXPECT_EQ(cs.iGetUser(), 2);
  }
  EXPECT_EQ(cs.iGetUser(), 0);
  EXPECT_EQ(def->iGetUser(), defUsers);
  p.SetCoordinateSystem(&cs);
  p.SetCoordinateSystem(&cs);
  p.SetCoordinateSystem(nullptr);
  p.SetCoordinateSystem(nullptr);
  EXPECT_EQ(r.codes, (Codes{3, 3}));
  EXPECT_EQ(p.pGetCoordinateSystem(), def);
  // The later of the plane's and its system's stamps.
  p.SetCoordinateSystem(&cs);
  cs.vSetValueZ(2.0);
  EXPECT_EQ(p.getTimeStamp(), cs.getTimeStamp());
  p.setTimeStamp();
  EXPECT_GT(p.getTimeStamp(), cs.getTimeStamp());
  p.SetCoordinateSystem(nullptr);
}

// ------------------------------------------------------------ description

TEST(PlaneDescription, ValueRangeChecksInOrder) {
  TPlane<unsigned short> p;
  TRecorder r(&p);
  const double bad[][3] = {{0, 1, 70000}, {5, 1, 5}, {0, 0, 5}, {-1, 1, 5}, {0, 1, 0.0 / 0.0}};
  for (const auto& b : bad) EXPECT_EQ(codeOf([&] { p.setValueRangeMSM(b[0], b[1], b[2]); }), Err::ulValueRange);
  EXPECT_TRUE(r.codes.empty());
  const Process::TTimeStamp before = p.getTimeStamp();
  p.setValueRangeMSM(0, 40.95, 4095);
  p.setValueRangeMSM(0, 40.95, 4095);  // equal: nothing
  EXPECT_EQ(r.codes, (Codes{4}));
  EXPECT_EQ(p.getTimeStamp(), before);  // no stamp
  double mi = 0, ma = 0;
  EXPECT_TRUE(p.getValueRangeMSM(&mi, nullptr, &ma));
  EXPECT_EQ(ma, 4095);
  TPlane<int> i;
  EXPECT_EQ(codeOf([&] { i.setValueRangeMSM(-10, 1, 10); }), Err::ulValueRange);  // int has the 16-bit range
  TPlane<float> f;
  f.setValueRangeMSM(-1e30, 1, 1e30);
  EXPECT_EQ(codeOf([&] { f.setValueRangeMSM(-1e39, 1, 0); }), Err::ulValueRange);
  // A view sets the shared range from the source's (here the default).
  TPlane<unsigned char> src(2, 2), view;
  EXPECT_FALSE(src.getValueRangeMSM(nullptr, nullptr, nullptr));
  view.beSubPicture(src, CRectangle(0, 0, 0, 0));
  EXPECT_TRUE(src.getValueRangeMSM(&mi, nullptr, &ma));
  EXPECT_EQ(ma, 255);
}

TEST(PlaneDescription, ValueNamesAndUnitsPerChannelDecodedToLatin1) {
  TPlane<float> p;
  TRecorder r(&p);
  p.setValueUnitPic(1, "x", "y");  // grey: one channel only
  p.setValueUnitPic(-1, "x", "y");
  EXPECT_TRUE(r.codes.empty());
  EXPECT_EQ(p.rStrGetValuePic(1), "");
  p.setValueUnitPic(0, "T", "\xC2\xB0" "C");  // UTF-8 degree sign
  EXPECT_EQ(p.rStrGetUnitPic(0), "\xB0" "C");
  EXPECT_EQ(r.params, (Codes{0}));
  p.setValueUnitPic(0, "T", "\xC2\xB0" "C");  // compared undecoded: counts as changed again
  p.setValueUnitPic(0, "T", "\xB0" "C");      // the stored text: no change
  EXPECT_EQ(r.codes, (Codes{2, 2}));
  EXPECT_TRUE(p.bIsModified());
  p.vSetNotModified();
  EXPECT_FALSE(p.bIsModified());
  p.setValueUnitPic(0, "\xE2\x82\xAC" "1", "m\xC2\xB2");  // the euro sign lies beyond Latin-1
  EXPECT_EQ(p.rStrGetValuePic(0), "1");
  EXPECT_TRUE(p.bIsModified());
  TPlane<TRGBFloatPixel> c;
  c.setValueUnitPic(2, "b", "u");
  EXPECT_EQ(c.rStrGetValuePic(2), "b");
}

TEST(PlaneDescription, Utf8Decoder) {
  const std::pair<const char*, std::string> rows[] = {
      {"abc", "abc"},
      {"\xB0" "C m\xB2", "\xB0" "C m\xB2"},  // Latin-1 degree and two pass
      {"\xC3\xA4pfel", "\xE4pfel"},           // U+00E4
      {"\xC4pfel", "\x04pfel"},               // a Latin-1 letter reads as a lead byte
      {"a\x85z", "az"},                       // stray continuation byte dropped
      {"\xF0\x9F\x98\x80!", "!"},             // beyond 0xFF: dropped
      {"\xC2", "\x02"},                       // an unfinished sequence ends with the text
      {"\xC2\xB0\xB2", ""}};                  // B2 inside a sequence is a continuation
  for (const auto& [in, out] : rows) EXPECT_EQ(TPlaneBasic::TCommon::sUtf8ToLatin1(in), out) << in;
  std::string junk;
  for (int i = 0; i < 4096; ++i) junk += static_cast<char>(0x80 | (i * 37 % 64)), junk += "\xFF";
  EXPECT_LE(TPlaneBasic::TCommon::sUtf8ToLatin1(junk.c_str()).size(), junk.size());
}

TEST(PlaneDescription, ColourPlanesTakeNamesFromTheirColourSpace) {
  TPlane<TRGBPixel> p(1, 1);
  EXPECT_EQ(p.rStrGetValuePic(0) + p.rStrGetValuePic(2) + p.rStrGetUnitPic(1), "RBcd/m\xB2");
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::XYZ);
  p.vSetValueUnitPicFromColorSpace();
  EXPECT_EQ(p.rStrGetValuePic(0) + p.rStrGetValuePic(1), "XY");
  TPlane<float> g;
  g.vSetValueUnitPicFromColorSpace();  // grey: nothing
  EXPECT_EQ(g.rStrGetValuePic(0), "GW");
}

// ------------------------------------------------------------ checks and the rest

TEST(PlaneChecks, ProofAreaInOrder) {
  TPlane<float> p(10, 20, 5, -5, 20);  // lines 5..14, columns -5..14
  EXPECT_EQ(codeOf([] { TPlane<float>().proofArea(0, 0, 0, 0); }), Err::ulPlaneNotValid);
  struct Row {
    int l1, l2, c1, c2;
    unsigned long code;
    const char* text;
  } rows[] = {{4, 20, 20, -9, Err::ulAreaFirstLine, "_FirstLine=4 < FirstLine=5"},
              {5, 15, 20, -9, Err::ulAreaLastLine, "_LastLine=15 > LastLine=14"},
              {9, 8, 20, -9, Err::ulAreaLinesReversed, "_FirstLine=9 > _LastLine=8"},
              {5, 14, -6, -9, Err::ulAreaFirstColumn, "_FirstColumn=-6 < FirstColumn=-5"},
              {5, 14, 20, 15, Err::ulAreaLastColumn, "_LastColumn=15 > LastColumn=14"},
              {5, 14, 3, 2, Err::ulAreaColumnsReversed, "_FirstColumn=3 > _LastColumn=2"},
              {5, 14, -5, 14, 0, ""},
              {7, 7, 0, 0, 0, ""}};
  for (const Row& r : rows)
    EXPECT_EQ(errorOf([&] { p.proofArea(r.l1, r.l2, r.c1, r.c2); }), std::make_pair(r.code, std::string(r.text)));
}

TEST(PlaneChecks, BarePlaneBasic) {
  TPlaneBasic b;
  char ext[8];
  const std::pair<std::function<void()>, unsigned long> calls[] = {
      {[&] { b.writeFile("x", true); }, Err::ulNoFileOnBasicPlane},
      {[&] { b.readFile("x", true); }, Err::ulNoFileOnBasicPlane},
      {[&] { b.insertFile("x"); }, Err::ulNoFileOnBasicPlane},
      {[&] { b.getFileExtension(); }, Err::ulNoFileOnBasicPlane},
      {[&] { b.vGetFileExtension(ext); }, Err::ulNoFileOnBasicPlane},
      {[&] { b.eGetPicturePT(); }, Err::ulPixelTypNotIdentifiable},
      {[&] { b.setValueRangeMSM(0, 1, 2); }, Err::ulPixelTypNotIdentifiable}};
  for (const auto& [call, code] : calls) EXPECT_EQ(codeOf(call), code);
  EXPECT_EQ(b.getDoublePixelLC(0, 0), 0.0);
  EXPECT_EQ(b.vpCreateCOLOR_HANDLE(), nullptr);
}

TEST(PlaneChecks, InstancesListLivingPlanes) {
  const std::size_t n = TPlaneBasic::vpInstances().size();
  const TPlaneBasic* gone;
  {
    TPlane<int> a;
    TPlane<float> b(a.getLines(), 1);
    EXPECT_EQ(TPlaneBasic::vpInstances().size(), n + 2);
    EXPECT_EQ(TPlaneBasic::vpInstances().back(), &b);
    gone = &a;
    EXPECT_TRUE(TPlaneBasic::bIsValid(gone));
  }
  EXPECT_EQ(TPlaneBasic::vpInstances().size(), n);
  EXPECT_FALSE(TPlaneBasic::bIsValid(gone));
  EXPECT_FALSE(TPlaneBasic::bIsValid(nullptr));
}

TEST(PlaneChecks, DoublePixelAndColourText) {
  TPlane<TRGBPixel> p(2, 2, 0, 10, 2);
  p[1][11].set(255, 255, 255);
  EXPECT_NEAR(p.getDoublePixelLC(1, 11), 1440.954, 1e-9);
  EXPECT_EQ(codeOf([&] { p.getDoublePixelLC(1, 9); }), Err::ulAreaFirstColumn);
  EXPECT_EQ(codeOf([&] { p.getDoublePixelLC(1, 12); }), Err::ulAreaLastColumn);
  EXPECT_EQ(codeOf([&] { p.getDoublePixelLC(2, 10); }), Err::ulLineOutside);
  TPlane<int> i(1, 1);
  i[0][0] = -3;
  EXPECT_EQ(i.getDoublePixelLC(0, 0), -3.0);

  char buf[iPixelStrSize] = "untouched";
  const float grey = 1.f;
  TPlane<float>().vPixel2Str2(&grey, buf);
  EXPECT_STREQ(buf, "untouched");
  TRGBPixel c;
  c.set(10, 20, 30);
  p.vPixel2Str2(&c, buf);
  EXPECT_STREQ(buf, "10.000000\t20.000000\t30.000000");  // CIE RGB to itself, red first
  p.rGetPixelColorSpace().vSetFlag(TPixelColorSpace::CIE_RGB, TPixelColorSpace::XYZ);
  c.set(0, 1, 0);
  p.vPixel2Str2(&c, buf);
  EXPECT_STREQ(buf, "1.751800\t4.590700\t0.056500");  // X, Y, Z of pure green
}

TEST(PlaneChecks, MinAndMaxByComponent) {
  EXPECT_EQ(TPlaneBasic::min(static_cast<unsigned char>(3), static_cast<unsigned char>(200)), 3);
  EXPECT_EQ(TPlaneBasic::max(-1.5f, -2.f), -1.5f);
  TRGBPixel a, b;
  a.set(1, 200, 3);
  b.set(100, 2, 30);
  EXPECT_EQ(TPlaneBasic::min(a, b), rastrixtest::rgb(1, 2, 3));
  EXPECT_EQ(TPlaneBasic::max(a, b), rastrixtest::rgb(100, 200, 30));
  const TRGBFloatPixel fa = rastrixtest::rgbf(1.f, -5.f, 0.f), fb = rastrixtest::rgbf(0.f, 5.f, 0.5f);
  EXPECT_EQ(TPlaneBasic::min(fa, fb), rastrixtest::rgbf(0.f, -5.f, 0.f));
  EXPECT_EQ(TPlaneBasic::max(fa, fb), rastrixtest::rgbf(1.f, 5.f, 0.5f));
}

}  // namespace
