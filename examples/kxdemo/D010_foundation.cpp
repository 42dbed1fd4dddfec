// Foundation: an error travelling up three guarded levels, the language pairs,
// sender and receiver messages, numbers with the decimal comma.
#include <string>

#include "Demo.h"
#include "kxexception/KxError.h"
#include "kxexception/TDelivery.h"
#include "kxexception/TFormatNumber.h"
#include "kxexception/TLanguage.h"
#include "platform/Notice.h"

namespace {
void level3() {
  KX_TRY { KX_THROW(0xe5213001, "Plane %s has no pixels", "Demo"); }
  KX_CATCH
}
void level2() {
  KX_TRY { level3(); }
  KX_CATCH
}
void level1() {
  KX_TRY { level2(); }
  KX_CATCH
}

class TCounter : public TDelivery {
 public:
  bool bReceiveMessage(const TDelivery* sender, unsigned long a, unsigned long b) override {
    if (!bIsSender(sender)) return false;
    kxdemo::say("receiver got message (%lu, %lu)", a, b);
    ++count;
    return true;
  }
  int count = 0;
};

const TLanguage::TLanguageString sHello("Messung beendet", "Measurement finished");

kxdemo::Step step(10, "foundation: errors, languages, messages, numbers", [](kxdemo::Context&) {
  std::string shown;
  auto old = kx::platform::setNoticeSink([&](kx::platform::eNoticeKind, const std::string&, const std::string& t) { shown = t; });
  try {
    level1();
  } catch (unsigned long code) {
    kxdemo::say("caught 0x%08lx at the top with %zu links", code, kx::getErrorChain().size());
    kx::ErrorMessageBox();
    kx::deleteError();
  }
  kx::platform::setNoticeSink(std::move(old));
  kxdemo::say("the message box said:\n%s", shown.c_str());

  TLanguage::setDeutsch();
  kxdemo::say("German:  %s", sHello());
  TLanguage::setEnglisch();
  kxdemo::say("English: %s", sHello());
  TLanguage::setDeutsch();

  TDelivery plane;
  TCounter view;
  plane.vConnectReceiver(&view);
  plane.vSendMessage(51, 0);
  TDelivery copy(plane);
  copy.vSendMessage(1, 0);
  kxdemo::say("the receiver saw %d message(s); the copy has %zu receivers", view.count, copy.uGetReceiverCount());

  char text[] = "12,75";
  komma2punkt(text);
  TFormatNumber fmt(3, true);
  kxdemo::say("\"12,75\" reads as %s; formatted (German, 3 digits, sign): %s", text, fmt.format(12.75).c_str());
});
}  // namespace
