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

std::string k2p(const char* in) {
  std::string s(in);
  komma2punkt(s.data());
  return s;
}
std::string p2k(const char* in) {
  std::string s(in);
  punkt2komma(s.data());
  return s;
}

TEST(Numbers, Komma2PunktOnlyBetweenDigits) {
  EXPECT_EQ(k2p("1,5"), "1.5");
  EXPECT_EQ(k2p("-12,75e3"), "-12.75e3");
  EXPECT_EQ(k2p("a,b"), "a,b");
  EXPECT_EQ(k2p(",5"), ",5");
  EXPECT_EQ(k2p("5,"), "5,");
  EXPECT_EQ(k2p("1,5;2,5"), "1.5;2.5");
  EXPECT_EQ(k2p("1,"), "1,");
  EXPECT_EQ(k2p(","), ",");
  EXPECT_EQ(k2p(""), "");
  komma2punkt(nullptr);
  EXPECT_EQ(p2k("1.5"), "1,5");
  EXPECT_EQ(p2k(".5"), ".5");
  EXPECT_EQ(p2k("x.y"), "x.y");
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
  EXPECT_TRUE(f.getPraefix());
  EXPECT_EQ(f.format(1.0), "+1.00");
  EXPECT_EQ(f.format(-1.0), "-1.00");
  f.setDigits(0);
  EXPECT_EQ(f.getDigits(), 0);
  EXPECT_EQ(f.format(2.6), "+3");
  TLanguage::setDeutsch();
  EXPECT_EQ(TFormatNumber(1).format(2.25), "2,2");  // round half to even of the C library
  EXPECT_DOUBLE_EQ(f.dGetNumber("1,5"), 1.5);
  EXPECT_DOUBLE_EQ(f.dGetNumber("-2.5e2"), -250.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber(""), 0.0);
  EXPECT_DOUBLE_EQ(f.dGetNumber("x"), 0.0);
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
  EXPECT_TRUE(TProgramUser::eGetUser() >= TProgramUser::eOperator);
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

namespace {
// Every text parser of the package with null, empty, 1- and 2-character input:
// nothing crashes, nothing is read past the end, short strings stay as they are.
TEST(Numbers, MalformedAndShortInputs) {
  const char* inputs[] = {"", ",", ".", "1", "a", "1,", ",1", "1.", ".1", ",,", "..", "\xff,", "-", "+,"};
  TFormatNumber f;
  for (const char* in : inputs) {
    std::string a(in), b(in), c(in), d(in);
    komma2punkt(a.data());
    punkt2komma(b.data());
    EXPECT_EQ(a, in);
    EXPECT_EQ(b, in);
    EXPECT_EQ(std::string(modKomma(c.data())), in);
    EXPECT_EQ(std::string(modPunkt(d.data())), in);
    const double v = f.dGetNumber(in);
    // "1" and "1," read 1, ",1" and ".1" read 0.1; the rest read nothing
    EXPECT_TRUE(v == 0.0 || v == 1.0 || v == 0.1) << in;
  }
  EXPECT_EQ(modPunkt(nullptr), nullptr);
}
}  // namespace
