#include "kxexception/TDelivery.h"

#include <algorithm>

namespace {
void addOnce(std::vector<TDelivery*>& v, TDelivery* d) {
  if (std::find(v.begin(), v.end(), d) == v.end()) v.push_back(d);
}
void removeAll(std::vector<TDelivery*>& v, const TDelivery* d) {
  v.erase(std::remove(v.begin(), v.end(), d), v.end());
}
}  // namespace

TDelivery::~TDelivery() {
  // Copies: the peers edit our vectors while we walk them.
  for (TDelivery* s : std::vector<TDelivery*>(senders_)) removeAll(s->receivers_, this);
  for (TDelivery* r : std::vector<TDelivery*>(receivers_)) removeAll(r->senders_, this);
}

void TDelivery::vConnectSender(TDelivery* sender) {
  if (!sender || sender == this) return;
  addOnce(senders_, sender);
  addOnce(sender->receivers_, this);
}

void TDelivery::vConnectReceiver(TDelivery* receiver) {
  if (!receiver || receiver == this) return;
  addOnce(receivers_, receiver);
  addOnce(receiver->senders_, this);
}

void TDelivery::vDisconnectSender(TDelivery* sender) {
  if (!sender) return;
  removeAll(senders_, sender);
  removeAll(sender->receivers_, this);
}

void TDelivery::vDisconnectReceiver(TDelivery* receiver) {
  if (!receiver) return;
  removeAll(receivers_, receiver);
  removeAll(receiver->senders_, this);
}

void TDelivery::vSendMessage(unsigned long a, unsigned long b) {
  const std::vector<TDelivery*> snapshot(receivers_);
  for (TDelivery* r : snapshot) {
    // A handler may have disconnected (or destroyed) a later receiver.
    if (std::find(receivers_.begin(), receivers_.end(), r) == receivers_.end()) continue;
    r->bReceiveMessage(this, a, b);
  }
}

bool TDelivery::bReceiveMessage(const TDelivery* sender, unsigned long, unsigned long) {
  return bIsSender(sender);
}

bool TDelivery::bIsSender(const TDelivery* d) const {
  return std::find(senders_.begin(), senders_.end(), d) != senders_.end();
}

bool TDelivery::bIsReceiver(const TDelivery* d) const {
  return std::find(receivers_.begin(), receivers_.end(), d) != receivers_.end();
}
