#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "kxexception/KxDir.h"
#include "kxexception/TDelivery.h"
#include "kxexception/TFormatNumber.h"
#include "kxexception/TKxClipboard.h"
#include "kxexception/TLanguage.h"
#include "kxexception/TTimeStamp.h"

namespace {

// Both separator rules over ordinary, short and malformed texts: a separator
// changes only between two digits; null, 1- and 2-character strings stay.
TEST(Numbers, SeparatorRulesIncludingShortAndMalformedTexts) {
  struct Case {
    const char* in;
    const char* k2p;
    const char* p2k;
  };
  const Case cases[] = {
      {"1,5", "1.5", "1,5"},       {"1.5", "1.5", "1,5"},       {"-12,75e3", "-12.75e3", "-12,75e3"},
      {"1,5;2,5", "1.5;2.5", "1,5;2,5"}, {"a,b", "a,b", "a,b"}, {"x.y", "x.y", "x.y"},
      {",5", ",5", ",5"},          {"5,", "5,", "5,"},          {".5", ".5", ".5"},
      {"", "", ""},                {",", ",", ","},             {"1", "1", "1"},
      {"1,", "1,", "1,"},          {",,", ",,", ",,"},          {"..", "..", ".."},
      {"\xff,", "\xff,", "\xff,"}, {"+,", "+,", "+,"},
  };
  for (const Case& c : cases) {
    std::string a(c.in), b(c.in);
    komma2punkt(a.data());
    punkt2komma(b.data());
    EXPECT_EQ(a, c.k2p) << c.in;
    EXPECT_EQ(b, c.p2k) << c.in;
  }
  komma2punkt(nullptr);
  punkt2komma(nullptr);
}

TEST(Numbers, ModKommaReturnsTheStringForSscanf) {
  char s[] = "3,25";
  double d = 0;
  ASSERT_EQ(std::sscanf(modKomma(s), "%lf", &d), 1);
  EXPECT_DOUBLE_EQ(d, 3.25);
  EXPECT_EQ(modKomma(nullptr), nullptr);
  char one[] = "7";
  EXPECT_STREQ(modKomma(one), "7");

  TLanguage::setDeutsch();
  char a[] = "2.5";
  EXPECT_STREQ(modPunkt(a), "2,5");
  TLanguage::setEnglisch();
  char b[] = "2,5";
  EXPECT_STREQ(modPunkt(b), "2.5");
  TLanguage::setDeutsch();
  EXPECT_EQ(modPunkt(nullptr), nullptr);
}

TEST(Numbers, FormatNumberDigitsPraefixAndLanguage) {
  TFormatNumber f(2, false);
  TLanguage::setEnglisch();
  EXPECT_EQ(f.format(3.14159), "3.14");
  EXPECT_EQ(f.format(3.14159, 4), "3.1416");
  f.setPraefix(true);
  EXPECT_EQ(f.format(1.0), "+1.00");
  EXPECT_EQ(f.format(-1.0), "-1.00");
  f.setDigits(0);
  EXPECT_EQ(f.format(2.6), "+3");
  TLanguage::setDeutsch();
  EXPECT_EQ(TFormatNumber(1).format(2.25), "2,2");  // round half to even of the C library
  EXPECT_DOUBLE_EQ(f.dGetNumber("1,5"), 1.5);
  EXPECT_DOUBLE_EQ(f.dGetNumber("-2.5e2"), -250.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber(""), 0.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber("x"), 0.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber(","), 0.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber(",1"), 0.1);
  EXPECT_DOUBLE_EQ(f.dGetNumber(nullptr), 0.0);
}

TEST(Numbers, FormatBinaerWidthAndLowBits) {
  char buf[40];
  formatBinaer(buf, 5, 8);
  EXPECT_STREQ(buf, "00000101");
  formatBinaer(buf, 0x1ff, 4);
  EXPECT_STREQ(buf, "1111");
  formatBinaer(buf, 0x80000000UL, 32);
  EXPECT_EQ(buf[0], '1');
  EXPECT_EQ(std::string(buf).size(), 32u);
  buf[0] = 'z';
  formatBinaer(buf, 1, 0);
  formatBinaer(buf, 1, 33);
  formatBinaer(nullptr, 1, 4);
  EXPECT_EQ(buf[0], 'z');
}

TEST(Language, PairsAndSwitch) {
  static const TLanguage::TLanguageString s("Datei", "File");
  EXPECT_EQ(s.size(), 2u);
  EXPECT_STREQ(s[TLanguage::eEnglisch], "File");
  EXPECT_STREQ(s[TLanguage::eDeutsch], "Datei");
  EXPECT_STREQ(s[static_cast<TLanguage::eTLanguage>(2)], "Datei");
  EXPECT_STREQ(s[static_cast<TLanguage::eTLanguage>(-1)], "Datei");
  TLanguage::setEnglisch();
  EXPECT_TRUE(TLanguage::isEnglisch());
  EXPECT_FALSE(TLanguage::isDeutsch());
  EXPECT_STREQ(s(), "File");
  EXPECT_STREQ(s(TLanguage::eAktLanguage), "File");
  EXPECT_STREQ(s(TLanguage::eDeutsch), "Datei");
  TLanguage::vSetAktLanguage(TLanguage::eDeutsch);
  EXPECT_EQ(TLanguage::eGetAktLanguage(), TLanguage::eDeutsch);
  EXPECT_STREQ(s(), "Datei");
  TProgramUser::vSetUser(TProgramUser::eService);
  EXPECT_TRUE(TProgramUser::eGetUser() >= 2);
  TProgramUser::vSetUser(TProgramUser::eOperator);
}

TEST(TimeStamp, ConsecutiveStampsAreOrderedAndCompareByValue) {
  Process::TTimeStamp a;
  Process::TTimeStamp b;
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(b > a);
  EXPECT_FALSE(a == b);
  Process::TTimeStamp c = a;
  EXPECT_TRUE(c == a);
  c.set();
  EXPECT_TRUE(c > b);
  // high word signed, low word unsigned
  Process::TTimeStamp lowBig(static_cast<int64_t>(0x00000001ffffffffLL));
  Process::TTimeStamp highBig(static_cast<int64_t>(0x0000000200000000LL));
  EXPECT_TRUE(lowBig < highBig);
  Process::TTimeStamp neg(-1);
  EXPECT_TRUE(neg < Process::TTimeStamp(0));
  EXPECT_EQ(neg.lGetHigh(), -1);
  EXPECT_EQ(neg.ulGetLow(), 0xffffffffu);
}

struct Listener : TDelivery {
  std::vector<std::pair<unsigned long, unsigned long>> got;
  std::function<void()> onMessage;
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override {
    if (!bIsSender(sender)) return false;
    got.emplace_back(a, b);
    if (onMessage) onMessage();
    return true;
  }
};

TEST(Delivery, MessagesReachConnectedReceiversOnly) {
  TDelivery sender;
  Listener r1, r2;
  sender.vConnectReceiver(&r1);
  r2.vConnectSender(&sender);
  sender.vConnectReceiver(&r1);  // twice connects once
  sender.vSendMessage(51, 7);
  ASSERT_EQ(r1.got.size(), 1u);
  EXPECT_EQ(r1.got[0], std::make_pair(51UL, 7UL));
  EXPECT_EQ(r2.got.size(), 1u);
  sender.vDisconnectReceiver(&r2);
  sender.vSendMessage(1, 0);
  EXPECT_EQ(r1.got.size(), 2u);
  EXPECT_EQ(r2.got.size(), 1u);
  EXPECT_FALSE(r2.bReceiveMessage(&sender, 0, 0));
}

TEST(Delivery, ACopyIsConnectedToNobody) {
  TDelivery sender;
  Listener r;
  sender.vConnectReceiver(&r);
  TDelivery copy(sender);
  EXPECT_EQ(copy.uGetReceiverCount(), 0u);
  EXPECT_EQ(copy.rGetTimeStamp(), sender.rGetTimeStamp());
  copy.vSendMessage(3, 0);
  EXPECT_TRUE(r.got.empty());
  Listener rc(r);  // a copied receiver hears nothing of its source's senders
  sender.vSendMessage(4, 0);
  EXPECT_EQ(r.got.size(), 1u);
  EXPECT_TRUE(rc.got.size() == r.got.size() - 1);
  TDelivery assigned;
  Listener r2;
  assigned.vConnectReceiver(&r2);
  assigned = sender;  // keeps its own connections
  EXPECT_TRUE(assigned.bIsReceiver(&r2));
  EXPECT_FALSE(assigned.bIsReceiver(&r));
}

TEST(Delivery, DestroyingEitherSideDisconnects) {
  Listener r;
  {
    TDelivery sender;
    sender.vConnectReceiver(&r);
    EXPECT_EQ(r.uGetSenderCount(), 1u);
  }
  EXPECT_EQ(r.uGetSenderCount(), 0u);
  TDelivery sender;
  {
    Listener gone;
    sender.vConnectReceiver(&gone);
  }
  EXPECT_EQ(sender.uGetReceiverCount(), 0u);
  sender.vSendMessage(1, 1);  // no dangling call (ASan would see it)
}

TEST(Delivery, HandlerThatDestroysALaterReceiverIsSafe) {
  TDelivery sender;
  Listener first;
  auto second = std::make_unique<Listener>();
  sender.vConnectReceiver(&first);
  sender.vConnectReceiver(second.get());
  first.onMessage = [&] { second.reset(); };
  sender.vSendMessage(50, 0);
  EXPECT_EQ(first.got.size(), 1u);
  EXPECT_EQ(sender.uGetReceiverCount(), 1u);
}

TEST(Delivery, TimeStamps) {
  TDelivery d;
  Process::TTimeStamp before = d.rGetTimeStamp();
  d.vSetTimeStamp();
  EXPECT_TRUE(d.rGetTimeStamp() > before);
  d.vSetTimeStamp(before);
  EXPECT_TRUE(d.rGetTimeStamp() == before);
}

TEST(Clipboard, NamedFormatsAndText) {
  const unsigned f = TKxClipboard::uRegisterFormat("TPlane<float>");
  EXPECT_GE(f, 0xC000u);
  EXPECT_EQ(TKxClipboard::uRegisterFormat("TPlane<float>"), f);
  EXPECT_NE(TKxClipboard::uRegisterFormat("TPlane<int>"), f);
  TKxClipboard::vClear();
  EXPECT_FALSE(TKxClipboard::bHasFormat(f));
  const char bytes[] = {1, 0, 2, 0};
  TKxClipboard::vSetData(f, bytes, sizeof bytes);
  TKxClipboard::vSetText("1.5\t2.5\r\n");
  EXPECT_EQ(TKxClipboard::vGetData(f), std::vector<char>(bytes, bytes + 4));
  EXPECT_EQ(TKxClipboard::sGetText(), "1.5\t2.5\r\n");
  TKxClipboard::vClear();
  EXPECT_TRUE(TKxClipboard::vGetData(f).empty());
  EXPECT_EQ(TKxClipboard::sGetText(), "");
}

TEST(Dirs, ExistDir) {
  auto d = std::filesystem::temp_directory_path() / "kx_existdir_test";
  std::filesystem::create_directories(d);
  EXPECT_TRUE(kx::existDir(d.c_str()));
  EXPECT_TRUE(kx::existDir((d.string() + "/").c_str()));
  std::string back = d.string();
  for (auto& c : back)
    if (c == '/') c = '\\';
  EXPECT_TRUE(kx::existDir(back.c_str()));
  EXPECT_FALSE(kx::existDir((d / "nope").c_str()));
  EXPECT_FALSE(kx::existDir(nullptr));
  EXPECT_FALSE(kx::existDir(""));
  EXPECT_FALSE(kx::existDir("x"));
  EXPECT_FALSE(kx::existDir("/x"));
  std::filesystem::remove(d);
}

}  // namespace

